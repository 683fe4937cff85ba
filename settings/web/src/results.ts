// SPDX-License-Identifier: MIT
import { html, type TemplateResult } from 'lit-html';
import { repeat } from 'lit-html/directives/repeat.js';
import type { Slot } from './groups';
import { visibleName } from './names';
import { rowTemplate } from './rows';
import type { FoundRows } from './search';
import { styles } from './style';
import type { ListUse, View } from './view';

/** The rows that a search has found, as one list; `slots` are places among them. */
export function resultsTemplate(slots: readonly Slot[], found: FoundRows, use: ListUse, view: View): TemplateResult {
    if (found.count === 0) return html`<p class="no-results">${view.texts.noResults}</p>`;
    const nameOf = (slot: Slot): string => {
        const row = found.rowAt(slot.index);
        return row ? use.nameOf(row) : `found-${slot.index}`;
    };
    return html`<section class="group results"><ul class="rows" role="list">${repeat(slots, nameOf, (slot) => {
        const row = found.rowAt(slot.index);
        const place = { position: slot.index + 1, size: found.count, first: slot.index === 0, last: slot.index === found.count - 1, gapBefore: slot.gapBefore };
        return row ? rowTemplate(row, place, use, view) : foundRow(slot, found, view);
    })}</ul></section>`;
}

/** A row of which only the name has arrived yet. */
function foundRow(slot: Slot, found: FoundRows, view: View): TemplateResult {
    const { index, name } = found.at(slot.index)!;
    return html`<li class="row ${slot.index === 0 ? 'first' : ''} ${slot.index === found.count - 1 ? 'last' : ''}" data-index=${index}
        aria-posinset=${slot.index + 1} aria-setsize=${found.count} ${styles({ '--row-height': '2.75rem', 'margin-top': slot.gapBefore > 0 ? `${slot.gapBefore}px` : null })}>
        <div class="cell" aria-busy="true"><span class="words"><span class="title" dir="auto">${visibleName(name)}</span></span><span class="unseen">${view.texts.loading}</span></div></li>`;
}
