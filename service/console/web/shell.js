// What the pages of one design share: the path above the heading, and the kinds with their counts at the side.
import {designElements, designAddress, fileKey, findDesign} from './data.js';
import {segment} from './api.js';
import {amount, h} from './dom.js';
import {fileTitle, number, timeText} from './format.js';
import {kindPlural} from './kinds.js';

/** The links to the file and the design. */
export function trailOf(design) {
  return [
    ['Files', '#/files'],
    [fileTitle(design.fileName), `#/files/${segment(fileKey(design))}`],
    [timeText(design.receivedAt), designAddress(design.id)],
  ];
}

function sideNavigation(design, kinds, current) {
  const entry = (text, href, isCurrent, total) =>
    h(
      'li',
      {},
      h('a', {href, 'aria-current': isCurrent ? 'page' : null}, text, total !== undefined && amount(number(total))),
    );
  return h(
    'nav',
    {class: 'side', 'aria-label': 'Design'},
    h(
      'ul',
      {},
      kinds.map(([kind, total]) => entry(kindPlural(kind), designAddress(design.id, kind), kind === current, total)),
    ),
    h(
      'ul',
      {},
      entry('Relationships graph', `#/designs/${design.id}/relationships`, false),
      entry('Report', `#/designs/${design.id}/report`, current === 'report'),
    ),
  );
}

/**
 * Shows a page of a design: the heading, the side, and what `fill(design, index)` gives. `current(index)` is a kind or
 * "report". The design is loaded once, because it never changes.
 */
export function showInDesign(page, {heading, current, fill}) {
  page.show(heading, {}, h('p', {class: 'loading'}, 'Loading…'));
  const id = page.params.design;
  page.watch({
    load: async (signal) => {
      const [design, index] = await Promise.all([findDesign(id, signal), designElements(id)]);
      page.design = design;
      page.index = index;
      return id;
    },
    apply: async () => {
      const {design, index} = page;
      const content = h('div', {class: 'content'});
      const side = () => sideNavigation(design, index.kinds, current(index));
      page.show(heading, {trail: trailOf(design)}, h('div', {class: 'with-side'}, side(), content));
      page.main.querySelector('.side [aria-current]')?.scrollIntoView({block: 'nearest', inline: 'nearest'});
      content.append(...[await fill(design, index)].flat().filter(Boolean));
    },
    failed: page.failure('The design cannot be shown', h('p', {}, h('a', {href: '#/files'}, 'Go to Files'))),
  });
}
