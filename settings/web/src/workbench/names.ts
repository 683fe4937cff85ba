// SPDX-License-Identifier: MIT
import type { Link } from './link';
import { textOf } from './bags';

/** Kinds of events whose name is a notification's. */
const notifications: ReadonlySet<string> = new Set(['local', 'darwin', 'darwinReceived']);

/** The names of the notifications that have been seen so far, each once, in their order. */
export class Names {
    private readonly seen = new Map<string, string>();

    constructor(link: Link, private readonly changed: () => void = () => {}) {
        link.listen({ events: (events) => {
            const before = this.seen.size;
            for (const event of events) {
                const [kind, name] = [textOf(event['event']), textOf(event['name'])];
                if (kind !== null && name !== null && notifications.has(kind) && !this.seen.has(name)) this.seen.set(name, kind === 'local' ? 'local' : 'system-wide');
            }
            if (this.seen.size > before) this.changed();
        } });
    }

    get all(): string[] { return [...this.seen.keys()]; }

    /** How a name was first seen. */
    kindOf(name: string): string { return this.seen.get(name) ?? ''; }
}
