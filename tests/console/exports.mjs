// A clip, and exports made from a sample: a later state of it, a large one, and one whose names are markup.
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
