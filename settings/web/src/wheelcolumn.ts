// SPDX-License-Identifier: MIT
import { milliseconds, type Duration } from './motion';

export interface ColumnUse {
    /** The user has begun to move the column. */
    began(): void;
    /** The user has let go of the column and it is at rest; `moved` is whether it was moved at all. */
    ended(moved: boolean): void;
}

interface Grip { id: number; y: number; from: number; on: number | null; dragging: boolean; trail: { time: number; y: number }[] }

const shownEachWay = 5;
const dragThreshold = 4;
/** What counts as the speed at the end of a drag, in milliseconds. */
const trailLength = 100;
/** A mouse wheel turns in notches at least this long; a touch pad reports shorter ways. */
const notch = 100;
/** Keys and notches that follow one another within this time are one move, in milliseconds. */
const pause = 400;
/** How long a second digit is waited for, in milliseconds. */
const typingPause = 1000;
/** The part of a row at which a column that rolls out has arrived. */
const arrived = 0.01;

const modulo = (value: number, by: number): number => ((value % by) + by) % by;

/** One column of a wheel. It belongs to the user from the first touch, key or turn until it rests again; nothing else moves it meanwhile. */
export class WheelColumn {
    readonly element = document.createElement('div');

    private readonly slots: HTMLElement[] = [];
    /** In rows. An endless column counts on beyond its ends. */
    private position = 0;
    private target = 0;
    private grip: Grip | null = null;
    private frame = 0;
    private timer = 0;
    private turned = 0;
    private typed = '';
    private moved = false;

    /** `first` is the number that assistive technology is given for the first value. */
    constructor(name: string, private readonly values: readonly string[], private readonly first: number, private readonly endless: boolean, private readonly use: ColumnUse) {
        const { element } = this;
        element.className = `wheel-column wheel-${name}`;
        element.tabIndex = 0;
        element.setAttribute('role', 'spinbutton');
        element.setAttribute('aria-valuemin', String(first));
        element.setAttribute('aria-valuemax', String(first + values.length - 1));
        for (let at = 0; at <= 2 * shownEachWay; at += 1) {
            const slot = document.createElement('span');
            slot.className = 'wheel-value';
            slot.setAttribute('aria-hidden', 'true');
            this.slots.push(slot);
        }
        element.append(...this.slots);
        element.addEventListener('pointerdown', (event) => this.press(event));
        element.addEventListener('pointermove', (event) => this.drag(event));
        for (const end of ['pointerup', 'pointercancel', 'lostpointercapture'] as const) element.addEventListener(end, (event) => this.letGo(event));
        element.addEventListener('wheel', (event) => this.turn(event), { passive: false });
        element.addEventListener('keydown', (event) => this.key(event));
        element.addEventListener('blur', () => {
            delete element.dataset['pressed'];
            this.finish();
        });
        this.draw();
    }

    get inUse(): boolean { return this.grip !== null || this.moved; }

    /** The place of the chosen value, also while the column still rolls towards it. */
    get index(): number { return modulo(this.target, this.values.length); }

    /** Puts the column on a value, unless it is in use. */
    show(index: number, motion: 'roll' | 'jump'): void {
        if (this.inUse || index === this.index) return;
        this.roll(this.nearest(index), motion === 'roll' ? '--wheel-roll' : null);
    }

    /** What assistive technology calls the column, and whether its value counts; `unset` stands in for one that does not. */
    describe(label: string, unset: string | null): void {
        this.say('label', label);
        this.say('valuenow', unset === null ? String(this.first + this.index) : null);
        this.say('valuetext', unset ?? this.values[this.index] ?? '');
    }

    // Only what is new: a value that is set again may be read out again.
    private say(property: 'label' | 'valuenow' | 'valuetext', value: string | null): void {
        const name = `aria-${property}`;
        if (this.element.getAttribute(name) === value) return;
        if (value === null) this.element.removeAttribute(name);
        else this.element.setAttribute(name, value);
    }

    /** Ends a move at once, where it would have ended. A finger that still holds the column keeps it. */
    finish(): void {
        if (!this.moved || this.grip) return;
        this.stop();
        this.place(this.target);
        this.rest();
    }

    /** Ends a move without telling anyone. */
    abandon(): void {
        this.grip = null;
        this.moved = false;
        this.stop();
        this.place(this.target);
    }

    private press(event: PointerEvent): void {
        if (event.button !== 0 || this.grip) return;
        // The focus tells by its going that the user has turned to something else.
        this.element.focus({ preventScroll: true });
        // It shows where the finger is already; the ring is for keys.
        this.element.dataset['pressed'] = '';
        event.preventDefault();
        const slot = (event.target as Element).closest<HTMLElement>('.wheel-value');
        const rolling = this.frame !== 0;
        this.stop();
        this.grip = { id: event.pointerId, y: event.clientY, from: this.position, on: rolling || !slot ? null : Number(slot.dataset['row']), dragging: false, trail: [] };
        // A finger that stops a rolling column chooses what is under the band then.
        if (rolling) this.take();
        this.element.setPointerCapture(event.pointerId);
        this.element.dataset['moving'] = '';
    }

    private drag(event: PointerEvent): void {
        const { grip } = this;
        if (!grip || event.pointerId !== grip.id) return;
        if (!grip.dragging) {
            if (Math.abs(event.clientY - grip.y) < dragThreshold) return;
            grip.dragging = true;
            grip.y = event.clientY;
            this.take();
        }
        grip.trail = [...grip.trail.filter((point) => event.timeStamp - point.time < trailLength), { time: event.timeStamp, y: event.clientY }];
        const position = grip.from + (grip.y - event.clientY) / this.rowHeight;
        const inside = this.clamp(position);
        // Past an end the column follows ever more reluctantly.
        this.place(inside + (position - inside) / 3);
        this.aim(Math.round(inside));
    }

    private letGo(event: PointerEvent): void {
        const { grip } = this;
        if (!grip || event.pointerId !== grip.id) return;
        this.grip = null;
        const released = event.type === 'pointerup';
        if (grip.dragging && released) {
            const recent = grip.trail.filter((point) => event.timeStamp - point.time < trailLength);
            const [oldest, newest] = [recent[0], recent.at(-1)];
            const speed = oldest && newest && newest.time > oldest.time ? (oldest.y - newest.y) / (newest.time - oldest.time) / this.rowHeight : 0;
            this.roll(this.clamp(Math.round(this.position + speed * milliseconds('--wheel-glide'))), '--wheel-glide');
        } else if (!grip.dragging && released && grip.on !== null && grip.on !== this.position) {
            this.take();
            this.roll(grip.on, '--wheel-roll');
        } else if (this.moved) {
            this.roll(this.clamp(Math.round(this.position)), '--wheel-roll');
        } else {
            this.rest();
        }
    }

    private turn(event: WheelEvent): void {
        if (event.ctrlKey || Math.abs(event.deltaX) > Math.abs(event.deltaY)) return;
        event.preventDefault();
        if (this.grip) return;
        const notched = event.deltaMode !== WheelEvent.DOM_DELTA_PIXEL || Math.abs(event.deltaY) >= notch;
        this.turned += notched ? Math.sign(event.deltaY) : event.deltaY / this.rowHeight;
        const rows = Math.trunc(this.turned);
        this.turned -= rows;
        if (rows !== 0) this.step(this.target + rows, pause);
    }

    private key(event: KeyboardEvent): void {
        delete this.element.dataset['pressed'];
        if (event.ctrlKey || event.metaKey || event.altKey || this.grip) return;
        const last = this.values.length - 1;
        const ways: Readonly<Record<string, () => number>> = {
            ArrowUp: () => this.target + 1, ArrowDown: () => this.target - 1,
            PageUp: () => this.target + 10, PageDown: () => this.target - 10,
            Home: () => this.nearest(0), End: () => this.nearest(last),
        };
        const way = ways[event.key];
        if (way) {
            event.preventDefault();
            this.typed = '';
            this.step(way(), pause);
        } else if (event.key === 'Enter') {
            this.finish();
        } else if (/^[\da-z]$/i.test(event.key)) {
            this.type(event.key.toUpperCase());
        }
    }

    private type(character: string): void {
        const digit = /\d/.test(character);
        const find = (text: string): number => this.values.findIndex((value) => (digit ? /^\d+$/.test(value) && Number(value) === Number(text) : value.startsWith(text)));
        const both = this.typed + character;
        // Two characters that are no value together begin anew with the second.
        this.typed = digit && this.typed.length === 1 && find(both) >= 0 ? both : character;
        const found = find(this.typed);
        const complete = !digit || this.typed.length === 2 || Number(this.typed) * 10 > this.first + this.values.length - 1;
        if (found >= 0) this.step(this.nearest(found), complete ? pause : typingPause);
        if (complete) this.typed = '';
    }

    /** One of several steps that may follow each other; they are one move until none has come for a while. */
    private step(to: number, wait: number): void {
        const target = this.clamp(to);
        if (target === this.target && !this.moved) return;
        this.take();
        window.clearTimeout(this.timer);
        this.timer = window.setTimeout(() => {
            this.timer = 0;
            this.typed = '';
            this.restIfStill();
        }, wait);
        this.roll(target, '--wheel-roll');
    }

    private take(): void {
        if (this.moved) return;
        this.moved = true;
        this.use.began();
    }

    /** Rolls out to a row, ever more slowly; `pace` is the time in which the way left falls to a third, null for at once. */
    private roll(to: number, pace: Duration | null): void {
        cancelAnimationFrame(this.frame);
        this.frame = 0;
        this.aim(to);
        const time = pace === null ? 0 : milliseconds(pace);
        const way = this.position - to;
        if (time === 0 || way === 0) {
            this.place(to);
            this.restIfStill();
            return;
        }
        const start = performance.now();
        const advance = (now: number): void => {
            const left = way * Math.exp(-Math.max(0, now - start) / time);
            const there = Math.abs(left) < arrived;
            this.frame = there ? 0 : requestAnimationFrame(advance);
            this.place(there ? to : to + left);
            if (there) this.restIfStill();
        };
        this.frame = requestAnimationFrame(advance);
        this.element.dataset['moving'] = '';
    }

    private restIfStill(): void {
        if (this.frame === 0 && this.timer === 0 && !this.grip) this.rest();
    }

    private rest(): void {
        delete this.element.dataset['moving'];
        // Counted from the start again, so that a long use loses no precision.
        this.target = this.index;
        this.place(this.target);
        const { moved } = this;
        this.moved = false;
        this.use.ended(moved);
    }

    private stop(): void {
        cancelAnimationFrame(this.frame);
        window.clearTimeout(this.timer);
        this.frame = this.timer = 0;
        this.turned = 0;
        this.typed = '';
        delete this.element.dataset['moving'];
    }

    private aim(target: number): void {
        if (target === this.target) return;
        this.target = target;
        this.say('valuenow', String(this.first + this.index));
        this.say('valuetext', this.values[this.index] ?? '');
    }

    private clamp(row: number): number { return this.endless ? row : Math.min(this.values.length - 1, Math.max(0, row)); }

    /** The row nearest to the present one that holds a value. */
    private nearest(index: number): number {
        if (!this.endless) return index;
        const size = this.values.length;
        const ahead = modulo(index - this.target, size);
        return this.target + (ahead > size / 2 ? ahead - size : ahead);
    }

    private get rowHeight(): number { return this.slots[0]?.offsetHeight || 1; }

    private place(position: number): void {
        this.position = position;
        this.draw();
    }

    private draw(): void {
        const middle = Math.round(this.position);
        for (let row = middle - shownEachWay; row <= middle + shownEachWay; row += 1) {
            // A row keeps its element while it passes, so that only the ones at the edges get another text.
            const slot = this.slots[modulo(row, this.slots.length)] as HTMLElement;
            const text = this.clamp(row) === row ? (this.values[modulo(row, this.values.length)] ?? '') : '';
            if (slot.textContent !== text) slot.textContent = text;
            slot.hidden = text === '';
            slot.dataset['row'] = String(row);
            slot.style.setProperty('--offset', String(row - this.position));
        }
    }
}
