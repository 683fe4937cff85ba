// SPDX-License-Identifier: MIT
import { systemItem } from './bar';
import type { Pull } from './edgeswipe';
import { Gate } from './gate';
import { direction, glide, glideAway, hold, inPlace, motionIsReduced, type Pose } from './motion';
import { PageView, type PageRequests } from './page';
import type { Screen } from './protocol';
import { firstWindow, wholeListLimit, type Window } from './rowstore';
import type { View } from './view';

type Move = 'push' | 'pop' | 'replace';

const slide = (part: string): string => `translateX(calc(${part} * ${direction()}))`;

/** Where a page stands that lies above the one in sight and is not shown yet, or no more. */
const aside = (): Pose => (motionIsReduced() ? { transform: 'none', opacity: 0 } : { transform: slide('100%'), opacity: 1 });
/** Where a page stands beneath the one in sight. */
const beneath = (): Pose => (motionIsReduced() ? inPlace : { transform: slide('-33.3%'), opacity: 1 });
const below = (): Pose => (motionIsReduced() ? { transform: 'none', opacity: 0 } : { transform: 'translateY(100%)', opacity: 1 });
const contentAt = (place: 'aside' | 'beneath'): Pose => ({ transform: motionIsReduced() ? 'none' : slide(place === 'aside' ? '20%' : '-20%'), opacity: 0 });

/** An element that moves when one page goes over another, and where it stands while it is not in sight. */
interface Mover { element: Element; outside: Pose }

/** What moves of the page above, and of the one beneath. */
function movers(upper: PageView, lower: PageView | null): { above: Mover[]; below: Mover[] } {
    const part = (page: PageView, selector: string, outside: Pose): Mover[] => [...page.bar.querySelectorAll(selector)].map((element) => ({ element, outside }));
    return {
        above: [{ element: upper.body, outside: aside() }, ...part(upper, '.bar-content', contentAt('aside')), ...part(upper, '.bar-fill', { transform: 'none', opacity: 0 })],
        below: lower ? [{ element: lower.body, outside: beneath() }, ...part(lower, '.bar-content', contentAt('beneath'))] : [],
    };
}

/** A way back that the user has pulled out by hand, and that is answered or given up yet. */
interface Pulled { page: PageView; command: number | null; giveUp(): void }

/** One navigation controller in the document: the pages of its stack, the top one shown. */
class Navigator {
    readonly element = document.createElement('div');
    page: PageView | null = null;
    private readonly bars = document.createElement('div');
    private readonly bodies = document.createElement('div');
    /** By depth. Depths that were never on top here have no page. */
    private pages: (PageView | undefined)[] = [];
    private stack: readonly string[] = [];
    /** Counts the motions, so that the end of one that was turned around is told from that of the last. */
    private motion = 0;
    private pulled: Pulled | null = null;

    constructor(readonly level: number) {
        this.element.className = level > 0 ? 'navigator modal' : 'navigator';
        this.bars.className = 'bars';
        this.bodies.className = 'bodies';
        this.element.append(this.bars, this.bodies);
    }

    /** Whether a state shows a screen other than the one on top here. */
    differs(screen: Screen): boolean { return !this.page || this.page.screen.id !== screen.id || screen.stack.join() !== this.stack.join(); }

    /** The page that the way back leads to. */
    get beneath(): PageView | undefined { return this.pages[this.stack.length - 2]; }

    /** The page of a screen that was left for others and comes on top again. */
    kept(screen: Screen): PageView | undefined {
        const page = screen.stack.length < this.stack.length ? this.pages[screen.stack.length - 1] : undefined;
        return page?.screen.className === screen.className && page.screen.id === screen.id ? page : undefined;
    }

    show(screen: Screen, revision: number, covered: boolean, make: () => PageView): void {
        if (!this.differs(screen)) {
            this.page?.update(screen, revision, covered);
            return;
        }
        // Whatever the hand holds goes where the state wants it.
        this.letGo();
        const old = this.page;
        const depth = screen.stack.length;
        const move: Move = !old || depth === this.stack.length ? 'replace' : depth > this.stack.length ? 'push' : 'pop';
        old?.leave();
        // What lies above the new top is gone; what lies beneath stays for the way back.
        const kept = this.kept(screen);
        const page = kept ?? make();
        for (const gone of this.pages.slice(depth - 1)) if (gone !== page) gone?.release();
        this.pages.length = Math.min(this.pages.length, depth);
        this.pages[depth - 1] = page;
        this.stack = screen.stack;
        this.page = page;
        // One that is still leaving stays where it is drawn.
        if (!page.body.isConnected) {
            this.bars.append(page.bar);
            this.bodies.append(page.body);
        }
        page.bar.inert = page.body.inert = false;
        if (page === kept) page.returned();
        page.update(screen, revision, covered);
        if (page === kept) page.fadeHighlight();
        if (old && old !== page) this.transit(old, page, move);
    }

    /** Gives up all pages. */
    release(): void { for (const page of this.pages) page?.release(); }

    private transit(old: PageView, page: PageView, move: Move): void {
        const leaving = [...this.bodies.children, ...this.bars.children].filter((part): part is HTMLElement => part !== page.body && part !== page.bar);
        for (const part of leaving) part.inert = true;
        this.motion += 1;
        const { motion } = this;
        const arrive = (): void => {
            if (motion !== this.motion) return;
            for (const part of leaving) part.remove();
            for (const part of [page.body, page.bar]) part.classList.remove('above');
            page.gate.open('transit');
        };
        if (move === 'replace') {
            arrive();
            return;
        }
        const [upper, lower] = move === 'push' ? [page, old] : [old, page];
        this.order(upper, lower);
        // A push can be turned around; a pop that goes on would take the way back of the screen that arrives.
        page.gate.shut('transit', move === 'push' ? 'open' : 'shut');
        const { above, below } = movers(upper, lower);
        const play = (parts: readonly Mover[], coming: boolean): void => {
            for (const { element, outside } of parts) glide(element, coming ? outside : inPlace, coming ? inPlace : outside, '--push-time', element === upper.body ? arrive : undefined);
        };
        play(below, move === 'pop');
        play(above, move === 'push');
    }

    private order(upper: PageView, lower: PageView | null): void {
        for (const part of [upper.body, upper.bar]) part.classList.add('above');
        if (lower) for (const part of [lower.body, lower.bar]) part.classList.remove('above');
    }

    /** Lets the top page be pulled aside from the one beneath it; `send` asks for the way back once it is meant. */
    pull(send: () => number | null): Pull | null {
        const { page } = this;
        if (!page || page.gate.isShut) return null;
        const under = this.beneath ?? null;
        if (under) {
            this.bars.prepend(under.bar);
            this.bodies.prepend(under.body);
            under.peek();
        }
        this.order(page, under);
        page.gate.shut('hand', 'shut');
        const { above, below } = movers(page, under);
        const holds = [...above.map(({ element, outside }) => hold(element, inPlace, outside)), ...below.map(({ element, outside }) => hold(element, outside, inPlace))];
        const pulled: Pulled = {
            page, command: null,
            giveUp: () => {
                this.pulled = null;
                const arrived = (): void => {
                    under?.bar.remove();
                    under?.body.remove();
                    for (const part of [page.body, page.bar]) part.classList.remove('above');
                    page.gate.open('hand');
                };
                for (const { element, outside } of below) glide(element, inPlace, outside, '--push-time');
                for (const { element, outside } of above) glide(element, outside, inPlace, '--push-time', element === page.body ? arrived : undefined);
            },
        };
        this.pulled = pulled;
        return {
            move: (share) => { if (this.pulled === pulled) for (const moveTo of holds) moveTo(share); },
            end: (isMeant) => {
                if (this.pulled !== pulled) return;
                pulled.command = isMeant ? send() : null;
                if (pulled.command === null) {
                    pulled.giveUp();
                    return;
                }
                for (const { element, outside } of below) glide(element, outside, inPlace, '--push-time');
                for (const { element, outside } of above) glideAway(element, outside, '--push-time');
            },
        };
    }

    /** To be called when a command was answered, after its state: a way back that was refused is taken back. */
    answered(command: number): void {
        if (this.pulled?.command === command) this.pulled.giveUp();
    }

    /** To be called when no answer will come any more. */
    giveUpPull(): void { this.pulled?.giveUp(); }

    private letGo(): void {
        this.pulled = null;
        this.page?.gate.open('hand');
    }
}

/** All navigation controllers, the presented ones above, and the motion between them. */
export class Stage {
    readonly element = document.createElement('main');
    /** Shut while something that was presented above is on its way out. */
    readonly gate = new Gate([this.element]);
    private navigators: Navigator[] = [];
    /** Counts the dismissals, so that the end of one is told from that of the last. */
    private dismissal = 0;
    /** The form that the user has pulled aside. */
    private pulled: Pulled | null = null;

    constructor(private readonly view: View, private readonly requests: PageRequests) {
        this.element.className = 'stage';
        document.addEventListener('keydown', (event) => this.escape(event));
    }

    get page(): PageView | null { return this.navigators.at(-1)?.page ?? null; }

    /** Whether showing a screen would bring another page on top. */
    changes(screen: Screen): boolean {
        const top = this.navigators.at(-1);
        return !top || top.level !== screen.modals || top.differs(screen);
    }

    /** The rows that a screen needs to be shown: the first ones, unless it has been shown before. */
    needs(screen: Screen): Window {
        const known = this.navigators.find((navigator) => navigator.level === screen.modals);
        if (known?.kept(screen) || (known && !known.differs(screen))) return { from: 0, count: 0 };
        return { from: 0, count: Math.min(screen.count, wholeListLimit) };
    }

    /** The rows that the screen will be wanted for that the way back leads to. */
    get beneath(): Window {
        const page = this.navigators.at(-1)?.beneath ?? this.navigators.at(-2)?.page;
        return page?.wanted ?? firstWindow;
    }

    /** Shows a state's screen, and gives the focus to a page that comes on top; `covered` tells that something is presented above it. */
    show(screen: Screen, revision: number, covered: boolean): void {
        // A form that stays for another screen on it goes back to its place.
        if (this.pulled && screen.modals >= (this.navigators.at(-1)?.level ?? 0) && this.changes(screen)) this.pulled.giveUp();
        const before = this.page;
        const hadFocus = document.activeElement === document.body || this.element.contains(document.activeElement);
        const make = (): PageView => new PageView(screen, this.view, this.requests);
        const top = this.navigators.at(-1);
        if (top && screen.modals < top.level) this.dismiss(screen.modals);
        let navigator = this.navigators.at(-1);
        const beneath = navigator;
        if (!navigator || navigator.level < screen.modals) navigator = this.present(screen, before);
        navigator.show(screen, revision, covered, make);
        if (beneath && navigator !== beneath) this.rise(navigator, beneath);
        const page = this.page;
        if (!before || !page || page === before || !hadFocus) return;
        if (page.lastFocus) page.focusWhereLeft();
        else page.focusHeading();
    }

    /** Takes the one way back that there is, as the user would: to the screen beneath, or out of the form; null where nothing could be sent. */
    goBack(): number | null {
        const screen = this.page?.screen;
        if (screen?.bar.back) return this.view.act({ do: 'back' });
        return this.cancel();
    }

    /** Lets what goBack() leaves be pulled aside. */
    pull(): Pull | null {
        const navigator = this.navigators.at(-1);
        const page = navigator?.page;
        if (!navigator || !page || this.element.closest('[inert]')) return null;
        if (page.screen.bar.back) return navigator.pull(() => this.goBack());
        return this.canCancel ? this.pullForm(navigator, page) : null;
    }

    /** To be called when a command was answered, after its state. */
    answered(command: number): void {
        this.navigators.at(-1)?.answered(command);
        if (this.pulled?.command === command) this.pulled.giveUp();
        this.page?.answered(command);
    }

    /** To be called when the connection is gone: what was on its way will not be answered. */
    disconnected(): void {
        this.navigators.at(-1)?.giveUpPull();
        this.pulled?.giveUp();
        this.page?.disconnected();
    }

    /** Gives up all pages, and tells what was typed on them and not sent. */
    release(): void { for (const navigator of this.navigators) navigator.release(); }

    /** Sends what is being typed, as if its field had been left; for what the user does without leaving it. */
    commitTyped(): void {
        const field = document.activeElement;
        if (field instanceof HTMLInputElement && field.classList.contains('field') && this.element.contains(field)) field.blur();
    }

    /** Draws the top page again, after something it depends on beside the state has changed. */
    redraw(): void { this.page?.draw(); }

    // A sheet that can be cancelled is cancelled; nothing else on a screen is pressed by Escape.
    private escape(event: KeyboardEvent): void {
        if (event.key !== 'Escape' || event.defaultPrevented || event.isComposing || this.element.closest('[inert]') || !this.canCancel) return;
        event.preventDefault();
        this.cancel();
    }

    private get cancelItem(): { side: 'left' | 'right'; item: number } | null {
        const screen = this.page?.screen;
        if (!screen || screen.modals === 0) return null;
        for (const side of ['left', 'right'] as const) {
            const item = screen.bar[side].findIndex((each) => each.system === systemItem.cancel);
            if (item >= 0) return { side, item };
        }
        return null;
    }

    private get canCancel(): boolean { return this.cancelItem !== null; }

    private cancel(): number | null {
        const { cancelItem } = this;
        return cancelItem ? this.view.act({ do: 'bar', ...cancelItem }) : null;
    }

    private pullForm(navigator: Navigator, page: PageView): Pull | null {
        if (page.gate.isShut) return null;
        const covered = this.navigators.at(-2);
        covered?.element.classList.remove('covered');
        page.gate.shut('hand', 'shut');
        const moveTo = hold(navigator.element, inPlace, aside());
        const pulled: Pulled = {
            page, command: null,
            giveUp: () => {
                this.pulled = null;
                glide(navigator.element, aside(), inPlace, '--push-time', () => {
                    covered?.element.classList.add('covered');
                    page.gate.open('hand');
                });
            },
        };
        this.pulled = pulled;
        return {
            move: (share) => { if (this.pulled === pulled) moveTo(share); },
            end: (isMeant) => {
                if (this.pulled !== pulled) return;
                pulled.command = isMeant ? this.cancel() : null;
                if (pulled.command === null) pulled.giveUp();
                else glideAway(navigator.element, aside(), '--push-time');
            },
        };
    }

    private present(screen: Screen, covered: PageView | null): Navigator {
        const navigator = new Navigator(screen.modals);
        covered?.leave();
        this.navigators.push(navigator);
        this.element.append(navigator.element);
        return navigator;
    }

    private rise(navigator: Navigator, covered: Navigator): void {
        const { page } = navigator;
        covered.element.inert = true;
        page?.gate.shut('sheet', 'open');
        glide(navigator.element, below(), inPlace, '--sheet-time', () => {
            covered.element.classList.add('covered');
            page?.gate.open('sheet');
        });
    }

    private dismiss(level: number): void {
        const gone = this.navigators.filter((navigator) => navigator.level > level);
        this.navigators = this.navigators.filter((navigator) => navigator.level <= level);
        let revealed = this.navigators.at(-1);
        if (!revealed || revealed.level < level) {
            // The page was opened on a modal; what lies beneath has not been seen yet.
            revealed = new Navigator(level);
            this.navigators.push(revealed);
            gone[0]?.element.before(revealed.element);
        }
        revealed.element.inert = false;
        revealed.element.classList.remove('covered');
        const { page } = revealed;
        page?.returned();
        // A form that was pulled aside goes on to there.
        const away = this.pulled?.command != null ? aside : below;
        this.pulled = null;
        this.dismissal += 1;
        const { dismissal } = this;
        page?.gate.shut('sheet', 'shut');
        for (const navigator of gone) {
            navigator.element.inert = true;
            navigator.page?.leave();
            navigator.release();
            glide(navigator.element, inPlace, away(), '--sheet-time', () => {
                navigator.element.remove();
                // One that came down again meanwhile has a motion of its own.
                if (dismissal === this.dismissal) page?.gate.open('sheet');
            });
        }
        page?.fadeHighlight();
    }
}
