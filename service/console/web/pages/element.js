// One element: its definition, what uses it, and what it uses.
import {Refusal, get, segment} from '../api.js';
import {performedInTurn} from '../calls.js';
import {codeBlock, linker, parseText, stepLine} from '../code.js';
import {elementAddress, groupBy} from '../data.js';
import {amount, button, copy, empty, h, properties as propertyTable} from '../dom.js';
import {count, named, number, when} from '../format.js';
import {kindName, kindPlural, byKind} from '../kinds.js';
import {list} from '../list.js';
import {showInDesign} from '../shell.js';
import {shortName} from './design.js';

const kManyProperties = 60; // more than these can be filtered
const kManyReferences = 12; // more than these are folded for each kind

function facts(element) {
  const by = element.user || element.account;
  return h(
    'p',
    {class: 'facts'},
    h('span', {class: 'badge'}, kindName(element.kind)),
    element.parent &&
      h(
        'span',
        {},
        'in ',
        element.parentAddress ? h('a', {href: element.parentAddress}, named(element.parent)) : element.parent,
      ),
    element.detail && h('span', {}, element.detail),
    element.time && h('span', {}, 'modified ', when(element.time), by && ` by ${by}`),
    Number(element.modifications) > 0 && h('span', {}, count(Number(element.modifications), 'modification')),
  );
}

const isPlain = (value) => value.length === 1;
const isStyle = ([path]) => path.endsWith('LocalCSS'); // many in a layout, and rarely what is looked for

function definition(page, element, links) {
  const {properties, lines} = parseText(element.text, element.kind);
  const link = linker(links);
  const plain = properties.filter(([, value]) => isPlain(value));
  const long = properties.filter(([, value]) => !isPlain(value));
  const styles = long.filter(isStyle);
  const block = ([path, value]) =>
    h('section', {}, h('h2', {}, words(path)), codeBlock(value, {label: words(path), link}));
  return [
    element.stepLines?.length > 0 &&
      h(
        'section',
        {},
        h(
          'h2',
          {},
          'Steps',
          amount(number(element.stepLines.length)),
          button('Copy', () => copy(lines.join('\n'), 'Steps'), {class: 'quiet'}),
        ),
        codeBlock(lines, {label: 'Steps', line: stepLine, link, numbered: true, lengths: element.stepLines}),
      ),
    long.filter((property) => !isStyle(property)).map(block),
    plain.length > 0 &&
      h(
        'section',
        {},
        h('h2', {}, 'Properties'),
        plain.length > kManyProperties
          ? propertyList(page, plain, link)
          : propertyTable('Properties', rows(plain, link)),
      ),
    styles.length > 0 &&
      h('details', {class: 'box'}, h('summary', {}, 'Styles', amount(number(styles.length))), styles.map(block)),
  ];
}

const rows = (plain, link) => plain.map(([path, [value]]) => [words(path), link(value)]);

// Layouts have thousands.
function propertyList(page, plain, link) {
  const columns = [
    {name: 'Name', text: ([path]) => words(path), cell: ([path]) => words(path)},
    {name: 'Value', text: ([, [value]]) => value, cell: ([, [value]]) => link(value)},
  ];
  const table = list({page, label: 'Properties', noun: 'property', nouns: 'properties', compact: true, columns});
  table.update(plain);
  return table.element;
}

// "Storage/LanguageReference/name" is easier to read with its parts apart.
const words = (path) => path.split('/').join(' › ');

function groups(title, references, side, design) {
  const kinds = groupBy(references, (reference) => reference[`${side}Kind`]);
  const sorted = [...kinds].sort((a, b) => byKind(a[0], b[0]));
  return h(
    'section',
    {class: 'references'},
    h('h2', {}, title, amount(number(references.length))),
    references.length === 0 &&
      h(
        'p',
        {class: 'hint'},
        title === 'Used by' ? 'Nothing in this file refers to it.' : 'It does not refer to anything.',
      ),
    sorted.map(([kind, entries]) =>
      h(
        'details',
        {open: entries.length <= kManyReferences || sorted.length === 1},
        h('summary', {}, kindPlural(kind), amount(number(entries.length))),
        h(
          'ul',
          {},
          merged(entries, side).map(({reference, places}) =>
            h('li', {}, target(reference, side, design), h('span', {class: 'place'}, places.join(', '))),
          ),
        ),
      ),
    ),
  );
}

// One entry for each element, with all the places.
function merged(references, side) {
  const entries = new Map();
  for (const reference of references) {
    const id = reference[`${side}Key`] || reference[`${side}Name`];
    if (!entries.has(id)) entries.set(id, {reference, places: []});
    if (reference.place) entries.get(id).places.push(reference.place);
  }
  return [...entries.values()];
}

function target(reference, side, design) {
  const key = reference[`${side}Key`];
  const name = named(reference[`${side}Name`]);
  return key ? h('a', {href: elementAddress(design, key)}, name) : h('span', {title: 'Not in this export'}, name);
}

// A table shows its fields, a folder what is in it.
function children(page, element, index) {
  const inside = index.elements.filter((child) => child.parentKey === element.key);
  if (!inside.length) return undefined;
  const kind = inside[0].kind;
  const table = list({
    page,
    label: kindPlural(kind),
    noun: kindName(kind).toLowerCase(),
    nouns: kindPlural(kind).toLowerCase(),
    compact: true,
    columns: [
      {
        name: 'Name',
        text: shortName,
        cell: (child) => h('a', {href: elementAddress(page.params.design, child.key)}, shortName(child)),
      },
      {name: 'Details', text: (child) => child.detail, cell: (child) => child.detail},
    ],
  });
  table.update(inside);
  return h('section', {}, h('h2', {}, kindPlural(kind)), table.element);
}

// A name can belong to several elements.
const choice = (design, elements) =>
  h(
    'section',
    {},
    h('p', {}, 'Several elements have this name:'),
    h(
      'ul',
      {class: 'plain-list'},
      elements.map((element) =>
        h('li', {}, h('a', {href: elementAddress(design, element.key)}, element.name), `, ${kindName(element.kind)}`),
      ),
    ),
  );

export function show(page) {
  const {design, key} = page.params;
  showInDesign(page, {
    heading: 'Element',
    current: (index) => index.byKey.get(key)?.kind,
    fill: async (_, index) => {
      page.heading.textContent = index.byKey.get(key)?.name ?? key;
      try {
        return await load(page, design, key, index);
      } catch (error) {
        if (!(error instanceof Refusal)) throw error;
        return empty('This element cannot be shown', h('p', {}, error.message));
      }
    },
  });
}

async function load(page, design, key, index) {
  const path = `designs/${segment(design)}`;
  const [{elements}, {references}] = await Promise.all([
    get(`${path}/elements/${segment(key)}`, page.signal),
    get(`${path}/references?of=${segment(key)}`, page.signal),
  ]);
  if (elements.length > 1) return choice(design, elements);
  const [element] = elements;
  page.heading.textContent = shortName(element);
  const isScript = element.kind === 'script';
  const {calls} = isScript ? await get(`${path}/calls?of=${segment(element.key)}`, page.signal) : {calls: []};
  element.parentAddress = element.parentKey && elementAddress(design, element.parentKey);
  const uses = references.filter((reference) => reference.fromKey === element.key);
  const usedBy = references.filter((reference) => reference.toKey === element.key && reference.fromKey !== element.key);
  const links = new Map(
    uses
      .filter((reference) => reference.toKey)
      .map((reference) => [reference.toName, elementAddress(design, reference.toKey)]),
  );
  return [
    facts(element),
    h(
      'div',
      {class: 'element'},
      h('div', {class: 'definition'}, children(page, element, index), definition(page, element, links)),
      h(
        'aside',
        {'aria-label': 'References'},
        groups('Used by', usedBy, 'from', design),
        groups('Uses', uses, 'to', design),
        performedInTurn(calls, element.key, design),
      ),
    ),
  ];
}
