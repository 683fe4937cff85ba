// SPDX-License-Identifier: MIT
import type { Bag, Command } from '../protocol';
import { readScript } from './commandline';
import { refusalOf, type Link } from './link';

export type StepState = 'waiting' | 'running' | 'done' | 'failed';
export interface Step { command: Command; state: StepState; error: string | null }

/** What belongs to one conversation only: numbers of screens are not the same in another, nor are windows of rows. */
const momentary: ReadonlySet<string> = new Set(['id', 'screen', 'presented', 'from', 'count', 'elsewhere', 'events']);

/** A command as it can be given again: a row is named by its place, which it has in another program too. */
export function lasting(command: Command): Command {
    const kept = Object.entries(command).filter(([field]) => !momentary.has(field) && !(field === 'key' && 'row' in command));
    return Object.fromEntries(kept) as Command;
}

/** Commands one after the other: recorded from what is done, or read from a file, and played back. */
export class Script {
    readonly steps: Step[] = [];
    isRecording = false;
    isPlaying = false;
    /** The step that is played next. */
    next = 0;

    /** `changed` follows each change; `played` is told each answer. */
    constructor(private readonly link: Link, private readonly changed: () => void, private readonly played: (command: Command, answer: Bag | null) => void) {
        link.listen({ sent: (command) => this.sent(command) });
    }

    get text(): string { return this.steps.map(({ command }) => `${JSON.stringify(command)}\n`).join(''); }

    /** Takes a file's commands in place of its own; what is wrong with the file, or null. */
    read(text: string): string | null {
        const read = readScript(text);
        if ('error' in read) return read.error;
        this.steps.splice(0, this.steps.length, ...read.commands.map((command) => ({ command, state: 'waiting' as const, error: null })));
        this.rewind();
        return null;
    }

    record(isRecording: boolean): void {
        this.isRecording = isRecording;
        this.changed();
    }

    clear(): void {
        this.steps.length = 0;
        this.rewind();
    }

    remove(at: number): void {
        this.steps.splice(at, 1);
        if (at < this.next) this.next -= 1;
        this.changed();
    }

    rewind(): void {
        this.next = 0;
        for (const step of this.steps) Object.assign(step, { state: 'waiting', error: null });
        this.changed();
    }

    stop(): void {
        this.isPlaying = false;
        this.changed();
    }

    /** Plays what is left, or one step of it, up to the first that is refused. After the last one it begins anew. */
    play(isWhole: boolean): void {
        if (this.isPlaying || this.steps.length === 0) return;
        if (this.next >= this.steps.length) this.rewind();
        this.isRecording = false;
        this.isPlaying = true;
        this.step(isWhole);
    }

    private step(goesOn: boolean): void {
        const step = this.steps[this.next];
        if (!step || !this.isPlaying) {
            this.stop();
            return;
        }
        step.state = 'running';
        step.error = null;
        const isSent = this.link.send(step.command, (answer) => {
            this.played(step.command, answer);
            step.error = refusalOf(answer);
            step.state = step.error === null ? 'done' : 'failed';
            if (step.error === null && this.steps.includes(step)) this.next = this.steps.indexOf(step) + 1;
            if (step.error === null && goesOn) this.step(true);
            else this.stop();
        });
        if (!isSent) {
            Object.assign(step, { state: 'failed', error: 'There is no connection.' });
            this.stop();
        }
        this.changed();
    }

    private sent(command: Command): void {
        if (!this.isRecording || this.isPlaying) return;
        this.steps.push({ command: lasting(command), state: 'waiting', error: null });
        this.changed();
    }
}
