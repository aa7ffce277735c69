// What people do in the console once it is set up: they keep order in designs and commands.
import assert from 'node:assert/strict';
import {after, before} from 'node:test';
import {chainedExport, kSnippet, laterWorkshop} from './exports.mjs';
import {until} from '../support/programs.mjs';
import {
  accessibilityFaults,
  addDesign,
  click,
  confirm,
  disturb,
  exists,
  find,
  finish,
  openWindow,
  sees,
  startService,
  step,
  type,
  visit,
} from './support.mjs';

let service;
let page;
let isDown = false;
let workshop; // the design's id

before(async () => {
  service = await startService();
  page = await openWindow(service, {isDown: () => isDown});
  await page.goto(service.consoleUrl);
  await find(page, 'heading', 'Setup');
});
after(finish);

const focused = (window) => window.evaluate(() => document.activeElement.getAttribute('aria-label'));

step('A label and a note are given, changed and removed, in every window', async () => {
  workshop = await addDesign(service, laterWorkshop, 'Workshop.fmp12.xml');
  await visit(page, service, '/files', 'Files');
  await click(page, 'link', 'Workshop');
  const window = await openWindow(service);
  await window.goto(page.url());
  await find(window, 'button', `Add label to design ${workshop}`);
  await click(page, 'button', `Add label to design ${workshop}`);
  await type(page, 'textbox', 'Label', '  Release 2 ');
  await type(page, 'textbox', 'Note', '<b>as sold</b>');
  assert.deepEqual(await accessibilityFaults(page), []);
  isDown = true;
  const trouble = await disturb(page, /label$/);
  await click(page, 'button', 'Save');
  await page.waitForSelector('dialog [role=alert]:not(:empty)');
  await trouble.end();
  await click(page, 'button', 'Save');
  await sees(page, 'Label and note saved', 'status');
  isDown = false;
  await sees(page, 'Release 2 <b>as sold</b>');
  await until(async () => (await focused(page)) === `Edit label of design ${workshop}`);
  await sees(window, 'Release 2 <b>as sold</b>');
  await window.close();
  await click(page, 'button', `Edit label of design ${workshop}`);
  await service.fetch(`/operator/designs/${workshop}/label`, JSON.stringify({label: 'Release 3'}));
  await type(page, 'textbox', 'Note', '');
  await click(page, 'button', 'Save');
  await sees(page, 'Note removed', 'status');
  await until(async () => !(await page.$eval('main', (main) => main.innerText)).includes('as sold'));
  const [design] = (await service.fetch('/operator/designs')).designs;
  assert.deepEqual([design.label, design.note], ['Release 3', undefined]);
  await click(page, 'button', `Edit label of design ${workshop}`);
  await type(page, 'textbox', 'Label', 'not kept');
  await page.keyboard.press('Escape');
  await click(page, 'button', `Edit label of design ${workshop}`);
  await type(page, 'textbox', 'Label', '');
  await click(page, 'button', 'Save');
  await sees(page, 'Label removed', 'status');
  await find(page, 'button', `Add label to design ${workshop}`);
  assert.equal(await exists(page, 'button', `Edit label of design ${workshop}`), false);
});

// What the plug-in is given to do.
const poll = async () => (await service.fetch(`/api/bridge/command/next?licenseKey=${service.key}`)).command;
const complete = (id) =>
  service.fetch(`/api/bridge/command/${id}/complete`, JSON.stringify({licenseKey: service.key, status: 'completed'}));

step('A command is repeated in a window that has not sent it', async () => {
  const sent = JSON.stringify({type: 'SET_CLIPBOARD', xmlType: 'XMSS', xmlContent: kSnippet});
  const {id} = await service.fetch('/operator/commands', sent);
  await poll();
  await complete(id);
  await visit(page, service, '/commands', 'Commands');
  const again = await page.waitForSelector('button[aria-label^="Repeat Set the clipboard"]');
  await again.click();
  await sees(page, 'Set the clipboard: waiting for FileMaker', 'status');
  const first = await poll();
  assert.deepEqual([first.xmlType, first.xmlContent], ['XMSS', kSnippet]);
  await complete(first.id);
  await visit(page, service, `/commands/${id}`, 'Set the clipboard');
  await click(page, 'button', 'Repeat');
  await find(page, 'heading', 'Commands');
  const second = await poll();
  assert.equal(second.xmlContent, kSnippet);
  await complete(second.id);
});

step('A command that FileMaker has taken is forgotten, and what comes late is shown there', async () => {
  const {id} = await service.fetch('/operator/commands', JSON.stringify({type: 'LIST_FILES'}));
  await poll();
  await visit(page, service, '/commands', 'Commands');
  await click(page, 'button', 'Forget List open files');
  await sees(page, 'Forget this command?', 'dialog');
  await confirm(page, 'Forget the command');
  await sees(page, 'FileMaker may still carry it out', 'status');
  await sees(page, 'In progress Nothing in progress.');
  await sees(page, 'Varnix no longer waits for this command. FileMaker may still carry it out.');
  await visit(page, service, `/commands/${id}`, 'List open files');
  await click(page, 'button', 'Delete');
  isDown = true; // the browser reports the refusal
  await confirm(page, 'Delete the command');
  await sees(page, 'FileMaker may still answer', 'status');
  isDown = false;
  const list = {licenseKey: service.key, xmlType: 'FILE_LIST', xmlContent: 'Workshop', label: 'Open files'};
  await service.fetch('/api/bridge/push', JSON.stringify(list));
  await complete(id);
  await sees(page, 'cancelled');
  await sees(page, 'It was forgotten, but FileMaker has carried it out.');
  await sees(page, 'Result that came late Copy Download Workshop');
  await click(page, 'button', 'Delete');
  await confirm(page, 'Delete the command');
  await find(page, 'heading', 'Commands');
  assert.equal((await service.fetch('/operator/commands')).commands.filter((one) => one.id === id).length, 0);
});

step('A script shows what it performs in turn, with cycles and within bounds', async () => {
  const orders = await addDesign(service, chainedExport(10), 'Orders.fmp12.xml');
  await visit(page, service, `/designs/${orders}/elements/Start`, 'Start');
  await sees(page, 'Performs in turn 12');
  assert.doesNotMatch(await page.$eval('aside', (aside) => aside.innerText), /Made 1/, 'it is folded');
  await page.click('aside section:last-child summary');
  await sees(page, 'Reset Log Made 1 Made 2 Made 3 Made 4 Made 5 Made 6 performs others; open it to see them Made 9 Made 10 Start');
  await sees(page, 'Start already in this chain of calls (cycle)');
  assert.deepEqual(await accessibilityFaults(page), []);
  await click(page, 'link', 'Made 6');
  await find(page, 'heading', 'Made 6');
  await sees(page, 'Performs in turn 4');
});

step('A search for which nobody waits any longer is given up', async () => {
  await visit(page, service, '/search', 'Search');
  const withdrawn = [];
  const hold = (asked) => asked.url().includes('search?text=Jo&') || asked.continue();
  const note = (asked) => withdrawn.push(asked.url());
  page.on('request', hold);
  page.on('requestfailed', note);
  await page.setRequestInterception(true);
  const asked = page.waitForRequest((request) => request.url().includes('search?text=Jo&'));
  await page.keyboard.type('Jo');
  await asked;
  await page.keyboard.type('bs::Status');
  await sees(page, 'Close Job');
  assert.match(withdrawn.join(), /search\?text=Jo&/);
  await page.setRequestInterception(false);
  page.off('request', hold);
  page.off('requestfailed', note);
});
