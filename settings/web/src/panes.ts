// SPDX-License-Identifier: MIT
import { html, type TemplateResult } from 'lit-html';
import type { Pane } from './protocol';
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
