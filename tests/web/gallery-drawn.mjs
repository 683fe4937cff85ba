// SPDX-License-Identifier: MIT
// What a page draws, element by element, as far as a reader would see a difference: boxes, colours, texts.

/**
 * Runs in the page. One record an element that draws anything itself, in the order of the document: `element` (tag and classes),
 * `box` (in pixels, from the top left of the device), and what of it is drawn. Parts made by the style sheet alone follow their
 * element, their box being measured from it.
 */
function collect() {
    const device = document.querySelector('.phone').getBoundingClientRect();
    const round = (value) => Math.round(value * 10) / 10 + 0;
    const tidyNumbers = (text) => text.replace(/\d+\.\d+/g, (number) => String(Math.round(Number(number) * 1000) / 1000));
    // Where an image is fetched from is the server's business; which one it is shows in its name, where it has one.
    const tidy = (text) => tidyNumbers(text.replace(/url\("([^"]*)"\)/g, (_all, url) => `url(${/^blob:|^data:/.test(url) ? 'image' : url.replace(/^.*\//, '').replace(/\?.*$/, '')})`));
    const hex = (text) => {
        const parts = /^rgba?\((\d+), (\d+), (\d+)(?:, ([\d.]+))?\)$/.exec(text);
        if (!parts) return tidyNumbers(text);
        const [red, green, blue] = parts.slice(1, 4).map((part) => Number(part).toString(16).padStart(2, '0'));
        return `#${red}${green}${blue}${parts[4] === undefined ? '' : Math.round(Number(parts[4]) * 255).toString(16).padStart(2, '0')}`;
    };
    const clear = (text) => text === 'rgba(0, 0, 0, 0)' || text === 'transparent';

    const look = (style) => {
        const drawn = {};
        if (!clear(style.backgroundColor)) drawn.ground = hex(style.backgroundColor);
        if (style.backgroundImage !== 'none') drawn.image = tidy(style.backgroundImage);
        if (style.maskImage !== 'none') drawn.stencil = tidy(style.maskImage);
        const edges = ['Top', 'Right', 'Bottom', 'Left'].map((side) => (parseFloat(style[`border${side}Width`]) > 0 && style[`border${side}Style`] !== 'none' && !clear(style[`border${side}Color`])
            ? `${style[`border${side}Width`]} ${hex(style[`border${side}Color`])}` : '-'));
        if (edges.some((edge) => edge !== '-')) drawn.edges = edges.every((edge) => edge === edges[0]) ? edges[0] : edges.join(', ');
        if (style.outlineStyle !== 'none' && parseFloat(style.outlineWidth) > 0) drawn.outline = `${style.outlineWidth} ${hex(style.outlineColor)}`;
        if (style.boxShadow !== 'none') drawn.shadow = tidy(style.boxShadow);
        if (Object.keys(drawn).length > 0 && style.borderRadius !== '0px') drawn.corners = tidy(style.borderRadius);
        return drawn;
    };

    const records = [];
    for (const element of document.querySelectorAll('.phone, .phone *, .side *')) {
        const isPart = element.ownerSVGElement != null;
        if (isPart || element.closest('.unseen') || !element.checkVisibility({ checkOpacity: true, checkVisibilityCSS: true })) continue;
        const rect = element.getBoundingClientRect();
        if (rect.width === 0 || rect.height === 0) continue;
        const style = getComputedStyle(element);
        const name = [element.localName, ...element.classList].join('.');
        const drawn = look(style);
        const text = [...element.childNodes].filter((node) => node.nodeType === Node.TEXT_NODE).map((node) => node.data).join('').replace(/\s+/g, ' ').trim();
        if (text !== '') drawn.text = text;
        if (element instanceof HTMLInputElement) drawn.value = element.type === 'checkbox' ? element.checked : element.value;
        if (element instanceof HTMLInputElement && element.type === 'text') drawn.text = element.value || element.placeholder;
        if (element instanceof HTMLImageElement) drawn.picture = element.naturalWidth > 0;
        if (element instanceof SVGSVGElement) drawn.shape = [...element.querySelectorAll('*')].map((part) => part.getAttribute('d') ?? part.localName).join(' ').slice(0, 40);
        if (element instanceof SVGSVGElement) drawn.ink = [style.fill, style.stroke].map(hex).join(' ');
        if (drawn.text !== undefined) {
            drawn.colour = hex(style.color);
            drawn.font = `${style.fontSize}/${style.lineHeight} ${style.fontWeight}`;
        }
        const hasLook = Object.keys(drawn).length > 0;
        if (hasLook && style.opacity !== '1') drawn.opacity = round(Number(style.opacity) * 10) / 10;
        if (hasLook && style.filter !== 'none') drawn.filter = style.filter;
        if (hasLook) records.push({ element: name, box: [rect.left - device.left, rect.top - device.top, rect.width, rect.height].map(round), ...drawn });
        for (const part of ['::before', '::after']) {
            const partStyle = getComputedStyle(element, part);
            if (partStyle.content === 'none' || partStyle.content === 'normal' || partStyle.display === 'none' || partStyle.visibility === 'hidden' || partStyle.opacity === '0') continue;
            const partLook = look(partStyle);
            if (Object.keys(partLook).length === 0) continue;
            const box = [partStyle.left, partStyle.top, partStyle.width, partStyle.height].map((each) => round(parseFloat(each) || 0));
            records.push({ element: `${name}${part}`, box, ...partLook, ...(partStyle.transform === 'none' ? {} : { transform: tidy(partStyle.transform) }) });
        }
    }
    return records;
}

export const drawnIn = (page) => page.evaluate(collect);

/**
 * How wide the fonts are that the machine gives where the page's own has no letter. Only where they are those of the references
 * can boxes be compared that depend on them.
 */
export const fallbackFonts = (page) => page.evaluate(() => {
    const context = document.createElement('canvas').getContext('2d');
    const width = (family, text) => {
        context.font = `100px ${family}`;
        return Math.round(context.measureText(text).width);
    };
    const own = getComputedStyle(document.body).fontFamily;
    return { arabic: width(own, 'ابتثجحخدذ'), signs: width(own, '😘'), fixed: width("ui-monospace, 'Noto Sans Mono', monospace", 'abc') };
});

/** Which of the machine's fonts a record's text needs. */
export function fontNeeded({ element, text = '' }) {
    if (/^(pre|code)\b/.test(element)) return 'fixed';
    if (/\p{Script=Arabic}/u.test(text)) return 'arabic';
    return /\p{Emoji_Presentation}/u.test(text) ? 'signs' : null;
}
