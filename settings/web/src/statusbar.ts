// SPDX-License-Identifier: MIT
import { html, nothing, render } from 'lit-html';
import { battery, signal, wifi } from './icons';
import type { Device } from './protocol';

const minute = 60_000;

/** This machine's local time as a count of milliseconds in which a day always has 24 hours, as a text without a time zone is read. */
function localNow(): number {
    const now = new Date();
    return now.getTime() - now.getTimezoneOffset() * minute;
}

/**
 * The phone's status bar. The state tells the time once; a clock that runs is then kept by this machine's own, so that a phone
 * that nobody touches sends nothing.
 */
export class StatusBar {
    readonly element = document.createElement('div');
    private device: Device | null = null;
    /** By how much the phone's clock is ahead of this machine's. */
    private ahead = 0;
    private timer = 0;

    constructor() {
        this.element.className = 'status-bar';
        // A page in the background is not woken by each minute; it is right again when it is looked at.
        document.addEventListener('visibilitychange', () => { if (!document.hidden) this.draw(); });
        this.draw();
    }

    show(device: Device): void {
        this.device = device;
        if (device.clockRuns) {
            // Told in whole seconds, and somewhat later here: a phone on this very machine has the same time.
            const ahead = Date.parse(`${device.clock}Z`) + 500 - localNow();
            this.ahead = Math.abs(ahead) < 2000 ? 0 : Math.ceil(ahead / 1000 - 0.5) * 1000;
        }
        this.draw();
    }

    private now(device: Device): number {
        return device.clockRuns ? localNow() + this.ahead : Date.parse(`${device.clock}Z`);
    }

    private draw(): void {
        window.clearTimeout(this.timer);
        const { device } = this;
        const now = device ? this.now(device) : Number.NaN;
        render(html`
            <span class="status-side">${signal()}${device?.wifi ? html`<span role="img" aria-label="Wi-Fi">${wifi()}</span>` : nothing}</span>
            ${device && Number.isFinite(now) ? html`<time class="clock" dir="auto">${timeOfDay(now, device.language)}</time>` : nothing}
            <span class="status-side trailing">${battery()}</span>`, this.element);
        if (device?.clockRuns && Number.isFinite(now)) this.timer = window.setTimeout(() => this.draw(), minute - (now % minute));
    }
}

const timeOfDay = (time: number, language: string): string =>
    new Intl.DateTimeFormat(language, { timeStyle: 'short', timeZone: 'UTC' }).format(time);
