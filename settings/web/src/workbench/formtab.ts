// SPDX-License-Identifier: MIT
import type { Link } from './link';
import { Outcome } from './outcome';
import { ToolTab, onceAFrame } from './tab';

/** A tab of fields and switches that send commands: drawn when it can be seen, and with what came of the last one. */
export abstract class FormTab extends ToolTab {
    protected readonly draw = onceAFrame(() => this.paint());
    protected readonly outcome: Outcome;

    constructor(title: string, protected readonly link: Link) {
        super(title, 'wb-form wb-scroll');
        this.outcome = new Outcome(link, () => this.draw());
    }

    setVisible(): void { this.paint(); }

    protected abstract paint(): void;
}
