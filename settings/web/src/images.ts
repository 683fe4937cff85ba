// SPDX-License-Identifier: MIT

let hint = '';

/** The class of the shown screen: its bundle is where the server looks for an image first. */
export function setImageHint(className: string): void {
    hint = className === '' ? '' : `?class=${encodeURIComponent(className)}`;
}

/** Where the server has the image of this name. */
export const imageUrl = (name: string): string => `/image/${encodeURIComponent(name)}${hint}`;

/** What to call an image that comes without a title: its name, as a word. */
export function imageWord(name: string): string {
    const plain = name.replace(/@\dx$/, '');
    return plain.charAt(0).toUpperCase() + plain.slice(1);
}
