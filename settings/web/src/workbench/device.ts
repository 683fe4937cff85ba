// SPDX-License-Identifier: MIT
import { html, nothing, render, type TemplateResult } from 'lit-html';
import { live } from 'lit-html/directives/live.js';
import { bagOf, cellText, textOf } from './bags';
import { deviceKeys } from './commands';
import { FormTab } from './formtab';
import type { Link } from './link';

type Key = typeof deviceKeys[number];

/** How a key's value is entered: one of a few, as a text (with proposals), or as the clock. */
type Control = { kind: 'choice'; values: readonly string[] } | { kind: 'text'; proposals: readonly string[]; placeholder: string } | { kind: 'clock' };

const choice = (...values: string[]): Control => ({ kind: 'choice', values });
const text = (placeholder: string, ...proposals: string[]): Control => ({ kind: 'text', proposals, placeholder });
const yesOrNo = choice('true', 'false');

const controls: Readonly<Record<Key, Control>> = {
    systemVersion: text('11.4', '9.3', '10.3', '11.4', '12.1', '13.0'),
    idiom: choice('phone', 'pad'),
    scale: text('2.0', '1.0', '2.0', '3.0'),
    languages: text('en, or several with commas', 'en', 'de', 'fr', 'es', 'ar', 'ja', 'zh-Hans', 'de,en'),
    darkMode: yesOrNo,
    clock: { kind: 'clock' },
    statusBarLibrary: yesOrNo,
    toneController: text('PSUIToneController', 'PSUIToneController', 'SHSToneController', 'ToneController', 'none'),
    mailAccount: text('empty: no account'),
    twitterApp: yesOrNo,
    serialNumber: text(''),
    UDID: text(''),
    model: text(''),
    calendars: text('a directory'),
    networks: text('system, or a property-list file', 'system'),
    tones: text('system, or a directory', 'system'),
};

/** The start of the virtual clock that is proposed. */
const usualClock = '2026-11-20T09:00:00';

/** The device settings; what is filled in goes to the application as one command. */
export class DeviceTab extends FormTab {
    /** What is to be changed; a key that is not here stays as it is. */
    private readonly wanted = new Map<Key, string>();

    constructor(link: Link) {
        super('Device', link);
        link.listen({ shot: () => this.draw() });
        this.paint();
    }

    /** What the state tells of a key's present value; null for nothing. */
    private present(key: Key): string | null {
        const device = bagOf(this.link.shot?.source['device']);
        const value = device?.[key === 'languages' ? 'language' : key];
        if (value === undefined || value === null) return null;
        if (key === 'clock') return device?.['clockRuns'] === true ? 'system' : textOf(value);
        return cellText(value);
    }

    private want(key: Key, value: string | null): void {
        if (value === null) this.wanted.delete(key);
        else this.wanted.set(key, value);
        this.paint();
    }

    private usual(key: Key): string {
        const control = controls[key];
        const present = this.present(key);
        if (control.kind === 'choice') return present === null ? control.values[0]! : (control.values.find((value) => value !== present) ?? present);
        return present ?? '';
    }

    private apply(): void {
        const set = Object.fromEntries(this.wanted);
        const keys = [...this.wanted.keys()].join(', ');
        this.outcome.send({ do: 'device', set }, `Changed ${keys}.`, (answer) => {
            for (const [key, value] of Object.entries(set)) if (this.wanted.get(key as Key) === value) this.wanted.delete(key as Key);
            const ended = textOf(answer['pathEnded']);
            if (ended !== null) this.outcome.say(`Changed ${keys}. The way back to the screen ended: ${ended}`, true);
        });
    }

    protected paint(): void {
        render(html`
            <form class="wb-card" @submit=${(event: Event) => { event.preventDefault(); this.apply(); }}>
                <p class="wb-note">What is ticked is changed, all at once; the screens are opened anew along the same path.</p>
                <div class="wb-settings">${deviceKeys.map((key) => this.line(key))}</div>
                <div class="wb-line-of-fields wb-sticky"><button class="wb-button wb-primary" type="submit" ?disabled=${this.wanted.size === 0}>Apply</button>
                    <button class="wb-button" type="button" ?disabled=${this.wanted.size === 0} @click=${() => { this.wanted.clear(); this.paint(); }}>Undo</button>${this.outcome.line()}</div>
            </form>`, this.element);
    }

    private line(key: Key): TemplateResult {
        const isWanted = this.wanted.has(key);
        const present = this.present(key);
        return html`<div class="wb-setting ${isWanted ? 'wb-active' : ''}">
            <label class="wb-setting-name"><input type="checkbox" aria-label="Change ${key}" .checked=${live(isWanted)} @change=${(event: Event) => this.want(key, (event.target as HTMLInputElement).checked ? this.usual(key) : null)}><code>${key}</code></label>
            ${this.control(key)}<span class="wb-note wb-mono" title="As it is now">${present ?? ''}</span></div>`;
    }

    private control(key: Key): TemplateResult {
        const control = controls[key];
        const value = this.wanted.get(key);
        const typed = (event: Event): void => this.want(key, (event.target as HTMLInputElement | HTMLSelectElement).value);
        if (control.kind === 'choice') {
            return html`<select class="wb-field" aria-label=${key} @change=${(event: Event) => this.want(key, (event.target as HTMLSelectElement).value || null)}>
                <option value="" .selected=${value === undefined}>as it is</option>${control.values.map((each) => html`<option value=${each} .selected=${value === each}>${each}</option>`)}</select>`;
        }
        if (control.kind === 'clock') {
            const isVirtual = value !== undefined && value !== 'system';
            return html`<span class="wb-line-of-fields"><select class="wb-field" aria-label=${key} @change=${(event: Event) => {
                const chosen = (event.target as HTMLSelectElement).value;
                this.want(key, chosen === '' ? null : chosen === 'system' ? 'system' : usualClock);
            }}><option value="" .selected=${value === undefined}>as it is</option><option value="system" .selected=${value === 'system'}>system</option><option value="virtual" .selected=${isVirtual}>virtual, from</option></select>
            ${isVirtual ? html`<input class="wb-field" type="datetime-local" step="1" aria-label="Start of the virtual clock" .value=${value} @change=${(event: Event) => this.want(key, fullTime((event.target as HTMLInputElement).value))}>` : nothing}</span>`;
        }
        return html`<span class="wb-line-of-fields"><input class="wb-field wb-wide" type="text" aria-label=${key} placeholder=${control.placeholder} list=${control.proposals.length > 0 ? `wb-proposals-${key}` : nothing} spellcheck="false" autocomplete="off" autocapitalize="off"
            .value=${value ?? ''} @input=${typed}>${control.proposals.length > 0 ? html`<datalist id="wb-proposals-${key}">${[...new Set(control.proposals)].map((each) => html`<option value=${each}></option>`)}</datalist>` : nothing}</span>`;
    }
}

/** A browser leaves out seconds that are nought. */
const fullTime = (value: string): string => (value === '' ? usualClock : value.length === 16 ? `${value}:00` : value);
