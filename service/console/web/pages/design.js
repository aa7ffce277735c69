// The elements of a design, one kind at a time.
import {elementAddress} from '../data.js';
import {empty, h} from '../dom.js';
import {fileTitle, named, when} from '../format.js';
import {kindName, kindPlural} from '../kinds.js';
import {list} from '../list.js';
import {showInDesign} from '../shell.js';

const kParents = {field: 'Table', script: 'Folder', layout: 'Folder', customFunction: 'Folder'};

/** The name without the table, which has a column of its own. */
export function shortName(element) {
  const prefix = `${element.parent}::`;
  const isField = element.kind === 'field' && element.name.startsWith(prefix);
  return named(isField ? element.name.slice(prefix.length) : element.name);
}

function columns(design, kind, elements) {
  const has = (name) => elements.some((element) => element[name]);
  const parent = ({parent: text, parentKey}) =>
    parentKey ? h('a', {href: elementAddress(design.id, parentKey)}, named(text)) : text;
  return [
    {
      name: 'Name',
      text: shortName,
      cell: (element) => h('a', {href: elementAddress(design.id, element.key)}, shortName(element)),
    },
    has('parent') && {name: kParents[kind] ?? 'In', text: (element) => element.parent, cell: parent},
    has('detail') && {name: 'Details', text: (element) => element.detail, cell: (element) => element.detail},
    has('time') && {name: 'Modified', text: (element) => element.time, cell: (element) => when(element.time)},
    has('user') && {
      name: 'By',
      text: (element) => element.user || element.account,
      cell: (element) => element.user || element.account,
    },
  ].filter(Boolean);
}

export function show(page) {
  const chosen = (index) => page.query.get('kind') ?? index.kinds.find(([kind]) => kind !== 'file')?.[0];
  showInDesign(page, {
    heading: 'Design',
    current: chosen,
    fill: (design, index) => {
      const kind = chosen(index);
      page.heading.textContent = fileTitle(design.fileName);
      const elements = index.elements.filter((element) => element.kind === kind);
      if (!elements.length)
        return empty(`This design has no ${kindPlural(kind).toLowerCase()}`);
      const table = list({
        page,
        label: kindPlural(kind),
        noun: kindName(kind).toLowerCase(),
        nouns: kindPlural(kind).toLowerCase(),
        columns: columns(design, kind, elements),
      });
      table.update(elements);
      return [h('h2', {}, kindPlural(kind)), table.element];
    },
  });
}
