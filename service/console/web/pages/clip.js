// One clip: its readable content and its XML, tags, find and replace, and the way back to FileMaker.
import {get, getText, post, postFile, query, segment} from '../api.js';
import {codeBlock, formulaLine, stepLine} from '../code.js';
import {compareLines, sideBySide} from '../diff.js';
import {announce, button, confirmed, copy, field, form, h, save} from '../dom.js';
import {count, size, when} from '../format.js';
import {clipKind} from '../kinds.js';
import {placed} from '../work.js';

/** What shows a line of the clip's text. */
export const lineOf = (clip) => (clip.xmlType === 'XMSS' || clip.xmlType === 'XMSC' ? stepLine : formulaLine);

const fileName = (clip) =>
  `${clip.xmlType}-${(clip.title || 'clip').replace(/[^\p{L}\p{N}]+/gu, '-').slice(0, 60)}.xml`;

async function remove(clip) {
  const isSure = await confirmed(
    'Delete this clip?',
    'It is deleted from this machine. FileMaker and its clipboard are not touched.',
    'Delete the clip',
  );
  if (!isSure) return;
  await post(`clips/${segment(clip.id)}/delete`);
  announce('Clip deleted');
  location.hash = '#/clips';
}

function tagForm(clip) {
  const input = h('input', {name: 'tags', value: clip.tags.join(', '), autocomplete: 'off'});
  return form(
    async ({tags}) => {
      await post(`clips/${segment(clip.id)}/tags`, {tags});
      announce('Tags saved');
    },
    {class: 'inline'},
    field('Tags', input, 'Separated by commas'),
    h('button', {class: 'plain'}, 'Save tags'),
  );
}

// A parser changes line endings and tabs unless they are written as references.
const kSigns = {'&': '&amp;', '<': '&lt;', '>': '&gt;', '"': '&quot;', '\r': '&#13;', '\n': '&#10;', '\t': '&#9;'};
const kEntities = {amp: '&', lt: '<', gt: '>', quot: '"', apos: "'"};
const inXml = (text, signs) => text.replace(signs, (sign) => kSigns[sign]);

function decoded(text) {
  return text.replace(/\r\n?/g, '\n').replace(/&(?:#x([0-9a-f]+)|#(\d+)|(\w+));/gi, (whole, hex, digits, name) =>
    name ? (kEntities[name] ?? whole) : String.fromCodePoint(hex ? parseInt(hex, 16) : Number(digits)),
  );
}

// `xml` with each occurrence of `wanted` in its texts and attributes replaced, and how many there were.
function replaceIn(xml, wanted, replacement, isExact) {
  const pattern = new RegExp(wanted.replace(/[.*+?^${}()|[\]\\]/g, '\\$&'), isExact ? 'gu' : 'giu');
  let hits = 0;
  const swap = (text, encode) => {
    const before = hits;
    const changed = text.replace(pattern, () => (++hits, replacement));
    return hits > before ? encode(changed) : undefined;
  };
  const parts = /<!\[CDATA\[([\s\S]*?)\]\]>|<!--[\s\S]*?-->|<\?[\s\S]*?\?>|="([^"]*)"|>([^<>]+)(?=<)/g;
  const result = xml.replace(parts, (whole, data, value, text) => {
    if (data !== undefined) {
      return swap(data, (changed) => `<![CDATA[${changed.replaceAll(']]>', ']]]]><![CDATA[>')}]]>`) ?? whole;
    }
    if (value !== undefined) return swap(decoded(value), (changed) => `="${inXml(changed, /[&<>"\r\n\t]/g)}"`) ?? whole;
    if (text !== undefined && text.trim())
      return swap(decoded(text), (changed) => `>${inXml(changed, /[&<>\r]/g)}`) ?? whole;
    return whole;
  });
  return {xml: result, hits};
}

function replaceForm(clip, xml) {
  const place = h('div');
  const add = async (content) => (await postFile(`clips${query({name: clip.title || 'Clip'})}`, content)).id;
  const preview = ({find, replacement, exact}) => {
    const {xml: changed, hits} = replaceIn(xml, find, replacement, exact === 'on');
    if (!hits) {
      place.replaceChildren(h('p', {class: 'none'}, 'The text does not occur in this clip.'));
      return;
    }
    place.replaceChildren(
      h('p', {class: 'total'}, count(hits, 'replacement')),
      sideBySide(compareLines(xml, changed), {label: 'Replacements', older: 'Now', newer: 'Replaced'}),
      h(
        'div',
        {class: 'actions'},
        button('Add as a new clip', async () => (location.hash = `#/clips/${segment(await add(changed))}`)),
        button(
          "Add and put on FileMaker's clipboard",
          async () => placed(`clips/${segment(await add(changed))}/place`, 'The changed clip'),
          {class: 'plain'},
        ),
      ),
    );
  };
  return h(
    'details',
    {class: 'box'},
    h('summary', {}, 'Find and replace'),
    form(
      preview,
      {class: 'columns'},
      field('Find', h('input', {name: 'find', required: true, autocomplete: 'off', spellcheck: 'false'})),
      field('Replace with', h('input', {name: 'replacement', autocomplete: 'off', spellcheck: 'false'})),
      h('label', {class: 'check'}, h('input', {type: 'checkbox', name: 'exact', checked: true}), 'Match case'),
      h('button', {class: 'plain'}, 'Preview'),
    ),
    place,
  );
}

function fill(page, clip, xml) {
  const path = `clips/${segment(clip.id)}`;
  page.show(
    clip.title || 'Untitled',
    {
      trail: [['Clips', '#/clips']],
      actions: [
        button("Put on FileMaker's clipboard", () => placed(`${path}/place`, 'The clip')),
        button('Copy as text', () => copy(xml, 'XML'), {class: 'plain'}),
        button('Download', () => save(xml, fileName(clip), 'application/xml'), {class: 'plain'}),
        button('Delete', () => remove(clip), {class: 'plain'}),
      ],
    },
    h(
      'p',
      {class: 'facts'},
      h('span', {class: 'badge'}, clipKind(clip.xmlType)),
      clip.label && h('span', {}, clip.label),
      h('span', {}, 'received ', when(clip.receivedAt)),
      h('span', {}, clip.times > 1 ? `${clip.times} times` : 'once'),
      h('span', {}, size(clip.bytes)),
    ),
    tagForm(clip),
    h(
      'section',
      {},
      h('h2', {}, 'Content'),
      codeBlock((clip.text || '').replace(/\n+$/, '').split('\n'), {
        label: 'Content',
        line: lineOf(clip),
        numbered: true,
      }),
    ),
    replaceForm(clip, xml),
    h(
      'details',
      {class: 'box'},
      h('summary', {}, 'XML'),
      codeBlock(xml.split(/\r\n|\r|\n/), {label: 'XML', line: (text) => text, numbered: true}),
    ),
  );
}

export function show(page) {
  page.show('Clip', {trail: [['Clips', '#/clips']]}, h('p', {class: 'loading'}, 'Loading…'));
  const path = `clips/${segment(page.params.clip)}`;
  page.watch({
    load: (signal) => Promise.all([get(path, signal), getText(`${path}/content`, signal)]),
    apply: ([clip, xml]) => fill(page, clip, xml),
    failed: page.failure('This clip cannot be shown'),
  });
}
