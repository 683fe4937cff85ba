// SPDX-License-Identifier: MIT
// What must hold for the boxes of any screen, at any size.

/** Elements whose text is cut off or sticks out of the window, as lines to be read. */
export const clipped = (page) => page.evaluate(() => {
    const width = document.querySelector('.phone').getBoundingClientRect();
    const found = [];
    for (const element of document.querySelectorAll('.title, .detail, .header, .footer, .product-title, .product-subtitle, .choice, .prompt-message, .social-text, .own-label, .notice')) {
        const box = element.getBoundingClientRect();
        if (box.width === 0) continue;
        if (box.left < width.left - 0.5 || box.right > width.right + 0.5 || element.scrollWidth > element.clientWidth + 1) found.push(`${element.className}: ${element.textContent}`);
    }
    return found;
});

/** Pairs of neighbours that lie over one another. */
export const overlapping = (page) => page.evaluate(() => {
    const found = [];
    for (const parent of document.querySelectorAll('.words, .bar-content, .slider-line, .cell')) {
        const parts = [...parent.children].filter((child) => getComputedStyle(child).position !== 'absolute' && child.getBoundingClientRect().width > 0);
        for (let at = 1; at < parts.length; at += 1) {
            const [one, other] = [parts[at - 1].getBoundingClientRect(), parts[at].getBoundingClientRect()];
            const across = Math.min(one.right, other.right) - Math.max(one.left, other.left);
            const down = Math.min(one.bottom, other.bottom) - Math.max(one.top, other.top);
            if (across > 1 && down > 1) found.push(`${parts[at - 1].className} / ${parts[at].className}`);
        }
    }
    return found;
});
