// SPDX-License-Identifier: MIT
import type { Beside } from '../beside';
import { element } from './tab';

/** Lights up a row of the phone for who points at it in the workbench, and tells which row is pointed at on the phone. */
export class Pointer {
    private readonly layer = element('wb-light');
    private key: string | null = null;
    private frame = 0;

    constructor(private readonly beside: Beside) {
        this.layer.setAttribute('aria-hidden', 'true');
    }

    /** Lights up a row as long as it is drawn on the phone; null puts the light out. */
    light(key: string | null): void {
        this.key = key;
        if (key === null) {
            cancelAnimationFrame(this.frame);
            this.frame = 0;
            this.layer.remove();
        } else if (this.frame === 0) this.follow();
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

    // The row may be scrolled, moved by others, or drawn anew; the light stays on it.
    private follow(): void {
        const row = this.key === null ? null : this.beside.rowElement(this.key);
        const box = row?.getBoundingClientRect();
        if (box && box.height > 0) {
            const phone = this.beside.phone.getBoundingClientRect();
            Object.assign(this.layer.style, { left: `${box.left - phone.left}px`, top: `${box.top - phone.top}px`, width: `${box.width}px`, height: `${box.height}px` });
            if (!this.layer.isConnected) this.beside.phone.append(this.layer);
        } else this.layer.remove();
        this.frame = requestAnimationFrame(() => this.follow());
    }
}
