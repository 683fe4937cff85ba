// SPDX-License-Identifier: MIT
import { html, render, type TemplateResult } from 'lit-html';
import { clearButton } from './clearbutton';
import { magnifier } from './icons';
import type { Found, Row } from './protocol';
import type { RowSource } from './rowsource';
import { wholeListLimit, type RowStore } from './rowstore';
import { controlValue } from './style';
import type { View } from './view';

/** A list of more rows than this has a search field above it. */
export const searchedFrom = 30;

/** Asks the application which rows of the screen have names that hold a text; the answer is told once, and is null when there is none. */
export type FindRequest = (text: string, answered: (found: readonly Found[] | null) => void) => void;

/** What the application has found of one list, by place. */
export class FoundRows implements RowSource {
    private found: readonly Found[] = [];
    private places = new Map<number, number>();

    constructor(private readonly store: RowStore) {}

    take(found: readonly Found[]): void {
        this.found = found;
        this.places = new Map(found.map((each, place) => [each.index, place]));
    }

    get count(): number { return this.found.length; }

    get whole(): boolean { return this.count <= wholeListLimit / 4; }

    placeOf(index: number): number { return this.places.get(index) ?? -1; }

    heightAt(place: number): number | undefined { return this.rowAt(place)?.height; }

    covers(from: number, count: number): boolean {
        return this.found.slice(Math.max(0, from), from + count).every((each) => this.store.isFresh(each.index));
    }

    at(place: number): Found | undefined { return this.found[place]; }

    /** What is known of the row; it may have become another one since it was found. */
    rowAt(place: number): Row | undefined {
        const each = this.found[place];
        const row = each && this.store.at(each.index);
        return row?.key === each?.key ? row : undefined;
    }
}

/** The search field of one list, and what is searched for. The field is the page's own: the screen has no row for it. */
export class Search {
    private readonly field = document.createElement('div');
    private text = '';
    /** What is being asked; a text typed meanwhile waits for the answer, so that fast typing asks no more than it can use. */
    private asking: string | null = null;
    private answered: string | null = null;
    /** The text whose rows are listed. */
    private shown: string | null = null;
    /** The screen's revision that was asked about. */
    private revision = -1;

    /** `changed` is told the rows to list, or null for the list itself; and whether they are those of the same text as the last ones. */
    constructor(private readonly view: View, private readonly find: FindRequest, private readonly changed: (found: readonly Found[] | null, renewed: boolean) => void) {
        this.field.className = 'search';
        this.field.setAttribute('role', 'search');
    }

    /** Asks again where the rows may have changed. */
    renew(revision: number): void {
        if (this.revision === revision) return;
        this.revision = revision;
        this.answered = null;
        this.ask();
    }

    /** The field in the document, drawn. */
    element(): HTMLElement {
        render(this.template(), this.field);
        return this.field;
    }

    private template(): TemplateResult {
        const { view } = this;
        return html`
            <div class="search-field">
                ${magnifier()}
                <input class="search-text" type="text" role="searchbox" dir="auto" autocomplete="off" autocapitalize="off" autocorrect="off" spellcheck="false" enterkeyhint="search"
                    placeholder=${view.texts.search} aria-label=${view.texts.search} ${controlValue(this.text, false)}
                    @input=${(event: Event) => this.type((event.target as HTMLInputElement).value)} @keydown=${(event: KeyboardEvent) => this.key(event)}>
                ${clearButton(view)}
            </div>`;
    }

    private type(text: string): void {
        this.text = text;
        this.ask();
        render(this.template(), this.field);
        if (text === '') {
            this.shown = this.answered = null;
            this.changed(null, false);
        }
    }

    private ask(): void {
        const { text } = this;
        if (text === '' || this.asking !== null || this.answered === text) return;
        this.asking = text;
        this.find(text, (found) => {
            this.asking = null;
            // What could not be asked is asked again with the next state or letter.
            if (found === null) return;
            this.answered = text;
            if (this.text === '') return;
            const renewed = text === this.shown;
            this.shown = text;
            const { texts, language } = this.view;
            if (!renewed) this.view.announce(found.length === 0 ? texts.noResults : texts.results.replace('{count}', new Intl.NumberFormat(language).format(found.length)));
            this.changed(found, renewed);
            this.ask();
        });
    }

    private key(event: KeyboardEvent): void {
        if (event.isComposing) return;
        if (event.key === 'Escape' && this.text !== '') {
            event.preventDefault();
            this.type('');
        }
        // A phone's keyboard goes away, and the results are seen.
        if (event.key === 'Enter') (event.target as HTMLElement).blur();
    }
}
