// What the tests of the console use: the service, and windows of Chromium.
import assert from 'node:assert/strict';
import {readFileSync} from 'node:fs';
import {join} from 'node:path';
import {test} from 'node:test';

import {endAll, folder, kPatience, load, Service, until} from '../support/programs.mjs';

const {CHROMIUM} = process.env;
const kStepTime = 60000; // ms
const puppeteer = load('puppeteer-core');
const axeSource = readFileSync(load.resolve('axe-core/axe.min.js'), 'utf8');

/** The service with what it prints for people: its `signInLine` and `consoleUrl`. */
export async function startService(port) {
  const service = await Service.start('data', {port});
  const signInLine = (await service.child.readLine()).replace(/^.*?(?=Varnix\.Register)/, '');
  const consoleUrl = /http:\S+/.exec(await service.child.readLine())?.[0];
  assert.match(consoleUrl ?? '', /#token=/, 'the service prints the address of its console');
  return Object.assign(service, {signInLine, consoleUrl});
}

/** A new address that opens the console. */
export const consoleAddress = async (service) => (await service.fetch('/operator/console', '{}')).url;

/** Adds an export, and waits until its design is listed. */
export async function addDesign(service, xml, name) {
  const {record} = await service.fetch(`/api/live/ingest/${service.key}?filename=${encodeURIComponent(name)}`, xml);
  await until(async () => (await service.fetch('/operator/designs')).designs.some((design) => design.id === record));
  return record;
}

let browser;
/** What a page must not do: errors in the console, requests to elsewhere. Expected ones are removed by the tests. */
export const offences = [];

let failed;
/** A test that needs those before it: the first that fails ends the day. */
export const step = (name, action) =>
  test(name, {timeout: kStepTime}, async () => {
    assert.equal(failed, undefined, 'not tried, because an earlier step failed');
    failed = name;
    await action();
    assert.deepEqual(offences.splice(0), []);
    failed = undefined;
  });

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

/** Until `end()`, requests whose address `lost` matches get `answer`, or get lost while there is none. */
export async function disturb(page, lost) {
  const trouble = {lost, answer: undefined};
  const meet = (asked) => {
    const isMet = trouble.lost.test(`${asked.method()} ${asked.url()}`);
    const done = !isMet ? asked.continue() : trouble.answer ? asked.respond(trouble.answer) : asked.abort();
    done.catch(() => {}); // `end` came first
  };
  page.on('request', meet);
  await page.setRequestInterception(true);
  trouble.end = async () => {
    await page.setRequestInterception(false);
    page.off('request', meet);
  };
  return trouble;
}

/** Answers the question that is being asked. */
export async function confirm(page, verb) {
  const button = await page.waitForSelector(`dialog[open] ::-p-aria([name="${verb}"][role="button"])`);
  await button.click();
}

/** Drops files on the page: their contents by name. */
export const drop = (page, files) =>
  page.evaluate((contents) => {
    const dataTransfer = new DataTransfer();
    for (const [name, text] of Object.entries(contents)) dataTransfer.items.add(new File([text], name));
    document.body.dispatchEvent(new DragEvent('drop', {dataTransfer, bubbles: true, cancelable: true}));
  }, files);

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
  const places = {main: 'main', status: '[role=status]', alert: '[role=alert]', banner: 'header', dialog: 'dialog'};
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

// Voice control uses the visible text, so the accessible name must begin with it.
const misnamed = (page) =>
  page.$$eval(':is(a, button, summary)[aria-label]:not(svg *)', (controls) =>
    controls
      .filter(({ariaLabel, innerText}) => !ariaLabel.startsWith(innerText.trim()))
      .map(({ariaLabel, innerText}) => `“${innerText}” is named “${ariaLabel}”`),
  );

/** What axe finds serious or worse, and names that differ from what is visible. */
export async function accessibilityFaults(page) {
  await page.evaluate(axeSource);
  const {violations} = await page.evaluate(() => globalThis.axe.run(document, {resultTypes: ['violations']}));
  const serious = violations
    .filter(({impact}) => impact === 'serious' || impact === 'critical')
    .map(
      ({id, nodes}) =>
        `${id}: ${nodes
          .slice(0, 3)
          .map((node) => `${node.target} ${node.failureSummary}`)
          .join(' | ')}`,
    );
  return [...serious, ...(await misnamed(page))];
}

/** Ends everything that was started. */
export async function finish() {
  await browser?.close();
  await endAll();
}
