// SPDX-License-Identifier: MIT
import { commands, commonFields, fieldKind } from './commands';

/** What may stand in place of the beginning of a word; `note` says more of it. */
export interface Offer { text: string; note: string }
/** The offers for the word that ends at the caret, and where it begins. */
export interface Completion { from: number; offers: readonly Offer[] }

/** What is there now to be named in a field. */
export type Known = (field: string) => readonly Offer[];

const plain = (texts: readonly string[]): Offer[] => texts.map((text) => ({ text, note: '' }));
const quoted = (text: string): string => (/^[^\s"=]+$/.test(text) ? text : JSON.stringify(text));

function fitting(from: number, word: string, offers: readonly Offer[]): Completion {
    const begun = word.toLowerCase();
    const fit = offers.filter(({ text, note }) => text !== word && (text.toLowerCase().startsWith(begun) || (begun !== '' && note.toLowerCase().startsWith(begun))));
    return { from, offers: fit.slice(0, 40) };
}

function fieldOffers(command: string, present: (field: string) => boolean): Offer[] {
    const own = Object.keys(commands[command] ?? {}).map((text) => ({ text, note: '' }));
    return [...own, ...Object.keys(commonFields).map((text) => ({ text, note: 'any command' }))].filter(({ text }) => !present(text));
}

function valueOffers(command: string, field: string, known: Known): Offer[] {
    const kind = fieldKind(command, field);
    return [...(typeof kind === 'string' ? [] : plain(kind)), ...known(field)];
}

/** What the line could go on with at the caret, in the form that it is written in. */
export function complete(line: string, caret: number, known: Known): Completion {
    const before = line.slice(0, caret);
    return before.trimStart().startsWith('{') ? completeJson(before, caret, known) : completeShort(before, caret, known);
}

function completeShort(before: string, caret: number, known: Known): Completion {
    const word = /(?:[^\s"]|"(?:[^"\\]|\\.)*"?)*$/.exec(before)?.[0] ?? '';
    const start = caret - word.length;
    const command = /^\s*(\S+)\s/.exec(before)?.[1];
    if (command === undefined) return fitting(start, word, plain(Object.keys(commands)));
    const at = word.indexOf('=');
    if (at < 0) return fitting(start, word, fieldOffers(command, (field) => before.includes(` ${field}=`)).map(({ text, note }) => ({ text: `${text}=`, note })));
    const offers = valueOffers(command, word.slice(0, at), known).map(({ text, note }) => ({ text: quoted(text), note }));
    return fitting(start + at + 1, word.slice(at + 1), offers);
}

function completeJson(before: string, caret: number, known: Known): Completion {
    const none = { from: caret, offers: [] };
    const command = /"do"\s*:\s*"(\w+)"/.exec(before)?.[1] ?? '';
    const value = /"(\w+)"\s*:\s*"([^"]*)$/.exec(before);
    if (value) {
        const [, field = '', word = ''] = value;
        return fitting(caret - word.length, word, field === 'do' ? plain(Object.keys(commands)) : valueOffers(command, field, known));
    }
    const name = /[{,]\s*"(\w*)$/.exec(before);
    if (!name) return none;
    const [, word = ''] = name;
    const fields = command === '' ? plain(['do']) : fieldOffers(command, (field) => before.includes(`"${field}"`)).filter(({ text }) => !text.includes('.'));
    return fitting(caret - word.length, word, fields);
}
