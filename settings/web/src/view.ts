// SPDX-License-Identifier: MIT
import type { Command, Row, Screen } from './protocol';
import type { Texts } from './texts';

/** What templates need to know beside what they draw, and the way back for what the user does. */
export interface View {
    readonly texts: Texts;
    readonly language: string;
    readonly scale: number;
    /** Sends a command with the window of rows in use; the id that its answer will carry, or null while nothing can be sent. */
    act(command: Command): number | null;
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
    /** Tells the user about a text of his that cannot be kept where it was typed; `label` is the field's. */
    unsaved(label: string, text: string): void;
}

/** What the user has done to the list of one page that is no one else's business. */
export interface ListUse {
    readonly screen: Screen;
    /** Whether the rows show how they can be edited. */
    readonly editing: boolean;
    /** The element name of the row whose delete button is uncovered. */
    readonly uncovered: string | null;
    /** The name under which the list keeps a row's element: a row has it for life, so that its element, its focus and its running animation stay. */
    nameOf(row: Row): string;
    uncover(name: string | null): void;
    /** Sends a row's tap; the row is highlighted until it is answered, and while the screen that it opens lies above. */
    tap(row: Row, event: Event): void;
    /** Asks for a row to be deleted. */
    remove(row: Row): void;
}
