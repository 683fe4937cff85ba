// SPDX-License-Identifier: MIT
import { systemItem } from './bar';
import type { Pull } from './edgeswipe';
import { Gate } from './gate';
import { glide, glideAway, hold, inPlace, motionIsReduced, type Pose } from './motion';
import { Navigator, aside, type Pulled } from './navigator';
import { PageView, type PageRequests } from './page';
import type { Screen } from './protocol';
import { firstWindow, wholeListLimit, type Window } from './rowstore';
import type { View } from './view';

/** Where a form stands that is not shown yet, or no more. */
const below = (): Pose => (motionIsReduced() ? { transform: 'none', opacity: 0 } : { transform: 'translateY(100%)', opacity: 1 });

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
