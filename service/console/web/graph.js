// The relationships as FileMaker shows them: a picture that can be moved, enlarged, searched and printed.
import {svg} from './dom.js';
import {named} from './format.js';
import {listen} from './gestures.js';

const kMargin = 40;
const kHeader = 20; // height of the band with an occurrence's name
const kLine = 15; // height of a field's line
const kSmallest = 0.1;
const kLargest = 8;

const kSigns = {
  Equal: '=',
  NotEqual: '≠',
  LessThan: '<',
  LessThanOrEqual: '≤',
  GreaterThan: '>',
  GreaterThanOrEqual: '≥',
  CartesianProduct: '×',
};

export const sign = (operator) => kSigns[operator] ?? operator;

function luminance(color) {
  const [r, g, b] = [1, 3, 5].map((at) => parseInt(color.slice(at, at + 2), 16));
  return 0.299 * r + 0.587 * g + 0.114 * b;
}

const isColor = (color) => /^#[0-9a-f]{6}$/i.test(color ?? '');

function fieldsOf(occurrence, relationships) {
  const names = new Set();
  for (const {left, right, predicates} of relationships) {
    for (const predicate of predicates) {
      if (left === occurrence.key) names.add(predicate.left);
      if (right === occurrence.key) names.add(predicate.right);
    }
  }
  return [...names].map((name) => name.slice(name.indexOf('::') + 2));
}

function box(occurrence, fields, href) {
  const {x, y, width, height, name} = occurrence;
  const color = isColor(occurrence.color) ? occurrence.color : '#808080';
  const visible = Math.max(0, Math.floor((height - kHeader - 4) / kLine));
  return svg(
    'a',
    {href, class: 'occurrence', 'data-key': occurrence.key, 'aria-label': `${name}, table ${occurrence.table}`},
    svg('title', {}, `${name}\n${occurrence.dataSource ? `${occurrence.dataSource}: ` : ''}${occurrence.table}`),
    svg(
      'svg',
      {x, y, width, height, overflow: 'hidden'},
      svg('rect', {class: 'body', x: 0.5, y: 0.5, width: width - 1, height: height - 1, rx: 4}),
      svg('rect', {fill: color, x: 1, y: 1, width: width - 2, height: Math.min(kHeader, height - 2), rx: 3}),
      svg(
        'text',
        {
          class: 'name',
          x: 7,
          y: 14.5,
          fill: luminance(color) > 150 ? '#000' : '#fff',
          'font-style': occurrence.dataSource ? 'italic' : null,
        },
        name,
      ),
      fields
        .slice(0, visible)
        .map((field, index) => svg('text', {class: 'key', x: 7, y: kHeader + 13 + index * kLine}, field)),
    ),
    svg('rect', {class: 'frame', x: x + 0.5, y: y + 0.5, width: width - 1, height: height - 1, rx: 4}),
  );
}

// From the side of one box that faces the other to the side of the other.
function route(a, b) {
  const middle = (box) => [box.x + box.width / 2, box.y + box.height / 2];
  const [ax, ay] = middle(a);
  const [bx, by] = middle(b);
  if (a === b) {
    const right = a.x + a.width;
    return {path: `M${right},${ay - 12} h26 v24 h-26`, x: right + 26, y: ay};
  }
  const apartX = Math.max(b.x - (a.x + a.width), a.x - (b.x + b.width));
  const apartY = Math.max(b.y - (a.y + a.height), a.y - (b.y + b.height));
  if (apartX >= apartY) {
    const from = bx > ax ? a.x + a.width : a.x;
    const to = bx > ax ? b.x : b.x + b.width;
    const bend = (from + to) / 2;
    return {path: `M${from},${ay} C${bend},${ay} ${bend},${by} ${to},${by}`, x: bend, y: (ay + by) / 2};
  }
  const from = by > ay ? a.y + a.height : a.y;
  const to = by > ay ? b.y : b.y + b.height;
  const bend = (from + to) / 2;
  return {path: `M${ax},${from} C${ax},${bend} ${bx},${bend} ${bx},${to}`, x: (ax + bx) / 2, y: bend};
}

function line(relationship, boxes, href) {
  const a = boxes.get(relationship.left);
  const b = boxes.get(relationship.right);
  if (!a || !b) return undefined;
  const {path, x, y} = route(a, b);
  const signs = [...new Set(relationship.predicates.map((predicate) => sign(predicate.operator)))];
  const text = relationship.predicates
    .map(({left, operator, right}) => `${left} ${sign(operator)} ${right}`)
    .join('\n');
  return svg(
    'a',
    {
      href,
      class: 'relationship',
      'data-left': relationship.left,
      'data-right': relationship.right,
      'aria-label': `Relationship ${a.name} to ${b.name}`,
    },
    svg('title', {}, text),
    svg('path', {class: 'reach', d: path}),
    svg('path', {class: 'line', d: path}),
    svg('rect', {class: 'sign', x: x - 9, y: y - 9, width: 18, height: 18, rx: 3}),
    svg('text', {class: 'sign-text', x, y: y + 4.5}, signs.length === 1 ? signs[0] : '…'),
  );
}

function note({x, y, width, height, color, text}) {
  return svg(
    'g',
    {class: 'note'},
    svg('title', {}, text),
    svg(
      'svg',
      {x, y, width, height, overflow: 'hidden'},
      svg('rect', {x: 0, y: 0, width, height, rx: 3, fill: isColor(color) ? color : '#fff3c4'}),
      text
        .split(/\r\n|\r|\n/)
        .map((row, index) =>
          svg(
            'text',
            {x: 7, y: 15 + index * kLine, fill: isColor(color) && luminance(color) < 130 ? '#fff' : '#222'},
            row,
          ),
        ),
    ),
  );
}

function extent(rectangles) {
  const left = Math.min(...rectangles.map((r) => r.x)) - kMargin;
  const top = Math.min(...rectangles.map((r) => r.y)) - kMargin;
  const right = Math.max(...rectangles.map((r) => r.x + r.width)) + kMargin;
  const bottom = Math.max(...rectangles.map((r) => r.y + r.height)) + kMargin;
  return {x: left, y: top, width: right - left, height: bottom - top};
}

// Boxes without their fields, or too small to read, as FileMaker draws them.
function readable(occurrence) {
  const name = named(occurrence.name);
  if (occurrence.collapsed) return {...occurrence, name, height: kHeader + 2};
  return {...occurrence, name, width: Math.max(occurrence.width, 60), height: Math.max(occurrence.height, kHeader + 2)};
}

/** The picture as `element`. `view` is the part that is shown, after `show`. */
export class Graph {
  /** For the answer of the service; `hrefOf(key)` is an element's address. */
  constructor({occurrences, relationships, notes}, hrefOf) {
    this.occurrences = occurrences.map(readable);
    const boxes = new Map(this.occurrences.map((occurrence) => [occurrence.key, occurrence]));
    this.nodes = this.occurrences.map((occurrence) =>
      box(occurrence, fieldsOf(occurrence, relationships), hrefOf(occurrence.key)),
    );
    const lines = relationships.map((relationship) => line(relationship, boxes, hrefOf(relationship.key)));
    const attributes = {class: 'graph', role: 'group', tabindex: '0', 'aria-label': 'Relationships graph'};
    this.element = svg('svg', attributes, notes.map(note), lines.filter(Boolean), this.nodes);
    this.all = extent([...this.occurrences, ...notes]);
    this.found = -1;
    this.wanted = '';
    this.fit();
    listen(this);
  }

  show() {
    const {x, y, width, height} = this.view;
    this.element.setAttribute('viewBox', `${x} ${y} ${width} ${height}`);
  }

  /** Enlarges around a point, by default the middle of what is shown. */
  enlarge(factor, [x, y] = [this.view.x + this.view.width / 2, this.view.y + this.view.height / 2]) {
    const {view, all} = this;
    const scale = (all.width / view.width) * factor;
    if (scale < kSmallest || scale > kLargest * Math.max(1, all.width / 1000)) return;
    this.view = {
      x: x - (x - view.x) / factor,
      y: y - (y - view.y) / factor,
      width: view.width / factor,
      height: view.height / factor,
    };
    this.show();
  }

  move(x, y) {
    this.view.x += x;
    this.view.y += y;
    this.show();
  }

  /** Moves as far as needed to show what the keyboard has come to. */
  reveal(link) {
    const {x, y, width, height} = (link.querySelector('.frame') ?? link).getBBox();
    const {view} = this;
    const isInside =
      x >= view.x && y >= view.y && x + width <= view.x + view.width && y + height <= view.y + view.height;
    if (!isInside) this.center({x, y, width, height});
  }

  center({x, y, width, height}) {
    this.move(x + (width - this.view.width) / 2 - this.view.x, y + (height - this.view.height) / 2 - this.view.y);
  }

  fit() {
    this.view = {...this.all};
    this.show();
  }

  /** Marks the occurrences whose names or tables contain `text`, goes to the next of them, and returns their number. */
  find(text) {
    const hits = [];
    this.nodes.forEach((node, index) => {
      const {name, table} = this.occurrences[index];
      const isHit = text !== '' && `${name}\n${table}`.toLowerCase().includes(text.toLowerCase());
      node.classList.toggle('found', isHit);
      node.classList.remove('here');
      if (isHit) hits.push(index);
    });
    this.element.classList.toggle('searching', text !== '');
    this.found = text === this.wanted && hits.length ? (this.found + 1) % hits.length : 0;
    this.wanted = text;
    if (!hits.length) return 0;
    this.nodes[hits[this.found]].classList.add('here');
    this.center(this.occurrences[hits[this.found]]);
    return hits.length;
  }
}
