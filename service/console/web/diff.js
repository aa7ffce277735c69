// Two texts line by line: what to show on which side.
import {h} from './dom.js';

const kAround = 3; // equal lines shown around a difference
const kMostWork = 4e6; // pairs of lines; beyond that the middle counts as replaced

/** [{in: 'both' | 'older' | 'newer', text}] for two texts. */
export function compareLines(older, newer) {
  const a = older.split(/\r\n|\r|\n/);
  const b = newer.split(/\r\n|\r|\n/);
  let start = 0;
  while (start < a.length && start < b.length && a[start] === b[start]) ++start;
  let endA = a.length;
  let endB = b.length;
  while (endA > start && endB > start && a[endA - 1] === b[endB - 1]) (--endA, --endB);
  const both = (text) => ({in: 'both', text});
  return [
    ...a.slice(0, start).map(both),
    ...middle(a.slice(start, endA), b.slice(start, endB)),
    ...a.slice(endA).map(both),
  ];
}

// The longest common subsequence, by the usual table.
function middle(a, b) {
  if (a.length * b.length > kMostWork) {
    return [...a.map((text) => ({in: 'older', text})), ...b.map((text) => ({in: 'newer', text}))];
  }
  const width = b.length + 1;
  const length = new Uint32Array((a.length + 1) * width);
  for (let i = a.length - 1; i >= 0; --i) {
    for (let j = b.length - 1; j >= 0; --j) {
      length[i * width + j] =
        a[i] === b[j]
          ? length[(i + 1) * width + j + 1] + 1
          : Math.max(length[(i + 1) * width + j], length[i * width + j + 1]);
    }
  }
  const lines = [];
  let i = 0;
  let j = 0;
  while (i < a.length || j < b.length) {
    const below = i < a.length ? length[(i + 1) * width + j] : -1;
    const right = j < b.length ? length[i * width + j + 1] : -1;
    if (below >= 0 && right >= 0 && a[i] === b[j]) {
      lines.push({in: 'both', text: a[i++]});
      ++j;
    } else if (below >= right) {
      lines.push({in: 'older', text: a[i++]});
    } else {
      lines.push({in: 'newer', text: b[j++]});
    }
  }
  return lines;
}

// Rows of two sides: what was replaced stands next to what replaces it.
function pair(lines) {
  const rows = [];
  let older = [];
  let newer = [];
  const flush = () => {
    for (let i = 0; i < Math.max(older.length, newer.length); ++i) rows.push({older: older[i], newer: newer[i]});
    older = [];
    newer = [];
  };
  for (const line of lines) {
    if (line.in === 'older') {
      older.push(line.text);
    } else if (line.in === 'newer') {
      newer.push(line.text);
    } else {
      flush();
      rows.push({both: line.text});
    }
  }
  flush();
  return rows;
}

function rowElement(row, content) {
  const side = (text, mark, name) =>
    text === undefined
      ? h('td', {class: 'absent'})
      : h(
          'td',
          {class: name},
          h('span', {class: 'mark', 'aria-hidden': 'true'}, mark),
          h('span', {class: 'offscreen'}, mark && `${name}: `),
          content(text),
        );
  if ('both' in row) return h('tr', {}, h('td', {}, content(row.both)), h('td', {}, content(row.both)));
  return h('tr', {}, side(row.older, '−', 'older'), side(row.newer, '+', 'newer'));
}

function fold(rows, content) {
  const near = rows.map(() => false);
  rows.forEach((row, at) => {
    if ('both' in row) return;
    for (let i = Math.max(0, at - kAround); i <= Math.min(rows.length - 1, at + kAround); ++i) near[i] = true;
  });
  const elements = [];
  for (let at = 0; at < rows.length;) {
    let end = at;
    while (end < rows.length && !near[end]) ++end;
    if (end - at > 2) elements.push(foldedRow(rows.slice(at, end), content));
    else for (let i = at; i < end; ++i) elements.push(rowElement(rows[i], content));
    if (end < rows.length) elements.push(rowElement(rows[end], content));
    at = end + 1;
  }
  return elements;
}

function foldedRow(rows, content) {
  const row = h(
    'tr',
    {class: 'folded'},
    h(
      'td',
      {colspan: '2'},
      h(
        'button',
        {
          type: 'button',
          class: 'quiet',
          onclick: () => {
            const box = row.closest('.diff-box');
            row.replaceWith(...rows.map((hidden) => rowElement(hidden, content)));
            box.focus({preventScroll: true}); // the button is gone
          },
        },
        `Show ${rows.length} equal lines`,
      ),
    ),
  );
  return row;
}

/** The two sides as a table. `content(text)` gives what a line shows. */
export function sideBySide(lines, {label, older = 'Older', newer = 'Newer', content = (text) => text}) {
  return h(
    'div',
    {class: 'diff-box', tabindex: '0', role: 'region', 'aria-label': label},
    h(
      'table',
      {class: 'diff', 'aria-label': label},
      h('thead', {}, h('tr', {}, h('th', {scope: 'col'}, older), h('th', {scope: 'col'}, newer))),
      h('tbody', {}, fold(pair(lines), content)),
    ),
  );
}
