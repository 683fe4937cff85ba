// SPDX-License-Identifier: MIT
import type { Beside } from '../beside';
import { Layer } from './layer';
import { element } from './tab';

/** Lights up a part of the phone for who points at what it is in the workbench, and tells which row is pointed at on the phone. */
export class Pointer {
    private readonly layer: Layer;
    private readonly light = element('wb-light');
    private find: () => Element | null = () => null;
    private frame = 0;

    constructor(private readonly beside: Beside, place: HTMLElement) { this.layer = new Layer(beside, place, 'wb-light-layer'); }

    /** Lights up a row as long as it is drawn on the phone; null puts the light out. */
    lightRow(key: string | null): void { this.lightUp(key === null ? null : () => this.beside.rowElement(key)); }

    /** Lights up whatever `find` finds, frame by frame; null puts the light out. */
    lightUp(find: (() => Element | null) | null): void {
        cancelAnimationFrame(this.frame);
        this.layer.hide();
        if (!find) return;
        this.find = find;
        this.follow();
    }

    /** Brings a row into sight on the phone, if it is drawn there. */
    show(key: string): void { this.beside.rowElement(key)?.scrollIntoView({ block: 'nearest' }); }

    /** Tells the key of the row that is pointed at or has the focus on the phone, and null when it no longer is; the result ends that. */
    watch(pointed: (key: string | null) => void): () => void {
        const { phone } = this.beside;
        const end = new AbortController();
        const over = (event: Event): void => pointed(this.beside.keyAt(event.target as Element));
        for (const type of ['pointerover', 'focusin'] as const) phone.addEventListener(type, over, { signal: end.signal });
        for (const type of ['pointerleave', 'focusout'] as const) phone.addEventListener(type, () => pointed(null), { signal: end.signal });
        return () => end.abort();
    }

    // What is lit may be scrolled, moved by others, or drawn anew; the light stays on it.
    private follow(): void {
        const box = this.find()?.getBoundingClientRect();
        if (box && box.height > 0) {
            this.layer.place(this.light, box);
            this.layer.show([this.light]);
        } else this.layer.hide();
        this.frame = requestAnimationFrame(() => this.follow());
    }
}
