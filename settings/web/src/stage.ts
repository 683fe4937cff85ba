// SPDX-License-Identifier: MIT
import { systemItem } from './bar';
import { animate, direction, presentTransform } from './motion';
import { PageView, type RowRequest } from './page';
import type { Screen } from './protocol';
import type { View } from './view';

type Move = 'push' | 'pop' | 'replace';

const slide = (part: string): string => `translateX(calc(${part} * ${direction()}))`;

/** One navigation controller in the document: the pages of its stack, the top one shown. */
class Navigator {
    readonly element = document.createElement('div');
    page: PageView | null = null;
    private readonly bars = document.createElement('div');
    private readonly bodies = document.createElement('div');
    /** By depth. Depths that were never on top here have no page. */
    private pages: (PageView | undefined)[] = [];
    private stack: readonly string[] = [];

    constructor(readonly level: number) {
        this.element.className = 'navigator';
        this.bars.className = 'bars';
        this.bodies.className = 'bodies';
        this.element.append(this.bars, this.bodies);
    }

    /** Whether a state shows a screen other than the one on top here. */
    differs(screen: Screen): boolean { return !this.page || screen.stack.join() !== this.stack.join(); }

    show(screen: Screen, revision: number, make: () => PageView): void {
        if (!this.differs(screen)) {
            this.page?.update(screen, revision);
            return;
        }
        const old = this.page;
        const depth = screen.stack.length;
        const move: Move = !old || depth === this.stack.length ? 'replace' : depth > this.stack.length ? 'push' : 'pop';
        old?.leave();
        // What lies above the new top is gone; what lies beneath stays for the way back.
        const kept = move === 'pop' ? this.pages[depth - 1] : undefined;
        const page = kept?.screen.className === screen.className ? kept : make();
        for (const gone of this.pages.slice(move === 'push' ? depth - 1 : depth)) if (gone !== page && gone !== old) gone?.release();
        this.pages.length = Math.min(this.pages.length, depth);
        this.pages[depth - 1] = page;
        this.stack = screen.stack;
        this.page = page;
        this.bars.append(page.bar);
        this.bodies.append(page.body);
        page.bar.inert = page.body.inert = false;
        page.update(screen, revision);
        if (page === kept) page.returned();
        if (old && old !== page) this.transit(old, page, move);
    }

    private transit(old: PageView, page: PageView, move: Move): void {
        const leaving = [...this.bodies.children].filter((body): body is HTMLElement => body !== page.body);
        const leavingBars = [...this.bars.children].filter((bar): bar is HTMLElement => bar !== page.bar);
        for (const element of [...leaving, ...leavingBars]) element.inert = true;
        const clear = (): void => { for (const element of [...leaving, ...leavingBars]) element.remove(); };
        if (move !== 'push') old.release();
        if (move === 'replace') {
            clear();
            return;
        }
        const away = move === 'push' ? slide('-33.3%') : slide('100%');
        for (const body of leaving) {
            body.classList.toggle('above', move === 'pop');
            animate(body, [{ transform: presentTransform(body) }, { transform: away }], '--push-time');
        }
        page.body.classList.toggle('above', move === 'push');
        for (const bar of leavingBars) {
            const content = bar.querySelector('.bar-content');
            if (content) animate(content, [{ opacity: 1, transform: 'none' }, { opacity: 0, transform: slide(move === 'push' ? '-20%' : '20%') }], '--push-time');
        }
        const content = page.bar.querySelector('.bar-content');
        const fill = page.bar.querySelector('.bar-fill');
        if (content) animate(content, [{ opacity: 0, transform: slide(move === 'push' ? '20%' : '-20%') }, { opacity: 1, transform: 'none' }], '--push-time');
        if (fill) animate(fill, [{ opacity: 0 }, { opacity: 1 }], '--push-time');
        animate(page.body, [{ transform: slide(move === 'push' ? '100%' : '-33.3%') }, { transform: 'none' }], '--push-time', clear);
    }
}

/** All navigation controllers, the presented ones above, and the motion between them. */
export class Stage {
    readonly element = document.createElement('main');
    private navigators: Navigator[] = [];

    constructor(private readonly view: View, private readonly needsRows: RowRequest) {
        this.element.className = 'stage';
        document.addEventListener('keydown', (event) => this.escape(event));
    }

    get page(): PageView | null { return this.navigators.at(-1)?.page ?? null; }

    /** Whether showing a screen would bring another page on top. */
    changes(screen: Screen): boolean {
        const top = this.navigators.at(-1);
        return !top || top.level !== screen.modals || top.differs(screen);
    }

    /** Shows a state's screen, and gives the focus to a page that comes on top. */
    show(screen: Screen, revision: number): void {
        const before = this.page;
        const hadFocus = document.activeElement === document.body || this.element.contains(document.activeElement);
        const make = (): PageView => new PageView(screen, this.view, this.needsRows);
        const top = this.navigators.at(-1);
        if (top && screen.modals < top.level) this.dismiss(screen.modals);
        let navigator = this.navigators.at(-1);
        if (!navigator || navigator.level < screen.modals) {
            navigator = this.present(screen, before);
        }
        navigator.show(screen, revision, make);
        const page = this.page;
        if (!before || !page || page === before || !hadFocus) return;
        if (page.lastFocus) page.focusWhereLeft();
        else page.focusHeading();
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
        const beneath = this.navigators.at(-1);
        covered?.leave();
        this.navigators.push(navigator);
        this.element.append(navigator.element);
        if (beneath) {
            beneath.element.inert = true;
            animate(navigator.element, [{ transform: 'translateY(100%)' }, { transform: 'none' }], '--sheet-time', () => beneath.element.classList.add('covered'));
        }
        return navigator;
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
        for (const navigator of gone) {
            navigator.element.inert = true;
            navigator.page?.leave();
            const from = presentTransform(navigator.element);
            animate(navigator.element, [{ transform: from }, { transform: 'translateY(100%)' }], '--sheet-time', () => {
                navigator.element.remove();
                navigator.page?.release();
            });
        }
    }
}
