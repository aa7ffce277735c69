// The six commands as forms, what is at work, and what was asked before.
import {get, post, segment} from '../api.js';
import {announce, button, confirmed, field, form, h, select} from '../dom.js';
import {designs} from '../data.js';
import {duration, fileTitle, when} from '../format.js';
import {clipKind, clipKinds} from '../kinds.js';
import {list} from '../list.js';
import {keepingFocus} from '../page.js';
import {commandName, isOpen, kWait, kWaits, queue, reasonOf, repeat} from '../work.js';

const kHistory = 200;
const kSecond = 1000; // ms

const kDescriptions = {
  GET_SCHEMA: 'The design of a file, saved by its script “Varnix Live Push”.',
  DEBUG_CONTEXT: 'Windows, account, privileges and scripts, as the plug-in sees them.',
  GET_CLIPBOARD: 'The FileMaker objects on the clipboard. They become a clip.',
  LIST_FILES: 'The names of the open files.',
  GET_CLIPBOARD_FORMATS: 'The type names of what is on the clipboard.',
  SET_CLIPBOARD: 'Turns FileMaker XML into objects that you can paste in FileMaker.',
};

const kinds = (first) =>
  select([...first, ...clipKinds.map(([key, name]) => [key, `${name} (${key})`])], first[0]?.[0] ?? 'XMSS', {
    name: 'xmlType',
  });

function fileField(suggestions, hint) {
  return field('File', h('input', {name: 'fileName', list: suggestions.id, autocomplete: 'off'}), hint);
}

function fieldsOf(type, suggestions) {
  if (type === 'GET_CLIPBOARD') return field('Look first for', kinds([['', 'Anything']]));
  if (type === 'DEBUG_CONTEXT') return fileField(suggestions, 'Leave empty for the active file');
  if (type === 'GET_SCHEMA') return fileField(suggestions, 'Leave empty for the file that signed in');
  if (type !== 'SET_CLIPBOARD') return undefined;
  return [
    field('Kind', kinds([])),
    field(
      'FileMaker XML',
      h('textarea', {
        name: 'xmlContent',
        rows: '2',
        required: true,
        spellcheck: 'false',
        placeholder: '<fmxmlsnippet type="FMObjectList">…',
      }),
    ),
  ];
}

function commandForm(type, suggestions) {
  return form(
    async (values) => {
      await queue(type, values);
      announce(`${commandName(type)}: waiting for FileMaker`);
    },
    {class: 'card', 'aria-label': commandName(type)},
    h('h3', {}, commandName(type)),
    h('p', {class: 'hint'}, kDescriptions[type]),
    fieldsOf(type, suggestions),
    h('button', {}, commandName(type)),
  );
}

// Where a command is, in words.
function stateText(command, seconds) {
  if (command.state === 'queued') return `Waiting for FileMaker, ${duration(seconds)}`;
  if (command.state !== 'delivered') return command.state;
  if (command.type !== 'GET_SCHEMA') return `In progress for ${duration(seconds)}`;
  return seconds <= kWait
    ? `In progress for ${duration(seconds)}. ${kWaits} ${duration(kWait - seconds)} left.`
    : `In progress for ${duration(seconds)}. FileMaker is saving the design, or is busy.`;
}

/** The same as elements that follow the time while they are shown. Screen readers are not disturbed by it. */
export function openState(command) {
  const text = h('span', {class: 'state-text'});
  const isWait = command.type === 'GET_SCHEMA' && command.state === 'delivered';
  const meter = isWait && h('progress', {max: String(kWait), 'aria-hidden': 'true'});
  const start = performance.now();
  const tick = () => {
    const seconds = command.secondsInState + (performance.now() - start) / 1000;
    text.textContent = stateText(command, seconds);
    if (meter) meter.value = Math.min(seconds, kWait);
  };
  const timer = setInterval(() => (text.isConnected ? tick() : clearInterval(timer)), kSecond);
  tick();
  return [text, meter];
}

async function cancel(command) {
  await post(`commands/${segment(command.id)}/cancel`);
  announce('Command cancelled');
}

async function forget(command) {
  const isSure = await confirmed(
    'Forget this command?',
    'Varnix will stop waiting for it. FileMaker may still carry it out: a fetched command cannot be recalled.',
    'Forget the command',
  );
  if (!isSure) return;
  await post(`commands/${segment(command.id)}/forget`);
  announce('Command forgotten. FileMaker may still carry it out.');
}

/** The button that withdraws an open command. */
export function withdrawal(command) {
  const [verb, action] = command.state === 'queued' ? ['Cancel', cancel] : ['Forget', forget];
  const name = `${verb} ${commandName(command.type)}`;
  return button(verb, () => action(command), {class: 'plain', 'aria-label': name});
}

const about = (command) => [command.fileName, command.xmlType && clipKind(command.xmlType)].filter(Boolean).join(', ');

function openCommand(command) {
  return h(
    'li',
    {},
    h('a', {href: `#/commands/${segment(command.id)}`}, commandName(command.type)),
    about(command) && h('span', {class: 'by'}, about(command)),
    openState(command),
    withdrawal(command),
  );
}

function columns() {
  return [
    {
      name: 'Command',
      text: (command) => commandName(command.type),
      cell: (command) => h('a', {href: `#/commands/${segment(command.id)}`}, commandName(command.type)),
    },
    {name: 'About', text: about, cell: about},
    {
      name: 'State',
      text: (command) => command.state,
      cell: (command) => [
        h('span', {class: `state ${command.state}`}, command.state),
        reasonOf(command) && h('small', {}, reasonOf(command)),
      ],
    },
    {name: 'Sent', text: (command) => command.queuedAt, cell: (command) => when(command.queuedAt)},
    {
      name: '',
      label: 'Repeat',
      sortable: false,
      class: 'links',
      text: () => '',
      cell: (command) =>
        !isOpen(command) &&
        button('Repeat', () => repeat(command), {
          class: 'quiet',
          'aria-label': `Repeat ${commandName(command.type)} of ${when(command.queuedAt).textContent}`,
        }),
    },
  ];
}

async function load(signal) {
  const {commands} = await get(`commands?limit=${kHistory}`, signal);
  return commands.reverse();
}

export function show(page) {
  const suggestions = h('datalist', {id: 'file-names'});
  const work = h('ul', {class: 'work', 'aria-label': 'In progress'});
  const table = list({
    page,
    label: 'History',
    noun: 'command',
    columns: columns(),
    emptyText: 'No commands yet.',
  });
  page.show(
    'Commands',
    {},
    suggestions,
    h('section', {}, h('h2', {}, 'In progress'), work),
    h(
      'section',
      {},
      h('h2', {}, 'Ask FileMaker'),
      h(
        'div',
        {class: 'cards'},
        Object.keys(kDescriptions).map((type) => commandForm(type, suggestions)),
      ),
    ),
    h('section', {}, h('h2', {}, 'History'), table.element),
  );
  page.watch({
    topics: ['designs'],
    load: designs,
    apply: (all) =>
      suggestions.replaceChildren(
        ...[...new Set(all.map((design) => fileTitle(design.fileName)))].map((value) => h('option', {value})),
      ),
  });
  page.watch({
    topics: ['commands'],
    load,
    apply: (commands) => {
      const open = commands.filter(isOpen);
      keepingFocus(work, () =>
        work.replaceChildren(
          ...(open.length ? open.map(openCommand) : [h('li', {class: 'hint'}, 'Nothing in progress.')]),
        ),
      );
      table.update(commands.filter((command) => !isOpen(command)));
    },
  });
}
