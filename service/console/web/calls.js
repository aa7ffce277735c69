// Which scripts a script performs in turn.
import {elementAddress} from './data.js';
import {amount, h} from './dom.js';
import {named, number} from './format.js';

const kDeepest = 8; // levels that are shown

// The calls of each script, from a list in which they follow the script where it comes first.
function callsByScript(calls, script) {
  const callsOf = new Map();
  const performers = [script];
  for (const call of calls) {
    performers.length = call.depth;
    const performer = performers.at(-1);
    if (!callsOf.has(performer)) callsOf.set(performer, []);
    callsOf.get(performer).push(call);
    performers.push(call.key);
  }
  return callsOf;
}

// Lists within lists. The calls of a script are listed once, at the first place that is not nested too deeply.
function tree(calls, script, design) {
  const callsOf = callsByScript(calls, script);
  const shown = new Set();
  const branch = (performers) =>
    h(
      'ul',
      {},
      callsOf.get(performers.at(-1)).map((call) => entry(call, performers)),
    );
  const entry = (call, performers) => {
    const link = h('a', {href: elementAddress(design, call.key)}, named(call.name));
    const place = (text) => h('li', {}, link, h('span', {class: 'place'}, text));
    if (performers.includes(call.key)) return place('already in this chain of calls (cycle)');
    if (!callsOf.has(call.key)) return h('li', {}, link);
    if (shown.has(call.key)) return place('see above');
    if (performers.length === kDeepest) return place('performs others; open it to see them');
    shown.add(call.key);
    return h('li', {}, link, branch([...performers, call.key]));
  };
  return branch([script]);
}

/** A section for the page of a script with the key `script`; nothing when it performs no others by way of another. */
export function performedInTurn(calls, script, design) {
  if (!calls.some((call) => call.depth > 1)) return undefined;
  const scripts = new Set(calls.map((call) => call.key));
  scripts.delete(script);
  const details = h('details', {}, h('summary', {}, 'Call tree'));
  details.addEventListener('toggle', () => details.append(tree(calls, script, design)), {once: true}); // may be large
  return h(
    'section',
    {class: 'references'},
    h('h2', {}, 'Performs in turn', amount(number(scripts.size))),
    details,
  );
}
