// SPDX-License-Identifier: MIT
import { html, nothing, render, type TemplateResult } from 'lit-html';
import type { Beside } from '../beside';
import type { Bag } from '../protocol';
import { styles } from '../style';
import { bagOf } from './bags';
import { EventTree, countOf, type Node, type Placed } from './eventtree';
import { timeText } from './eventtext';
import { JsonTree } from './jsontree';
import type { Link } from './link';
import { Moments, type Moment } from './moments';
import { Past } from './past';
import { Recording } from './recording';
import { ToolTab, element, onceAFrame } from './tab';
import { VirtualList, type Line } from './virtuallist';

/** Whether the state of a moment is there, or can be had. */
const isKnown = (moment: Moment | null | undefined): moment is Moment => moment != null && (moment.source !== null || moment.number !== undefined);

interface Batch { events: readonly Bag[]; dropped: number; moment: Moment | null; clock: number }

const columns = [
    { name: 'time', title: 'Time', width: '5.5rem' }, { name: 'took', title: 'ms', width: '4rem' }, { name: 'event', title: 'Event', width: '15rem' }, { name: 'what', title: 'What', width: 'minmax(22rem, 1fr)' },
];

/** Everything that happens, each under what it came of, and the phone as it was after each. */
export class TimelineTab extends ToolTab {
    private readonly bar = element('wb-bars');
    private readonly detail = element('wb-detail', 'section');
    private readonly json = new JsonTree();
    private readonly tree = new EventTree();
    private readonly moments = new Moments();
    private readonly past: Past;
    private readonly list: VirtualList;
    private readonly draw = onceAFrame(() => this.paint());
    private readonly hidden = new Set<string>();
    private text = '';
    private placed: readonly Placed[] = [];
    /** What has come while the list stands still; null while it goes on. */
    private waiting: Batch[] | null = null;
    private chosen: Node | null = null;
    /** Which of the two states at the chosen event is shown. */
    private side: 'before' | 'after' = 'after';
    /** Whether the chosen event is to be brought into sight when the list is drawn. */
    private revealsChosen = false;
    /** What is looked at in place of a phone that lives. */
    private recording: Recording | null = null;
    private visible = false;

    constructor(link: Link, beside: Beside, place: HTMLElement) {
        super('Timeline', 'wb-timeline');
        this.past = new Past(beside, place);
        this.list = new VirtualList({
            label: 'Timeline', role: 'treegrid', columns, lineHeight: 24, empty: 'Nothing has happened yet.',
            line: (at) => this.line(at),
            chosen: (at) => this.choose(this.placed[at]?.node ?? null),
            moved: (at) => { if (this.past.isShown) this.choose(this.placed[at]?.node ?? null); },
            key: (event, at) => this.key(event, at),
        });
        this.list.element.addEventListener('click', (event) => this.twist(event), { capture: true });
        this.detail.setAttribute('aria-label', 'Chosen event');
        this.element.append(this.bar, this.list.element, this.detail);
        let moment: Moment | null = null;
        link.listen({
            shot: (shot) => {
                const description = bagOf(shot.source['recording']);
                if (!description) moment = this.moments.record(shot);
                else this.recording ??= new Recording(description, link, this.tree, () => this.recordingCame());
            },
            sent: (command, sender, id) => this.tree.noteSent(command, sender, id),
            events: (events, dropped) => this.take({ events, dropped, moment, clock: performance.now() }),
            restarted: () => {
                this.tree.reconnect();
                this.moments.restart();
                if (!this.recording) return;
                this.recording = null;
                this.tree.clear();
            },
        });
        this.element.addEventListener('keydown', (event) => {
            if (event.key === 'Escape' && this.past.isShown) this.leavePast();
            else if (event.target instanceof Element && event.target.closest('.wb-past-bar')) this.stepByKey(event);
        });
        // The phone takes no key then.
        window.addEventListener('keydown', (event) => { if (this.recording && this.visible && event.target === document.body) this.stepByKey(event); });
        this.paint();
    }

    setVisible(isVisible: boolean): void {
        this.visible = isVisible;
        // Whoever looks at something else wants the phone as it is.
        if (!isVisible) this.recording ? this.past.leave() : this.leavePast();
        else if (this.recording) this.showChosen();
        this.list.setVisible(isVisible);
        this.draw();
    }

    moved(): void { this.past.place(); }

    private take(batch: Batch): void {
        if (this.waiting) this.waiting.push(batch);
        else this.tree.add(batch.events, batch.dropped, batch.moment, batch.clock);
        this.draw();
    }

    private pause(): void {
        const { waiting } = this;
        this.waiting = waiting ? null : [];
        for (const batch of waiting ?? []) this.tree.add(batch.events, batch.dropped, batch.moment, batch.clock);
        this.draw();
    }

    private clear(): void {
        this.tree.clear();
        if (this.waiting) this.waiting = [];
        this.leavePast();
        this.draw();
    }

    private choose(node: Node | null): void {
        this.chosen = node;
        this.showChosen();
    }

    private showChosen(): void {
        const { chosen, recording } = this;
        const moment = this.side === 'after' ? chosen?.moment : chosen?.moment?.before;
        const words = `${recording ? `Recording ${recording.file}` : 'Past'} · ${this.side === 'before' ? 'before ' : ''}${timeText(chosen?.at ?? 0)}`;
        if (recording && moment && !moment.source && moment.number !== undefined) {
            recording.fetch(moment, () => { if (this.visible && chosen === this.chosen && moment.source) this.showChosen(); });
        } else if (!moment?.source || !this.past.show(moment.source, words)) {
            this.past.leave();
        }
        this.draw();
    }

    private showSide(side: 'before' | 'after'): void {
        this.side = side;
        this.showChosen();
    }

    /** A further piece of the recording; with the last one, what it ended with is shown. */
    private recordingCame(): void {
        this.draw();
        if (!this.recording?.isLoaded || this.chosen) return;
        this.choose(this.tree.lastRoot((root) => isKnown(root.moment)));
        this.revealsChosen = true;
    }

    private leavePast(): void {
        if (this.recording) return;
        this.side = 'after';
        this.past.leave();
        this.chosen = null;
        this.draw();
    }

    /** The moment before or after the chosen one in the list. */
    private step(by: 1 | -1): void {
        const at = this.placed.findIndex(({ node }) => node === this.chosen);
        for (let next = at + by; next >= 0 && next < this.placed.length; next += by) {
            const { node } = this.placed[next]!;
            if (node.moment === this.chosen?.moment || !isKnown(node.moment)) continue;
            this.choose(node);
            this.list.reveal(next);
            return;
        }
    }

    private stepByKey(event: KeyboardEvent): void {
        const steps: Readonly<Record<string, 1 | -1>> = { ArrowLeft: -1, ArrowUp: -1, ArrowRight: 1, ArrowDown: 1 };
        const by = steps[event.key];
        if (by === undefined || event.ctrlKey || event.altKey || event.metaKey) return;
        event.preventDefault();
        this.step(by);
    }

    private twist(event: Event): void {
        const twisty = event.target instanceof Element ? event.target.closest('.wb-twisty') : null;
        const line = twisty?.closest<HTMLElement>('[data-place]');
        if (!line) return;
        event.stopPropagation();
        const node = this.placed[Number(line.dataset['place'])]?.node;
        if (node) this.fold(node, !node.isFolded);
    }

    private fold(node: Node, isFolded: boolean): void {
        node.isFolded = isFolded;
        this.draw();
    }

    private foldAll(isFolded: boolean): void {
        for (const root of this.tree.roots) root.isFolded = isFolded && root.children.length > 0;
        this.draw();
    }

    private key(event: KeyboardEvent, at: number): boolean {
        const node = this.placed[at]?.node;
        if (!node || event.ctrlKey || event.altKey || event.metaKey) return false;
        if (event.key === 'ArrowRight' && node.isFolded) this.fold(node, false);
        else if (event.key === 'ArrowLeft' && !node.isFolded && node.children.length > 0) this.fold(node, true);
        else if (event.key === 'ArrowLeft' && node.parent) this.list.focusAt(this.placed.findIndex((each) => each.node === node.parent));
        else return false;
        return true;
    }

    private line(at: number): Line {
        const { node, isMatch } = this.placed[at]!;
        const hasChildren = node.children.length > 0;
        const ms = node.event?.['ms'];
        const classes = [`wb-event-${node.kind}`, isMatch ? '' : 'wb-context', node === this.chosen ? 'wb-chosen' : '', node.event?.['ok'] === false ? 'wb-failed-event' : ''].join(' ');
        const kind = html`<span class="wb-branch" ${styles({ 'padding-inline-start': `${Math.min(node.level - 1, 12) * 14}px` })}>
            ${hasChildren ? html`<span class="wb-twisty" aria-hidden="true">${node.isFolded ? '▸' : '▾'}</span>` : html`<span class="wb-twisty-none"></span>`}<span class="wb-kind">${node.kind}</span>
            ${node.isFolded && hasChildren ? html`<span class="wb-note">+${countOf(node)}</span>` : nothing}</span>`;
        return {
            key: node.key, classes, level: node.level, ...(hasChildren ? { expanded: !node.isFolded } : {}),
            cells: [timeText(node.at), typeof ms === 'number' ? ms.toFixed(ms < 10 ? 1 : 0) : '', kind, html`<span dir="auto" title=${node.text}>${node.text}</span>`],
        };
    }

    private paint(): void {
        const { tree, list } = this;
        if (!this.visible) return;
        const follows = list.isAtEnd && !this.past.isShown;
        this.placed = tree.visible({ hidden: this.hidden, text: this.text.trim() });
        list.setCount(this.placed.length);
        if (this.revealsChosen) list.focusAt(this.placed.findIndex(({ node }) => node === this.chosen));
        else if (follows) list.scrollToEnd();
        this.revealsChosen = false;
        render(this.bars(), this.bar);
        this.paintDetail();
    }

    private bars(): TemplateResult {
        const { tree, waiting, hidden, recording } = this;
        const kinds = [...tree.kinds].sort(([one], [other]) => one.localeCompare(other));
        const toggle = (kind: string): void => {
            if (!hidden.delete(kind)) hidden.add(kind);
            this.draw();
        };
        const count = waiting?.reduce((sum, { events }) => sum + events.length, 0) ?? 0;
        return html`<div class="wb-bar">
                <input class="wb-field wb-filter" type="search" placeholder="Filter: kind or text" aria-label="Filter events" spellcheck="false" autocomplete="off" @input=${(event: Event) => { this.text = (event.target as HTMLInputElement).value; this.draw(); }}>
                ${recording ? nothing : html`<button class="wb-button" type="button" aria-pressed=${waiting !== null} @click=${() => this.pause()}>Pause</button>
                <button class="wb-button" type="button" @click=${() => this.clear()}>Clear</button>`}
                <button class="wb-button" type="button" @click=${() => this.foldAll(true)}>Fold all</button>
                <button class="wb-button" type="button" @click=${() => this.foldAll(false)}>Unfold all</button>
                <span class="wb-note" role="status">${waiting ? `Paused, ${count} more` : recording ? wordsFor(recording) : ''}</span></div>
            ${kinds.length === 0 ? nothing : html`<div class="wb-bar wb-chips" role="group" aria-label="Kinds of events">${kinds.map(([kind, number]) => html`<button class="wb-chip" type="button" aria-pressed=${!hidden.has(kind)} @click=${() => toggle(kind)}>${kind} <span class="wb-chip-count">${number}</span></button>`)}</div>`}
            ${this.past.isShown || (this.chosen && (recording || this.side === 'before')) ? this.pastBar() : nothing}`;
    }

    private pastBar(): TemplateResult {
        const { side, chosen } = this;
        const words = this.past.isShown ? `The phone as it was at ${timeText(chosen?.at ?? 0)}, just ${side} this. It cannot be pressed.` : `How the phone was just ${side} this is not known.`;
        return html`<div class="wb-bar wb-past-bar"><span class="wb-space" role="status">${words}</span>
            <button class="wb-button" type="button" aria-pressed=${side === 'before'} @click=${() => this.showSide(side === 'before' ? 'after' : 'before')}>Before</button>
            <button class="wb-button" type="button" @click=${() => this.step(-1)}>Earlier</button><button class="wb-button" type="button" @click=${() => this.step(1)}>Later</button>
            ${this.recording ? nothing : html`<button class="wb-button wb-primary" type="button" @click=${() => this.leavePast()}>Back to now</button>`}</div>`;
    }

    private paintDetail(): void {
        const { chosen } = this;
        this.detail.hidden = chosen === null;
        if (!chosen) return;
        this.json.show(chosen.event ?? { command: chosen.text });
        render(html`<div class="wb-bar"><h2 class="wb-heading">${chosen.kind}</h2><span class="wb-note wb-space">${isKnown(chosen.moment) ? '' : 'The state of that moment is no longer kept.'}</span>
            ${this.recording ? nothing : html`<button class="wb-button" type="button" aria-label="Close the event" @click=${() => this.leavePast()}>×</button>`}</div>
            <div class="wb-scroll" tabindex="0" role="group" aria-label="The event as JSON">${this.json.element}</div>`, this.detail);
    }
}

function wordsFor(recording: Recording): string {
    if (!recording.isLoaded) return `Reading ${recording.loaded} of ${recording.count}`;
    return recording.isWhole ? '' : 'Cut off: its program was killed';
}
