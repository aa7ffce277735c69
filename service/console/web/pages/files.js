// The files of which there are designs.
import {postFile, query, segment} from '../api.js';
import {empty, h} from '../dom.js';
import {designs, fileKey} from '../data.js';
import {collator, fileTitle, size, when} from '../format.js';
import {dropArea} from '../drop.js';
import {list} from '../list.js';

// One entry for each file, with its newest design and how many there are.
function groupByFile(all) {
  const files = new Map();
  for (const design of all) {
    const known = files.get(fileKey(design));
    files.set(fileKey(design), {newest: design, previous: known?.newest, count: (known?.count ?? 0) + 1});
  }
  return [...files.values()].sort((a, b) => collator.compare(a.newest.fileName, b.newest.fileName));
}

const addExport = (file) => postFile(`designs${query({filename: file.name})}`, file);

function columns() {
  return [
    {
      name: 'File',
      text: ({newest}) => fileTitle(newest.fileName),
      cell: ({newest}) => h('a', {href: `#/files/${segment(fileKey(newest))}`}, fileTitle(newest.fileName)),
    },
    {name: 'Newest design', text: ({newest}) => newest.receivedAt, cell: ({newest}) => when(newest.receivedAt)},
    {name: 'Designs', class: 'number', text: ({count: designCount}) => designCount, cell: ({count: n}) => String(n)},
    {name: 'Size', class: 'number', text: ({newest}) => newest.bytes, cell: ({newest}) => size(newest.bytes)},
    {name: 'FileMaker', text: ({newest}) => newest.version, cell: ({newest}) => newest.version},
    {name: 'Links', class: 'links', sortable: false, text: ({newest}) => newest.problem ?? '', cell: links},
  ];
}

function links({newest, previous}) {
  if (newest.problem) return h('span', {class: 'bad'}, `Cannot be read: ${newest.problem}`);
  const name = fileTitle(newest.fileName);
  const to = (text, href) => h('a', {href, 'aria-label': `${text} of ${name}`}, text);
  return [
    to('Browse', `#/designs/${newest.id}`),
    to('Relationships', `#/designs/${newest.id}/relationships`),
    to('Report', `#/designs/${newest.id}/report`),
    previous && !previous.problem && to('Last changes', `#/changes/${previous.id}/${newest.id}`),
  ];
}

const nothingYet = () =>
  empty(
    'No designs yet',
    h(
      'p',
      {},
      'A design is the structure of a FileMaker file: its tables, fields, scripts, layouts and relationships.',
    ),
    h(
      'ul',
      {},
      h('li', {}, 'With FileMaker connected, use “Get design now” in ', h('a', {href: '#/setup'}, 'Setup'), '.'),
      h('li', {}, 'Or choose File > Save a Copy as XML in FileMaker and drop the file here.'),
    ),
  );

export function show(page) {
  const table = list({page, label: 'Files', noun: 'file', columns: columns(), emptyText: ''});
  const drop = dropArea({
    label: 'Add an export…',
    accept: '.xml',
    add: addExport,
    note: ' Designs appear once they are read.',
  });
  const place = h('div', {}, h('p', {class: 'loading'}, 'Loading…'));
  page.show('Files', {actions: drop.button}, drop.refusals, place);
  drop.watch(page);
  page.watch({
    topics: ['designs'],
    load: designs,
    apply: (all) => {
      const files = groupByFile(all);
      table.update(files);
      const content = files.length ? table.element : nothingYet();
      if (!content.isConnected) place.replaceChildren(content);
    },
    failed: (error) => place.replaceChildren(empty('The files cannot be shown', h('p', {}, error.message))),
  });
}
