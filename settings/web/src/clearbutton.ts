// SPDX-License-Identifier: MIT
import { html, type TemplateResult } from 'lit-html';
import { clearSign } from './icons';
import type { View } from './view';

/** The button that empties the text field before it, as long as the field is in use and holds something. The keyboard has its own ways to do that. */
export const clearButton = (view: View): TemplateResult => html`<button class="clear" type="button" tabindex="-1" aria-label=${view.texts.clearText}
    @mousedown=${keepFocus} @click=${clear}>${clearSign()}</button>`;

// The press must not take the focus, and with it a phone's keyboard, from the field.
function keepFocus(event: Event): void { event.preventDefault(); }

function clear(event: Event): void {
    const field = (event.currentTarget as Element).previousElementSibling as HTMLInputElement;
    field.value = '';
    field.dispatchEvent(new InputEvent('input', { bubbles: true, inputType: 'deleteContentBackward' }));
    field.focus({ preventScroll: true });
}
