// SPDX-License-Identifier: MIT
import { html, nothing, type TemplateResult } from 'lit-html';
import { barGround, fill, isDark, textColour, themeColour } from './colour';
import { backChevron, plus, share, stencil } from './icons';
import { imageIsComing, imageUrl, imageWord } from './images';
import { visibleName } from './names';
import type { Bar, BarItem, Screen } from './protocol';
import { styles } from './style';
import { systemItemText } from './texts';
import type { View } from './view';

/** The numbers of the system's own bar items that are told apart here. */
export const systemItem = { done: 0, cancel: 1, save: 3, add: 4, action: 9 } as const;

/** The navigation bar, with the room above it that the status bar covers. */
export function barTemplate(screen: Screen, view: View): TemplateResult {
    const { bar } = screen;
    const page = themeColour('--bar');
    const dark = isDark(bar.barTint, page);
    const ground = barGround(bar.barTint, page);
    return html`
        <div class="bar-fill ${bar.barTint ? 'tinted' : ''}" ${styles(fill(bar.barTint, page, view.scale))}></div>
        <div class="bar-content ${dark ? 'on-dark' : 'on-light'}" ${styles({ '--bar-tint': textColour(bar.tint, ground) })}>
            <div class="bar-side leading">
                ${bar.back ? backButton(bar.back, view) : nothing}
                ${bar.left.map((item, at) => barButton(item, 'left', at, view))}
            </div>
            ${heading(screen, view)}
            <div class="bar-side trailing">
                ${bar.right.map((item, at) => barButton(item, 'right', at, view)).reverse()}
            </div>
        </div>`;
}

function backButton(back: NonNullable<Bar['back']>, view: View): TemplateResult {
    // The screen beneath may have no title.
    const title = back.title || (back.image ? null : view.texts.back);
    return html`
        <button class="bar-button back way-back" type="button" @click=${() => view.act({ do: 'back' })}>
            ${backChevron()}
            ${title === view.texts.back ? nothing : html`<span class="unseen">${view.texts.back}: </span>`}
            ${back.image ? html`${stencil(back.image)}<span class="unseen">${imageWord(back.image)}</span>` : nothing}
            ${title === null ? nothing : html`<span class="bar-text" dir="auto">${visibleName(title)}</span>`}
        </button>`;
}

function barButton(item: BarItem, side: 'left' | 'right', at: number, view: View): TemplateResult {
    const press = (): void => { view.act({ do: 'bar', side, item: at }); };
    const strong = item.style === 2 || item.system === systemItem.done || item.system === systemItem.save;
    return html`<button class="bar-button ${strong ? 'strong' : ''} ${item.system === systemItem.cancel ? 'way-back' : ''}" type="button" data-side=${side} data-item=${at} @click=${press}>${face(item, view)}</button>`;
}

function face(item: BarItem, view: View): TemplateResult {
    if (item.title !== null) return html`<span class="bar-text" dir="auto">${item.title}</span>`;
    if (item.image !== null) return html`${stencil(item.image)}<span class="unseen">${imageWord(item.image)}</span>`;
    const text = systemItemText(view.texts, item.system ?? 0);
    if (item.system === systemItem.add) return html`${plus()}<span class="unseen">${text}</span>`;
    if (item.system === systemItem.action) return html`${share()}<span class="unseen">${text}</span>`;
    return html`<span class="bar-text">${text}</span>`;
}

/** What a screen is called: in its bar, and in what is announced. */
export function screenTitle(screen: Screen): string {
    const { titleView } = screen.bar;
    if (titleView && 'label' in titleView) return titleView.label;
    return screen.title ?? (titleView ? imageWord(titleView.image) : '');
}

function heading(screen: Screen, view: View): TemplateResult {
    const { titleView } = screen.bar;
    const title = screenTitle(screen);
    return html`<h1 class="bar-title" tabindex="-1">
        ${titleView && 'image' in titleView
            ? html`<img class="logo ${imageIsComing(titleView.image) ? 'coming' : ''}" alt=${title} src=${imageUrl(titleView.image) ?? nothing}>`
            : html`<span class="bar-text ${title === '' ? 'nameless' : ''}" dir="auto">${title === '' ? view.texts.untitled : visibleName(title)}</span>`}
    </h1>`;
}
