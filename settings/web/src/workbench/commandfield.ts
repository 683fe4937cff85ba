// SPDX-License-Identifier: MIT
import { html, nothing, render } from 'lit-html';
import { complete, type Completion, type Known, type Offer } from './completion';
import { element } from './tab';

const memory = 'quietrix-settings-console';
const remembered = 100;

function rememberedLines(): string[] {
    try {
        const lines: unknown = JSON.parse(sessionStorage.getItem(memory) ?? '[]');
        return Array.isArray(lines) ? lines.filter((line): line is string => typeof line === 'string') : [];
    } catch {
        return [];
    }
}

/** The field for commands: what could come next is offered above it, and the lines before are a key away. */
export class CommandField {
    readonly element = element('wb-command');
    private readonly input = element('wb-field wb-command-line', 'input');
    private readonly offers = element('wb-offers');
    private readonly status = element('unseen');
    private completion: Completion = { from: 0, offers: [] };
    /** The offer that is chosen; -1 for none yet. */
    private chosen = -1;
    private readonly history = rememberedLines();
    /** Where in the history the field stands; its length for the line that is being written. */
    private at = this.history.length;
    private draft = '';

    constructor(private readonly run: (line: string) => void, private readonly known: Known) {
        const { input } = this;
        Object.assign(input, { type: 'text', spellcheck: false, autocomplete: 'off', placeholder: 'tap row=3' });
        input.setAttribute('autocapitalize', 'off');
        for (const [name, value] of [['role', 'combobox'], ['aria-label', 'Command'], ['aria-autocomplete', 'list'], ['aria-controls', 'wb-offers']] as const) input.setAttribute(name, value);
        this.offers.id = 'wb-offers';
        this.offers.setAttribute('role', 'listbox');
        this.offers.setAttribute('aria-label', 'Completions');
        this.status.setAttribute('role', 'status');
        this.element.append(this.offers, input, this.status);
        input.addEventListener('input', () => this.offer());
        input.addEventListener('keydown', (event) => this.key(event));
        input.addEventListener('blur', () => this.close());
        this.close();
    }

    /** Has assistive technology read out what came of a command. */
    say(text: string): void { this.status.textContent = text; }

    private get isOffering(): boolean { return this.completion.offers.length > 0; }

    private offer(): void {
        const { input } = this;
        const caret = input.selectionStart ?? input.value.length;
        this.completion = input.value.trim() === '' ? { from: 0, offers: [] } : complete(input.value, caret, this.known);
        this.chosen = -1;
        this.draw();
    }

    private close(): void {
        this.completion = { from: 0, offers: [] };
        this.chosen = -1;
        this.draw();
    }

    private draw(): void {
        const { input, offers, chosen } = this;
        offers.hidden = !this.isOffering;
        input.setAttribute('aria-expanded', String(this.isOffering));
        if (chosen < 0) input.removeAttribute('aria-activedescendant');
        else input.setAttribute('aria-activedescendant', `wb-offer-${chosen}`);
        render(this.completion.offers.map((offer, at) => html`<div class="wb-offer" role="option" id="wb-offer-${at}" aria-selected=${at === chosen}
            @pointerdown=${(event: Event) => { event.preventDefault(); this.accept(offer); }}><code>${offer.text}</code>${offer.note === '' ? nothing : html`<span class="wb-note" dir="auto">${offer.note}</span>`}</div>`), offers);
        offers.querySelector('[aria-selected="true"]')?.scrollIntoView({ block: 'nearest' });
    }

    private accept(offer: Offer): void {
        const { input } = this;
        const caret = input.selectionStart ?? input.value.length;
        // A word that is over is followed by the next one; a field's name by its value, at once.
        const isShort = !input.value.trimStart().startsWith('{');
        const text = isShort && !offer.text.endsWith('=') ? `${offer.text} ` : offer.text;
        input.setRangeText(text, this.completion.from, caret, 'end');
        this.offer();
    }

    private key(event: KeyboardEvent): void {
        if (event.isComposing || event.ctrlKey || event.altKey || event.metaKey) return;
        const { offers } = this.completion;
        const chosen = offers[this.chosen];
        const isPlain = !event.shiftKey;
        if (event.key === 'Enter' && !chosen) this.enter();
        else if (event.key === 'Enter' && chosen) this.accept(chosen);
        else if (event.key === 'Tab' && isPlain && this.isOffering) this.accept(chosen ?? offers[0]!);
        else if (event.key === 'Escape' && this.isOffering) this.close();
        else if (event.key === 'ArrowDown' && this.isOffering) this.choose(Math.min(this.chosen + 1, offers.length - 1));
        else if (event.key === 'ArrowUp' && chosen) this.choose(this.chosen - 1);
        else if (event.key === 'ArrowUp') this.recall(this.at - 1);
        else if (event.key === 'ArrowDown') this.recall(this.at + 1);
        else return;
        event.preventDefault();
    }

    private choose(place: number): void {
        this.chosen = place;
        this.draw();
    }

    private recall(place: number): void {
        if (place < 0 || place > this.history.length || place === this.at) return;
        if (this.at === this.history.length) this.draft = this.input.value;
        this.at = place;
        this.input.value = this.history[place] ?? this.draft;
        this.input.setSelectionRange(this.input.value.length, this.input.value.length);
        this.close();
    }

    private enter(): void {
        const line = this.input.value.trim();
        if (line === '') return;
        if (this.history.at(-1) !== line) this.history.push(line);
        this.history.splice(0, this.history.length - remembered);
        this.at = this.history.length;
        this.draft = '';
        try {
            sessionStorage.setItem(memory, JSON.stringify(this.history));
        } catch {
            // It is remembered until the page is left.
        }
        this.input.value = '';
        this.close();
        this.run(line);
    }
}
