// Pointer, wheel and keys over the picture of the relationships.

/** One step of enlargement. */
export const kStep = 1.25;

const kWheelStep = 1.1;
const kNotch = 100; // a wheel turns in steps of at least this; a touch pad scrolls in smaller ones
const kDrag = 4; // pixels that make a click a drag
const kPart = 10; // an arrow key moves by this part of what is shown

function pointIn(element, event) {
  const point = new DOMPoint(event.clientX, event.clientY);
  const {x, y} = point.matrixTransform(element.getScreenCTM().inverse());
  return [x, y];
}

/** Has the picture follow pointer, wheel and keys. */
export function listen(graph) {
  const {element} = graph;
  drag(graph);
  element.addEventListener('wheel', (event) => wheel(graph, event), {passive: false});
  element.addEventListener('focusin', ({target}) => {
    mark(element, target.closest('.occurrence'));
    if (target !== element && target.matches(':focus-visible')) graph.reveal(target);
  });
  element.addEventListener('pointerover', (event) => mark(element, event.target.closest('.occurrence')));
  const keys = {
    '+': () => graph.enlarge(kStep),
    '=': () => graph.enlarge(kStep),
    '-': () => graph.enlarge(1 / kStep),
    0: () => graph.fit(),
    ArrowLeft: () => graph.move(-graph.view.width / kPart, 0),
    ArrowRight: () => graph.move(graph.view.width / kPart, 0),
    ArrowUp: () => graph.move(0, -graph.view.height / kPart),
    ArrowDown: () => graph.move(0, graph.view.height / kPart),
  };
  element.addEventListener('keydown', (event) => {
    if (!keys[event.key] || event.ctrlKey || event.metaKey || event.altKey) return;
    event.preventDefault();
    keys[event.key]();
  });
}

function wheel(graph, event) {
  event.preventDefault();
  const isWheel = event.ctrlKey || event.metaKey || event.deltaMode !== 0 || Math.abs(event.deltaY) >= kNotch;
  const scale = graph.view.width / graph.element.clientWidth;
  if (!isWheel) graph.move(event.deltaX * scale, event.deltaY * scale);
  else graph.enlarge(event.deltaY < 0 ? kWheelStep : 1 / kWheelStep, pointIn(graph.element, event));
}

function drag(graph) {
  const {element} = graph;
  let from;
  let hasMoved = false;
  element.addEventListener('pointerdown', (event) => {
    if (event.button !== 0) return;
    from = pointIn(element, event);
    hasMoved = false;
  });
  element.addEventListener('pointermove', (event) => {
    if (!from) return;
    const [x, y] = pointIn(element, event);
    const pixels = (Math.hypot(x - from[0], y - from[1]) * element.clientWidth) / graph.view.width;
    if (!hasMoved && pixels < kDrag) return;
    if (!hasMoved) element.setPointerCapture(event.pointerId);
    hasMoved = true;
    graph.move(from[0] - x, from[1] - y);
  });
  for (const type of ['pointerup', 'pointercancel']) element.addEventListener(type, () => (from = undefined));
  element.addEventListener('dragstart', (event) => event.preventDefault());
  const onClick = (event) => {
    if (hasMoved) event.preventDefault(); // not to follow a link
  };
  element.addEventListener('click', onClick, true);
}

// The lines of the occurrence under the pointer or with the focus.
function mark(element, occurrence) {
  for (const line of element.querySelectorAll('.relationship')) {
    const {left, right} = line.dataset;
    const key = occurrence?.dataset.key;
    line.classList.toggle('near', key !== undefined && (left === key || right === key));
  }
}
