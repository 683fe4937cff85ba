// SPDX-License-Identifier: MIT
import { currentShape } from './shape';

/** The distances, in pixels, of a popover from the edges of the screen, and from what its arrow points at. */
const margin = 12;
const gap = 14;
/** The arrow's tip keeps this far from the popover's corners. */
const cornerRoom = 28;

const clamp = (value: number, low: number, high: number): number => Math.max(low, Math.min(value, high));

/** What an arrow points at: the button in a bar, of a row the whole. Null for what is no place, as the title that has the focus on a new screen. */
function anchorOf(pressed: HTMLElement | null): Element | null {
    const target = pressed?.closest('.row') ?? pressed?.closest('button') ?? null;
    return target && target.getClientRects().length > 0 ? target : null;
}

/**
 * Places the sheet of a layer beside what was pressed for it, with an arrow to it, on a pad; elsewhere, and where there is
 * no room above or below, the style sheet places it.
 */
export function placePopover(layer: HTMLElement, pressed: HTMLElement | null): void {
    const sheet = layer.querySelector<HTMLElement>(':scope > .sheet');
    delete layer.dataset['arrow'];
    const anchor = currentShape() === 'pad' && sheet ? anchorOf(pressed) : null;
    if (!anchor || !sheet) return;
    const screen = layer.getBoundingClientRect();
    const box = anchor.getBoundingClientRect();
    // Not from getBoundingClientRect(): the sheet may be on its way in.
    const { offsetWidth: width, offsetHeight: height } = sheet;
    const middle = (Math.max(box.left, screen.left) + Math.min(box.right, screen.right)) / 2 - screen.left;
    const below = box.bottom - screen.top + gap;
    const above = box.top - screen.top - gap - height;
    const isBelow = below + height + margin <= screen.height;
    if (box.bottom < screen.top || box.top > screen.bottom || (!isBelow && above < margin)) return;
    const left = clamp(middle - width / 2, margin, Math.max(margin, screen.width - width - margin));
    layer.dataset['arrow'] = isBelow ? 'up' : 'down';
    sheet.style.setProperty('--popover-left', `${left}px`);
    sheet.style.setProperty('--popover-top', `${isBelow ? below : above}px`);
    sheet.style.setProperty('--arrow-left', `${clamp(middle - left, cornerRoom, width - cornerRoom)}px`);
}
