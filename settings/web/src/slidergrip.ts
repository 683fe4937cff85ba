// SPDX-License-Identifier: MIT
import { direction } from './motion';
import { fillSlider, release, restoreControl, take } from './style';

/** How near to the middle of the thumb a finger takes hold of it, in points. */
const reach = 22;

interface Grip { pointer: number; x: number; from: number; before: string }

const grips = new WeakMap<HTMLInputElement, Grip>();

/** The way that the middle of the thumb has, and where it stands on it, from the leading end of the track. */
function course(input: HTMLInputElement): { start: number; length: number; share: number } {
    const box = input.getBoundingClientRect();
    const thumb = Number.parseFloat(getComputedStyle(input).getPropertyValue('--thumb')) || 0;
    const [min, max] = [Number(input.min), Number(input.max)];
    return { start: (direction() === 1 ? box.left : box.right) + direction() * thumb / 2, length: Math.max(1, box.width - thumb), share: max > min ? (Number(input.value) - min) / (max - min) : 0 };
}

/**
 * A slider as fingers use it: only its thumb can be taken, and it comes along without a jump. The track is no more than ground: what
 * begins there, or turns out to be a scroll, moves nothing. The input itself gets no pointers, only keys. `held` tells whether a value of it is on its way, which then stays shown.
 */
export function sliderGrip(changed: (value: number) => void, held: () => boolean): Record<'down' | 'move' | 'up' | 'cancel', (event: PointerEvent) => void> {
    const inputOf = (event: PointerEvent): HTMLInputElement => (event.currentTarget as Element).querySelector('input') as HTMLInputElement;
    const gripOf = (event: PointerEvent): [HTMLInputElement, Grip | undefined] => {
        const input = inputOf(event);
        const grip = grips.get(input);
        return [input, grip?.pointer === event.pointerId ? grip : undefined];
    };
    return {
        down(event) {
            const input = inputOf(event);
            if (event.button !== 0 || !event.isPrimary || grips.has(input) || input.disabled) return;
            const { start, length, share } = course(input);
            if (Math.abs(event.clientX - (start + direction() * share * length)) > reach) return;
            // A mouse would select text on its way. A finger may still scroll.
            if (event.pointerType === 'mouse') event.preventDefault();
            grips.set(input, { pointer: event.pointerId, x: event.clientX, from: share, before: input.value });
            take(input);
            input.focus({ preventScroll: true });
            (event.currentTarget as Element).setPointerCapture(event.pointerId);
        },
        move(event) {
            const [input, grip] = gripOf(event);
            if (!grip) return;
            const share = Math.min(1, Math.max(0, grip.from + (event.clientX - grip.x) * direction() / course(input).length));
            const [min, max] = [Number(input.min), Number(input.max)];
            if (event.clientX !== grip.x || input.value !== grip.before) input.value = String(min + share * (max - min));
            fillSlider(input);
        },
        up(event) {
            const [input, grip] = gripOf(event);
            if (!grip) return;
            grips.delete(input);
            release(input);
            if (input.value !== grip.before) changed(Number(input.value));
            else if (!held()) restoreControl(input);
        },
        // The browser has taken the finger for a scroll.
        cancel(event) {
            const [input, grip] = gripOf(event);
            if (!grip) return;
            grips.delete(input);
            release(input);
            input.value = grip.before;
            fillSlider(input);
            if (!held()) restoreControl(input);
        },
    };
}
