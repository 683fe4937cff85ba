// SPDX-License-Identifier: MIT
import { direction } from '../motion';
import { roomBeside } from '../shape';
import { element } from './tab';

const narrowest = 430;
const step = 16;
const memory = 'quietrix-settings-workbench-width';

/** The edge between the phone and the workbench, moved by pointer or by key. */
export class Separator {
    readonly element = element('wb-separator');
    /** What the user has chosen, also while the window is too narrow for it. */
    private wanted = Number.NaN;

    /** `changed` is told each width, in pixels. */
    constructor(controls: string, private readonly changed: (width: number) => void) {
        const part = this.element;
        part.tabIndex = 0;
        part.setAttribute('role', 'separator');
        part.setAttribute('aria-orientation', 'vertical');
        part.setAttribute('aria-controls', controls);
        part.setAttribute('aria-label', 'Width of the workbench');
        try {
            this.wanted = Number.parseFloat(sessionStorage.getItem(memory) ?? '');
        } catch {
            // A browser that remembers nothing begins with the usual width.
        }
        part.addEventListener('pointerdown', (event) => this.take(event));
        part.addEventListener('keydown', (event) => this.key(event));
        part.addEventListener('dblclick', () => this.want(Number.NaN));
        window.addEventListener('resize', () => this.show());
    }

    get width(): number {
        const usual = Math.min(880, this.widest);
        return Math.round(Math.max(narrowest, Math.min(this.widest, Number.isNaN(this.wanted) ? usual : this.wanted)));
    }

    private get widest(): number { return Math.max(narrowest, window.innerWidth - roomBeside); }

    show(): void {
        const part = this.element;
        part.setAttribute('aria-valuemin', String(narrowest));
        part.setAttribute('aria-valuemax', String(this.widest));
        part.setAttribute('aria-valuenow', String(this.width));
        part.setAttribute('aria-valuetext', `${this.width} pixels`);
        this.changed(this.width);
    }

    private want(width: number): void {
        this.wanted = width;
        try {
            if (Number.isNaN(width)) sessionStorage.removeItem(memory);
            else sessionStorage.setItem(memory, String(this.width));
        } catch {
            // It holds until the page is left.
        }
        this.show();
    }

    private take(event: PointerEvent): void {
        if (event.button !== 0) return;
        event.preventDefault();
        this.element.focus();
        this.element.setPointerCapture(event.pointerId);
        const from = event.clientX;
        const before = this.width;
        const move = (moved: PointerEvent): void => this.want(before - (moved.clientX - from) * direction());
        const end = (): void => {
            this.element.removeEventListener('pointermove', move);
            this.element.removeEventListener('lostpointercapture', end);
        };
        this.element.addEventListener('pointermove', move);
        this.element.addEventListener('lostpointercapture', end);
    }

    private key(event: KeyboardEvent): void {
        const widths: Readonly<Record<string, number>> = {
            ArrowLeft: this.width + step * direction(), ArrowRight: this.width - step * direction(), Home: narrowest, End: this.widest,
        };
        const width = widths[event.key];
        if (width === undefined) return;
        event.preventDefault();
        this.want(Math.max(narrowest, Math.min(this.widest, width)));
    }
}
