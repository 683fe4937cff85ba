// SPDX-License-Identifier: MIT

/**
 * Keeps the click that ends a pull from being a press. It comes with the end of the pull or not at all; a key, which may be pressed
 * before a timer comes, and another finger press as ever.
 */
export function swallowClickOf(pointer: number, part: HTMLElement): void {
    const swallow = (click: MouseEvent): void => {
        const isOfAnother = click.detail === 0 || (click instanceof PointerEvent && click.pointerId !== pointer);
        if (isOfAnother) return;
        click.stopPropagation();
        click.preventDefault();
    };
    part.addEventListener('click', swallow, { capture: true });
    setTimeout(() => part.removeEventListener('click', swallow, { capture: true }), 0);
}
