// From nothing to the first design: the connection, the sign-in line, the script of each file, the check per file.
import {get} from '../api.js';
import {announce, button, copy, field, h, table} from '../dom.js';
import {designs} from '../data.js';
import {duration, fileTitle, when} from '../format.js';
import {keepingFocus} from '../page.js';
import {placed, requestDesign, resultOf} from '../work.js';

const kLook = 5000; // ms

const checks = new Map(); // file -> report, for as long as the window is open
let isChecking = false;

function step(number, title, state, ...content) {
  return h(
    'section',
    {class: `setup-step ${state}`},
    h(
      'h2',
      {},
      h('span', {class: 'step-number', 'aria-hidden': 'true'}, state === 'done' ? '✓' : number),
      title,
      state === 'done' && h('span', {class: 'offscreen'}, ' (done)'),
    ),
    h('div', {class: 'step-content'}, content),
  );
}

function connection(setup, status) {
  const row = (name, value) => h('div', {}, h('dt', {}, name), h('dd', {}, value));
  return h(
    'dl',
    {class: 'facts-list', 'aria-label': 'Connection'},
    row(
      'Plug-in',
      status.connected
        ? [h('span', {class: 'state completed'}, 'connected'), status.pluginVersion && ` ${status.pluginVersion}`]
        : h('span', {class: 'state queued'}, status.secondsSincePoll === null ? 'never connected' : 'not connected'),
    ),
    row('Last contact', status.secondsSincePoll === null ? 'never' : `${duration(status.secondsSincePoll)} ago`),
    row(
      'Last sign-in',
      status.lastSignIn ? [status.lastSignIn.name, ', ', when(status.lastSignIn.receivedAt)] : 'never',
    ),
    row('Service', [setup.version, ' at ', h('code', {}, setup.url)]),
    row('Data folder', h('code', {}, setup.dataFolder)),
  );
}

function signIn(setup, status) {
  const line = h('input', {
    readonly: true,
    value: setup.signInLine,
    spellcheck: 'false',
    class: 'mono',
    onfocus: (event) => event.target.select(),
  });
  const isDone = status.connected;
  return step(
    '1',
    'Connect FileMaker',
    isDone ? 'done' : 'open',
    !isDone &&
      h(
        'p',
        {},
        'Install the plug-in and tick it in FileMaker Pro > Settings > Plug-Ins. Then evaluate this line ' +
          'once, in the Data Viewer or in a script. FileMaker remembers it.',
      ),
    field('Sign-in line', line, setup.hasKey ? 'It contains the key of this service. Keep it to yourself.' : undefined),
    button('Copy the line', () => copy(setup.signInLine, 'The line'), {class: isDone ? 'plain' : null}),
  );
}

function livePush() {
  return step(
    '2',
    'Add the script “Varnix Live Push” to your file',
    [...checks.values()].some((check) => check.hasScript) ? 'done' : 'open',
    h(
      'p',
      {},
      'A file needs a script of this name to save its design. Put the script on the clipboard, then paste it into ' +
        'the list of scripts in the Script Workspace.',
    ),
    button(
      "Put Varnix Live Push on FileMaker's clipboard",
      () => placed('live-push', 'The script “Varnix Live Push”'),
      {class: 'plain'},
    ),
  );
}

async function check(page, update) {
  isChecking = true;
  update();
  try {
    const files = (await resultOf('LIST_FILES', {}, page.signal)).split(/\r\n|\r|\n/).filter(Boolean);
    for (const name of [...checks.keys()]) if (!files.includes(name)) checks.delete(name);
    for (const name of files) checks.set(name, {isPending: true});
    update();
    for (const name of files) {
      const report = JSON.parse(await resultOf('DEBUG_CONTEXT', {fileName: name}, page.signal));
      checks.set(name, {
        hasScript: report.livePushVisible === '1',
        privilegeSet: report.privilegeSet,
        account: report.account,
        isAnswered: report.privilegeSet !== undefined && report.privilegeSet !== '?' && report.targetFile === name,
      });
      update();
    }
    announce(files.length ? 'All files checked' : 'No file is open in FileMaker');
  } finally {
    isChecking = false;
    for (const [name, state] of checks) if (state.isPending) checks.delete(name);
    update();
  }
}

function fileRow(name, state, newest) {
  const design = newest.get(name);
  const fetchNow = button('Get design now', () => requestDesign(name), {
    class: 'plain',
    'aria-label': `Get design now: ${name}`,
  });
  return h(
    'tr',
    {},
    h('th', {scope: 'row'}, name),
    h(
      'td',
      {},
      state.isPending
        ? 'checking…'
        : state.hasScript
          ? h('span', {class: 'good'}, 'found')
          : h('span', {class: 'bad'}, 'missing, or hidden from this account'),
    ),
    h(
      'td',
      {},
      state.isPending ? '' : state.privilegeSet || 'unknown',
      state.account && h('small', {}, `account ${state.account}`),
    ),
    h('td', {}, design ? h('a', {href: `#/designs/${design.id}`}, when(design.receivedAt)) : 'none yet'),
    h('td', {}, fetchNow),
  );
}

const kColumns = ['File', 'Varnix Live Push', 'Privilege set', 'Newest design', {name: 'Action', isHidden: true}];

function fileCheck(page, newest, update, hasPlugin) {
  const run = button('Check the open files', () => check(page, update), {
    class: checks.size || !hasPlugin ? 'plain' : null,
    'aria-disabled': isChecking && 'true', // keeps the focus, unlike disabled
  });
  const hasDesign = newest.size > 0;
  return step(
    '3',
    'Get the first design',
    hasDesign ? 'done' : 'open',
    h(
      'p',
      {},
      'The check asks FileMaker which files are open, whether each has the script, and which privileges the ' +
        'current account has. Saving a design needs full access.',
    ),
    run,
    isChecking &&
      h(
        'p',
        {class: 'hint', role: 'note'},
        'Checking. FileMaker asks for commands every three seconds while it is idle.',
      ),
    checks.size > 0 &&
      table(
        'Open files',
        kColumns,
        [...checks].map(([name, state]) => fileRow(name, state, newest)),
      ),
    hasDesign && h('p', {}, 'Designs that have arrived are in ', h('a', {href: '#/files'}, 'Files'), '.'),
  );
}

async function load(signal) {
  const [setup, status, all] = await Promise.all([get('setup', signal), get('status', signal), designs(signal)]);
  return {setup, status, newest: all.map((design) => [fileTitle(design.fileName), design])};
}

export function show(page) {
  const facts = h('div');
  const steps = h('div', {}, h('p', {class: 'loading'}, 'Loading…'));
  page.show('Setup', {}, facts, steps);
  let data;
  let shown;
  const update = () => {
    if (!data || page.signal.aborted) return;
    const {setup, status} = data;
    const newest = new Map(data.newest);
    facts.replaceChildren(connection(setup, status));
    // Buttons at work stay as long as nothing that the steps show has changed.
    const print = JSON.stringify([setup, status.connected, isChecking, [...checks], [...newest]]);
    if (print === shown) return;
    shown = print;
    keepingFocus(steps, () =>
      steps.replaceChildren(signIn(setup, status), livePush(), fileCheck(page, newest, update, status.connected)),
    );
  };
  const refresh = page.watch({
    topics: ['status', 'designs', 'records'],
    load: async (signal) => (data = await load(signal)),
    apply: update,
    failed: (error) => steps.replaceChildren(h('p', {class: 'warning'}, error.message)),
  });
  const timer = setInterval(refresh, kLook);
  page.signal.addEventListener('abort', () => clearInterval(timer));
}
