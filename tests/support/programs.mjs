// Programs for tests in Node.js: the service, and the simulated FileMaker with the plug-in. Their data is in the test's
// own folder, and all of them end with the test.
import assert from 'node:assert/strict';
import {spawn} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync} from 'node:fs';
import {createRequire} from 'node:module';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {createInterface} from 'node:readline';

export const {SERVICE, FMSIM, PLUGIN, TEST_CLOCK, SAMPLES, PACKAGES} = process.env;
export const load = createRequire(`${PACKAGES}/`);
export const kPatience = 40000; // ms, for whatever must happen at all
const kFasterFileMaker = 20; // times: it asks for commands every 150 ms, and waits 1.5 s for a file
export const folder = mkdtempSync(join(tmpdir(), 'varnix-test-'));
const running = new Set();

/** A program whose output is read with `readLine`; `ended` resolves to its exit status or the signal that ended it. */
export function start(program, options, environment = {}) {
  const child = spawn(program, options, {env: {...process.env, ...environment}, stdio: ['pipe', 'pipe', 'inherit']});
  running.add(child);
  child.stdin.on('error', () => {}); // it may be gone
  child.ended = new Promise((resolve) => child.on('exit', (code, signal) => resolve(code ?? signal)));
  child.ended.then(() => running.delete(child));
  const lines = createInterface({input: child.stdout})[Symbol.asyncIterator]();
  child.readLine = async () => (await lines.next()).value ?? '';
  return child;
}

/** varnix-service: {child, data, url, key}. */
export class Service {
  /** Starts it with the data folder `name`. */
  static async start(name, {port = 0, options = []} = {}) {
    const data = join(folder, name);
    const child = start(SERVICE, ['serve', '--listen', `127.0.0.1:${port}`, '--data', data, ...options], {
      VARNIX_KEY: '',
    });
    const url = await child.readLine();
    assert.match(url, /^http:/);
    return Object.assign(new this(), {child, data, url, key: readFileSync(join(data, 'key'), 'utf8').trim()});
  }

  /** The JSON that it answers to a request of the plug-in or the command line: POST with a body, GET without. */
  async fetch(path, body) {
    const headers = {Authorization: `Bearer ${this.key}`};
    const answer = await fetch(this.url + path, {method: body === undefined ? 'GET' : 'POST', body, headers});
    assert.ok(answer.ok, `${path}: ${answer.status}`);
    return answer.json();
  }
}

/** The simulated FileMaker with sample files and a clipboard of its own, signed in. */
export async function startFileMaker(signInLine, files) {
  const open = files.flatMap((file) => ['--open', `${SAMPLES}/${file}.xml`]);
  const child = start(FMSIM, ['--plugin', PLUGIN, ...open], {
    LD_PRELOAD: TEST_CLOCK,
    STEADY_SPEED: String(kFasterFileMaker),
    DISPLAY: '',
    XDG_CONFIG_HOME: join(folder, 'config'),
    PATH: '',
    TMPDIR: folder,
  });
  child.stdin.write(`${signInLine}\n`);
  assert.equal(await child.readLine(), 'OK');
}

export async function until(isMet) {
  for (const last = Date.now() + kPatience; !(await isMet());) {
    assert.ok(Date.now() < last, `did not happen: ${isMet}`);
    await new Promise((resolve) => setTimeout(resolve, 30));
  }
}

/** Ends everything that was started. */
export async function endAll() {
  const children = [...running];
  for (const child of children) child.kill();
  await Promise.all(children.map((child) => child.ended));
  rmSync(folder, {recursive: true, force: true, maxRetries: 5});
}
