// SPDX-License-Identifier: MIT
import { html, nothing, render } from 'lit-html';
import type { Build, BuildError } from './protocol';

/** "FILE:LINE:COLUMN", as far as it is known. */
export const placeOf = ({ file, line, column }: BuildError): string => [file, line, column].filter((part) => part !== null).join(':');

export const headingOf = (build: Build): string => (build.state === 'failed' ? 'The build failed' : 'What was built cannot be started');

/**
 * Tells who works on the program how it is with its renewal: a line at the top of the window while it is built, and above the phone what
 * went wrong, until it is mended. In English, as all that engineers are told.
 */
export class BuildBar {
    readonly element = document.createElement('aside');
    private readonly line = document.createElement('div');
    private readonly status = document.createElement('div');
    private readonly alert = document.createElement('div');
    /** What the user has put away. */
    private seen: string | null = null;
    private shown: Build | null = null;

    constructor() {
        this.element.className = 'build';
        this.element.lang = 'en';
        this.element.dir = 'ltr';
        this.element.setAttribute('aria-label', 'Build');
        this.line.className = 'build-line';
        this.line.hidden = true;
        this.status.setAttribute('role', 'status');
        this.alert.setAttribute('role', 'alert');
        this.element.hidden = true;
        this.element.append(this.line, this.alert, this.status);
        new ResizeObserver(() => this.makeRoom()).observe(this.element);
    }

    show(build: Build | null): void {
        this.shown = build;
        // There for as long as the program is watched, so that what comes later is read out.
        this.element.hidden = build === null;
        if (build?.pathEnded == null) this.seen = null;
        const isBuilding = build?.state === 'building';
        const error = build?.error ?? null;
        const note = build && build.pathEnded !== null && build.pathEnded !== this.seen ? build.pathEnded : null;
        this.line.hidden = !isBuilding;
        render(build && error ? html`<div class="build-note bad"><strong>${headingOf(build)}</strong>
            ${placeOf(error) === '' ? nothing : html`<code>${placeOf(error)}</code>`}<span class="build-text">${error.text}</span></div>` : nothing, this.alert);
        render(html`${isBuilding ? html`<span class="unseen">Building…</span>` : nothing}${note === null ? nothing : html`<div class="build-note">
            <span class="build-text">${note}</span><button class="build-close" type="button" aria-label="Close" @click=${() => this.putAway()}>×</button></div>`}`, this.status);
        this.makeRoom();
    }

    private putAway(): void {
        this.seen = this.shown?.pathEnded ?? null;
        this.show(this.shown);
    }

    /** The phone's place in the window begins below. */
    private makeRoom(): void {
        const height = this.alert.offsetHeight + this.status.offsetHeight;
        document.documentElement.style.setProperty('--build-height', `${height}px`);
    }
}
