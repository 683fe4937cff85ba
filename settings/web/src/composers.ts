// SPDX-License-Identifier: MIT
import { html, nothing, render, type TemplateResult } from 'lit-html';
import type { Attachment, Mail, Social } from './protocol';
import type { View } from './view';

const end = (result: string, view: View) => (): number | null => view.act({ do: 'compose', result });

function barTemplate(title: string, accept: string, cancel: () => void, view: View): TemplateResult {
    return html`
        <div class="composer-bar">
            <button class="bar-button" type="button" @click=${cancel}><span class="bar-text">${view.texts.cancel}</span></button>
            <h2 class="composer-title" dir="auto">${title}</h2>
            <button class="bar-button strong" type="button" @click=${end('sent', view)}><span class="bar-text">${accept}</span></button>
        </div>`;
}

/** The text of a mail that was written as HTML. The markup is parsed apart from the page, and nothing of it comes into it but text. */
function readable(mail: Mail): string {
    if (!mail.html) return mail.body;
    const parsed = new DOMParser().parseFromString(mail.body, 'text/html').body;
    for (const unseen of parsed.querySelectorAll('script, style')) unseen.remove();
    for (const block of parsed.querySelectorAll('br, p, div, li')) block.after('\n');
    return (parsed.textContent ?? '').trim();
}

function size(bytes: number, language: string): string {
    const [amount, unit] = bytes < 1000 ? [bytes, 'byte'] : bytes < 1e6 ? [bytes / 1e3, 'kilobyte'] : [bytes / 1e6, 'megabyte'];
    return new Intl.NumberFormat(language, { style: 'unit', unit, unitDisplay: 'short', maximumFractionDigits: 1 }).format(amount);
}

function attachmentTemplate(item: Attachment, view: View): TemplateResult {
    return html`
        <li>
            <p class="attachment-facts">
                <span class="attachment-name" dir="auto">${item.name}</span>
                <span class="small" dir="auto">${item.type}</span>
                <span class="small">${size(item.bytes, view.language)}</span>
            </p>
            ${item.bytes === 0 ? html`<p class="small">${view.texts.emptyFile}</p>` : nothing}
            ${item.preview ? html`<pre class="attachment-text" dir="auto" tabindex="0" role="region" aria-label=${item.name}>${item.preview}</pre>` : nothing}
            ${item.previewed < item.bytes ? html`<p class="small">${view.texts.beginning}</p>` : nothing}
        </li>`;
}

const field = (name: string, value: string): TemplateResult | typeof nothing =>
    value === '' ? nothing : html`<div><dt>${name}</dt><dd dir="auto">${value}</dd></div>`;

/** The mails whose end is being asked for. */
const asking = new WeakSet<Mail>();

/** Asks what becomes of the mail, or takes the question back. */
function ask(mail: Mail, view: View): void {
    const composer = document.querySelector('.layer:not([inert]) > .composer.mail');
    if (!(composer?.parentElement)) return;
    if (!asking.delete(mail)) asking.add(mail);
    render(mailTemplate(mail, view), composer.parentElement);
    composer.querySelector<HTMLElement>(asking.has(mail) ? '.draft-choice' : '.bar-button')?.focus({ preventScroll: true });
}

/** The question keeps the keyboard to itself; Escape takes it back. */
function askKey(event: KeyboardEvent, mail: Mail, view: View): void {
    if (event.key !== 'Escape' && event.key !== 'Tab') return;
    event.preventDefault();
    event.stopPropagation();
    if (event.key === 'Escape') {
        ask(mail, view);
        return;
    }
    const stops = [...(event.currentTarget as HTMLElement).querySelectorAll('button')];
    const at = stops.indexOf(document.activeElement as HTMLButtonElement);
    const next = event.shiftKey ? (at <= 0 ? stops.length - 1 : at - 1) : (at + 1) % stops.length;
    stops[next]?.focus();
}

function askTemplate(mail: Mail, view: View): TemplateResult {
    return html`
        <div class="draft-question" @click=${(event: Event) => { if (event.target === event.currentTarget) ask(mail, view); }}>
            <div class="sheet draft-choice" tabindex="-1" role="alertdialog" aria-modal="true" aria-label=${view.texts.keepDraft} @keydown=${(event: KeyboardEvent) => askKey(event, mail, view)}>
                <div class="sheet-card">
                    <div class="prompt-words"><p class="prompt-message">${view.texts.keepDraft}</p></div>
                    <button class="choice destructive" type="button" @click=${end('cancelled', view)}>${view.texts.deleteDraft}</button>
                    <button class="choice" type="button" @click=${end('saved', view)}>${view.texts.saveDraft}</button>
                </div>
                <div class="sheet-card"><button class="choice cancel" type="button" @click=${() => ask(mail, view)}>${view.texts.backToMail}</button></div>
            </div>
        </div>`;
}

function mailTemplate(mail: Mail, view: View): TemplateResult {
    return html`
        <div class="composer mail" tabindex="-1" role="dialog" aria-modal="true" aria-label=${mail.subject}>
            <div class="composer-main" ?inert=${asking.has(mail)}>
                ${barTemplate(mail.subject, view.texts.send, () => ask(mail, view), view)}
                <div class="composer-scroll" tabindex="0" role="group" aria-label=${mail.subject}>
                    <dl class="mail-fields">
                        ${field(view.texts.from, mail.from)} ${field(view.texts.to, mail.to.join(', '))} ${field(view.texts.subject, mail.subject)}
                    </dl>
                    <p class="mail-body" dir="auto">${readable(mail)}</p>
                    ${mail.attachments.length === 0 ? nothing : html`<ul class="attachments" role="list" aria-label=${view.texts.attachments}>
                        ${mail.attachments.map((item) => attachmentTemplate(item, view))}
                    </ul>`}
                </div>
            </div>
            ${asking.has(mail) ? askTemplate(mail, view) : nothing}
        </div>`;
}

function socialTemplate(social: Social, title: string, view: View): TemplateResult {
    const length = [...new Intl.Segmenter(view.language).segment(social.text)].length;
    return html`
        <div class="composer social" tabindex="-1" role="dialog" aria-modal="true" aria-label=${title}>
            ${barTemplate(title, view.texts.post, end('cancelled', view), view)}
            <p class="social-text" dir="auto">${social.text}</p>
            <p class="social-count"><span class="unseen">${view.texts.characters}: </span>${new Intl.NumberFormat(view.language).format(length)}</p>
        </div>`;
}

export const composerTemplate = (presented: Mail | Social, view: View): TemplateResult =>
    presented.kind === 'mail' ? mailTemplate(presented, view) : socialTemplate(presented, serviceName(presented.service), view);

/** What Escape does: a post is dropped, a mail's end is asked for, which sends nothing yet. */
export function leaveComposer(presented: Mail | Social, view: View): number | null {
    if (presented.kind === 'social') return end('cancelled', view)();
    ask(presented, view);
    return null;
}

/** The service's own name, from its identifier. */
export const serviceName = (service: string): string => service.replace(/^SLServiceType(Sina)?/, '');
