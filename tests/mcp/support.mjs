// What the tests of AI assistants use: the service, and clients of varnix-service mcp.
import assert from 'node:assert/strict';
import {readFileSync} from 'node:fs';

import * as programs from '../support/programs.mjs';

const {SERVICE, start} = programs;
export const {ORDERS} = process.env;

export class Service extends programs.Service {
  /** The arguments and the environment with which a client starts varnix-service mcp. */
  get server() {
    const environment = {VARNIX_DATA: this.data, VARNIX_SERVICE: this.url};
    return {command: SERVICE, args: ['mcp'], env: environment, stderr: 'ignore'};
  }

  async commands() {
    return (await this.fetch('/operator/commands?limit=1000')).commands;
  }

  addDesign(file, name) {
    return this.fetch(`/api/live/ingest/${this.key}?filename=${name}`, readFileSync(file));
  }

  /** A simulated FileMaker, signed in to this service. */
  startFileMaker() {
    const signInLine = `Varnix.Register ( "you@example.com" ; "${this.key}" ; "machine" ; "${this.url}" )`;
    return programs.startFileMaker(signInLine, ['Workshop']);
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
