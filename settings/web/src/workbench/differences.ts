// SPDX-License-Identifier: MIT
import { bagOf, textOf } from './bags';

/** What became of a part of a value. `before` is what stood there. */
export interface Difference { kind: 'added' | 'changed' | 'removed'; before: unknown }

/** By path: the keys on the way to a part, each with a slash before it. A part that is gone has the path that it had. */
export type Differences = ReadonlyMap<string, Difference>;

/** Records that are told apart by their identifiers, whatever their order. */
function identifiers(list: readonly unknown[]): string[] | null {
    const names = list.map((each) => textOf(bagOf(each)?.['identifier']));
    return names.length > 0 && names.every((name) => name !== null) && new Set(names).size === names.length ? (names as string[]) : null;
}

function compareLists(before: readonly unknown[], now: readonly unknown[], path: string, found: Map<string, Difference>): void {
    const [namesBefore, namesNow] = [identifiers(before), identifiers(now)];
    if (namesBefore && namesNow) {
        now.forEach((each, at) => {
            const place = namesBefore.indexOf(namesNow[at]!);
            if (place < 0) found.set(`${path}/${at}`, { kind: 'added', before: undefined });
            else compare(before[place], each, `${path}/${at}`, found);
        });
        before.forEach((each, at) => { if (!namesNow.includes(namesBefore[at]!)) found.set(`${path}/−${at}`, { kind: 'removed', before: each }); });
        return;
    }
    now.forEach((each, at) => {
        if (at < before.length) compare(before[at], each, `${path}/${at}`, found);
        else found.set(`${path}/${at}`, { kind: 'added', before: undefined });
    });
    for (let at = now.length; at < before.length; at += 1) found.set(`${path}/−${at}`, { kind: 'removed', before: before[at] });
}

function compare(before: unknown, now: unknown, path: string, found: Map<string, Difference>): void {
    if (Array.isArray(before) && Array.isArray(now)) {
        compareLists(before, now, path, found);
        return;
    }
    const [one, other] = [bagOf(before), bagOf(now)];
    if (!one || !other) {
        if (before !== now) found.set(path, { kind: 'changed', before });
        return;
    }
    for (const key of Object.keys(other)) {
        if (key in one) compare(one[key], other[key], `${path}/${key}`, found);
        else found.set(`${path}/${key}`, { kind: 'added', before: undefined });
    }
    for (const key of Object.keys(one)) if (!(key in other)) found.set(`${path}/−${key}`, { kind: 'removed', before: one[key] });
}

/** What is not the same in two values, each named by the outermost part that is wholly another. */
export function differences(before: unknown, now: unknown): Differences {
    const found = new Map<string, Difference>();
    compare(before, now, '', found);
    return found;
}
