// A table with a filter, sortable columns, and rows that are added as one scrolls, so that 10,000 of them are quick.
import {h, uniqueId} from './dom.js';
import {collator, count, number} from './format.js';

const kChunk = 150; // rows

/**
 * `columns` are {name, cell(item), text(item), class}: what a cell shows, and the text or number by which it is sorted
 * and found, by default what `cell` gives. The page's address keeps filter and order, with `name` before them where a
 * page has several lists. Returns {element, update(items), arrange()}.
 */
export function list({
  page,
  name = '',
  label,
  noun,
  nouns,
  columns,
  filter = true,
  filters = [],
  emptyText,
  compact = false,
}) {
  const state = {
    items: [],
    shown: [],
    drawn: 0,
    sort: page.query.get(`${name}sort`) ?? '',
    text: page.query.get(`${name}filter`) ?? '',
  };
  const textOf = (column, item) => (column.text ?? column.cell)(item) ?? '';
  const body = h('tbody');
  const total = h('p', {class: 'total', id: uniqueId('total')});
  const none = h('p', {class: 'none', hidden: true});
  const input = h('input', {
    type: 'search',
    value: state.text,
    'aria-label': `Filter ${label.toLowerCase()}`,
    placeholder: 'Filter',
    autocomplete: 'off',
    spellcheck: 'false',
  });
  const head = h(
    'tr',
    {},
    columns.map((column) => headCell(column)),
  );
  const table = h('table', {'aria-label': label, class: compact ? 'list compact' : 'list'}, h('thead', {}, head), body);
  const more = new IntersectionObserver(
    (entries) => {
      if (entries.some((entry) => entry.isIntersecting)) draw();
    },
    {rootMargin: '1500px'},
  );
  const end = h('div', {class: 'end'});
  more.observe(end);
  page.signal.addEventListener('abort', () => more.disconnect());

  function headCell(column) {
    if (column.sortable === false) {
      return h('th', {scope: 'col', class: column.class}, column.name || h('span', {class: 'offscreen'}, column.label));
    }
    const sorter = h('button', {type: 'button', class: 'sorter', onclick: () => sortBy(column.name)}, column.name);
    return h('th', {scope: 'col', class: column.class, 'data-column': column.name}, sorter);
  }

  function sortBy(column) {
    state.sort = state.sort === column ? `-${column}` : state.sort === `-${column}` ? '' : column;
    page.setQuery({[`${name}sort`]: state.sort});
    arrange();
  }

  function sorted(items) {
    const column = columns.find((candidate) => candidate.name === state.sort.replace(/^-/, ''));
    if (!state.sort || !column) return items;
    const sign = state.sort.startsWith('-') ? -1 : 1;
    const keyed = items.map((item) => [textOf(column, item), item]);
    const compare = typeof keyed[0]?.[0] === 'number' ? (a, b) => a[0] - b[0] : (a, b) => collator.compare(a[0], b[0]);
    return keyed.sort((a, b) => sign * compare(a, b)).map((pair) => pair[1]);
  }

  function arrange() {
    const words = state.text.toLowerCase().split(/\s+/).filter(Boolean);
    const isWanted = ({item, haystack}) =>
      words.every((word) => haystack.includes(word)) && filters.every((test) => test(item));
    state.shown = sorted(state.items.filter(isWanted).map(({item}) => item));
    state.drawn = 0;
    body.replaceChildren();
    draw();
    const all = count(state.items.length, noun, nouns);
    total.textContent = state.shown.length === state.items.length ? all : `${number(state.shown.length)} of ${all}`;
    none.textContent = state.items.length === 0 ? (emptyText ?? '') : `Nothing matches the filter.`;
    none.hidden = state.shown.length > 0;
    table.hidden = state.shown.length === 0;
    for (const cell of head.children) {
      if (!cell.dataset.column) continue;
      cell.setAttribute(
        'aria-sort',
        cell.dataset.column === state.sort
          ? 'ascending'
          : `-${cell.dataset.column}` === state.sort
            ? 'descending'
            : 'none',
      );
    }
  }

  function draw() {
    const rows = state.shown.slice(state.drawn, state.drawn + kChunk);
    state.drawn += rows.length;
    body.append(
      ...rows.map((item) =>
        h(
          'tr',
          {},
          columns.map((column, index) =>
            h(
              index === 0 && !column.plain ? 'th' : 'td',
              {class: column.class, scope: index === 0 && !column.plain ? 'row' : null},
              column.cell(item),
            ),
          ),
        ),
      ),
    );
    if (state.drawn < state.shown.length) {
      more.unobserve(end);
      more.observe(end);
    }
  }

  input.addEventListener('input', () => {
    state.text = input.value;
    page.setQuery({[`${name}filter`]: state.text});
    arrange();
  });
  const element = h(
    'div',
    {class: 'list-box'},
    h('div', {class: 'list-tools'}, filter && input, total),
    h('div', {class: 'table-box'}, table),
    none,
    end,
  );
  return {
    element,
    arrange,
    update(items) {
      state.items = items.map((item) => ({
        item,
        haystack: columns
          .map((column) => textOf(column, item))
          .join('\n')
          .toLowerCase(),
      }));
      arrange();
    },
  };
}
