// Files from the desktop: a button that chooses them, and the whole page as a place to drop them.
import {announce, announceWork, button, h, whileBusy} from './dom.js';
import {count} from './format.js';

// The names of the files that were refused, with the reasons.
async function addEach(files, add) {
  const refused = [];
  for (const [at, file] of files.entries()) {
    if (files.length > 1) announceWork(`Adding ${file.name}, ${at + 1} of ${files.length}…`);
    await add(file, files.length === 1).catch((error) => refused.push([file.name, error.message]));
  }
  return refused;
}

/**
 * {button, refusals, watch(page)}; `add(file, isAlone)` stores a file. `refusals` is an element with the files of the
 * last drop that were not stored. `note` follows the report of success.
 */
export function dropArea({label, accept, add, note = ''}) {
  const input = h('input', {
    type: 'file',
    accept,
    multiple: true,
    class: 'offscreen',
    tabindex: '-1',
    'aria-label': label,
  });
  const choose = button(label, () => input.click(), {class: 'plain'});
  const refusals = h('ul', {class: 'warning', 'aria-label': 'Not added', hidden: true});
  const addAll = async (files) => {
    refusals.hidden = true;
    const refused = await addEach(files, add);
    refusals.replaceChildren(
      ...refused.map(([name, reason]) => h('li', {}, h('b', {}, name), ` was not added. ${reason}`)),
    );
    refusals.hidden = refused.length === 0;
    if (refused.length) {
      const added = `${files.length - refused.length} of ${count(files.length, 'file')} added.`;
      announce(`${added} Not added: ${refused.map(([name]) => name).join(', ')}`, true);
    } else {
      announce(`${files.length === 1 ? files[0].name : count(files.length, 'file')} added.${note}`);
    }
  };
  let last = Promise.resolve();
  const handle = (files) => {
    const added = [...files]; // the list empties itself
    return (last = last.then(() => whileBusy(choose, () => addAll(added))));
  };
  input.addEventListener('change', async () => {
    await handle(input.files);
    input.value = '';
  });
  return {
    button: h('span', {}, choose, input),
    refusals,
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
