// SPDX-License-Identifier: MIT
import { direction } from './motion';
import { swallowClickOf } from './pullend';

/** How near to the leading edge a finger comes down to take hold of the screen, in pixels. */
const reach = 20;
const dragThreshold = 8;
/** The part of the width from which on letting go means the way back. */
const enough = 0.5;
/** The same for a finger that is still going, in pixels a millisecond: backwards it gives up, however far it was. */
const flick = 0.3;
/** How far back in time its speed is looked for, in milliseconds. */
const recently = 80;

/** What follows a finger. */
export interface Pull {
    /** How far the finger has come, as a part of the width. */
    move(share: number): void;
    /** The finger has let go, or was taken away; told once. */
    end(isMeant: boolean): void;
}

interface Touch { pointer: number; x: number; y: number; target: Element; width: number; pull: Pull | null; trace: { x: number; time: number }[] }

/** Lets whatever `begin` gives be pulled from the leading edge of an element, by touch, pen or mouse. `begin` gives null where there is no way back. */
export function enableEdgeSwipe(part: HTMLElement, begin: () => Pull | null): void {
    let touch: Touch | null = null;

    const along = (event: PointerEvent, taken: Touch): number => (event.clientX - taken.x) * direction();

    const start = (event: PointerEvent): void => {
        if (touch?.pull || event.button !== 0 || !event.isPrimary) return;
        const box = part.getBoundingClientRect();
        const distance = direction() === 1 ? event.clientX - box.left : box.right - event.clientX;
        touch = distance < 0 || distance > reach ? null
            : { pointer: event.pointerId, x: event.clientX, y: event.clientY, target: event.target as Element, width: Math.max(1, box.width), pull: null, trace: [] };
    };

    const move = (event: PointerEvent): void => {
        if (!touch || event.pointerId !== touch.pointer) return;
        const way = along(event, touch);
        if (!touch.pull) {
            if (Math.abs(event.clientY - touch.y) > dragThreshold || way < -dragThreshold) touch = null;
            if (!touch || way < dragThreshold) return;
            touch.pull = begin();
            if (!touch.pull) {
                touch = null;
                return;
            }
            // Whatever else the finger has come down on, it is no longer on that.
            touch.target.dispatchEvent(new PointerEvent('pointercancel', { pointerId: touch.pointer, bubbles: true }));
            part.setPointerCapture(event.pointerId);
        }
        event.stopPropagation();
        touch.trace = [...touch.trace.filter((point) => event.timeStamp - point.time < recently), { x: way, time: event.timeStamp }];
        touch.pull.move(Math.min(1, Math.max(0, way / touch.width)));
    };

    const end = (event: PointerEvent): void => {
        // One that this file itself has sent is not the finger's.
        if (!touch || event.pointerId !== touch.pointer || !event.isTrusted) return;
        const ended = touch;
        touch = null;
        if (!ended.pull) return;
        event.stopPropagation();
        const way = along(event, ended);
        const first = ended.trace.find((point) => event.timeStamp - point.time < recently);
        const speed = first && event.timeStamp > first.time ? (way - first.x) / (event.timeStamp - first.time) : 0;
        const isMeant = speed < -flick ? false : way > ended.width * enough || speed > flick;
        ended.pull.end(event.type === 'pointerup' && isMeant);
        swallowClickOf(event.pointerId, part);
    };

    part.addEventListener('pointerdown', start, { capture: true });
    part.addEventListener('pointermove', move, { capture: true });
    part.addEventListener('pointerup', end, { capture: true });
    part.addEventListener('pointercancel', end, { capture: true });
}
