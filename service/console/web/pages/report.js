// What a design consists of, and what deserves a look.
import {get, segment} from '../api.js';
import {designAddress, elementAddress} from '../data.js';
import {h} from '../dom.js';
import {fileTitle, named, number} from '../format.js';
import {kindName} from '../kinds.js';
import {list} from '../list.js';
import {showInDesign} from '../shell.js';

function elementTable(page, name, label, elements, emptyText) {
  const table = list({
    page,
    name,
    label,
    noun: 'element',
    filter: elements.length > 10,
    emptyText,
    compact: true,
    columns: [
      {
        name: 'Name',
        text: (element) => element.name,
        cell: (element) => h('a', {href: elementAddress(page.params.design, element.key)}, named(element.name)),
      },
      {name: 'Kind', text: (element) => kindName(element.kind), cell: (element) => kindName(element.kind)},
      {name: 'In', text: (element) => element.parent ?? '', cell: (element) => element.parent},
    ],
  });
  table.update(elements);
  return table.element;
}

function brokenTable(page, references) {
  const table = list({
    page,
    name: 'broken-',
    label: 'Broken references',
    noun: 'reference',
    filter: references.length > 10,
    compact: true,
    emptyText: 'No reference is broken.',
    columns: [
      {
        name: 'Where',
        text: (reference) => reference.fromName,
        cell: (reference) =>
          h('a', {href: elementAddress(page.params.design, reference.fromKey)}, named(reference.fromName)),
      },
      {
        name: 'Kind',
        text: (reference) => kindName(reference.fromKind),
        cell: (reference) => kindName(reference.fromKind),
      },
      {name: 'Place', text: (reference) => reference.place, cell: (reference) => reference.place},
      {
        name: 'Refers to',
        text: (reference) => reference.toName,
        cell: (reference) =>
          h('span', {class: 'bad'}, `${kindName(reference.toKind)} ${reference.toName || '(deleted)'}`),
      },
    ],
  });
  table.update(references);
  return table.element;
}

const counts = (design, rows) =>
  h(
    'dl',
    {class: 'counts', 'aria-label': 'Counts'},
    rows.map((row) =>
      h(
        'div',
        {},
        h(
          'dt',
          {},
          h('a', {href: designAddress(design.id, row.kind)}, row.plural.charAt(0).toUpperCase() + row.plural.slice(1)),
        ),
        h('dd', {}, number(row.count)),
      ),
    ),
  );

export function show(page) {
  showInDesign(page, {
    heading: 'Report',
    current: () => 'report',
    fill: async (design) => {
      page.heading.textContent = `Report on ${fileTitle(design.fileName)}`;
      const report = await get(`designs/${segment(page.params.design)}/report`, page.signal);
      const section = (title, hint, content) =>
        h('section', {}, h('h2', {}, title), hint && h('p', {class: 'hint'}, hint), content);
      return [
        section('Counts', '', counts(design, report.counts)),
        section(
          'Broken references',
          'They refer to something that was deleted. FileMaker shows <Field Missing> or the like.',
          brokenTable(page, report.broken),
        ),
        section(
          'Scripts with full access',
          'They run with all privileges, no matter who starts them.',
          elementTable(
            page,
            'full-',
            'Scripts with full access',
            report.fullAccess,
            'No script runs with full access.',
          ),
        ),
        section(
          'Not used',
          'Nothing in this file refers to them. A formula that computes a name, the menu of scripts, or ' +
            'another file may still use them.',
          elementTable(page, 'unused-', 'Not used', report.unused, 'Everything is used.'),
        ),
      ];
    },
  });
}
