// The label and the note that a person gives a design.
import {Refusal, post} from './api.js';
import {announce, button, field, form, h, openDialog} from './dom.js';
import {timeText} from './format.js';

const kLongestLabel = '200'; // characters
const kLongestNote = '4000';

function fields({label = '', note = ''}) {
  const name = h('input', {name: 'label', value: label, maxlength: kLongestLabel, autocomplete: 'off'});
  const remark = h('textarea', {name: 'note', rows: '4', maxlength: kLongestNote});
  remark.value = note;
  return [field('Label', name, 'A few words, such as “Release 2”'), field('Note', remark)];
}

// What somebody else has changed meanwhile must not be undone.
function changesOf(design, values) {
  const texts = Object.entries(values).map(([name, value]) => [name, value.trim()]);
  return Object.fromEntries(texts.filter(([name, text]) => (design[name] ?? '').trim() !== text));
}

function words(changes) {
  const names = Object.keys(changes);
  if (!names.length) return 'Nothing has changed';
  const what = names.join(' and ');
  return `${what.charAt(0).toUpperCase()}${what.slice(1)} ${names.some((name) => changes[name]) ? 'saved' : 'removed'}`;
}

// The page behind a dialog is not read aloud, so the dialog says by itself what went wrong.
function edit(design) {
  const fault = h('p', {role: 'alert', class: 'bad'});
  const save = async (values) => {
    const changes = changesOf(design, values);
    fault.textContent = '';
    try {
      if (Object.keys(changes).length) await post(`designs/${design.id}/label`, changes);
    } catch (error) {
      fault.textContent = error instanceof Refusal ? error.message : `${error.message} What you typed is kept.`;
      return;
    }
    dialog.close();
    announce(words(changes));
  };
  const cancel = button('Cancel', () => dialog.close(), {class: 'plain'});
  const content = form(
    save,
    {class: 'label-form'},
    fields(design),
    fault,
    h('div', {class: 'actions'}, cancel, h('button', {}, 'Save')),
  );
  const dialog = openDialog(`Design of ${timeText(design.receivedAt)}`, content, () => {});
}

/** A cell with label and note, and the button that changes them. */
export function labelCell(design) {
  const isLabelled = Boolean(design.label || design.note);
  const name = isLabelled ? `Edit label of design ${design.id}` : `Add label to design ${design.id}`;
  const action = isLabelled ? 'Edit' : 'Add label';
  return [
    design.label && h('span', {class: 'label'}, design.label),
    design.note && h('small', {class: 'note'}, design.note),
    button(action, () => edit(design), {class: 'quiet', 'aria-label': name}),
  ].filter(Boolean);
}
