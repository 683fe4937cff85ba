// SPDX-License-Identifier: MIT
import { html, nothing, type TemplateResult } from 'lit-html';
import type { Action, Presented, Prompt } from './protocol';
import { composerTemplate, leaveComposer, serviceName } from './composers';
import type { View } from './view';

const choose = (action: Action, view: View) => (): number | null => view.act({ do: 'choose', action: action.title });

const button = (action: Action, view: View): TemplateResult =>
    html`<button class="choice ${action.style}" type="button" dir="auto" @click=${choose(action, view)}>${action.title}</button>`;

function wordsTemplate(prompt: Prompt): TemplateResult {
    return html`
        ${prompt.title ? html`<h2 class="prompt-title" dir="auto">${prompt.title}</h2>` : nothing}
        ${prompt.message ? html`<p class="prompt-message" dir="auto">${prompt.message}</p>` : nothing}`;
}

function sheetTemplate(prompt: Prompt, view: View): TemplateResult {
    const closing = prompt.actions.filter((action) => action.style === 'cancel');
    const others = prompt.actions.filter((action) => action.style !== 'cancel');
    return html`
        <div class="sheet" tabindex="-1" role="dialog" aria-modal="true" aria-label=${presentedLabel(prompt, view)}>
            <div class="sheet-card">
                ${prompt.title || prompt.message ? html`<div class="prompt-words">${wordsTemplate(prompt)}</div>` : nothing}
                ${others.map((action) => button(action, view))}
            </div>
            ${closing.map((action) => html`<div class="sheet-card">${button(action, view)}</div>`)}
        </div>`;
}

function alertTemplate(prompt: Prompt, view: View): TemplateResult {
    const activity = prompt.kind === 'activity';
    return html`
        <div class="alert ${activity ? 'activity' : ''}" tabindex="-1" role="alertdialog" aria-modal="true" aria-busy=${activity ? 'true' : nothing}
            aria-label=${presentedLabel(prompt, view)}>
            <div class="prompt-words">
                ${activity ? html`<span class="spinner" aria-hidden="true"></span>` : nothing}
                ${wordsTemplate(prompt)}
            </div>
            ${prompt.actions.length === 0 ? nothing : html`
                <div class="alert-choices ${prompt.actions.length === 2 ? 'pair' : ''}">${prompt.actions.map((action) => button(action, view))}</div>`}
        </div>`;
}

export function presentedTemplate(presented: Presented, view: View): TemplateResult {
    switch (presented.kind) {
        case 'mail': case 'social': return composerTemplate(presented, view);
        case 'sheet': case 'confirmation': return sheetTemplate(presented, view);
        default: return alertTemplate(presented, view);
    }
}

/** What assistive technology calls it. */
export function presentedLabel(presented: Presented, view: View): string {
    switch (presented.kind) {
        case 'mail': return presented.subject;
        case 'social': return serviceName(presented.service);
        default: return [presented.title, presented.message].filter(Boolean).join('. ') || presented.actions[0]?.title || view.texts.loading;
    }
}

/** Makes a tap beside a sheet its cancelling way out. What comes down on the sheet and is lifted beside it is none. */
export function cancelByTapOutside(layer: HTMLElement, presented: () => Presented | null, view: View): void {
    let outside = false;
    layer.addEventListener('pointerdown', (event) => { outside = event.target === layer; });
    layer.addEventListener('click', (event) => {
        const shown = presented();
        if (event.target === layer && outside && (shown?.kind === 'sheet' || shown?.kind === 'confirmation')) escape(shown, view);
    });
}

/** What Escape does: the cancelling way out, where there is one. Gives the command that was sent for it. */
export function escape(presented: Presented, view: View): number | null {
    if (presented.kind === 'mail' || presented.kind === 'social') return leaveComposer(presented, view);
    const way = presented.actions.find((action) => action.style === 'cancel');
    return way ? choose(way, view)() : null;
}

/** Whether Escape does anything. */
export const canEscape = (presented: Presented): boolean => presented.kind === 'mail' || presented.kind === 'social' || presented.actions.some((action) => action.style === 'cancel');
