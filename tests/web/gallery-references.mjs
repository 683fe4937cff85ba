// SPDX-License-Identifier: MIT
// The references of the gallery: for each appearance a file of records beside its sheet, one line an element.
import { isDeepStrictEqual } from 'node:util';
import { fontNeeded } from './gallery-drawn.mjs';

/** Half a pixel is what the browser's own rounding of a text's width may make; it cannot be seen. Another maker of browsers rounds otherwise. */
export const slackOf = { same: 0.5, other: 1.5 };
/** So many elements of one side may have no counterpart before the comparison takes them for changed ones. */
const lookAhead = 40;

/** `appearance` is {browser, fonts, scenes: [{name, records}]}. */
export function write({ browser, fonts, scenes }) {
    const lines = [{ browser, fonts }];
    for (const { name, records } of scenes) lines.push({ scene: name }, ...records);
    return lines.map((line) => `${JSON.stringify(line)}\n`).join('');
}

export function read(text) {
    const [head, ...lines] = text.trim().split('\n').map((line) => JSON.parse(line));
    const scenes = [];
    for (const line of lines) {
        if (line.scene !== undefined) scenes.push({ name: line.scene, records: [] });
        else scenes.at(-1).records.push(line);
    }
    return { ...head, scenes };
}

const called = ({ element, text }) => (text === undefined ? element : `${element} "${text}"`);
const alike = (one, other) => one.element === other.element && one.text === other.text;

/** Pairs of what belongs together; null stands for what is on one side only. */
function pairs(wanted, found) {
    const made = [];
    let [at, there] = [0, 0];
    while (at < wanted.length || there < found.length) {
        const [one, other] = [wanted[at], found[there]];
        if (one && other && alike(one, other)) {
            made.push([one, other]);
            at += 1;
            there += 1;
            continue;
        }
        const later = one ? found.slice(there, there + lookAhead).findIndex((each) => alike(one, each)) : -1;
        const earlier = other ? wanted.slice(at, at + lookAhead).findIndex((each) => alike(each, other)) : -1;
        if (later < 0 && earlier < 0 && one && other && one.element === other.element) {
            made.push([one, other]);
            at += 1;
            there += 1;
        } else if (one && (later < 0 || !other)) {
            made.push([one, null]);
            at += 1;
        } else {
            made.push([null, other]);
            there += 1;
        }
    }
    return made;
}

function differencesOf(one, other, withBoxes, slack) {
    if (!other) return [`${called(one)} is missing`];
    if (!one) return [`${called(other)} is new`];
    const found = [];
    for (const key of new Set([...Object.keys(one), ...Object.keys(other)])) {
        const same = key === 'box' ? !withBoxes || one.box.every((value, side) => Math.abs(value - other.box[side]) <= slack) : isDeepStrictEqual(one[key], other[key]);
        if (!same) found.push(`${called(one)}: ${key} is ${JSON.stringify(other[key])} instead of ${JSON.stringify(one[key])}`);
    }
    return found;
}

/**
 * What two appearances differ in, as lines to be read; `slack` is what a side of a box may be off by. Boxes are not compared in a scene with texts for which this machine has
 * another font than that of the references: its letters are wider or narrower, and lines break elsewhere.
 */
export function differences(wanted, found, slack = slackOf.same) {
    const lines = [];
    const names = (scenes) => scenes.map((scene) => scene.name);
    if (!isDeepStrictEqual(names(wanted.scenes), names(found.scenes))) lines.push(`the scenes are ${names(found.scenes)} instead of ${names(wanted.scenes)}`);
    for (const scene of wanted.scenes) {
        const now = found.scenes.find((each) => each.name === scene.name);
        if (!now) continue;
        const withBoxes = [...scene.records, ...now.records].map(fontNeeded).every((font) => font === null || wanted.fonts[font] === found.fonts[font]);
        for (const [one, other] of pairs(scene.records, now.records)) for (const line of differencesOf(one, other, withBoxes, slack)) lines.push(`${scene.name}: ${line}`);
    }
    return lines;
}
