// SPDX-License-Identifier: MIT
import { animate, isMoving, settle } from './motion';

interface Seen { element: HTMLElement; box: DOMRect; opacity: number }

export type Layout = ReadonlyMap<string, Seen>;

/** The rows that are drawn, in their order, of a list of so many. */
export interface Drawn { rows: readonly { name: string; index: number }[]; count: number }

/** Which of the rows that `now` has and `then` had not have come into the list: of the others it was only not known that they were there. */
export function arrivals(then: Drawn, now: Drawn): Set<string> {
    const indexThen = new Map(then.rows.map((row) => [row.name, row.index]));
    const known = new Set(indexThen.values());
    const came = new Set<string>();
    let run: { name: string; index: number }[] = [];
    let before = -1;
    const end = (after: number): void => {
        // All that stood between the two neighbours was drawn: a row that was not among it was not there.
        for (let index = before + 1; index < after; index += 1) if (!known.has(index)) return;
        for (const row of run) came.add(row.name);
    };
    const first = now.rows[0];
    // Above the first row that is drawn there may be others.
    if (first && first.index > 0 && !indexThen.has(first.name)) before = Number.NEGATIVE_INFINITY;
    for (const row of now.rows) {
        const index = indexThen.get(row.name);
        if (index === undefined) {
            run.push(row);
            continue;
        }
        if (Number.isFinite(before)) end(index);
        run = [];
        before = index;
    }
    if (now.rows.at(-1)?.index === now.count - 1 && Number.isFinite(before)) end(then.count);
    return came;
}

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

export type Named = (name: string) => boolean;

/** Lets rows that `came` slide in, rows that `went` slide out, and the others glide from where they were; a motion that is under way goes on from what it shows. */
export function playChange(before: Layout, came: Named, went: Named, content: Element, ghosts: HTMLElement, viewport: DOMRect): void {
    const visible = (box: DOMRect): boolean => box.bottom > viewport.top && box.top < viewport.bottom;
    const present = [...named(content)];
    for (const element of present) settle(element);
    const after = new Map(present.map((element) => [element.dataset['name'] as string, seen(element)]));
    for (const [name, { element, box }] of after) {
        const old = before.get(name);
        if (!visible(box) && !(old && visible(old.box))) continue;
        if (!old) {
            if (came(name)) animate(element, [{ opacity: 0, transform: away }, { opacity: 1, transform: 'none' }], '--rows-time');
        } else if (Math.abs(old.box.top - box.top) > 0.5 || old.opacity < 1) {
            animate(element, [{ opacity: old.opacity, transform: `translateY(${old.box.top - box.top}px)` }, { opacity: 1, transform: 'none' }], '--rows-time');
        }
    }
    const origin = ghosts.getBoundingClientRect();
    for (const [name, { element, box, opacity }] of before) {
        if (after.has(name) || !went(name) || !visible(box)) continue;
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
