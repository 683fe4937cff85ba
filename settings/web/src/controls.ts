// SPDX-License-Identifier: MIT
import { html, nothing, type TemplateResult } from 'lit-html';
import { clearButton } from './clearbutton';
import { switchStyles } from './colour';
import { stencil } from './icons';
import { spokenName } from './names';
import type { Row } from './protocol';
import { sliderGrip } from './slidergrip';
import { controlValue, fillSlider, release, restoreControl, styles, take } from './style';
import type { View } from './view';

const isOn = (value: unknown): boolean => value === true || (typeof value === 'number' && value !== 0);
const amount = (value: unknown, fallback: number): number => (typeof value === 'number' && Number.isFinite(value) ? value : fallback);

/** The words by which a row is known to assistive technology; one whose title is empty is known as that. */
export function rowLabel(row: Row, view: View): string {
    const name = row.text ?? row.name;
    return name === '' ? view.texts.untitled : spokenName(name ?? row.identifier ?? '');
}

export const switchControl = (row: Row, view: View): TemplateResult => html`
    <input class="switch" type="checkbox" role="switch" aria-label=${rowLabel(row, view)}
        ${styles(switchStyles(row.onTint, view.scale))}
        ${controlValue(isOn(row.value ?? row.properties['default']), view.held(row))}
        @change=${(event: Event) => view.set(row, (event.target as HTMLInputElement).checked)}>`;

export function sliderControl(row: Row, view: View): TemplateResult {
    const min = amount(row.properties['min'], 0);
    const max = amount(row.properties['max'], 1);
    const value = amount(row.value ?? row.properties['default'], min);
    const grip = sliderGrip((moved) => view.set(row, moved), () => view.held(row));
    const left = row.properties['leftImage'];
    const right = row.properties['rightImage'];
    return html`
        <span class="slider-line">
            ${typeof left === 'string' ? stencil(left) : nothing}
            <span class="slider-ground" @pointerdown=${grip.down} @pointermove=${grip.move} @pointerup=${grip.up} @pointercancel=${grip.cancel}>
                <input class="slider" type="range" step="any" aria-label=${rowLabel(row, view)} min=${min} max=${max}
                    ${controlValue(String(value), view.held(row))}
                    @input=${(event: Event) => fillSlider(event.target as HTMLInputElement)}
                    @change=${(event: Event) => view.set(row, Number((event.target as HTMLInputElement).value))}>
            </span>
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
        release(field);
        // While a text is on its way, the one before it is a change as well.
        if (field.value !== field.dataset['committed'] || view.held(row)) view.set(row, field.value);
        else restoreControl(field);
    };
    const key = (event: KeyboardEvent): void => {
        const field = event.target as HTMLInputElement;
        // An input method takes the return key for itself while it composes.
        if (event.isComposing) return;
        if (event.key === 'Escape') {
            restoreControl(field);
            // Spent on the field; the sheet that the field is on stays.
            event.preventDefault();
        }
        if (event.key === 'Enter' || event.key === 'Escape') field.blur();
    };
    return html`
        <input class="field" type="text" dir="auto" autocomplete="off" enterkeyhint="done" aria-label=${rowLabel(row, view)}
            placeholder=${typeof placeholder === 'string' && placeholder !== '' ? placeholder : ' '}
            autocapitalize=${typeof caps === 'string' ? caps : 'sentences'} autocorrect=${plain ? 'off' : 'on'} spellcheck=${plain ? 'false' : 'true'}
            ${controlValue(typeof row.value === 'string' ? row.value : '', view.held(row))}
            @focus=${(event: Event) => take(event.target as HTMLElement)} @blur=${commit} @keydown=${key}>${clearButton(view)}`;
}
