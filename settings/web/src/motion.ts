// SPDX-License-Identifier: MIT
// Durations and easing are custom properties of the style sheet, which sets the durations to nothing under reduced motion;
// some durations are the phone's own.

export type Duration = '--push-time' | '--sheet-time' | '--alert-time' | '--rows-time' | '--wheel-roll' | '--wheel-glide' | { seconds: number };

const running = new WeakMap<Element, Animation>();

/** A duration as the style sheet has it now; seconds that the phone has asked for are none under reduced motion either. */
export function milliseconds(duration: Duration): number {
    if (typeof duration === 'object') return matchMedia('(prefers-reduced-motion: reduce)').matches ? 0 : duration.seconds * 1000;
    const value = getComputedStyle(document.documentElement).getPropertyValue(duration).trim();
    const time = Number.parseFloat(value);
    if (!Number.isFinite(time)) return 0;
    return value.endsWith('ms') ? time : time * 1000;
}

/** 1 where reading goes to the right, -1 where it goes to the left. */
export const direction = (): 1 | -1 => (document.documentElement.dir === 'rtl' ? -1 : 1);

/** Whether animate() moves an element at this moment. */
export const isMoving = (element: Element): boolean => running.has(element);

/** Ends what animate() has begun on an element; the element is at once where it belongs. */
export function settle(element: Element): void {
    running.get(element)?.cancel();
    running.delete(element);
}

/** Animates an element in place of whatever animate() has begun on it before; `done` follows only if nothing else takes its place. */
export function animate(element: Element, keyframes: Keyframe[], duration: Duration, done: () => void = () => {}): void {
    settle(element);
    const time = milliseconds(duration);
    if (time === 0) {
        done();
        return;
    }
    const easing = getComputedStyle(document.documentElement).getPropertyValue('--ease').trim() || 'ease';
    // Filled forwards, so that nothing flashes back between the last frame and the removal that `done` may bring.
    const animation = element.animate(keyframes, { duration: time, easing, fill: 'both' });
    running.set(element, animation);
    animation.addEventListener('finish', () => {
        if (running.get(element) !== animation) return;
        done();
        settle(element);
    });
}

/** Where an element is drawn at this moment, as a transform to start the next motion from. */
export const presentTransform = (element: Element): string => getComputedStyle(element).transform;
