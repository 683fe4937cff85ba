// SPDX-License-Identifier: MIT
import { bagOf } from './bags';
import type { Difference, Differences } from './differences';
import { element } from './tab';

const none: Differences = new Map();

/** How many parts of one list or object are made at a time. */
const pageful = 200;

const shortened = (text: string, length: number): string => (text.length > length ? `${text.slice(0, length - 1)}…` : text);

/** A value in one line of at most so many characters. */
export const summary = (value: unknown, length: number): string => shortened(JSON.stringify(value) ?? '', length);

function span(className: string, text: string): HTMLSpanElement {
    const made = element(className, 'span');
    made.textContent = text;
    return made;
}

function leaf(value: unknown): HTMLSpanElement {
    const kind = value === null ? 'null' : typeof value;
    const made = span(`json-${kind}`, typeof value === 'string' ? JSON.stringify(value) : String(value));
    // A text in a script of the other direction keeps to itself.
    if (kind === 'string') made.dir = 'auto';
    return made;
}

/** A value as a tree that folds. What is folded or unfolded by hand stays so when another value is shown in its place. */
export class JsonTree {
    readonly element = element('json');
    private readonly opened = new Map<string, boolean>();
    private marks: Differences = none;

    /** What lies deeper than `depth` is folded at first. */
    constructor(private readonly depth = 1) {}

    /** Shows a value; what differs from what was shown before is marked, and unfolded. */
    show(value: unknown, name: string | null = null, marks: Differences = none): void {
        this.marks = marks;
        this.element.replaceChildren(this.part(value, name, '', 0));
    }

    private part(value: unknown, name: string | null, path: string, level: number): HTMLElement {
        const entries = Array.isArray(value) ? value.map((each, at) => [String(at), each] as const) : bagOf(value) ? Object.entries(value as object) : null;
        const gone = [...this.marks].filter(([each, { kind }]) => kind === 'removed' && each.startsWith(`${path}/−`) && !each.slice(path.length + 2).includes('/'));
        const mark = this.marks.get(path);
        if (!entries || entries.length + gone.length === 0) return this.leafLine(name, value, entries, mark);
        const branch = element('json-branch', 'details');
        const head = document.createElement('summary');
        if (mark) head.classList.add(`json-${mark.kind}`);
        if (name !== null) head.append(span('json-name', name), span('json-colon', ': '));
        head.append(span('json-summary', summary(value, 100)), span('json-count', String(entries.length)));
        const inside = element('json-inside');
        branch.append(head, inside);
        const fill = (): void => {
            if (inside.childElementCount > 0) return;
            this.fill(inside, entries, path, level, 0);
            for (const [each, { before }] of gone) inside.append(this.leafLine(each.slice(path.length + 2), before, null, { kind: 'removed', before }));
        };
        const holdsMark = [...this.marks.keys()].some((each) => each.startsWith(`${path}/`));
        if (holdsMark || (this.opened.get(path) ?? level < this.depth)) {
            branch.open = true;
            fill();
        }
        head.addEventListener('click', () => this.opened.set(path, !branch.open));
        branch.addEventListener('toggle', () => { if (branch.open) fill(); });
        return branch;
    }

    private fill(inside: HTMLElement, entries: readonly (readonly [string, unknown])[], path: string, level: number, from: number): void {
        const shown = entries.slice(from, from + pageful);
        inside.append(...shown.map(([key, each]) => this.part(each, key, `${path}/${key}`, level + 1)));
        const left = entries.length - from - shown.length;
        if (left === 0) return;
        const more = element('wb-button', 'button');
        more.type = 'button';
        more.textContent = `${Math.min(left, pageful)} of ${left} more`;
        more.addEventListener('click', () => {
            more.remove();
            this.fill(inside, entries, path, level, from + pageful);
        });
        inside.append(more);
    }

    private leafLine(name: string | null, value: unknown, entries: readonly unknown[] | null, mark: Difference | undefined): HTMLElement {
        const line = element(`json-leaf ${mark ? `json-${mark.kind}` : ''}`);
        if (name !== null) line.append(span('json-name', name), span('json-colon', ': '));
        if (mark?.kind === 'changed') line.append(span('json-was', summary(mark.before, 60)), span('json-arrow', ' → '));
        line.append(entries || (typeof value === 'object' && value !== null) ? span('json-brackets', summary(value, 200)) : leaf(value));
        return line;
    }
}
