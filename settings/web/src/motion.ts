// SPDX-License-Identifier: MIT
// Durations and easing are custom properties of the style sheet, which under reduced motion sets those of rows to nothing and
// those of screens to a cross-fade's; some durations are the phone's own.

export type Duration = '--push-time' | '--sheet-time' | '--alert-time' | '--rows-time' | '--wheel-roll' | '--wheel-glide' | { seconds: number };

/** Where and how clearly an element is drawn. */
export interface Pose { transform: string; opacity: number }

/** Where everything stands that has arrived. */
export const inPlace: Pose = { transform: 'none', opacity: 1 };

/** The length of a motion that does not run by itself; any would do. */
const handTime = 1000;

const running = new WeakMap<Element, Animation>();

/** Whether the user has asked for less motion: then nothing changes its place, and screens fade into each other. */
export const motionIsReduced = (): boolean => matchMedia('(prefers-reduced-motion: reduce)').matches;

/** A duration as the style sheet has it now; seconds that the phone has asked for are none under reduced motion. */
export function milliseconds(duration: Duration): number {
    if (typeof duration === 'object') return motionIsReduced() ? 0 : duration.seconds * 1000;
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
        // Unless that has begun something else.
        if (running.get(element) === animation) settle(element);
    });
}

/** Where an element in motion is drawn at this moment; null for one that stands still. */
function presentPose(element: Element): Pose | null {
    if (!isMoving(element)) return null;
    const { transform, opacity } = getComputedStyle(element);
    return { transform, opacity: Number(opacity) };
}

/**
 * Moves an element to a pose: one that stands still from `from`, one in motion from where it is drawn, so that a motion that is turned
 * around does not jump. `done` follows only if nothing else takes its place.
 */
export function glide(element: Element, from: Pose, to: Pose, duration: Duration, done: () => void = () => {}): void {
    animate(element, [{ ...(presentPose(element) ?? from) }, { ...to }], duration, done);
}

/**
 * Lets an element be moved by hand from one pose to another, as far as the result is told, from 0 to 1. glide() goes on from where it
 * then is, and takes it out of the hand.
 */
export function hold(element: Element, from: Pose, to: Pose): (share: number) => void {
    settle(element);
    const animation = element.animate([{ ...from }, { ...to }], { duration: handTime, easing: 'linear', fill: 'both' });
    animation.pause();
    running.set(element, animation);
    return (share) => { if (running.get(element) === animation) animation.currentTime = share * handTime; };
}

/** Moves an element out of its place, where it stays until something else moves it. */
export function glideAway(element: Element, to: Pose, duration: Duration): void {
    glide(element, inPlace, to, duration, () => hold(element, inPlace, to)(1));
}

/** How far an element is drawn from its place sideways at this moment, whatever moves it. */
export const presentShift = (element: Element): number => new DOMMatrixReadOnly(getComputedStyle(element).transform).m41;
