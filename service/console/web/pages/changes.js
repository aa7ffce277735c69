// What changed between two designs.
import {get, segment, sentence} from '../api.js';
import {formulaLine, stepLine} from '../code.js';
import {elementAddress, fileKey, findDesign, groupBy} from '../data.js';
import {sideBySide} from '../diff.js';
import {amount, button, copy, empty, field, h, save, select} from '../dom.js';
import {count, fileTitle, named, number, timeText, when} from '../format.js';
import {byKind, kindName, kindPlural} from '../kinds.js';
import {markdown} from '../markdown.js';

const kWords = ['added', 'removed', 'renamed', 'moved', 'edited'];
const kNames = 4; // of the details of a folded change
const kShown = 300; // of the changes of one kind
const kOpen = 30; // with more changes than these, details are folded

const person = (change) => change.user || change.account || '';

function detail(change, entry, hasTitle) {
  const isScript = change.kind === 'script' && entry.name === 'steps';
  const title = hasTitle ? [h('h3', {}, entry.name.split('/').join(' › '))] : [];
  if (entry.lines) {
    const content = isScript ? stepLine : formulaLine;
    return [...title, sideBySide(entry.lines, {label: `${entry.name} of ${change.name}`, content})];
  }
  return [
    ...title,
    h('p', {class: 'values'}, h('del', {}, entry.older || '(empty)'), ' → ', h('ins', {}, entry.newer || '(empty)')),
  ];
}

function changeElement(change, designs, isOpen) {
  const design = change.change === 'removed' ? designs.older : designs.newer;
  // A new name is shown next to the old one already.
  const details = (change.details ?? []).filter((entry) => !(change.oldName && entry.name === 'name'));
  const row = h(
    'div',
    {class: 'change-row'},
    h('span', {class: `change ${change.change}`}, change.change),
    h('a', {href: elementAddress(design.id, change.key)}, named(change.name)),
    change.oldName && h('span', {class: 'old-name'}, `was ${named(change.oldName)}`),
    person(change) && h('span', {class: 'by'}, person(change), ', ', when(change.time)),
  );
  return h('div', {class: 'card'}, row, details.length > 0 && folded(change, details, isOpen));
}

// Made only when they are opened, because there may be thousands.
function folded(change, details, isOpen) {
  const names = details.map((entry) => entry.name.split('/').at(-1));
  const some = names.slice(0, kNames).join(', ') + (names.length > kNames ? ', …' : '');
  const element = h('details', {open: isOpen}, h('summary', {'aria-label': `${some} of ${change.name}`}, some));
  const fill = () => {
    if (element.open && element.children.length === 1)
      element.append(...details.flatMap((entry) => detail(change, entry, details.length > 1)));
  };
  element.addEventListener('toggle', fill);
  fill();
  return element;
}

function tally(changes) {
  return kWords
    .map((word) => [word, changes.filter((change) => change.change === word).length])
    .filter(([, n]) => n > 0)
    .map(([word, n]) => `${number(n)} ${word}`)
    .join(', ');
}

function render(changes, all, designs) {
  if (!all.changes.length) return empty('Nothing has changed', h('p', {}, 'The two designs are the same.'));
  if (!changes.length) return empty('No changes match', h('p', {}, 'Choose another kind, person or change above.'));
  const groups = [...groupBy(changes, (change) => change.kind)].sort((a, b) => byKind(a[0], b[0]));
  return groups.map(([kind, entries]) => {
    const elements = (some) => some.map((change) => changeElement(change, designs, changes.length <= kOpen));
    const more = h('button', {type: 'button', class: 'plain'}, `Show all ${number(entries.length)}`);
    more.addEventListener('click', () => {
      const rest = elements(entries.slice(kShown));
      more.replaceWith(...rest);
      rest[0].querySelector('a').focus();
    });
    const heading = h('h2', {}, kindPlural(kind), amount(tally(entries)));
    const isLong = entries.length > kShown;
    return h('section', {class: 'changes'}, heading, elements(entries.slice(0, kShown)), isLong && more);
  });
}

function filterForm(page, all, changed) {
  const choices = (values, everything, name = (value) => value) => [
    ['', everything],
    ...values.map((value) => [value, name(value)]),
  ];
  const unique = (value) => [...new Set(all.changes.map(value))].filter(Boolean);
  const control = (name, options) => {
    const element = select(options, page.query.get(name) ?? '', {name});
    element.addEventListener('change', () => {
      page.setQuery({[name]: element.value});
      changed();
    });
    return element;
  };
  return h(
    'form',
    {class: 'filters', role: 'search', 'aria-label': 'Filter changes'},
    field('Kind', control('kind', choices(unique((change) => change.kind).sort(byKind), 'All kinds', kindName))),
    field('Person', control('person', choices(unique(person).sort(), 'Everybody'))),
    field(
      'Change',
      control(
        'change',
        choices(
          kWords.filter((word) => all.changes.some((change) => change.change === word)),
          'All changes',
        ),
      ),
    ),
  );
}

const isChosen = (query) => (change) =>
  [
    ['kind', change.kind],
    ['person', person(change)],
    ['change', change.change],
  ].every(([name, value]) => !query.get(name) || query.get(name) === value);

function fill(page, {older, newer, all}) {
  const designs = {older, newer};
  const name = fileTitle(newer.fileName);
  const chosen = () => all.changes.filter(isChosen(page.query));
  const report = () => markdown(name, designs, all.warnings, chosen());
  const place = h('div');
  const summary = h('p', {class: 'total'});
  const update = () => {
    const changes = chosen();
    summary.textContent = changes.length ? `${count(changes.length, 'change')}: ${tally(changes)}` : '';
    place.replaceChildren(...[render(changes, all, designs)].flat());
  };
  page.show(
    `Changes in ${name}`,
    {
      trail: [
        ['Files', '#/files'],
        [name, `#/files/${segment(fileKey(newer))}`],
      ],
      actions: [
        button('Copy as Markdown', () => copy(report(), 'Report'), {class: 'plain'}),
        button('Save as Markdown', () => save(report(), `${name} changes.md`, 'text/markdown'), {class: 'plain'}),
      ],
    },
    h(
      'p',
      {class: 'hint'},
      'From ',
      h('a', {href: `#/designs/${older.id}`}, timeText(older.receivedAt)),
      ' to ',
      h('a', {href: `#/designs/${newer.id}`}, timeText(newer.receivedAt)),
    ),
    all.warnings.map((warning) => h('p', {class: 'warning'}, sentence(warning))),
    filterForm(page, all, update),
    summary,
    place,
  );
  update();
}

export function show(page) {
  page.show('Changes', {}, h('p', {class: 'loading'}, 'Comparing…'));
  const {older, newer} = page.params;
  page.watch({
    load: async (signal) => {
      const [first, second, all] = await Promise.all([
        findDesign(older, signal),
        findDesign(newer, signal),
        get(`designs/${segment(older)}/changes/${segment(newer)}?details=1`, signal),
      ]);
      return {older: first, newer: second, all};
    },
    apply: (data) => fill(page, data),
    failed: page.failure('The changes cannot be shown'),
  });
}
