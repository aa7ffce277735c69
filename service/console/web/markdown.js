// The report of changes for a ticket, a mail or a commit.
import {dateText} from './format.js';
import {byKind, kindPlural} from './kinds.js';

// A name must not become markup where the report is read.
const escaped = (text) => text.replace(/[\\`*_[\]<>#|]/g, '\\$&').replace(/\s+/g, ' ');
const kSigns = {both: ' ', older: '-', newer: '+'};

function fenced(lines) {
  const body = lines.map((line) => `${kSigns[line.in]} ${line.text}`).join('\n');
  const longest = Math.max(2, ...[...body.matchAll(/`+/g)].map((found) => found[0].length));
  const fence = '`'.repeat(longest + 1);
  return `  ${fence}diff\n${body.replace(/^/gm, '  ')}\n  ${fence}`;
}

function entry(change) {
  const by = change.user || change.account;
  const head =
    `- **${change.change}** ${escaped(change.name)}${change.oldName ? ` (was ${escaped(change.oldName)})` : ''}` +
    `${by ? `, ${escaped(by)}, ${dateText(change.time)}` : ''}`;
  const details = (change.details ?? []).map((detail) =>
    detail.lines
      ? `  - ${escaped(detail.name)}\n\n${fenced(detail.lines)}\n`
      : `  - ${escaped(detail.name)}: ${escaped(detail.older) || '(empty)'} → ${escaped(detail.newer) || '(empty)'}`,
  );
  return [head, ...details].join('\n');
}

/** The chosen changes between two designs of the file `name`. */
export function markdown(name, {older, newer}, warnings, changes) {
  const kinds = [...new Set(changes.map((change) => change.kind))].sort(byKind);
  const sections = kinds.map(
    (kind) =>
      `## ${kindPlural(kind)}\n\n${changes
        .filter((change) => change.kind === kind)
        .map(entry)
        .join('\n')}\n`,
  );
  return [
    `# Changes in ${escaped(name)}`,
    '',
    `From ${dateText(older.receivedAt)} to ${dateText(newer.receivedAt)}.`,
    '',
    ...warnings.map((warning) => `> ${escaped(warning)}\n`),
    ...sections,
  ].join('\n');
}
