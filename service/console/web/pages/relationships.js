// The relationships graph of a design, and the same as a list.
import {get, segment} from '../api.js';
import {elementAddress, findDesign} from '../data.js';
import {button, empty, h} from '../dom.js';
import {count, fileTitle, named} from '../format.js';
import {kStep} from '../gestures.js';
import {Graph, sign} from '../graph.js';
import {list} from '../list.js';
import {trailOf} from '../shell.js';

function tools(page, picture) {
  const hits = h('span', {class: 'total', 'aria-live': 'polite'});
  const input = h('input', {
    type: 'search',
    'aria-label': 'Find a table occurrence',
    placeholder: 'Find',
    autocomplete: 'off',
    spellcheck: 'false',
    value: page.query.get('find') ?? '',
  });
  const find = () => {
    const amount = picture.find(input.value.trim());
    hits.textContent = input.value.trim() ? count(amount, 'match', 'matches') : '';
    page.setQuery({find: input.value.trim()});
  };
  input.addEventListener('input', find);
  const search = h(
    'form',
    {
      role: 'search',
      class: 'inline',
      onsubmit: (event) => {
        event.preventDefault();
        find(); // goes to the next one
      },
    },
    input,
    hits,
  );
  if (input.value) requestAnimationFrame(find);
  return h(
    'div',
    {class: 'graph-tools'},
    search,
    button('Zoom in', () => picture.enlarge(kStep), {class: 'plain'}),
    button('Zoom out', () => picture.enlarge(1 / kStep), {class: 'plain'}),
    button('Show all', () => picture.fit(), {class: 'plain'}),
    button('Print', () => print(), {class: 'plain'}),
  );
}

// Paper shows everything, whatever part was on the screen.
function printWhole(page, picture) {
  let kept;
  addEventListener(
    'beforeprint',
    () => {
      kept = {...picture.view};
      picture.fit();
    },
    {signal: page.signal},
  );
  addEventListener(
    'afterprint',
    () => {
      picture.view = kept;
      picture.show();
    },
    {signal: page.signal},
  );
}

function table(page, data) {
  const names = new Map(data.occurrences.map((occurrence) => [occurrence.key, named(occurrence.name)]));
  const link = (key, text) => h('a', {href: elementAddress(page.params.design, key)}, text);
  const rows = list({
    page,
    label: 'Relationships',
    noun: 'relationship',
    compact: true,
    columns: [
      {name: 'Left', text: ({left}) => names.get(left) ?? '', cell: ({left}) => link(left, names.get(left) ?? '')},
      {
        name: 'Right',
        text: ({right}) => names.get(right) ?? '',
        cell: ({right}) => link(right, names.get(right) ?? ''),
      },
      {
        name: 'Fields',
        text: ({predicates}) => predicates.map(({left, right}) => `${left} ${right}`).join('\n'),
        cell: ({key, predicates}) =>
          link(
            key,
            predicates.map(({left, operator, right}) => `${left} ${sign(operator)} ${right}`).join(' and ') || '(none)',
          ),
      },
    ],
  });
  rows.update(data.relationships);
  return h(
    'details',
    {class: 'as-list', open: page.query.has('filter') || page.query.has('sort')},
    h('summary', {}, 'As a list'),
    rows.element,
  );
}

export function show(page) {
  page.show('Relationships', {}, h('p', {class: 'loading'}, 'Loading…'));
  const id = page.params.design;
  page.watch({
    load: async (signal) => {
      const [design, data] = await Promise.all([findDesign(id, signal), get(`designs/${segment(id)}/graph`, signal)]);
      page.design = design;
      return data;
    },
    apply: (data) => {
      const trail = trailOf(page.design);
      const heading = `Relationships of ${fileTitle(page.design.fileName)}`;
      if (!data.occurrences.length) {
        page.show(
          heading,
          {trail},
          empty('There is nothing to draw', h('p', {}, 'This file has no table occurrences.')),
        );
        return;
      }
      const picture = new Graph(data, (key) => elementAddress(id, key));
      printWhole(page, picture);
      page.show(
        heading,
        {trail},
        tools(page, picture),
        h(
          'p',
          {class: 'hint screen'},
          'Drag or use the arrow keys to move. Turn the wheel or press + and − to zoom. Click a table occurrence or a ' +
            'line to open it.',
        ),
        h('div', {class: 'graph-box'}, picture.element),
        table(page, data),
      );
    },
    failed: page.failure('The picture cannot be shown'),
  });
}
