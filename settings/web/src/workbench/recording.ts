// SPDX-License-Identifier: MIT
import type { Bag, Command } from '../protocol';
import { bagOf, numberOf, textOf } from './bags';
import { shortForm } from './commandline';
import type { EventTree } from './eventtree';
import type { Link } from './link';
import type { Moment } from './moments';
import { lasting } from './script';

/** How many states that were looked at stay here, so that going back and forth asks nobody. */
const keptStates = 50;

const fileName = (path: string): string => path.slice(path.lastIndexOf('/') + 1);

/** A recorded line in words; one that is no command stands as it is. */
function wordsOf(line: string): string {
    try {
        const command = bagOf(JSON.parse(line));
        if (command && typeof command['do'] === 'string') return shortForm(lasting(command as Command));
    } catch {
        // It was answered as what it was.
    }
    return line;
}

/** A recording that the application shows in place of a phone: what came to that is fetched piece by piece, and a state when it is looked at. */
export class Recording {
    readonly file: string;
    readonly isWhole: boolean;
    /** How many moments there are, and how many of them are here. */
    readonly count: number;
    loaded = 0;
    private readonly moments = new Map<number, Moment>();
    private states: Moment[] = [];
    private commands = 0;
    /** Which state is to be fetched next, and whether one is on its way. */
    private wanted: { moment: Moment; arrived: () => void } | null = null;
    private isFetching = false;

    constructor(description: Bag, private readonly link: Link, private readonly tree: EventTree, private readonly changed: () => void) {
        this.file = textOf(description['file']) ?? '';
        this.isWhole = description['whole'] !== false;
        this.count = numberOf(description['moments'], 0);
        tree.keepAll();
        this.load();
    }

    get isLoaded(): boolean { return this.loaded >= this.count; }

    /** Calls back once the moment has its state; not when another one is asked for before. */
    fetch(moment: Moment, arrived: () => void): void {
        this.wanted = { moment, arrived };
        this.fetchWanted();
    }

    private fetchWanted(): void {
        if (this.isFetching || !this.wanted) return;
        const { moment, arrived } = this.wanted;
        this.wanted = null;
        this.isFetching = this.link.send({ do: 'moment', at: moment.number }, (answer) => {
            this.isFetching = false;
            if (answer?.['ok'] === true) this.keep(moment, bagOf(answer['state']));
            if (this.wanted) this.fetchWanted();
            else arrived();
        });
    }

    private keep(moment: Moment, source: Bag | null): void {
        moment.source = source;
        this.states.push(moment);
        if (this.states.length > keptStates) this.states.shift()!.source = null;
    }

    private load(): void {
        if (this.isLoaded) return;
        this.link.send({ do: 'moments', from: this.loaded }, (answer) => {
            const moments = Array.isArray(answer?.['moments']) ? answer['moments'].map(bagOf).filter((moment): moment is Bag => moment !== null) : [];
            // Without an answer there is another connection soon, and another one of these.
            if (moments.length === 0) return;
            for (const moment of moments) this.take(moment);
            this.loaded += moments.length;
            this.changed();
            this.load();
        });
    }

    private take(source: Bag): void {
        const { events, before: _before, after: _after, ...event } = source;
        const told = Array.isArray(events) ? events.map(bagOf).filter((each): each is Bag => each !== null) : [];
        const moment = this.momentOf(source);
        const at = numberOf(source['time'], 0);
        const isCommand = source['command'] !== undefined || source['oversized'] === true;
        if (isCommand) this.commands += 1;
        const what = this.wordsFor(source);
        if (what) this.tree.addRecorded({ ...what, event, at, number: isCommand ? this.commands : null }, told, moment);
        else this.tree.add(told, 0, moment, at);
    }

    /** What a line says that came from somewhere; null where nothing but time or an answer did. */
    private wordsFor(source: Bag): { kind: string; text: string } | null {
        const outside = bagOf(source['outside']);
        if (outside) return { kind: 'outside', text: textOf(outside['notification']) ?? `${fileName(textOf(outside['file']) ?? '')} ${outside['removed'] === true ? 'removed' : 'written'}` };
        if (source['start'] === true) return { kind: 'start', text: '' };
        if (source['end'] === true) return { kind: 'end', text: '' };
        if (source['oversized'] === true) return { kind: 'command', text: 'a line that is too long' };
        const command = textOf(source['command']);
        if (command === null) return null;
        const error = textOf(source['error']);
        return { kind: 'command', text: `${wordsOf(command)}${error === null ? '' : `, refused: ${error}`}` };
    }

    /** The state just after a line, with the one just before it. Of a line behind the last answer only that is known. */
    private momentOf(source: Bag): Moment | null {
        const number = (name: string): number | null => (typeof source[name] === 'number' ? source[name] : null);
        const [before, after] = [number('before'), number('after')];
        const earlier = before === null ? null : this.momentOfNumber(before);
        if (after === null) return { source: null, before: earlier };
        const moment = this.momentOfNumber(after);
        moment.before ??= earlier;
        return moment;
    }

    private momentOfNumber(number: number): Moment {
        const known = this.moments.get(number);
        if (known) return known;
        const moment: Moment = { source: null, before: null, number };
        this.moments.set(number, moment);
        return moment;
    }
}
