// Pointer, wheel and keys over the picture of the relationships.

/** One step of enlargement. */
export const kStep = 1.25;

function pointIn(element, event) {
  const point = new DOMPoint(event.clientX, event.clientY);
  const {x, y} = point.matrixTransform(element.getScreenCTM().inverse());
  return [x, y];
}

/** Has the picture follow pointer, wheel and keys. `view` is the part of it that is shown. */
export function listen(element, {view, enlarge, move, fit}) {
  let from;
  let moved = false;
  element.addEventListener(
    'wheel',
    (event) => {
      event.preventDefault();
      const scale = view.width / element.clientWidth;
      if (event.ctrlKey || event.metaKey || event.deltaMode !== 0 || Math.abs(event.deltaY) >= 100)
        enlarge(event.deltaY < 0 ? 1.1 : 1 / 1.1, pointIn(element, event));
      else move(event.deltaX * scale, event.deltaY * scale);
    },
    {passive: false},
  );
  element.addEventListener('pointerdown', (event) => {
    if (event.button !== 0) return;
    from = pointIn(element, event);
    moved = false;
  });
  element.addEventListener('pointermove', (event) => {
    if (!from) return;
    const [x, y] = pointIn(element, event);
    if (!moved && (Math.hypot(x - from[0], y - from[1]) * element.clientWidth) / view.width < 4) return;
    if (!moved) element.setPointerCapture(event.pointerId);
    moved = true;
    move(from[0] - x, from[1] - y);
  });
  const end = () => (from = undefined);
  element.addEventListener('pointerup', end);
  element.addEventListener('pointercancel', end);
  element.addEventListener('dragstart', (event) => event.preventDefault());
  element.addEventListener(
    'click',
    (event) => {
      if (moved) event.preventDefault();
    },
    true,
  );
  element.addEventListener('focusin', (event) => {
    element.querySelectorAll('.near').forEach((near) => near.classList.remove('near'));
    mark(element, event.target.closest('.occurrence'));
  });
  element.addEventListener('pointerover', (event) => {
    element.querySelectorAll('.near').forEach((near) => near.classList.remove('near'));
    mark(element, event.target.closest('.occurrence'));
  });
  const keys = {
    '+': () => enlarge(kStep),
    '=': () => enlarge(kStep),
    '-': () => enlarge(1 / kStep),
    0: fit,
    ArrowLeft: () => move(-view.width / 10, 0),
    ArrowRight: () => move(view.width / 10, 0),
    ArrowUp: () => move(0, -view.height / 10),
    ArrowDown: () => move(0, view.height / 10),
  };
  element.addEventListener('keydown', (event) => {
    if (!keys[event.key] || event.ctrlKey || event.metaKey || event.altKey) return;
    event.preventDefault();
    keys[event.key]();
  });
}

// The lines of the occurrence under the pointer.
function mark(element, occurrence) {
  if (!occurrence) return;
  const {key} = occurrence.dataset;
  for (const line of element.querySelectorAll('.relationship')) {
    if (line.dataset.left === key || line.dataset.right === key) line.classList.add('near');
  }
}
