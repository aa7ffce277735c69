// Times, sizes and counts as people read them.
import {h} from './dom.js';

const kDay = 86400000;
const time = new Intl.DateTimeFormat('en-GB', {hour: '2-digit', minute: '2-digit'});
const date = new Intl.DateTimeFormat('en-GB', {day: 'numeric', month: 'short', year: 'numeric'});
const full = new Intl.DateTimeFormat('en-GB', {dateStyle: 'full', timeStyle: 'medium'});

/** "3 Jul 2025, 16:45", for what is read later. */
export function dateText(iso) {
  const moment = new Date(iso);
  return Number.isNaN(moment.getTime()) ? (iso ?? '') : `${date.format(moment)}, ${time.format(moment)}`;
}

/** "today 14:05", "yesterday 09:00", "3 Jul 2025, 16:45". */
export function timeText(iso) {
  const moment = new Date(iso);
  if (Number.isNaN(moment.getTime())) return iso ?? '';
  const midnight = new Date().setHours(0, 0, 0, 0);
  if (moment >= midnight && moment < midnight + kDay) return `today ${time.format(moment)}`;
  if (moment >= midnight - kDay && moment < midnight) return `yesterday ${time.format(moment)}`;
  return dateText(iso);
}

/** The time as an element that shows the full time on demand. */
export function when(iso) {
  const moment = new Date(iso);
  if (Number.isNaN(moment.getTime())) return iso ?? '';
  return h('time', {datetime: iso, title: full.format(moment)}, timeText(iso));
}

/** "4 s", "3 min", "2 h", "5 days". */
export function duration(seconds) {
  if (seconds < 90) return `${Math.round(seconds)} s`;
  if (seconds < 5400) return `${Math.round(seconds / 60)} min`;
  if (seconds < 129600) return `${Math.round(seconds / 3600)} h`;
  return `${Math.round(seconds / 86400)} days`;
}

export function size(bytes) {
  if (bytes < 1000) return `${bytes} bytes`;
  if (bytes < 1e6) return `${(bytes / 1e3).toFixed(bytes < 1e4 ? 1 : 0)} kB`;
  if (bytes < 1e9) return `${(bytes / 1e6).toFixed(bytes < 1e7 ? 1 : 0)} MB`;
  return `${(bytes / 1e9).toFixed(1)} GB`;
}

const numbers = new Intl.NumberFormat('en-GB');

export const number = (value) => numbers.format(value);

/** "1 script", "2,000 scripts". */
export const count = (value, singular, plural = `${singular}s`) =>
  `${number(value)} ${value === 1 ? singular : plural}`;

/** A name, or "(no name)" if it has no visible character. */
export const named = (name) => (/[^\s\p{C}]/u.test(name) ? name : '(no name)');

/** FileMaker's name of a file, without the ending of the file on the disk. */
export const fileTitle = (fileName) => fileName.replace(/(\.fmp12)?(\.xml)?$/i, '');

export const collator = new Intl.Collator('en', {numeric: true, sensitivity: 'base'});
