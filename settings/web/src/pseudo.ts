// SPDX-License-Identifier: MIT
// The page's own words as the application makes its texts in these languages: longer, accented, in brackets.
import { en, type Words } from './words/en';

const plain = 'abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ';
const accented = [...'åƀçðéƒĝĥîĵķļɱñöþɋŕšţûṽŵẋýžÅƁÇÐÉƑĜĤÎĴĶĻṀÑÖÞɊŔŠŢÛṼŴẊÝŽ'];

const written = (letters: string): string => [...letters].map((letter) => {
    const other = accented[plain.indexOf(letter)] ?? letter;
    return /[aeiou]/i.test(letter) ? other + other : other;
}).join('');

/** What a value is put in for, and what is to be typed, stays. The overriding marks write any letters from the right. */
function pseudo(text: string, direction: 'ltr' | 'rtl'): string {
    const [before, after] = direction === 'rtl' ? ['\u202e', '\u202c'] : ['', ''];
    const parts = text.split(/(\{\w+\}|\x60[^\x60]*\x60)/);
    return `[${parts.map((part, at) => (at % 2 === 1 || part === '' ? part : before + written(part) + after)).join('')}]`;
}

export function pseudoWords(direction: 'ltr' | 'rtl'): Words {
    return Object.fromEntries(Object.entries(en).map(([name, text]) => [name, pseudo(text, direction)])) as Words;
}
