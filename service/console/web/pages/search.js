// One box over all designs and clips, with results while you type.
import {get, query, segment} from '../api.js';
import {designs, elementAddress, groupBy} from '../data.js';
import {amount, empty, field, h, select, settled} from '../dom.js';
import {count, fileTitle, named, number, when} from '../format.js';
import {clipKind, kindName} from '../kinds.js';

const kHits = 100;
const kClips = 20;
const kLines = 6; // of an element
const kQuiet = 90; // ms without a key before the service is asked
const kLongest = 240; // characters of a line around the hit

// The line with the hit marked, shortened around it.
function marked(text, wanted) {
  const at = text.toLowerCase().indexOf(wanted.toLowerCase());
  if (at < 0) return text.slice(0, kLongest);
  const start = Math.max(0, at - kLongest / 2);
  const end = Math.min(text.length, at + wanted.length + kLongest / 2);
  return [
    start > 0 && '…',
    text.slice(start, at),
    h('mark', {}, text.slice(at, at + wanted.length)),
    text.slice(at + wanted.length, end),
    end < text.length && '…',
  ];
}

const isPresent = (hit, newest) => hit.lastDesign === newest.get(hit.fileName);

// The hits of one element stand together, those of its last design first; an element that is gone comes last.
function byElement(hits, newest) {
  const groups = groupBy(hits, (hit) => [hit.fileName, hit.kind, hit.uuid || hit.name].join('\n'));
  for (const group of groups.values()) group.sort((a, b) => b.lastDesign - a.lastDesign);
  return [...groups.values()].sort(([a], [b]) => isPresent(b, newest) - isPresent(a, newest));
}

const placeOf = (hit) => (hit.property === 'steps' ? 'in a step' : hit.property.split('/').slice(-2).join(' › '));

function hitLine(hit, isEarlier, wanted) {
  return h(
    'div',
    {class: 'hit-line'},
    h('span', {class: 'place'}, placeOf(hit), isEarlier && ', earlier'),
    h('code', {}, marked(hit.text.trim(), wanted)),
  );
}

// Lines of earlier designs are shown where the last one does not have them.
function linesOf(hits) {
  const line = (hit) => `${hit.property}\n${hit.text.trim()}`;
  const seen = new Set();
  return hits.filter((hit) => hit.property !== 'name' && seen.size < seen.add(line(hit)).size);
}

function elementHits(hits, wanted, newest) {
  const [first] = hits;
  const lines = linesOf(hits);
  return h(
    'li',
    {},
    h(
      'div',
      {class: 'hit-head'},
      h(
        'a',
        {href: elementAddress(first.lastDesign, first.key || first.uuid || first.name)},
        marked(named(first.name), wanted),
      ),
      h('span', {class: 'badge'}, kindName(first.kind)),
      h('span', {class: 'by'}, fileTitle(first.fileName), !isPresent(first, newest) && ', not in the newest design'),
    ),
    lines.slice(0, kLines).map((hit) => hitLine(hit, hit.lastDesign !== first.lastDesign, wanted)),
    lines.length > kLines && h('div', {class: 'hint'}, `and ${number(lines.length - kLines)} more lines`),
  );
}

function clipHit(clip, wanted) {
  return h(
    'li',
    {},
    h(
      'div',
      {class: 'hit-head'},
      h('a', {href: `#/clips/${segment(clip.id)}`}, marked(clip.title || clip.label || 'Untitled', wanted)),
      h('span', {class: 'badge'}, clipKind(clip.xmlType)),
      h('span', {class: 'by'}, 'clip, ', when(clip.receivedAt)),
    ),
  );
}

function results({found, clips, newest}, wanted) {
  if (!found.total && !clips.total) {
    return empty('Nothing found', h('p', {}, `No name, formula, step, property or clip contains “${wanted}”.`));
  }
  return [
    found.total > 0 &&
      h(
        'section',
        {},
        h('h2', {}, 'In designs', amount(number(found.total))),
        h(
          'ul',
          {class: 'hits', 'aria-label': 'Hits in designs'},
          byElement(found.hits, newest).map((hits) => elementHits(hits, wanted, newest)),
        ),
        found.total > found.hits.length &&
          h(
            'p',
            {class: 'hint'},
            `The first ${number(found.hits.length)} of ${count(found.total, 'line')} are shown. Type more to narrow them down.`,
          ),
      ),
    clips.total > 0 &&
      h(
        'section',
        {},
        h('h2', {}, 'In clips', amount(number(clips.total))),
        h(
          'ul',
          {class: 'hits', 'aria-label': 'Hits in clips'},
          clips.clips.map((clip) => clipHit(clip, wanted)),
        ),
        clips.total > clips.clips.length &&
          h('p', {}, h('a', {href: `#/clips${query({text: wanted})}`}, 'Show all of them in Clips')),
      ),
  ];
}

const introduction = () =>
  empty(
    'Search everything that was received',
    h(
      'p',
      {},
      'Names, formulas, script steps, layout texts and all other properties of all designs, and the clips. ' +
        'Press / on any page to come here.',
    ),
  );

function offerFiles(choice, all, chosen) {
  const names = [...new Set(all.map((design) => design.fileName))].sort();
  choice.replaceChildren(
    h('option', {value: ''}, 'All files'),
    ...names.map((name) => h('option', {value: name, selected: name === chosen}, fileTitle(name))),
  );
}

export function show(page) {
  const input = h('input', {
    type: 'search',
    name: 'text',
    value: page.query.get('text') ?? '',
    autocomplete: 'off',
    spellcheck: 'false',
  });
  const file = select([['', 'All files']], '', {name: 'file'});
  file.addEventListener('change', () => {
    page.setQuery({file: file.value});
    refresh();
  });
  const total = h('p', {class: 'total', 'aria-live': 'polite'});
  const place = h('div');
  const box = h(
    'form',
    {role: 'search', class: 'search-form', onsubmit: (event) => event.preventDefault()},
    field('Search', input),
    field('File', file),
  );
  page.show('Search', {}, box, total, place);
  let newest = new Map();
  const load = async (signal) => {
    const text = input.value.trim();
    if (!text) return {text};
    const chosen = page.query.get('file') ?? '';
    const [found, clips] = await Promise.all([
      get(`designs/search${query({text, file: chosen, limit: kHits})}`, signal),
      chosen ? {total: 0, clips: []} : get(`clips${query({text, limit: kClips})}`, signal),
    ]);
    return {text, found, clips, newest: [...newest]};
  };
  const apply = (data) => {
    total.textContent = data.text
      ? `${count(data.found.total, 'line')} in designs, ${count(data.clips.total, 'clip')}`
      : '';
    place.replaceChildren(
      ...[data.text ? results({...data, newest}, data.text) : introduction()].flat().filter(Boolean),
    );
  };
  const failed = (error) => place.replaceChildren(empty('The search failed', h('p', {}, error.message)));
  page.watch({
    topics: ['designs'],
    load: designs,
    apply: (all) => {
      newest = new Map(all.map((design) => [design.fileName, design.id]));
      offerFiles(file, all, page.query.get('file'));
      refresh();
    },
  });
  const refresh = page.watch({topics: ['clips', 'designs'], load, apply, failed});
  const soon = settled(refresh, kQuiet);
  input.addEventListener('input', () => {
    page.setQuery({text: input.value});
    soon();
  });
  input.focus();
  input.setSelectionRange(input.value.length, input.value.length);
}
