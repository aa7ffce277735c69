// Every page with every kind of content: it fits, is accessible and quick, and shows names as text.
import assert from 'node:assert/strict';
import {after, before} from 'node:test';
import {hostileExport, kHostile, kSnippet, largeExport, laterWorkshop, workshopExport} from './exports.mjs';
import {until} from '../support/programs.mjs';
import {
  accessibilityFaults,
  addDesign,
  disturb,
  find,
  finish,
  longestKey,
  openWindow,
  sees,
  startService,
  step,
  type,
  visit,
} from './support.mjs';

const kFirstView = 300; // ms from the arrival of 10,000 fields to the first rows
const kKey = 50; // ms for a key in Search
const kSlowMachine = 4; // times: machines that test do other things, too

let service;
let page;
let workshop; // the designs' ids
let later;

before(async () => {
  service = await startService();
  workshop = await addDesign(service, workshopExport, 'Workshop.fmp12.xml');
  later = await addDesign(service, laterWorkshop, 'Workshop.fmp12.xml');
  for (const instrument of ['violin', 'cello']) {
    await service.fetch('/operator/clips?name=Shop', kSnippet.replace('violin', instrument));
  }
  await service.fetch('/operator/commands', JSON.stringify({type: 'LIST_FILES', expires: '1'}));
  await until(async () => (await service.fetch('/operator/commands?state=expired')).commands.length > 0);
  page = await openWindow(service);
  await page.goto(service.consoleUrl);
  await find(page, 'heading', 'Setup');
});
after(finish);

const excess = (window) => window.evaluate(() => document.documentElement.scrollWidth - innerWidth);

step('Names of every kind stay text, and fit', async () => {
  const hostile = await addDesign(service, hostileExport, 'Hostile.fmp12.xml');
  const {elements} = await service.fetch(`/operator/designs/${hostile}/elements?kind=script`);
  const paths = [
    '?kind=script',
    '?kind=field',
    '?kind=layout',
    '/relationships',
    '/report',
    `/elements/${elements[9].key}`,
  ];
  for (const path of [
    ...paths.map((rest) => `/designs/${hostile}${rest}`),
    `/changes/${workshop}/${hostile}`,
    '/search?text=onerror',
  ]) {
    await visit(page, service, path);
    await sees(page, kHostile.slice(0, 30));
    assert.ok((await excess(page)) <= 0, `${path} is too wide`);
  }
  assert.equal(await page.evaluate(() => globalThis.taken), undefined);
});

step('Ten thousand fields are quick', async () => {
  const large = await addDesign(service, largeExport(10000), 'Large.fmp12.xml');
  await page.evaluateOnNewDocument(() => {
    new MutationObserver(() => {
      if (!globalThis.firstRow && document.querySelector('td a, tbody th a')) globalThis.firstRow = performance.now();
    }).observe(document, {childList: true, subtree: true});
  });
  await page.goto('about:blank');
  await visit(page, service, `/designs/${large}?kind=field`);
  await sees(page, '10,');
  const delay = await page.evaluate(
    () =>
      globalThis.firstRow -
      performance.getEntriesByType('resource').findLast((entry) => entry.name.endsWith('/elements')).responseEnd,
  );
  assert.ok(delay < kFirstView * kSlowMachine, `first rows ${delay} ms after the data`);
  await type(page, 'searchbox', 'Filter fields', 'Made 9999');
  await sees(page, '1 of 10,');
  await visit(page, service, '/search', 'Search');
  const longest = await longestKey(page, ['M', 'Ma', 'Mad', 'Made', 'Made 1']);
  assert.ok(longest < kKey * kSlowMachine, `a key took ${longest} ms`);
  await sees(page, 'Made 1');
});

async function pages() {
  const {fileUuid} = (await service.fetch('/operator/designs')).designs[0];
  const {clips} = await service.fetch('/operator/clips');
  const {commands: all} = await service.fetch('/operator/commands');
  return [
    ['/files', 'Files'],
    [`/files/${fileUuid}`, 'Workshop'],
    [`/designs/${workshop}`, 'Workshop'],
    [`/designs/${workshop}?kind=field`, 'Workshop'],
    [`/designs/${workshop}/elements/Close%20Job`, 'Close Job'],
    [`/changes/${workshop}/${later}`, 'Changes in Workshop'],
    [`/designs/${workshop}/relationships`, 'Relationships of Workshop'],
    [`/designs/${workshop}/report`, 'Report on Workshop'],
    ['/search?text=Job', 'Search'],
    ['/clips', 'Clips'],
    [`/clips/${clips[0].id}`, clips[0].title],
    [`/clips/${clips[0].id}/compare/${clips[1].id}`, 'Compare clips'],
    ['/commands', 'Commands'],
    [`/commands/${all[0].id}`, 'List open files'],
    ['/storage', 'Storage'],
    ['/setup', 'Setup'],
  ];
}

for (const scheme of ['light', 'dark']) {
  step(`Every page is accessible and fits, ${scheme}`, async () => {
    await page.emulateMediaFeatures([{name: 'prefers-color-scheme', value: scheme}]);
    for (const [address, heading] of await pages()) {
      await visit(page, service, address, heading);
      await page.waitForFunction(() => !document.querySelector('.loading'));
      assert.deepEqual(await accessibilityFaults(page), [], address);
      for (const width of [800, 640]) {
        // 640: 1280 at 200 %
        await page.setViewport({width, height: 900});
        assert.ok((await excess(page)) <= 0, `${address} is too wide at ${width}`);
      }
      await page.setViewport({width: 1280, height: 900});
    }
  });
}

step('Steps are numbered as FileMaker numbers them', async () => {
  await visit(page, service, `/designs/${workshop}/elements/${encodeURIComponent('🎻 New Job')}`, '🎻 New Job');
  await sees(page, 'Steps 14');
  const lines = await page.$$eval('.code .line', (all) => all.map(({className}) => className));
  assert.deepEqual(lines.slice(0, 5), ['line start', 'line', 'line', 'line start', 'line start']);
});

step('A list is printed whole', async () => {
  await visit(page, service, `/designs/${workshop}?kind=field`, 'Workshop');
  await sees(page, '181 fields');
  const rows = () => page.$$eval('main tbody tr', (all) => all.length);
  assert.ok((await rows()) < 181);
  await page.evaluate(() => dispatchEvent(new Event('beforeprint')));
  assert.equal(await rows(), 181);
});

step('Without JavaScript the page says so', async () => {
  const window = await openWindow(service);
  await window.setJavaScriptEnabled(false);
  await window.goto(service.url);
  const shown = await find(window, 'main');
  assert.match(await shown.evaluate((main) => main.innerText), /^This page needs JavaScript\.[^]*--help\.$/);
  await window.close();
});

step('A page of which a part is missing says so', async () => {
  const window = await openWindow(service, {isDown: () => true});
  await disturb(window, /graph\.js$/);
  await window.goto(service.url);
  await sees(window, 'load it again');
  await window.close();
});
