// SPDX-License-Identifier: MIT
import { html, nothing, render } from 'lit-html';
import { screenTitle } from './bar';
import { BuildBar } from './buildbar';
import { forgetTheme, isDark, themeColour } from './colour';
import type { Status } from './connection';
import { broken, halfMoon, padlock } from './icons';
import type { Build, Device, Screen } from './protocol';
import { currentShape, followWindow, showShape } from './shape';
import { StatusBar } from './statusbar';
import { textsFor, type Texts } from './texts';

/** The phone around the screens: frame, status bar, messages about the connection, and the switch beside it. */
export class Frame {
    /** The phone itself, in its window. */
    readonly phone = document.createElement('div');
    private readonly screens = document.createElement('div');
    private presenter: HTMLElement | null = null;
    private readonly statusBar = new StatusBar();
    private readonly banner = document.createElement('div');
    private readonly trouble = document.createElement('div');
    private readonly live = document.createElement('div');
    private readonly buildBar = new BuildBar();
    private readonly side = document.createElement('div');
    /** The screen that was shown last beneath all forms. */
    private lowest: Screen | null = null;

    constructor(private readonly toggleDark: () => void, private readonly retry: () => void) {
        this.phone.className = 'phone';
        this.banner.className = 'banner';
        this.banner.setAttribute('role', 'status');
        this.trouble.className = 'trouble';
        this.live.className = 'unseen';
        this.live.setAttribute('aria-live', 'polite');
        this.side.className = 'side';
        document.documentElement.dataset['theme'] = matchMedia('(prefers-color-scheme: dark)').matches ? 'dark' : 'light';
        followWindow();
    }

    mount(root: HTMLElement, stage: HTMLElement, presenter: HTMLElement): void {
        this.screens.className = 'screens';
        this.screens.append(stage);
        this.presenter = presenter;
        this.phone.append(this.screens, this.trouble, this.statusBar.element, presenter, this.banner);
        root.append(this.buildBar.element, this.phone, this.side, this.live);
    }

    /**
     * While the connection is lost, nothing of the phone takes input, and of a recording, which `recording` names, it never does. The
     * banner says why.
     */
    showStatus(status: Status, hasScreen: boolean, recording: string | null, texts: Texts): void {
        this.phone.dataset['connection'] = status;
        const isLost = status === 'lost';
        for (const part of [this.screens, this.presenter, this.side]) part?.toggleAttribute('inert', isLost || recording !== null);
        this.side.hidden = recording !== null;
        const words = isLost ? texts.lost : status === 'silent' ? texts.silent : null;
        if (recording !== null && words === null) {
            render(html`<span class="banner-text"><span dir="auto">${texts.recording.replace('{file}', recording)}</span></span>`, this.banner);
            return;
        }
        render(words !== null && hasScreen ? html`<span class="banner-text"><span class="spinner small" aria-hidden="true"></span><span>${words}</span>
            ${isLost ? html`<button class="banner-button" type="button" @click=${this.retry}>${texts.retry}</button>` : nothing}</span>` : nothing, this.banner);
        if (hasScreen) return;
        render(status === 'lost' ? html`
            <div class="notice"><div role="alert">${broken()}<h1>${texts.unreachable}</h1><p>${texts.unreachableHint}</p></div>
                <button class="pill" type="button" @click=${this.retry}>${texts.retry}</button></div>`
            : html`<div class="notice"><span class="spinner" aria-hidden="true"></span><p role="status">${texts.connecting}</p></div>`, this.trouble);
    }

    /** What is left when nothing will come any more: these words, the texts that were lost, and nothing that could be pressed in vain. */
    showEnd(words: string, losses: HTMLElement, texts: Texts): void {
        this.phone.dataset['connection'] = 'ended';
        this.phone.replaceChildren(this.trouble, this.statusBar.element, losses);
        this.side.replaceChildren();
        this.showBuild(null);
        this.live.textContent = '';
        render(html`<main class="notice"><div role="alert">${padlock()}<h1 dir="auto">${words}</h1></div></main>`, this.trouble);
        this.statusBar.element.classList.toggle('light-content', isDark(null, themeColour('--page')));
        document.title = texts.settings;
    }

    /** `plain` tells that something in the system's plain look is presented. It fills a phone: the status bar then is above that. */
    showScreen(screen: Screen, plain: boolean, texts: Texts): void {
        render(nothing, this.trouble);
        const onPad = currentShape() === 'pad';
        const covered = plain && !onPad;
        if (screen.modals === 0) this.lowest = screen;
        // A pad's forms leave it above the screen beneath them; of a page that was opened on a form there is only the ground.
        const under = onPad && screen.modals > 0 ? this.lowest : screen;
        const light = (under?.bar.statusBarStyle === 1 && !covered) || isDark(null, themeColour(under ? '--bar' : '--page'));
        this.statusBar.element.classList.toggle('light-content', light);
        this.statusBar.element.classList.toggle('above', covered);
        document.title = screenTitle(screen) || texts.settings;
    }

    showBuild(build: Build | null): void { this.buildBar.show(build); }

    showDevice(device: Device, texts: Texts): void {
        this.statusBar.show(device);
        const root = document.documentElement;
        const looks = (): string => [root.dataset['theme'], root.dataset['idiom'], currentShape(), root.dataset['enclosed']].join();
        const before = looks();
        root.dataset['theme'] = device.darkMode ? 'dark' : 'light';
        showShape(device.idiom);
        // To read them again makes the browser compute all styles, with each state that comes.
        if (looks() !== before) forgetTheme();
        root.lang = device.language;
        root.dir = device.rightToLeft ? 'rtl' : 'ltr';
        // Where the page does not speak the language, the words are English; then so is the label's language.
        const own = texts === textsFor('en') ? 'en' : device.language;
        render(html`<button class="dark-switch" type="button" lang=${own} aria-pressed=${device.darkMode} title=${texts.darkMode} aria-label=${texts.darkMode}
            @click=${this.toggleDark}>${halfMoon()}</button>`, this.side);
    }

    announce(text: string): void { this.live.textContent = text; }
}
