// SPDX-License-Identifier: MIT
// The objects that travel over the WebSocket, as the page reads them.

export type Colour = string | { pattern: string; alpha: number } | null;
export type Frame = readonly [number, number, number, number];

export interface BarItem { title: string | null; image: string | null; system: number | null; style: number; action: string | null }
/** Alignment: 0 to the start, 1 centred, 2 to the end. */
export interface Label { tag: number; text: string; frame: Frame; colour: Colour; alignment: number }

export interface Row {
    key: string;
    index: number;
    section: number;
    /** The row's place in its section; null for the group row that opens one. */
    row: number | null;
    kind: number;
    name: string | null;
    identifier: string | null;
    set: string | null;
    action: string | null;
    cellClass: string | null;
    properties: Readonly<Record<string, unknown>>;
    userInfo: unknown;
    value: unknown;
    text: string | null;
    detailText: string | null;
    detailTextColour: Colour;
    tint: Colour;
    onTint: Colour;
    background: Colour;
    accessory: number;
    height: number;
    editingStyle: number;
    /** Whether a tap on the row's body does anything. */
    tappable: boolean;
    labels: readonly Label[];
    titleFrame: Frame | null;
    controlFrame: Frame | null;
}

export interface Bar {
    tint: Colour;
    barTint: Colour;
    statusBarStyle: number;
    titleView: { image: string } | { label: string } | null;
    /** The seconds that the title takes to fade in when its screen arrives. */
    titleFade: number;
    back: { title: string | null; image: string | null } | null;
    left: readonly BarItem[];
    right: readonly BarItem[];
}

/** The active hours: their two lines, the highlighted one, and the one (tag) whose time the wheel shows. */
export interface Pane { rows: readonly string[]; selected: number; tag: number; time: string | null }
export interface Tones { selected: string | null; noneAtTop: boolean; list: readonly { identifier: string; name: string }[] }

/** What a screen may list that comes from the device. */
export const services = ['calendars', 'networks', 'tones'] as const;
export type Service = typeof services[number];

export interface Screen {
    /** Tells this screen from every other one; null where the application does not number them. */
    id: number | null;
    className: string;
    title: string | null;
    links: readonly { title: string }[];
    stack: readonly string[];
    modals: number;
    bar: Bar;
    editing: boolean;
    count: number;
    rows: readonly Row[];
    pane: Pane | null;
    tones: Tones | null;
    /** What the screen lists of the device's and has nothing of; null where it lacks nothing. */
    missing: Service | null;
}

export interface Action { title: string; style: string }
export interface Prompt { id: number | null; kind: 'alert' | 'sheet' | 'confirmation' | 'activity'; title: string | null; message: string | null; actions: readonly Action[] }
/** `preview` stands for the first `previewed` bytes, as text. */
export interface Attachment { name: string; type: string; bytes: number; preview: string; previewed: number }
export interface Mail {
    id: number | null; kind: 'mail'; from: string; to: readonly string[]; subject: string; body: string; html: boolean;
    attachments: readonly Attachment[];
}
export interface Social { id: number | null; kind: 'social'; service: string; text: string }
export type Presented = Prompt | Mail | Social;

/** `clock` is the phone's local time, "2026-11-20T09:00:00"; null of an application that tells none. It stands still unless `clockRuns`. */
export interface Device { darkMode: boolean; rightToLeft: boolean; language: string; scale: number; idiom: string; clock: string | null; clockRuns: boolean; wifi: boolean }

/** Where a build went wrong, as far as that is known, and how. */
export interface BuildError { file: string | null; line: number | null; column: number | null; text: string }
/**
 * How it is with the program's renewal, of a program that is started anew when it has changed: "refused" is one that was built and cannot be
 * started. `page` grows with every change of the page's own files; `pathEnded` says how far the way to the screen could not be gone again.
 */
export interface Build { state: 'ready' | 'building' | 'failed' | 'refused'; error: BuildError | null; pathEnded: string | null; page: number }

/** A row whose name holds what was searched for. */
export interface Found { key: string; index: number; name: string }

/** `recording` names the file of a phone that is only looked at; null for one that lives. */
export interface State { revision: number; screen: Screen; presented: Presented | null; device: Device | null; build: Build | null; recording: string | null }
/**
 * `stale` says that what a command meant is no longer there: nothing was done, and the state shows what is there now. `source` is the
 * object as it came, for who reads more of it than what draws the phone.
 */
export interface Message { id: number | null; ok: boolean; stale: boolean; error: string | null; state: State | null; found: readonly Found[] | null; source: Bag }
export type Command = { readonly do: string } & Readonly<Record<string, unknown>>;

export const groupKind = 0;

/** What a command that acts on a row carries: the key means the row wherever it stands by then, and decides where keys are known. */
export const target = (row: Row): { row: number; key: string } => ({ row: row.index, key: row.key });

/** An object of which nothing is known yet. */
export type Bag = Readonly<Record<string, unknown>>;

const bag = (value: unknown): Bag | null => (typeof value === 'object' && value !== null && !Array.isArray(value) ? (value as Bag) : null);
const text = (value: unknown): string | null => (typeof value === 'string' ? value : null);
const number = (value: unknown, fallback: number): number => (typeof value === 'number' && Number.isFinite(value) ? value : fallback);
const identity = (value: unknown): number | null => (typeof value === 'number' && Number.isSafeInteger(value) ? value : null);
const list = <T>(value: unknown, each: (item: unknown) => T | null): T[] =>
    Array.isArray(value) ? value.map(each).filter((item): item is T => item !== null) : [];

function colour(value: unknown): Colour {
    if (typeof value === 'string') return /^#([0-9a-f]{6}|[0-9a-f]{8})$/i.test(value) ? value : null;
    const pattern = bag(value);
    const name = text(pattern?.['pattern']);
    return name === null ? null : { pattern: name, alpha: Math.min(1, Math.max(0, number(pattern?.['alpha'], 1))) };
}

function frame(value: unknown): Frame | null {
    if (!Array.isArray(value) || value.length !== 4 || !value.every((part) => typeof part === 'number' && Number.isFinite(part))) return null;
    return value as unknown as Frame;
}

function label(value: unknown): Label | null {
    const source = bag(value);
    const place = frame(source?.['frame']);
    return source && place ? { tag: number(source['tag'], 0), text: text(source['text']) ?? '', frame: place, colour: colour(source['colour']), alignment: number(source['alignment'], 0) } : null;
}

function row(value: unknown): Row | null {
    const source = bag(value);
    if (!source || typeof source['index'] !== 'number' || source['index'] < 0) return null;
    const kind = number(source['kind'], groupKind);
    return {
        key: text(source['key']) ?? `index-${source['index']}`,
        index: source['index'],
        section: number(source['section'], 0),
        row: typeof source['row'] === 'number' ? source['row'] : null,
        kind,
        name: text(source['name']),
        identifier: text(source['identifier']),
        set: text(source['set']),
        action: text(source['action']),
        cellClass: text(source['cellClass']),
        properties: bag(source['properties']) ?? {},
        userInfo: source['userInfo'] ?? null,
        value: source['value'] ?? null,
        text: text(source['text']),
        detailText: text(source['detailText']),
        detailTextColour: colour(source['detailTextColour']),
        tint: colour(source['tint']),
        onTint: colour(source['onTint']),
        background: colour(source['background']),
        accessory: number(source['accessory'], 0),
        height: number(source['height'], 44),
        editingStyle: number(source['editingStyle'], 0),
        tappable: source['tappable'] === true,
        labels: list(source['labels'], label),
        titleFrame: frame(source['titleFrame']),
        controlFrame: frame(source['controlFrame']),
    };
}

function barItem(value: unknown): BarItem | null {
    const source = bag(value);
    if (!source) return null;
    return {
        title: text(source['title']), image: text(source['image']), style: number(source['style'], 0), action: text(source['action']),
        system: typeof source['system'] === 'number' ? source['system'] : null,
    };
}

function bar(value: unknown): Bar {
    const source = bag(value) ?? {};
    const titleView = bag(source['titleView']);
    const image = text(titleView?.['image']);
    const caption = text(titleView?.['label']);
    const back = bag(source['back']);
    return {
        tint: colour(source['tint']),
        barTint: colour(source['barTint']),
        statusBarStyle: number(source['statusBarStyle'], 0),
        titleView: image !== null ? { image } : caption !== null ? { label: caption } : null,
        titleFade: number(source['titleFade'], 0),
        back: back ? { title: text(back['title']), image: text(back['image']) } : null,
        left: list(source['left'], barItem),
        right: list(source['right'], barItem),
    };
}

function pane(value: unknown): Pane | null {
    const source = bag(value);
    return source ? { rows: list(source['rows'], text), selected: number(source['selected'], 0), tag: number(source['tag'], 0), time: text(source['time']) } : null;
}

function tones(value: unknown): Tones | null {
    const source = bag(value);
    if (!source) return null;
    const entries = list(source['list'], (item) => {
        const entry = bag(item);
        const identifier = text(entry?.['identifier']);
        return identifier === null ? null : { identifier, name: text(entry?.['name']) ?? identifier };
    });
    return { selected: text(source['selected']), noneAtTop: source['noneAtTop'] === true, list: entries };
}

function screen(value: unknown): Screen | null {
    const source = bag(value);
    if (!source) return null;
    const rows = list(source['rows'], row);
    return {
        id: identity(source['id']),
        className: text(source['class']) ?? '',
        title: text(source['title']),
        links: list(source['links'], (item) => ({ title: text(bag(item)?.['title']) ?? '' })),
        stack: list(source['stack'], text),
        modals: number(source['modals'], 0),
        bar: bar(source['bar']),
        editing: source['editing'] === true,
        count: Math.max(0, number(source['count'], rows.length)),
        rows,
        pane: pane(source['pane']),
        tones: tones(source['tones']),
        missing: services.find((service) => service === source['missing']) ?? null,
    };
}

function attachment(value: unknown): Attachment {
    const source = bag(value);
    return { name: text(source?.['name']) ?? '', type: text(source?.['type']) ?? '', bytes: number(source?.['bytes'], 0), preview: text(source?.['preview']) ?? '', previewed: number(source?.['previewed'], 0) };
}

function presented(value: unknown): Presented | null {
    const source = bag(value);
    if (!source) return null;
    const kind = text(source['kind']);
    const id = identity(source['id']);
    if (kind === 'mail') {
        return {
            id, kind, from: text(source['from']) ?? '', subject: text(source['subject']) ?? '', to: list(source['to'], text), body: text(source['body']) ?? '', html: source['html'] === true,
            attachments: list(source['attachments'], attachment),
        };
    }
    if (kind === 'social') return { id, kind, service: text(source['service']) ?? '', text: text(source['text']) ?? '' };
    if (kind !== 'alert' && kind !== 'sheet' && kind !== 'confirmation' && kind !== 'activity') return null;
    const actions = list(source['actions'], (item) => ({ title: text(bag(item)?.['title']) ?? '', style: text(bag(item)?.['style']) ?? 'default' }));
    return { id, kind, title: text(source['title']), message: text(source['message']), actions };
}

function device(value: unknown): Device | null {
    const source = bag(value);
    if (!source) return null;
    return {
        darkMode: source['darkMode'] === true,
        rightToLeft: source['rightToLeft'] === true,
        language: text(source['language']) ?? 'en',
        scale: Math.max(1, number(source['scale'], 2)),
        idiom: text(source['idiom']) ?? 'phone',
        clock: text(source['clock']),
        clockRuns: source['clockRuns'] !== false,
        wifi: source['wifi'] === true,
    };
}

/** What a state says under "build". */
export function parseBuild(value: unknown): Build | null {
    const source = bag(value);
    if (!source) return null;
    const error = bag(source['error']);
    const told = text(source['state']);
    return {
        state: told === 'building' || told === 'failed' || told === 'refused' ? told : 'ready',
        error: error && { file: text(error['file']), line: identity(error['line']), column: identity(error['column']), text: text(error['text']) ?? '' },
        pathEnded: text(source['pathEnded']),
        page: number(source['page'], 0),
    };
}

/** Rows only: a group row is a heading, and nothing that anybody goes to. */
function found(value: unknown): Found | null {
    const source = bag(value);
    const index = number(source?.['index'], -1);
    return source && index >= 0 && typeof source['row'] === 'number' ? { key: text(source['key']) ?? `index-${index}`, index, name: text(source['name']) ?? '' } : null;
}

/** What an object says that came as a state, wherever it was kept since; null when it is none. */
export function parseState(value: unknown): State | null {
    const inner = bag(value);
    const shown = inner ? screen(inner['screen']) : null;
    return inner && shown
        ? {
            revision: number(inner['revision'], 0), screen: shown, presented: presented(inner['presented']), device: device(inner['device']),
            build: parseBuild(inner['build']), recording: text(bag(inner['recording'])?.['file']),
        }
        : null;
}

/** What a frame of the socket says, or null when it is not of this protocol. Missing or misshapen parts take harmless values. */
export function parseMessage(data: unknown): Message | null {
    let source: Bag | null;
    try {
        source = typeof data === 'string' ? bag(JSON.parse(data)) : null;
    } catch {
        return null;
    }
    if (!source) return null;
    const state = parseState(source['state']);
    const id = typeof source['id'] === 'number' ? source['id'] : null;
    if (state === null && id === null) return null;
    return {
        id, ok: source['ok'] !== false, stale: source['stale'] === true, error: text(source['error']), state,
        found: Array.isArray(source['found']) ? list(source['found'], found) : null,
        source,
    };
}

/** The version of the protocol that this page speaks. */
const version = 1;

/** Whether the application that has sent this speaks another version: it, or the page's files, were changed while the other was running. */
export function speaksOtherVersion(message: Message): boolean {
    const told = bag(message.source['state'])?.['protocol'];
    return typeof told === 'number' && told !== version;
}
