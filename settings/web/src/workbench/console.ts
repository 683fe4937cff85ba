// SPDX-License-Identifier: MIT
import { html, render } from 'lit-html';
import type { Bag, Command } from '../protocol';
import { bagOf, numberOf, textOf } from './bags';
import { CommandField } from './commandfield';
import { readCommand, shortForm } from './commandline';
import type { Offer } from './completion';
import { JsonTree } from './jsontree';
import { refusalOf, shotOf, type Link } from './link';
import type { Names } from './names';
import { keyOf } from './rowbook';
import { ScriptPanel } from './scriptpanel';
import { ToolTab, element } from './tab';

/** How many lines are kept. */
const kept = 300;

/** A line for commands, what they were answered, and the script that they can be recorded into. */
export class ConsoleTab extends ToolTab {
    private readonly output = element('wb-output');
    private readonly field: CommandField;

    constructor(private readonly link: Link, private readonly names: Names) {
        super('Console', 'wb-console');
        this.output.setAttribute('role', 'log');
        this.output.setAttribute('aria-label', 'Commands and answers');
        // Whole answers are not read out; the line says what came of a command.
        this.output.setAttribute('aria-live', 'off');
        this.output.tabIndex = 0;
        const hint = element('wb-hint', 'p');
        render(html`A command as JSON, <code>{"do":"tap","row":3}</code>, or short, <code>tap row=3</code>. Tab completes, the arrow up brings back earlier ones.`, hint);
        this.output.append(hint);
        this.field = new CommandField((line) => this.run(line), (name) => this.known(name));
        const lines = element('wb-lines');
        const clear = element('wb-button', 'button');
        clear.type = 'button';
        clear.textContent = 'Clear';
        clear.addEventListener('click', () => this.output.replaceChildren());
        const foot = element('wb-bar wb-foot');
        foot.append(this.field.element, clear);
        lines.append(this.output, foot);
        const script = new ScriptPanel(link, (command, answer) => this.log(shortForm(command), answer));
        this.element.append(lines, script.element);
    }

    setVisible(isVisible: boolean): void { if (isVisible) this.output.scrollTop = this.output.scrollHeight; }

    private run(line: string): void {
        const read = readCommand(line);
        if ('error' in read) {
            this.say(line, read.error);
            return;
        }
        const isSent = this.link.send(read.command as Command, (answer) => this.log(line, answer));
        if (!isSent) this.say(line, 'There is no connection.');
    }

    /** Appends a command and its answer, which is folded. */
    private log(line: string, answer: Bag | null): void {
        const refusal = refusalOf(answer);
        if (!answer) {
            this.say(line, refusal ?? '');
            return;
        }
        const tree = new JsonTree(0);
        const { id: _ours, ...rest } = answer;
        tree.show(rest, answered(answer));
        this.append(line, refusal, tree.element);
    }

    private say(line: string, error: string): void { this.append(line, error, null); }

    private append(line: string, error: string | null, answer: HTMLElement | null): void {
        const { output } = this;
        const entry = element(`wb-entry ${error === null ? 'wb-ok' : 'wb-refused'}`);
        render(html`<div class="wb-typed"><span class="wb-prompt" aria-hidden="true">›</span><code>${line}</code></div>
            ${error === null ? '' : html`<div class="wb-error">${error}</div>`}${answer}`, entry);
        output.append(entry);
        while (output.childElementCount > kept) output.firstElementChild!.remove();
        output.scrollTop = output.scrollHeight;
        this.field.say(error ?? 'Done.');
    }

    /** What the phone shows now that a field may name. */
    private known(field: string): readonly Offer[] {
        const { shot } = this.link;
        if (!shot) return [];
        const rows = (): Offer[] => shot.rows.filter((row) => row['row'] !== null).map((row) => ({ text: field === 'key' ? keyOf(row) : String(row['index']), note: textOf(row['name']) ?? '' }));
        const presented = bagOf(shot.source['presented']);
        switch (field) {
            case 'key': case 'row': return rows();
            case 'name': return this.names.all.map((text) => ({ text, note: '' }));
            case 'screen': return [{ text: String(shot.screenId), note: textOf(shot.screen['class']) ?? '' }];
            case 'presented': return presented ? [{ text: String(presented['id']), note: textOf(presented['kind']) ?? '' }] : [];
            case 'action': return listOf(presented?.['actions']).map((action) => ({ text: textOf(action['title']) ?? '', note: textOf(action['style']) ?? '' }));
            case 'identifier': return listOf(bagOf(shot.screen['tones'])?.['list']).map((tone) => ({ text: textOf(tone['identifier']) ?? '', note: textOf(tone['name']) ?? '' }));
            default: return [];
        }
    }
}

const listOf = (value: unknown): Bag[] => (Array.isArray(value) ? value.map(bagOf).filter((each): each is Bag => each !== null) : []);

/** What an answer says, in a few words. */
function answered(answer: Bag): string {
    const state = bagOf(answer['state']);
    const shot = state && shotOf(state);
    const parts = [answer['ok'] === false ? (answer['stale'] === true ? 'stale' : 'refused') : 'ok'];
    if (shot) parts.push(`revision ${shot.revision}`, `${textOf(shot.screen['class']) ?? ''}, ${shot.count} rows`);
    const presented = bagOf(state?.['presented']);
    if (presented) parts.push(`${textOf(presented['kind']) ?? ''} presented`);
    const events = listOf(state?.['events']).length;
    if (events > 0) parts.push(events === 1 ? '1 event' : `${events} events`);
    const found = answer['found'];
    if (Array.isArray(found)) parts.push(`${numberOf(found.length, 0)} found`);
    return parts.join(' · ');
}
