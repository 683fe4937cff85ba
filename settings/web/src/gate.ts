// SPDX-License-Identifier: MIT

/** Keys that only look around, and the way out, which the document takes care of. */
const passing: readonly string[] = ['Tab', 'Escape', 'Shift', 'Control', 'Alt', 'Meta'];

/** What keeps the user's input out. */
export type Reason = 'transit' | 'sheet' | 'presented' | 'hand';

/**
 * Keeps input from what does not stand still: nobody means what happens to pass under the pointer. A press that begins while the gate
 * is shut falls on nothing, and its end on what has arrived meanwhile is no press either.
 */
export class Gate {
    private readonly reasons = new Set<Reason>();

    /** The parts may hold elements with the class "way-back"; these stay open where a reason leaves the way back open. */
    constructor(private readonly parts: readonly HTMLElement[]) {
        for (const part of parts) {
            for (const type of ['click', 'keydown', 'beforeinput'] as const) part.addEventListener(type, (event) => this.filter(event), { capture: true });
        }
    }

    get isShut(): boolean { return this.reasons.size > 0; }

    shut(reason: Reason, wayBack: 'open' | 'shut'): void {
        this.reasons.add(reason);
        for (const part of this.parts) part.dataset['moving'] = wayBack;
    }

    open(reason: Reason): void {
        this.reasons.delete(reason);
        if (this.reasons.size > 0) return;
        for (const part of this.parts) delete part.dataset['moving'];
    }

    // The style sheet keeps pointers away; this is for the keyboard, and for assistive technology that presses without either.
    private filter(event: Event): void {
        if (this.reasons.size === 0 || (event instanceof KeyboardEvent && passing.includes(event.key))) return;
        const part = event.currentTarget as HTMLElement;
        if (part.dataset['moving'] === 'open' && (event.target as Element).closest('.way-back')) return;
        event.preventDefault();
        event.stopPropagation();
    }
}
