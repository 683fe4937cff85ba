// SPDX-License-Identifier: MIT
import { html, render } from 'lit-html';
import { firstWindow, wholeListLimit, type Window } from '../rowstore';
import type { Bag } from '../protocol';
import { textOf } from './bags';
import { copyText } from './clipboard';
import { JsonTree } from './jsontree';
import type { Link, Shot } from './link';
import type { Pointer } from './pointer';
import { RowBook, keyOf, rowColumns } from './rowbook';
import { RowFilter } from './rowfilter';
import { ToolTab, element, onceAFrame } from './tab';
import { VirtualList, type Line } from './virtuallist';

/** Rows are asked for so many at a time. */
const slice = 200;

/** The rows of the screen on top, as a table. */
export class RowsTab extends ToolTab {
    private readonly bar = element('wb-bar');
    private readonly detail = element('wb-detail', 'section');
    private readonly tree = new JsonTree();
    private readonly book = new RowBook();
    private readonly filter: RowFilter;
    private readonly list: VirtualList;
    private readonly drawBars = onceAFrame(() => this.paintBars());
    private visible = false;
    private stopWatching: () => void = () => {};
    /** The row whose JSON is shown, and the one that is pointed at on the phone. */
    private chosen: string | null = null;
    private pointedAt: string | null = null;
    private fetching = 0;
    /** The rows of this revision that were asked for: an application that lacks them would be asked for ever. */
    private asked = new Set<number>();
    private revision = -1;
    private said = '';

    constructor(private readonly link: Link, private readonly pointer: Pointer) {
        super('Rows', 'wb-rows');
        this.filter = new RowFilter(link, this.book, () => this.redraw());
        this.list = new VirtualList({
            label: 'Rows of the screen', role: 'grid', columns: rowColumns, lineHeight: 24, empty: 'No rows.',
            line: (place) => this.line(place),
            pointed: (place) => {
                const row = place === null ? undefined : this.rowAt(place);
                this.pointer.lightRow(row ? keyOf(row) : null);
            },
            chosen: (place) => this.choose(place),
            key: (event, place) => this.key(event, place),
            scrolled: () => this.fetch(),
        });
        this.detail.setAttribute('aria-label', 'Chosen row');
        this.element.append(this.bar, this.list.element, this.detail);
        link.listen({
            shot: (shot) => this.arrived(shot),
            sent: () => {
                this.book.clearMarks();
                this.list.draw();
            },
            restarted: () => this.book.clear(),
        });
        if (link.shot) this.arrived(link.shot);
        this.paintBars();
    }

    setVisible(isVisible: boolean): void {
        this.visible = isVisible;
        this.stopWatching();
        this.stopWatching = isVisible ? this.pointer.watch((key) => this.point(key)) : () => {};
        if (!isVisible) this.pointer.lightRow(null);
        this.list.setVisible(isVisible);
        this.redraw();
    }

    private get count(): number { return this.filter.indexes?.length ?? this.book.count; }

    private indexAt(place: number): number { return this.filter.indexes ? (this.filter.indexes[place] ?? -1) : place; }

    private rowAt(place: number): Bag | undefined { return this.book.at(this.indexAt(place)); }

    private arrived(shot: Shot): void {
        const isOther = this.book.take(shot);
        if (isOther) {
            this.chosen = null;
            this.list.scrollToStart();
        }
        if (shot.revision !== this.revision) this.asked = new Set();
        this.revision = shot.revision;
        this.filter.renew();
    }

    private redraw(): void {
        this.list.setCount(this.count);
        this.drawBars();
    }

    private line(place: number): Line {
        const row = this.rowAt(place);
        if (!row) return { key: `waiting ${this.indexAt(place)}`, cells: rowColumns.map((column) => (column.name === 'index' ? String(this.indexAt(place)) : '')), classes: 'wb-waiting' };
        const key = keyOf(row);
        const classes = [
            row['row'] === null ? 'wb-group' : '', key === this.chosen ? 'wb-chosen' : '', key === this.pointedAt ? 'wb-pointed' : '',
            this.book.isMarked(key, 'row') ? 'wb-new' : '',
        ].join(' ');
        return { key, classes, cells: rowColumns.map(({ name, text }) => {
            const shown = text(row);
            if (this.book.isMarked(key, name)) return html`<mark class="wb-mark" title=${shown}>${shown === '' ? 'nothing' : shown}</mark>`;
            return html`<span dir="auto" title=${shown}>${shown}</span>`;
        }) };
    }

    private point(key: string | null): void {
        if (key === this.pointedAt) return;
        this.pointedAt = key;
        if (key !== null) {
            for (let place = 0; place < this.count; place += 1) {
                const row = this.rowAt(place);
                if (row && keyOf(row) === key) this.list.reveal(place);
            }
        }
        this.list.draw();
    }

    private choose(place: number): void {
        const row = this.rowAt(place);
        if (!row) return;
        this.chosen = keyOf(row);
        this.pointer.show(this.chosen);
        this.list.draw();
        this.drawBars();
    }

    private key(event: KeyboardEvent, place: number): boolean {
        if (event.key.toLowerCase() !== 'c' || !(event.ctrlKey || event.metaKey) || getSelection()?.isCollapsed === false) return false;
        void this.copy([this.indexAt(place)]);
        return true;
    }

    /** Asks for what is looked at and not there, once nothing else is on its way. */
    private fetch(): void {
        if (!this.visible || this.fetching > 0) return;
        const { from, count } = this.list.range;
        const wanted = Array.from({ length: count }, (_unused, at) => this.indexAt(from + at)).filter((index) => index >= 0 && !this.book.isFresh(index) && !this.asked.has(index));
        if (wanted.length === 0) return;
        for (const index of wanted) this.asked.add(index);
        if (this.filter.indexes) for (const window of slices(wanted)) this.ask(window);
        else this.ask(this.windowAround(from + Math.floor(count / 2)), true);
    }

    private windowAround(middle: number): Window {
        if (this.book.count <= wholeListLimit) return firstWindow;
        return { from: Math.max(0, Math.min(middle - slice / 2, this.book.count - slice)), count: slice };
    }

    private ask(window: Window, follow = false): void {
        const answered = (): void => {
            this.fetching -= 1;
            if (this.fetching === 0) this.list.draw();
        };
        const isAsked = follow ? this.link.look(window, answered) : this.link.send({ do: 'state', ...window }, answered);
        if (isAsked) this.fetching += 1;
    }

    private async copy(indexes: readonly number[]): Promise<void> {
        this.say('');
        const rows: Bag[] = [];
        const missing = indexes.filter((index) => !this.book.isFresh(index));
        for (const window of slices(missing)) {
            this.say(`Fetching rows ${window.from} to ${window.from + window.count - 1}…`);
            await new Promise<void>((resolve) => { if (!this.link.send({ do: 'state', ...window }, () => resolve())) resolve(); });
        }
        for (const index of indexes) {
            const row = this.book.at(index);
            if (row) rows.push(row);
        }
        const [only] = rows;
        if (!only) return;
        if (indexes.length === 1) this.say(await copyText(JSON.stringify(only, null, 2), `row ${String(only['index'])}`));
        else this.say(await copyText(JSON.stringify(rows, null, 2), `${rows.length} rows`));
    }

    private say(text: string): void {
        this.said = text;
        this.drawBars();
    }

    private get chosenRow(): Bag | null {
        if (this.chosen === null) return null;
        for (let index = 0; index < this.book.count; index += 1) {
            const row = this.book.at(index);
            if (row && keyOf(row) === this.chosen) return row;
        }
        return null;
    }

    private paintBars(): void {
        if (!this.visible) return;
        const { link, book, filter } = this;
        const chosen = this.chosenRow;
        const className = textOf(link.shot?.screen['class']) ?? '';
        const shown = filter.isEmpty ? `${book.count} rows` : `${this.count} of ${book.count} rows${filter.isByName ? ', by name' : ''}`;
        render(html`
            <input class="wb-field wb-filter" type="search" placeholder="Filter: name, identifier, key, class" aria-label="Filter rows" spellcheck="false" autocomplete="off"
                @input=${(event: Event) => { this.list.scrollToStart(); filter.set((event.target as HTMLInputElement).value); }}>
            <span class="wb-note" role="status">${this.said || shown}</span>
            <span class="wb-space wb-mono" title="The screen on top, its number and revision">${className} · ${link.shot?.screenId ?? ''} · ${link.shot?.revision ?? ''}</span>
            <button class="wb-button" type="button" ?disabled=${this.count === 0} @click=${() => void this.copy(Array.from({ length: this.count }, (_unused, place) => this.indexAt(place)))}>Copy shown</button>`, this.bar);
        this.detail.hidden = chosen === null;
        if (!chosen) return;
        this.tree.show(chosen);
        render(html`<div class="wb-bar"><h2 class="wb-heading" dir="auto">Row ${String(chosen['index'])}${chosen['name'] ? html` · ${chosen['name']}` : ''}</h2><span class="wb-space"></span>
            <button class="wb-button" type="button" @click=${() => void this.copy([chosen['index'] as number])}>Copy row</button>
            <button class="wb-button" type="button" aria-label="Close the row" @click=${() => { this.chosen = null; this.redraw(); }}>×</button></div>
            <div class="wb-scroll" tabindex="0" role="group" aria-label="The row as JSON">${this.tree.element}</div>`, this.detail);
    }
}

/** The fewest windows that hold the given indexes and not many others. */
function slices(indexes: readonly number[]): Window[] {
    const windows: Window[] = [];
    for (const index of [...indexes].sort((one, other) => one - other)) {
        const last = windows.at(-1);
        if (last && index - last.from < slice && index - (last.from + last.count) < 10) last.count = index - last.from + 1;
        else windows.push({ from: index, count: 1 });
    }
    return windows;
}
