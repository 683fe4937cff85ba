// SPDX-License-Identifier: MIT

/**
 * What the page is in its window: a phone, a phone held sideways, or a pad. A pad in a window as narrow as a phone is used
 * like one.
 */
export type Shape = 'phone' | 'sideways' | 'pad';

/** The width in points for which each device lays out rows that place labels themselves. */
const deviceWidths: Readonly<Record<string, number>> = { phone: 390, pad: 768 };

const root = document.documentElement;

/** What a phone needs beside something else, its frame and the switches next to it included. */
export const roomBeside = 560;

/** What the window has room for when something beside the phone takes a part of its width. */
function queriesBeside(taken: number) {
    const wide = (width: number): string => `(min-width: ${width + taken}px)`;
    // Who has put something beside the phone looks at a phone, and not at a page that fills its window.
    const aroundPhone = wide(taken > 0 ? roomBeside : 700);
    // A width alone tells nothing: a phone that is held sideways is wider than many a window. It is low, though, and has no mouse.
    return {
        roomAroundPhone: matchMedia(`${aroundPhone} and (min-height: 600px), ${aroundPhone} and (min-height: 480px) and (pointer: fine)`),
        roomAroundPad: matchMedia(`(pointer: fine) and ${wide(1240)} and (min-height: 700px), (pointer: fine) and ${wide(960)} and (min-height: 1240px)`),
        roomForPad: matchMedia(`${wide(700)} and (min-height: 500px)`),
        low: matchMedia('(orientation: landscape) and (max-height: 499px)'),
    };
}

let queries = queriesBeside(0);

/** The width in points of the device that is shown. */
export const deviceWidth = (): number => deviceWidths[root.dataset['idiom'] ?? ''] ?? deviceWidths['phone']!;

export const currentShape = (): Shape => (root.dataset['shape'] as Shape | undefined) ?? 'phone';

/** Tells the style sheets (data-idiom, data-shape, data-enclosed) which device is shown, and whether the window has room to draw it in. */
export function showShape(idiom: string): void {
    const isPad = idiom === 'pad';
    const enclosed = isPad ? queries.roomAroundPad.matches : queries.roomAroundPhone.matches;
    const shape: Shape = isPad && queries.roomForPad.matches ? 'pad' : !enclosed && queries.low.matches ? 'sideways' : 'phone';
    root.dataset['idiom'] = idiom;
    root.dataset['shape'] = shape;
    root.toggleAttribute('data-enclosed', enclosed);
}

/** Keeps the shape that of the window from now on, first for a phone. */
export function followWindow(): void {
    for (const query of Object.values(queries)) query.addEventListener('change', follow);
    follow();
}

const follow = (): void => showShape(root.dataset['idiom'] ?? 'phone');

/** Leaves so many pixels of the window's width to something beside the phone. */
export function takeFromWindow(width: number): void {
    for (const query of Object.values(queries)) query.removeEventListener('change', follow);
    queries = queriesBeside(width);
    root.style.setProperty('--beside', `${width}px`);
    followWindow();
}
