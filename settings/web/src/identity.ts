// SPDX-License-Identifier: MIT
import type { Row } from './protocol';

const likeness = (row: Row): string =>
    JSON.stringify([row.kind, row.identifier, row.name, row.cellClass, row.set, row.action, row.userInfo]);

/**
 * Gives each row the name under which the page keeps its element.
 * A screen that rebuilds its rows gives them new keys although the user sees the same rows; such a row inherits the name of the
 * vanished row that it equals, so that its element, its focus and its running animation stay.
 */
export class RowIdentity {
    private names = new Map<string, string>();
    private previous: readonly Row[] = [];
    private serial = 0;

    update(rows: readonly Row[]): void {
        const present = new Set(rows.map((row) => row.key));
        const vanished = new Map<string, string[]>();
        for (const row of this.previous) {
            const name = this.names.get(row.key);
            if (present.has(row.key) || name === undefined) continue;
            const key = likeness(row);
            const queue = vanished.get(key);
            if (queue) queue.push(name);
            else vanished.set(key, [name]);
        }
        const names = new Map<string, string>();
        for (const row of rows) {
            const inherited = this.names.get(row.key) ?? vanished.get(likeness(row))?.shift();
            names.set(row.key, inherited ?? `row-${(this.serial += 1)}`);
        }
        this.names = names;
        this.previous = rows;
    }

    of(row: Row): string { return this.names.get(row.key) ?? row.key; }
}
