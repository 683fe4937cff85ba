// SPDX-License-Identifier: MIT
import { html, nothing, type TemplateResult } from 'lit-html';
import { repeat } from 'lit-html/directives/repeat.js';
import { check } from './icons';
import { direction } from './motion';
import { visibleName } from './names';
import type { Tones } from './protocol';
import { TonePlayer } from './toneplayer';
import type { View } from './view';

/** The tones to choose from. The user hears each tone that he chooses here; one that is chosen elsewhere makes no sound. */
export class ToneList {
    private readonly player: TonePlayer;
    private names = new Map<string, string>();
    /** The entry that has the focus, undefined while none has. */
    private focused: string | null | undefined = undefined;

    constructor(private readonly view: View, private readonly redraw: () => void, private readonly redrawLater: () => void) {
        this.player = new TonePlayer(
            (identifier) => view.announce(view.texts.playing.replace('{name}', this.names.get(identifier) ?? '')),
            () => { this.fallSilent(); redraw(); },
        );
    }

    /** To be called when the list leaves the screen. */
    stop(): void {
        if (this.player.playing !== null) this.fallSilent();
    }

    /** Brings the chosen tone into sight, with as many before it as after it. */
    reveal(scroller: HTMLElement): void {
        const row = scroller.querySelector('.tone[aria-checked="true"]')?.closest('.row');
        if (!row) return;
        const box = row.getBoundingClientRect();
        const view = scroller.getBoundingClientRect();
        if (box.top >= view.top && box.bottom <= view.bottom) return;
        scroller.scrollTop += box.top - view.top - (view.height - box.height) / 2;
    }

    template(tones: Tones): TemplateResult {
        const { view } = this;
        this.names = new Map(tones.list.map((tone) => [tone.identifier, tone.name]));
        // Another tone has been chosen elsewhere, or this choice was refused.
        if (this.player.playing !== tones.selected && !view.toneHeld) this.stop();
        const entries = [...(tones.noneAtTop ? [null] : []), ...this.names.keys()];
        const reached = [this.focused, tones.selected, entries[0]].find((each) => each !== undefined && entries.includes(each));
        const entry = (identifier: string | null, name: string): TemplateResult => {
            const chosen = identifier === tones.selected;
            const playing = identifier !== null && identifier === this.player.playing;
            return html`<div class="row"><button class="cell tone" type="button" role="radio" aria-checked=${chosen} tabindex=${identifier === reached ? 0 : -1}
                @click=${() => this.choose(identifier)} @focus=${() => this.focus(identifier)}>
                <span class="words"><span class="title" dir="auto">${visibleName(name)}</span></span>
                ${playing ? html`<span class="playing" aria-hidden="true"><i></i><i></i><i></i><i></i></span>` : nothing}
                ${chosen ? html`<span class="mark check">${check()}</span>` : nothing}</button></div>`;
        };
        return html`<div class="tones" role="radiogroup" aria-label=${view.texts.alertTones} @keydown=${key} @focusout=${(event: FocusEvent) => this.blur(event)}>
            ${tones.noneAtTop ? html`<div class="group"><div class="head untitled"></div><div class="rows">${entry(null, view.texts.none)}</div></div>` : nothing}
            ${tones.list.length === 0 ? nothing : html`<div class="group">
                <div class="head"><h2 class="header" dir="auto">${view.texts.alertTones}</h2></div>
                <div class="rows">${repeat(tones.list, (tone) => tone.identifier, (tone) => entry(tone.identifier, tone.name))}</div></div>`}
        </div>`;
    }

    private choose(identifier: string | null): void {
        if (identifier === null || identifier === this.player.playing) this.stop();
        else this.player.play(identifier);
        this.view.pickTone(identifier);
        this.redraw();
    }

    private fallSilent(): void {
        this.player.stop();
        this.view.announce('');
    }

    private focus(identifier: string | null): void {
        if (this.focused === identifier) return;
        this.focused = identifier;
        this.redraw();
    }

    private blur(event: FocusEvent): void {
        if ((event.currentTarget as Element).contains(event.relatedTarget as Node | null)) return;
        this.focused = undefined;
        // It may be the drawing itself that takes the focused entry away.
        this.redrawLater();
    }
}

/** The arrow keys go from tone to tone. They choose none: each choice is kept, and makes a sound. */
function key(event: KeyboardEvent): void {
    if (event.ctrlKey || event.metaKey || event.altKey) return;
    const all = [...(event.currentTarget as Element).querySelectorAll<HTMLElement>('.tone')];
    const at = all.indexOf(event.target as HTMLElement);
    const ahead = direction() === 1 ? 'ArrowRight' : 'ArrowLeft';
    const behind = direction() === 1 ? 'ArrowLeft' : 'ArrowRight';
    const steps: Readonly<Record<string, number>> = { ArrowDown: at + 1, [ahead]: at + 1, ArrowUp: at - 1, [behind]: at - 1, Home: 0, End: all.length - 1 };
    const to = steps[event.key];
    if (to === undefined) return;
    event.preventDefault();
    all[(to + all.length) % all.length]?.focus();
}
