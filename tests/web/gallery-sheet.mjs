// SPDX-License-Identifier: MIT
// The pictures of an appearance on one sheet, each scene a tile with its name above it. Made and compared in the browser.

const sheetWidth = 1640;
const gap = 12;
const caption = 20;
/** The most bytes that a sheet may have. */
const limit = 190_000;
/** A tile is another one when more than this share of its pixels differ so much that it shows. */
const tolerance = 0.005;

/** Where the tiles are, for pictures of one size. */
export function layOut(count, { width, height }) {
    const scale = width > height ? 0.45 : Math.min(0.5, 200 / width);
    const [tileWidth, tileHeight] = [Math.round(width * scale), Math.round(height * scale)];
    const columns = Math.floor((sheetWidth - gap) / (tileWidth + gap));
    const tiles = Array.from({ length: count }, (_unused, at) => ({
        x: gap + (at % columns) * (tileWidth + gap), y: gap + caption + Math.floor(at / columns) * (tileHeight + gap + caption), width: tileWidth, height: tileHeight,
    }));
    return { tiles, width: sheetWidth, height: Math.ceil(count / columns) * (tileHeight + gap + caption) + gap };
}

/** The sheet of these scenes ({name, picture}, the pictures all of a size), as the bytes of a WebP file. */
export async function makeSheet(darkroom, scenes, size) {
    const plan = layOut(scenes.length, size);
    const [type, data] = (await darkroom.page.evaluate(async ({ pictures, names, plan: { tiles, width, height }, captionHeight, most }) => {
        const canvas = document.createElement('canvas');
        [canvas.width, canvas.height] = [width, height];
        const context = canvas.getContext('2d');
        context.fillStyle = '#d8dae2';
        context.fillRect(0, 0, width, height);
        context.imageSmoothingQuality = 'high';
        context.font = '12px sans-serif';
        for (const [at, tile] of tiles.entries()) {
            const image = await globalThis.load('png', pictures[at]);
            context.drawImage(image, tile.x, tile.y, tile.width, tile.height);
            context.fillStyle = '#30323a';
            context.fillText(names[at], tile.x, tile.y - captionHeight / 3, tile.width);
        }
        // As good as goes into the room there is.
        for (let quality = 0.9; ; quality -= 0.1) {
            const url = canvas.toDataURL('image/webp', quality);
            if (url.length * 0.75 <= most || quality < 0.2) return url;
        }
    }, { pictures: scenes.map(({ picture }) => picture.toString('base64')), names: scenes.map(({ name }) => name), plan, captionHeight: caption, most: limit })).split(',');
    if (!type.startsWith('data:image/webp')) throw new Error(`the browser writes no WebP, but ${type}`);
    return Buffer.from(data, 'base64');
}

/** The names of the scenes that look otherwise on one sheet than on the other. */
export async function differingTiles(darkroom, one, other, names, size) {
    const { tiles } = layOut(names.length, size);
    const shares = await darkroom.page.evaluate(async ({ both, places }) => {
        const [first, second] = await Promise.all(both.map(async (base64) => globalThis.pixels(await globalThis.load('webp', base64))));
        if (first.width !== second.width || first.height !== second.height) return places.map(() => 1);
        return places.map((tile) => {
            let count = 0;
            for (let y = tile.y; y < tile.y + tile.height; y += 1) {
                for (let x = tile.x; x < tile.x + tile.width; x += 1) {
                    const at = (y * first.width + x) * 4;
                    if ([0, 1, 2].some((part) => Math.abs(first.data[at + part] - second.data[at + part]) > 64)) count += 1;
                }
            }
            return count / (tile.width * tile.height);
        });
    }, { both: [one, other].map((bytes) => bytes.toString('base64')), places: tiles });
    return names.filter((_unused, at) => shares[at] > tolerance);
}
