// SPDX-License-Identifier: MIT
import { html, render } from 'lit-html';
import type { Tab } from './tab';
import { element } from './tab';

/** A row of tabs: one of them is in the order of the Tab key, and the arrow keys go from one to the next. */
export class TabList {
    readonly element = element('wb-tabs');
    chosen: Tab;

    constructor(private tabs: readonly Tab[], first: string, private readonly panel: HTMLElement, private readonly changed: (tab: Tab, before: Tab | null) => void) {
        this.chosen = tabs.find((tab) => tab.name === first) ?? tabs[0]!;
        this.element.setAttribute('role', 'tablist');
        this.element.setAttribute('aria-label', 'Tools');
        this.element.addEventListener('keydown', (event) => this.key(event));
        this.show(null);
    }

    choose(tab: Tab): void {
        if (tab === this.chosen) return;
        const before = this.chosen;
        this.chosen = tab;
        this.show(before);
    }

    /** Leaves the others out. */
    keepOnly(tab: Tab): void {
        if (this.tabs.length === 1) return;
        this.tabs = [tab];
        const before = this.chosen === tab ? null : this.chosen;
        this.chosen = tab;
        this.show(before);
    }

    focus(): void { this.element.querySelector<HTMLElement>('[aria-selected="true"]')?.focus(); }

    private show(before: Tab | null): void {
        render(this.tabs.map((tab) => {
            const isChosen = tab === this.chosen;
            return html`<button class="wb-tab" type="button" role="tab" id="wb-tab-${tab.name}" aria-selected=${isChosen} aria-controls="wb-panel" tabindex=${isChosen ? 0 : -1}
                @click=${() => this.choose(tab)}>${tab.title}</button>`;
        }), this.element);
        this.panel.setAttribute('aria-labelledby', `wb-tab-${this.chosen.name}`);
        this.changed(this.chosen, before);
        this.element.querySelector('[aria-selected="true"]')?.scrollIntoView({ block: 'nearest', inline: 'nearest' });
    }

    private key(event: KeyboardEvent): void {
        const at = this.tabs.indexOf(this.chosen);
        const targets: Readonly<Record<string, number>> = { ArrowLeft: at - 1, ArrowRight: at + 1, Home: 0, End: this.tabs.length - 1 };
        const target = targets[event.key];
        if (target === undefined || event.ctrlKey || event.altKey || event.metaKey) return;
        event.preventDefault();
        this.choose(this.tabs[(target + this.tabs.length) % this.tabs.length]!);
        this.focus();
    }
}
