// SPDX-License-Identifier: MIT
import { html, nothing, type TemplateResult } from 'lit-html';
import { check } from './icons';
import type { Pane, Tones } from './protocol';
import type { View } from './view';

/** The two times of the active hours, and the wheel that moves one of them. */
export const paneTemplate = (pane: Pane, wheel: HTMLElement, view: View): TemplateResult => html`
    <section class="group pane">
        <ul class="rows" role="list">
            ${pane.rows.map((text, at) => html`<li class="row"><button class="cell centred ${at === pane.selected ? 'selected' : ''}" type="button" aria-pressed=${at === pane.tag}
                @click=${() => view.act({ do: 'pickTimeRow', row: at })}><span class="words"><span class="title" dir="auto">${text}</span></span></button></li>`)}
        </ul>
        ${wheel}
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
