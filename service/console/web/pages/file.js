// The designs of one file over time.
import {Refusal, post} from '../api.js';
import {announce, button, confirmed, empty, h, table} from '../dom.js';
import {designs, fileKey} from '../data.js';
import {fileTitle, size, when} from '../format.js';
import {labelCell} from '../label.js';
import {keepingFocus} from '../page.js';
import {requestDesign} from '../work.js';

async function load(page, signal) {
  const all = (await designs(signal)).filter((design) => fileKey(design) === page.params.file);
  if (!all.length) throw new Refusal(404, 'There is no design of this file. It may have been deleted.');
  return all.reverse();
}

// The two chosen designs, whatever the order in which they were chosen.
function comparison(page, chosen) {
  const compare = button(
    'Compare the two',
    () => {
      const [older, newer] = [...chosen].sort((a, b) => a - b);
      location.hash = `#/changes/${older}/${newer}`;
    },
    {disabled: true},
  );
  return {compare, update: () => (compare.disabled = chosen.size !== 2)};
}

function row(design, previous, chosen, changed) {
  const time = when(design.receivedAt);
  const box = h('input', {
    type: 'checkbox',
    'aria-label': `Compare design ${design.id}`,
    disabled: Boolean(design.problem),
  });
  box.checked = chosen.has(design.id);
  box.addEventListener('change', () => {
    if (box.checked) chosen.add(design.id);
    else chosen.delete(design.id);
    changed();
  });
  const remove = button(
    'Delete',
    async () => {
      const isSure = await confirmed(
        'Delete this design?',
        'The export is deleted from this machine. The FileMaker file is not touched.',
        'Delete the design',
      );
      if (!isSure) return;
      await post(`designs/${design.id}/delete`);
      announce('Design deleted');
    },
    {class: 'quiet', 'aria-label': `Delete design ${design.id}`},
  );
  return h(
    'tr',
    {},
    h('td', {}, box),
    h('th', {scope: 'row'}, design.problem ? time : h('a', {href: `#/designs/${design.id}`}, time)),
    h('td', {class: 'labelled'}, labelCell(design)),
    h('td', {}, design.version),
    h('td', {class: 'number'}, size(design.bytes)),
    h(
      'td',
      {class: 'links'},
      design.problem
        ? h('span', {class: 'bad'}, `Cannot be read: ${design.problem}`)
        : [
            previous &&
              h(
                'a',
                {
                  href: `#/changes/${previous.id}/${design.id}`,
                  'aria-label': `Changes since the one before, design ${previous.id}`,
                },
                'Changes since the one before',
              ),
            h('a', {href: `#/designs/${design.id}/relationships`}, 'Relationships'),
            h('a', {href: `#/designs/${design.id}/report`}, 'Report'),
          ],
    ),
    h('td', {}, remove),
  );
}

const kColumns = [
  {name: 'Compare', isHidden: true},
  'Received',
  'Label',
  'FileMaker',
  {name: 'Size', class: 'number'},
  'Links',
  {name: 'Delete', isHidden: true},
];

function render(all, chosen, changed) {
  for (const id of chosen) {
    if (!all.some((design) => design.id === id)) chosen.delete(id);
  }
  changed();
  const readable = (index) => all.slice(index + 1).find((design) => !design.problem);
  const rows = all.map((design, index) => row(design, readable(index), chosen, changed));
  return table('Designs', kColumns, rows);
}

const needsTwo = () =>
  h(
    'p',
    {class: 'hint'},
    'With a second design of this file you can see what has changed. ',
    'Choose “Get design now” after your next changes in FileMaker.',
  );

export function show(page) {
  const chosen = new Set();
  const {compare, update} = comparison(page, chosen);
  const place = h('div', {}, h('p', {class: 'loading'}, 'Loading…'));
  let name = '';
  const fetchNow = button('Get design now', () => requestDesign(name), {class: 'plain'});
  page.show('Designs', {trail: [['Files', '#/files']], actions: [fetchNow, compare]}, place);
  page.watch({
    topics: ['designs'],
    load: (signal) => load(page, signal),
    apply: (all) => {
      name = fileTitle(all[0].fileName);
      page.heading.textContent = name;
      keepingFocus(place, () => place.replaceChildren(render(all, chosen, update), all.length < 2 ? needsTwo() : ''));
    },
    failed: (error) => place.replaceChildren(empty('There is nothing to show', h('p', {}, error.message))),
  });
}
