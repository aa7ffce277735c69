// Two clips side by side.
import {get, segment} from '../api.js';
import {compareLines, sideBySide} from '../diff.js';
import {empty, h} from '../dom.js';
import {lineOf} from './clip.js';

export function show(page) {
  const trail = [['Clips', '#/clips']];
  page.show(
    'Compare clips',
    {trail},
    page.region({
      load: (signal) =>
        Promise.all([page.params.older, page.params.newer].map((id) => get(`clips/${segment(id)}`, signal))),
      render: ([older, newer]) => {
        if (older.text === newer.text)
          return empty('The content is the same', h('p', {}, 'The XML may still differ in what is not shown.'));
        const name = (clip) => clip.title || 'Untitled';
        return sideBySide(compareLines(older.text, newer.text), {
          label: 'Differences',
          older: name(older),
          newer: name(newer),
          content: lineOf(older),
        });
      },
    }),
  );
}
