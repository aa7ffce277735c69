// Every FileMaker object that came from the clipboard, once.
import {get, postFile, query, segment} from '../api.js';
import {announce, announceWork, button, empty, field, h, select, settled} from '../dom.js';
import {dropArea} from '../drop.js';
import {size, when} from '../format.js';
import {clipKind, clipKinds} from '../kinds.js';
import {list} from '../list.js';
import {finished, queue, reasonOf} from '../work.js';

const kLimit = 1000;
const kQuiet = 120; // ms

async function addClip(file, isAlone) {
  const {id} = await postFile(`clips${query({name: file.name.replace(/\.[^.]*$/, '')})}`, file);
  if (isAlone) location.hash = `#/clips/${segment(id)}`;
}

/** Has FileMaker send what is on its clipboard. */
async function fetchClipboard() {
  announceWork('Asking FileMaker for its clipboard…');
  const command = await finished(await queue('GET_CLIPBOARD'));
  if (command.state !== 'completed') throw new Error(reasonOf(command));
  announce('The clipboard has arrived');
}

function columns(chosen, changed) {
  const box = (clip) => {
    const element = h('input', {type: 'checkbox', 'aria-label': `Compare ${clip.title}`});
    element.checked = chosen.has(clip.id);
    element.addEventListener('change', () => {
      if (element.checked) chosen.add(clip.id);
      else chosen.delete(clip.id);
      changed();
    });
    return element;
  };
  return [
    {name: '', label: 'Compare', plain: true, sortable: false, text: () => '', cell: box},
    {
      name: 'Title',
      text: (clip) => clip.title,
      cell: (clip) => [
        h('a', {href: `#/clips/${segment(clip.id)}`}, clip.title || 'Untitled'),
        clip.label && h('small', {}, clip.label),
      ],
    },
    {name: 'Kind', text: (clip) => clipKind(clip.xmlType), cell: (clip) => clipKind(clip.xmlType)},
    {
      name: 'Tags',
      text: (clip) => clip.tags.join(' '),
      cell: (clip) => clip.tags.map((tag) => h('span', {class: 'tag'}, tag)),
    },
    {name: 'Received', text: (clip) => clip.receivedAt, cell: (clip) => when(clip.receivedAt)},
    {name: 'Times', class: 'number', text: (clip) => clip.times, cell: (clip) => String(clip.times)},
    {name: 'Size', class: 'number', text: (clip) => clip.bytes, cell: (clip) => size(clip.bytes)},
  ];
}

const nothingYet = () =>
  empty(
    'No clips yet',
    h(
      'p',
      {},
      'A clip is a FileMaker object that was copied: script steps, scripts, fields, tables, layout objects, ' +
        'value lists or functions.',
    ),
    h(
      'ul',
      {},
      h('li', {}, "Copy something in FileMaker and choose “Get FileMaker's clipboard”."),
      h('li', {}, 'Or drop a file with FileMaker XML here.'),
    ),
  );

function filterForm(page, tags, changed) {
  const text = h('input', {
    type: 'search',
    value: page.query.get('text') ?? '',
    autocomplete: 'off',
    spellcheck: 'false',
  });
  const kind = select([['', 'All kinds'], ...clipKinds], page.query.get('kind') ?? '');
  const soon = settled(changed, kQuiet);
  text.addEventListener('input', () => {
    page.setQuery({text: text.value});
    soon();
  });
  for (const [name, control] of [
    ['kind', kind],
    ['tag', tags],
  ]) {
    control.addEventListener('change', () => {
      page.setQuery({[name]: control.value});
      changed();
    });
  }
  return h(
    'form',
    {class: 'filters', role: 'search', 'aria-label': 'Filter clips', onsubmit: (event) => event.preventDefault()},
    field('Search in clips', text),
    field('Kind', kind),
    field('Tag', tags),
  );
}

// The tags that are known, with the chosen one among them.
function offerTags(page, choice, clips) {
  const chosen = page.query.get('tag') ?? '';
  const tags = new Set(
    [...[...choice.options].map((option) => option.value), ...clips.flatMap((clip) => clip.tags), chosen].filter(
      Boolean,
    ),
  );
  if (tags.size + 1 === choice.options.length) return;
  choice.replaceChildren(
    h('option', {value: ''}, 'All tags'),
    ...[...tags].sort().map((tag) => h('option', {value: tag, selected: tag === chosen}, tag)),
  );
}

function chosenFilters({query: chosen}) {
  return {text: chosen.get('text') ?? '', xmlType: chosen.get('kind') ?? '', tag: chosen.get('tag') ?? ''};
}

export function show(page) {
  const chosen = new Set();
  const compare = button(
    'Compare the two',
    () => {
      const [older, newer] = [...chosen];
      location.hash = `#/clips/${segment(older)}/compare/${segment(newer)}`;
    },
    {disabled: true, class: 'plain'},
  );
  const table = list({
    page,
    label: 'Clips',
    noun: 'clip',
    filter: false,
    columns: columns(chosen, () => (compare.disabled = chosen.size !== 2)),
    emptyText: 'No clips match.',
  });
  const drop = dropArea({label: 'Add a file…', accept: '.xml,.txt', add: addClip});
  const tags = select([['', 'All tags']], '');
  const place = h('div', {}, h('p', {class: 'loading'}, 'Loading…'));
  page.show(
    'Clips',
    {actions: [button("Get FileMaker's clipboard", fetchClipboard), drop.button, compare]},
    filterForm(page, tags, () => refresh()),
    drop.refusals,
    place,
  );
  drop.watch(page);
  const refresh = page.watch({
    topics: ['clips'],
    load: (signal) => get(`clips${query({...chosenFilters(page), limit: kLimit})}`, signal),
    apply: ({clips}) => {
      offerTags(page, tags, clips);
      table.update(clips);
      const isFiltered = Object.values(chosenFilters(page)).some(Boolean);
      const content = clips.length || isFiltered ? table.element : nothingYet();
      if (!content.isConnected) place.replaceChildren(content);
    },
    failed: (error) => place.replaceChildren(empty('The clips cannot be shown', h('p', {}, error.message))),
  });
}
