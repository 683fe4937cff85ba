// SPDX-License-Identifier: MIT
import type { Texts } from './texts';
import { WheelColumn } from './wheelcolumn';

interface Time { hour: number; minute: number; half: number }

const hours = Array.from({ length: 12 }, (_unused, at) => String(at + 1));
const minutes = Array.from({ length: 60 }, (_unused, at) => String(at).padStart(2, '0'));
// As the application spells them, whatever the language.
const halves = ['AM', 'PM'];
const midnight: Time = { hour: 12, minute: 0, half: 0 };

/** "5:00 PM" in its parts; null when it is no such time. */
export function parseTime(time: string | null): Time | null {
    const parts = /^(\d{1,2}):(\d{2})\s?([AP]M)$/i.exec(time ?? '');
    const [hour, minute] = [Number(parts?.[1]), Number(parts?.[2])];
    if (!parts || hour < 1 || hour > 12 || minute > 59) return null;
    return { hour, minute, half: parts[3]?.toUpperCase() === 'PM' ? 1 : 0 };
}

export const formatTime = ({ hour, minute, half }: Time): string => `${hour}:${minutes[minute]} ${halves[half]}`;

/** The phone's time wheel: hours, minutes, and the half of the day. It shows a time, and gives back the one that the user has moved it to. */
export class TimeWheel {
    readonly element = document.createElement('div');

    private readonly hour: WheelColumn;
    private readonly minute: WheelColumn;
    private readonly half: WheelColumn;
    private readonly columns: readonly WheelColumn[];
    private time: Time | null = null;
    private texts: Texts | null = null;
    /** The last time that was handed out, while the answer to it is outstanding. */
    private sent: string | null = null;
    private moved = false;
    private fresh = true;

    /** `pick` is given each new time once it rests; `held` says whether an answer to one is outstanding, which keeps the wheel where it is. */
    constructor(private readonly pick: (time: string) => void, private readonly held: () => boolean) {
        const use = { began: () => this.element.classList.remove('unset'), ended: (moved: boolean) => this.ended(moved) };
        this.hour = new WheelColumn('hours', hours, 1, true, use);
        this.minute = new WheelColumn('minutes', minutes, 0, true, use);
        this.half = new WheelColumn('halves', halves, 0, false, use);
        this.columns = [this.hour, this.minute, this.half];
        this.element.className = 'wheel';
        this.element.setAttribute('role', 'group');
        // In the order in which the time is written, which is the same in every language.
        this.element.dir = 'ltr';
        this.element.append(...this.columns.map((column) => column.element));
    }

    /** Shows a time of the state; `label` says which one it is. Columns that the user holds or has set in motion take it later. */
    show(time: string | null, label: string, texts: Texts): void {
        this.time = parseTime(time);
        this.texts = texts;
        this.element.setAttribute('aria-label', label);
        this.follow();
        this.fresh = false;
    }

    /** Ends what the user has set in motion at once, where it would have ended. */
    finish(): void { for (const column of this.columns) column.finish(); }

    /** To be called when the wheel leaves the document. */
    abandon(): void {
        this.moved = false;
        for (const column of this.columns) column.abandon();
    }

    private follow(): void {
        if (!this.held()) {
            this.sent = null;
            const { hour, minute, half } = this.time ?? midnight;
            const motion = this.fresh ? 'jump' : 'roll';
            this.hour.show(hour - 1, motion);
            this.minute.show(minute, motion);
            this.half.show(half, motion);
        }
        this.describe();
    }

    private describe(): void {
        const { texts } = this;
        if (!texts) return;
        const unset = this.time === null && this.sent === null && !this.columns.some((column) => column.inUse);
        this.element.classList.toggle('unset', unset);
        const label = [texts.hours, texts.minutes, texts.dayHalf];
        this.columns.forEach((column, at) => column.describe(label[at] ?? '', unset ? texts.none : null));
    }

    private ended(moved: boolean): void {
        this.moved ||= moved;
        // One time for a move of two columns at once.
        if (this.columns.some((column) => column.inUse)) return;
        const wasMoved = this.moved;
        this.moved = false;
        const picked = formatTime({ hour: this.hour.index + 1, minute: this.minute.index, half: this.half.index });
        const before = this.sent ?? (this.time && formatTime(this.time));
        if (!wasMoved || picked === before) {
            this.follow();
            return;
        }
        this.sent = picked;
        this.pick(picked);
    }
}
