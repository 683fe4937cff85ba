// SPDX-License-Identifier: MIT
import { direction, presentShift } from './motion';
import { swallowClickOf } from './pullend';

const dragThreshold = 8;
/** The part of a row's width from which on letting go asks for the row's deletion. */
const fullPart = 0.6;

interface Drag { row: HTMLElement; cell: HTMLElement; button: HTMLElement; width: number; limit: number; x: number; y: number; pointer: number; active: boolean; offset: number }

export interface SwipeUse {
    /** Shows the delete button of one row, by the name of its element, and of no other; null of none. The button has that width. */
    uncover(name: string | null, width?: number): void;
    /** The row has been swiped so far that nothing else can be meant. */
    remove(name: string): void;
}

/** Lets rows of a list that can be deleted be swiped aside, by touch, pen or mouse. */
export function enableSwipe(list: HTMLElement, use: SwipeUse): void {
    let drag: Drag | null = null;

    const start = (event: PointerEvent): void => {
        const row = (event.target as Element).closest<HTMLElement>('.row[data-deletable]');
        if (event.button !== 0 || !event.isPrimary || !row || (event.target as Element).closest('.minus, .delete')) return;
        const cell = row.querySelector<HTMLElement>('.cell');
        const button = row.querySelector<HTMLElement>('.delete');
        if (!cell || !button) return;
        drag = { row, cell, button, width: naturalWidth(row, button), limit: row.offsetWidth * fullPart, x: event.clientX, y: event.clientY, pointer: event.pointerId, active: false, offset: 0 };
    };

    const begin = (event: PointerEvent, taken: Drag): void => {
        taken.active = true;
        // From where the row is drawn now: it may still be on its way from the last swipe.
        taken.offset = Math.max(0, -presentShift(taken.cell) * direction());
        taken.x = event.clientX + taken.offset * direction();
        list.setPointerCapture(event.pointerId);
        // Another row's button goes as soon as this one's comes.
        if (taken.row.dataset['open'] === undefined) use.uncover(null);
        taken.row.classList.add('swiping');
    };

    const move = (event: PointerEvent): void => {
        if (!drag || event.pointerId !== drag.pointer) return;
        // Counted towards the leading edge, whichever side that is.
        const along = (drag.x - event.clientX) * direction();
        if (!drag.active) {
            if (Math.abs(event.clientY - drag.y) > dragThreshold) { drag = null; return; }
            if (Math.abs(along) < dragThreshold) return;
            begin(event, drag);
        } else {
            drag.offset = Math.min(drag.row.offsetWidth, Math.max(0, along));
        }
        drag.row.classList.toggle('full', drag.offset >= drag.limit);
        drag.cell.style.setProperty('transform', `translateX(${-drag.offset * direction()}px)`);
        // The button stretches with the finger.
        drag.button.style.setProperty('width', `${Math.max(drag.width, drag.offset)}px`);
    };

    const end = (event: PointerEvent): void => {
        if (!drag || event.pointerId !== drag.pointer) return;
        const { row, cell, button, active, offset, width, limit } = drag;
        drag = null;
        if (!active) return;
        const released = event.type === 'pointerup';
        const name = row.dataset['name'] ?? null;
        use.uncover(released && offset > width / 2 ? name : null, width);
        row.classList.remove('swiping', 'full');
        cell.style.removeProperty('transform');
        button.style.removeProperty('width');
        if (released && offset >= limit && name !== null) use.remove(name);
        swallowClickOf(event.pointerId, list);
    };

    list.addEventListener('pointerdown', start);
    list.addEventListener('pointermove', move);
    list.addEventListener('pointerup', end);
    list.addEventListener('pointercancel', end);
    list.addEventListener('dragstart', (event) => event.preventDefault());
}

/** The width of a row's delete button where no finger stretches it. */
function naturalWidth(row: HTMLElement, button: HTMLElement): number {
    const open = row.dataset['open'] !== undefined && Number.parseFloat(row.style.getPropertyValue('--uncovered'));
    return open || button.offsetWidth;
}
