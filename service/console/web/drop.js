// Files from the desktop: a button that chooses them, and the whole page as a place to drop them.
import {button, h, whileBusy} from './dom.js';

/** {button, watch(page)}; `add(files)` stores them. */
export function dropArea({label, accept, add}) {
  const input = h('input', {
    type: 'file',
    accept,
    multiple: true,
    class: 'offscreen',
    tabindex: '-1',
    'aria-label': label,
  });
  const choose = button(label, () => input.click(), {class: 'plain'});
  let last = Promise.resolve();
  const handle = (files) => {
    const added = [...files]; // the list empties itself
    return (last = last.then(() => whileBusy(choose, () => add(added))));
  };
  input.addEventListener('change', async () => {
    await handle(input.files);
    input.value = '';
  });
  return {
    button: h('span', {}, choose, input),
    watch(page) {
      const on = (type, action) => document.addEventListener(type, action, {signal: page.signal});
      const hasFiles = (event) => event.dataTransfer?.types.includes('Files');
      on('dragover', (event) => {
        if (!hasFiles(event)) return;
        event.preventDefault();
        document.body.classList.add('dropping');
      });
      on('dragleave', (event) => {
        if (!event.relatedTarget) document.body.classList.remove('dropping');
      });
      on('drop', (event) => {
        if (!hasFiles(event)) return;
        event.preventDefault();
        document.body.classList.remove('dropping');
        handle(event.dataTransfer.files);
      });
    },
  };
}
