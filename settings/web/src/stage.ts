// SPDX-License-Identifier: MIT
import { systemItem } from './bar';
import { Gate } from './gate';
import { direction, glide, inPlace, motionIsReduced, type Pose } from './motion';
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
        for (const part of [upper.body, upper.bar]) part.classList.add('above');
        for (const part of [lower.body, lower.bar]) part.classList.remove('above');
        // A push can be turned around; a pop that goes on would take the way back of the screen that arrives.
        page.gate.shut('transit', move === 'push' ? 'open' : 'shut');
        const play = (element: Element | null, outside: Pose, coming: boolean, done?: () => void): void => {
            if (element) glide(element, coming ? outside : inPlace, coming ? inPlace : outside, '--push-time', done);
        };
        play(lower.bar.querySelector('.bar-content'), contentAt('beneath'), move === 'pop');
        play(upper.bar.querySelector('.bar-content'), contentAt('aside'), move === 'push');
        play(upper.bar.querySelector('.bar-fill'), { transform: 'none', opacity: 0 }, move === 'push');
        play(lower.body, beneath(), move === 'pop');
        play(upper.body, aside(), move === 'push', arrive);
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

    /** Sends what is being typed, as if its field had been left; for what the user does without leaving it. */
    commitTyped(): void {
        const field = document.activeElement;
        if (field instanceof HTMLInputElement && field.classList.contains('field') && this.element.contains(field)) field.blur();
    }

    /** Draws the top page again, after something it depends on beside the state has changed. */
    redraw(): void { this.page?.draw(); }

    // A sheet that can be cancelled is cancelled; nothing else on a screen is pressed by Escape.
    private escape(event: KeyboardEvent): void {
        const screen = this.page?.screen;
        if (event.key !== 'Escape' || event.defaultPrevented || event.isComposing || this.element.inert || !screen || screen.modals === 0) return;
        for (const side of ['left', 'right'] as const) {
            const item = screen.bar[side].findIndex((each) => each.system === systemItem.cancel);
            if (item < 0) continue;
            event.preventDefault();
            this.view.act({ do: 'bar', side, item });
            return;
        }
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
        this.dismissal += 1;
        const { dismissal } = this;
        page?.gate.shut('sheet', 'shut');
        for (const navigator of gone) {
            navigator.element.inert = true;
            navigator.page?.leave();
            navigator.release();
            glide(navigator.element, inPlace, below(), '--sheet-time', () => {
                navigator.element.remove();
                // One that came down again meanwhile has a motion of its own.
                if (dismissal === this.dismissal) page?.gate.open('sheet');
            });
        }
        page?.fadeHighlight();
    }
}
