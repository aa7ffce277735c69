// Server-sent events: "this has changed, fetch it again". After a break in the connection everything has changed.
import {look, onServiceState, setServiceState} from './api.js';

const kTopics = ['commands', 'records', 'designs', 'clips', 'status'];
const kRetry = 3000; // ms
const kHidden = 60000; // ms; browsers allow few connections, so windows in the background give theirs back
const kGather = 120; // ms; several events at once cause one request
const subscriptions = new Set();
const changed = new Set();
let source;
let timer;

function deliver() {
  timer = undefined;
  const topics = [...changed];
  changed.clear();
  for (const subscription of [...subscriptions]) {
    if (topics.some((topic) => subscription.topics.includes(topic))) subscription.action();
  }
}

function note(topics) {
  for (const topic of topics) changed.add(topic);
  timer ??= setTimeout(deliver, kGather);
}

/** Calls `action` after changes of `topics`. Returns what ends that. */
export function subscribe(topics, action) {
  const subscription = {topics, action};
  subscriptions.add(subscription);
  return () => subscriptions.delete(subscription);
}

// The browser tries again by itself while the service is away, but not after a refusal.
async function onBreak({target: broken}) {
  const isRefused = broken.readyState === EventSource.CLOSED;
  await look();
  if (isRefused) setTimeout(() => broken === source && connect(), kRetry);
}

let rest;
document.addEventListener('visibilitychange', () => {
  clearTimeout(rest);
  if (document.hidden) rest = setTimeout(() => source?.close(), kHidden);
  else if (source?.readyState === EventSource.CLOSED) connect();
});

onServiceState((state) => {
  if (state === 'ok') note([...kTopics, 'reconnected']);
});

/** Begins to listen; called once, and again by itself for as long as the page is open. */
export function connect() {
  source?.close();
  source = new EventSource('/operator/events');
  source.addEventListener('hello', () => {
    setServiceState('ok');
    note([...kTopics, 'reconnected']);
  });
  for (const topic of kTopics) source.addEventListener(topic, () => note([topic]));
  source.addEventListener('error', onBreak);
}
