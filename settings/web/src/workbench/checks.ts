// SPDX-License-Identifier: MIT
// What can be seen to be wrong with a screen as it is drawn.
import { contrast, mix, type Rgb } from '../rgb';
import type { Box } from './layer';

/** Something on the phone that an overlay shows. `measure` is what is written at it, `isProblem` whether it counts as one. */
export interface Finding { element: Element; box: Box; name: string; measure: string; isProblem: boolean; kind: string }

export type Check = (phone: Element) => Finding[];

/** The smallest side of what a finger hits, in points. */
const touchSize = 44;
const readable = 4.5;

const pressable = 'button, input, textarea, select, a[href], [role="spinbutton"], [role="slider"]';
const focusable = `${pressable}, [tabindex]`;

/** What of the phone the user can reach now: not what lies beneath a sheet or leaves. */
function reachable(phone: Element, selector: string): Element[] {
    return [...phone.querySelectorAll(selector)].filter((element) => !element.closest('[inert], .unseen, .ghosts, .status-bar') && element.checkVisibility({ checkOpacity: true, checkVisibilityCSS: true }));
}

/** What of an element's box is not clipped away; null for nothing. */
function visibleBox(element: Element, phone: Element): Box | null {
    let { left, top, right, bottom } = element.getBoundingClientRect();
    for (let clip = element.parentElement; clip; clip = clip.parentElement) {
        if (getComputedStyle(clip).overflow !== 'visible') {
            const box = clip.getBoundingClientRect();
            [left, top, right, bottom] = [Math.max(left, box.left), Math.max(top, box.top), Math.min(right, box.right), Math.min(bottom, box.bottom)];
        }
        if (clip === phone) break;
    }
    return right - left > 1 && bottom - top > 1 ? { left, top, width: right - left, height: bottom - top } : null;
}

const ownText = (element: Element): string =>
    [...element.childNodes].filter((node) => node.nodeType === Node.TEXT_NODE).map((node) => node.textContent ?? '').join('').replace(/\s+/g, ' ').trim();

function nameOf(element: Element): string {
    const name = element.getAttribute('aria-label') ?? (element.textContent ?? '').replace(/\s+/g, ' ').trim();
    return name !== '' ? name : (element.closest('.row')?.textContent ?? '').replace(/\s+/g, ' ').trim() || element.localName;
}

function findings(elements: readonly Element[], phone: Element, tell: (element: Element, box: Box) => Omit<Finding, 'element' | 'box' | 'name'> | null): Finding[] {
    return elements.flatMap((element) => {
        const box = visibleBox(element, phone);
        const told = box && tell(element, box);
        return box && told ? [{ element, box, name: nameOf(element), ...told }] : [];
    });
}

const texts = (phone: Element): Element[] => reachable(phone, '*').filter((element) => ownText(element) !== '' && !element.closest('svg'));

/** The boxes of texts and of controls, with their sizes. */
export const frames: Check = (phone) => {
    const controls = reachable(phone, `${pressable}, img`);
    const size = ({ width, height }: DOMRect): string => `${Math.round(width)} × ${Math.round(height)}`;
    return [
        ...findings(texts(phone).filter((element) => !controls.includes(element)), phone, (element) => ({ measure: size(element.getBoundingClientRect()), isProblem: false, kind: 'label' })),
        ...findings(controls, phone, (element) => ({ measure: size(element.getBoundingClientRect()), isProblem: false, kind: 'control' })),
    ];
};

/** How far from its middle a press still falls on an element, to both sides of one direction. */
function reach(element: Element, x: number, y: number, across: boolean): number {
    const hits = (distance: number): boolean => {
        const hit = document.elementFromPoint(across ? x + distance : x, across ? y : y + distance);
        return hit !== null && (element.contains(hit) || hit.closest('label')?.control === element);
    };
    const side = (sign: number): number => {
        let distance = 0;
        while (distance < touchSize && hits(sign * (distance + 1))) distance += 1;
        return distance;
    };
    return hits(0) ? side(-1) + side(1) + 1 : 0;
}

/** What a finger has to hit and that is under 44 points in one direction, whatever it looks like. */
export const touchTargets: Check = (phone) => findings(reachable(phone, pressable).filter((element) => (element as HTMLElement).tabIndex >= 0), phone, (element, box) => {
    const whole = element.getBoundingClientRect();
    // Of what is scrolled away in part nothing can be said.
    if (box.width < whole.width - 1 || box.height < whole.height - 1) return null;
    const [x, y] = [box.left + box.width / 2, box.top + box.height / 2];
    const [width, height] = [reach(element, x, y, true), reach(element, x, y, false)];
    if (width === 0 || (width >= touchSize && height >= touchSize)) return null;
    return { measure: `${Math.min(width, Math.round(Math.max(whole.width, width)))} × ${height}`, isProblem: true, kind: 'problem' };
});

function colourOf(text: string): { rgb: Rgb; alpha: number } | null {
    const parts = /^rgba?\(([\d.]+),? ([\d.]+),? ([\d.]+)(?:,? ?\/? ?([\d.]+))?\)$/.exec(text);
    return parts ? { rgb: [Number(parts[1]), Number(parts[2]), Number(parts[3])], alpha: parts[4] === undefined ? 1 : Number(parts[4]) } : null;
}

/** The colour behind the middle of a box; null where there is a picture, or nothing solid. */
function groundBehind(element: Element, box: Box): Rgb | null {
    const stack = document.elementsFromPoint(box.left + box.width / 2, box.top + box.height / 2);
    const layers: { rgb: Rgb; alpha: number }[] = [];
    for (const each of stack) {
        if (element.contains(each) && each !== element) continue;
        const style = getComputedStyle(each);
        if (style.backgroundImage !== 'none' || each instanceof HTMLImageElement) return null;
        const colour = colourOf(style.backgroundColor);
        if (!colour || colour.alpha === 0) continue;
        layers.push(colour);
        if (colour.alpha === 1) return layers.reduceRight<Rgb>((ground, { rgb, alpha }) => mix(rgb, ground, alpha), colour.rgb);
    }
    return null;
}

/** How clearly an element is drawn, with all that it is in. */
function opacityOf(element: Element): number {
    let opacity = 1;
    for (let each: Element | null = element; each; each = each.parentElement) opacity *= Number(getComputedStyle(each).opacity);
    return opacity;
}

/** Texts with a contrast under 4.5 to what is behind them. Over a picture it cannot be told. */
export const contrasts: Check = (phone) => findings(texts(phone), phone, (element, box) => {
    const colour = colourOf(getComputedStyle(element).color);
    if (!colour) return null;
    const ground = groundBehind(element, box);
    if (!ground) return { measure: '?', isProblem: false, kind: 'unknown' };
    const ratio = contrast(mix(colour.rgb, ground, colour.alpha * opacityOf(element)), ground);
    return ratio >= readable ? null : { measure: (Math.floor(ratio * 100) / 100).toFixed(2), isProblem: true, kind: 'problem' };
});

/** Where the Tab key goes, in its order. */
export const focusOrder: Check = (phone) => {
    let place = 0;
    const stops = reachable(phone, focusable).filter((element) => (element as HTMLElement).tabIndex >= 0 && !(element as HTMLButtonElement).disabled);
    return stops.flatMap((element) => {
        place += 1;
        const box = visibleBox(element, phone);
        return box ? [{ element, box, name: nameOf(element), measure: String(place), isProblem: false, kind: 'stop' }] : [];
    });
};

/** Texts of which a part does not show. */
export const cutTexts: Check = (phone) => findings(texts(phone), phone, (element) => {
    for (let each: Element | null = element; each && each !== phone && !each.matches('.page, .row, .bar'); each = each.parentElement) {
        const { overflowX, overflowY } = getComputedStyle(each);
        const across = overflowX !== 'visible' && each.scrollWidth > each.clientWidth + 1;
        const down = (overflowY === 'hidden' || overflowY === 'clip') && each.scrollHeight > each.clientHeight + 1;
        if (across || down) return { measure: across ? `${each.scrollWidth - each.clientWidth} wider` : `${each.scrollHeight - each.clientHeight} higher`, isProblem: true, kind: 'problem' };
    }
    return null;
});
