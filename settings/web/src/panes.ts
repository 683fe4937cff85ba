// SPDX-License-Identifier: MIT
import { html, nothing, type TemplateResult } from 'lit-html';
import { check } from './icons';
import type { Pane, Tones } from './protocol';
import { controlValue } from './style';
import type { View } from './view';

/** "5:00 PM" as the 24-hour "17:00" of a time field; empty when it is no such time. */
export function toFieldTime(time: string | null): string {
    const parts = /^(\d{1,2}):(\d{2})\s?([AP]M)$/i.exec(time ?? '');
    if (!parts) return '';
    const hour = (Number(parts[1]) % 12) + (parts[3]?.toUpperCase() === 'PM' ? 12 : 0);
    return `${String(hour).padStart(2, '0')}:${parts[2]}`;
}

/** "17:00" as "5:00 PM"; null when the field is empty. */
export function fromFieldTime(time: string): string | null {
    const parts = /^(\d{2}):(\d{2})/.exec(time);
    if (!parts) return null;
    const hour = Number(parts[1]);
    return `${hour % 12 === 0 ? 12 : hour % 12}:${parts[2]} ${hour < 12 ? 'AM' : 'PM'}`;
}

/** The two times of the active hours, and the one that is being moved. */
export const paneTemplate = (pane: Pane, view: View): TemplateResult => html`
    <section class="group pane">
        <div class="head untitled"></div>
        <ul class="rows" role="list">
            ${pane.rows.map((text, at) => html`<li class="row"><button class="cell centred" type="button" aria-pressed=${at === pane.selected}
                @click=${() => view.act({ do: 'pickTimeRow', row: at })}><span class="words"><span class="title" dir="auto">${text}</span></span></button></li>`)}
        </ul>
        <div class="wheel">
            <input class="time" type="time" aria-label=${pane.rows[pane.selected] ?? ''} ${controlValue(toFieldTime(pane.time), false)}
                @change=${(event: Event) => {
                    const time = fromFieldTime((event.target as HTMLInputElement).value);
                    if (time !== null) view.act({ do: 'pickTime', time });
                }}>
        </div>
    </section>`;

/** The tones to choose from, the chosen one checked. */
export function tonesTemplate(tones: Tones, view: View): TemplateResult {
    const entry = (identifier: string | null, name: string): TemplateResult => html`
        <li class="row"><button class="cell" type="button" aria-pressed=${identifier === tones.selected} @click=${() => view.act({ do: 'pickTone', identifier })}>
            <span class="words"><span class="title" dir="auto">${name}</span></span>
            ${identifier === tones.selected ? html`<span class="mark check">${check()}</span>` : nothing}</button></li>`;
    return html`<section class="group tones"><div class="head untitled"></div><ul class="rows" role="list">
        ${tones.noneAtTop ? entry(null, view.texts.none) : nothing}
        ${tones.list.map((tone) => entry(tone.identifier, tone.name))}
    </ul></section>`;
}
