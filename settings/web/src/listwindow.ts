// SPDX-License-Identifier: MIT
import { Virtualizer, defaultRangeExtractor, elementScroll, observeElementOffset, observeElementRect, type Range } from '@tanstack/virtual-core';
import type { Slot } from './groups';
import type { RowSource } from './rowsource';
import { firstWindow, wholeListLimit, type Window } from './rowstore';

const overscan = 12;
const defaultRowHeight = 44;

/** Chooses the rows of a list that are in the document: all of a short one, of a long one those in sight and the focused one. */
export class ListWindow {
    private virtualizer: Virtualizer<HTMLElement, HTMLElement> | null = null;
    private unmount: (() => void) | null = null;
    private suspended = false;

    constructor(
        private readonly scroller: HTMLElement,
        private readonly content: HTMLElement,
        private readonly store: RowSource,
        private readonly changed: () => void,
    ) {}

    /** To be called when the store has changed, before slots(). */
    update(structureChanged: boolean): void {
        if (this.store.whole) {
            this.release();
            return;
        }
        if (!this.virtualizer) {
            this.virtualizer = new Virtualizer(this.options());
            this.unmount = this.virtualizer._didMount();
        } else {
            this.virtualizer.setOptions(this.options());
        }
        this.virtualizer._willUpdate();
        // Sizes are kept by index, and the indexes have moved.
        if (structureChanged) this.virtualizer.measure();
    }

    slots(): Slot[] {
        if (!this.virtualizer) return Array.from({ length: this.store.count }, (_unused, index) => ({ index, gapBefore: 0 }));
        let end: number | null = null;
        return this.virtualizer.getVirtualItems().map((item) => {
            const slot = { index: item.index, gapBefore: end === null ? 0 : Math.max(0, item.start - end) };
            end = item.end;
            return slot;
        });
    }

    /** The rows to have at hand, with some room around them so that scrolling seldom meets a missing one. */
    wanted(): Window {
        const items = this.virtualizer?.range;
        if (!items || this.store.whole) return firstWindow;
        const middle = Math.floor((items.startIndex + items.endIndex) / 2);
        const from = Math.max(0, Math.min(middle - wholeListLimit / 2, this.store.count - wholeListLimit));
        return { from, count: wholeListLimit };
    }

    /** Whether a row in sight has not arrived. */
    get incomplete(): boolean {
        const items = this.virtualizer?.range;
        if (!items) return !this.store.covers(0, this.store.count);
        return !this.store.covers(items.startIndex - overscan, items.endIndex - items.startIndex + 1 + 2 * overscan);
    }

    /** To be called after drawing: makes room for what is not drawn, and learns the true heights of what is. */
    placed(): void {
        if (!this.virtualizer) {
            this.content.style.paddingTop = this.content.style.paddingBottom = '';
            return;
        }
        const items = this.virtualizer.getVirtualItems();
        this.content.style.paddingTop = `${items[0]?.start ?? 0}px`;
        this.content.style.paddingBottom = `${Math.max(0, this.virtualizer.getTotalSize() - (items.at(-1)?.end ?? 0))}px`;
        const heights = new Map<number, number>();
        for (const element of this.content.querySelectorAll<HTMLElement>('[data-index], [data-after]')) {
            // A footer counts with the row that it follows.
            const place = this.store.placeOf(Number(element.dataset['index'] ?? element.dataset['after']));
            heights.set(place, (heights.get(place) ?? 0) + element.offsetHeight);
        }
        for (const [place, height] of heights) if (place >= 0 && place < this.store.count) this.virtualizer.resizeItem(place, height);
    }

    /** To be called while the scroller still stands where it will be found again: what it does from now on does not count. */
    suspend(): void {
        this.suspended = true;
        this.virtualizer?.setOptions(this.options());
        this.virtualizer?._willUpdate();
    }

    /** To be called when the scroller stands there again, before update(). */
    resume(): void { this.suspended = false; }

    release(): void {
        this.unmount?.();
        this.unmount = null;
        this.virtualizer = null;
    }

    private options() {
        return {
            count: this.store.count,
            getScrollElement: () => (this.suspended ? null : this.scroller),
            estimateSize: (place: number) => this.store.heightAt(place) ?? defaultRowHeight,
            scrollToFn: elementScroll,
            observeElementRect,
            observeElementOffset,
            overscan,
            rangeExtractor: (range: Range) => this.withFocused(defaultRangeExtractor(range)),
            onChange: () => this.changed(),
        };
    }

    private withFocused(range: number[]): number[] {
        const focused = document.activeElement?.closest<HTMLElement>('[data-index]');
        const index = focused && this.content.contains(focused) ? this.store.placeOf(Number(focused.dataset['index'])) : -1;
        if (index < 0 || index >= this.store.count || range.includes(index)) return range;
        return [...range, index].sort((one, other) => one - other);
    }
}
