// SPDX-License-Identifier: MIT
import { html, nothing, render } from 'lit-html';
import type { View } from './view';

interface Loss { label: string; text: string }

/**
 * Texts that the user typed where they can be kept no longer: the field is gone, with its row or its screen. They stay in sight,
 * to be copied, until the user puts them away.
 */
export class Unsaved {
    readonly element = document.createElement('div');
    private losses: readonly Loss[] = [];

    /** `putAway` is told when the user has closed the message, which takes the focus with it. */
    constructor(private readonly view: View, private readonly putAway: () => void) {
        this.element.className = 'unsaved';
        this.element.setAttribute('role', 'alert');
    }

    tell(label: string, text: string): void {
        if (text === '' || this.losses.some((loss) => loss.label === label && loss.text === text)) return;
        this.losses = [...this.losses, { label, text }];
        this.draw();
    }

    /** To be called when the language may have changed. */
    draw(): void {
        const { texts } = this.view;
        const [before, after] = texts.notSaved.split('{text}') as [string, string];
        render(this.losses.length === 0 ? nothing : html`
            <div class="unsaved-card">
                ${this.losses.map((loss) => html`<div class="unsaved-loss"><p class="unsaved-label" dir="auto">${loss.label}</p><p class="unsaved-text">${before}<bdi>${loss.text}</bdi>${after}</p></div>`)}
                <button class="choice" type="button" @click=${() => this.close()}>${texts.ok}</button>
            </div>`, this.element);
    }

    private close(): void {
        this.losses = [];
        this.draw();
        this.putAway();
    }
}
