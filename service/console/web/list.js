// A table with a filter, sortable columns, and rows that are added as one scrolls, so that 10,000 of them are quick.
import {h, uniqueId} from './dom.js';
import {collator, count, number} from './format.js';
import {keepingFocus} from './page.js';

const kChunk = 150; // rows
const kAhead = '1500px'; // how far below the window rows are added

const textOf = (column, item) => (column.text ?? column.cell)(item) ?? '';

/** The list's `element` is for the page; `update` gives it the items. */
class List {
  constructor(options) {
    Object.assign(this, {name: '', filter: true, compact: false, emptyText: '', ...options});
    this.items = []; // with the text in which the filter searches
    this.shown = [];
    this.drawn = 0;
    this.sort = this.page.query.get(`${this.name}sort`) ?? '';
    this.text = this.page.query.get(`${this.name}filter`) ?? '';
    this.build();
    this.observer = new IntersectionObserver(
      (entries) => {
        if (entries.some((entry) => entry.isIntersecting)) this.draw();
      },
      {rootMargin: kAhead},
    );
    this.observer.observe(this.end);
    const {signal} = this.page;
    signal.addEventListener('abort', () => this.observer.disconnect());
    addEventListener('beforeprint', () => this.draw(Infinity), {signal}); // paper does not scroll
  }

  build() {
    this.body = h('tbody');
    this.total = h('p', {class: 'total', id: uniqueId('total')});
    this.none = h('p', {class: 'none', hidden: true});
    this.end = h('div');
    const heads = this.columns.map((column) => this.headCell(column));
    this.head = h('tr', {}, heads);
    const kind = this.compact ? 'list compact' : 'list';
    this.table = h('table', {'aria-label': this.label, class: kind}, h('thead', {}, this.head), this.body);
    this.element = h(
      'div',
      {},
      h('div', {class: 'list-tools'}, this.filter && this.filterBox(), this.total),
      h('div', {class: 'table-box'}, this.table),
      this.none,
      this.end,
    );
  }

  filterBox() {
    const input = h('input', {
      type: 'search',
      value: this.text,
      'aria-label': `Filter ${this.label.toLowerCase()}`,
      placeholder: 'Filter',
      autocomplete: 'off',
      spellcheck: 'false',
    });
    input.addEventListener('input', () => {
      this.text = input.value;
      this.page.setQuery({[`${this.name}filter`]: this.text});
      this.arrange();
    });
    return input;
  }

  headCell({name, label, sortable, class: kind}) {
    if (sortable === false) {
      return h('th', {scope: 'col', class: kind}, name || h('span', {class: 'offscreen'}, label));
    }
    const sorter = h('button', {type: 'button', class: 'sorter', onclick: () => this.sortBy(name)}, name);
    return h('th', {scope: 'col', class: kind, 'data-column': name}, sorter);
  }

  // Ascending, then descending, then as the items came.
  sortBy(name) {
    this.sort = {[name]: `-${name}`, [`-${name}`]: ''}[this.sort] ?? name;
    this.page.setQuery({[`${this.name}sort`]: this.sort});
    this.arrange();
  }

  sorted(items) {
    const column = this.columns.find((candidate) => candidate.name === this.sort.replace(/^-/, ''));
    if (!this.sort || !column) return items;
    const sign = this.sort.startsWith('-') ? -1 : 1;
    const keyed = items.map((item) => [textOf(column, item), item]);
    const compare = typeof keyed[0]?.[0] === 'number' ? (a, b) => a[0] - b[0] : (a, b) => collator.compare(a[0], b[0]);
    return keyed.sort((a, b) => sign * compare(a, b)).map(([, item]) => item);
  }

  arrange(rows = kChunk) {
    const words = this.text.toLowerCase().split(/\s+/).filter(Boolean);
    const isWanted = ({haystack}) => words.every((word) => haystack.includes(word));
    this.shown = this.sorted(this.items.filter(isWanted).map(({item}) => item));
    this.drawn = 0;
    keepingFocus(this.body, () => {
      this.body.replaceChildren();
      this.draw(rows);
    });
    const all = count(this.items.length, this.noun, this.nouns);
    const some = `${number(this.shown.length)} of ${all}`;
    this.total.textContent = this.shown.length === this.items.length ? all : some;
    this.none.textContent = this.items.length === 0 ? this.emptyText : 'Nothing matches the filter.';
    this.none.hidden = this.shown.length > 0;
    this.table.hidden = this.shown.length === 0;
    const orders = {[this.sort]: 'ascending', [this.sort.slice(1)]: this.sort.startsWith('-') && 'descending'};
    for (const cell of this.head.querySelectorAll('[data-column]')) {
      cell.setAttribute('aria-sort', orders[cell.dataset.column] || 'none');
    }
  }

  draw(rows = kChunk) {
    const added = this.shown.slice(this.drawn, this.drawn + rows);
    this.drawn += added.length;
    this.body.append(...added.map((item) => this.row(item)));
    if (this.drawn < this.shown.length) {
      this.observer.unobserve(this.end);
      this.observer.observe(this.end); // it reports again where the end is now
    }
  }

  row(item) {
    const cells = this.columns.map((column, index) => {
      const isHead = index === 0 && !column.plain;
      return h(isHead ? 'th' : 'td', {class: column.class, scope: isHead && 'row'}, column.cell(item));
    });
    return h('tr', {}, cells);
  }

  /** Shows `items`, with as many rows as before. */
  update(items) {
    const haystack = (item) =>
      this.columns
        .map((column) => textOf(column, item))
        .join('\n')
        .toLowerCase();
    this.items = items.map((item) => ({item, haystack: haystack(item)}));
    this.arrange(Math.max(kChunk, this.drawn));
  }
}

/**
 * A list with {page, label, noun, columns} and perhaps {nouns, name, filter, compact, emptyText}. `columns` are
 * {name, cell(item), text(item), class}: what a cell shows, and the text or number by which it is sorted and found, by
 * default what `cell` gives. The page's address keeps filter and order, with `name` before them where a page has
 * several lists.
 */
export const list = (options) => new List(options);
