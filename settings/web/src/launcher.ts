// SPDX-License-Identifier: MIT
// Opens the workbench beside the phone, where the window is wide enough. Its code is fetched when it is first opened, and all
// that the phone's own page holds of it is this: the button, the key, and the word in the address.
import { html, render } from 'lit-html';
import type { Beside } from './beside';
import { bench } from './icons';
import type { Workbench } from './workbench/workbench';

/** The address has it as ?workbench=TAB, so that a reload finds it open on the same tab. */
const parameter = 'workbench';
const roomy = matchMedia('(min-width: 1000px)');

export function enableWorkbench(beside: Beside): void { new Launcher(beside); }

class Launcher {
    private readonly place = document.createElement('div');
    private workbench: Workbench | null = null;
    private coming = false;
    private hasEnded = false;
    /** The tab that is open, or was the last time; null while the workbench is closed. */
    private tab = this.inAddress();
    private lastTab = this.tab ?? '';

    constructor(private readonly beside: Beside) {
        this.place.className = 'workbench-place';
        this.place.dataset['beside'] = '';
        beside.phone.parentElement?.append(this.place);
        window.addEventListener('keydown', (event) => this.key(event), { capture: true });
        // An entry of the history that was made before has another address.
        window.addEventListener('popstate', () => this.writeAddress());
        roomy.addEventListener('change', () => this.show(false));
        this.show(false);
        beside.onEnded(() => this.end());
    }

    private get isOpen(): boolean { return this.tab !== null && roomy.matches && !this.hasEnded; }

    private inAddress(): string | null { return new URLSearchParams(location.search).get(parameter); }

    private key(event: KeyboardEvent): void {
        if (event.key !== 'F2' || event.repeat || event.ctrlKey || event.altKey || event.metaKey || event.shiftKey || !roomy.matches || this.hasEnded) return;
        event.preventDefault();
        event.stopPropagation();
        this.toggle();
    }

    private toggle(): void {
        const hadFocus = this.place.contains(document.activeElement);
        this.tab = this.tab === null ? this.lastTab : null;
        this.writeAddress();
        this.show(true);
        if (this.tab === null && hadFocus) this.place.querySelector<HTMLElement>('.workbench-button')?.focus();
    }

    private show(focus: boolean): void {
        render(html`<button class="workbench-button" type="button" lang="en" title="Workbench (F2)" aria-label="Workbench" aria-expanded=${this.isOpen}
            aria-keyshortcuts="F2" @click=${() => this.toggle()}>${bench()}</button>`, this.place);
        if (this.workbench) this.workbench.setOpen(this.isOpen, focus);
        else if (this.isOpen) void this.load(focus);
    }

    // There is nothing any more that it could show.
    private end(): void {
        this.hasEnded = true;
        this.workbench?.setOpen(false, false);
        this.place.remove();
    }

    private async load(focus: boolean): Promise<void> {
        if (this.coming) return;
        this.coming = true;
        try {
            const { Workbench } = await import('./workbench/workbench');
            await Workbench.loadStyles();
            this.workbench = new Workbench(this.beside, this.place, this.lastTab, {
                chosen: (tab) => {
                    this.lastTab = tab;
                    if (this.tab !== null) this.tab = tab;
                    this.writeAddress();
                },
                closed: () => this.toggle(),
            });
            this.workbench.setOpen(this.isOpen, focus);
        } catch {
            // The server is not there; the next press asks for it again.
            this.tab = null;
            this.writeAddress();
        }
        this.coming = false;
        this.show(false);
    }

    private writeAddress(): void {
        const address = new URL(location.href);
        if (this.tab === null) address.searchParams.delete(parameter);
        else address.searchParams.set(parameter, this.tab);
        if (address.href !== location.href) history.replaceState(history.state, '', address);
    }
}
