// Elements, small controls and the status line. Whatever comes from an export becomes text, never markup.

const kShown = 7000; // ms
const kSvg = 'http://www.w3.org/2000/svg';

function fill(element, attributes, children) {
  for (const [name, value] of Object.entries(attributes ?? {})) {
    if (value === undefined || value === null || value === false) continue;
    if (name.startsWith('on')) element.addEventListener(name.slice(2), value);
    else element.setAttribute(name, value === true ? '' : value);
  }
  element.append(
    ...children.flat(Infinity).filter((child) => child !== undefined && child !== null && child !== false),
  );
  return element;
}

/** An element with attributes, listeners (`onclick`) and children: elements, texts, lists of both, or nothing. */
export function h(tag, attributes, ...children) {
  return fill(document.createElement(tag), attributes, children);
}

/** The same for SVG. */
export function svg(tag, attributes, ...children) {
  return fill(document.createElementNS(kSvg, tag), attributes, children);
}

/** A number or the like after a heading or in a link. */
export const amount = (text) => h('span', {class: 'amount'}, ` ${text}`);

let nextId = 0;
export const uniqueId = (stem) => `${stem}-${++nextId}`;

/** Shows `text` in the status region, errors until they are dismissed, and has screen readers read it. */
export function announce(text, isError = false) {
  showStatus(text, isError);
  const clear = () => (document.hidden ? clearLater() : dismiss());
  const clearLater = () => (announce.timer = setTimeout(clear, kShown));
  if (!isError) clearLater();
}

/** The same until something else is announced, with the seconds that pass, which screen readers do not read. */
export function announceWork(text) {
  const start = performance.now();
  const clock = h('span', {class: 'clock', 'aria-hidden': 'true'});
  showStatus([text, clock]);
  announce.timer = setInterval(() => (clock.textContent = `${Math.round((performance.now() - start) / 1000)} s`), 1000);
}

export const dismiss = () => showStatus('');

function showStatus(content, isError = false) {
  const status = document.getElementById('status');
  status.textContent = '';
  status.parentElement.classList.toggle('shown', content !== '');
  status.parentElement.classList.toggle('error', isError);
  document.getElementById('dismiss').hidden = !isError;
  clearTimeout(announce.timer);
  requestAnimationFrame(() => status.replaceChildren(...[content].flat()));
}

/** A button that runs `action`, is disabled meanwhile, and announces what goes wrong. */
export function button(label, action, attributes) {
  const element = h('button', {type: 'button', ...attributes}, label);
  element.addEventListener('click', () => whileBusy(element, action));
  return element;
}

export async function whileBusy(control, action) {
  if (control.getAttribute('aria-disabled') === 'true') return;
  control.setAttribute('aria-disabled', 'true');
  try {
    await action();
  } catch (error) {
    if (error.name !== 'AbortError') announce(error.message, true);
  } finally {
    control.removeAttribute('aria-disabled');
  }
}

/** A form whose submission runs `action(values)`; what was typed stays until `action` clears it. */
export function form(action, attributes, ...children) {
  const element = h('form', {...attributes}, ...children);
  element.addEventListener('submit', (event) => {
    event.preventDefault();
    whileBusy(event.submitter ?? element, () => action(Object.fromEntries(new FormData(element, event.submitter))));
  });
  return element;
}

/** A control with its visible label. */
export function field(label, control, hint) {
  control.id ||= uniqueId('field');
  const note = hint && h('small', {id: `${control.id}-hint`}, hint);
  if (note) control.setAttribute('aria-describedby', note.id);
  return h('div', {class: 'field'}, h('label', {for: control.id}, label), control, note);
}

export function select(options, value, attributes) {
  return h(
    'select',
    attributes,
    options.map(([key, text]) => h('option', {value: key, selected: key === value}, text)),
  );
}

/** A table in a box that scrolls sideways. `columns` are names, or {name, class, isHidden}; none: it has no head. */
export function table(label, columns, rows, attributes) {
  const cells = columns.map((column) => {
    const {name, isHidden, ...rest} = typeof column === 'string' ? {name: column} : column;
    return h('th', {scope: 'col', ...rest}, isHidden ? h('span', {class: 'offscreen'}, name) : name);
  });
  const head = cells.length > 0 && h('thead', {}, h('tr', {}, cells));
  return h('div', {class: 'table-box'}, h('table', {'aria-label': label, ...attributes}, head, h('tbody', {}, rows)));
}

/** A table of [name, value] pairs. */
export function properties(label, pairs) {
  const rows = pairs.map(([name, value]) => h('tr', {}, h('th', {scope: 'row'}, name), h('td', {}, value)));
  return table(label, [], rows, {class: 'properties'});
}

/**
 * Opens a dialog, which Escape and `dialog.close()` end. `ended` gets its `returnValue` then. The focus goes back to the
 * control that opened it, or to the one that has been drawn in its place.
 */
export function openDialog(title, content, ended) {
  const id = uniqueId('title');
  const dialog = h('dialog', {'aria-labelledby': id}, h('h2', {id}, title), content);
  const opener = document.activeElement;
  const label = opener.getAttribute('aria-label');
  dialog.addEventListener('close', () => {
    dialog.remove();
    const now = [...document.querySelectorAll('main button')].find((one) => one.getAttribute('aria-label') === label);
    if (!opener.isConnected) (now ?? document.getElementById('main')).focus({preventScroll: true});
    ended(dialog.returnValue);
  });
  document.body.append(dialog);
  dialog.showModal();
  return dialog;
}

/** Asks before something is deleted. Resolves to whether it was confirmed. */
export function confirmed(question, explanation, verb) {
  const choices = h(
    'form',
    {method: 'dialog', class: 'actions'},
    h('button', {value: 'no', class: 'plain'}, 'Cancel'),
    h('button', {value: 'yes', class: 'danger'}, verb),
  );
  return new Promise((resolve) => {
    openDialog(question, [h('p', {}, explanation), choices], (choice) => resolve(choice === 'yes'));
  });
}

/** What a page says where there is nothing yet, and what to do next. */
export function empty(title, ...content) {
  return h('div', {class: 'empty'}, h('p', {class: 'empty-title'}, title), content);
}

/** Puts `text` on the clipboard, also where browsers withhold theirs: pages that come without encryption. */
export async function copy(text, what) {
  if (navigator.clipboard) {
    await navigator.clipboard.writeText(text);
  } else {
    const focused = document.activeElement;
    const area = h('textarea', {class: 'offscreen', 'aria-hidden': 'true'});
    area.value = text;
    document.body.append(area);
    area.select();
    const isCopied = document.execCommand('copy');
    area.remove();
    focused?.focus({preventScroll: true});
    if (!isCopied) throw new Error('The browser does not allow copying. Select the text and copy it.');
  }
  announce(`${what} copied`);
}

/** Has the browser save `content` as a file. */
export function save(content, name, type) {
  const url = URL.createObjectURL(new Blob([content], {type}));
  const link = h('a', {href: url, download: name});
  link.click();
  setTimeout(() => URL.revokeObjectURL(url), 1000);
}

/** Calls `action` once things have been quiet for `milliseconds`. */
export function settled(action, milliseconds) {
  let timer;
  return () => {
    clearTimeout(timer);
    timer = setTimeout(action, milliseconds);
  };
}
