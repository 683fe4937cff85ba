// SPDX-License-Identifier: MIT
import { html, nothing, type TemplateResult } from 'lit-html';
import type { Mail, Social } from './protocol';
import type { View } from './view';

function barTemplate(title: string, accept: string, view: View): TemplateResult {
    const end = (result: string) => (): void => view.act({ do: 'compose', result });
    return html`
        <div class="composer-bar">
            <button class="bar-button" type="button" @click=${end('cancelled')}><span class="bar-text">${view.texts.cancel}</span></button>
            <h2 class="composer-title" dir="auto">${title}</h2>
            <button class="bar-button strong" type="button" @click=${end('sent')}><span class="bar-text">${accept}</span></button>
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

const mailTemplate = (mail: Mail, view: View): TemplateResult => html`
    <div class="composer mail" tabindex="-1" role="dialog" aria-modal="true" aria-label=${mail.subject}>
        ${barTemplate(mail.subject, view.texts.send, view)}
        <div class="composer-scroll" tabindex="0" role="group" aria-label=${mail.subject}>
            <dl class="mail-fields">
                <div><dt>${view.texts.to}</dt><dd dir="auto">${mail.to.join(', ')}</dd></div>
                <div><dt>${view.texts.subject}</dt><dd dir="auto">${mail.subject}</dd></div>
            </dl>
            <p class="mail-body" dir="auto">${readable(mail)}</p>
            ${mail.attachments.length === 0 ? nothing : html`<ul class="attachments" role="list" aria-label=${view.texts.attachments}>
                ${mail.attachments.map((item) => html`<li><span dir="auto">${item.name}</span><span class="size">${size(item.bytes, view.language)}</span></li>`)}
            </ul>`}
        </div>
    </div>`;

function socialTemplate(social: Social, title: string, view: View): TemplateResult {
    const length = [...new Intl.Segmenter(view.language).segment(social.text)].length;
    return html`
        <div class="composer social" tabindex="-1" role="dialog" aria-modal="true" aria-label=${title}>
            ${barTemplate(title, view.texts.post, view)}
            <p class="social-text" dir="auto">${social.text}</p>
            <p class="social-count"><span class="unseen">${view.texts.characters}: </span>${new Intl.NumberFormat(view.language).format(length)}</p>
        </div>`;
}

export const composerTemplate = (presented: Mail | Social, view: View): TemplateResult =>
    presented.kind === 'mail' ? mailTemplate(presented, view) : socialTemplate(presented, serviceName(presented.service), view);

/** The service's own name, from its identifier. */
export const serviceName = (service: string): string => service.replace(/^SLServiceType(Sina)?/, '');
