// SPDX-License-Identifier: MIT
// The few words that belong to the page itself; everything else comes localised with the state. Those in English are always there;
// another language's come from the server when it is first needed.
import { en, type Words } from './words/en';

export type Texts = Words;

const loaders: Readonly<Record<string, () => Promise<Texts>>> = {
    ar: async () => (await import('./words/ar')).ar,
    de: async () => (await import('./words/de')).de,
    es: async () => (await import('./words/es')).es,
    fr: async () => (await import('./words/fr')).fr,
    ja: async () => (await import('./words/ja')).ja,
    zh: async () => (await import('./words/zh-Hans')).zhHans,
    // Languages that nobody speaks, in which the application looks for what is not localised.
    'en-XA': async () => (await import('./pseudo')).pseudoWords('ltr'),
    'ar-XB': async () => (await import('./pseudo')).pseudoWords('rtl'),
};

const loaded = new Map<string, Texts>([['en', en]]);

const languageOf = (tag: string): string => (tag in loaders ? tag : tag.split('-')[0] ?? '');

/** The words of the language that a tag names; those in English where the page does not speak it, or has not loaded it. */
export const textsFor = (tag: string): Texts => loaded.get(languageOf(tag)) ?? en;

/** Fetches the words of a language; null when there is nothing to fetch. What cannot be fetched is tried again the next time. */
export function loadTexts(tag: string): Promise<void> | null {
    const language = languageOf(tag);
    const load = loaded.has(language) ? undefined : loaders[language];
    return load ? load().then((texts) => { loaded.set(language, texts); }, () => {}) : null;
}

/** What the system's own bar buttons say, by item number; Add and Action are drawn as symbols and only spoken. */
export function systemItemText(texts: Texts, item: number): string {
    const byNumber: Readonly<Record<number, string>> = { 0: texts.done, 1: texts.cancel, 2: texts.edit, 3: texts.save, 4: texts.add, 9: texts.share };
    return byNumber[item] ?? texts.done;
}
