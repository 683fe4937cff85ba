// SPDX-License-Identifier: MIT
import { imageUrl } from './images';
import { patternSample } from './patterns';
import type { Colour } from './protocol';
import { black, contrast, luminance, mix, parseHex, white, type Rgb } from './rgb';
import type { Styles } from './style';

const moreContrast = matchMedia('(prefers-contrast: more)');

/** The contrasts that text of any size, and the parts of a control, need. */
const readable = (): number => (moreContrast.matches ? 7 : 4.5);
const discernible = (): number => (moreContrast.matches ? 4.5 : 3);

/** Whom to tell when the reader asks for more contrast, or no more, so that what depends on it is drawn again. */
export function onContrastChanged(callback: () => void): void { moreContrast.addEventListener('change', callback); }

const css = (colour: Rgb): string => `rgb(${colour.join(' ')})`;

const themeColours = new Map<string, Rgb>();

/** To be called when the style sheet may have other colours. */
export const forgetTheme = (): void => themeColours.clear();

// Before anybody who draws anew is told, as listeners are called in their order.
for (const media of [moreContrast, matchMedia('(forced-colors: active)'), matchMedia('(prefers-color-scheme: dark)')]) media.addEventListener('change', forgetTheme);

/** A colour of the theme, read from the custom property that the style sheet sets. Kept, as each reading makes the browser compute styles amid the drawing. */
export function themeColour(property: string): Rgb {
    const known = themeColours.get(property);
    if (known) return known;
    const value = getComputedStyle(document.documentElement).getPropertyValue(property).trim();
    const colour = /^#[0-9a-f]{6}$/i.test(value) ? parseHex(value).rgb : white;
    // Before the style sheet is there, the property has no value.
    if (value !== '') themeColours.set(property, colour);
    return colour;
}

/** The colour nearest to the wanted one that can be read on the ground. */
export function legible(wanted: Rgb, ground: Rgb): Rgb {
    const towards = luminance(ground) > 0.18 ? black : white;
    // Plain ink on the wrong ground is meant to be the text's colour, not a grey in between.
    if (contrast(wanted, ground) < readable() && (contrast(wanted, black) === 1 || contrast(wanted, white) === 1)) return towards;
    for (let step = 0; step <= 20; step += 1) {
        const candidate = mix(towards, wanted, step / 20);
        if (contrast(candidate, ground) >= readable()) return candidate;
    }
    return towards;
}

/** The solid colour that stands for a colour or pattern on a ground; null while it cannot be told. */
export function solid(colour: Colour, ground: Rgb): Rgb | null {
    if (colour === null) return null;
    if (typeof colour === 'string') {
        const { rgb, alpha } = parseHex(colour);
        return alpha === 0 ? null : mix(rgb, ground, alpha);
    }
    return patternSample(colour.pattern)?.average ?? null;
}

/** Text of the given colour on the ground, kept readable; null leaves the style sheet's colour. A pattern is too restless to read: its average stands for it. */
export function textColour(colour: Colour, ground: Rgb): string | null {
    const wanted = solid(colour, ground);
    return wanted ? css(legible(wanted, ground)) : null;
}

/** How dark a veil over a pattern has to be for white to stand out from its brightest spot; unless told otherwise, white text. */
export function veilFor(brightest: Rgb, wanted = readable()): number {
    for (let step = 0; step < 100; step += 1) if (contrast(white, mix(black, brightest, step / 100)) >= wanted) return step / 100;
    return 1;
}

// Covers a white pattern too; only until the image has been measured.
const cautiousVeil = 0.55;

const layer = (url: string, scale: number): string => `image-set(url("${url}") ${scale}x)`;

/** Fills with a colour, or with a repeated pattern under as much veil as white text needs. */
export function fill(colour: Colour, ground: Rgb, scale: number): Styles {
    if (colour === null) return {};
    if (typeof colour === 'string') return { 'background-color': colour };
    const sample = patternSample(colour.pattern);
    const veil = sample ? veilFor(mix(sample.brightest, ground, colour.alpha)) : cautiousVeil;
    const url = imageUrl(colour.pattern);
    const layers = url === null ? [] : [layer(url, scale)];
    if (colour.alpha < 1) layers.unshift(wash(ground, 1 - colour.alpha));
    if (veil > 0) layers.unshift(wash(black, veil));
    // The solid colour shows until the image comes, and should there be none.
    return { 'background-color': css(mix(black, sample?.average ?? ground, sample ? veil : 0.7)), 'background-image': layers.join(', ') || null };
}

const wash = (colour: Rgb, alpha: number): string => {
    const stop = `rgb(${colour.join(' ')} / ${alpha.toFixed(2)})`;
    return `linear-gradient(${stop}, ${stop})`;
};

/** A switch's "on" colours as the custom properties that its track reads. */
export function switchStyles(colour: Colour, scale: number): Styles {
    if (colour === null) return {};
    if (typeof colour === 'string') return { '--on-colour': colour };
    const sample = patternSample(colour.pattern);
    const veil = sample ? veilFor(sample.brightest, discernible()) : cautiousVeil;
    const url = imageUrl(colour.pattern);
    return { '--on-image': url === null ? wash(black, veil) : `${wash(black, veil)}, ${layer(url, scale)}` };
}

/** Whether white content goes on a bar of this colour. */
export function isDark(colour: Colour, ground: Rgb): boolean {
    if (colour !== null && typeof colour !== 'string') return true;
    const shown = solid(colour, ground) ?? ground;
    return contrast(white, shown) > contrast(black, shown);
}

/** The solid ground that stands for a filled bar when the readability of what is on it is judged. */
export function barGround(colour: Colour, ground: Rgb): Rgb {
    if (colour === null || typeof colour === 'string') return solid(colour, ground) ?? ground;
    const sample = patternSample(colour.pattern);
    if (!sample) return black;
    const brightest = mix(sample.brightest, ground, colour.alpha);
    return mix(black, brightest, veilFor(brightest));
}
