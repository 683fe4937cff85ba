// SPDX-License-Identifier: MIT
// Arithmetic on colours, as the contrast rules of accessible text define it.

export type Rgb = readonly [number, number, number];

export const white: Rgb = [255, 255, 255];
export const black: Rgb = [0, 0, 0];

export function luminance(colour: Rgb): number {
    const linear = colour.map((part) => {
        const share = part / 255;
        return share <= 0.04045 ? share / 12.92 : ((share + 0.055) / 1.055) ** 2.4;
    }) as unknown as Rgb;
    return 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2];
}

export function contrast(one: Rgb, other: Rgb): number {
    const [low, high] = [luminance(one), luminance(other)].sort((a, b) => a - b) as [number, number];
    return (high + 0.05) / (low + 0.05);
}

export const mix = (over: Rgb, under: Rgb, alpha: number): Rgb =>
    over.map((part, at) => Math.round(part * alpha + (under[at] as number) * (1 - alpha))) as unknown as Rgb;

export function parseHex(text: string): { rgb: Rgb; alpha: number } {
    const part = (at: number): number => Number.parseInt(text.slice(at, at + 2), 16);
    return { rgb: [part(1), part(3), part(5)], alpha: text.length === 9 ? part(7) / 255 : 1 };
}
