// SPDX-License-Identifier: MIT
import { animate, settle } from './motion';

interface Seen { element: HTMLElement; box: DOMRect }

export type Layout = ReadonlyMap<string, Seen>;

const named = (content: Element): NodeListOf<HTMLElement> => content.querySelectorAll<HTMLElement>('[data-name]');

/** Where the rows, headers and footers are drawn now, running motion included. */
export function captureLayout(content: Element): Layout {
    const layout = new Map<string, Seen>();
    for (const element of named(content)) layout.set(element.dataset['name'] as string, { element, box: element.getBoundingClientRect() });
    return layout;
}

/** Lets rows that came fade in, rows that went fade out, and the others glide from where they were. */
export function playChange(before: Layout, content: Element, ghosts: HTMLElement, viewport: DOMRect): void {
    const visible = (box: DOMRect): boolean => box.bottom > viewport.top && box.top < viewport.bottom;
    const present = [...named(content)];
    for (const element of present) settle(element);
    const after = new Map(present.map((element) => [element.dataset['name'] as string, { element, box: element.getBoundingClientRect() }]));
    for (const [name, { element, box }] of after) {
        const old = before.get(name);
        if (!visible(box) && !(old && visible(old.box))) continue;
        if (!old) {
            animate(element, [{ opacity: 0, transform: 'translateY(-0.75rem)' }, { opacity: 1, transform: 'none' }], '--rows-time');
        } else if (Math.abs(old.box.top - box.top) > 0.5) {
            animate(element, [{ transform: `translateY(${old.box.top - box.top}px)` }, { transform: 'none' }], '--rows-time');
        }
    }
    const origin = ghosts.getBoundingClientRect();
    for (const [name, { element, box }] of before) {
        if (after.has(name) || !visible(box)) continue;
        const ghost = element.cloneNode(true) as HTMLElement;
        for (const attribute of ['data-name', 'data-index', 'data-after', 'data-open']) ghost.removeAttribute(attribute);
        ghost.classList.add('ghost');
        Object.assign(ghost.style, {
            top: `${box.top - origin.top}px`, left: `${box.left - origin.left}px`, width: `${box.width}px`, height: `${box.height}px`, margin: '0',
        });
        ghosts.append(ghost);
        animate(ghost, [{ opacity: 1 }, { opacity: 0 }], '--rows-time', () => ghost.remove());
    }
}
