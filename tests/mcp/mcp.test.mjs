// Clients of AI assistants with the real service, plug-in and simulated FileMaker.
import assert from 'node:assert/strict';
import {readFileSync, writeFileSync} from 'node:fs';
import {join} from 'node:path';
import {after, before, test} from 'node:test';

import {endAll, kPatience, load, PACKAGES, SAMPLES, SERVICE, start, until} from '../support/programs.mjs';
import {ORDERS, RawClient, Service} from './support.mjs';

const {Client} = load('@modelcontextprotocol/sdk/client/index.js');
const {StdioClientTransport} = load('@modelcontextprotocol/sdk/client/stdio.js');
const kSteps = readFileSync(`${SAMPLES}/snippets/XMSS-branches-with-declaration-and-comments.xml`, 'utf8');
const kBytes = 50 << 20;

const connected = [];
let service;
let client;

before(async () => {
  service = await Service.start('data');
  await service.startFileMaker();
  await service.addDesign(ORDERS, 'Orders.fmp12.xml');
  client = await connect('assistant');
});

after(async () => {
  await Promise.all(connected.map((each) => each.close()));
  await endAll();
});

async function connect(name, to = service) {
  const assistant = new Client({name, version: '1'});
  connected.push(assistant);
  await assistant.connect(new StdioClientTransport(to.server));
  return assistant;
}

/** The structured result of a tool. The client checks it against the tool's schema. */
async function call(name, args = {}, options = {}, by = client) {
  const result = await by.callTool({name, arguments: args}, undefined, {timeout: kPatience, ...options});
  assert.ok(!result.isError, result.content[0].text);
  return {...result.structuredContent, text: result.content[0].text};
}

/** Why a tool refuses. */
async function refusal(name, args, by = client) {
  const result = await by.callTool({name, arguments: args}, undefined, {timeout: kPatience});
  assert.equal(result.isError, true);
  return result.content[0].text;
}

test('every tool describes itself', async () => {
  assert.equal(client.getServerVersion().name, 'varnix');
  assert.match(client.getInstructions(), /fmxmlsnippet/);
  const {tools} = await client.listTools();
  const names = 'list_files get_clipboard set_clipboard clipboard_formats debug_context get_design designs elements';
  assert.deepEqual(
    tools.map((tool) => tool.name),
    `${names} element search changes references clips`.split(' '),
  );
  for (const tool of tools) {
    assert.ok(tool.title && tool.description && tool.outputSchema, tool.name);
    assert.equal(tool.annotations.readOnlyHint, tool.name !== 'set_clipboard');
    assert.equal(tool.annotations.destructiveHint, tool.name === 'set_clipboard');
  }
});

test('FileMaker carries out what an assistant asks, and the history names it', async () => {
  assert.deepEqual((await call('list_files')).files, ['Workshop']);
  assert.equal((await call('debug_context', {file: 'Workshop'})).context.targetFile, 'Workshop');
  const placed = await call('set_clipboard', {xmlType: 'XMSS', xml: kSteps});
  assert.equal(placed.objects, 10);
  assert.match(placed.text, /Script Workspace/);
  assert.ok((await call('clipboard_formats')).formats.includes('Mac-XMSS'));
  const whole = await call('get_clipboard', {xmlType: 'XMSS'});
  assert.equal(whole.xml, kSteps);
  assert.equal(whole.text, kSteps);
  let pieces = '';
  for (let offset = 0; offset !== undefined;) {
    const piece = await call('get_clipboard', {command: whole.command, offset, maxBytes: 500});
    pieces += piece.xml;
    offset = piece.nextOffset;
  }
  assert.equal(pieces, kSteps);
  const clips = await call('clips', {text: 'Leaves the class', xmlType: 'XMSS'});
  assert.deepEqual([clips.total, clips.clips[0].xmlType], [1, 'XMSS']);
  const [clip] = (await call('clips', {id: clips.clips[0].id})).clips;
  assert.equal(clip.xml, kSteps);
  assert.match(clip.text, /Set Variable/);
  const messages = [];
  const fetched = await call('get_design', {file: 'Workshop'}, {onprogress: ({message}) => messages.push(message)});
  assert.equal(fetched.design.fileName, 'Workshop.fmp12');
  assert.equal(fetched.isNew, true);
  assert.ok(messages.some((message) => /FileMaker/.test(message)), messages.join());
  const again = await call('get_design');
  assert.equal(again.isNew, false);
  assert.equal(again.design.id, fetched.design.id);
  const commands = await service.commands();
  assert.equal(commands.length, 7, 'the pieces were not asked for again');
  for (const command of commands) assert.equal(command.by, 'agent assistant');
});

test('designs are examined without FileMaker', async () => {
  const {designs} = await call('designs', {file: 'Orders'});
  const design = designs[0].id;
  const scripts = await call('elements', {design: 'Orders', kind: 'script', limit: 1, offset: 1});
  assert.equal(scripts.elements.length, 1);
  assert.equal(scripts.nextOffset, 2);
  assert.ok((await call('elements', {design: String(design), kind: 'field', unused: true})).total > 0);
  const {elements} = await call('element', {design: 'Orders', name: 'Reset', kind: 'script'});
  assert.match(elements[0].text, /Perform Script \[ “Log” \]/);
  const part = await call('element', {design: 'Orders', name: elements[0].key, offset: 8, maxBytes: 100});
  assert.equal(part.elements[0].text, elements[0].text.slice(8, 108));
  assert.equal(part.elements[0].nextOffset, 108);
  assert.ok((await call('search', {text: 'rESET', file: 'Orders'})).hits.some((hit) => hit.name === 'Reset'));
  const {references} = await call('references', {design: 'Orders', of: 'Reset'});
  assert.ok(references.some((reference) => reference.fromName === 'Start' && reference.toName === 'Reset'));
  const changed = join(service.data, 'changed.xml');
  writeFileSync(changed, readFileSync(ORDERS, 'utf8').replaceAll('name="Reset"', 'name="Restart"'));
  await service.addDesign(changed, 'Orders.fmp12.xml');
  const {changes} = await call('changes', {file: 'Orders'});
  assert.ok(changes.some(({change, name, oldName}) => change === 'renamed' && name === 'Restart' && oldName === 'Reset'));
});

test('designs and their elements are resources', async () => {
  const {resources} = await client.listResources();
  const {uri} = resources.find(({title}) => title.startsWith('Orders'));
  assert.match((await client.readResource({uri})).contents[0].text, /scripts\n(.*\n)*  Restart/);
  const {resourceTemplates} = await client.listResourceTemplates();
  assert.equal(resourceTemplates.length, 2);
  const element = await client.readResource({uri: 'varnix://designs/Orders/elements/Orders%3A%3AStatus'});
  assert.match(element.contents[0].text, /field: .*Status/);
  await assert.rejects(client.readResource({uri: 'varnix://designs/999'}), {code: -32002});
  await assert.rejects(client.listResources({cursor: 'x'}), {code: -32602});
});

test('a tool reports its failure in its result', async () => {
  const steps = '<fmxmlsnippet type="FMObjectList"><Step/></fmxmlsnippet>';
  for (const [name, args, reason] of [
    ['set_clipboard', {xmlType: 'XMSS', xml: '<Step/>'}, /root element must be fmxmlsnippet/],
    ['set_clipboard', {xmlType: 'XMSS', xml: '<fmxmlsnippet><Step></fmxmlsnippet>'}, /not well-formed/],
    ['set_clipboard', {xmlType: 'XMSC', xml: steps}, /that is xmlType XMSS/],
    ['set_clipboard', {xmlType: 'XMSS', xml: '<fmxmlsnippet/>'}, /empty/],
    ['set_clipboard', {xmlType: 'XMSS', xml: `${steps}\u0001`}, /well-formed|control characters/],
    ['set_clipboard', {xmlType: 'XMSS'}, /xml is missing/],
    ['set_clipboard', {xmlType: 'TEXT', xml: steps}, /xmlType must be one of XMSS/],
    ['search', {text: 'a', limit: 0}, /limit must be a whole number from 1/],
    ['search', {text: 'a', folder: 'b'}, /unknown argument folder/],
    ['element', {design: '/etc/passwd', name: 'a'}, /no design of/],
    ['element', {design: 'Orders', name: 'Nobody'}, /no element named Nobody/],
    ['get_clipboard', {command: '../x'}, /is not the ID/],
    ['get_clipboard', {command: '0123456789abcdef'}, /no such command/],
    ['get_design', {file: 'Nowhere'}, /Nowhere|did not answer in time/],
  ]) {
    assert.match(await refusal(name, name === 'get_design' ? {...args, waitSeconds: 2} : args), reason);
  }
  await assert.rejects(client.callTool({name: 'no_tool'}), {code: -32602});
});

test('50 MB come in pieces that clients accept', async () => {
  const file = join(service.data, 'large.xml');
  const step = '<Step enable="True" id="89" name="# (comment)"><Text>é</Text></Step>\n';
  writeFileSync(file, `<fmxmlsnippet type="FMObjectList">${step.repeat(kBytes / step.length)}</fmxmlsnippet>`);
  const send = start(SERVICE, ['send', 'set-clipboard', '--xml-type', 'XMSS', '--content', file], service.server.env);
  assert.equal(await send.ended, 0);
  const piece = await call('get_clipboard', {maxBytes: 1000000});
  assert.ok(piece.bytes > kBytes);
  assert.equal(piece.nextOffset, Buffer.byteLength(piece.xml));
  assert.ok(piece.nextOffset > 999990);
  const {command, bytes} = piece;
  const rest = await call('get_clipboard', {command, offset: bytes - 30});
  assert.equal(rest.xml.slice(-16), '</fmxmlsnippet>\n'.trim().padStart(16, '\n'));
  assert.match(await refusal('get_clipboard', {command, offset: bytes + 1}), /offset is beyond the end/);
});

test('two clients at once each get their own answers', async () => {
  const other = await connect('second');
  const [files, context] = await Promise.all([call('list_files'), call('debug_context', {}, {}, other)]);
  assert.deepEqual(files.files, ['Workshop']);
  assert.equal(context.context.currentFile, 'Workshop');
  assert.ok((await service.commands()).some(({type, by}) => type === 'DEBUG_CONTEXT' && by === 'agent second'));
});

test('a waiting client can do other things, cancel, and disconnect', async () => {
  const alone = await Service.start('without FileMaker');
  await alone.addDesign(ORDERS, 'Orders.fmp12.xml');
  const states = async () => (await alone.commands()).map(({state}) => state).join();
  const raw = await new RawClient(alone).open();
  for (let id = 0; id < 5; ++id) raw.send({id, method: 'tools/call', params: {name: 'get_design', arguments: {}}});
  raw.send({id: 0, method: 'ping'});
  const twice = await raw.read();
  assert.deepEqual([twice.id, twice.error.code], [null, -32600], 'the id is in use');
  raw.send({id: 'ping', method: 'ping'});
  assert.deepEqual(await raw.read(), {jsonrpc: '2.0', id: 'ping', result: {}});
  raw.send({id: 'search', method: 'tools/call', params: {name: 'search', arguments: {text: 'Reset'}}});
  assert.equal((await raw.read()).id, 'search');
  await until(async () => (await states()) === 'queued,queued,queued,queued,queued');
  for (const requestId of [0, 1, 'unknown']) raw.send({method: 'notifications/cancelled', params: {requestId}});
  await until(async () => (await states()).match(/cancelled/g)?.length === 2);
  raw.write('no JSON\n\xff\n\n[]\n');
  assert.equal((await raw.read()).error.code, -32700);
  assert.equal((await raw.read()).error.code, -32700);
  assert.equal((await raw.read()).error.code, -32600);
  raw.child.stdin.end();
  assert.equal(await raw.child.ended, 0);
  assert.match(await states(), /^(cancelled,?){5}$/, 'whoever is gone waits for nothing');
  const killed = await new RawClient(alone).open();
  killed.send({id: 1, method: 'tools/call', params: {name: 'list_files'}});
  await until(async () => (await states()).endsWith('queued'));
  killed.child.kill('SIGTERM');
  assert.equal(await killed.child.ended, 0);
  assert.match(await states(), /cancelled$/);
  const waiting = await connect('waiting', alone);
  assert.match(await refusal('list_files', {waitSeconds: 1}, waiting), /No FileMaker has asked.*Nothing was done/);
  alone.child.kill();
  await alone.child.ended;
  assert.match(await refusal('list_files', {}, waiting), /no service at .*varnix-service serve/);
  assert.ok((await call('search', {text: 'Reset'}, {}, waiting)).total > 0, 'designs need no service');
});

test('the user decides what assistants may use', async () => {
  const readOnly = await Service.start('read-only', {options: ['--agents', 'read-only']});
  let assistant = await connect('reader', readOnly);
  assert.match(await refusal('set_clipboard', {xmlType: 'XMSS', xml: kSteps}, assistant), /--agents read-only/);
  assert.match(await refusal('list_files', {waitSeconds: 1}, assistant), /No FileMaker/);
  assert.deepEqual((await readOnly.commands()).map(({type}) => type), ['LIST_FILES']);
  const sent = JSON.stringify({type: 'SET_CLIPBOARD', xmlType: 'XMSS', xmlContent: kSteps});
  const {id} = await readOnly.fetch('/operator/commands', sent);
  const asReader = {Authorization: `Bearer ${readOnly.key}`, 'Varnix-Agent': 'reader'};
  const repeat = {method: 'POST', headers: asReader, body: '{}'};
  assert.equal((await fetch(`${readOnly.url}/operator/commands/${id}/repeat`, repeat)).status, 403);
  const off = await Service.start('off', {options: ['--agents', 'off']});
  await off.addDesign(ORDERS, 'Orders.fmp12.xml');
  const headers = {Authorization: `Bearer ${off.key}`, 'Varnix-Agent': 'x'};
  assert.equal((await fetch(`${off.url}/operator/status`, {headers})).status, 403);
  off.child.kill();
  await off.child.ended;
  assistant = await connect('off', off);
  for (const name of ['designs', 'list_files']) assert.match(await refusal(name, {}, assistant), /--agents off/);
  await assert.rejects(assistant.listResources(), /--agents off/);
});

test('clients of the revision without sessions are served', async (t) => {
  if (Number(process.versions.node.split('.')[0]) < 20) return t.skip('their library needs Node.js 20');
  const modern = load('@modelcontextprotocol/client');
  const {StdioClientTransport: ModernTransport} = load('@modelcontextprotocol/client/stdio');
  const assistant = new modern.Client({name: 'modern', version: '1'}, {versionNegotiation: {mode: 'auto'}});
  connected.push(assistant);
  await assistant.connect(new ModernTransport(service.server));
  assert.equal(assistant.getNegotiatedProtocolVersion(), '2026-07-28');
  assert.equal((await assistant.listTools()).tools.length, 13);
  const result = await assistant.callTool({name: 'list_files', arguments: {}});
  assert.deepEqual(result.structuredContent.files, ['Workshop']);
  assert.equal((await service.commands()).at(-1).by, 'agent modern');
  assert.ok((await assistant.listResources()).resources.length >= 2);
  await assert.rejects(assistant.readResource({uri: 'varnix://designs/999'}), {code: -32602});
});

test('the inspector calls tools', async () => {
  // It looks for its own description in the folder above the current one.
  const program = join(PACKAGES, 'node_modules/@modelcontextprotocol/inspector-cli/build');
  const script = `cd "$0" && exec "$@"`;
  const inspect = (...options) =>
    start('sh', ['-c', script, program, process.execPath, 'index.js', SERVICE, 'mcp', ...options], service.server.env);
  for (const [options, expected] of [
    [['--method', 'tools/list'], /"set_clipboard"/],
    [['--method', 'tools/call', '--tool-name', 'list_files'], /"Workshop"/],
    [['--method', 'resources/templates/list'], /varnix:\/\/designs\/\{id\}/],
  ]) {
    const child = inspect(...options);
    let output = '';
    for (let line = await child.readLine(); line !== ''; line = await child.readLine()) output += `${line}\n`;
    assert.match(output, expected);
    assert.equal(await child.ended, 0, output);
  }
});
