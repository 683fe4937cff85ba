// SPDX-License-Identifier: MIT
import { html, nothing, type TemplateResult } from 'lit-html';
import { switchStyles } from './colour';
import { stencil } from './icons';
import type { Row } from './protocol';
import { controlValue, fillSlider, styles } from './style';
import type { View } from './view';

const isOn = (value: unknown): boolean => value === true || (typeof value === 'number' && value !== 0);
const amount = (value: unknown, fallback: number): number => (typeof value === 'number' && Number.isFinite(value) ? value : fallback);

/** The words by which a row is known to assistive technology. */
export const rowLabel = (row: Row): string => row.text ?? row.name ?? row.identifier ?? '';

export const switchControl = (row: Row, view: View): TemplateResult => html`
    <input class="switch" type="checkbox" role="switch" aria-label=${rowLabel(row)}
        ${styles(switchStyles(row.onTint, view.scale))}
        ${controlValue(isOn(row.value ?? row.properties['default']), view.held(row))}
        @change=${(event: Event) => view.set(row, (event.target as HTMLInputElement).checked)}>`;

export function sliderControl(row: Row, view: View): TemplateResult {
    const min = amount(row.properties['min'], 0);
    const max = amount(row.properties['max'], 1);
    const value = amount(row.value ?? row.properties['default'], min);
    const share = max > min ? (value - min) / (max - min) : 0;
    const left = row.properties['leftImage'];
    const right = row.properties['rightImage'];
    return html`
        <span class="slider-line">
            ${typeof left === 'string' ? stencil(left) : nothing}
            <input class="slider" type="range" step="any" aria-label=${rowLabel(row)} min=${min} max=${max}
                aria-valuetext=${new Intl.NumberFormat(view.language, { style: 'percent' }).format(share)}
                ${controlValue(String(value), view.held(row))}
                @pointerdown=${(event: Event) => hold(event)} @pointerup=${(event: Event) => release(event)} @pointercancel=${(event: Event) => release(event)}
                @input=${(event: Event) => fillSlider(event.target as HTMLInputElement)}
                @change=${(event: Event) => {
                    release(event);
                    view.set(row, Number((event.target as HTMLInputElement).value));
                }}>
            ${typeof right === 'string' ? stencil(right) : nothing}
        </span>`;
}

export function textControl(row: Row, view: View): TemplateResult {
    const placeholder = row.properties['placeholder'];
    const plain = row.properties['noAutoCorrect'] === true || row.properties['noAutoCorrect'] === 1;
    const caps = row.properties['autoCaps'];
    const commit = (event: Event): void => {
        const field = event.target as HTMLInputElement;
        // What is presented over the screen has taken the focus, and will give it back; until then nothing could be sent.
        if (field.closest('[inert]')) return;
        release(event);
        if (field.value !== field.dataset['committed']) view.set(row, field.value);
    };
    const key = (event: KeyboardEvent): void => {
        const field = event.target as HTMLInputElement;
        // An input method takes the return key for itself while it composes.
        if (event.isComposing) return;
        if (event.key === 'Escape') {
            field.value = field.dataset['committed'] ?? '';
            // Spent on the field; the sheet that the field is on stays.
            event.preventDefault();
        }
        if (event.key === 'Enter' || event.key === 'Escape') field.blur();
    };
    return html`
        <input class="field" type="text" dir="auto" autocomplete="off" enterkeyhint="done" aria-label=${rowLabel(row)}
            placeholder=${typeof placeholder === 'string' ? placeholder : ''}
            autocapitalize=${typeof caps === 'string' ? caps : 'sentences'} autocorrect=${plain ? 'off' : 'on'} spellcheck=${plain ? 'false' : 'true'}
            ${controlValue(typeof row.value === 'string' ? row.value : '', view.held(row))}
            @focus=${hold} @blur=${commit} @keydown=${key}>`;
}

// A control in use is left alone by whatever arrives meanwhile.
function hold(event: Event): void { (event.target as HTMLElement).dataset['busy'] = ''; }
function release(event: Event): void { delete (event.target as HTMLElement).dataset['busy']; }
