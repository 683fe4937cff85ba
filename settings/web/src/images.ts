// SPDX-License-Identifier: MIT
import { fetchFromPhone, isDoorOpen } from './door';

/** An image of the phone; its address within this document is null until it has come, and for good when there is none. */
interface Entry { address: string | null; coming: boolean; lastScreen: number }

/** How many images of screens that were left are kept for the way back. */
const keptImages = 64;

/** The ones that were asked for last stand last. */
const entries = new Map<string, Entry>();
let hint = '';
let screen = 0;
const listeners: (() => void)[] = [];

/** Whom to tell when an image has come, so that what shows it is drawn again. */
export function onImageArrived(callback: () => void): void { listeners.push(callback); }

/** The class of the shown screen: its bundle is where the server looks for an image first. */
export function setImageHint(className: string): void {
    hint = className === '' ? '' : `?class=${encodeURIComponent(className)}`;
    screen += 1;
    releaseImages();
}

/** Those that could not be had are asked for again. */
export function retryImages(): void {
    for (const [path, entry] of entries) if (entry.address === null && !entry.coming) entries.delete(path);
}

/** All are fetched once more; each shows as it was until it has come. */
export function renewImages(): void {
    for (const [path, entry] of entries) {
        if (entry.coming) continue;
        entry.coming = true;
        void load(path, entry);
    }
}

function entryFor(name: string): Entry | null {
    const path = `/image/${encodeURIComponent(name)}${hint}`;
    let entry = entries.get(path);
    if (!entry) {
        if (!isDoorOpen()) return null;
        entry = { address: null, coming: true, lastScreen: screen };
        void load(path, entry);
    }
    entry.lastScreen = screen;
    entries.delete(path);
    entries.set(path, entry);
    return entry;
}

async function load(path: string, entry: Entry): Promise<void> {
    try {
        const image = await fetchFromPhone(path);
        // It may have been released meanwhile.
        if (entries.get(path) === entry) {
            if (entry.address !== null) URL.revokeObjectURL(entry.address);
            entry.address = URL.createObjectURL(image);
        }
    } catch {
        // What it would be on says what there is without it.
    }
    entry.coming = false;
    for (const listener of listeners) listener();
}

/** The screen before is still in sight while it leaves. */
function releaseImages(): void {
    for (const [path, entry] of entries) {
        if (entries.size <= keptImages || entry.lastScreen >= screen - 1) return;
        entries.delete(path);
        if (entry.address !== null) URL.revokeObjectURL(entry.address);
    }
}

/** Where this document has the image of this name; null while it has not come, and when there is none. */
export const imageUrl = (name: string): string | null => entryFor(name)?.address ?? null;

/** Whether the image of this name is on its way. */
export const imageIsComing = (name: string): boolean => entryFor(name)?.coming ?? false;

/** What to call an image that comes without a title: its name, as a word. */
export function imageWord(name: string): string {
    const plain = name.replace(/@\dx$/, '');
    return plain.charAt(0).toUpperCase() + plain.slice(1);
}
