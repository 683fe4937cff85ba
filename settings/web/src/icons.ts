// SPDX-License-Identifier: MIT
import { html, svg, type SVGTemplateResult, type TemplateResult } from 'lit-html';
import { imageUrl } from './images';
import { styles } from './style';

const icon = (size: string, name: string, body: SVGTemplateResult): TemplateResult =>
    html`<svg class="icon icon-${name}" viewBox=${size} aria-hidden="true" focusable="false">${body}</svg>`;

export const chevron = (): TemplateResult => icon('0 0 8 14', 'chevron', svg`<path d="M1 1l6 6-6 6" />`);
export const backChevron = (): TemplateResult => icon('0 0 12 21', 'back', svg`<path d="M10.5 1.5l-9 9 9 9" />`);
export const check = (): TemplateResult => icon('0 0 16 13', 'check', svg`<path d="M1.5 7l4.5 4.5L14.5 1.5" />`);
export const plus = (): TemplateResult => icon('0 0 20 20', 'plus', svg`<path d="M10 2v16M2 10h16" />`);
export const share = (): TemplateResult => icon('0 0 20 24', 'share', svg`<path d="M10 15V2M5.5 6L10 1.5 14.5 6M6 9.5H3v13h14v-13h-3" />`);
export const minus = (): TemplateResult => icon('0 0 22 22', 'minus', svg`<circle cx="11" cy="11" r="11" /><path d="M5.5 11h11" />`);
export const info = (): TemplateResult => icon('0 0 22 22', 'info', svg`<circle cx="11" cy="11" r="9.5" /><path d="M11 10v6M11 6.2v.6" />`);
export const halfMoon = (): TemplateResult => icon('0 0 20 20', 'moon', svg`<path d="M17 12.5A7.5 7.5 0 0 1 7.5 3 7.5 7.5 0 1 0 17 12.5z" />`);
export const bench = (): TemplateResult => icon('0 0 20 20', 'bench', svg`<path d="M2.5 4h15v12h-15zM8.5 4v12M11 7.5h4M11 10h4M11 12.5h2.5" />`);
export const broken = (): TemplateResult =>
    icon('0 0 48 48', 'large', svg`<path d="M10 22a20 20 0 0 1 11-5M38 22a20 20 0 0 0-6-3.6M4 15a28 28 0 0 1 13-6.6M44 15a28 28 0 0 0-17-7.9M16 29a11 11 0 0 1 8-3.5M24 37v.5M6 5l36 38" />`);
export const padlock = (): TemplateResult => icon('0 0 48 48', 'large', svg`<path d="M14 21v-6a10 10 0 0 1 20 0v6M13 21h22a4 4 0 0 1 4 4v14a4 4 0 0 1-4 4H13a4 4 0 0 1-4-4V25a4 4 0 0 1 4-4zM24 30v5" />`);
export const calendarPage = (): TemplateResult => icon('0 0 48 48', 'large', svg`<path d="M10 9h28a4 4 0 0 1 4 4v25a4 4 0 0 1-4 4H10a4 4 0 0 1-4-4V13a4 4 0 0 1 4-4zM6 19h36M15 5v8M33 5v8M14 27h.1M24 27h.1M34 27h.1M14 35h.1M24 35h.1" />`);
export const radioWaves = (): TemplateResult => icon('0 0 48 48', 'large', svg`<path d="M4 18a29 29 0 0 1 40 0M11 25.5a19 19 0 0 1 26 0M17.5 32.5a9.5 9.5 0 0 1 13 0M24 40h.1" />`);
export const musicNote = (): TemplateResult => icon('0 0 48 48', 'large', svg`<path d="M18 37V11l22-5v26" /><circle cx="12.5" cy="37" r="5.5" /><circle cx="34.5" cy="32" r="5.5" />`);
export const emptyTray = (): TemplateResult => icon('0 0 48 48', 'large', svg`<path d="M6 28h11l3 5h8l3-5h11M6 28l7-17h22l7 17v10H6z" />`);

export const signal = (): TemplateResult => icon('0 0 17 11', 'signal', svg`<path d="M0 7h3v4H0zM4.7 5h3v6h-3zM9.3 2.5h3V11h-3zM14 0h3v11h-3z" />`);
export const wifi = (): TemplateResult => icon('0 0 15 11', 'wifi', svg`<path d="M7.5 0C4.6 0 2 1.1 0 3l1.4 1.5a8.8 8.8 0 0 1 12.2 0L15 3c-2-1.9-4.6-3-7.5-3zm0 3.7c-1.9 0-3.6.7-4.9 1.9L4 7.1a5.1 5.1 0 0 1 7 0l1.4-1.5a7 7 0 0 0-4.9-1.9zm0 3.7c-.9 0-1.7.3-2.3.9l2.3 2.4 2.3-2.4c-.6-.6-1.4-.9-2.3-.9z" />`);
export const battery = (): TemplateResult => icon('0 0 25 12', 'battery', svg`<rect x=".5" y=".5" width="21" height="11" rx="3" /><path d="M2 2h18v8H2zM23 4v4c.9-.3 1.5-1.1 1.5-2S23.9 4.3 23 4z" />`);
export const magnifier = (): TemplateResult => icon('0 0 16 16', 'magnifier', svg`<circle cx="6.5" cy="6.5" r="5" /><path d="M10.3 10.3L15 15" />`);
export const clearSign = (): TemplateResult => icon('0 0 18 18', 'clear', svg`<circle cx="9" cy="9" r="9" /><path d="M5.8 5.8l6.4 6.4M12.2 5.8l-6.4 6.4" />`);

/** An image used as a stencil: it takes the colour of the text around it. */
export const stencil = (name: string): TemplateResult => {
    const url = imageUrl(name);
    // Nothing shows through a stencil that is not there.
    return html`<span class="stencil" aria-hidden="true" data-image=${name} ${styles({ 'mask-image': url === null ? 'linear-gradient(transparent, transparent)' : `url("${url}")` })}></span>`;
};
