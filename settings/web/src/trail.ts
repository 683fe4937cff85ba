// SPDX-License-Identifier: MIT
// The browser's history is as deep as the phone: an entry for each screen and for what is presented, the first screen's below. So a
// Back of the browser, a key or a gesture for it, is one on the phone, and only the one on the first screen leaves the page.

const depthIn = (state: unknown): number | null => {
    const depth = (state as { depth?: unknown } | null)?.depth;
    return typeof depth === 'number' && Number.isSafeInteger(depth) && depth >= 0 ? depth : null;
};

export class Trail {
    /** How many ways back there are on the phone; null while nobody answers. */
    private depth: number | null = null;
    /** The deepest entry that is known to lie ahead. */
    private top: number;
    /** The depth that a journey of the page's own through the history leads to. */
    private target: number | null = null;
    /** The depth that the user wants to go back to, and the step that is on its way there. */
    private wanted: number | null = null;
    private step: { command: number; from: number } | null = null;

    /** `goBack` sends a single way back; null when there is none that could be sent. */
    constructor(private readonly goBack: () => number | null) {
        if (depthIn(history.state) === null) history.replaceState({ depth: 0 }, '');
        this.top = this.at;
        window.addEventListener('popstate', () => this.moved());
    }

    /** The depth of the entry in the address bar. One that the user has made by hand is as deep as the phone. */
    private get at(): number { return depthIn(history.state) ?? this.depth ?? 0; }

    /** To be called with each state that is shown. */
    follow(depth: number): void {
        this.depth = depth;
        if (this.wanted !== null && depth <= this.wanted) this.wanted = null;
        if (this.wanted === null) this.sync();
    }

    /** To be called when a command has been answered, after the state that came with it. */
    answered(command: number): void {
        if (command !== this.step?.command) return;
        const { from } = this.step;
        this.step = null;
        if (this.wanted === null || this.depth === null) return;
        if (this.depth < from) this.takeStep();
        else this.giveUp();
    }

    /** To be called when the connection is gone. Until the next state a Back is the browser's own: nobody is kept on a page that does not work. */
    suspend(): void {
        this.depth = null;
        this.wanted = null;
        this.step = null;
    }

    private moved(): void {
        const isOwn = this.target === depthIn(history.state);
        this.target = null;
        if (this.depth === null) return;
        if (isOwn || this.at >= this.depth) {
            this.sync();
            return;
        }
        this.wanted = this.at;
        if (!this.step) this.takeStep();
    }

    private takeStep(): void {
        const command = this.goBack();
        if (command === null || this.depth === null) this.giveUp();
        else this.step = { command, from: this.depth };
    }

    // There was no way back: the entries that the user has left are those of what is still shown.
    private giveUp(): void {
        this.wanted = null;
        if (this.depth !== null && this.target === null && this.at < this.depth && this.depth <= this.top) this.travel(this.depth);
        else this.sync();
    }

    private sync(): void {
        if (this.target !== null || this.depth === null) return;
        if (this.at > this.depth) this.travel(this.depth);
        else if (this.at < this.depth) this.extend(this.depth);
    }

    private extend(depth: number): void {
        try {
            for (let next = this.at + 1; next <= depth; next += 1) {
                history.pushState({ depth: next }, '');
                this.top = next;
            }
        } catch {
            // Where a script drives the phone faster than a browser lets its history grow, the next state tries again.
        }
    }

    private travel(depth: number): void {
        this.target = depth;
        history.go(depth - this.at);
    }
}
