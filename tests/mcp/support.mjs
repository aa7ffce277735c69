// What the tests of AI assistants use: the service, the simulated FileMaker with the plug-in, and clients of
// varnix-service mcp. Everything that was started ends with the tests.
import assert from 'node:assert/strict';
import {spawn} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync} from 'node:fs';
import {createRequire} from 'node:module';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {createInterface} from 'node:readline';

export const {SERVICE, FMSIM, PLUGIN, TEST_CLOCK, SAMPLES, ORDERS, PACKAGES} = process.env;
export const load = createRequire(`${PACKAGES}/`);
export const kPatience = 40000; // ms, for whatever must happen at all
const kFasterFileMaker = 20; // times: it asks for commands every 150 ms
const folder = mkdtempSync(join(tmpdir(), 'varnix-mcp-'));
const running = new Set();

export function start(program, options, environment = {}) {
  const child = spawn(program, options, {env: {...process.env, ...environment}, stdio: ['pipe', 'pipe', 'pipe']});
  running.add(child);
  child.stderr.resume();
  child.stdin.on('error', () => {}); // it may be gone
  child.ended = new Promise((resolve) => child.on('exit', (code, signal) => resolve(code ?? signal)));
  child.ended.then(() => running.delete(child));
  child.lines = createInterface({input: child.stdout})[Symbol.asyncIterator]();
  child.readLine = async () => (await child.lines.next()).value ?? '';
  return child;
}

export class Service {
  static async start(name, options = []) {
    const data = join(folder, name);
    const child = start(SERVICE, ['serve', '--listen', '127.0.0.1:0', '--data', data, ...options], {VARNIX_KEY: ''});
    const service = new Service();
    Object.assign(service, {child, data, url: await child.readLine()});
    assert.match(service.url, /^http:/);
    service.key = readFileSync(join(data, 'key'), 'utf8').trim();
    return service;
  }

  /** The arguments and the environment with which a client starts varnix-service mcp. */
  get server() {
    const environment = {VARNIX_DATA: this.data, VARNIX_SERVICE: this.url};
    return {command: SERVICE, args: ['mcp'], env: environment, stderr: 'ignore'};
  }

  async fetch(path, body) {
    const headers = {Authorization: `Bearer ${this.key}`};
    const answer = await fetch(this.url + path, {method: body === undefined ? 'GET' : 'POST', body, headers});
    assert.ok(answer.ok, `${path}: ${answer.status}`);
    return answer.json();
  }

  async commands() {
    return (await this.fetch('/operator/commands?limit=1000')).commands;
  }

  addDesign(file, name) {
    return this.fetch(`/api/live/ingest/${this.key}?filename=${name}`, readFileSync(file));
  }

  /** A simulated FileMaker, signed in to this service. */
  async startFileMaker() {
    const child = start(FMSIM, ['--plugin', PLUGIN, '--open', `${SAMPLES}/Workshop.xml`], {
      LD_PRELOAD: TEST_CLOCK,
      STEADY_SPEED: String(kFasterFileMaker),
      DISPLAY: '',
      XDG_CONFIG_HOME: join(folder, 'config'),
      PATH: '',
      TMPDIR: folder,
    });
    child.stdin.write(`Varnix.Register ( "you@example.com" ; "${this.key}" ; "machine" ; "${this.url}" )\n`);
    assert.equal(await child.readLine(), 'OK');
  }
}

/** varnix-service mcp without a client library: messages go in and come out as they are. */
export class RawClient {
  constructor(service) {
    this.child = start(SERVICE, ['mcp'], service.server.env);
  }

  write(text) {
    this.child.stdin.write(text);
  }

  send(message) {
    this.write(`${JSON.stringify({jsonrpc: '2.0', ...message})}\n`);
  }

  async read() {
    return JSON.parse(await this.child.readLine());
  }

  async open(name = 'raw') {
    const params = {protocolVersion: '2025-11-25', capabilities: {}, clientInfo: {name, version: '1'}};
    this.send({id: 'open', method: 'initialize', params});
    assert.equal((await this.read()).id, 'open');
    return this;
  }
}

export async function until(isMet) {
  for (const last = Date.now() + kPatience; !(await isMet());) {
    assert.ok(Date.now() < last, `did not happen: ${isMet}`);
    await new Promise((resolve) => setTimeout(resolve, 30));
  }
}

export async function endAll() {
  const children = [...running];
  for (const child of children) child.kill();
  await Promise.all(children.map((child) => child.ended));
  rmSync(folder, {recursive: true, force: true});
}
