// SPDX-License-Identifier: MIT
// Pictures are taken apart by the browser itself, in a page that has no policy to keep.

/** Opens the page in which pictures are worked on; close() ends it. */
export async function openDarkroom(session) {
    const context = await session.browser.newContext();
    const page = await context.newPage();
    await page.evaluate(() => {
        globalThis.load = async (type, base64) => {
            const image = new Image();
            image.src = `data:image/${type};base64,${base64}`;
            await image.decode();
            return image;
        };
        globalThis.pixels = (image) => {
            const canvas = new OffscreenCanvas(image.naturalWidth, image.naturalHeight);
            const context = canvas.getContext('2d', { willReadFrequently: true });
            context.drawImage(image, 0, 0);
            return context.getImageData(0, 0, canvas.width, canvas.height);
        };
    });
    return { page, close: () => context.close() };
}

/** A screenshot as the bytes of a WebP file. */
export async function asWebP(darkroom, picture) {
    const url = await darkroom.page.evaluate(async (base64) => {
        const image = await globalThis.load('png', base64);
        const canvas = document.createElement('canvas');
        [canvas.width, canvas.height] = [image.naturalWidth, image.naturalHeight];
        canvas.getContext('2d').drawImage(image, 0, 0);
        return canvas.toDataURL('image/webp', 0.8);
    }, picture.toString('base64'));
    return Buffer.from(url.slice(url.indexOf(',') + 1), 'base64');
}

/** How many of a screenshot's pixels stand out from its first one, at the top left, at a contrast of at least 3 to 1. */
export const standingOut = (darkroom, picture) => darkroom.page.evaluate(async (base64) => {
    const { data } = globalThis.pixels(await globalThis.load('png', base64));
    const linear = (part) => (part / 255 <= 0.04045 ? part / 255 / 12.92 : ((part / 255 + 0.055) / 1.055) ** 2.4);
    const light = (at) => 0.2126 * linear(data[at]) + 0.7152 * linear(data[at + 1]) + 0.0722 * linear(data[at + 2]);
    const ground = light(0);
    let count = 0;
    for (let at = 0; at < data.length; at += 4) {
        const [low, high] = [light(at), ground].sort((one, other) => one - other);
        if ((high + 0.05) / (low + 0.05) >= 3) count += 1;
    }
    return count;
}, picture.toString('base64'));

/** How many pixels of two screenshots differ so much that it shows; all of them if they are not of one size. */
export const differing = (darkroom, one, other) => darkroom.page.evaluate(async (both) => {
    const [first, second] = await Promise.all(both.map(async (base64) => globalThis.pixels(await globalThis.load('png', base64))));
    if (first.width !== second.width || first.height !== second.height) return first.width * first.height;
    let count = 0;
    for (let at = 0; at < first.data.length; at += 4) {
        if ([0, 1, 2].some((part) => Math.abs(first.data[at + part] - second.data[at + part]) > 64)) count += 1;
    }
    return count;
}, [one.toString('base64'), other.toString('base64')]);
