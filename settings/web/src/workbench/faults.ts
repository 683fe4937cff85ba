// SPDX-License-Identifier: MIT
import { html, nothing, render } from 'lit-html';
import { live } from 'lit-html/directives/live.js';
import { numberOf } from './bags';
import { faultKinds } from './commands';
import { FormTab } from './formtab';
import type { Link } from './link';

type Kind = typeof faultKinds[number];

const words: Readonly<Record<Kind, string>> = {
    profilesUnreadable: 'The profiles file cannot be read',
    profilesCutShort: 'The profiles file ends too early',
    profilesLocked: 'Somebody else holds the profiles’ lock',
    diskFull: 'No file can be written: the disk is full',
    readOnly: 'No file can be written: the disk is read-only',
    slow: 'Each file operation takes so many milliseconds',
    calendarsSilent: 'The calendars do not answer',
    networksSilent: 'The networks do not answer',
    tonesSilent: 'The tones do not answer',
    mailFails: 'A mail cannot be sent',
};

/** Switches for what can go wrong on a phone. */
export class FaultsTab extends FormTab {
    private milliseconds = 200;

    constructor(link: Link) {
        super('Faults', link);
        link.listen({ shot: () => this.draw() });
        this.paint();
    }

    private get active(): ReadonlySet<unknown> {
        const faults = this.link.shot?.source['faults'];
        return new Set(Array.isArray(faults) ? faults : []);
    }

    private toggle(kind: Kind, isOn: boolean): void {
        const more = !isOn ? { on: false } : kind === 'slow' ? { milliseconds: this.milliseconds } : {};
        this.outcome.send({ do: 'fault', kind, ...more }, `${kind} is ${isOn ? 'on' : 'off'}.`);
        // What is shown is what the application says.
        this.draw();
    }

    protected paint(): void {
        const { active } = this;
        const slowness = numberOf(this.link.shot?.source['faultMilliseconds'], this.milliseconds);
        render(html`
            <section class="wb-card" aria-label="Faults">
                <ul class="wb-faults">${faultKinds.map((kind) => {
                    const isOn = active.has(kind);
                    return html`<li class=${isOn ? 'wb-active' : ''}><label class="wb-switch-line"><input type="checkbox" .checked=${live(isOn)} @change=${() => this.toggle(kind, !isOn)}>
                        <code>${kind}</code><span class="wb-note wb-space">${words[kind]}</span></label>
                        ${kind === 'slow' ? html`<input class="wb-field wb-number" type="number" min="1" max="60000" step="1" aria-label="Milliseconds of each file operation" .value=${String(isOn ? slowness : this.milliseconds)}
                            @change=${(event: Event) => {
                                this.milliseconds = Math.max(1, Math.min(60_000, Math.round(Number((event.target as HTMLInputElement).value)) || 1));
                                if (isOn) this.toggle('slow', true);
                                this.draw();
                            }}><span class="wb-note">ms</span>` : nothing}</li>`;
                })}</ul>
                <div class="wb-line-of-fields"><button class="wb-button" type="button" ?disabled=${active.size === 0} @click=${() => this.outcome.send({ do: 'fault', clear: true }, 'No faults any more.')}>Clear</button>
                    <span class="wb-note">${active.size === 0 ? 'None active' : `${active.size} active`}</span>${this.outcome.line()}</div>
            </section>`, this.element);
    }
}
