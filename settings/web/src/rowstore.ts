// SPDX-License-Identifier: MIT
import { groupKind, type Row, type Screen } from './protocol';
import type { RowSource } from './rowsource';

/** A list up to this long is held whole; a longer one is asked for in windows. */
export const wholeListLimit = 200;

export interface Window { from: number; count: number }

/** From the first row on: what a screen that nothing is known of is asked for. */
export const firstWindow: Window = { from: 0, count: wholeListLimit };

/**
 * The rows of the shown screen that have arrived so far, by index. A row of an older revision is kept to be shown until the same
 * one of the new revision is there: it seldom looks different, and a gap always does.
 */
export class RowStore implements RowSource {
    count = 0;
    revision = -1;
    private readonly rows = new Map<number, Row>();
    /** The indexes of those that are of this revision. */
    private fresh = new Set<number>();
    private asked = new Set<number>();

    /** Takes over what a state brought. */
    update(screen: Screen, revision: number): void {
        if (revision !== this.revision || screen.count !== this.count) {
            // Of another length the list has its rows elsewhere.
            if (screen.count !== this.count) this.rows.clear();
            this.fresh = new Set();
            this.asked = new Set();
        }
        this.revision = revision;
        this.count = screen.count;
        for (const row of screen.rows) {
            if (row.index >= this.count) continue;
            this.rows.set(row.index, row);
            this.fresh.add(row.index);
        }
    }

    at(index: number): Row | undefined { return this.rows.get(index); }

    placeOf(index: number): number { return index; }

    heightAt(index: number): number | undefined { return this.rows.get(index)?.height; }

    isFresh(index: number): boolean { return this.fresh.has(index); }

    covers(from: number, count: number): boolean {
        const end = Math.min(this.count, from + count);
        for (let index = Math.max(0, from); index < end; index += 1) if (!this.fresh.has(index)) return false;
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
        return this.missing([...wanted]);
    }

    /** Those of the given rows that are not of this revision, and that were not asked for yet. */
    missing(indexes: readonly number[]): number[] {
        return indexes.filter((index) => index >= 0 && !this.fresh.has(index) && !this.asked.has(index));
    }

    /** Rows that were asked for are not asked for again of this revision: a server that lacks them would be asked for ever. */
    markAsked(indexes: readonly number[]): void { for (const index of indexes) this.asked.add(index); }
}
