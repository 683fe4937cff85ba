// SPDX-License-Identifier: MIT
import type { Bag } from '../protocol';
import { keyOf } from './rowbook';
import type { Shot } from './link';

/** A state that was recorded, and the one before it. */
export interface Moment {
    /** Null while it is elsewhere, and once it is no longer kept. */
    source: Bag | null;
    before: Moment | null;
    /** Of a recording: the number by which its state is asked for. */
    readonly number?: number;
}

const kept = 500;

/** The states that came, the last ones of them. Rows that are the same in two of them are kept once. */
export class Moments {
    private readonly all: Moment[] = [];
    private rows = new Map<string, { text: string; row: Bag }>();
    private last: { revision: number; moment: Moment } | null = null;

    /** Another application counts its revisions from the start. */
    restart(): void { this.last = null; }

    /** More rows of the state that was recorded last are no other moment. */
    record(shot: Shot): Moment {
        if (this.last?.revision === shot.revision) return this.last.moment;
        const rows = new Map<string, { text: string; row: Bag }>();
        const shared = shot.rows.map((row) => {
            const text = JSON.stringify(row);
            const known = this.rows.get(keyOf(row));
            const same = known?.text === text ? known : { text, row };
            rows.set(keyOf(row), same);
            return same.row;
        });
        this.rows = rows;
        // Its events are told by the tree.
        const { events: _events, ...rest } = shot.source;
        const moment: Moment = { source: { ...rest, screen: { ...shot.screen, rows: shared } }, before: this.all.at(-1) ?? null };
        this.all.push(moment);
        if (this.all.length > kept) Object.assign(this.all.shift()!, { source: null, before: null });
        this.last = { revision: shot.revision, moment };
        return moment;
    }
}
