// SPDX-License-Identifier: MIT
import { html, render, type TemplateResult } from 'lit-html';
import { live } from 'lit-html/directives/live.js';
import type { Beside } from '../beside';
import type { Bag } from '../protocol';
import { contrasts, cutTexts, focusOrder, frames, touchTargets, type Check, type Finding } from './checks';
import { bagOf, textOf } from './bags';
import { Layer } from './layer';
import { refusalOf, type Link } from './link';
import { Outcome } from './outcome';
import type { Pointer } from './pointer';
import { ToolTab, element, onceAFrame } from './tab';

interface Overlay { name: string; title: string; note: string; check: Check; findings: readonly Finding[]; isOn: boolean }

const overlay = (name: string, title: string, note: string, check: Check): Overlay => ({ name, title, note, check, findings: [], isOn: false });

/** Languages that nobody speaks, in which the application has every text that is localised. */
const pseudoLanguages = [
    { tag: 'en-XA', title: 'Pseudo-language', note: 'Texts that are localised are longer, accented and in brackets' },
    { tag: 'ar-XB', title: 'Pseudo-language from the right', note: 'The same, in screens that are mirrored' },
];
const isPseudo = (tag: string): boolean => pseudoLanguages.some((each) => each.tag === tag);

/** How many findings of one kind are listed. */
const listed = 100;

/** Draws over the phone what is to be seen of it: frames, small touch targets, weak contrasts, the order of focus, texts that are cut. */
export class OverlaysTab extends ToolTab {
    private readonly layer: Layer;
    private readonly observer: MutationObserver;
    private readonly schedule = onceAFrame(() => this.look());
    private readonly overlays: readonly Overlay[] = [
        overlay('frames', 'Frames', 'Boxes of texts and of controls, with their sizes in points', frames),
        overlay('touch', 'Touch targets', 'What a finger has to hit and that is under 44 points', touchTargets),
        overlay('contrast', 'Contrast', 'Texts under 4.5 to 1; over a picture it cannot be told (?)', contrasts),
        overlay('focus', 'Order of focus', 'Where the Tab key goes', focusOrder),
        overlay('cut', 'Cut texts', 'Texts of which a part does not show', cutTexts),
    ];
    /** Those that the device is set to, the one that is spoken first. */
    private languages: readonly string[] = [];
    /** The one that was asked for, until that is answered. */
    private wanted: string | null = null;
    private readonly outcome: Outcome;
    private isOpen = false;
    private shown = '';

    constructor(private readonly link: Link, private readonly beside: Beside, place: HTMLElement, private readonly pointer: Pointer) {
        super('Overlays', 'wb-overlays wb-scroll');
        this.outcome = new Outcome(link, () => this.draw());
        link.listen({ shot: ({ source }) => this.takeLanguages(bagOf(source['device'])) });
        this.layer = new Layer(beside, place, 'wb-overlay-layer');
        this.observer = new MutationObserver(() => this.schedule());
        beside.phone.addEventListener('scroll', () => this.schedule(), { capture: true, passive: true });
        this.draw();
    }

    setVisible(isVisible: boolean): void { if (!isVisible) this.pointer.lightUp(null); }

    /** Nothing lies over the phone while the workbench is closed. */
    setOpen(isOpen: boolean): void {
        this.isOpen = isOpen;
        this.follow();
    }

    moved(): void { this.schedule(); }

    // Another page, or a script, may set it too.
    private takeLanguages(device: Bag | null): void {
        const first = textOf(device?.['language']);
        const all = Array.isArray(device?.['languages']) ? device['languages'].filter((tag): tag is string => typeof tag === 'string') : [];
        const languages = all.length > 0 ? all : first === null ? [] : [first];
        if (languages.join() === this.languages.join()) return;
        this.languages = languages;
        this.draw();
    }

    /** The device's own languages stay behind it, so that whoever switches it off finds them. */
    private speak(tag: string, isOn: boolean): void {
        const own = this.languages.filter((each) => !isPseudo(each));
        const languages = isOn ? [tag, ...own] : own;
        this.wanted = languages[0] ?? 'en';
        const isSent = this.link.send({ do: 'device', set: { languages: languages.length > 0 ? languages : ['en'] } }, (answer) => {
            this.wanted = null;
            const refusal = refusalOf(answer);
            this.outcome.say(refusal ?? textOf(answer?.['pathEnded']) ?? '', refusal !== null);
        });
        if (isSent) return;
        this.wanted = null;
        this.outcome.say('There is no connection.', true);
    }

    private get isNeeded(): boolean { return this.isOpen && this.overlays.some(({ isOn }) => isOn); }

    private toggle(each: Overlay): void {
        each.isOn = !each.isOn;
        each.findings = [];
        this.shown = '';
        this.draw();
        this.follow();
    }

    private follow(): void {
        this.observer.disconnect();
        if (this.isNeeded) this.observer.observe(this.beside.phone, { subtree: true, childList: true, attributes: true, characterData: true });
        else this.layer.hide();
        this.schedule();
    }

    private look(): void {
        if (!this.isNeeded) return;
        for (const each of this.overlays) if (each.isOn) each.findings = each.check(this.beside.phone);
        const found = this.overlays.flatMap(({ name, findings }) => findings.map((finding) => this.mark(name, finding)));
        this.layer.show(found);
        const text = this.overlays.map(({ findings }) => findings.map(({ name, measure }) => `${name} ${measure}`).join()).join(';');
        if (text !== this.shown) this.draw();
        this.shown = text;
        // What moves by itself is no mutation.
        if (this.beside.phone.getAnimations({ subtree: true }).some((animation) => animation.playState === 'running' && animation.effect?.getTiming().iterations !== Infinity)) this.schedule();
    }

    private mark(overlayName: string, { box, measure, kind }: Finding): HTMLElement {
        const part = element(`wb-found wb-found-${overlayName} wb-found-${kind}`);
        part.dataset['measure'] = measure;
        this.layer.place(part, box);
        return part;
    }

    private draw(): void {
        render(html`<p class="wb-hint">What is switched on is drawn over the phone as long as the workbench is open.</p>
            ${this.overlays.map((each) => this.template(each))}
            <p class="wb-hint">These are the phone's language, for whoever looks at it, until they are switched off.</p>
            ${pseudoLanguages.map(({ tag, title, note }) => html`<section class="wb-overlay" aria-label=${title}><label class="wb-switch-line">
                <input type="checkbox" .checked=${live((this.wanted ?? this.languages[0]) === tag)} @change=${(event: Event) => this.speak(tag, (event.target as HTMLInputElement).checked)}>
                <span class="wb-heading">${title}</span><span class="wb-note wb-space">${note}</span></label></section>`)}
            ${this.outcome.line()}`, this.element);
    }

    private template(each: Overlay): TemplateResult {
        const problems = each.findings.filter(({ isProblem }) => isProblem);
        const unknown = each.findings.filter(({ kind }) => kind === 'unknown').length;
        const count = !each.isOn ? '' : each.name === 'frames' || each.name === 'focus' ? String(each.findings.length)
            : `${problems.length === 0 ? 'none' : problems.length}${unknown > 0 ? `, ${unknown} over pictures` : ''}`;
        return html`<section class="wb-overlay" aria-label=${each.title}>
            <label class="wb-switch-line"><input type="checkbox" .checked=${live(each.isOn)} @change=${() => this.toggle(each)}><span class="wb-heading">${each.title}</span>
                <span class="wb-note wb-space">${each.note}</span><span class="wb-count ${problems.length > 0 ? 'wb-bad' : ''}" role="status">${count}</span></label>
            ${problems.length === 0 ? '' : html`<ul class="wb-findings">${problems.slice(0, listed).map((finding) => html`<li><button class="wb-finding" type="button"
                @pointerenter=${() => this.pointer.lightUp(() => finding.element)} @focus=${() => this.pointer.lightUp(() => finding.element)}
                @pointerleave=${() => this.pointer.lightUp(null)} @blur=${() => this.pointer.lightUp(null)} @click=${() => finding.element.scrollIntoView({ block: 'nearest' })}>
                <code>${finding.measure}</code><span dir="auto">${finding.name}</span></button></li>`)}</ul>`}
        </section>`;
    }
}
