// SPDX-License-Identifier: MIT
import type { Bag } from '../protocol';
import { cellText, numberOf, orNothing, textOf } from './bags';
import type { Shot } from './link';
import type { Column } from './virtuallist';

const kindNames: readonly (string | undefined)[] = [
    'group', 'link', 'link list', 'list item', 'title and value', 'slider', 'switch', 'static text', 'edit text', 'segment', undefined, undefined, undefined, 'button',
];

function kindText(kind: unknown): string {
    const name = typeof kind === 'number' ? kindNames[kind] : undefined;
    return name === undefined ? cellText(kind) : `${String(kind)} ${name}`;
}

interface RowColumn extends Column { text(row: Bag): string }

const field = (name: string, title: string, width: string, key = name): RowColumn => ({ name, title, width, text: (row) => cellText(row[key]) });

/** What the table shows of a row, from left to right. */
export const rowColumns: readonly RowColumn[] = [
    field('index', 'Index', '3.5rem'), field('section', 'Section', '4rem'), field('key', 'Key', '4rem'),
    { name: 'kind', title: 'Kind', width: '8rem', text: (row) => kindText(row['kind']) },
    field('name', 'Name', '12rem'), field('identifier', 'Identifier', '14rem'), field('value', 'Value', '8rem'),
    field('set', 'Set', '13rem'), field('get', 'Get', '12rem'), field('action', 'Action', '10rem'), field('detail', 'Detail', '16rem'),
    field('class', 'Cell class', '12rem', 'cellClass'),
    { name: 'properties', title: 'Properties', width: '20rem', text: (row) => cellText(orNothing(row['properties'])) },
    field('info', 'User info', '20rem', 'userInfo'),
];

export const keyOf = (row: Bag): string => textOf(row['key']) ?? `index-${cellText(row['index'])}`;
export const indexOf = (row: Bag): number => numberOf(row['index'], -1);

/** The names of the columns in which two records of one row differ. */
const changedColumns = (before: Bag, now: Bag): string[] => rowColumns.filter(({ name, text }) => name !== 'index' && text(before) !== text(now)).map(({ name }) => name);

/** The rows of the screen on top that have arrived, and what the last command has changed of them. */
export class RowBook {
    count = 0;
    private screenId = -1;
    private revision = -1;
    private readonly rows = new Map<number, Bag>();
    private byKey = new Map<string, Bag>();
    /** The indexes of those that are of this revision. */
    private fresh = new Set<number>();
    /** By key: the columns, or "row" for one that was not there before. */
    private readonly marks = new Map<string, Set<string>>();

    /** Takes over what a state brought; true when another screen is on top. */
    take(shot: Shot): boolean {
        const isOther = shot.screenId !== this.screenId;
        if (isOther) this.clear();
        const wasWhole = this.count > 0 && this.fresh.size === this.count;
        if (shot.revision !== this.revision) this.fresh = new Set();
        // Of another length the list has its rows elsewhere; what is known of them still tells what has changed.
        if (shot.count !== this.count) this.rows.clear();
        this.screenId = shot.screenId;
        this.revision = shot.revision;
        this.count = shot.count;
        for (const row of shot.rows) {
            const key = keyOf(row);
            const before = this.byKey.get(key);
            const changed = before ? changedColumns(before, row) : wasWhole ? ['row'] : [];
            if (changed.length > 0) this.mark(key, changed);
            this.rows.set(indexOf(row), row);
            this.byKey.set(key, row);
            this.fresh.add(indexOf(row));
        }
        // Rows that are gone are not kept for ever.
        if (this.fresh.size === this.count) this.byKey = new Map([...this.rows.values()].map((row) => [keyOf(row), row]));
        return isOther;
    }

    clear(): void {
        this.screenId = -1;
        this.revision = -1;
        this.count = 0;
        this.rows.clear();
        this.byKey.clear();
        this.fresh.clear();
        this.marks.clear();
    }

    /** To be called with each command: what it changes is marked from now on, and nothing else. */
    clearMarks(): void { this.marks.clear(); }

    at(index: number): Bag | undefined { return this.rows.get(index); }

    isMarked(key: string, column: string): boolean { return this.marks.get(key)?.has(column) ?? false; }

    isFresh(index: number): boolean { return this.fresh.has(index); }

    /** Whether all rows are there. */
    get isWhole(): boolean { return this.fresh.size === this.count; }

    private mark(key: string, columns: readonly string[]): void {
        const marked = this.marks.get(key) ?? new Set();
        for (const column of columns) marked.add(column);
        this.marks.set(key, marked);
    }
}
