// SPDX-License-Identifier: MIT
import type { Beside } from '../beside';
import { element } from './tab';

/** A box in the window. */
export interface Box { left: number; top: number; width: number; height: number }

/** A layer over the phone's screens that takes no input and that nobody hears of; it lies beside the phone in the document, so that what is drawn there is no change of it. */
export class Layer {
    readonly element: HTMLElement;

    constructor(private readonly beside: Beside, private readonly parent: HTMLElement, className: string) {
        this.element = element(`wb-layer ${className}`);
        this.element.setAttribute('aria-hidden', 'true');
    }

    /** Puts the layer over the phone as it stands now, with these parts in it. */
    show(parts: readonly HTMLElement[]): void {
        const { phone } = this.beside;
        const box = phone.getBoundingClientRect();
        Object.assign(this.element.style, { left: `${box.left}px`, top: `${box.top}px`, width: `${box.width}px`, height: `${box.height}px`, borderRadius: getComputedStyle(phone).borderRadius });
        this.element.replaceChildren(...parts);
        if (!this.element.isConnected) this.parent.append(this.element);
    }

    hide(): void { this.element.remove(); }

    /** Puts a part of the layer over a box of the window. */
    place(part: HTMLElement, box: Box): void {
        const origin = this.beside.phone.getBoundingClientRect();
        Object.assign(part.style, { left: `${box.left - origin.left}px`, top: `${box.top - origin.top}px`, width: `${box.width}px`, height: `${box.height}px` });
    }
}
