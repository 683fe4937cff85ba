// SPDX-License-Identifier: MIT
import { animate, isMoving, settle } from './motion';

interface Seen { element: HTMLElement; box: DOMRect; opacity: number }

export type Layout = ReadonlyMap<string, Seen>;

/** How far a row comes from and goes to: under the one above it. */
const away = 'translateY(-0.75rem)';

const named = (content: Element): NodeListOf<HTMLElement> => content.querySelectorAll<HTMLElement>('[data-name]');

const seen = (element: HTMLElement): Seen =>
    ({ element, box: element.getBoundingClientRect(), opacity: isMoving(element) ? Number(getComputedStyle(element).opacity) : 1 });

/** Where the rows, headers and footers are drawn now, running motion included. */
export function captureLayout(content: Element): Layout {
    const layout = new Map<string, Seen>();
    for (const element of named(content)) layout.set(element.dataset['name'] as string, seen(element));
    return layout;
}

/** Lets rows that came slide in, rows that went slide out, and the others glide from where they were; a motion that is under way goes on from what it shows. */
export function playChange(before: Layout, content: Element, ghosts: HTMLElement, viewport: DOMRect): void {
    const visible = (box: DOMRect): boolean => box.bottom > viewport.top && box.top < viewport.bottom;
    const present = [...named(content)];
    for (const element of present) settle(element);
    const after = new Map(present.map((element) => [element.dataset['name'] as string, seen(element)]));
    for (const [name, { element, box }] of after) {
        const old = before.get(name);
        if (!visible(box) && !(old && visible(old.box))) continue;
        if (!old) {
            animate(element, [{ opacity: 0, transform: away }, { opacity: 1, transform: 'none' }], '--rows-time');
        } else if (Math.abs(old.box.top - box.top) > 0.5 || old.opacity < 1) {
            animate(element, [{ opacity: old.opacity, transform: `translateY(${old.box.top - box.top}px)` }, { opacity: 1, transform: 'none' }], '--rows-time');
        }
    }
    const origin = ghosts.getBoundingClientRect();
    for (const [name, { element, box, opacity }] of before) {
        if (after.has(name) || !visible(box)) continue;
        const ghost = element.cloneNode(true) as HTMLElement;
        for (const attribute of ['data-name', 'data-index', 'data-after', 'data-open']) ghost.removeAttribute(attribute);
        ghost.classList.add('ghost');
        Object.assign(ghost.style, {
            top: `${box.top - origin.top}px`, left: `${box.left - origin.left}px`, width: `${box.width}px`, height: `${box.height}px`, margin: '0',
        });
        ghosts.append(ghost);
        animate(ghost, [{ opacity, transform: 'none' }, { opacity: 0, transform: away }], '--rows-time', () => ghost.remove());
    }
}
