// SPDX-License-Identifier: MIT
import { html, nothing, render, type TemplateResult } from 'lit-html';
import { barTemplate } from './bar';
import { emptyState } from './emptystates';
import { endsWithNote, sectionsTemplate } from './groups';
import { Gate } from './gate';
import { chevron } from './icons';
import { RowIdentity } from './identity';
import { ListWindow } from './listwindow';
import { animate } from './motion';
import { paneTemplate } from './panes';
import { keepPresses } from './presses';
import { target, type Pane, type Row, type Screen } from './protocol';
import { captureLayout, playChange } from './rowmotion';
import { RowStore, type Window } from './rowstore';
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

/** Asks for a page's window of rows and for single rows beside it; false when nothing was asked for, as while an answer is waited for. */
export type RowRequest = (page: PageView, beside: readonly number[]) => boolean;

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

    private readonly inner = element('page-inner', this.body);
    private readonly ghosts = element('ghosts', this.inner);
    private readonly list = element('list', this.inner);
    private readonly below = element('below', this.inner);
    private readonly identity = new RowIdentity();
    private readonly window: ListWindow;
    private wheel: TimeWheel | null = null;
    private readonly tones: ToneList;
    private scheduled = 0;
    private scrollTop = 0;
    private order = '';
    private arrived = false;
    private drawing = false;
    private released = false;
    /** The row that was tapped last, until its highlight goes. */
    private tapped: { row: HTMLElement; command: number } | null = null;

    constructor(public screen: Screen, private readonly view: View, private readonly needsRows: RowRequest) {
        this.tones = new ToneList(view, () => this.draw(), () => this.schedule());
        this.ghosts.inert = true;
        this.ghosts.setAttribute('aria-hidden', 'true');
        this.window = new ListWindow(this.body, this.list, this.store, () => this.schedule());
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
        const typed = this.typed();
        const before = this.body.isConnected && this.order !== '' ? captureLayout(this.list) : null;
        this.screen = screen;
        const count = this.store.count;
        this.store.update(screen, revision);
        this.window.update(count !== this.store.count);
        const order = this.order;
        const hadFocus = this.list.contains(document.activeElement);
        this.draw();
        this.arrive();
        for (const [field, text] of typed) if (!this.list.contains(field)) this.view.unsaved(field.ariaLabel ?? '', text);
        // The row in use is gone; the keyboard goes on from the screen's title and not from the page's beginning.
        if (hadFocus && !this.list.contains(document.activeElement)) this.focusHeading();
        if (before && order !== this.order) playChange(before, this.list, this.ghosts, this.body.getBoundingClientRect());
    }

    // Once in the screen's life, and not each time it is uncovered again.
    private arrive(): void {
        if (this.arrived) return;
        this.arrived = true;
        const title = this.bar.querySelector('.bar-title > *');
        if (title) animate(title, [{ opacity: 0 }, { opacity: 1 }], { seconds: this.screen.bar.titleFade });
    }

    draw(): void {
        this.drawing = true;
        this.render();
        this.drawing = false;
    }

    private render(): void {
        const slots = this.window.slots();
        const rows = slots.map((slot) => this.store.at(slot.index)).filter((row): row is Row => row !== undefined);
        // A section goes by the name of its group row, also where that row is not drawn.
        const groups = rows.map((row) => this.store.groupOf(row)).filter((row): row is Row => row !== undefined);
        this.identity.update([...new Set([...rows, ...groups])]);
        this.order = rows.map((row) => this.identity.of(row)).join();
        this.list.classList.toggle('whole', this.store.whole);
        this.inner.classList.toggle('with-wheel', this.screen.pane !== null);
        render(barTemplate(this.screen, this.view), this.bar);
        const more = this.more(rows);
        const inset = endsWithNote(this.store) ? more : null;
        render(sectionsTemplate(slots, this.store, inset, this, this.view), this.list);
        render(html`${this.special()}${inset ? nothing : (more ?? nothing)}`, this.below);
        this.window.placed();
        if (!this.body.isConnected) return;
        const beside = this.store.whole ? [] : this.store.neededBeside(slots.map((slot) => slot.index));
        if ((this.window.incomplete || beside.length > 0) && this.needsRows(this, beside)) this.store.markAsked(beside);
    }

    /** The window of rows that commands carry while this page is on top. */
    get wanted(): Window { return this.window.wanted(); }

    nameOf(row: Row): string { return this.identity.of(row); }

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
        const element = this.list.querySelector<HTMLElement>(`[data-name="${CSS.escape(name)}"]`);
        const row = element && this.store.at(Number(element.dataset['index']));
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
        const active = document.activeElement;
        this.lastFocus = active instanceof HTMLElement && (this.body.contains(active) || this.bar.contains(active)) ? active : null;
        this.uncovered = null;
        this.wheel?.abandon();
        this.tones.stop();
    }

    /** To be called when the page is back in the document. */
    returned(): void {
        this.body.scrollTop = this.scrollTop;
        this.fadeHighlight();
    }

    focusHeading(): void { this.bar.querySelector<HTMLElement>('h1')?.focus({ preventScroll: true }); }

    focusWhereLeft(): void {
        if (this.lastFocus?.isConnected) this.lastFocus.focus({ preventScroll: true });
        if (document.activeElement !== this.lastFocus || this.lastFocus === null) this.focusHeading();
    }

    /** To be called when the screen is gone for good. */
    release(): void {
        if (this.released) return;
        this.released = true;
        for (const [field, text] of this.typed()) this.view.unsaved(field.ariaLabel ?? '', text);
        cancelAnimationFrame(this.scheduled);
        this.window.release();
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
        const missing = this.store.whole && rows.length === screen.count ? emptyState(screen, rows, view.texts) : null;
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
