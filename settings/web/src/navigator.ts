// SPDX-License-Identifier: MIT
import type { Pull } from './edgeswipe';
import { direction, glide, glideAway, hold, inPlace, motionIsReduced, type Pose } from './motion';
import type { PageView } from './page';
import type { Screen } from './protocol';

type Move = 'push' | 'pop' | 'replace';

const slide = (part: string): string => `translateX(calc(${part} * ${direction()}))`;

/** Where a page stands that lies above the one in sight and is not shown yet, or no more. */
export const aside = (): Pose => (motionIsReduced() ? { transform: 'none', opacity: 0 } : { transform: slide('100%'), opacity: 1 });
/** Where a page stands beneath the one in sight. */
const beneath = (): Pose => (motionIsReduced() ? inPlace : { transform: slide('-33.3%'), opacity: 1 });
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
export interface Pulled { page: PageView; command: number | null; giveUp(): void }

/** One navigation controller in the document: the pages of its stack, the top one shown. */
export class Navigator {
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
