// SPDX-License-Identifier: MIT
import type { Beside } from '../beside';
import { headingOf, placeOf } from '../buildbar';
import { parseBuild, type Build } from '../protocol';
import { takeFromWindow } from '../shape';
import { bagOf } from './bags';
import { ConsoleTab } from './console';
import { DeviceTab } from './device';
import { FaultsTab } from './faults';
import { FilesTab } from './files';
import { Link } from './link';
import { Names } from './names';
import { OverlaysTab } from './overlays';
import { Pointer } from './pointer';
import { PostTab } from './post';
import { RowsTab } from './rows';
import { Separator } from './separator';
import { element, type Tab } from './tab';
import { TabList } from './tablist';
import { TimelineTab } from './timeline';

/** What the workbench tells whoever has opened it. */
export interface WorkbenchEvents {
    chosen(tab: string): void;
    /** The user wants it closed. */
    closed(): void;
}

/** The pane beside the phone: tools for who makes the screens. It speaks the protocol on a connection of its own, and goes on listening while it is closed. */
export class Workbench {
    private readonly link: Link;
    private readonly pane = element('workbench', 'aside');
    private readonly panel = element('wb-panel');
    private readonly build = element('wb-build', 'p');
    private readonly trouble = element('wb-trouble', 'span');
    private readonly all: readonly Tab[];
    private readonly tabs: TabList;
    private readonly separator: Separator;
    private isOpen = false;

    constructor(beside: Beside, private readonly place: HTMLElement, first: string, events: WorkbenchEvents) {
        this.link = new Link(beside);
        const pointer = new Pointer(beside, place);
        const names = new Names(this.link);
        const tabs: Tab[] = [
            new RowsTab(this.link, pointer), new ConsoleTab(this.link, names), new OverlaysTab(this.link, beside, place, pointer), new PostTab(this.link, names),
            new FilesTab(this.link), new DeviceTab(this.link), new FaultsTab(this.link),
        ];
        const timeline = new TimelineTab(this.link, beside, place);
        tabs.push(timeline);
        this.all = tabs;
        this.pane.id = 'workbench';
        this.pane.lang = 'en';
        this.pane.setAttribute('aria-label', 'Workbench');
        this.pane.hidden = true;
        this.separator = new Separator(this.pane.id, (width) => {
            if (!this.isOpen) return;
            takeFromWindow(width);
            for (const tab of this.all) tab.moved?.();
        });
        this.panel.id = 'wb-panel';
        this.panel.setAttribute('role', 'tabpanel');
        this.tabs = new TabList(tabs, first, this.panel, (tab, before) => {
            before?.setVisible(false);
            this.panel.replaceChildren(tab.element);
            if (this.isOpen) tab.setVisible(true);
            events.chosen(tab.name);
        });
        const close = element('wb-close', 'button');
        close.type = 'button';
        close.title = 'Close (F2)';
        close.setAttribute('aria-label', 'Close the workbench');
        close.textContent = '×';
        close.addEventListener('click', () => events.closed());
        this.trouble.setAttribute('role', 'status');
        const head = element('wb-head');
        head.append(this.tabs.element, this.trouble, close);
        const content = element('wb-content');
        content.dir = 'ltr';
        this.build.hidden = true;
        content.append(head, this.build, this.panel);
        this.pane.append(this.separator.element, content);
        // The phone has its own use for some keys, wherever they are pressed.
        this.pane.addEventListener('keydown', (event) => event.stopPropagation());
        place.append(this.pane);
        this.link.listen({
            linked: (isLinked) => this.tellTrouble(isLinked),
            shot: ({ source }) => {
                this.tellBuild(parseBuild(source['build']));
                // Of what has been there is nothing but what happened.
                if (bagOf(source['recording'])) this.tabs.keepOnly(timeline);
            },
        });
        this.tellTrouble(false);
        this.link.open();
    }

    /** Resolves when the style sheet is there. */
    static loadStyles(): Promise<void> {
        return new Promise((resolve, reject) => {
            const sheet = document.createElement('link');
            sheet.rel = 'stylesheet';
            sheet.href = '/workbench.css';
            sheet.addEventListener('load', () => resolve());
            sheet.addEventListener('error', () => {
                sheet.remove();
                reject(new Error('the workbench has no style sheet'));
            });
            document.head.append(sheet);
        });
    }

    setOpen(isOpen: boolean, focus: boolean): void {
        if (isOpen !== this.isOpen) {
            this.isOpen = isOpen;
            this.pane.hidden = !isOpen;
            this.place.classList.toggle('open', isOpen);
            if (isOpen) this.separator.show();
            else takeFromWindow(0);
            for (const tab of this.all) tab.setOpen?.(isOpen);
            this.tabs.chosen.setVisible(isOpen);
        }
        if (isOpen && focus) this.tabs.focus();
    }

    /** The page above has it read out. */
    private tellBuild(build: Build | null): void {
        const error = build?.error ?? null;
        this.build.hidden = error === null && build?.state !== 'building';
        this.build.classList.toggle('bad', error !== null);
        this.build.textContent = build && error ? [headingOf(build), placeOf(error), error.text].filter((part) => part !== '').join(' — ') : 'Building…';
    }

    private tellTrouble(isLinked: boolean): void { this.trouble.textContent = isLinked ? '' : 'Not connected'; }
}
