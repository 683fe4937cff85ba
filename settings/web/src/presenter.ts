// SPDX-License-Identifier: MIT
import { render } from 'lit-html';
import { animate } from './motion';
import { escape, presentedTemplate } from './prompts';
import type { Presented } from './protocol';
import type { View } from './view';

/** Shows what is presented over the screens, inside the phone's frame, and keeps the keyboard to it. */
export class Presenter {
    readonly element = document.createElement('div');
    private shown: { presented: Presented; text: string; layer: HTMLElement } | null = null;
    private returnTo: HTMLElement | null = null;

    /** `rest` is what the user cannot reach meanwhile; `fallbackFocus` takes the focus when what had it is gone. */
    constructor(private readonly view: View, private readonly rest: readonly HTMLElement[], private readonly fallbackFocus: () => void) {
        this.element.className = 'presenter';
        // On the document: a click beside the buttons takes the focus out of the dialog.
        document.addEventListener('keydown', (event) => this.key(event));
    }

    get active(): boolean { return this.shown !== null; }

    show(presented: Presented | null): void {
        const text = JSON.stringify(presented);
        if (this.shown?.text === text || (!this.shown && !presented)) {
            // The words around it may have changed with the language.
            if (this.shown) render(presentedTemplate(this.shown.presented, this.view), this.shown.layer);
            return;
        }
        const wasShown = this.shown !== null;
        if (this.shown) this.leave(this.shown.layer);
        this.shown = null;
        if (!presented) {
            for (const element of this.rest) element.inert = false;
            this.restoreFocus();
            return;
        }
        if (!wasShown) this.returnTo = document.activeElement instanceof HTMLElement ? document.activeElement : null;
        for (const element of this.rest) element.inert = true;
        const layer = document.createElement('div');
        layer.className = `layer layer-${presented.kind}`;
        this.element.append(layer);
        render(presentedTemplate(presented, this.view), layer);
        this.shown = { presented, text, layer };
        this.enter(layer);
        const dialog = layer.querySelector<HTMLElement>('[role="dialog"], [role="alertdialog"]');
        dialog?.focus({ preventScroll: true });
    }

    private enter(layer: HTMLElement): void {
        const card = layer.firstElementChild;
        animate(layer, [{ opacity: 0 }, { opacity: 1 }], '--alert-time');
        if (!card) return;
        if (card.classList.contains('alert')) animate(card, [{ transform: 'scale(1.15)' }, { transform: 'none' }], '--alert-time');
        else animate(card, [{ transform: 'translateY(100%)' }, { transform: 'none' }], '--sheet-time');
    }

    private leave(layer: HTMLElement): void {
        layer.inert = true;
        const card = layer.firstElementChild;
        if (card && !card.classList.contains('alert')) animate(card, [{ transform: 'none' }, { transform: 'translateY(100%)' }], '--sheet-time');
        animate(layer, [{ opacity: 1 }, { opacity: 0 }], card?.classList.contains('alert') ? '--alert-time' : '--sheet-time', () => layer.remove());
    }

    private restoreFocus(): void {
        const left = this.returnTo;
        this.returnTo = null;
        // A row's delete button is covered again by now; the row itself stands for it.
        const target = left?.closest('.row')?.querySelector<HTMLElement>('button.cell') ?? left;
        if (target && target !== document.body && target.isConnected && !target.closest('[inert]')) target.focus({ preventScroll: true });
        if (target === null || document.activeElement !== target) this.fallbackFocus();
    }

    private key(event: KeyboardEvent): void {
        if (!this.shown) return;
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
