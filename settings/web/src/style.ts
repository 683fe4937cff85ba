// SPDX-License-Identifier: MIT
import { nothing, type ElementPart } from 'lit-html';
import { directive, Directive, PartType, type PartInfo } from 'lit-html/directive.js';

export type Styles = Readonly<Record<string, string | null>>;

class StyleDirective extends Directive {
    private applied = new Set<string>();

    constructor(part: PartInfo) {
        super(part);
        if (part.type !== PartType.ELEMENT) throw new Error('styles() stands on an element, not in an attribute');
    }

    render(_styles: Styles): typeof nothing { return nothing; }

    // Through the object model: the content-security policy forbids style attributes.
    override update(part: ElementPart, [styles]: [Styles]): typeof nothing {
        const target = (part.element as HTMLElement).style;
        for (const name of this.applied) if (styles[name] === undefined || styles[name] === null) target.removeProperty(name);
        this.applied.clear();
        for (const [name, value] of Object.entries(styles)) {
            if (value === null) continue;
            target.setProperty(name, value);
            this.applied.add(name);
        }
        return nothing;
    }
}

/** Sets style properties on the element it stands on; null leaves one unset. */
export const styles = directive(StyleDirective);

/** What the state gives for an input, also while the input is in use and does not show it. */
const given = new WeakMap<HTMLInputElement, string | boolean>();

class ControlDirective extends Directive {
    render(_value: string | boolean, _held: boolean): typeof nothing { return nothing; }

    override update(part: ElementPart, [value, held]: [string | boolean, boolean]): typeof nothing {
        const input = part.element as HTMLInputElement;
        given.set(input, value);
        // What the user is moving, or has moved and not yet heard back about, is theirs.
        if (!held && input.dataset['busy'] === undefined) restoreControl(input);
        return nothing;
    }
}

/** Shows a value in an input unless the input is in use (take()) or a change of it is on its way (held). */
export const controlValue = directive(ControlDirective);

/** Shows what the state gives for an input, in place of what the user has made of it. */
export function restoreControl(input: HTMLInputElement): void {
    const value = given.get(input);
    if (value === undefined) return;
    if (typeof value === 'boolean') {
        if (input.checked !== value) input.checked = value;
        return;
    }
    if (input.value !== value) input.value = value;
    // Kept apart from the field's own text, so that leaving the field can tell whether anything was typed.
    input.dataset['committed'] = input.value;
    if (input.type === 'range') fillSlider(input);
}

/** A control in use is left alone by whatever arrives meanwhile. */
export function take(input: HTMLElement): void { input.dataset['busy'] = ''; }
export function release(input: HTMLElement): void { delete input.dataset['busy']; }

/** Moves the coloured part of a slider's track to its thumb, and says where that stands. */
export function fillSlider(input: HTMLInputElement): void {
    const min = Number(input.min);
    const span = Number(input.max) - min;
    const share = span > 0 ? (Number(input.value) - min) / span : 0;
    input.style.setProperty('--fill', String(share));
    const words = new Intl.NumberFormat(document.documentElement.lang || undefined, { style: 'percent' }).format(share);
    if (input.getAttribute('aria-valuetext') !== words) input.setAttribute('aria-valuetext', words);
}
