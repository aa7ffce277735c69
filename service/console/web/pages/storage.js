// How much there is, how long it is kept, and ways to delete and to save it.
import {get, post, query} from '../api.js';
import {announce, button, confirmed, field, form, h, select, table} from '../dom.js';
import {count, number, size, when} from '../format.js';
import {list} from '../list.js';

const kRecords = 1000;
const kDay = 86400; // seconds
const kSpared = 'Clips with tags and clips that you added are always kept';

const kKindNames = {
  'sign-in': 'Sign-ins',
  push: 'Clipboard, lists and reports',
  diagnostic: 'Diagnostics',
  ingest: 'Designs',
  snapshot: 'Snapshots',
  upload: 'Uploads',
  clip: 'Added clips',
};
const kindTitle = (kind) => kKindNames[kind] ?? kind;

const kSizeColumns = ['What', {name: 'Count', class: 'number'}, {name: 'Size', class: 'number'}];

function sizes(storage) {
  const row = (name, amount, bytes) =>
    h(
      'tr',
      {},
      h('th', {scope: 'row'}, name),
      h('td', {class: 'number'}, amount),
      h('td', {class: 'number'}, size(bytes)),
    );
  const rows = [
    ...storage.kinds.map((kind) => row(kindTitle(kind.kind), number(kind.count), kind.bytes)),
    row('Database on the disk', '', storage.databaseBytes),
    row('Index of the designs', '', storage.indexBytes),
  ];
  return [
    h('p', {class: 'hint'}, 'Everything is stored in ', h('code', {}, storage.folder)),
    table('Sizes', kSizeColumns, rows, {class: 'compact narrow'}),
  ];
}

function retentionForm(retention) {
  const input = (name, value) =>
    h('input', {
      name,
      type: 'number',
      min: '1',
      max: '36500',
      value: value ?? '',
      inputmode: 'numeric',
      autocomplete: 'off',
    });
  return form(
    async ({days, keep}) => {
      const rule = `Data older than ${count(Number(days), 'day')} will be deleted whenever the service starts and once a day.`;
      if (days && !(await confirmed('Delete old data regularly?', rule, 'Save the rule'))) return;
      await post('retention', {days, keep});
      announce(days ? 'Old data is deleted regularly from now on' : 'Everything is kept from now on');
    },
    {class: 'inline', 'aria-label': 'Retention'},
    field('Delete data older than (days)', input('days', retention.days), 'Leave empty to keep everything'),
    field('But keep the newest of each kind and name', input('keep', retention.keep), kSpared),
    h('button', {class: 'plain'}, 'Save'),
  );
}

function question(days, keep) {
  const what = days ? `Data older than ${count(Number(days), 'day')}` : 'All data';
  const newest = keep ? `, except the newest ${keep} of each kind and name` : '';
  return `${what} will be deleted${newest}. ${kSpared}. This cannot be undone; save a backup first if in doubt.`;
}

function pruneForm() {
  return form(
    async ({days, keep}) => {
      if (!days && !keep) throw new Error('Enter an age, a number, or both.');
      if (!(await confirmed('Delete now?', question(days, keep), 'Delete'))) return;
      const message = {...(days && {olderThan: String(days * kDay)}), ...(keep && {keep})};
      const pruned = await post('prune', message);
      announce(`Deleted: ${count(pruned.commands, 'command')}, ${count(pruned.records, 'record')}`);
    },
    {class: 'inline', 'aria-label': 'Delete now'},
    field('Older than (days)', h('input', {name: 'days', type: 'number', min: '0', max: '36500', autocomplete: 'off'})),
    field(
      'Keep the newest',
      h('input', {name: 'keep', type: 'number', min: '0', autocomplete: 'off'}),
      'Of each kind and name',
    ),
    h('button', {class: 'danger'}, 'Delete now'),
  );
}

function recordColumns() {
  const remove = async (record) => {
    if (!(await confirmed(`Delete record ${record.number}?`, 'This cannot be undone.', 'Delete the record'))) return;
    await post(`records/${record.number}/delete`);
    announce('Record deleted');
  };
  return [
    {name: 'Number', class: 'number', text: (record) => record.number, cell: (record) => String(record.number)},
    {name: 'Kind', text: (record) => kindTitle(record.kind), cell: (record) => kindTitle(record.kind)},
    {
      name: 'Name',
      text: (record) => record.name,
      cell: (record) =>
        h('a', {href: `/operator/records/${record.number}/content`, download: record.name}, record.name),
    },
    {name: 'Received', text: (record) => record.receivedAt, cell: (record) => when(record.receivedAt)},
    {name: 'Size', class: 'number', text: (record) => record.bytes, cell: (record) => size(record.bytes)},
    {
      name: '',
      label: 'Delete',
      sortable: false,
      text: () => '',
      cell: (record) =>
        button('Delete', () => remove(record), {class: 'quiet', 'aria-label': `Delete record ${record.number}`}),
    },
  ];
}

export function show(page) {
  const retention = h('div');
  const records = list({
    page,
    label: 'Records',
    noun: 'record',
    columns: recordColumns(),
    compact: true,
    emptyText: 'Nothing has been received yet.',
  });
  const kind = select([['', 'All kinds'], ...Object.entries(kKindNames)], page.query.get('kind') ?? '');
  kind.addEventListener('change', () => {
    page.setQuery({kind: kind.value});
    refresh();
  });
  page.show(
    'Storage',
    {actions: h('a', {class: 'button', href: '/operator/backup', download: 'varnix-service.db'}, 'Save a backup')},
    page.region({
      topics: ['records', 'designs', 'clips', 'commands'],
      load: (signal) => get('storage', signal),
      render: sizes,
    }),
    h('section', {}, h('h2', {}, 'Delete old data regularly'), retention),
    h('section', {}, h('h2', {}, 'Delete old data now'), pruneForm()),
    h(
      'section',
      {},
      h('h2', {}, 'What was received'),
      h('div', {class: 'filters'}, field('Kind', kind)),
      records.element,
    ),
  );
  page.watch({
    load: async (signal) => (await get('storage', signal)).retention,
    apply: (rule) => retention.replaceChildren(retentionForm(rule)),
  });
  const refresh = page.watch({
    topics: ['records'],
    load: async (signal) =>
      (await get(`records${query({kind: page.query.get('kind') ?? '', limit: kRecords})}`, signal)).records.reverse(),
    apply: (all) => records.update(all),
  });
}
