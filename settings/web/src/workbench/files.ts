// SPDX-License-Identifier: MIT
import { html, nothing, render } from 'lit-html';
import type { Bag } from '../protocol';
import { bagOf, textOf } from './bags';
import { differences } from './differences';
import { JsonTree } from './jsontree';
import { refusalOf, type Link } from './link';
import { ToolTab, onceAFrame } from './tab';

/** What the phone has stored: a tree for each file, with what the last command has changed of it, and the end of the log. */
export class FilesTab extends ToolTab {
    private readonly draw = onceAFrame(() => this.paint());
    private readonly trees = new Map<string, JsonTree>();
    private visible = false;
    private files: Bag | null = null;
    /** The files as they were before the last command; null while these are not known. */
    private before: Bag | null = null;
    private asking = false;
    private again = false;
    private trouble: string | null = null;

    constructor(private readonly link: Link) {
        super('Files', 'wb-files wb-scroll');
        link.listen({
            sent: () => { this.before = this.visible ? this.files : null; },
            shot: () => this.ask(),
            restarted: () => { this.files = this.before = null; },
        });
        this.paint();
    }

    setVisible(isVisible: boolean): void {
        this.visible = isVisible;
        if (isVisible) this.ask();
        // What happens while nobody looks is no difference to anything.
        else this.files = this.before = null;
    }

    private ask(): void {
        if (!this.visible) return;
        if (this.asking) {
            this.again = true;
            return;
        }
        this.again = false;
        // The answer brings a state; asking about that again would never end.
        const revision = this.link.shot?.revision;
        this.asking = this.link.send({ do: 'files' }, (answer) => {
            this.asking = false;
            this.trouble = refusalOf(answer);
            this.files = bagOf(answer?.['files']) ?? this.files;
            this.draw();
            if (this.again && this.link.shot?.revision !== revision) this.ask();
        });
    }

    private paint(): void {
        const { files, before, trouble } = this;
        const problems = bagOf(files?.['problems']) ?? {};
        const names = Object.keys(files ?? {}).filter((name) => name !== 'log' && name !== 'problems');
        const log = textOf(files?.['log']);
        const oldLog = textOf(before?.['log']) ?? log ?? '';
        // The log's beginning goes as it grows; what follows its last known end is new.
        const known = log === null ? 0 : log.startsWith(oldLog) ? oldLog.length : Math.max(0, log.lastIndexOf(oldLog.slice(-200)) + Math.min(200, oldLog.length));
        const isAtEnd = this.log === null || this.log.scrollTop + this.log.clientHeight >= this.log.scrollHeight - 4;
        render(html`
            ${trouble === null ? nothing : html`<p class="wb-hint wb-bad" role="status">${trouble}</p>`}
            ${names.map((name) => html`<section class="wb-file-part" aria-label=${name}><h2 class="wb-heading wb-part-title">${name}</h2>
                ${problems[name] === undefined ? files![name] === null ? html`<p class="wb-hint">There is no such file.</p>` : this.tree(name, files![name], before?.[name])
                    : html`<p class="wb-hint wb-bad">${String(problems[name])}</p>`}</section>`)}
            ${log === null ? nothing : html`<section class="wb-file-part" aria-label="log"><h2 class="wb-heading wb-part-title">log</h2>
                <pre class="wb-log" tabindex="0" role="group" aria-label="End of the log">${log === '' ? 'The log is empty.' : html`${log.slice(0, known)}<mark class="wb-mark">${log.slice(known)}</mark>`}</pre></section>`}`, this.element);
        if (isAtEnd && this.log) this.log.scrollTop = this.log.scrollHeight;
    }

    private get log(): HTMLElement | null { return this.element.querySelector('.wb-log'); }

    private tree(name: string, value: unknown, before: unknown): HTMLElement {
        const tree = this.trees.get(name) ?? new JsonTree(2);
        this.trees.set(name, tree);
        tree.show(value, null, before === undefined ? undefined : differences(before, value));
        return tree.element;
    }
}
