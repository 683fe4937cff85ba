// SPDX-License-Identifier: MIT
import { html, render } from 'lit-html';
import { FormTab } from './formtab';
import type { Link } from './link';
import type { Names } from './names';

const shell = 'SpringBoard';

/** Posts notifications, as another process would and as the screens' own would, and kills the shell. */
export class PostTab extends FormTab {
    private text = '';

    constructor(link: Link, private readonly names: Names) {
        super('Post', link);
        names.listen(() => this.draw());
        this.paint();
    }

    private post(command: 'post' | 'postLocal', name: string): void {
        if (name.trim() === '') this.outcome.say('Which notification? It needs a name.', true);
        else this.outcome.send({ do: command, name: name.trim() }, `Posted ${name.trim()} ${command === 'post' ? 'system-wide' : 'locally'}.`);
    }

    protected paint(): void {
        const { names, outcome } = this;
        const known = names.all;
        render(html`
            <form class="wb-card" @submit=${(event: Event) => { event.preventDefault(); this.post('post', this.text); }}>
                <h2 class="wb-heading">Notification</h2>
                <div class="wb-line-of-fields">
                    <input class="wb-field wb-wide wb-code" type="text" aria-label="Name of the notification" placeholder="com.example.changed" list="wb-names" spellcheck="false" autocomplete="off" autocapitalize="off"
                        .value=${this.text} @input=${(event: Event) => { this.text = (event.target as HTMLInputElement).value; }}>
                    <datalist id="wb-names">${known.map((name) => html`<option value=${name}></option>`)}</datalist>
                    <button class="wb-button" type="submit">Post system-wide</button>
                    <button class="wb-button" type="button" @click=${() => this.post('postLocal', this.text)}>Post locally</button>
                </div>
            </form>
            <section class="wb-card" aria-label="Shell">
                <h2 class="wb-heading">Shell</h2>
                <div class="wb-line-of-fields"><span class="wb-note">It is started again, and tells the screens so.</span>
                    <button class="wb-button" type="button" @click=${() => outcome.send({ do: 'kill', process: shell }, `Killed ${shell}.`)}>Kill ${shell}</button></div>
            </section>
            <section class="wb-card" aria-label="Outcome">${outcome.line()}${outcome.list()}</section>
            <section class="wb-card" aria-label="Names seen so far">
                <h2 class="wb-heading">Seen so far</h2>
                ${known.length === 0 ? html`<p class="wb-note">No notification yet.</p>` : html`<ul class="wb-known">${known.map((name) => html`<li>
                    <code dir="auto">${name}</code><span class="wb-note">${names.kindOf(name)}</span>
                    <button class="wb-button" type="button" aria-label="Post ${name} system-wide" @click=${() => this.post('post', name)}>System-wide</button>
                    <button class="wb-button" type="button" aria-label="Post ${name} locally" @click=${() => this.post('postLocal', name)}>Locally</button></li>`)}</ul>`}
            </section>`, this.element);
    }
}
