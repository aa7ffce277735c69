// What several pages need to know about designs. Designs never change, so what is read once is kept.
import {Refusal, get, segment} from './api.js';
import {byKind} from './kinds.js';

const kKept = 4; // designs
const elements = new Map();

/** {elements, byKey, kinds} of a design; `kinds` are [kind, count] in the order of kinds.js. */
export function designElements(id) {
  if (!elements.has(id)) {
    const loading = get(`designs/${segment(id)}/elements`).then(index);
    loading.catch(() => elements.delete(id));
    elements.set(id, loading);
    if (elements.size > kKept) elements.delete(elements.keys().next().value);
  }
  return elements.get(id);
}

function index({elements: all}) {
  const kinds = new Map();
  for (const element of all) kinds.set(element.kind, (kinds.get(element.kind) ?? 0) + 1);
  return {
    elements: all,
    byKey: new Map(all.map((element) => [element.key, element])),
    kinds: [...kinds].sort((a, b) => byKind(a[0], b[0])),
  };
}

/** All designs, oldest first. */
export const designs = async (signal) => (await get('designs', signal)).designs;

/** One design of the list; without it, throws the same Refusal as the service. */
export async function findDesign(id, signal) {
  const found = (await designs(signal)).find((design) => String(design.id) === id);
  if (!found) throw new Refusal(404, `There is no design ${id}. It may have been deleted.`);
  return found;
}

/** The key under which the list of files has the design's file. */
export const fileKey = (design) => design.fileUuid || design.fileName;

export const elementAddress = (design, key) => `#/designs/${segment(design)}/elements/${segment(key)}`;
export const designAddress = (design, kind) => `#/designs/${segment(design)}${kind ? `?kind=${segment(kind)}` : ''}`;

/** A Map of key -> items, in the order in which the keys first come. */
export function groupBy(items, keyOf) {
  const map = new Map();
  for (const item of items) {
    const key = keyOf(item);
    if (!map.has(key)) map.set(key, []);
    map.get(key).push(item);
  }
  return map;
}
