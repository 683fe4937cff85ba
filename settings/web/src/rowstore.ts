// SPDX-License-Identifier: MIT
import { groupKind, type Row, type Screen } from './protocol';

/** A list up to this long is held whole; a longer one is asked for in windows. */
export const wholeListLimit = 200;

export interface Window { from: number; count: number }

/** The rows of the shown screen that have arrived so far, by index. */
export class RowStore {
    count = 0;
    private rows = new Map<number, Row>();
    private revision = -1;
    private asked = new Set<number>();

    /** Takes over what a state brought. Rows of an older revision may have moved, so only those sent again are kept. */
    update(screen: Screen, revision: number): void {
        if (revision !== this.revision || screen.count !== this.count) {
            this.rows = new Map();
            this.asked.clear();
        }
        this.revision = revision;
        this.count = screen.count;
        for (const row of screen.rows) if (row.index < this.count) this.rows.set(row.index, row);
    }

    at(index: number): Row | undefined { return this.rows.get(index); }

    covers(from: number, count: number): boolean {
        const end = Math.min(this.count, from + count);
        for (let index = Math.max(0, from); index < end; index += 1) if (!this.rows.has(index)) return false;
        return true;
    }

    get whole(): boolean { return this.count <= wholeListLimit; }

    /** The group row that opens the section of a row, where there is one and it has arrived. */
    groupOf(row: Row): Row | undefined {
        const group = row.row === null ? row : this.rows.get(row.index - row.row - 1);
        return group?.kind === groupKind && group.section === row.section ? group : undefined;
    }

    isLastOfSection(row: Row): boolean {
        const next = this.rows.get(row.index + 1);
        return row.index === this.count - 1 || (next !== undefined && next.section !== row.section);
    }

    /** How many rows a row's section holds, or -1 while its end has not been seen. */
    sectionSize(row: Row): number {
        const last = this.rows.get(this.count - 1);
        if (last?.section === row.section && last.row !== null) return last.row + 1;
        let seen: Row | undefined = row;
        for (let steps = 0; seen && steps < wholeListLimit; steps += 1) {
            if (this.isLastOfSection(seen)) return (seen.row ?? -1) + 1;
            seen = this.rows.get(seen.index + 1);
        }
        return -1;
    }

    /** Single rows that the drawing of a range needs beside it, and that were not asked for yet: its first section's group row, and the list's last row. */
    neededBeside(range: readonly number[]): number[] {
        const wanted = new Set<number>([this.count - 1]);
        for (const index of range) {
            const row = this.rows.get(index);
            if (row?.row !== null && row !== undefined) wanted.add(row.index - row.row - 1);
        }
        return [...wanted].filter((index) => index >= 0 && !this.rows.has(index) && !this.asked.has(index));
    }

    /** Rows that were asked for are not asked for again of this revision: a server that lacks them would be asked for ever. */
    markAsked(indexes: readonly number[]): void { for (const index of indexes) this.asked.add(index); }
}
