// The kinds of elements and of clips, by the words that the service uses.

const kKinds = {
  table: ['Table', 'Tables'],
  field: ['Field', 'Fields'],
  tableOccurrence: ['Table occurrence', 'Table occurrences'],
  relationship: ['Relationship', 'Relationships'],
  layout: ['Layout', 'Layouts'],
  script: ['Script', 'Scripts'],
  valueList: ['Value list', 'Value lists'],
  customFunction: ['Custom function', 'Custom functions'],
  customMenu: ['Custom menu', 'Custom menus'],
  customMenuSet: ['Custom menu set', 'Custom menu sets'],
  theme: ['Theme', 'Themes'],
  account: ['Account', 'Accounts'],
  privilegeSet: ['Privilege set', 'Privilege sets'],
  extendedPrivilege: ['Extended privilege', 'Extended privileges'],
  externalDataSource: ['External data source', 'External data sources'],
  baseDirectory: ['Base directory', 'Base directories'],
  folder: ['Folder', 'Folders'],
  file: ['File', 'File'],
};

// In the order in which people look for them.
const kindOrder = Object.keys(kKinds);
export const kindName = (kind) => kKinds[kind]?.[0] ?? kind;
export const kindPlural = (kind) => kKinds[kind]?.[1] ?? kind;
export const byKind = (a, b) => rank(a) - rank(b);

function rank(kind) {
  const at = kindOrder.indexOf(kind);
  return at < 0 ? kindOrder.length : at;
}

const kClips = {
  XMSS: 'Script steps',
  XMSC: 'Scripts',
  XMTB: 'Tables',
  XMFD: 'Fields',
  XMVL: 'Value lists',
  XMFN: 'Custom functions',
  XML2: 'Layout objects',
  XMLO: 'Layout objects (old)',
};

export const clipKinds = Object.entries(kClips);
export const clipKind = (xmlType) => kClips[xmlType] ?? xmlType;
