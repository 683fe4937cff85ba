// SPDX-License-Identifier: MIT
import type { Beside } from '../beside';
import type { Connection, Status } from '../connection';
import type { Bag, Command } from '../protocol';
import { firstWindow, type Window } from '../rowstore';
import { bagOf, numberOf, textOf } from './bags';

/** A state as it came, and what of it everybody asks for. */
export interface Shot { source: Bag; revision: number; screen: Bag; screenId: number; count: number; rows: readonly Bag[] }

/** Who sends a command. */
export type Sender = 'phone' | 'workbench';

/** What the workbench is told; a tab listens to what it needs. */
export interface LinkListener {
    /** A state has arrived; `pushed` is one that no command of the workbench's has asked for. */
    shot?(shot: Shot, pushed: boolean): void;
    /** A command that does something goes to the application; never one that only looks. */
    sent?(command: Command, sender: Sender, id: number): void;
    events?(events: readonly Bag[], dropped: number): void;
    /** The connection is there, or it is not. */
    linked?(isLinked: boolean): void;
    /** There is another connection, and another application may answer on it. */
    restarted?(): void;
}

/** Commands that look and change nothing. */
const looks: ReadonlySet<string> = new Set(['state', 'find', 'files', 'moment', 'moments']);

export function shotOf(source: Bag): Shot | null {
    const screen = bagOf(source['screen']);
    if (!screen) return null;
    const rows = Array.isArray(screen['rows']) ? screen['rows'].map(bagOf).filter((row): row is Bag => row !== null && typeof row['index'] === 'number') : [];
    return { source, revision: numberOf(source['revision'], 0), screen, screenId: numberOf(screen['id'], -1), count: numberOf(screen['count'], rows.length), rows };
}

/**
 * The workbench's own connection. Rows that are pushed are those last asked for on a connection, so the table here looks at other
 * rows than the phone without disturbing it.
 */
export class Link {
    /** The newest state; null before the first one. */
    shot: Shot | null = null;
    isLinked = false;
    private readonly connection: Connection;
    private readonly listeners: LinkListener[] = [];
    private readonly answers = new Map<number, (answer: Bag | null) => void>();
    private window: Window = firstWindow;

    constructor(beside: Beside) {
        this.connection = beside.connect({
            opened: () => this.opened(),
            statusChanged: (status) => this.statusChanged(status),
            received: ({ id, source }) => this.received(id, source),
        });
        beside.onSent((command, id) => this.tellSent(command, 'phone', id));
    }

    open(): void { this.connection.open(); }

    listen(listener: LinkListener): void { this.listeners.push(listener); }

    /**
     * Sends a command with the window of rows that is looked at, unless it has one of its own. `answered` follows once, with null when
     * no answer will come; false, and no answer, when nothing could be sent.
     */
    send(command: Command, answered: (answer: Bag | null) => void = () => {}): boolean {
        const id = this.connection.send({ ...this.window, elsewhere: firstWindow, ...command });
        if (id === null) return false;
        this.answers.set(id, answered);
        this.tellSent(command, 'workbench', id);
        return true;
    }

    /** Asks for rows, and to be pushed these from now on. */
    look(window: Window, answered: (answer: Bag | null) => void = () => {}): boolean {
        this.window = window;
        return this.send({ do: 'state' }, answered);
    }

    private tellSent(command: Command, sender: Sender, id: number): void {
        if (!looks.has(command.do)) for (const listener of this.listeners) listener.sent?.(command, sender, id);
    }

    private opened(): void {
        this.shot = null;
        this.window = firstWindow;
        for (const listener of this.listeners) listener.restarted?.();
        // The framework's calls too. An application that does not know these refuses, and tells the state and other events all the same.
        this.send({ do: 'state', events: 'all' });
    }

    private statusChanged(status: Status): void {
        const isThere = status === 'open' || status === 'silent';
        // One that is renewed is there again before anybody has read that it is not.
        const isLinked = isThere || (status === 'renewing' && this.isLinked);
        if (!isThere) {
            const unanswered = [...this.answers.values()];
            this.answers.clear();
            for (const answered of unanswered) answered(null);
        }
        if (isLinked === this.isLinked) return;
        this.isLinked = isLinked;
        for (const listener of this.listeners) listener.linked?.(isLinked);
    }

    private received(id: number | null, source: Bag): void {
        const state = bagOf(source['state']);
        const shot = state && shotOf(state);
        // An answer that was overtaken by a newer state tells its events, and of the state nothing new.
        if (shot && (!this.shot || shot.revision >= this.shot.revision)) {
            this.shot = shot;
            for (const listener of this.listeners) listener.shot?.(shot, id === null);
        }
        const events = Array.isArray(state?.['events']) ? state['events'].map(bagOf).filter((event): event is Bag => event !== null) : [];
        const dropped = numberOf(state?.['droppedEvents'], 0);
        if (events.length > 0 || dropped > 0) for (const listener of this.listeners) listener.events?.(events, dropped);
        const answered = id === null ? undefined : this.answers.get(id);
        if (answered === undefined) return;
        this.answers.delete(id!);
        answered(source);
    }
}

/** Why a command was refused, in words; null when it was not. */
export function refusalOf(answer: Bag | null): string | null {
    if (!answer) return 'The connection was lost before the answer came.';
    return answer['ok'] === false ? (textOf(answer['error']) ?? 'It was refused.') : null;
}
