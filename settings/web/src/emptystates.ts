// SPDX-License-Identifier: MIT
import { html, type TemplateResult } from 'lit-html';
import { calendarPage, emptyTray, musicNote, radioWaves } from './icons';
import type { Row, Screen } from './protocol';
import type { Texts } from './texts';

interface Missing { in(screen: Screen, rows: readonly Row[]): boolean; icon(): TemplateResult; title: keyof Texts; hint: keyof Texts }

const cellKind = { link: 1, toggle: 6 } as const;
const without = (kind: number) => (_screen: Screen, rows: readonly Row[]): boolean => !rows.some((row) => row.kind === kind);

/** Screens that say what they lack, by their class. What they list comes from the machine and not from the user. */
const screens: Readonly<Record<string, Missing>> = {
    QuietrixCalendarsController: { in: without(cellKind.link), icon: calendarPage, title: 'noCalendars', hint: 'noCalendarsHint' },
    QuietrixWifiController: { in: without(cellKind.toggle), icon: radioWaves, title: 'noNetworks', hint: 'noNetworksHint' },
    QuietrixAlertToneController: { in: (screen) => screen.tones === null, icon: musicNote, title: 'noTones', hint: 'noTonesHint' },
};

/** What stands on a screen in place of what it lacks; null when it lacks nothing. `rows` are all its rows. */
export function emptyState(screen: Screen, rows: readonly Row[], texts: Texts): TemplateResult | null {
    const missing = screens[screen.className];
    if (missing?.in(screen, rows)) {
        return html`<div class="notice missing">${missing.icon()}<h2 dir="auto">${texts[missing.title]}</h2><p>${withOptions(texts[missing.hint])}</p></div>`;
    }
    const empty = screen.count === 0 && screen.links.length === 0 && !screen.pane && !screen.tones;
    return empty ? html`<div class="notice missing">${emptyTray()}<p>${texts.empty}</p></div>` : null;
}

/** A sentence in which what stands between backticks is to be typed as it is. */
const withOptions = (sentence: string): (TemplateResult | string)[] =>
    sentence.split('`').map((part, at) => (at % 2 === 1 ? html`<code dir="ltr">${part}</code>` : part));
