// SPDX-License-Identifier: MIT
import type { Command } from '../protocol';
import { bagOf } from './bags';
import { fieldKind } from './commands';

/** A command that was read from a line, or why there is none. */
export type Read = { command: Command } | { error: string };

/** A word that ends at white space outside quotes. */
const words = /(?:[^\s"]|"(?:[^"\\]|\\.)*"?)+/g;

function fromJson(text: string): Read {
    let value: unknown;
    try {
        value = JSON.parse(text);
    } catch (error) {
        return { error: error instanceof Error ? error.message : 'This is no JSON.' };
    }
    const bag = bagOf(value);
    if (!bag) return { error: 'A command is a JSON object.' };
    return typeof bag['do'] === 'string' && bag['do'] !== '' ? { command: bag as Command } : { error: 'The object has no "do" that names a command.' };
}

/** A value as it was typed: what is JSON is taken as that, unless the field holds texts; everything else is a text. */
function valueOf(command: string, field: string, text: string): unknown {
    const isText = fieldKind(command, field) === 'text';
    if (isText && text !== 'null' && !text.startsWith('"')) return text;
    try {
        return JSON.parse(text);
    } catch {
        return text;
    }
}

/** Puts a value where a dotted name says. */
function put(target: Record<string, unknown>, path: readonly string[], value: unknown): void {
    const [first = '', ...rest] = path;
    if (rest.length === 0) {
        target[first] = value;
        return;
    }
    const inner = bagOf(target[first]) ?? {};
    target[first] = inner;
    put(inner as Record<string, unknown>, rest, value);
}

/** Reads a command: JSON, or the short form, as in: set key=3 value=true. */
export function readCommand(line: string): Read {
    const text = line.trim();
    if (text.startsWith('{')) return fromJson(text);
    const [name, ...fields] = text.match(words) ?? [];
    if (name === undefined) return { error: 'There is no command.' };
    if (name.includes('=') || name.includes('"')) return { error: 'A line begins with the name of a command.' };
    const command: Record<string, unknown> = { do: name };
    for (const field of fields) {
        const at = field.indexOf('=');
        if (at < 1) return { error: `“${field}” is no field: a field is name=value.` };
        const path = field.slice(0, at);
        put(command, path.split('.'), valueOf(name, path, field.slice(at + 1)));
    }
    return { command: command as Command };
}

/** Reads a script: a command a line, in either form. Empty lines, and those that begin with #, say nothing. */
export function readScript(text: string): { commands: Command[] } | { error: string } {
    const commands: Command[] = [];
    for (const [at, line] of text.split('\n').entries()) {
        if (line.trim() === '' || line.trimStart().startsWith('#')) continue;
        const read = readCommand(line);
        if ('error' in read) return { error: `Line ${at + 1}: ${read.error}` };
        commands.push(read.command);
    }
    return { commands };
}

/** A command in the short form. */
export function shortForm(command: Command): string {
    const parts: string[] = [command.do];
    const add = (path: string, value: unknown): void => {
        const bag = bagOf(value);
        if (bag && Object.keys(bag).length > 0) for (const [key, each] of Object.entries(bag)) add(`${path}.${key}`, each);
        else if (typeof value === 'string' && /^[^\s"=]+$/.test(value) && valueOf(command.do, path, value) === value) parts.push(`${path}=${value}`);
        else parts.push(`${path}=${JSON.stringify(value)}`);
    };
    for (const [field, value] of Object.entries(command)) if (field !== 'do') add(field, value);
    return parts.join(' ');
}
