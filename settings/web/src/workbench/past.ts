// SPDX-License-Identifier: MIT
import type { Beside } from '../beside';
import { forgetTheme } from '../colour';
import { Gate } from '../gate';
import { onImageArrived } from '../images';
import { onPatternMeasured } from '../patterns';
import { Presenter } from '../presenter';
import { parseState, type Bag, type Device } from '../protocol';
import { showShape } from '../shape';
import { Stage } from '../stage';
import { StatusBar } from '../statusbar';
import { loadTexts, textsFor } from '../texts';
import type { View } from '../view';
import { Layer } from './layer';
import { element } from './tab';

/** What the whole page takes from the device. */
interface Dress { theme: string; dir: string; lang: string; idiom: string }

const root = document.documentElement;

const dressNow = (): Dress => ({ theme: root.dataset['theme'] ?? 'light', dir: root.dir, lang: root.lang, idiom: root.dataset['idiom'] ?? 'phone' });
const isSame = (one: Dress, other: Dress): boolean => one.theme === other.theme && one.dir === other.dir && one.lang === other.lang && one.idiom === other.idiom;

function wear(dress: Dress): void {
    root.dataset['theme'] = dress.theme;
    root.dir = dress.dir;
    root.lang = dress.lang;
    showShape(dress.idiom);
    forgetTheme();
}

/** Shows the phone as it was, drawn from a recorded state over the phone as it is. It takes no input, and neither does the phone beneath it. */
export class Past {
    private readonly cover = element('wb-past');
    private readonly statusBar = new StatusBar();
    private readonly badge: Layer;
    private readonly label = element('wb-past-label');
    private readonly stage: Stage;
    private readonly presenter: Presenter;
    private readonly observer = new MutationObserver(() => this.dressed());
    private device: Device | null = null;
    private revision = 0;
    /** How the page is dressed for the present, and for what is shown; null while that is the present. */
    private present: Dress | null = null;
    private shown: Dress | null = null;

    constructor(private readonly beside: Beside, place: HTMLElement) {
        const language = (): string => this.device?.language ?? 'en';
        const scale = (): number => this.device?.scale ?? 2;
        // Nobody can do anything to it.
        const view: View = {
            get texts() { return textsFor(language()); },
            get language() { return language(); },
            get scale() { return scale(); },
            act: () => null, set: () => {}, pickTime: () => {}, pickTone: () => {}, announce: () => {}, held: () => false, unsaved: () => {},
            toneHeld: false, timeHeld: false,
        };
        this.stage = new Stage(view, { rows: () => false, find: (_page, _text, answered) => answered(null) });
        this.presenter = new Presenter(view, [this.stage.element], new Gate([this.stage.element]), () => {});
        // The page has a main part already.
        this.stage.element.setAttribute('role', 'presentation');
        this.cover.append(this.stage.element, this.statusBar.element, this.presenter.element);
        this.badge = new Layer(beside, place, 'wb-past-frame');
        const redraw = (): void => { if (this.isShown) this.stage.redraw(); };
        onImageArrived(redraw);
        onPatternMeasured(redraw);
    }

    get isShown(): boolean { return this.present !== null; }

    /** Shows a recorded state; `words` tell when that was. False when it is none. */
    show(source: Bag, words: string): boolean {
        const state = parseState(source);
        if (!state) return false;
        const { phone } = this.beside;
        const { device, screen, presented } = state;
        this.device = device;
        this.present ??= dressNow();
        this.shown = device ? { theme: device.darkMode ? 'dark' : 'light', dir: device.rightToLeft ? 'rtl' : 'ltr', lang: device.language, idiom: device.idiom } : this.present;
        wear(this.shown);
        this.observer.observe(root, { attributes: true, attributeFilter: ['data-theme', 'dir', 'lang', 'data-idiom'] });
        phone.inert = true;
        if (!this.cover.isConnected) phone.append(this.cover);
        // Each moment is another one, also where the application counted the same.
        this.revision += 1;
        this.stage.show(screen, this.revision, presented !== null);
        this.presenter.show(presented);
        if (device) this.statusBar.show({ ...device, clockRuns: false });
        this.statusBar.element.classList.toggle('light-content', screen.bar.statusBarStyle === 1 || device?.darkMode === true);
        this.label.textContent = words;
        this.badge.show([this.label]);
        // A language that has not been spoken yet comes from the server.
        void loadTexts(device?.language ?? 'en')?.then(() => this.stage.redraw());
        return true;
    }

    /** To be called when the window or the phone's place in it has changed. */
    place(): void { if (this.isShown) this.badge.show([this.label]); }

    /** Back to the present; true when something else was shown. */
    leave(): boolean {
        if (!this.present) return false;
        this.observer.disconnect();
        wear(this.present);
        this.present = this.shown = null;
        this.cover.remove();
        this.badge.hide();
        this.beside.phone.inert = false;
        this.beside.redraw();
        return true;
    }

    // The present goes on and dresses the page for itself.
    private dressed(): void {
        const now = dressNow();
        if (!this.shown || isSame(now, this.shown)) return;
        this.present = now;
        wear(this.shown);
    }
}
