// SPDX-License-Identifier: MIT
// Reading objects of which the workbench knows only a part.
import type { Bag } from '../protocol';

export const bagOf = (value: unknown): Bag | null => (typeof value === 'object' && value !== null && !Array.isArray(value) ? (value as Bag) : null);
export const textOf = (value: unknown): string | null => (typeof value === 'string' ? value : null);
export const numberOf = (value: unknown, fallback: number): number => (typeof value === 'number' && Number.isFinite(value) ? value : fallback);

/** A value in a cell of a table: texts as they are, nothing for null, all else as JSON. */
export function cellText(value: unknown): string {
    if (value === null || value === undefined) return '';
    return typeof value === 'string' ? value : JSON.stringify(value);
}

/** Whether an object holds anything worth a cell. */
export const orNothing = (value: unknown): unknown => (bagOf(value) !== null && Object.keys(value as object).length === 0 ? null : value);
