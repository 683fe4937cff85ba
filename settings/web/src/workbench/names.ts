// SPDX-License-Identifier: MIT
import { textOf } from './bags';
import type { Link } from './link';

/** Kinds of events whose name is a notification's, and how it was posted. */
const kinds: Readonly<Record<string, string>> = { local: 'local', darwin: 'system-wide', darwinReceived: 'system-wide' };

/** The names of the notifications that have been seen so far, each once, in their order. */
export class Names {
    private readonly seen = new Map<string, Set<string>>();
    private readonly listeners: (() => void)[] = [];

    constructor(link: Link) {
        link.listen({ events: (events) => {
            let isNew = false;
            for (const event of events) {
                const kind = kinds[textOf(event['event']) ?? ''];
                const name = textOf(event['name']);
                if (kind === undefined || name === null) continue;
                const known = this.seen.get(name) ?? new Set();
                isNew ||= !known.has(kind);
                this.seen.set(name, known.add(kind));
            }
            if (isNew) for (const listener of this.listeners) listener();
        } });
    }

    /** Tells when there is another name. */
    listen(listener: () => void): void { this.listeners.push(listener); }

    get all(): string[] { return [...this.seen.keys()]; }

    /** How a name has been posted, in words. */
    kindOf(name: string): string { return [...(this.seen.get(name) ?? [])].sort().join(', '); }
}
