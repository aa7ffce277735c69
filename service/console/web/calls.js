// Which scripts a script performs in turn.
import {elementAddress} from './data.js';
import {amount, h} from './dom.js';
import {named, number} from './format.js';

const kDeepest = 8; // levels that are shown

// The calls in a cycle lead back to a script that is being performed.
function remark(call, performers) {
  if (performers.includes(call.key)) return 'is being performed already: a cycle';
  return call.isRepeated ? 'see above' : '';
}

function entry(call, note, design) {
  const link = h('a', {href: elementAddress(design, call.key)}, named(call.name));
  return h('li', {}, link, note && h('span', {class: 'place'}, note));
}

// Lists within lists, made of calls that each have a depth.
function tree(calls, script, design) {
  const root = h('ul');
  const items = []; // the latest of each depth
  const performers = [script];
  for (const call of calls) {
    performers.length = call.depth;
    const note = remark(call, performers);
    performers.push(call.key);
    const caller = items[call.depth - 1];
    if (call.depth > kDeepest) {
      if (call.depth === kDeepest + 1) caller.dataset.performsMore = '';
      continue;
    }
    items[call.depth] = entry(call, note, design);
    const list = caller ? (caller.querySelector('ul') ?? caller.appendChild(h('ul'))) : root;
    list.append(items[call.depth]);
  }
  for (const item of root.querySelectorAll('[data-performs-more]'))
    item.append(h('span', {class: 'place'}, 'performs more: open it'));
  return root;
}

/** A section for the page of a script with the key `script`; nothing when it performs no others by way of another. */
export function performedInTurn(calls, script, design) {
  if (!calls.some((call) => call.depth > 1)) return undefined;
  const scripts = new Set(calls.map((call) => call.key));
  scripts.delete(script);
  return h(
    'section',
    {class: 'references'},
    h('h2', {}, 'Performs in turn', amount(number(scripts.size))),
    h('details', {}, h('summary', {}, 'Call tree'), tree(calls, script, design)),
  );
}
