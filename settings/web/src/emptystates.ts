// SPDX-License-Identifier: MIT
import { html, type TemplateResult } from 'lit-html';
import { calendarPage, emptyTray, musicNote, radioWaves } from './icons';
import type { Screen, Service } from './protocol';
import type { Texts } from './texts';

interface Missing { icon(): TemplateResult; title: keyof Texts; hint: keyof Texts }

/** What is said of a service of which there is nothing: it comes from the machine and not from the user. */
const services: Readonly<Record<Service, Missing>> = {
    calendars: { icon: calendarPage, title: 'noCalendars', hint: 'noCalendarsHint' },
    networks: { icon: radioWaves, title: 'noNetworks', hint: 'noNetworksHint' },
    tones: { icon: musicNote, title: 'noTones', hint: 'noTonesHint' },
};

/** What stands on a screen in place of what it lacks; null when it lacks nothing. */
export function emptyState(screen: Screen, texts: Texts): TemplateResult | null {
    if (screen.missing !== null) {
        const missing = services[screen.missing];
        return html`<div class="notice missing">${missing.icon()}<h2 dir="auto">${texts[missing.title]}</h2><p>${withOptions(texts[missing.hint])}</p></div>`;
    }
    const empty = screen.count === 0 && screen.links.length === 0 && !screen.pane && !screen.tones;
    return empty ? html`<div class="notice missing">${emptyTray()}<p>${texts.empty}</p></div>` : null;
}

/** A sentence in which what stands between backticks is to be typed as it is. */
const withOptions = (sentence: string): (TemplateResult | string)[] =>
    sentence.split('`').map((part, at) => (at % 2 === 1 ? html`<code dir="ltr">${part}</code>` : part));
