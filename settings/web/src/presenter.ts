// SPDX-License-Identifier: MIT
import { render } from 'lit-html';
import { isUserBeside } from './beside';
import type { Pull } from './edgeswipe';
import { Gate } from './gate';
import { glide, hold, inPlace, motionIsReduced, type Pose } from './motion';
import { placePopover } from './popover';
import { canEscape, cancelByTapOutside, escape, presentedTemplate } from './prompts';
import type { Presented } from './protocol';
import { currentShape } from './shape';
import type { View } from './view';

const unseen: Pose = { transform: 'none', opacity: 0 };
const below = (): Pose => ({ transform: motionIsReduced() ? 'none' : 'translateY(100%)', opacity: 1 });
const magnified = (): Pose => ({ transform: motionIsReduced() ? 'none' : 'scale(1.15)', opacity: 1 });
/** Whether a card appears where it is; else it comes from the edge of the screen. */
const appears = (card: Element | null): boolean => card?.matches(currentShape() === 'pad' ? '.alert, .sheet' : '.alert') === true;

/** Shows what is presented over the screens, inside the phone's frame, and keeps the keyboard to it. */
export class Presenter {
    readonly element = document.createElement('div');
    private shown: { presented: Presented; text: string; layer: HTMLElement; gate: Gate } | null = null;
    private returnTo: HTMLElement | null = null;
    private readonly leaving = new Set<HTMLElement>();
    /** What the user has pulled aside by hand, and that is answered or given up yet. */
    private pulled: { command: number | null; giveUp(): void } | null = null;

    /** `rest` is what the user cannot reach meanwhile, nor through `restGate` while the last layer leaves; `fallbackFocus` takes the focus when what had it is gone. */
    constructor(private readonly view: View, private readonly rest: readonly HTMLElement[], private readonly restGate: Gate, private readonly fallbackFocus: () => void) {
        this.element.className = 'presenter';
        // On the document: a click beside the buttons takes the focus out of the dialog.
        document.addEventListener('keydown', (event) => this.key(event));
        window.addEventListener('resize', () => this.place());
    }

    /** What the user sees above the screens. */
    get presented(): Presented | null { return this.shown?.presented ?? null; }

    show(presented: Presented | null): void {
        const text = JSON.stringify(presented);
        if (this.shown?.text === text || (!this.shown && !presented)) {
            // The words around it may have changed with the language.
            if (this.shown) render(presentedTemplate(this.shown.presented, this.view), this.shown.layer);
            this.place();
            return;
        }
        const wasShown = this.shown !== null;
        this.pulled = null;
        if (this.shown) this.leave(this.shown.layer);
        this.shown = null;
        if (!presented) {
            for (const element of this.rest) element.inert = false;
            this.restoreFocus();
            return;
        }
        const isBeside = isUserBeside();
        if (!wasShown) this.returnTo = document.activeElement instanceof HTMLElement && !isBeside ? document.activeElement : null;
        for (const element of this.rest) element.inert = true;
        const layer = document.createElement('div');
        layer.className = `layer layer-${presented.kind}`;
        this.element.append(layer);
        render(presentedTemplate(presented, this.view), layer);
        this.shown = { presented, text, layer, gate: new Gate([layer]) };
        cancelByTapOutside(layer, () => this.shown?.layer === layer ? this.shown.presented : null, this.view);
        this.place();
        this.enter(layer, this.shown.gate);
        const dialog = layer.querySelector<HTMLElement>('[role="dialog"], [role="alertdialog"]');
        if (!isBeside) dialog?.focus({ preventScroll: true });
    }

    /** Takes what is presented away, as Escape does; null where nothing could be sent. */
    goBack(): number | null { return this.shown ? escape(this.shown.presented, this.view) : null; }

    /** Lets what is presented be pulled away, where there is a way out of it. */
    pull(): Pull | null {
        if (!this.shown || this.shown.gate.isShut || this.element.closest('[inert]') || !canEscape(this.shown.presented)) return null;
        const { layer, gate } = this.shown;
        const card = layer.firstElementChild;
        const away = appears(card) ? magnified() : below();
        gate.shut('hand', 'shut');
        const holds = [hold(layer, inPlace, unseen), ...(card ? [hold(card, inPlace, away)] : [])];
        const pulled = {
            command: null as number | null,
            giveUp: () => {
                this.pulled = null;
                if (card) glide(card, away, inPlace, '--alert-time');
                glide(layer, unseen, inPlace, '--alert-time', () => gate.open('hand'));
            },
        };
        this.pulled = pulled;
        return {
            move: (share) => { if (this.pulled === pulled) for (const moveTo of holds) moveTo(share); },
            end: (isMeant) => {
                if (this.pulled !== pulled) return;
                pulled.command = isMeant ? this.goBack() : null;
                if (pulled.command === null) pulled.giveUp();
            },
        };
    }

    /** To be called when a command was answered, after its state. */
    answered(command: number): void { if (this.pulled?.command === command) this.pulled.giveUp(); }

    /** To be called when the connection is gone: what was on its way will not be answered. */
    disconnected(): void { this.pulled?.giveUp(); }

    /** A pad's sheet stands beside what it was asked for with. */
    private place(): void {
        if (this.shown) placePopover(this.shown.layer, this.returnTo);
    }

    private enter(layer: HTMLElement, gate: Gate): void {
        const card = layer.firstElementChild;
        const isInPlace = appears(card);
        gate.shut('presented', 'shut');
        const arrived = (): void => gate.open('presented');
        glide(layer, unseen, inPlace, '--alert-time', card ? undefined : arrived);
        if (!card) return;
        glide(card, isInPlace ? magnified() : below(), inPlace, isInPlace ? '--alert-time' : '--sheet-time', arrived);
    }

    private leave(layer: HTMLElement): void {
        layer.inert = true;
        const card = layer.firstElementChild;
        const isInPlace = appears(card);
        this.leaving.add(layer);
        this.restGate.shut('presented', 'shut');
        if (card) glide(card, inPlace, isInPlace ? inPlace : below(), isInPlace ? '--alert-time' : '--sheet-time');
        glide(layer, inPlace, unseen, isInPlace ? '--alert-time' : '--sheet-time', () => {
            layer.remove();
            this.leaving.delete(layer);
            if (this.leaving.size === 0) this.restGate.open('presented');
        });
    }

    private restoreFocus(): void {
        const left = this.returnTo;
        this.returnTo = null;
        if (isUserBeside()) return;
        // A row's delete button is covered again by now; the row itself stands for it.
        const target = left?.closest('.row')?.querySelector<HTMLElement>('button.cell') ?? left;
        if (target && target !== document.body && target.isConnected && !target.closest('[inert]')) target.focus({ preventScroll: true });
        if (target === null || document.activeElement !== target) this.fallbackFocus();
    }

    private key(event: KeyboardEvent): void {
        if (!this.shown || this.element.closest('[inert]')) return;
        if (event.key === 'Escape') {
            event.preventDefault();
            escape(this.shown.presented, this.view);
        }
        if (event.key === 'Tab') this.wrap(event);
    }

    // Inert keeps the focus off the rest of the phone; this keeps it off the window around the phone.
    private wrap(event: KeyboardEvent): void {
        const stops = [...(this.shown?.layer.querySelectorAll<HTMLElement>('button, [tabindex="0"]') ?? [])];
        const edge = event.shiftKey ? stops[0] : stops.at(-1);
        const outside = !stops.includes(document.activeElement as HTMLElement);
        if (stops.length === 0) event.preventDefault();
        else if (document.activeElement === edge || (outside && event.shiftKey)) {
            event.preventDefault();
            (event.shiftKey ? stops.at(-1) : stops[0])?.focus();
        }
    }
}
