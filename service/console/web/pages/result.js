// One command: how it went, and its result as what it is.
import {get, getText, post, segment} from '../api.js';
import {codeBlock} from '../code.js';
import {announce, button, confirmed, copy, empty, h, properties, save} from '../dom.js';
import {when} from '../format.js';
import {clipKind} from '../kinds.js';
import {keepingFocus} from '../page.js';
import {commandName, isOpen, reasonOf, repeat} from '../work.js';
import {openState, withdrawal} from './commands.js';

const kShownXml = 200000; // characters

function facts(command) {
  const row = (name, value) => value && h('div', {}, h('dt', {}, name), h('dd', {}, value));
  return h(
    'dl',
    {class: 'facts-list', 'aria-label': 'Facts'},
    row('State', h('span', {class: `state ${command.state}`}, command.state)),
    row('File', command.fileName),
    row('Kind', command.xmlType && clipKind(command.xmlType)),
    row('Sent', when(command.queuedAt)),
    row('Delivered', command.deliveredAt && when(command.deliveredAt)),
    row('Finished', command.finishedAt && when(command.finishedAt)),
  );
}

const lines = (text) => text.split(/\r\n|\r|\n/).filter(Boolean);

const asList = (label) => (text) =>
  lines(text).length
    ? h(
        'ul',
        {class: 'plain-list', 'aria-label': label},
        lines(text).map((line) => h('li', {}, line)),
      )
    : h('p', {class: 'hint'}, 'The list is empty.');

function asTable(text) {
  let values;
  try {
    values = JSON.parse(text);
  } catch {
    return asCode(text);
  }
  const shown = (value) => {
    if (Array.isArray(value))
      return h(
        'ul',
        {},
        value.map((entry) => h('li', {}, String(entry))),
      );
    return value === '' ? '(empty)' : String(value);
  };
  return properties(
    'Context',
    Object.entries(values).map(([name, value]) => [name, shown(value)]),
  );
}

function asCode(text) {
  return [
    text.length > kShownXml && h('p', {class: 'hint'}, 'Only the beginning is shown.'),
    codeBlock(lines(text.slice(0, kShownXml)), {label: 'Result', line: (line) => line, numbered: true}),
  ];
}

const kShow = {
  LIST_FILES: asList('Open files'),
  GET_CLIPBOARD_FORMATS: asList('Formats'),
  DEBUG_CONTEXT: asTable,
  GET_CLIPBOARD: asCode,
};

function resultElement(command, text, design) {
  if (command.type === 'SET_CLIPBOARD')
    return h('p', {}, "The objects are on FileMaker's clipboard. Paste them where they belong.");
  if (command.type === 'GET_SCHEMA') {
    return h(
      'p',
      {},
      design
        ? ['The design has arrived: ', h('a', {href: `#/designs/${design.id}`}, design.fileName)]
        : 'The design is the same as the newest one of its file, or is still being read.',
      ' ',
      h('a', {href: '#/files'}, 'Go to Files'),
    );
  }
  return [
    h(
      'div',
      {class: 'actions'},
      button('Copy', () => copy(text, 'Result'), {class: 'plain'}),
      button('Download', () => save(text, `${command.type.toLowerCase()}.txt`, 'text/plain'), {class: 'plain'}),
    ),
    (kShow[command.type] ?? asCode)(text),
  ];
}

async function load(id, signal) {
  const command = await get(`commands/${segment(id)}`, signal);
  const isText = command.result && command.type !== 'GET_SCHEMA';
  const text = isText ? await getText(`commands/${segment(id)}/result`, signal) : '';
  const {designs} = command.type === 'GET_SCHEMA' ? await get('designs', signal) : {designs: []};
  return {command, text, design: designs.find((design) => design.id === command.result)};
}

function render({command, text, design}) {
  const remove = async () => {
    if (
      !(await confirmed(
        'Delete this command?',
        'It disappears from the history. Its result is kept.',
        'Delete the command',
      ))
    )
      return;
    await post(`commands/${segment(command.id)}/delete`);
    announce('Command deleted');
    location.hash = '#/commands';
  };
  const again = async () => {
    await repeat(command);
    location.hash = '#/commands';
  };
  return [
    facts(command),
    isOpen(command) && [h('p', {}, openState(command)), h('p', {}, withdrawal(command))],
    reasonOf(command) && h('p', {class: 'warning'}, reasonOf(command)),
    command.diagnostics?.length > 0 &&
      h(
        'section',
        {},
        h('h2', {}, 'Diagnostics'),
        h(
          'ol',
          {class: 'plain-list'},
          command.diagnostics.map((entry) =>
            h('li', {}, when(entry.receivedAt), ` ${entry.message} `, h('small', {}, `${entry.code}, ${entry.status}`)),
          ),
        ),
      ),
    (command.state === 'completed' || command.result) &&
      h(
        'section',
        {},
        h('h2', {}, command.state === 'completed' ? 'Result' : 'Result that came late'),
        resultElement(command, text, design),
      ),
    !isOpen(command) &&
      h(
        'div',
        {class: 'actions'},
        button('Repeat', again, {class: 'plain'}),
        button('Delete', remove, {class: 'plain'}),
      ),
  ]
    .flat(Infinity)
    .filter(Boolean);
}

export function show(page) {
  const place = h('div', {}, h('p', {class: 'loading'}, 'Loading…'));
  page.show('Command', {trail: [['Commands', '#/commands']]}, place);
  page.watch({
    topics: ['commands', 'designs'],
    load: (signal) => load(page.params.command, signal),
    apply: (data) => {
      page.heading.textContent = commandName(data.command.type);
      keepingFocus(place, () => place.replaceChildren(...render(data)));
    },
    failed: (error) => place.replaceChildren(empty('This command cannot be shown', h('p', {}, error.message))),
  });
}
