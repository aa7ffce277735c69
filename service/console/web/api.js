// Requests to the service. Every failure is an Error whose message can be shown as it is.

/** The service refused; `status` is that of HTTP. */
export class Refusal extends Error {
  constructor(status, message) {
    super(message);
    this.status = status;
  }
}

/** The connection broke, or there was none. */
export class Unreachable extends Error {
  constructor() {
    super(state === 'gone' ? 'The service does not answer.' : 'The connection to the service broke. Try again.');
  }
}

const kStatus = '/operator/status';
const kStrange = 'The answer cannot be read. Another program may be using the address of the service.';

const watchers = new Set();
let state = 'ok';

/** 'ok', 'gone' (the service does not answer) or 'signedOut' (it no longer knows this browser). */
export const serviceState = () => state;

export function onServiceState(watcher) {
  watchers.add(watcher);
}

export function setServiceState(next) {
  if (next === state) return;
  state = next;
  for (const watcher of watchers) watcher(state);
}

// Updates the state of the service from an answer, whatever its status.
function noteAnswer(path, {ok, status}) {
  if (status === 401 && path.startsWith('/operator/')) setServiceState('signedOut');
  else if (ok || state === 'gone') setServiceState('ok');
}

/** Finds out the state of the service. */
export async function look() {
  try {
    noteAnswer(kStatus, await fetch(kStatus, {cache: 'no-store'}));
  } catch {
    setServiceState('gone');
  }
}

// One connection can break for a reason of its own, such as a file that is too large or has changed. The service is gone
// only when the next one fails, too.
async function broken() {
  await look();
  return new Unreachable();
}

async function request(method, path, {body, type, signal} = {}) {
  let answer;
  try {
    answer = await fetch(path, {
      method,
      body,
      signal,
      cache: 'no-store',
      headers: type ? {'Content-Type': type} : {},
    });
  } catch (error) {
    throw error.name === 'AbortError' ? error : await broken();
  }
  noteAnswer(path, answer);
  if (answer.ok) return answer;
  const reason = await answer.json().then(
    (json) => json.error,
    () => answer.statusText,
  );
  throw new Refusal(answer.status, sentence(reason || `The service answered with status ${answer.status}`));
}

/** A reason of the service as a sentence. */
export const sentence = (text) => text.charAt(0).toUpperCase() + text.slice(1) + (/[.!?]$/.test(text) ? '' : '.');

// The service may also go away in the middle of an answer.
async function whole(reading) {
  try {
    return await reading;
  } catch (error) {
    if (error instanceof SyntaxError) throw new Refusal(0, kStrange);
    throw error.name === 'AbortError' ? error : await broken();
  }
}

/** The JSON of `GET /operator/PATH`. */
export async function get(path, signal) {
  return whole((await request('GET', `/operator/${path}`, {signal})).json());
}

/** The same as text. */
export async function getText(path, signal) {
  return whole((await request('GET', `/operator/${path}`, {signal})).text());
}

/** `POST /operator/PATH` with a message of texts. */
export async function post(path, message = {}) {
  const body = JSON.stringify(message);
  return whole((await request('POST', `/operator/${path}`, {body, type: 'application/json'})).json());
}

/** `POST /operator/PATH` with the bytes of a file. */
export async function postFile(path, content) {
  return whole((await request('POST', `/operator/${path}`, {body: content, type: 'application/octet-stream'})).json());
}

/** Exchanges the one-time token of the address for a session. */
export async function openSession(token) {
  await request('POST', '/console/session', {body: JSON.stringify({token}), type: 'application/json'});
}

export const segment = encodeURIComponent;

/** "?a=1&b=2" of the values that are set. */
export function query(values) {
  const set = Object.entries(values).filter(([, value]) => value !== '' && value !== undefined && value !== null);
  return set.length ? `?${new URLSearchParams(set)}` : '';
}
