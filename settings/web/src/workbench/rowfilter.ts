// SPDX-License-Identifier: MIT
import type { Bag } from '../protocol';
import { numberOf, textOf } from './bags';
import type { Link } from './link';
import { keyOf, type RowBook } from './rowbook';

const holds = (row: Bag, text: string): boolean =>
    [keyOf(row), row['name'], row['identifier'], row['cellClass'], row['detail']].some((part) => textOf(part)?.toLowerCase().includes(text));

/** Which rows of the screen the table shows. A list that is there as a whole is looked through here, and a longer one by the application, by name. */
export class RowFilter {
    /** The indexes of the rows that fit; null while all do. */
    indexes: readonly number[] | null = null;
    private text = '';
    private asking = false;
    /** What the application was asked last: a text, on a revision. */
    private asked = '';

    constructor(private readonly link: Link, private readonly book: RowBook, private readonly changed: () => void) {}

    get isEmpty(): boolean { return this.text === ''; }
    /** Whether the application looks for the rows, by their names. */
    get isByName(): boolean { return !this.isEmpty && !this.book.isWhole; }

    set(text: string): void {
        this.text = text.trim().toLowerCase();
        this.renew();
    }

    /** To be called when the rows have changed too. */
    renew(): void {
        if (this.isEmpty) this.indexes = null;
        else if (this.book.isWhole) this.indexes = Array.from({ length: this.book.count }, (_unused, index) => index).filter((index) => holds(this.book.at(index) ?? {}, this.text));
        else this.find();
        this.changed();
    }

    private find(): void {
        const { text } = this;
        const question = `${this.link.shot?.screenId} ${this.link.shot?.revision} ${text}`;
        if (this.asking || question === this.asked) return;
        this.asked = question;
        this.asking = this.link.send({ do: 'find', text }, (answer) => {
            this.asking = false;
            const found = Array.isArray(answer?.['found']) ? answer['found'] as Bag[] : null;
            if (this.text !== text) this.renew();
            else if (found && !this.isEmpty) {
                this.indexes = found.map((each) => numberOf(each['index'], -1)).filter((index) => index >= 0);
                this.changed();
            }
        });
    }
}
