// SPDX-License-Identifier: MIT
import { html, nothing, render } from 'lit-html';
import type { Bag, Command } from '../protocol';
import { saveText } from './clipboard';
import { shortForm } from './commandline';
import type { Link } from './link';
import { Script, type Step } from './script';
import { element, onceAFrame } from './tab';

const marks: Readonly<Record<Step['state'], string>> = { waiting: '', running: '▸', done: '✓', failed: '✗' };
const words: Readonly<Record<Step['state'], string>> = { waiting: 'not played', running: 'running', done: 'done', failed: 'refused' };

/** The script: what records, plays, saves and opens it, and its steps. */
export class ScriptPanel {
    readonly element = element('wb-script', 'section');
    private readonly script: Script;
    private readonly draw = onceAFrame(() => this.paint());
    private trouble = '';

    constructor(link: Link, played: (command: Command, answer: Bag | null) => void) {
        this.element.setAttribute('aria-label', 'Script');
        this.script = new Script(link, () => this.draw(), played);
        this.paint();
    }

    private async open(event: Event): Promise<void> {
        const input = event.target as HTMLInputElement;
        const file = input.files?.[0];
        if (!file) return;
        const error = this.script.read(await file.text());
        this.trouble = error === null ? '' : `${file.name}: ${error}`;
        input.value = '';
        this.draw();
    }

    private progress(): string {
        const { steps, next, isRecording } = this.script;
        const failed = steps.find(({ state }) => state === 'failed');
        if (this.trouble !== '') return this.trouble;
        if (failed) return `Step ${steps.indexOf(failed) + 1}: ${failed.error ?? ''}`;
        if (isRecording) return `Recording: ${steps.length} steps`;
        return steps.length === 0 ? '' : `${next} of ${steps.length} steps played`;
    }

    private paint(): void {
        const { script } = this;
        const { steps, isRecording, isPlaying } = script;
        const isEmpty = steps.length === 0;
        const isBad = this.trouble !== '' || steps.some(({ state }) => state === 'failed');
        render(html`
            <div class="wb-bar">
                <h2 class="wb-heading">Script</h2>
                <button class="wb-button wb-record" type="button" aria-pressed=${isRecording} ?disabled=${isPlaying} @click=${() => { this.trouble = ''; script.record(!isRecording); }}>${isRecording ? 'Stop recording' : 'Record'}</button>
                ${isPlaying ? html`<button class="wb-button" type="button" @click=${() => script.stop()}>Stop</button>`
                    : html`<button class="wb-button" type="button" ?disabled=${isEmpty} @click=${() => script.play(true)}>Play</button>`}
                <button class="wb-button" type="button" ?disabled=${isEmpty || isPlaying} @click=${() => script.play(false)}>Step</button>
                <button class="wb-button" type="button" ?disabled=${isEmpty || isPlaying} @click=${() => script.rewind()}>Rewind</button>
                <span class="wb-space"></span>
                <label class="wb-button wb-file">Open…<input type="file" class="unseen" accept=".jsonl,.ndjson,.json,.txt" ?disabled=${isPlaying} @change=${(event: Event) => void this.open(event)}></label>
                <button class="wb-button" type="button" ?disabled=${isEmpty} @click=${() => saveText(script.text, 'script.jsonl')}>Save…</button>
                <button class="wb-button" type="button" ?disabled=${isEmpty || isPlaying} @click=${() => { this.trouble = ''; script.clear(); }}>Clear</button>
            </div>
            <div class="wb-progress ${isBad ? 'wb-bad' : ''}"><span role="status">${this.progress()}</span>
                ${isEmpty ? nothing : html`<progress aria-label="Steps played" max=${steps.length} .value=${script.next}></progress>`}</div>
            <div class="wb-scroll" tabindex="0" role="group" aria-label="Steps">
                ${isEmpty ? html`<p class="wb-hint">Record writes down what is done on the phone and in the console: a command a line, to be saved and played again.</p>`
                    : html`<ol class="wb-steps">${steps.map((step, at) => html`<li class="wb-step wb-${step.state} ${at === script.next ? 'wb-next' : ''}">
                        <span class="wb-step-mark" role="img" aria-label=${words[step.state]}>${marks[step.state]}</span>
                        <code>${shortForm(step.command)}</code>
                        <button class="wb-button wb-quiet" type="button" aria-label="Remove step ${at + 1}" ?disabled=${isPlaying} @click=${() => script.remove(at)}>×</button></li>`)}</ol>`}
            </div>`, this.element);
        this.element.querySelector('.wb-running, .wb-failed, .wb-next')?.scrollIntoView({ block: 'nearest' });
    }
}
