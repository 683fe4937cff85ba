// SPDX-License-Identifier: MIT
import { html, nothing, type TemplateResult } from 'lit-html';
import { textColour, themeColour } from './colour';
import { rowLabel, sliderControl, switchControl, textControl } from './controls';
import { check, chevron, info, minus } from './icons';
import { imageUrl } from './images';
import { visibleName } from './names';
import type { Colour, Label, Row } from './protocol';
import { deviceWidth } from './shape';
import { styles } from './style';
import type { ListUse, View } from './view';

const cellKind = { titleValue: 4, slider: 5, toggle: 6, staticText: 7, editText: 8, button: 13 } as const;
const accessory = { disclosure: 1, detailDisclosure: 2, checkmark: 3, detail: 4 } as const;
const chevronKinds: readonly number[] = [1, 2];

type Contents = TemplateResult | typeof nothing;

/** Where a row stands in its section, for a list of which only a part is in the document. */
export interface Place { position: number; size: number; first: boolean; last: boolean; gapBefore: number }

export function rowTemplate(row: Row, place: Place | null, use: ListUse, view: View): TemplateResult {
    const name = use.nameOf(row);
    const deletable = row.editingStyle === 1;
    const editing = use.editing && deletable;
    const open = deletable && use.uncovered === name;
    const label = rowLabel(row, view);
    return html`
        <li class="row ${place?.first ? 'first' : ''} ${place?.last ? 'last' : ''} ${editing ? 'editing' : ''}" data-name=${name} data-index=${row.index}
            ?data-deletable=${deletable} ?data-open=${open}
            aria-posinset=${place ? place.position : nothing} aria-setsize=${place ? place.size : nothing}
            ${styles({ '--row-height': `${row.height / 16}rem`, 'margin-top': place && place.gapBefore > 0 ? `${place.gapBefore}px` : null })}>
            ${editing ? html`<button class="minus" type="button" aria-expanded=${open} aria-label="${view.texts.delete}: ${label}"
                @click=${() => use.uncover(open ? null : name)}>${minus()}</button>` : nothing}
            ${cell(row, use, view, deletable)}
            ${deletable ? html`<button class="delete" type="button" aria-label="${view.texts.delete}: ${label}" tabindex=${open ? 0 : -1} aria-hidden=${open ? nothing : 'true'}
                @click=${() => use.remove(row)}><span class="delete-word">${view.texts.delete}</span></button>` : nothing}
        </li>`;
}

/** A row that has not arrived yet. */
export const placeholderRow = (index: number, gapBefore: number, name: string, view: View): TemplateResult => html`
    <li class="row" data-name=${name} data-index=${index} ${styles({ '--row-height': '2.75rem', 'margin-top': gapBefore > 0 ? `${gapBefore}px` : null })}>
        <div class="cell" aria-busy="true"><span class="skeleton"></span><span class="unseen">${view.texts.loading}</span></div>
    </li>`;

function cell(row: Row, use: ListUse, view: View, deletable: boolean): TemplateResult {
    const tap = (event: Event): void => {
        // A tap beside an uncovered delete button only covers it again, as on the phone.
        if (use.uncovered !== null) use.uncover(null);
        else use.tap(row, event);
    };
    const keys = (event: KeyboardEvent): void => {
        if (!deletable || (event.key !== 'Delete' && event.key !== 'Backspace')) return;
        event.preventDefault();
        use.remove(row);
    };
    const shape = cellShape(row);
    // The body of a control's row is a button beside the control: what a tap on the one does is nothing to the other.
    if (hasControl(row)) return html`<div class="cell ${shape}">${contents(row, view, row.tappable ? tap : null)}</div>`;
    if (!row.tappable) return html`<div class="cell ${shape}" @click=${deletable ? () => use.uncover(null) : nothing}>${contents(row, view)}</div>`;
    return html`<button class="cell ${shape}" type="button" aria-keyshortcuts=${deletable ? 'Delete' : nothing} @click=${tap} @keydown=${keys}>${contents(row, view)}</button>`;
}

const hasControl = (row: Row): boolean => row.kind === cellKind.slider || row.kind === cellKind.toggle || row.kind === cellKind.editText;

function cellShape(row: Row): string {
    const middle = (frame: Row['titleFrame']): number => (frame ? frame[1] + frame[3] / 2 : 0);
    const stacked = row.kind === cellKind.slider && row.titleFrame !== null && row.controlFrame !== null && middle(row.titleFrame) < middle(row.controlFrame);
    const destructive = row.properties['isDestructive'] === true || row.properties['isDestructive'] === 1;
    return [
        `kind-${row.kind}`,
        stacked ? 'stacked' : '',
        row.labels.length > 0 ? 'labelled' : '',
        row.kind === cellKind.button ? (destructive ? 'destructive' : 'action') : '',
        row.properties['iconImage'] ? 'with-icon' : '',
    ].filter(Boolean).join(' ');
}

/** What a row shows. With a `bodyTap`, the title is the button that the body of a control's row is. */
function contents(row: Row, view: View, bodyTap: ((event: Event) => void) | null = null): TemplateResult {
    const ground = themeColour('--row');
    const labelled = row.labels.length > 0;
    const title = row.text ?? (labelled ? null : row.name);
    const detail = row.detailText ?? (row.kind === cellKind.titleValue && typeof row.value === 'string' ? row.value : null);
    const bare = row.kind === cellKind.slider && row.titleFrame === null;
    return html`
        ${rowIcon(row, view)}
        ${title !== null && labelled ? html`<span class="unseen">${title}</span>` : nothing}
        ${labelled ? html`<span class="own-labels">${inReadingOrder(row.labels).map((label) => html`${ownLabel(label, row, ground)} `)}</span>` : nothing}
        <span class="words">
            ${bodyTap ? bodyButton(row, bodyTap, view) : title === null || bare || labelled ? nothing : html`<span class="title" dir="auto">${rowName(title, row, view)}</span>`}
            ${detail === null || detail === '' ? nothing : html`<span class="detail" dir="auto" ${styles({ color: textColour(row.detailTextColour, ground) })}>${visibleName(detail)}</span>`}
            ${bodyTap ? accessoryMark(row, ground, view) : nothing}
            ${control(row, view)}
        </span>
        ${bodyTap ? nothing : accessoryMark(row, ground, view)}`;
}

/** A row's name as it is drawn; where the user gave none, what stands for it. */
function rowName(title: string, row: Row, view: View): TemplateResult | string {
    if (title === '' && (row.tappable || hasControl(row))) return html`<span class="nameless">${view.texts.untitled}</span>`;
    return visibleName(title);
}

function bodyButton(row: Row, tap: (event: Event) => void, view: View): TemplateResult {
    const checked = row.accessory === accessory.checkmark;
    return html`<button class="title body" type="button" dir="auto" @click=${tap}>${rowName(row.text ?? row.name ?? row.identifier ?? '', row, view)}${checked ? html`<span class="unseen">${view.texts.selected}</span>` : nothing}</button>`;
}

function control(row: Row, view: View): Contents {
    switch (row.kind) {
        case cellKind.slider: return sliderControl(row, view);
        case cellKind.toggle: return switchControl(row, view);
        case cellKind.editText: return textControl(row, view);
        default: return nothing;
    }
}

function rowIcon(row: Row, view: View): Contents {
    const icon = row.properties['iconImage'];
    if (typeof icon === 'string') {
        const url = imageUrl(icon);
        return url === null ? html`<span class="row-icon"></span>` : html`<img class="row-icon" alt="" src=${url} srcset="${url} ${view.scale}x">`;
    }
    const swatch = (icon as { swatch?: Colour } | undefined)?.swatch;
    return typeof swatch === 'string' ? html`<span class="row-icon swatch" ${styles({ 'background-color': swatch })}></span>` : nothing;
}

function accessoryMark(row: Row, ground: ReturnType<typeof themeColour>, view: View): Contents {
    if (row.accessory === accessory.checkmark) {
        // The button of a control's row says so itself.
        const word = hasControl(row) && row.tappable ? nothing : html`<span class="unseen">${view.texts.selected}</span>`;
        return html`<span class="mark check" ${styles({ color: textColour(row.tint, ground) })}>${check()}${word}</span>`;
    }
    if (row.accessory === accessory.detail || row.accessory === accessory.detailDisclosure) return html`<span class="mark">${info()}</span>`;
    return row.accessory === accessory.disclosure || (row.accessory === 0 && chevronKinds.includes(row.kind) && opens(row)) ? html`<span class="mark">${chevron()}</span>` : nothing;
}

// A link row with a cell class of its own says by its accessory whether it leads anywhere.
const opens = (row: Row): boolean => row.tappable && (row.cellClass === null || row.labels.length > 0);

/** What lies this near to an edge of its row belongs to the edge, and keeps its distance at any width; what lies farther in has been given a share of the width. */
const marginWidth = 64;

/** A label that the cell has placed itself. One in the trailing half is placed from the trailing edge. */
function ownLabel(label: Label, row: Row, ground: ReturnType<typeof themeColour>): TemplateResult {
    const [x, y, width, height] = label.frame;
    const room = deviceWidth();
    const trailing = x >= room / 2;
    const distance = trailing ? Math.max(0, room - x - width) : x;
    const edge = distance <= marginWidth ? `${distance}px` : `${(100 * distance) / room}%`;
    const alone = row.labels.length === 1;
    return html`<span class="own-label ${alone ? 'alone' : ''} ${['', 'middle', 'end'][label.alignment] ?? ''}" ${styles({
        top: `${y / 16}rem`,
        '--label-width': alone ? null : `${width / 16}rem`,
        '--label-height': `${height / 16}rem`,
        '--edge': edge,
        'inset-inline-start': trailing ? null : edge,
        'inset-inline-end': trailing ? edge : null,
        color: textColour(label.colour ?? (alone ? row.tint : null), ground),
    })}><span class="own-text" dir="auto">${visibleName(label.text)}</span></span>`;
}

/** From top to bottom, and in a line from its start: the order in which the labels are read. */
const inReadingOrder = (labels: readonly Label[]): Label[] => [...labels].sort((one, other) => one.frame[1] - other.frame[1] || one.frame[0] - other.frame[0]);
