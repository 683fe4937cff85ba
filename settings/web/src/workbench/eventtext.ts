// SPDX-License-Identifier: MIT
import type { Bag } from '../protocol';
import { cellText, numberOf, textOf } from './bags';

/** What an event is about, in one line. */
export function eventText(event: Bag): string {
    const part = (name: string): string => cellText(event[name]);
    const refused = event['ok'] === false ? ', refused' : '';
    switch (event['event']) {
        case 'insert': case 'remove': return `${part('index')} ${part('name')}${event['animated'] === true ? ', animated' : ''}`;
        case 'push': case 'pop': case 'present': case 'dismiss': return part('class');
        case 'local': case 'darwin': case 'darwinReceived': return part('name');
        case 'store': return `${part('call')} ${part('identifier')}${refused}`;
        case 'write': case 'removeFile': return `${part('path')}${refused}`;
        case 'log': return part('text');
        case 'open': return part('url');
        case 'kill': return part('process');
        case 'process': return `${part('name')} ${part('state')}`;
        case 'call': return `${part('class')} ${part('selector')}${event['row'] === null ? '' : ` row ${part('row')}`}`;
        default: {
            const { event: _kind, id: _id, at: _at, cause: _cause, ms: _ms, ...rest } = event;
            return Object.keys(rest).length === 0 ? '' : JSON.stringify(rest);
        }
    }
}

export const eventKind = (event: Bag): string => textOf(event['event']) ?? '?';
export const eventId = (event: Bag): number => numberOf(event['id'], -1);

/** A time since the start, as minutes, seconds and milliseconds. */
export function timeText(at: number): string {
    const seconds = Math.floor(at / 1000);
    return `${Math.floor(seconds / 60)}:${String(seconds % 60).padStart(2, '0')}.${String(Math.floor(at % 1000)).padStart(3, '0')}`;
}
