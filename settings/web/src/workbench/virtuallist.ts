// SPDX-License-Identifier: MIT
import { Virtualizer, defaultRangeExtractor, elementScroll, observeElementOffset, observeElementRect, type Range } from '@tanstack/virtual-core';
import { html, nothing, render, type TemplateResult } from 'lit-html';
import { repeat } from 'lit-html/directives/repeat.js';
import { styles } from '../style';
import { element, onceAFrame } from './tab';

const overscan = 12;

export interface Column { name: string; title: string; width: string }

/** What a line shows: a cell for each column, and what marks it as a whole. */
export interface Line { key: string; cells: readonly (TemplateResult | string)[]; classes: string; label?: string; expanded?: boolean; level?: number }

export interface ListOptions {
    label: string;
    /** "grid", or "treegrid" for lines that fold. */
    role: 'grid' | 'treegrid';
    columns: readonly Column[];
    /** In pixels, the same for all. */
    lineHeight: number;
    line(place: number): Line;
    /** Said in place of the lines when there are none. */
    empty: string;
    /** A line is pointed at or has the focus; null when none is any more. */
    pointed?(place: number | null): void;
    /** A line was clicked, or Enter was pressed on it. */
    chosen?(place: number): void;
    /** A key has led to another line. */
    moved?(place: number): void;
    /** A key on a line that the list has no use for; true when it was used. */
    key?(event: KeyboardEvent, place: number): boolean;
    /** Other lines are in sight. */
    scrolled?(): void;
}

/**
 * Lines of one height under a head that stays, of which only those in sight are in the document, however many there are. One line is in
 * the order of the Tab key; the arrow keys go to the others.
 */
export class VirtualList {
    readonly element: HTMLElement = element('wb-list');
    /** Draws with the next frame. */
    readonly draw = onceAFrame(() => this.paint());
    private readonly head = element('wb-list-head');
    private readonly body = element('wb-list-body');
    private readonly virtualizer: Virtualizer<HTMLElement, HTMLElement>;
    private count = 0;
    private active = 0;
    private focusWanted = false;
    private visible = false;
    private scrollTop = 0;
    private scrollLeft = 0;

    constructor(private readonly options: ListOptions) {
        const { label, role, columns } = options;
        const frame: HTMLElement = element('wb-list-frame');
        frame.setAttribute('role', role);
        frame.setAttribute('aria-label', label);
        this.head.setAttribute('role', 'rowgroup');
        this.body.setAttribute('role', 'rowgroup');
        this.element.style.setProperty('--columns', columns.map((column) => column.width).join(' '));
        render(html`<div class="wb-line wb-columns" role="row" aria-rowindex="1">${columns.map((column) => html`<span class="wb-cell wb-column-${column.name}" role="columnheader">${column.title}</span>`)}</div>`, this.head);
        frame.append(this.head, this.body);
        this.element.append(frame);
        this.virtualizer = new Virtualizer(this.virtualizerOptions());
        this.virtualizer._didMount();
        this.element.addEventListener('scroll', () => {
            if (!this.visible) return;
            this.scrollTop = this.element.scrollTop;
            this.scrollLeft = this.element.scrollLeft;
        });
        this.element.addEventListener('keydown', (event) => this.keyed(event));
        this.element.addEventListener('click', (event) => this.clicked(event));
        this.element.addEventListener('focusin', (event) => {
            if (!this.focusWanted) this.active = this.placeOf(event.target) ?? this.active;
        });
        if (options.pointed) {
            for (const type of ['pointerover', 'focusin'] as const) this.element.addEventListener(type, (event) => options.pointed!(this.placeOf(event.target)));
            for (const type of ['pointerleave', 'focusout'] as const) this.element.addEventListener(type, () => options.pointed!(null));
        }
    }

    /** The list has so many lines from now on. */
    setCount(count: number): void {
        const changed = count !== this.count;
        this.count = count;
        this.active = Math.max(0, Math.min(this.active, count - 1));
        if (changed) {
            this.virtualizer.setOptions(this.virtualizerOptions());
            this.virtualizer._willUpdate();
        }
        this.draw();
    }

    /** To be called when the list is in the document from now on, and when it no longer is. */
    setVisible(isVisible: boolean): void {
        this.visible = isVisible;
        this.virtualizer.setOptions(this.virtualizerOptions());
        this.virtualizer._willUpdate();
        if (!isVisible) return;
        this.element.scrollTop = this.scrollTop;
        this.element.scrollLeft = this.scrollLeft;
        this.draw();
    }

    /** The places of the lines in the document; what is in sight, and a little around it. */
    get range(): { from: number; count: number } {
        const { range } = this.virtualizer;
        if (!range || this.count === 0) return { from: 0, count: Math.min(this.count, 60) };
        const from = Math.max(0, range.startIndex - overscan);
        return { from, count: Math.min(this.count, range.endIndex + overscan + 1) - from };
    }

    /** Whether the end of the list is in sight. */
    get isAtEnd(): boolean { return this.element.scrollTop + this.element.clientHeight >= this.element.scrollHeight - 2; }

    /** Brings a line into sight. */
    reveal(place: number): void {
        if (this.visible && place >= 0 && place < this.count) this.virtualizer.scrollToIndex(place, { align: 'auto' });
    }

    /** Brings a line into sight and the focus to it. */
    focusAt(place: number): void {
        if (place < 0 || place >= this.count) return;
        this.active = place;
        this.focusWanted = true;
        this.reveal(place);
        this.draw();
    }

    scrollToStart(): void {
        this.active = 0;
        this.scrollTop = 0;
        this.element.scrollTop = 0;
    }

    scrollToEnd(): void { if (this.count > 0 && this.visible) this.virtualizer.scrollToIndex(this.count - 1, { align: 'end' }); }

    private virtualizerOptions() {
        const { lineHeight } = this.options;
        return {
            count: this.count,
            getScrollElement: () => (this.visible ? this.element : null),
            estimateSize: () => lineHeight,
            // The head covers as much of the list as is above the first line.
            scrollPaddingEnd: lineHeight,
            scrollToFn: elementScroll,
            observeElementRect,
            observeElementOffset,
            overscan,
            // Drawing must not take the focused line away.
            rangeExtractor: (range: Range) => {
                const places = defaultRangeExtractor(range);
                return places.includes(this.active) || this.active >= this.count ? places : [...places, this.active].sort((one, other) => one - other);
            },
            onChange: () => this.draw(),
        };
    }

    private paint(): void {
        if (!this.visible) return;
        const { columns, lineHeight, empty } = this.options;
        const frame = this.element.firstElementChild!;
        frame.setAttribute('aria-rowcount', String(this.count + 1));
        this.body.style.height = `${this.count * lineHeight}px`;
        const items = this.virtualizer.getVirtualItems().filter((item) => item.index < this.count).map((item) => ({ place: item.index, line: this.options.line(item.index) }));
        render(this.count === 0
            ? html`<div class="wb-line" role="row"><span class="wb-cell wb-empty" role="gridcell" aria-colspan=${columns.length}>${empty}</span></div>`
            : repeat(items, ({ line }) => line.key, ({ place, line }) => html`<div class="wb-line ${line.classes}" role="row" data-place=${place} aria-rowindex=${place + 2} tabindex=${place === this.active ? 0 : -1}
                aria-label=${line.label ?? nothing} aria-expanded=${line.expanded ?? nothing} aria-level=${line.level ?? nothing} ${styles({ top: `${place * lineHeight}px` })}>
                ${line.cells.map((cell, at) => html`<span class="wb-cell wb-column-${columns[at]!.name}" role="gridcell">${cell}</span>`)}</div>`), this.body);
        if (this.focusWanted) {
            this.focusWanted = false;
            this.lineAt(this.active)?.focus({ preventScroll: true });
        }
        this.options.scrolled?.();
    }

    private lineAt(place: number): HTMLElement | null { return this.body.querySelector<HTMLElement>(`[data-place="${place}"]`); }

    private placeOf(target: EventTarget | null): number | null {
        const line = target instanceof Element ? target.closest<HTMLElement>('[data-place]') : null;
        return line ? Number(line.dataset['place']) : null;
    }

    private clicked(event: Event): void {
        const place = this.placeOf(event.target);
        if (place === null) return;
        this.active = place;
        this.draw();
        this.options.chosen?.(place);
    }

    private keyed(event: KeyboardEvent): void {
        const place = this.placeOf(event.target);
        if (place === null || event.target !== this.lineAt(place)) return;
        if (this.options.key?.(event, place)) {
            event.preventDefault();
            return;
        }
        if (event.ctrlKey || event.altKey || event.metaKey) return;
        if (event.key === 'Enter' || event.key === ' ') {
            event.preventDefault();
            this.options.chosen?.(place);
            return;
        }
        // A key that repeats comes before the frame that moves the focus.
        const at = this.active;
        const page = Math.max(1, Math.floor(this.element.clientHeight / this.options.lineHeight) - 2);
        const steps: Readonly<Record<string, number>> = { ArrowUp: at - 1, ArrowDown: at + 1, PageUp: at - page, PageDown: at + page, Home: 0, End: this.count - 1 };
        const to = steps[event.key];
        if (to === undefined) return;
        event.preventDefault();
        const target = Math.max(0, Math.min(this.count - 1, to));
        this.focusAt(target);
        this.options.moved?.(target);
    }
}
