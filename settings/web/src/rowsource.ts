// SPDX-License-Identifier: MIT
/** What is listed, by place. */
export interface RowSource {
    readonly count: number;
    /** Whether all of it is in the document. */
    readonly whole: boolean;
    /** The place of the row that has this index on the screen; -1 when it is not listed. */
    placeOf(index: number): number;
    heightAt(place: number): number | undefined;
    /** Whether so many rows from a place on have arrived. */
    covers(from: number, count: number): boolean;
}
