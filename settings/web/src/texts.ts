// SPDX-License-Identifier: MIT
// The few words that belong to the page itself; everything else comes localised with the state.
import { ar } from './words/ar';
import { de } from './words/de';
import { en, type Words } from './words/en';
import { es } from './words/es';
import { fr } from './words/fr';
import { ja } from './words/ja';
import { zhHans } from './words/zh-Hans';

export type Texts = Words;

const languages: Readonly<Record<string, Texts>> = { ar, de, en, es, fr, ja, zh: zhHans };

/** The words of the language that a tag names; those in English where the page does not speak it. */
export const textsFor = (tag: string): Texts => languages[tag.split('-')[0] ?? ''] ?? en;

/** What the system's own bar buttons say, by item number; Add and Action are drawn as symbols and only spoken. */
export function systemItemText(texts: Texts, item: number): string {
    const byNumber: Readonly<Record<number, string>> = { 0: texts.done, 1: texts.cancel, 2: texts.edit, 3: texts.save, 4: texts.add, 9: texts.share };
    return byNumber[item] ?? texts.done;
}
