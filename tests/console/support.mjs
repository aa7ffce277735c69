// The programs that the tests of the console use: the service, the simulated FileMaker with the plug-in, and Chromium.
// Everything is started once and ends with the tests.
import assert from 'node:assert/strict';
import {spawn} from 'node:child_process';
import {mkdtempSync, readFileSync, rmSync} from 'node:fs';
import {createRequire} from 'node:module';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {createInterface} from 'node:readline';

export const {SERVICE, FMSIM, PLUGIN, TEST_CLOCK, SAMPLES, CHROMIUM, PACKAGES} = process.env;
const require = createRequire(`${PACKAGES}/`);
const puppeteer = require('puppeteer-core');
const axeSource = readFileSync(require.resolve('axe-core/axe.min.js'), 'utf8');

export const kPatience = 20000; // ms, for whatever must happen at all
const kFasterFileMaker = 20; // times: it asks for commands every 150 ms, and waits 1.5 s for a file

const folder = mkdtempSync(join(tmpdir(), 'varnix-console-'));
const running = new Set();

function start(program, options, environment) {
  const child = spawn(program, options, {env: {...process.env, ...environment}, stdio: ['pipe', 'pipe', 'inherit']});
  running.add(child);
  child.on('exit', () => running.delete(child));
  child.lines = createInterface({input: child.stdout})[Symbol.asyncIterator]();
  return child;
}

const readLine = async (child) => (await child.lines.next()).value ?? '';

export async function end(child, signal) {
  const ended = new Promise((resolve) => child.on('exit', resolve));
  child.stdin.end();
  child.kill(signal);
  await ended;
}

/** varnix-service with its data in a folder of its own; {child, url, signInLine, consoleUrl}. */
export async function startService(port = '0', name = 'data') {
  const child = start(SERVICE, ['serve', '--listen', `127.0.0.1:${port}`, '--data', join(folder, name)], {
    VARNIX_KEY: '',
  });
  child.stderr?.resume();
  const url = await readLine(child);
  const signInLine = (await readLine(child)).replace(/^.*?(?=Varnix\.Register)/, '');
  const consoleUrl = /http:\S+/.exec(await readLine(child))?.[0];
  assert.match(consoleUrl ?? '', /#token=/, 'the service prints the address of its console');
  const key = readFileSync(join(folder, name, 'key'), 'utf8').trim();
  return {child, url, signInLine, consoleUrl, key, port: new URL(url).port};
}

/** The simulated FileMaker with the sample files and a clipboard of its own, signed in. */
export async function startFileMaker(signInLine) {
  const child = start(
    FMSIM,
    ['--plugin', PLUGIN, '--open', `${SAMPLES}/Timesheets.xml`, '--open', `${SAMPLES}/Workshop.xml`],
    {
      LD_PRELOAD: TEST_CLOCK,
      STEADY_SPEED: String(kFasterFileMaker),
      DISPLAY: '',
      XDG_CONFIG_HOME: join(folder, 'config'),
      PATH: '',
      TMPDIR: folder,
    },
  );
  child.stdin.write(`${signInLine}\n`);
  assert.equal(await readLine(child), 'OK');
  return child;
}

/** A request to the service as the plug-in or the command line makes it. */
export async function request(service, path, body) {
  const answer = await fetch(service.url + path, {
    method: body === undefined ? 'GET' : 'POST',
    body,
    headers: {Authorization: `Bearer ${service.key}`},
  });
  assert.equal(answer.ok, true, `${path}: ${answer.status}`);
  return answer.json();
}

/** A new address that opens the console. */
export const consoleAddress = async (service) => (await request(service, '/operator/console', '{}')).url;

/** Adds an export, and waits until its design is listed. */
export async function addDesign(service, xml, name) {
  const {record} = await request(service, `/api/live/ingest/${service.key}?filename=${encodeURIComponent(name)}`, xml);
  await until(async () => (await request(service, '/operator/designs')).designs.some((design) => design.id === record));
  return record;
}

export async function until(isMet, what = String(isMet)) {
  for (const last = Date.now() + kPatience; !(await isMet());) {
    assert.ok(Date.now() < last, `did not happen: ${what}`);
    await new Promise((resolve) => setTimeout(resolve, 30));
  }
}

let browser;
/** What a page must not do: errors in the console, requests to elsewhere. Expected ones are removed by the tests. */
export const offences = [];

/** A new window. Network errors of the time when the service is down are allowed for while `isDown()`. */
export async function openWindow(service, {width = 1280, isDown = () => false, context = browser} = {}) {
  browser ??= await launch();
  const page = await (context ?? browser).newPage();
  page.setDefaultTimeout(kPatience);
  await page.setViewport({width, height: 900});
  page.on('pageerror', (error) => offences.push(`error: ${error.stack}`));
  page.on('dialog', (dialog) => offences.push(`dialog: ${dialog.message()}`));
  page.on('console', (message) => {
    if (['error', 'warning', 'warn'].includes(message.type()) && !isDown())
      offences.push(`console: ${message.text()} ${message.location().url}`);
  });
  page.on('request', (asked) => {
    if (!asked.url().startsWith(service.url) && !asked.url().startsWith('blob:'))
      offences.push(`request: ${asked.url()}`);
  });
  return page;
}

async function launch() {
  assert.ok(CHROMIUM && !CHROMIUM.endsWith('NOTFOUND'), 'Chromium is not installed: apt-get install chromium');
  const options = [
    '--disable-dev-shm-usage',
    '--disable-background-networking',
    ...(process.getuid() === 0 ? ['--no-sandbox'] : []),
  ];
  return puppeteer.launch({
    executablePath: CHROMIUM,
    args: options,
    headless: true,
    userDataDir: join(folder, 'profile'),
  });
}

/** A fresh browser profile: no cookie. */
export async function otherBrowser() {
  browser ??= await launch();
  return browser.createBrowserContext();
}

const selector = (role, name) =>
  `::-p-aria(${name === undefined ? '' : `[name="${name.replace(/"/g, '\\"')}"]`}[role="${role}"])`;

/** The element with this role and accessible name, once it is there. */
export async function find(page, role, name) {
  await page.bringToFront(); // the browser draws nothing in the background
  return page.waitForSelector(selector(role, name));
}
export const click = async (page, role, name) => (await find(page, role, name)).click();
export const exists = async (page, role, name) => (await page.$(selector(role, name))) !== null;

/** Requests for `path` get lost until `end()`. */
export async function loseRequests(page, path) {
  const lose = (asked) => (asked.url().endsWith(path) ? asked.abort() : asked.continue());
  page.on('request', lose);
  await page.setRequestInterception(true);
  return {
    end: async () => {
      await page.setRequestInterception(false);
      page.off('request', lose);
    },
  };
}

/** Answers the question that is being asked. */
export async function confirm(page, verb) {
  const button = await page.waitForSelector(`dialog[open] ::-p-aria([name="${verb}"][role="button"])`);
  await button.click();
}

/** Drops a file on the page. */
export const drop = (page, name, content) =>
  page.evaluate(
    (fileName, text) => {
      const dataTransfer = new DataTransfer();
      dataTransfer.items.add(new File([text], fileName));
      document.body.dispatchEvent(new DragEvent('drop', {dataTransfer, bubbles: true, cancelable: true}));
    },
    name,
    content,
  );

export async function type(page, role, name, text) {
  const control = await find(page, role, name);
  await control.evaluate((element) => (element.value = ''));
  await control.type(text);
}

/** The milliseconds that the page was busy with the longest of the inputs, which come as somebody types. */
export const longestKey = (page, inputs) =>
  page.evaluate(async (texts) => {
    let most = 0;
    const input = document.querySelector('main input[type=search]');
    for (const text of texts) {
      const start = performance.now();
      input.value = text;
      input.dispatchEvent(new Event('input', {bubbles: true}));
      most = Math.max(most, performance.now() - start);
      await new Promise((resolve) => setTimeout(resolve, 150));
    }
    return most;
  }, inputs);

/** Waits for a text in the element of this role. */
export async function sees(page, text, role = 'main') {
  const places = {main: 'main', status: '[role=status]', alert: '[role=alert]', banner: 'header'};
  await page.bringToFront();
  try {
    await page.waitForFunction(
      (place, wanted) => document.querySelector(place)?.innerText.replace(/\s+/g, ' ').includes(wanted),
      {},
      places[role],
      text,
    );
  } catch {
    const shown = await page.$eval(places[role], (element) => element.innerText);
    assert.fail(`“${text}” is not in the ${role}: ${shown}`);
  }
}

/** Goes to an address within the page and waits for its heading. */
export async function visit(page, service, fragment, heading) {
  await page.goto(`${service.url}/#${fragment}`);
  if (heading) await find(page, 'heading', heading);
}

/** What axe finds serious or worse. */
export async function accessibilityFaults(page) {
  await page.evaluate(axeSource);
  const {violations} = await page.evaluate(() => globalThis.axe.run(document, {resultTypes: ['violations']}));
  return violations
    .filter(({impact}) => impact === 'serious' || impact === 'critical')
    .map(
      ({id, nodes}) =>
        `${id}: ${nodes
          .slice(0, 3)
          .map((node) => `${node.target} ${node.failureSummary}`)
          .join(' | ')}`,
    );
}

/** Ends everything that was started. */
export async function finish() {
  await browser?.close();
  for (const child of running) child.kill('SIGKILL');
  rmSync(folder, {recursive: true, force: true, maxRetries: 5});
}
