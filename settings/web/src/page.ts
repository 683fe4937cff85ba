// SPDX-License-Identifier: MIT
import { html, nothing, render, type TemplateResult } from 'lit-html';
import { barTemplate } from './bar';
import { emptyState } from './emptystates';
import { endsWithNote, sectionsTemplate, type Slot } from './groups';
import { Gate } from './gate';
import { chevron } from './icons';
import { ListWindow } from './listwindow';
import { animate } from './motion';
import { paneTemplate } from './panes';
import { keepPresses } from './presses';
import { target, type Found, type Pane, type Row, type Screen } from './protocol';
import { resultsTemplate } from './results';
import { arrivals, captureLayout, playChange, type Drawn, type Named } from './rowmotion';
import { RowStore, type Window } from './rowstore';
import { FoundRows, Search, searchedFrom, type FindRequest } from './search';
import { release, restoreControl } from './style';
import { enableSwipe } from './swipe';
import { TimeWheel } from './timewheel';
import { ToneList } from './tones';
import type { ListUse, View } from './view';

function element(className: string, parent?: HTMLElement): HTMLElement {
    const made = document.createElement('div');
    made.className = className;
    parent?.append(made);
    return made;
}

/** What a page asks of the application beside what its user does. */
export interface PageRequests {
    /** Asks for a page's window of rows and for single rows beside it; false when nothing was asked for, as while an answer is waited for. */
    rows(page: PageView, beside: readonly number[]): boolean;
    /** Asks which rows of a page's screen have names that hold a text; the answer is told once, and is null when there is none. */
    find(page: PageView, text: string, answered: Parameters<FindRequest>[1]): void;
}

/** What is about to be drawn: the places of the rows, and the rows that are known. */
interface Plan { slots: readonly Slot[]; rows: readonly Row[]; order: string }

/** One screen in the document: its bar, its list, and the user's place in it. Kept while screens lie above it. */
export class PageView implements ListUse {
    readonly bar = element('bar');
    readonly body = element('page');
    readonly store = new RowStore();
    uncovered: string | null = null;
    editing = false;
    /** Shut while the page is not where it belongs. */
    readonly gate: Gate;
    /** What had the focus when the screen was covered. */
    lastFocus: HTMLElement | null = null;
    /** The name of the row that it was in. */
    private lastRow: string | null = null;

    private readonly inner = element('page-inner', this.body);
    private readonly ghosts = element('ghosts', this.inner);
    private readonly above = element('search-place', this.inner);
    private readonly list = element('list', this.inner);
    private readonly below = element('below', this.inner);
    private readonly window: ListWindow;
    private readonly search: Search;
    private readonly found = new FoundRows(this.store);
    private readonly foundWindow: ListWindow;
    /** Whether what was found is shown in place of the list, and where the list stood. */
    private searching = false;
    private searchedAt = 0;
    private wheel: TimeWheel | null = null;
    private readonly tones: ToneList;
    private scheduled = 0;
    private scrollTop = 0;
    private order = '';
    /** The rows as they are drawn; the store may know newer ones until the next drawing. */
    private rows: readonly Row[] = [];
    private drawn: Drawn = { rows: [], count: 0 };
    private arrived = false;
    private drawing = false;
    private released = false;
    /** The row that was tapped last, until its highlight goes. */
    private tapped: { row: HTMLElement; command: number } | null = null;

    constructor(public screen: Screen, private readonly view: View, private readonly requests: PageRequests) {
        this.tones = new ToneList(view, () => this.draw(), () => this.schedule());
        this.ghosts.inert = true;
        this.ghosts.setAttribute('aria-hidden', 'true');
        this.window = new ListWindow(this.body, this.list, this.store, () => this.schedule());
        this.foundWindow = new ListWindow(this.body, this.list, this.found, () => this.schedule());
        this.search = new Search(view, (text, answered) => requests.find(this, text, answered), (found, renewed) => this.showFound(found, renewed));
        this.gate = new Gate([this.bar, this.body]);
        keepPresses(this.body);
        enableSwipe(this.list, { uncover: (name, width) => this.uncover(name, width), remove: (name) => this.removeNamed(name) });
        // A field that drawing takes away loses the focus; the user has not left it.
        this.list.addEventListener('blur', (event) => { if (this.drawing) event.stopPropagation(); }, { capture: true });
        for (const part of [this.bar, this.body]) part.addEventListener('click', (event) => this.endMove(event), { capture: true });
        // A tap elsewhere covers the delete button again; one on a row has done so by now, and nothing else.
        this.body.addEventListener('click', (event) => {
            const row = (event.target as Element).closest<HTMLElement>('.row');
            if (this.uncovered !== null && row?.dataset['name'] !== this.uncovered) this.uncover(null);
        });
    }

    /** Takes over a newer state of the same screen; `covered` tells that something is presented above it. */
    update(screen: Screen, revision: number, covered: boolean): void {
        // A swiped row's deletion is asked for in editing mode, as on the phone; the other rows stay as they are meanwhile.
        this.editing = screen.editing && (this.editing || !covered);
        // Rows that merely become known have been there before.
        const changed = revision !== this.store.revision;
        this.screen = screen;
        const count = this.store.count;
        this.store.update(screen, revision);
        this.window.update(count !== this.store.count);
        if (changed && this.searchable) this.search.renew(revision);
        const plan = this.plan();
        const moved = changed && this.body.isConnected && this.order !== '' && this.order !== plan.order && !this.searching;
        const before = moved ? captureLayout(this.list) : null;
        const then = this.drawn;
        this.paint(plan);
        this.arrive();
        if (before) playChange(before, this.within(arrivals(then, this.drawn)), this.within(arrivals(this.drawn, then)), this.list, this.ghosts, this.body.getBoundingClientRect());
    }

    /** Takes over rows of the state that is shown; they are drawn with the next frame, however many answers brought them. */
    take(screen: Screen, revision: number): void {
        this.screen = screen;
        this.store.update(screen, revision);
        this.schedule();
    }

    // A header goes with its group row, and a footer with the section's; of a list that is drawn in part it is the section that tells.
    private within(names: ReadonlySet<string>): Named {
        const { whole } = this.store;
        return (name) => names.has(name) || (name.endsWith('-footer') ? whole || names.has(name.slice(0, -'-footer'.length)) : whole && !/^(row|waiting)-/.test(name));
    }

    // Once in the screen's life, and not each time it is uncovered again.
    private arrive(): void {
        if (this.arrived) return;
        this.arrived = true;
        const title = this.bar.querySelector('.bar-title > *');
        if (title) animate(title, [{ opacity: 0 }, { opacity: 1 }], { seconds: this.screen.bar.titleFade });
        if (this.screen.tones) this.tones.reveal(this.body);
    }

    draw(): void { this.paint(this.plan()); }

    private get searchable(): boolean { return this.searching || this.screen.count > searchedFrom; }

    private plan(): Plan {
        const { searching } = this;
        const slots = (searching ? this.foundWindow : this.window).slots();
        const rows = slots.map((slot) => (searching ? this.found.rowAt(slot.index) : this.store.at(slot.index))).filter((row): row is Row => row !== undefined);
        return { slots, rows, order: rows.map((row) => this.nameOf(row)).join() };
    }

    private paint(plan: Plan): void {
        const typed = this.typed();
        const hadFocus = this.list.contains(document.activeElement);
        this.drawing = true;
        this.render(plan);
        this.drawing = false;
        for (const [field, text] of typed) if (!this.list.contains(field)) this.view.unsaved(field.ariaLabel ?? '', text);
        // The row in use is gone; the keyboard goes on from the screen's title and not from the page's beginning.
        if (hadFocus && !this.list.contains(document.activeElement)) this.focusHeading();
        if (this.body.isConnected) this.askForRows(plan.slots);
    }

    private render({ slots, rows, order }: Plan): void {
        const { searching } = this;
        this.order = order;
        this.rows = rows;
        this.drawn = { rows: rows.map((row) => ({ name: this.nameOf(row), index: row.index })), count: this.store.count };
        this.list.classList.toggle('whole', this.store.whole && !searching);
        this.inner.classList.toggle('with-wheel', this.screen.pane !== null);
        render(barTemplate(this.screen, this.view), this.bar);
        render(this.searchable ? this.search.element() : nothing, this.above);
        const more = searching ? null : this.more(rows);
        const inset = endsWithNote(this.store) ? more : null;
        render(searching ? resultsTemplate(slots, this.found, this, this.view) : sectionsTemplate(slots, this.store, inset, this, this.view), this.list);
        render(html`${this.special()}${inset ? nothing : (more ?? nothing)}`, this.below);
        (searching ? this.foundWindow : this.window).placed();
    }

    private askForRows(slots: readonly Slot[]): void {
        const { searching } = this;
        const drawn = slots.map((slot) => (searching ? (this.found.at(slot.index)?.index ?? -1) : slot.index));
        const beside = searching ? this.store.missing(drawn) : this.store.whole ? [] : this.store.neededBeside(drawn);
        const needed = beside.length > 0 || (!searching && this.window.incomplete);
        if (needed && this.requests.rows(this, beside)) this.store.markAsked(beside);
    }

    /** Puts what was found in the list's place, or the list back in its own. `renewed` are the results of the same search. */
    private showFound(found: readonly Found[] | null, renewed: boolean): void {
        const was = this.searching;
        this.searching = found !== null;
        this.uncovered = null;
        if (found) {
            if (!was) {
                this.searchedAt = this.body.scrollTop;
                this.window.suspend();
            }
            if (!renewed) {
                this.foundWindow.release();
                this.body.scrollTop = 0;
            }
            this.found.take(found);
            this.foundWindow.update(!renewed);
        } else if (was) {
            this.foundWindow.release();
            this.window.resume();
            this.window.update(false);
        }
        this.draw();
        if (!found && was) this.body.scrollTop = this.searchedAt;
    }

    /** The window of rows that commands carry while this page is on top. */
    get wanted(): Window {
        // What is found lies scattered; it is asked for row by row.
        return this.searching ? { from: 0, count: 0 } : this.window.wanted();
    }

    nameOf(row: Row): string { return `row-${row.key}`; }

    uncover(name: string | null, width?: number): void {
        if (name === null && this.uncovered === null) return;
        this.uncovered = name;
        const row = name === null ? null : this.list.querySelector<HTMLElement>(`[data-name="${CSS.escape(name)}"]`);
        const button = row?.querySelector<HTMLElement>('.delete');
        if (row && button) row.style.setProperty('--uncovered', `${width ?? button.offsetWidth}px`);
        this.draw();
        if (button && document.activeElement?.classList.contains('minus')) button.focus({ preventScroll: true });
    }

    tap(row: Row, event: Event): void { this.highlight(event, this.view.act({ do: 'tap', ...target(row) })); }

    remove(row: Row): void { this.view.act({ do: 'delete', ...target(row) }); }

    private removeNamed(name: string): void {
        const row = this.rows.find((each) => this.nameOf(each) === name);
        if (row) this.remove(row);
    }

    /** A released row stays highlighted until its screen moves away, and beneath the one that it has opened. */
    private highlight(event: Event, command: number | null): void {
        this.fadeHighlight();
        const row = (event.currentTarget as Element).closest<HTMLElement>('.row');
        if (!row || command === null) return;
        row.dataset['pressed'] = '';
        this.tapped = { row, command };
    }

    /** To be called when a command was answered and this page still is on top. */
    answered(command: number): void {
        if (command === this.tapped?.command) this.fadeHighlight();
    }

    /** To be called when the page is shown again, and when the answer to a tap will not come. */
    fadeHighlight(): void {
        if (!this.tapped) return;
        const { row } = this.tapped;
        this.tapped = null;
        // The fade begins at what is drawn; a row that has just come back has not been drawn yet.
        if (row.isConnected) void getComputedStyle(row.querySelector('.cell') ?? row).backgroundColor;
        delete row.dataset['pressed'];
    }

    /** What stands in fields and has not been sent. */
    private typed(): Map<HTMLInputElement, string> {
        const fields = [...this.list.querySelectorAll<HTMLInputElement>('.field[data-busy]')];
        return new Map(fields.filter((field) => field.value !== field.dataset['committed']).map((field) => [field, field.value]));
    }

    /** To be called before the page leaves the document. */
    leave(): void {
        this.scrollTop = this.body.scrollTop;
        this.window.suspend();
        this.foundWindow.suspend();
        const active = document.activeElement;
        this.lastFocus = active instanceof HTMLElement && (this.body.contains(active) || this.bar.contains(active)) ? active : null;
        this.lastRow = this.lastFocus?.closest<HTMLElement>('.row')?.dataset['name'] ?? null;
        this.uncovered = null;
        this.wheel?.abandon();
        this.tones.stop();
    }

    /** To be called when the page is back in the document, and before its new state. */
    returned(): void {
        this.body.scrollTop = this.scrollTop;
        (this.searching ? this.foundWindow : this.window).resume();
        if (this.searching) this.foundWindow.update(false);
    }

    /** To be called when the page is put back into the document to be looked at only. */
    peek(): void { this.body.scrollTop = this.scrollTop; }

    /** To be called when the connection is gone: nothing goes on that waits for an answer, or would end in a command. */
    disconnected(): void {
        this.fadeHighlight();
        this.wheel?.abandon();
        this.tones.stop();
    }

    /** Sends what was being typed while nothing could be sent, and lets go of the fields; to be called with the connection back and the state drawn. */
    sendTyped(): void {
        const typed = this.typed();
        for (const field of this.list.querySelectorAll<HTMLInputElement>('.field[data-busy]')) {
            release(field);
            const row = this.store.at(Number(field.closest<HTMLElement>('.row')?.dataset['index']));
            const text = typed.get(field);
            if (text === undefined) restoreControl(field);
            else if (row) this.view.set(row, text);
        }
    }

    /** Where a row is drawn; null where it is not. */
    rowElement(key: string): HTMLElement | null { return this.list.querySelector<HTMLElement>(`[data-name="${CSS.escape(`row-${key}`)}"]`); }

    /** The key of the row that an element belongs to. */
    keyAt(target: Element): string | null {
        const name = this.list.contains(target) ? target.closest<HTMLElement>('[data-name]')?.dataset['name'] : undefined;
        return this.rows.find((row) => this.nameOf(row) === name)?.key ?? null;
    }

    /** The row that an earlier one is by now, whoever has answered then; undefined when it is not drawn. */
    sameRow(row: Row): Row | undefined { return this.rows.find((each) => each.key === row.key && each.kind === row.kind && each.identifier === row.identifier); }

    focusHeading(): void { this.bar.querySelector<HTMLElement>('h1')?.focus({ preventScroll: true }); }

    focusWhereLeft(): void {
        const row = this.lastRow === null ? null : this.list.querySelector<HTMLElement>(`[data-name="${CSS.escape(this.lastRow)}"]`);
        // The row may have been drawn anew since.
        const part = this.lastFocus?.isConnected ? this.lastFocus : row?.querySelector<HTMLElement>('button, input');
        part?.focus({ preventScroll: true });
        if (!part || document.activeElement !== part) this.focusHeading();
    }

    /** To be called when the screen is gone for good. */
    release(): void {
        if (this.released) return;
        this.released = true;
        for (const [field, text] of this.typed()) this.view.unsaved(field.ariaLabel ?? '', text);
        cancelAnimationFrame(this.scheduled);
        this.window.release();
        this.foundWindow.release();
    }

    private schedule(): void {
        if (this.scheduled !== 0) return;
        this.scheduled = requestAnimationFrame(() => {
            this.scheduled = 0;
            if (this.body.isConnected) this.draw();
        });
    }

    // A move of the wheel that has not come to rest belongs to what was shown before the click.
    private endMove(event: Event): void {
        if (!this.wheel?.element.contains(event.target as Node)) this.wheel?.finish();
    }

    /** The one wheel of this page, on the pane's time. */
    private wheelOf(pane: Pane): HTMLElement {
        this.wheel ??= new TimeWheel((time) => this.view.pickTime(time), () => this.view.timeHeld);
        this.wheel.show(pane.time, pane.rows[pane.tag] ?? '', this.view.texts);
        return this.wheel.element;
    }

    /** What a screen of its own kind shows in place of rows. */
    private special(): TemplateResult {
        const { screen, view } = this;
        if (!screen.tones) this.tones.stop();
        return html`
            ${screen.pane ? paneTemplate(screen.pane, this.wheelOf(screen.pane), view) : nothing}
            ${screen.tones ? this.tones.template(screen.tones) : nothing}`;
    }

    /** What the page adds to the rows: the ways to screens that no row opens, and what to say when something is missing. */
    private more(rows: readonly Row[]): TemplateResult | null {
        const { screen, view } = this;
        const missing = this.store.whole && rows.length === screen.count ? emptyState(screen, view.texts) : null;
        if (screen.links.length === 0 && !missing) return null;
        return html`
            ${screen.links.length === 0 ? nothing : html`<section class="group links">
                <div class="head untitled" data-name="links"></div>
                <ul class="rows" role="list">
                    ${screen.links.map((link, at) => html`<li class="row" data-name="link-${at}"><button class="cell kind-2" type="button" @click=${(event: Event) => this.highlight(event, view.act({ do: 'link', item: at }))}>
                        <span class="words"><span class="title" dir="auto">${link.title}</span></span><span class="mark">${chevron()}</span></button></li>`)}
                </ul></section>`}
            ${missing ?? nothing}`;
    }
}
