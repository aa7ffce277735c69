// The frame: chooses the page for the address, marks it in the navigation, and shows the state of the connection.
import {Refusal, get, look, onServiceState, openSession, serviceState} from './api.js';
import {announce, dismiss, empty, h} from './dom.js';
import {duration} from './format.js';
import {connect, subscribe} from './live.js';
import {Page} from './page.js';
import * as changes from './pages/changes.js';
import * as clip from './pages/clip.js';
import * as clips from './pages/clips.js';
import * as commands from './pages/commands.js';
import * as compareClips from './pages/compare-clips.js';
import * as design from './pages/design.js';
import * as element from './pages/element.js';
import * as file from './pages/file.js';
import * as files from './pages/files.js';
import * as relationships from './pages/relationships.js';
import * as report from './pages/report.js';
import * as result from './pages/result.js';
import * as search from './pages/search.js';
import * as setup from './pages/setup.js';
import * as storage from './pages/storage.js';

// Address, page, and the entry of the navigation that it belongs to.
const kRoutes = [
  ['/files', files, 'files'],
  ['/files/:file', file, 'files'],
  ['/designs/:design', design, 'files'],
  ['/designs/:design/elements/:key', element, 'files'],
  ['/designs/:design/relationships', relationships, 'files'],
  ['/designs/:design/report', report, 'files'],
  ['/changes/:older/:newer', changes, 'files'],
  ['/search', search, 'search'],
  ['/clips', clips, 'clips'],
  ['/clips/:clip', clip, 'clips'],
  ['/clips/:older/compare/:newer', compareClips, 'clips'],
  ['/commands', commands, 'commands'],
  ['/commands/:command', result, 'commands'],
  ['/storage', storage, 'storage'],
  ['/setup', setup, 'setup'],
];
const kRetry = 2000; // ms

const main = document.getElementById('main');
const positions = new Map(); // address -> how far it was scrolled
let current;
let address;
let followedLink = false;

function match(pattern, path) {
  const wanted = pattern.split('/');
  const given = path.split('/');
  if (wanted.length !== given.length) return undefined;
  const params = {};
  for (let i = 0; i < wanted.length; ++i) {
    if (wanted[i].startsWith(':')) params[wanted[i].slice(1)] = decode(given[i]);
    else if (wanted[i] !== given[i]) return undefined;
  }
  return params;
}

function decode(text) {
  try {
    return decodeURIComponent(text);
  } catch {
    return text;
  }
}

function markNavigation(section) {
  for (const link of document.querySelectorAll('.top nav a')) {
    if (link.hash === `#/${section}`) link.setAttribute('aria-current', 'page');
    else link.removeAttribute('aria-current');
  }
}

async function firstPage() {
  try {
    return (await get('status')).connected ? '/files' : '/setup';
  } catch {
    return '/setup';
  }
}

// The address keeps its token until the service has taken or refused it.
async function exchangeToken() {
  const {hash} = location;
  try {
    await openSession(hash.slice('#token='.length));
  } catch (error) {
    if (!(error instanceof Refusal) || error.status >= 500) {
      showWaiting(error.message);
      await new Promise((resolve) => setTimeout(resolve, kRetry));
      return;
    }
    await look();
    if (serviceState() !== 'ok') announce(error.message, true); // an old session may still be open
  }
  if (location.hash === hash) history.replaceState(null, '', '/');
  connect();
}

function showWaiting(reason) {
  if (main.textContent.includes(reason)) return;
  main.replaceChildren(
    h('h1', {}, 'Varnix'),
    empty('This browser is not signed in yet', h('p', {}, reason), h('p', {}, 'The page keeps trying.')),
  );
}

async function route({isFirst = false} = {}) {
  while (location.hash.startsWith('#token=')) await exchangeToken();
  if (!location.hash.startsWith('#/')) {
    const first = await firstPage();
    if (!location.hash.startsWith('#/')) history.replaceState(null, '', `#${first}`);
  }
  const goesBack = !followedLink && !isFirst;
  followedLink = false;
  current?.abort.abort();
  address = location.hash;
  const position = goesBack ? (positions.get(address) ?? 0) : 0;
  const [path, query] = address.slice(1).split(/\?(.*)/s);
  const [, shown, section, params] = kRoutes.map((row) => [...row, match(row[0], path)]).find((row) => row[3]) ?? [];
  const page = new Page(main, path, params, new URLSearchParams(query));
  current = page;
  markNavigation(section);
  if (shown) {
    await shown.show(page);
  } else {
    page.show(
      'Not found',
      {},
      h('p', {}, 'There is no such page. '),
      h('p', {}, h('a', {href: '#/files'}, 'Go to Files')),
    );
  }
  if (current !== page) return;
  scrollTo(0, 0);
  if (!isFirst && !main.contains(document.activeElement)) page.heading?.focus({preventScroll: true});
  if (position > 0) await scrollBack(page, position);
}

// Long lists grow only as one scrolls.
async function scrollBack(page, position) {
  await Promise.allSettled(page.loads);
  for (let frame = 0; frame < 60 && current === page && scrollY < position; ++frame) {
    scrollTo(0, position);
    await new Promise(requestAnimationFrame);
  }
}

async function showConnection() {
  const link = document.getElementById('connection');
  try {
    const status = await get('status');
    const {connected, secondsSincePoll, pluginVersion} = status;
    link.dataset.state = connected ? 'on' : 'off';
    link.textContent = connected
      ? `FileMaker connected${pluginVersion ? ` · ${pluginVersion}` : ''}`
      : secondsSincePoll === null
        ? 'FileMaker not connected'
        : `FileMaker last seen ${duration(secondsSincePoll)} ago`;
  } catch {
    // onTrouble has the words
  }
}

let looking;
function onTrouble(state) {
  clearInterval(looking);
  if (state !== 'ok') looking = setInterval(look, kRetry);
  const trouble = document.getElementById('trouble');
  const link = document.getElementById('connection');
  trouble.hidden = state === 'ok';
  if (state === 'gone') {
    trouble.replaceChildren(
      'The service does not answer. What you typed is kept, and the page continues when the service is back. ',
      'To start it: ',
      h('code', {}, 'varnix-service serve'),
    );
  } else if (state === 'signedOut') {
    trouble.replaceChildren(
      'This browser is not signed in. What you typed is kept. Run ',
      h('code', {}, 'varnix-service console --open'),
      '; this page then continues.',
    );
  } else {
    announce('Connected to the service');
    showConnection();
    return;
  }
  link.dataset.state = 'gone';
  link.textContent = state === 'gone' ? 'Service unreachable' : 'Signed out';
}

addEventListener('hashchange', () => {
  if (address !== undefined) route();
});
addEventListener('scroll', () => positions.set(location.hash, scrollY), {passive: true});
document.addEventListener('click', (event) => {
  const link = event.target.closest('a[href^="#"], a[*|href^="#"]');
  if (link?.classList.contains('skip')) {
    event.preventDefault();
    main.focus();
  } else if (link) {
    followedLink = true;
  }
});
document.getElementById('dismiss').addEventListener('click', () => {
  dismiss();
  main.focus({preventScroll: true});
});
document.addEventListener('keydown', (event) => {
  if (event.key === 'Escape') dismiss();
  if (event.key !== '/' || event.ctrlKey || event.metaKey || event.altKey) return;
  if (event.target.closest('input, textarea, select, dialog')) return;
  event.preventDefault();
  followedLink = true;
  location.hash = '#/search';
});

history.scrollRestoration = 'manual';
onServiceState(onTrouble);
await route({isFirst: true});
connect();
subscribe(['status', 'commands'], showConnection);
showConnection();
setInterval(showConnection, 10000);
