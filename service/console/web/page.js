// What every page is made of: a heading, and regions that load by themselves and again after events.
import {Refusal, Unreachable, serviceState} from './api.js';
import {announce, empty, h} from './dom.js';
import {subscribe} from './live.js';

const kRetry = 2000; // ms

/** One page while it is shown. */
export class Page {
  constructor(main, path, params, query) {
    this.main = main;
    this.path = path;
    this.params = params;
    this.query = query;
    this.abort = new AbortController();
    this.signal = this.abort.signal;
    this.loads = []; // the first load of each region
  }

  /** Fills the page; `trail` are the links above the heading. */
  show(heading, {trail = [], actions = []} = {}, ...content) {
    const hadFocus = this.heading !== undefined && this.heading === document.activeElement;
    this.heading = h('h1', {tabindex: '-1'}, heading);
    this.main.replaceChildren(
      trail.length
        ? h(
            'nav',
            {class: 'trail', 'aria-label': 'Path'},
            h(
              'ol',
              {},
              trail.map(([text, href]) => h('li', {}, h('a', {href}, text))),
            ),
          )
        : '',
      h('div', {class: 'heading'}, this.heading, h('div', {class: 'actions'}, actions)),
      ...content.flat(),
    );
    if (hadFocus) this.heading.focus({preventScroll: true});
  }

  /** For `watch`: shows an error, and perhaps what to do, in place of everything below the heading. */
  failure(title, ...advice) {
    return (error) => this.main.lastElementChild.replaceWith(empty(title, h('p', {}, error.message), advice));
  }

  /** Remembers a choice in the address, so that Back and a copied link restore it. */
  setQuery(changes) {
    for (const [name, value] of Object.entries(changes)) {
      if (value) this.query.set(name, value);
      else this.query.delete(name);
    }
    const query = this.query.toString();
    history.replaceState(history.state, '', `#${this.path}${query ? `?${query}` : ''}`);
  }

  /**
   * Calls `apply` with what `load` gives, now and after changes of `topics`, when it differs from the last time.
   * Without topics it is shown once, because somebody may be typing in it. `failed` gets what the service refuses, and
   * other errors while there is nothing to show yet. Returns a function that loads again; it gives up what is still
   * being loaded then.
   */
  watch({topics = [], load, apply, failed = (error) => announce(error.message, true)}) {
    let last;
    let running = 0;
    let retry;
    let loading = new AbortController();
    const refresh = async () => {
      clearTimeout(retry);
      loading.abort();
      loading = new AbortController();
      const turn = ++running;
      try {
        const data = await load(loading.signal);
        if (turn !== running || this.signal.aborted) return;
        const print = JSON.stringify(data);
        if (print === last) return;
        last = print;
        await Promise.resolve(apply(data)).catch((error) => {
          last = undefined;
          throw error;
        });
      } catch (error) {
        if (turn !== running || this.signal.aborted) return;
        const isRefused = error instanceof Refusal && error.status !== 401;
        if (!(error instanceof Refusal || error instanceof Unreachable)) throw error;
        if (error instanceof Unreachable) retry = setTimeout(refresh, kRetry);
        if (last !== undefined && !isRefused) return; // what is shown stays while the service is away
        last = undefined;
        failed(error);
      }
    };
    const end = subscribe([...topics, 'reconnected'], () => {
      if (topics.length > 0 || last === undefined) refresh();
    });
    this.signal.addEventListener('abort', () => {
      end();
      loading.abort();
      clearTimeout(retry);
    });
    this.loads.push(refresh());
    return refresh;
  }

  /** An element whose content is `render(data)`. It keeps the focus where it was. */
  region({topics, load, render}) {
    const element = h('div', {}, h('p', {class: 'loading'}, 'Loading…'));
    this.watch({
      topics,
      load,
      apply: (data) => keepingFocus(element, () => element.replaceChildren(...[render(data)].flat(Infinity))),
      failed: (error) => element.replaceChildren(failure(error)),
    });
    return element;
  }
}

function failure(error) {
  if (serviceState() === 'signedOut')
    return empty('Nothing can be shown', h('p', {}, 'This browser is not signed in.'));
  return empty('This cannot be shown', h('p', {}, error.message));
}

/**
 * Runs `change`, which replaces the content of `element`, and focuses the counterpart of what had the focus: the
 * element with the same name, address and text, or what took its place.
 */
export function keepingFocus(element, change) {
  const focusable = () => [...element.querySelectorAll('a, button, input, select, textarea, [tabindex]')];
  const at = element.contains(document.activeElement) ? focusable().indexOf(document.activeElement) : -1;
  const mark = at >= 0 && signature(document.activeElement);
  change();
  if (at < 0 || element.contains(document.activeElement)) return;
  const now = focusable();
  const again = now.find((candidate) => signature(candidate) === mark) ?? now[Math.min(at, now.length - 1)];
  (again ?? document.getElementById('main')).focus({preventScroll: true});
}

const signature = (element) =>
  [
    element.tagName,
    element.labels?.[0]?.textContent,
    element.getAttribute('href'),
    element.getAttribute('aria-label'),
    element.name,
    element.textContent,
  ].join('\n');
