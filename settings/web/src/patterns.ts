// SPDX-License-Identifier: MIT
import { imageUrl } from './images';
import { luminance, type Rgb } from './rgb';

export interface PatternSample { brightest: Rgb; average: Rgb }

const samples = new Map<string, PatternSample | null>();
const listeners: (() => void)[] = [];

/** Whom to tell when a pattern has been measured, so that what depends on it is drawn again. */
export function onPatternMeasured(callback: () => void): void { listeners.push(callback); }

/** Each is measured once more when it is asked for. */
export function forgetPatterns(): void { samples.clear(); }

/** What a pattern looks like; undefined until its image has been loaded, or when there is none. */
export function patternSample(name: string): PatternSample | undefined {
    const known = samples.get(name);
    if (known === undefined) {
        const url = imageUrl(name);
        if (url === null) return undefined;
        samples.set(name, null);
        const image = new Image();
        image.addEventListener('load', () => {
            const sample = measure(image);
            if (!sample) return;
            samples.set(name, sample);
            for (const listener of listeners) listener();
        });
        image.src = url;
    }
    return known ?? undefined;
}

function measure(image: HTMLImageElement): PatternSample | null {
    const canvas = document.createElement('canvas');
    // A pattern repeats; a corner of a large one says enough.
    canvas.width = Math.min(256, image.naturalWidth || 64);
    canvas.height = Math.min(256, image.naturalHeight || 64);
    const context = canvas.getContext('2d', { willReadFrequently: true });
    if (!context) return null;
    context.drawImage(image, 0, 0);
    const { data } = context.getImageData(0, 0, canvas.width, canvas.height);
    let brightest: Rgb = [0, 0, 0];
    let peak = -1;
    const sums = [0, 0, 0];
    let weight = 0;
    for (let at = 0; at < data.length; at += 4) {
        const [red, green, blue, alpha] = data.subarray(at, at + 4) as unknown as [number, number, number, number];
        if (alpha === 0) continue;
        const share = alpha / 255;
        // What shines through a transparent spot may be white.
        const colour: Rgb = [red * share + 255 * (1 - share), green * share + 255 * (1 - share), blue * share + 255 * (1 - share)];
        const light = luminance(colour);
        if (light > peak) { peak = light; brightest = colour; }
        sums[0]! += red * share; sums[1]! += green * share; sums[2]! += blue * share;
        weight += share;
    }
    return weight > 0 ? { brightest, average: sums.map((sum) => Math.round(sum / weight)) as unknown as Rgb } : null;
}
