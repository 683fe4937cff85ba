// SPDX-License-Identifier: MIT
// The commands of the protocol as the console offers them: their fields, and what these may hold.

/** "text" is never read as a number, whatever it looks like; a list names what may stand there. */
export type FieldKind = 'text' | 'any' | readonly string[];
export type Fields = Readonly<Record<string, FieldKind>>;

const yesOrNo = ['true', 'false'] as const;
const row: Fields = { key: 'text', row: 'any' };

export const faultKinds = [
    'profilesUnreadable', 'profilesCutShort', 'profilesLocked', 'diskFull', 'readOnly', 'slow', 'calendarsSilent', 'networksSilent', 'tonesSilent', 'mailFails',
] as const;

export const deviceKeys = [
    'systemVersion', 'idiom', 'scale', 'languages', 'darkMode', 'clock', 'statusBarLibrary', 'toneController', 'mailAccount', 'twitterApp',
    'serialNumber', 'UDID', 'model', 'calendars', 'networks', 'tones',
] as const;

export const eventKinds = [
    'insert', 'remove', 'reload', 'push', 'pop', 'present', 'dismiss', 'local', 'darwin', 'darwinReceived', 'store', 'write', 'removeFile', 'log', 'open', 'kill', 'process', 'call',
] as const;

export const commands: Readonly<Record<string, Fields>> = {
    advance: { seconds: 'any' },
    back: {},
    bar: { side: ['left', 'right'], item: 'any' },
    choose: { action: 'text' },
    compose: { result: ['sent', 'saved', 'cancelled', 'failed'] },
    dark: { on: yesOrNo },
    delete: row,
    device: { set: 'any', ...Object.fromEntries(deviceKeys.map((key) => [`set.${key}`, key === 'darkMode' || key === 'statusBarLibrary' || key === 'twitterApp' ? yesOrNo : 'text'])) },
    edit: { on: yesOrNo },
    fault: { kind: faultKinds, milliseconds: 'any', on: yesOrNo, clear: ['true'] },
    files: {},
    find: { text: 'text' },
    kill: { process: ['SpringBoard'] },
    link: { item: 'any' },
    open: {},
    pickTime: { time: 'text' },
    pickTimeRow: { row: ['0', '1'] },
    pickTone: { identifier: 'text' },
    post: { name: 'text' },
    postLocal: { name: 'text' },
    set: { ...row, value: 'any' },
    state: {},
    tap: row,
    wait: { event: eventKinds, name: 'text', seconds: 'any' },
};

/** What every command takes beside its own fields. */
export const commonFields: Fields = { screen: 'any', presented: 'any', from: 'any', count: 'any', events: ['true', 'false', 'all'] };

export const fieldKind = (command: string, field: string): FieldKind => commands[command]?.[field] ?? commonFields[field] ?? 'any';
