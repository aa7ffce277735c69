// Scripts, formulas and other texts in lines: step names emphasised, comments dimmed, names linked.
import {h} from './dom.js';

const kControl =
  /^(If|Else If|Else|End If|Loop|Exit Loop If|End Loop|Exit Script|Halt Script|(Open|Commit|Revert) Transaction)\b/;
const kStep = /^(\s*)(\/\/ )?([\p{L}][^[\]()"]*?)(\s\[.*|)$/u;

/** Finds the names of `links`, a Map of name -> address, in a text. The longest name wins. */
export function linker(links) {
  const names = [...links.keys()].filter((name) => name.length > 1).sort((a, b) => b.length - a.length);
  if (!names.length) return (text) => [text];
  const escaped = names.map((name) => name.replace(/[.*+?^${}()|[\]\\]/g, '\\$&'));
  // No lookbehind: Safari before 16.4 refuses a module that has one.
  const pattern = new RegExp(`(^|[^\\p{L}\\p{N}_:])(${escaped.join('|')})(?![\\p{L}\\p{N}_:])`, 'gu');
  return (text) => {
    const parts = [];
    let end = 0;
    for (const found of text.matchAll(pattern)) {
      const [whole, before, name] = found;
      parts.push(text.slice(end, found.index), before, h('a', {href: links.get(name)}, name));
      end = found.index + whole.length;
    }
    parts.push(text.slice(end));
    return parts;
  };
}

const isComment = (text) => /^\s*#/.test(text);
const commentLine = (text) => h('span', {class: 'comment'}, text);

/** The content of one line of a script. */
export function stepLine(text, link = (plain) => [plain]) {
  if (isComment(text)) return commentLine(text);
  const [, indent, disabled, name, rest] = kStep.exec(text) ?? [];
  if (name === undefined) return link(text);
  const step = h('span', {class: kControl.test(name) ? 'control' : 'step'}, name);
  return disabled ? [indent, h('span', {class: 'comment'}, disabled, name, link(rest))] : [indent, step, link(rest)];
}

/** The content of one line of a formula. */
export function formulaLine(text, link = (plain) => [plain]) {
  const found = /(^|[^:])\/\//.exec(text);
  const at = found && found.index + found[1].length;
  return !found || text.slice(0, at).split('"').length % 2 === 0
    ? link(text)
    : [link(text.slice(0, at)), h('span', {class: 'comment'}, text.slice(at))];
}

/**
 * Lines in a block; `numbered` shows the number of each, without it being copied. `lengths` are the numbers of lines
 * that belong together and are numbered as one, such as a step with its formula.
 */
export function codeBlock(lines, {label, line = formulaLine, link, numbered = false, lengths = lines.map(() => 1)}) {
  let at = 0;
  const units = lengths.map((length) => lines.slice(at, (at += length)));
  const element = (text, content, kind) => h('span', {class: kind}, content(text, link), '\n');
  const more = (first) => (isComment(first) ? commentLine : formulaLine);
  return h(
    'pre',
    {class: numbered ? 'code numbered' : 'code', tabindex: '0', role: 'region', 'aria-label': label},
    h(
      'code',
      {},
      units.map(([first, ...rest]) => [
        element(first, line, 'line start'),
        rest.map((text) => element(text, more(first), 'line')),
      ]),
    ),
  );
}

/**
 * The parts of an element's readable text: {properties: [[name, value lines]], lines}. The heading is left out, because
 * the page shows it already; `lines` are the steps of a script.
 */
export function parseText(text, kind) {
  const body = text.slice(text.indexOf('\n\n') + 2);
  const steps = kind === 'script' ? body.indexOf('\n\n') : -1;
  if (steps < 0) return {properties: parseProperties(body), lines: []};
  return {properties: parseProperties(body.slice(0, steps)), lines: body.slice(steps + 2, -1).split('\n')};
}

function parseProperties(text) {
  const properties = [];
  const lines = text.split('\n');
  for (const [at, line] of lines.entries()) {
    const last = properties.at(-1);
    const isLong = line.endsWith(':') && lines[at + 1]?.startsWith('    ');
    if (line.startsWith('    ') && last) last[1].push(line.slice(4));
    else if (isLong) properties.push([line.slice(0, -1), []]);
    else if (line.includes(': '))
      properties.push([line.slice(0, line.indexOf(': ')), [line.slice(line.indexOf(': ') + 2)]]);
    else last?.[1].push(line);
  }
  for (const [, value] of properties) trimEnd(value);
  return properties;
}

function trimEnd(lines) {
  while (lines.length && lines.at(-1) === '') lines.pop();
  return lines;
}
