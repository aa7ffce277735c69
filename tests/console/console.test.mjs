// What people do in the console, in the order in which they meet it. The tests share one service, as one day does.
import assert from 'node:assert/strict';
import {after, before} from 'node:test';
import {droppedExport, kSnippet, laterWorkshop} from './exports.mjs';
import {startFileMaker, until} from '../support/programs.mjs';
import {
  addDesign,
  click,
  confirm,
  consoleAddress,
  disturb,
  drop,
  exists,
  find,
  finish,
  offences,
  openWindow,
  otherBrowser,
  sees,
  startService,
  step,
  type,
  visit,
} from './support.mjs';

let service;
let page;
let isDown = false;
let workshop; // the designs' ids
let later;

before(async () => {
  service = await startService();
  page = await openWindow(service, {isDown: () => isDown});
});
after(finish);

const designs = async () => (await service.fetch('/operator/designs')).designs;

step('The first visit leads to the sign-in line', async () => {
  isDown = true;
  const trouble = await disturb(page, /session$|status$/);
  await page.goto(service.consoleUrl);
  await sees(page, 'does not answer', 'alert');
  trouble.answer = {status: 503, body: '{"error":"the disk is full"}'};
  await sees(page, 'The disk is full.');
  await page.reload(); // the token is still in the address
  await sees(page, 'The disk is full.');
  await trouble.end();
  await find(page, 'heading', 'Setup');
  isDown = false;
  assert.equal(await page.title(), 'Varnix');
  await until(() => !page.url().includes('token'));
  const line = await find(page, 'textbox', 'Sign-in line');
  assert.equal(await line.evaluate((input) => input.value), service.signInLine);
  await find(page, 'navigation', 'Pages');
  for (const name of ['Files', 'Search', 'Clips', 'Commands', 'Storage', 'Setup']) await find(page, 'link', name);
  await sees(page, 'FileMaker not connected', 'banner');
});

step('An address opens the console once', async () => {
  const window = await openWindow(service, {context: await otherBrowser(), isDown: () => true});
  await window.goto(service.consoleUrl);
  await sees(window, 'used already', 'status');
  await sees(window, 'not signed in', 'alert');
  await window.close();
});

step('From sign-in to the first design', async () => {
  await startFileMaker(service.signInLine, ['Timesheets', 'Workshop']);
  await sees(page, 'FileMaker connected', 'banner');
  await click(page, 'button', 'Check the open files');
  await sees(page, 'All files checked', 'status');
  await sees(page, 'Workshop found [Full Access] account Admin none yet');
  await sees(page, 'Timesheets missing');
  await click(page, 'button', "Put Varnix Live Push on FileMaker's clipboard");
  await sees(page, "is on FileMaker's clipboard", 'status');
  await click(page, 'button', 'Get design now: Workshop');
  await sees(page, 'The design of Workshop has arrived', 'status');
  await click(page, 'link', 'Files');
  await click(page, 'link', 'Workshop');
  await find(page, 'heading', 'Workshop');
  [{id: workshop}] = await designs();
});

step('Elements show their definition and lead to each other', async () => {
  await visit(page, service, `/designs/${workshop}`, 'Workshop');
  await click(page, 'link', 'Scripts 28');
  await type(page, 'searchbox', 'Filter scripts', 'close');
  await click(page, 'link', 'Close Job');
  await find(page, 'heading', 'Close Job');
  await sees(page, 'Set Field [ Jobs::Status ; "Picked Up" ]');
  await sees(page, 'step 1 If, step 7 Set Field');
  await click(page, 'link', 'Jobs::Status');
  await find(page, 'heading', 'Status');
  await sees(page, 'Used by');
  await page.reload();
  await find(page, 'heading', 'Status');
  await page.goBack();
  await find(page, 'heading', 'Close Job');
  await page.goBack();
  assert.equal(await (await find(page, 'searchbox', 'Filter scripts')).evaluate((input) => input.value), 'close');
});

step('Another window sees a new design by itself', async () => {
  const window = await openWindow(service);
  await visit(window, service, '/files', 'Files');
  await visit(page, service, '/files', 'Files');
  later = await addDesign(service, laterWorkshop, 'Workshop.fmp12.xml');
  await find(window, 'link', 'Last changes of Workshop');
  await find(page, 'link', 'Last changes of Workshop');
  await window.close();
});

step('Changes are grouped, filtered and shown side by side', async () => {
  await click(page, 'link', 'Last changes of Workshop');
  await find(page, 'heading', 'Changes in Workshop');
  await sees(page, 'Set Field [ Jobs::Status ; "Handed Over" ]');
  await find(page, 'table', 'steps of Close Job');
  await page.select('select[name=kind]', 'field');
  await sees(page, 'was Jobs::Picked Up At');
  await page.browserContext().overridePermissions(service.url, ['clipboard-read', 'clipboard-sanitized-write']);
  await click(page, 'button', 'Copy as Markdown');
  await sees(page, 'Report copied', 'status');
  const report = await page.evaluate(() => navigator.clipboard.readText());
  assert.match(report, /^# Changes in Workshop\n\nFrom \d+ \w+ \d{4}, /);
  assert.match(report, /\n## Fields\n\n- \*\*renamed\*\* Jobs::Handed Over At \(was Jobs::Picked Up At\)/);
  assert.doesNotMatch(report, /## Scripts/, 'only what is chosen');
  assert.equal(await exists(page, 'table', 'steps of Close Job'), false);
});

function isFocusInPicture() {
  const outer = document.querySelector('.graph-box').getBoundingClientRect();
  const inner = document.activeElement.querySelector('.frame').getBoundingClientRect();
  const contains = (x, y) => x >= outer.left && x <= outer.right && y >= outer.top && y <= outer.bottom;
  return contains(inner.left, inner.top) && contains(inner.right, inner.bottom);
}

step('The relationships can be searched, enlarged and opened', async () => {
  await visit(page, service, `/designs/${workshop}/relationships`, 'Relationships of Workshop');
  const box = () => page.$eval('svg.graph', (svg) => svg.viewBox.baseVal.width);
  const before = await box();
  await click(page, 'button', 'Zoom in');
  assert.ok((await box()) < before);
  await type(page, 'searchbox', 'Find a table occurrence', 'Payments');
  await sees(page, 'match');
  for (let times = 0; times < 5; ++times) await click(page, 'button', 'Zoom in');
  const tables = await page.$$eval('a.occurrence', (all) => all.length);
  await page.$eval('a.occurrence', (link) => link.focus());
  for (let at = 1; at < tables; ++at) {
    await page.keyboard.press('Tab');
    assert.equal(await page.evaluate(isFocusInPicture), true, 'the picture follows the focus');
  }
  await page.$eval('a.occurrence.here', (link) => link.focus());
  await page.keyboard.press('Enter');
  await sees(page, 'Table occurrence');
});

step('Search finds scripts, formulas and names while you type', async () => {
  await visit(page, service, '/files', 'Files');
  await page.keyboard.press('/');
  await find(page, 'heading', 'Search');
  await page.keyboard.type('LastMessageChoice');
  await sees(page, 'Close Job Script Workshop in a step If [ Get ( LastMessageChoice ) ≠ 1 ]');
  assert.equal(await page.$$eval('.hit-line', (lines) => lines.length), 1, 'a line of two designs is shown once');
  await click(page, 'link', 'Close Job');
  await page.goBack();
  assert.equal(await (await find(page, 'searchbox', 'Search')).evaluate((input) => input.value), 'LastMessageChoice');
});

// A command of the form, and a text of its result.
const commands = [
  ['List open files', {}, 'Timesheets'],
  ['Set the clipboard', {'FileMaker XML': kSnippet}, 'are on FileMaker'],
  ['Get the clipboard', {}, 'Buy violin strings'],
  ['List clipboard formats', {}, 'Mac-XMSS'],
  ['Get a context report', {File: 'Workshop'}, 'livePushVisible'],
  ['Get a design', {File: 'Workshop'}, 'The design'],
];

for (const [name, values, result] of commands) {
  step(`${name} is carried out and shows its result`, async () => {
    await visit(page, service, '/commands', 'Commands');
    const form = await find(page, 'form', name);
    for (const [label, text] of Object.entries(values)) {
      await (await form.$(`::-p-aria(${label})`)).evaluate((control, value) => (control.value = value), text);
    }
    await click(page, 'button', name);
    await sees(page, `${name}: waiting for FileMaker`, 'status');
    const {commands: all} = await service.fetch('/operator/commands');
    await visit(page, service, `/commands/${all.at(-1).id}`, name);
    await sees(page, result);
  });
}

step('A design that cannot come says why', async () => {
  await visit(page, service, '/commands', 'Commands');
  const form = await find(page, 'form', 'Get a design');
  await (await form.$('::-p-aria(File)')).type('Timesheets');
  await click(page, 'button', 'Get a design');
  await sees(page, 'Varnix Live Push', 'main');
  await page.waitForSelector('.state.failed');
});

step('The wait for a design is counted down, and not read aloud', async () => {
  const waiting = {
    id: 'x',
    type: 'GET_SCHEMA',
    state: 'delivered',
    secondsInState: 12,
    queuedAt: '2025-01-01T00:00:00Z',
  };
  const trouble = await disturb(page, /commands[?/]/);
  trouble.answer = {body: JSON.stringify({commands: [waiting]}), contentType: 'application/json'};
  await page.reload();
  await sees(page, '17 s left');
  await sees(page, '16 s left');
  assert.equal(await page.$('[aria-live] .state-text, [role=status] .state-text, [role=progressbar]'), null);
  await trouble.end();
});

step('A clip is listed once, tagged, changed and placed again', async () => {
  await visit(page, service, '/clips', 'Clips');
  await type(page, 'searchbox', 'Search in clips', 'violin');
  await sees(page, '1 clip');
  await page.click('table.list th a, table.list td a');
  await sees(page, 'Buy violin strings');
  await type(page, 'textbox', 'Tags', 'shop, strings');
  await click(page, 'button', 'Save tags');
  await sees(page, 'Tags saved', 'status');
  await page.click('details.box summary');
  await type(page, 'textbox', 'Find', 'violin');
  await type(page, 'textbox', 'Replace with', 'cello & bow');
  await click(page, 'button', 'Preview');
  await sees(page, '1 replacement');
  await click(page, 'button', 'Add as a new clip');
  await sees(page, '# Buy cello & bow strings');
  const content = await page.evaluate(() => fetch(`/operator${location.hash.slice(1)}/content`).then((a) => a.text()));
  assert.equal(content, kSnippet.replace('violin', 'cello &amp; bow'));
  await page.goBack();
  await page.waitForSelector('details.box summary');
  await page.click('details.box summary');
  await type(page, 'textbox', 'Find', 'violin');
  await type(page, 'textbox', 'Replace with', 'cello & bow');
  await click(page, 'button', 'Preview');
  await click(page, 'button', "Add and put on FileMaker's clipboard");
  await sees(page, "is on FileMaker's clipboard", 'status');
  await visit(page, service, '/clips', 'Clips');
  await (await find(page, 'combobox', 'Tag')).select('strings');
  await sees(page, '1 clip');
  await sees(page, 'shop strings');
  await (await find(page, 'combobox', 'Tag')).select('');
  await type(page, 'searchbox', 'Search in clips', 'cello & bow');
  await sees(page, '1 clip');
});

step('What is typed survives events and the end of the service', async () => {
  const window = await openWindow(service, {isDown: () => isDown});
  await window.goto(page.url());
  await window.waitForSelector('table.list a');
  await window.click('table.list a');
  await type(window, 'textbox', 'Tags', 'kept');
  await click(window, 'button', 'Save tags');
  await sees(window, 'Tags saved', 'status');
  await type(window, 'textbox', 'Tags', 'half');
  const events = window.waitForResponse((answer) => answer.url().endsWith('/operator/events') && answer.ok());
  await visit(page, service, '/commands', 'Commands');
  const form = await find(page, 'form', 'Get a design');
  await form.$eval('input', (input) => (input.value = ''));
  await (await form.$('::-p-aria(File)')).type('Half a na');
  await service.fetch('/operator/commands', JSON.stringify({type: 'LIST_FILES', expires: '1000'}));
  await find(page, 'link', 'List open files');
  isDown = true;
  service.child.kill('SIGKILL');
  await service.child.ended;
  await sees(page, 'does not answer', 'alert');
  service = await startService(new URL(service.url).port);
  await page.waitForSelector('[role=alert]', {hidden: true});
  isDown = false;
  assert.equal(await form.$eval('input', (input) => input.value), 'Half a na');
  await page.keyboard.type('me');
  assert.equal(await form.$eval('input', (input) => input.value), 'Half a name');
  await window.bringToFront();
  await events;
  await window.waitForNetworkIdle({concurrency: 1, idleTime: 400}); // the stream of events stays
  assert.equal(await window.$eval('input[name=tags]', (input) => input.value), 'half');
  await window.close();
  await page.bringToFront();
  offences.length = 0; // the network's, while nobody listened
});

step('A session that has ended is explained, and a new address revives the page', async () => {
  isDown = true;
  const kept = await page.cookies();
  await page.deleteCookie(...kept);
  await click(page, 'button', 'List open files');
  await sees(page, 'not signed in', 'alert');
  const window = await openWindow(service);
  await window.goto(await consoleAddress(service));
  await page.bringToFront();
  await page.waitForSelector('[role=alert]', {hidden: true});
  isDown = false;
  await window.close();
  offences.length = 0; // the refusals
});

step('Only a service that does not answer at all counts as gone', async () => {
  isDown = true;
  await visit(page, service, '/commands', 'Commands');
  const trouble = await disturb(page, /operator/);
  for (const status of [403, 404, 500]) {
    trouble.answer = undefined;
    await click(page, 'button', 'List open files');
    await sees(page, 'does not answer', 'alert');
    trouble.answer = {status, body: '{"error":"no"}'};
    await page.waitForSelector('[role=alert]', {hidden: true});
  }
  trouble.answer = undefined;
  trouble.lost = /POST .*commands$/;
  await click(page, 'button', 'List open files');
  await sees(page, 'The connection to the service broke. Try again.', 'status');
  await click(page, 'button', 'Dismiss'); // errors stay until then
  await page.waitForSelector('[role=status]:empty');
  assert.equal(await page.$eval('[role=alert]', (alert) => alert.hidden), true);
  await trouble.end();
  isDown = false;
  offences.length = 0;
});

step('Files that are dropped are added', async () => {
  await visit(page, service, '/files', 'Files');
  await drop(page, {'Letter.xml': '<letter/>', 'Dropped.xml': droppedExport, 'Empty.xml': ''});
  await sees(page, '1 of 3 files added. Not added: Letter.xml, Empty.xml', 'status');
  await sees(page, 'Letter.xml was not added. ');
  await sees(page, 'Empty.xml was not added. ');
  offences.length = 0; // the refusals
  await find(page, 'link', 'Browse of Dropped');
  await visit(page, service, '/clips', 'Clips');
  await drop(page, {'Fiddle.xml': kSnippet.replace('violin', 'fiddle')});
  await sees(page, '# Buy fiddle strings');
});

step('Storage is saved, thinned out and kept within bounds', async () => {
  await visit(page, service, '/storage', 'Storage');
  const begins = await page.$eval('a[download="varnix-service.db"]', async (link) =>
    (await (await fetch(link.href)).text()).slice(0, 15),
  );
  assert.equal(begins, 'SQLite format 3');
  await type(page, 'spinbutton', 'Delete data older than (days)', '30');
  await click(page, 'button', 'Save');
  await confirm(page, 'Save the rule');
  await sees(page, 'Old data is deleted regularly', 'status');
  assert.equal((await service.fetch('/operator/storage')).retention.days, 30);
  await type(page, 'spinbutton', 'Older than (days)', '36500');
  await click(page, 'button', 'Delete now');
  await confirm(page, 'Delete');
  await sees(page, 'Deleted: 0 commands, 0 records', 'status');
  const [{number}] = (await service.fetch('/operator/records?kind=sign-in')).records;
  await click(page, 'button', `Delete record ${number}`);
  await confirm(page, 'Delete the record');
  await sees(page, 'Record deleted', 'status');
  await until(async () => !(await exists(page, 'button', `Delete record ${number}`)));
  assert.match(await page.evaluate(() => document.activeElement.ariaLabel), /^Delete record /, 'the focus stays near');
});

async function deleteNow(values) {
  await visit(page, service, '/storage', 'Storage');
  for (const [label, number] of Object.entries(values)) await type(page, 'spinbutton', label, number);
  await click(page, 'button', 'Delete now');
  await confirm(page, 'Delete');
}

step('What is old is deleted, but neither tagged clips nor clips that a person added', async () => {
  const push = {licenseKey: service.key, xmlType: 'XMSS', xmlContent: kSnippet.replace('violin', 'unwanted')};
  await service.fetch('/api/bridge/push', JSON.stringify(push));
  const names = async () => (await designs()).map(({fileName}) => fileName).sort();
  const files = [...new Set(await names())];
  assert.ok((await names()).length > files.length, 'there is an older design');
  await deleteNow({'Older than (days)': '0', 'Keep the newest': '1'});
  await until(async () => (await names()).join() === files.join());
  await deleteNow({'Older than (days)': '0', 'Keep the newest': ''});
  await until(async () => (await names()).length === 0);
  const {clips} = await service.fetch('/operator/clips');
  assert.deepEqual(clips.map(({title, tags}) => [/Buy (.*) strings/.exec(title)?.[1], ...tags].join(' ')).sort(), [
    'cello & bow kept',
    'fiddle',
    'violin shop strings',
  ]);
  const {records} = await service.fetch('/operator/records');
  assert.deepEqual([...new Set(records.map(({kind}) => kind))].sort(), ['clip', 'push']);
  const {commands: all} = await service.fetch('/operator/commands');
  const left = all.filter(({state}) => state !== 'delivered'); // one may have been lost when the service was killed
  assert.ok(
    left.every(({result}) => records.some(({number}) => number === result)),
    'they brought what is kept',
  );
  await visit(page, service, '/files', 'Files');
  await sees(page, 'No designs yet');
});
