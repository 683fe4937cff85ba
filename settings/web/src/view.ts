// SPDX-License-Identifier: MIT
import type { Command, Row, Screen } from './protocol';
import type { Texts } from './texts';

/** What templates need to know beside what they draw, and the way back for what the user does. */
export interface View {
    readonly texts: Texts;
    readonly language: string;
    readonly scale: number;
    /** Sends a command with the window of rows in use. */
    act(command: Command): void;
    /** Sends a control's new value, and keeps the control to the user until the answer is there. */
    set(row: Row, value: boolean | number | string): void;
    /** Sends the time that the wheel has been moved to. */
    pickTime(time: string): void;
    /** Sends the tone that has been chosen; null is none. */
    pickTone(identifier: string | null): void;
    /** Whether a tone is on its way. */
    readonly toneHeld: boolean;
    /** Has assistive technology read a text out when it is not busy; a later text takes its place. */
    announce(text: string): void;
    /** Whether a time is on its way. */
    readonly timeHeld: boolean;
    /** Whether a value of this row is on its way. */
    held(row: Row): boolean;
}

/** What the user has done to the list of one page that is no one else's business. */
export interface ListUse {
    readonly screen: Screen;
    /** The element name of the row whose delete button is uncovered. */
    readonly uncovered: string | null;
    nameOf(row: Row): string;
    uncover(name: string | null): void;
}
