// A clip, and exports made from samples: a later state, a large one, one whose names are markup, one with many calls.
import {readFileSync} from 'node:fs';
import {SAMPLES} from '../support/programs.mjs';

export const kSnippet =
  '<fmxmlsnippet type="FMObjectList"><Step enable="True" id="89" name="# (comment)">' +
  '<Text>Buy violin strings&#13;and rosin</Text></Step></fmxmlsnippet>';

/** The sample. */
export const workshopExport = readFileSync(`${SAMPLES}/Workshop.xml`, 'utf8');

/** The sample after somebody renamed a field and changed a script. */
export const laterWorkshop = workshopExport.replaceAll('Picked Up', 'Handed Over');

const fileNamed = (name) =>
  workshopExport.replaceAll('Workshop.fmp12', `${name}.fmp12`).replace(/(<FMSaveAsXML[^>]*UUID=")[^"]*/, `$1${name}`);

/** The sample as another file. */
export const droppedExport = fileNamed('Dropped');

export const kHostile = '<script>window.taken=1</script><img src=x onerror="window.taken=1">';
const inXml = (text) => text.replace(/[&<>"]/g, (sign) => `&#${sign.charCodeAt(0)};`);

/** Every name of a script, layout, table, occurrence and value list is markup, and too long for any line. */
export const hostileExport = fileNamed('Hostile').replace(
  /(<(?:Script|Layout|BaseTable|TableOccurrence|ValueList|Field|CustomFunction)\b[^>]*? name=")([^"]+)/g,
  (whole, head, name) => `${head}${inXml(kHostile)}${'x'.repeat(400)} ${name}`,
);

/** A table with `fields` more fields. */
export function largeExport(fields) {
  const [sample] = /<Field\b[^>]*fieldtype="Normal"[\s\S]*?<\/Field>/.exec(workshopExport);
  const made = Array.from({length: fields}, (_, i) =>
    sample
      .replace(/ id="\d+"/, ` id="${5000 + i}"`)
      .replace(/ name="[^"]*"/, ` name="Made ${i}"`)
      .replace(
        /[0-9A-F]{8}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{4}-[0-9A-F]{12}/,
        () => `00000000-0000-4000-8000-${String(i).padStart(12, '0')}`,
      ),
  );
  return fileNamed('Large').replace(sample, sample + made.join(''));
}

/** A script Start that performs Reset, which performs Start again and Log, which performs Made 1, and that Made 2 ... and 9. */
export function chainedExport(length) {
  const orders = readFileSync(process.env.ORDERS, 'utf8');
  const uuid = (i) => `00000000-0000-4000-8000-${String(i).padStart(12, '0')}`;
  const reference = (i) => `<ScriptReference id="${100 + i}" name="Made ${i}" UUID="${uuid(i)}"></ScriptReference>`;
  const step = (i) =>
    `<Step index="0" id="1" name="Perform Script" enable="True"><ParameterValues><Parameter type="List">` +
    `<List name="From list" value="1">${reference(i)}</List></Parameter></ParameterValues></Step>`;
  const performs = (...performed) => `<ObjectList>${performed.map(step).join('')}</ObjectList>`;
  const numbers = Array.from({length}, (_, i) => i + 1);
  const scripts = numbers.map((i) => `<Script id="${100 + i}" name="Made ${i}"><UUID>${uuid(i)}</UUID></Script>`);
  const next = (i) => (i === 1 ? performs(2, 9) : performs(i + 1));
  const steps = numbers.map((i) => `<Script>${reference(i)}${i < length ? next(i) : ''}</Script>`);
  return orders
    .replace(/(?=<Script id="4" name="Log">)/, scripts.join(''))
    .replace(
      /(<ScriptReference id="4" name="Log"[^>]*><\/ScriptReference>\s*)<ObjectList membercount="0"><\/ObjectList>/,
      `$1${performs(1)}`,
    )
    .replace(/(?=<\/StepsForScripts>)/, steps.join(''));
}
