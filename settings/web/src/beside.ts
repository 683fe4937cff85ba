// SPDX-License-Identifier: MIT
// What the page offers to whoever stands beside the phone. Nothing here is about any of them.
import type { Connection, ConnectionEvents } from './connection';
import type { Command } from './protocol';

export interface Beside {
    /** The phone in its window: a layer over its screens goes in here. */
    readonly phone: HTMLElement;
    /** Another connection to the application, by the same secret; not open yet. */
    connect(events: ConnectionEvents): Connection;
    /** Tells each command of the user's as it goes to the application, and the id that it goes by. */
    onSent(listener: (command: Command, id: number) => void): void;
    /** Tells once that nothing will come of the phone any more, at once where that is so already. */
    onEnded(listener: () => void): void;
    /** Where a row of the screen on top is drawn; null where it is not. */
    rowElement(key: string): HTMLElement | null;
    /** Draws the screen on top again, after something that it depends on beside the state has changed. */
    redraw(): void;
    /** The key of the row that an element of the phone belongs to; null for none. */
    keyAt(target: Element): string | null;
}

/** Whether the user is at something beside the phone: then the focus stays there, whatever the phone shows. */
export const isUserBeside = (): boolean => document.activeElement?.closest('[data-beside]') != null;
