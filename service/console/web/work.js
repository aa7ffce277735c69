// Commands for the plug-in, and waiting for what becomes of them.
import {get, getText, post, segment} from './api.js';
import {announce, announceWork} from './dom.js';
import {subscribe} from './live.js';

const kLook = 2000; // ms between looks when no event arrives

/** Seconds that the plug-in waits for a file to be active. */
export const kWait = 30;
export const kWaits = `The plug-in waits up to ${kWait} seconds until the file is active and no script is running.`;

export const kCommands = {
  LIST_FILES: 'List open files',
  GET_CLIPBOARD: 'Get the clipboard',
  GET_CLIPBOARD_FORMATS: 'List clipboard formats',
  SET_CLIPBOARD: 'Set the clipboard',
  DEBUG_CONTEXT: 'Get a context report',
  GET_SCHEMA: 'Get a design',
};

export const commandName = (type) => kCommands[type] ?? type;
export const isOpen = (command) => command.state === 'queued' || command.state === 'delivered';

const isForgotten = (command) => command.state === 'cancelled' && command.deliveredAt;

/** Queues a command; the id. */
export async function queue(type, values = {}) {
  const set = Object.entries(values).filter(([, value]) => value);
  return (await post('commands', {type, ...Object.fromEntries(set)})).id;
}

/** Queues the same command once more. */
export async function repeat(command) {
  await post(`commands/${segment(command.id)}/repeat`);
  announce(`${commandName(command.type)}: waiting for FileMaker`);
}

/** Resolves to the command once it is finished. `changed` sees it after each change until then. */
export function finished(id, {signal, changed = () => {}} = {}) {
  return new Promise((resolve, reject) => {
    const look = async () => {
      let command;
      try {
        command = await get(`commands/${segment(id)}`, signal);
      } catch (error) {
        if (error.status || error.name === 'AbortError') end(reject, error);
        return; // otherwise the service is away, and comes back
      }
      changed(command);
      if (!isOpen(command)) end(resolve, command);
    };
    const unsubscribe = subscribe(['commands', 'reconnected'], look);
    const timer = setInterval(look, kLook);
    const end = (settle, value) => {
      clearInterval(timer);
      unsubscribe();
      settle(value);
    };
    look();
  });
}

/** The text of a command's result; an Error with the plug-in's reason when there is none. */
export async function resultOf(type, values, signal) {
  const command = await finished(await queue(type, values), {signal});
  if (command.state !== 'completed') throw new Error(reasonOf(command));
  return getText(`commands/${segment(command.id)}/result`, signal);
}

const reported = ({error}) => error?.replace(/^ERROR:\s*/, '');

/** Why a command did not complete, in one sentence. */
export function reasonOf(command) {
  if (command.state === 'failed') return reported(command) || 'The plug-in reported a failure without a reason.';
  if (command.state === 'expired')
    return 'FileMaker did not pick up the command in time. Check that it is running and connected.';
  if (isForgotten(command)) {
    if (command.error) return `It was forgotten, and FileMaker could not carry it out. ${reported(command)}`;
    return command.result
      ? 'It was forgotten, but FileMaker has carried it out.'
      : 'Varnix no longer waits for this command. FileMaker may still carry it out.';
  }
  if (command.state === 'cancelled') return 'The command was cancelled.';
  return '';
}

/** Asks FileMaker for the design of a file and announces how that goes. */
export async function requestDesign(fileName, signal) {
  announceWork(`Asking FileMaker for the design of ${fileName}…`);
  let isDelivered = false;
  const changed = ({state}) => {
    if (state === 'delivered' && !isDelivered) announceWork(`FileMaker has been asked for ${fileName}. ${kWaits}`);
    isDelivered ||= state === 'delivered';
  };
  const command = await finished(await queue('GET_SCHEMA', {fileName}), {signal, changed});
  if (command.state !== 'completed') throw new Error(reasonOf(command));
  announce(`The design of ${fileName} has arrived`);
  return command;
}

/** The snippet of the service goes to FileMaker's clipboard. */
export async function placed(path, what) {
  const {id} = await post(path);
  announceWork(`${what} is on its way to FileMaker's clipboard…`);
  const command = await finished(id);
  if (command.state !== 'completed') throw new Error(reasonOf(command));
  announce(`${what} is on FileMaker's clipboard`);
}
