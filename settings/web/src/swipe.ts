// SPDX-License-Identifier: MIT
import { direction } from './motion';

const dragThreshold = 8;

interface Drag { row: HTMLElement; cell: HTMLElement; width: number; from: number; x: number; y: number; active: boolean; offset: number }

/** Lets rows of a list that can be deleted be swiped aside, by touch, pen or mouse. */
export function enableSwipe(list: HTMLElement, uncover: (name: string | null) => void): void {
    let drag: Drag | null = null;

    const start = (event: PointerEvent): void => {
        const row = (event.target as Element).closest<HTMLElement>('.row[data-deletable]');
        if (event.button !== 0 || !event.isPrimary || !row || (event.target as Element).closest('.minus, .delete')) return;
        const cell = row.querySelector<HTMLElement>('.cell');
        const button = row.querySelector<HTMLElement>('.delete');
        if (!cell || !button) return;
        const width = button.offsetWidth;
        drag = { row, cell, width, from: row.dataset['open'] === undefined ? 0 : width, x: event.clientX, y: event.clientY, active: false, offset: 0 };
    };

    const move = (event: PointerEvent): void => {
        if (!drag) return;
        // Counted towards the leading edge, whichever side that is.
        const along = (drag.x - event.clientX) * direction();
        if (!drag.active) {
            if (Math.abs(event.clientY - drag.y) > dragThreshold) { drag = null; return; }
            if (Math.abs(along) < dragThreshold) return;
            drag.active = true;
            list.setPointerCapture(event.pointerId);
            drag.row.classList.add('swiping');
        }
        const beyond = drag.from + along;
        // Past the button the row follows ever more reluctantly.
        drag.offset = beyond <= drag.width ? Math.max(0, beyond) : drag.width + (beyond - drag.width) / 3;
        drag.cell.style.setProperty('transform', `translateX(${-drag.offset * direction()}px)`);
    };

    const end = (event: PointerEvent): void => {
        if (!drag) return;
        const { row, cell, active, offset, width } = drag;
        drag = null;
        if (!active) return;
        row.classList.remove('swiping');
        cell.style.removeProperty('transform');
        const open = event.type === 'pointerup' && offset > width / 2;
        row.style.setProperty('--uncovered', `${width}px`);
        uncover(open ? (row.dataset['name'] ?? null) : null);
        // The click that ends a drag is no tap. Without one the listener goes with the task.
        const swallow = (click: Event): void => { click.stopPropagation(); click.preventDefault(); };
        list.addEventListener('click', swallow, { capture: true, once: true });
        setTimeout(() => list.removeEventListener('click', swallow, { capture: true }), 0);
    };

    list.addEventListener('pointerdown', start);
    list.addEventListener('pointermove', move);
    list.addEventListener('pointerup', end);
    list.addEventListener('pointercancel', end);
    list.addEventListener('dragstart', (event) => event.preventDefault());
}
