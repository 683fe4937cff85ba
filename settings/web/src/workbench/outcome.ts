// SPDX-License-Identifier: MIT
import { html, type TemplateResult } from 'lit-html';
import type { Bag, Command } from '../protocol';
import { bagOf, textOf } from './bags';
import { eventKind, eventText } from './eventtext';
import { refusalOf, type Link } from './link';

/** What became of the last command of a form: being done, done, or refused. */
export class Outcome {
    private text = '';
    private isBad = false;
    private events: readonly Bag[] = [];

    constructor(private readonly link: Link, private readonly changed: () => void) {}

    /** Sends a command; `what` says what is done when it was, and `done` follows then. */
    send(command: Command, what: string, done: (answer: Bag) => void = () => {}): void {
        this.tell('…', false, []);
        const isSent = this.link.send(command, (answer) => {
            const refusal = refusalOf(answer);
            const events = bagOf(answer?.['state'])?.['events'];
            this.tell(refusal ?? what, refusal !== null, Array.isArray(events) ? events.map(bagOf).filter((event): event is Bag => event !== null) : []);
            if (refusal === null) done(answer!);
        });
        if (!isSent) this.tell('There is no connection.', true, []);
    }

    say(text: string, isBad: boolean): void { this.tell(text, isBad, this.events); }

    line(): TemplateResult { return html`<span class="wb-outcome ${this.isBad ? 'wb-bad' : ''}" role="status">${this.text}</span>`; }

    /** The events that came with the answer. */
    list(): TemplateResult {
        if (this.events.length === 0) return html``;
        return html`<h3 class="wb-heading">What came of it</h3><ol class="wb-happened">${this.events.map((event) => html`<li><span class="wb-kind">${eventKind(event)}</span><code dir="auto">${eventText(event)}</code>
            ${textOf(event['event']) !== null && event['ms'] !== undefined ? html`<span class="wb-note">${String(event['ms'])} ms</span>` : ''}</li>`)}</ol>`;
    }

    private tell(text: string, isBad: boolean, events: readonly Bag[]): void {
        Object.assign(this, { text, isBad, events });
        this.changed();
    }
}
