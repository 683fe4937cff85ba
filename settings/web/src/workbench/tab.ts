// SPDX-License-Identifier: MIT

/** One tab of the workbench. Its element is in the document while it is the chosen one. */
export interface Tab {
    /** What the address calls it. */
    readonly name: string;
    readonly title: string;
    readonly element: HTMLElement;
    /** To be called when the tab can be seen from now on, and when it no longer can. */
    setVisible(isVisible: boolean): void;
    /** To be called when the workbench is open from now on, on whatever tab, and when it no longer is. */
    setOpen?(isOpen: boolean): void;
    /** To be called when the phone stands elsewhere in the window. */
    moved?(): void;
}

/** What the tabs have in common. */
export abstract class ToolTab implements Tab {
    readonly name: string;
    readonly element: HTMLElement;

    constructor(readonly title: string, classes: string) {
        this.name = title.toLowerCase();
        this.element = element(classes);
    }

    abstract setVisible(isVisible: boolean): void;
}

/** An element with a class. */
export function element<K extends keyof HTMLElementTagNameMap = 'div'>(className: string, name: K = 'div' as K): HTMLElementTagNameMap[K] {
    const made = document.createElement(name);
    made.className = className;
    return made;
}

/** Calls `draw` with the next frame, once for however many calls. */
export function onceAFrame(draw: () => void): () => void {
    let scheduled = 0;
    return () => {
        if (scheduled !== 0) return;
        scheduled = requestAnimationFrame(() => {
            scheduled = 0;
            draw();
        });
    };
}
