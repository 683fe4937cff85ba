// SPDX-License-Identifier: MIT
import { html, nothing, type TemplateResult } from 'lit-html';
import { repeat } from 'lit-html/directives/repeat.js';
import { fill, themeColour } from './colour';
import { spokenName, visibleName } from './names';
import { groupKind, type Row } from './protocol';
import { placeholderRow, rowTemplate, type Place } from './rows';
import type { RowStore } from './rowstore';
import { styles } from './style';
import type { ListUse, View } from './view';

/** A row to draw: what is known of it, and the empty room before it when rows between it and the last are not drawn. */
export interface Slot { index: number; gapBefore: number }

interface Entry { slot: Slot; row: Row | undefined }
interface Section { head: Entry | null; entries: Entry[] }

const headerCell = (row: Row): boolean => typeof row.properties['headerCellClass'] === 'string';
const word = (value: unknown): string | null => (typeof value === 'string' && value !== '' ? value : null);

function divide(slots: readonly Slot[], rows: RowStore): Section[] {
    const sections: Section[] = [];
    let section = Number.NaN;
    for (const slot of slots) {
        const row = rows.at(slot.index);
        const opensSection = row !== undefined && row.kind === groupKind && row.row === null;
        const current = sections.at(-1);
        if (!current || opensSection || (row !== undefined && !Number.isNaN(section) && row.section !== section)) {
            sections.push({ head: opensSection ? { slot, row } : null, entries: opensSection ? [] : [{ slot, row }] });
        } else {
            current.entries.push({ slot, row });
        }
        if (row) section = row.section;
    }
    return sections;
}

/** Whether a list that is in the document as a whole ends with a section that is nothing but a footer. */
export function endsWithNote(rows: RowStore): boolean {
    const last = rows.at(rows.count - 1);
    return rows.whole && last !== undefined && last.kind === groupKind && last.row === null && !last.name && !headerCell(last);
}

/**
 * The sections that hold the given rows, each with its header, its list and, where its end is drawn, its footer.
 * `inset` stands before the note that the list ends with.
 */
export function sectionsTemplate(slots: readonly Slot[], rows: RowStore, inset: TemplateResult | null, use: ListUse, view: View): TemplateResult {
    const sections: (Section | null)[] = divide(slots, rows);
    if (inset) sections.splice(-1, 0, null);
    const nameOf = (section: Section | null): string => {
        if (!section) return 'inset';
        const first = section.head?.row ?? section.entries[0]?.row;
        const group = first && rows.groupOf(first);
        return group ? use.nameOf(group) : `section-${first?.section ?? section.entries[0]?.slot.index}`;
    };
    return html`${repeat(sections, nameOf, (section) => (section ? sectionTemplate(section, nameOf(section), rows, use, view) : inset))}`;
}

function sectionTemplate(section: Section, name: string, rows: RowStore, use: ListUse, view: View): TemplateResult {
    const known = section.head?.row ?? section.entries.find((entry) => entry.row)?.row;
    const group = known && rows.groupOf(known);
    const lastRow = section.entries.at(-1)?.row ?? section.head?.row;
    // Rows ahead of the first group have no group row that could carry their footer.
    const footed = group ?? section.entries.find((entry) => entry.row && word(entry.row.properties['footerText']) !== null)?.row;
    const footer = footed && lastRow && rows.isLastOfSection(lastRow) ? word(footed.properties['footerText']) : null;
    const title = group?.name ?? null;
    const entryName = (entry: Entry): string => (entry.row ? use.nameOf(entry.row) : `waiting-${entry.slot.index}`);
    return html`
        <section class="group" aria-label=${title && !headerCell(group!) ? spokenName(title) : nothing}>
            ${section.head ? headTemplate(section.head, name, view) : nothing}
            ${section.entries.length === 0 ? nothing : html`<ul class="rows" role="list">
                ${repeat(section.entries, entryName, (entry) => entry.row
                    ? rowTemplate(entry.row, placeOf(entry, rows), use, view)
                    : placeholderRow(entry.slot.index, entry.slot.gapBefore, entryName(entry), view))}
            </ul>`}
            ${footer === null ? nothing : html`<p class="footer" dir="auto" data-name="${name}-footer" data-after=${lastRow!.index}>${footer}</p>`}
        </section>`;
}

function placeOf(entry: Entry, rows: RowStore): Place | null {
    const row = entry.row as Row;
    // A list that is in the document as a whole speaks for itself.
    if (rows.whole) return null;
    const size = rows.sectionSize(row);
    return { position: (row.row ?? 0) + 1, size, first: row.row === 0, last: rows.isLastOfSection(row), gapBefore: entry.slot.gapBefore };
}

function headTemplate(entry: Entry, name: string, view: View): TemplateResult {
    const row = entry.row as Row;
    const gap = styles({ 'margin-top': entry.slot.gapBefore > 0 ? `${entry.slot.gapBefore}px` : null });
    if (headerCell(row)) {
        const background = fill(row.background, themeColour('--page'), view.scale);
        return html`<div class="head product" data-name=${name} data-index=${row.index} ${gap}>
            <div class="product-card ${row.background ? 'filled' : ''}" ${styles(background)}>
                <h2 class="product-title" dir="auto">${word(row.properties['title']) ?? row.name}</h2>
                <p class="product-subtitle" dir="auto">${word(row.properties['subTitle'])}</p>
            </div>
        </div>`;
    }
    return html`<div class="head ${row.name ? '' : 'untitled'}" data-name=${name} data-index=${row.index} ${gap}>
        ${row.name ? html`<h2 class="header" dir="auto">${visibleName(row.name)}</h2>` : nothing}
    </div>`;
}
