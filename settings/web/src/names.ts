// SPDX-License-Identifier: MIT
// Names that come from outside (networks above all) may hold anything. What would show nothing, or disturb what stands around
// it, is drawn as a small sign with the character's own name, so that it can be seen and told from every other one.
import { html, type TemplateResult } from 'lit-html';

const controls = [
    'NUL', 'SOH', 'STX', 'ETX', 'EOT', 'ENQ', 'ACK', 'BEL', 'BS', 'TAB', 'LF', 'VT', 'FF', 'CR', 'SO', 'SI',
    'DLE', 'DC1', 'DC2', 'DC3', 'DC4', 'NAK', 'SYN', 'ETB', 'CAN', 'EM', 'SUB', 'ESC', 'FS', 'GS', 'RS', 'US',
] as const;

/** Controls of any kind, and what changes the direction of the text around it. A joiner or a variation selector shapes a visible character. */
const disturbing = /[\p{Cc}\u00ad\u200b\u2028\u2029\u202a-\u202e\u2060-\u2064\u2066-\u206f\ufeff\ufff9-\ufffb]/u;
const nothingToSee = /^[\p{White_Space}\p{Default_Ignorable_Code_Point}\p{Cc}\p{Cf}\u2800]*$/u;

interface Piece { text: string; sign: boolean }

function signOf(character: string): string {
    const code = character.codePointAt(0) ?? 0;
    return controls[code] ?? (code === 0x7f ? 'DEL' : `U+${code.toString(16).toUpperCase().padStart(4, '0')}`);
}

function piecesOf(name: string): Piece[] {
    const blank = nothingToSee.test(name);
    const pieces: Piece[] = [];
    for (const character of name) {
        const last = pieces.at(-1);
        if (blank || disturbing.test(character)) pieces.push({ text: signOf(character), sign: true });
        else if (last && !last.sign) last.text += character;
        else pieces.push({ text: character, sign: false });
    }
    return pieces;
}

const isPlain = (name: string): boolean => name === '' || !(disturbing.test(name) || nothingToSee.test(name));

/** A name as it is drawn. */
export function visibleName(name: string): string | TemplateResult {
    if (isPlain(name)) return name;
    const signs = piecesOf(name).map((piece) => (piece.sign ? html`<span class="sign" dir="ltr">${piece.text}</span>` : piece.text));
    return html`<span aria-hidden="true">${signs}</span><span class="unseen">${spokenName(name)}</span>`;
}

/** A name as assistive technology reads it. */
export const spokenName = (name: string): string =>
    (isPlain(name) ? name : piecesOf(name).map((piece) => (piece.sign ? `[${piece.text}]` : piece.text)).join(''));
