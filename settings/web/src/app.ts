// SPDX-License-Identifier: MIT
import { isUserBeside, type Beside } from './beside';
import { onContrastChanged } from './colour';
import { Connection, type ConnectionEvents, type Status } from './connection';
import { rowLabel } from './controls';
import { setDoorOpen } from './door';
import { enableEdgeSwipe } from './edgeswipe';
import { Frame } from './frame';
import { onImageArrived, renewImages, retryImages, setImageHint } from './images';
import { spokenName } from './names';
import type { PageView } from './page';
import { forgetPatterns, onPatternMeasured } from './patterns';
import { Presenter } from './presenter';
import { presentedLabel } from './prompts';
import { target, type Command, type Device, type Found, type Message, type Row, type State } from './protocol';
import { firstWindow, type Window } from './rowstore';
import { screenTitle } from './bar';
import { Stage } from './stage';
import { loadTexts, textsFor, type Texts } from './texts';
import { Trail } from './trail';
import { Unsaved } from './unsaved';
import type { View } from './view';

/** These stand for the wheel's time and the tone among the keys of rows. */
const timeKey = 'wheel time';
const toneKey = 'tone';

/** A text on its way to a row of a screen. */
interface Sent { screen: number | null; row: Row; label: string; text: string }

/** Carries states to the document and the user's actions to the application; knows nothing of what they mean. */
export class App implements View, Beside {
    texts: Texts = textsFor(navigator.language);
    language = navigator.language;
    scale = 2;

    private readonly connection: Connection;
    private readonly stage: Stage;
    private readonly presenter: Presenter;
    private readonly frame: Frame;
    private readonly losses = new Unsaved(this, () => this.stage.page?.focusHeading());
    private readonly trail = new Trail(() => (this.frame.phone.inert ? null : this.presenter.presented ? this.presenter.goBack() : this.stage.goBack()));
    /** How many screens are stacked on each level of forms, as far as they have been seen. */
    private levels: number[] = [];
    private revision = -1;
    private announced = '';
    /** Values on their way: the row's key (or what stands for one), and the command that carries the last one. */
    private readonly pending = new Map<string, number>();
    /** Texts on their way, by the command that carries each. */
    private readonly texting = new Map<number, Sent>();
    /** Those of which no answer came before the connection was lost. */
    private unsent: Sent[] = [];
    /** What had the focus then; undefined while the connection holds. */
    private lostFocus: HTMLElement | null | undefined;
    private readonly fetching = new Set<number>();
    private readonly finding = new Map<number, (found: readonly Found[] | null) => void>();
    /** Messages that have arrived and wait for the words of their language. */
    private readonly waiting: Message[] = [];
    private readonly sentListeners: ((command: Command, id: number) => void)[] = [];
    private readonly endListeners: (() => void)[] = [];
    private hasEnded = false;
    private lastFetch = '';
    private fetchedFor = '';
    /** Whether another application answers on the same address, as the one before has told. */
    private isRenewed = false;
    /** The version of the page's own files that this document is of. */
    private pageVersion: number | null = null;
    private mustReload = false;
    private darkMode = false;
    /** The file of a phone that is only looked at. */
    private recording: string | null = null;

    constructor(root: HTMLElement, private readonly url: string, private readonly secret: string | null) {
        this.frame = new Frame(() => this.send({ do: 'dark', on: !this.darkMode }), () => this.connection.retryNow());
        this.stage = new Stage(this, { rows: (page, beside) => this.fetch(page, beside), find: (page, text, answered) => this.find(page, text, answered) });
        this.presenter = new Presenter(this, [this.stage.element], this.stage.gate, () => this.stage.page?.focusHeading());
        this.frame.mount(root, this.stage.element, this.presenter.element);
        this.presenter.element.after(this.losses.element);
        enableEdgeSwipe(this.frame.phone, () => (this.presenter.presented ? this.presenter.pull() : this.stage.pull()));
        this.connection = this.connect({
            opened: () => this.opened(),
            statusChanged: (status) => this.statusChanged(status),
            received: (message) => this.arrived(message),
        });
        onPatternMeasured(() => this.stage.redraw());
        onImageArrived(() => this.stage.redraw());
        onContrastChanged(() => this.stage.redraw());
        this.statusChanged('connecting');
        this.connection.open();
        void loadTexts(this.language)?.then(() => this.speak(this.language));
    }

    get phone(): HTMLElement { return this.frame.phone; }

    connect(events: ConnectionEvents): Connection { return new Connection(this.url, this.secret, events); }

    onSent(listener: (command: Command, id: number) => void): void { this.sentListeners.push(listener); }

    onEnded(listener: () => void): void {
        if (this.hasEnded) listener();
        else this.endListeners.push(listener);
    }

    rowElement(key: string): HTMLElement | null { return this.stage.page?.rowElement(key) ?? null; }

    redraw(): void { this.stage.redraw(); }

    keyAt(target: Element): string | null { return this.stage.page?.keyAt(target) ?? null; }

    // Before the first state it is the browser's own language that is spoken.
    private speak(language: string): void {
        this.texts = textsFor(language);
        if (!this.stage.page) this.statusChanged(this.connection.status);
    }

    act(command: Command): number | null {
        this.stage.commitTyped();
        return this.send(this.aimed(command));
    }

    set(row: Row, value: boolean | number | string): void {
        const id = this.submit(this.ownName(row), { do: 'set', ...target(row), value });
        if (typeof value !== 'string') return;
        const sent = { screen: this.stage.page?.screen.id ?? null, row, label: rowLabel(row, this), text: value };
        if (id !== null) this.texting.set(id, sent);
        else this.unsent.push(sent);
    }

    unsaved(label: string, text: string): void { this.losses.tell(label, text); }

    pickTime(time: string): void { this.submit(timeKey, { do: 'pickTime', time }); }

    get timeHeld(): boolean { return this.pending.has(timeKey); }

    pickTone(identifier: string | null): void { this.submit(toneKey, { do: 'pickTone', identifier }); }

    get toneHeld(): boolean { return this.pending.has(toneKey); }

    announce(text: string): void { this.frame.announce(text); }

    held(row: Row): boolean { return this.pending.has(this.ownName(row)); }

    // A key is the row's own on its screen; another screen may have the same.
    private ownName(row: Row): string { return `${this.stage.page?.screen.id} ${row.key}`; }

    private submit(key: string, command: Command): number | null {
        const id = this.send(this.aimed(command));
        if (id !== null) this.pending.set(key, id);
        else this.stage.redraw();
        return id;
    }

    private send(command: Command): number | null {
        const id = this.connection.send({ ...command, ...this.windowsOf(command) });
        if (id !== null && command.do !== 'state') for (const listener of this.sentListeners) listener(command, id);
        return id;
    }

    /** The rows to answer with: of this screen, and of the one that the command leads to. */
    private windowsOf(command: Command): Record<string, unknown> {
        const opens = command.do === 'tap' || command.do === 'link';
        return { ...(this.stage.page?.wanted ?? firstWindow), elsewhere: opens ? firstWindow : this.stage.beneath };
    }

    /** A command with what the user had before him: the application refuses it when that is gone, in place of acting on something else. */
    private aimed(command: Command): Command {
        const { presented } = this.presenter;
        if (presented) return presented.id === null ? command : { ...command, presented: presented.id };
        const screen = this.stage.page?.screen.id ?? null;
        if (screen !== null) return { ...command, screen };
        const { key: _unknown, ...rest } = command;
        return rest as Command;
    }

    private opened(): void {
        // Another application may answer now, and it counts its revisions from the start.
        this.revision = -1;
        this.waiting.length = 0;
        this.pending.clear();
        this.texting.clear();
        this.fetching.clear();
        this.lastFetch = '';
        // What happened is never drawn: a long list's events would only make its answers long.
        this.send({ do: 'state', events: false });
    }

    private statusChanged(status: Status): void {
        setDoorOpen(status === 'open' || status === 'silent');
        if (status === 'open') retryImages();
        if (status === 'open' && this.isRenewed) {
            this.isRenewed = false;
            renewImages();
            forgetPatterns();
        }
        const ends: Partial<Record<Status, string>> = { refused: this.texts.restarted, uninvited: this.texts.uninvited, foreign: this.texts.foreign };
        const end = ends[status];
        if (end !== undefined) {
            this.end(end);
            return;
        }
        if (status === 'renewing') this.isRenewed = true;
        if (status === 'lost' || status === 'renewing') this.disconnected();
        this.showStatus(this.stage.page !== null);
        if (status === 'lost') this.stage.redraw();
    }

    private showStatus(hasScreen: boolean): void { this.frame.showStatus(this.connection.status, hasScreen, this.recording, this.texts); }

    private disconnected(): void {
        if (this.lostFocus === undefined) this.lostFocus = document.activeElement instanceof HTMLElement && !isUserBeside() ? document.activeElement : null;
        this.waiting.length = 0;
        this.pending.clear();
        this.unsent.push(...this.texting.values());
        this.texting.clear();
        const unanswered = [...this.finding.values()];
        this.finding.clear();
        for (const answered of unanswered) answered(null);
        this.trail.suspend();
        this.stage.disconnected();
        this.presenter.disconnected();
    }

    /** Takes up again what the loss of the connection has interrupted, on the first screen that is shown after it. */
    private reconnected({ screen, presented }: State): void {
        const focus = this.lostFocus;
        this.lostFocus = undefined;
        const unsent = this.unsent;
        this.unsent = [];
        // Of the texts for one row the last one counts; the row has that, or one before it, unless somebody else has changed it.
        for (const last of unsent.filter((sent, at) => !unsent.some((later, place) => place > at && later.row.key === sent.row.key))) {
            const row = screen.id === last.screen ? this.stage.page?.sameRow(last.row) : undefined;
            const own = unsent.filter((sent) => sent.row.key === last.row.key).flatMap((sent) => [sent.row.value, sent.text]);
            if (row && row.value === last.text) continue;
            if (row && presented === null && own.includes(row.value)) this.set(row, last.text);
            else this.losses.tell(last.label, last.text);
        }
        if (presented === null) this.stage.page?.sendTyped();
        if (focus?.isConnected && !focus.closest('[inert]') && !isUserBeside()) focus.focus({ preventScroll: true });
    }

    private end(words: string): void {
        this.stage.release();
        for (const sent of [...this.unsent, ...this.texting.values()]) this.losses.tell(sent.label, sent.text);
        this.frame.showEnd(words, this.losses.element, this.texts);
        this.hasEnded = true;
        for (const listener of this.endListeners) listener();
    }

    /** A state in a language that is not there yet waits for its words, and all that comes after it with it. */
    private arrived(message: Message): void {
        const coming = this.waiting.length === 0 && message.state?.device ? loadTexts(message.state.device.language) : null;
        if (!coming && this.waiting.length === 0) {
            this.received(message);
            return;
        }
        this.waiting.push(message);
        void coming?.then(() => { for (const each of this.waiting.splice(0)) this.received(each); });
    }

    private received(message: Message): void {
        let fetched = false;
        if (message.id !== null) {
            fetched = this.fetching.delete(message.id);
            for (const [key, id] of this.pending) if (id === message.id) this.pending.delete(key);
            this.answeredText(message.id, message);
        }
        const finding = message.id === null ? undefined : this.finding.get(message.id);
        if (finding) {
            this.finding.delete(message.id!);
            finding(message.ok ? message.found : null);
        }
        const { state } = message;
        if (!state || state.revision < this.revision) {
            // What was waiting for this answer can be asked for at last, of the revision that is shown.
            if (fetched) this.stage.redraw();
            this.answered(message.id);
            return;
        }
        if (this.mustFetchFirst(state)) return;
        // Nothing else has changed; a long list brings many of these.
        const more = (fetched || finding !== undefined) && state.revision === this.revision && !this.stage.changes(state.screen);
        this.revision = state.revision;
        if (state.device) this.takeDevice(state.device);
        if (state.recording !== this.recording) {
            this.recording = state.recording;
            this.showStatus(true);
        }
        if (this.stage.changes(state.screen)) setImageHint(state.screen.className);
        if (more) this.stage.page?.take(state.screen, state.revision);
        else this.stage.show(state.screen, state.revision, state.presented !== null);
        // Whatever was asked about a row has been answered.
        if (this.presenter.presented && !state.presented) this.stage.page?.uncover(null);
        this.presenter.show(state.presented);
        // Nothing leads back from what has been.
        if (this.recording === null) this.trail.follow(this.depthOf(state));
        this.frame.showScreen(state.screen, state.presented?.kind === 'mail', this.texts);
        this.announceScreen(state);
        this.losses.draw();
        if (this.lostFocus !== undefined) this.reconnected(state);
        this.answered(message.id);
        this.frame.showBuild(state.build);
        this.followPage(state.build?.page ?? null);
    }

    /** The page itself was built anew: it is loaded again, once all that the user has entered is stored. */
    private followPage(version: number | null): void {
        this.pageVersion ??= version;
        if (version !== null && version !== this.pageVersion && !this.mustReload) {
            this.mustReload = true;
            this.stage.commitTyped();
        }
        if (this.mustReload && this.texting.size === 0 && this.pending.size === 0) location.reload();
    }

    private answered(command: number | null): void {
        if (command === null) return;
        this.stage.answered(command);
        this.presenter.answered(command);
        this.trail.answered(command);
    }

    /** How many ways back there are. Of screens beneath a form that have not been seen, one is counted. */
    private depthOf({ screen, presented }: State): number {
        this.levels[screen.modals] = screen.stack.length;
        this.levels.length = screen.modals + 1;
        let depth = screen.stack.length - 1 + (presented ? 1 : 0);
        for (let level = 0; level < screen.modals; level += 1) depth += this.levels[level] ??= 1;
        return Math.max(0, depth);
    }

    // A text that could not be saved where it belongs is still the user's; what is saved in vain is told by the screen itself.
    private answeredText(id: number, message: Message): void {
        const sent = this.texting.get(id);
        this.texting.delete(id);
        if (sent && !message.ok) this.losses.tell(sent.label, sent.text);
    }

    /** A screen that arrives is shown once its first rows are there; it may have come with the window of the screen before. */
    private mustFetchFirst(state: State): boolean {
        const { screen } = state;
        const needed = this.stage.needs(screen);
        const present = new Set(screen.rows.map((row) => row.index));
        let complete = true;
        for (let index = 0; index < needed.count; index += 1) complete &&= present.has(index);
        const name = `${state.revision}:${screen.modals}:${screen.stack.join()}`;
        if (complete || !this.stage.changes(screen) || this.fetchedFor === name) return false;
        this.fetchedFor = name;
        return this.connection.send({ do: 'state', ...firstWindow }) !== null;
    }

    private fetch(page: PageView, beside: readonly number[]): boolean {
        if (this.fetching.size > 0 || page !== this.stage.page) return false;
        const wanted = page.wanted;
        // The same rows are not asked for twice of one revision: a server that lacks them would be asked for ever.
        const name = `${this.revision}:${wanted.from}:${page.screen.stack.join()}`;
        if (name === this.lastFetch && beside.length === 0) return false;
        this.lastFetch = name;
        // The window goes last: what was asked for last is what the server pushes.
        const commands = [...runs(beside), wanted].filter((window) => window.count > 0);
        for (const window of commands) {
            const id = this.connection.send({ do: 'state', ...window });
            if (id !== null) this.fetching.add(id);
        }
        return this.fetching.size > 0;
    }

    private find(page: PageView, text: string, answered: (found: readonly Found[] | null) => void): void {
        if (page !== this.stage.page) {
            answered(null);
            return;
        }
        const { id: screen } = page.screen;
        // Also beneath what is presented it is the screen that is searched.
        const id = this.connection.send({ do: 'find', text, ...(screen === null ? {} : { screen }), ...page.wanted, count: 0 });
        if (id === null) answered(null);
        else this.finding.set(id, answered);
    }

    private takeDevice(device: Device): void {
        if (device.language !== this.language || document.documentElement.lang !== device.language) this.texts = textsFor(device.language);
        this.language = device.language;
        this.scale = device.scale;
        this.darkMode = device.darkMode;
        this.frame.showDevice(device, this.texts);
    }

    private announceScreen(state: State): void {
        const text = state.presented ? presentedLabel(state.presented, this) : spokenName(screenTitle(state.screen)) || this.texts.untitled;
        if (text === this.announced) return;
        // The first screen is read with the page itself.
        if (this.announced !== '') this.frame.announce(text);
        this.announced = text;
    }
}

/** The fewest windows that hold the given rows and not many others. */
function runs(indexes: readonly number[]): Window[] {
    const windows: Window[] = [];
    for (const index of [...indexes].sort((one, other) => one - other)) {
        const last = windows.at(-1);
        if (last && index - (last.from + last.count) < 4) last.count = index - last.from + 1;
        else windows.push({ from: index, count: 1 });
    }
    return windows;
}
