// SPDX-License-Identifier: MIT

/** How far a pointer may go, in points, and still press what it came down on. */
const slop = 8;

interface Press { control: HTMLElement | null; x: number; y: number }

const controlAt = (event: Event): HTMLElement | null => (event.target as Element).closest<HTMLElement>('button, input');

/**
 * Lets a press belong to what was under the pointer when it began. Rows that come or go meanwhile, because an earlier press has just been
 * answered, move others under the pointer before it is lifted: these are not pressed, and the one that was meant is.
 */
export function keepPresses(part: HTMLElement): void {
    let press: Press | null = null;
    part.addEventListener('pointerdown', (event) => {
        if (!event.isPrimary) return;
        press = { control: controlAt(event), x: event.clientX, y: event.clientY };
    }, { capture: true });
    part.addEventListener('click', (event) => {
        // Without a pointer it is a key's click, or another program's.
        if (!event.isTrusted || event.detail === 0 || !press) return;
        const { control, x, y } = press;
        press = null;
        if (controlAt(event) === control || Math.abs(event.clientX - x) >= slop || Math.abs(event.clientY - y) >= slop) return;
        event.preventDefault();
        event.stopPropagation();
        if (control?.isConnected) control.click();
    }, { capture: true });
}
