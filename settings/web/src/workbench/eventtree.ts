// SPDX-License-Identifier: MIT
import type { Bag, Command } from '../protocol';
import { bagOf, numberOf } from './bags';
import { shortForm } from './commandline';
import { eventId, eventKind, eventText } from './eventtext';
import type { Sender } from './link';
import type { Moment } from './moments';
import { lasting } from './script';

/** An event, or the command that others came of. */
export interface Node {
    readonly key: string;
    /** Null for a command, and for a note that something was missed. */
    readonly event: Bag | null;
    readonly kind: string;
    readonly text: string;
    /** Milliseconds since the program's start. */
    readonly at: number;
    readonly parent: Node | null;
    readonly level: number;
    readonly children: Node[];
    /** The state that came with it. */
    readonly moment: Moment | null;
    isFolded: boolean;
}

/** A node where the list has it. */
export interface Placed { node: Node; isMatch: boolean }

export interface EventFilter { hidden: ReadonlySet<string>; text: string }

/** How many nodes of a phone that goes on are kept; then the oldest commands go with all that came of them. */
const keptNodes = 20_000;
/** So many more may come before these go, so that it is not done for each. */
const keptBeyond = 1000;
const keptCommands = 2000;

/** What happened, each under what it came of. */
export class EventTree {
    readonly roots: Node[] = [];
    /** How many there are of each kind. */
    readonly kinds = new Map<string, number>();
    private readonly byId = new Map<number, Node>();
    private readonly commandRoots = new Map<string, Node>();
    private readonly sent: Readonly<Record<Sender, Map<number, Command>>> = { phone: new Map(), workbench: new Map() };
    /** All, in the order in which they came. */
    private nodes: Node[] = [];
    private serial = 0;
    /** The newest event, and whether those that come next are of a connection of which none has come yet. */
    private last: { id: number; at: number } | null = null;
    private isNew = false;
    private kept = keptNodes;
    /** The recorded command of which the events are being added: it stands where the first one does that came of it. */
    private recorded: { name: string; append: () => Node } | null = null;

    /** A recording comes to an end by itself. */
    keepAll(): void { this.kept = Infinity; }

    /** A command has been sent, by whom and with which id; what comes of it goes by its words. */
    noteSent(command: Command, sender: Sender, id: number): void {
        const known = this.sent[sender];
        known.set(id, command);
        for (const old of known.keys()) {
            if (known.size <= keptCommands) break;
            known.delete(old);
        }
    }

    /**
     * To be called with another connection: the first events that it tells are all since the application's start, which are
     * known already if it is the same one.
     */
    reconnect(): void {
        this.isNew = true;
        this.commandRoots.clear();
    }

    /** What came to a recorded phone, with the events that were told next. `number` is that of a command, by which they name it. */
    addRecorded(what: { kind: string; text: string; event: Bag; at: number; number: number | null }, events: readonly Bag[], moment: Moment | null): void {
        const { number, ...node } = what;
        const append = (): Node => this.append({ ...node, key: this.newKey(), parent: null, moment });
        if (number === null) append();
        else this.recorded = { name: `own ${number}`, append };
        this.add(events, 0, moment, what.at);
        // Nothing came of it.
        if (number !== null && !this.commandRoots.has(`own ${number}`)) this.commandRoots.set(`own ${number}`, append());
        this.recorded = null;
    }

    clear(): void {
        this.roots.length = 0;
        this.kinds.clear();
        this.byId.clear();
        this.commandRoots.clear();
        this.nodes = [];
    }

    /** `clock` is this page's own time, for an application that tells none. */
    add(events: readonly Bag[], dropped: number, moment: Moment | null, clock: number): void {
        if (dropped > 0) this.append({ key: this.newKey(), event: null, kind: 'missed', text: `${dropped} events were missed`, at: clock, parent: null, moment });
        for (const event of this.unknown(events)) {
            const at = numberOf(event['at'], clock);
            const parent = this.parentOf(event['cause'], at, moment);
            const node = this.append({ key: this.newKey(), event, kind: eventKind(event), text: eventText(event), at, parent, moment });
            if (eventId(event) < 0) continue;
            this.byId.set(eventId(event), node);
            this.last = { id: eventId(event), at };
        }
        this.trim();
    }

    /**
     * The nodes that are to be seen, in their order. A node that does not fit is there for the sake of one beneath it that does; one
     * that is folded still hides what is beneath it, unless a text is looked for. Without recursion: a timer that sets itself
     * again is a branch as long as the timeline.
     */
    visible(filter: EventFilter): Placed[] {
        const text = filter.text.toLowerCase();
        const isAll = text === '' && filter.hidden.size === 0;
        const fits = (node: Node): boolean => !filter.hidden.has(node.kind) && (text === '' || node.text.toLowerCase().includes(text) || node.kind.toLowerCase().includes(text));
        const matches = new Set<Node>();
        const shown = new Set<Node>();
        // Whatever came of a node came after it.
        for (let at = isAll ? -1 : this.nodes.length - 1; at >= 0; at -= 1) {
            const node = this.nodes[at]!;
            if (fits(node)) matches.add(node);
            if (!matches.has(node) && !shown.has(node)) continue;
            shown.add(node);
            if (node.parent) shown.add(node.parent);
        }
        const placed: Placed[] = [];
        const left = [...this.roots].reverse();
        for (let node = left.pop(); node; node = left.pop()) {
            if (!isAll && !shown.has(node)) continue;
            placed.push({ node, isMatch: isAll || matches.has(node) });
            if (node.isFolded && text === '') continue;
            for (let at = node.children.length - 1; at >= 0; at -= 1) left.push(node.children[at]!);
        }
        return placed;
    }

    /** The last one under which others stand, or could, that fits. */
    lastRoot(fits: (root: Node) => boolean): Node | null {
        for (let at = this.roots.length - 1; at >= 0; at -= 1) if (fits(this.roots[at]!)) return this.roots[at]!;
        return null;
    }

    private unknown(events: readonly Bag[]): readonly Bag[] {
        const { last } = this;
        if (!this.isNew || events.length === 0) return events;
        this.isNew = false;
        if (!last) return events;
        // No two applications have the same event at the same time, to the microsecond.
        if (events.some((event) => eventId(event) === last.id && event['at'] === last.at)) return events.filter((event) => eventId(event) > last.id);
        this.byId.clear();
        return events;
    }

    private newKey(): string { return String(this.serial += 1); }

    private append(given: Omit<Node, 'children' | 'level' | 'isFolded'>): Node {
        const node: Node = { ...given, level: given.parent ? given.parent.level + 1 : 1, children: [], isFolded: false };
        (given.parent?.children ?? this.roots).push(node);
        this.kinds.set(node.kind, (this.kinds.get(node.kind) ?? 0) + 1);
        this.nodes.push(node);
        return node;
    }

    private parentOf(cause: unknown, at: number, moment: Moment | null): Node | null {
        if (typeof cause === 'number') return this.byId.get(cause) ?? null;
        const command = bagOf(cause);
        if (!command) return null;
        const connection = typeof command['connection'] === 'number' ? command['connection'] : null;
        const name = `${connection ?? 'own'} ${String(command['command'])}`;
        const known = this.commandRoots.get(name);
        if (known) return known;
        const root = this.recorded?.name === name ? this.recorded.append() : this.append({ key: this.newKey(), event: null, kind: 'command', text: this.wordsOf(command, connection), at, parent: null, moment });
        this.commandRoots.set(name, root);
        return root;
    }

    private wordsOf(cause: Bag, connection: number | null): string {
        const sender: Sender = connection === null ? 'workbench' : 'phone';
        const sent = this.sent[sender].get(numberOf(cause['id'], -1));
        if (sent) return `${shortForm(lasting(sent))}${sender === 'phone' ? '' : ' (workbench)'}`;
        return `command ${String(cause['command'])}${connection === null ? '' : ` of connection ${connection}`}`;
    }

    private trim(): void {
        if (this.nodes.length <= this.kept + keptBeyond) return;
        const gone = new Set<Node>();
        while (this.nodes.length - gone.size > this.kept && this.roots.length > 1) for (const node of branchOf(this.roots.shift()!)) gone.add(node);
        this.nodes = this.nodes.filter((node) => !gone.has(node));
        for (const node of gone) {
            const count = (this.kinds.get(node.kind) ?? 1) - 1;
            if (count > 0) this.kinds.set(node.kind, count);
            else this.kinds.delete(node.kind);
            if (node.event) this.byId.delete(eventId(node.event));
        }
        for (const [name, root] of this.commandRoots) if (gone.has(root)) this.commandRoots.delete(name);
    }
}

/** A node and all that came of it. */
function branchOf(root: Node): Node[] {
    const found = [root];
    // The list grows while it is gone through.
    for (const node of found) found.push(...node.children);
    return found;
}

/** How many nodes came of one. */
export const countOf = (node: Node): number => branchOf(node).length - 1;
