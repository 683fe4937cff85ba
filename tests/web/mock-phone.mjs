// SPDX-License-Identifier: MIT
// A made-up application behind the page: a few screens that answer the commands, enough to see everything the page draws.
import { bar, group, layOut, pattern, plainBar, product, row, slider, toggle } from './mock-rows.mjs';

const profile = (name, detailText) => row(1, name, {
    identifier: 'title', detailText, detailTextColour: pattern, editingStyle: 1, userInfo: { class: 'SampleProfile', identifier: name },
});

/** The active hours, the wheel on one of the two times. */
const hours = (times, tag) => ({ rows: [`From ${times[0] ?? ''}`.trim(), `To ${times[1] ?? ''}`.trim()], selected: tag, tag, time: times[tag], times });

function minuteOfDay(time) {
    const [, hour, minute, half] = /^(\d+):(\d+) ([AP])M$/.exec(time);
    return (Number(hour) % 12 + (half === 'P' ? 12 : 0)) * 60 + Number(minute);
}

/** What a report carries: a text, the beginning of a long one, other bytes, and nothing at all. */
const mailed = [
    { name: 'sample.log', type: 'mime', bytes: 60, preview: '2026-11-20T09:00:00Z one\n2026-11-20T09:00:01Z <b>two</b> é\n', previewed: 60 },
    { name: 'long.log', type: 'text/plain', bytes: 2_048_000, preview: 'a line of a log that goes on and on\n'.repeat(200), previewed: 7200 },
    { name: 'empty', type: 'mime', bytes: 0, preview: '', previewed: 0 },
];

/** What acts while something is presented. */
const undisturbed = new Set(['choose', 'compose', 'state', 'find', 'wait', 'post', 'dark', 'advance', 'open', 'device', 'fault', 'files', 'postLocal', 'kill']);

/** What changes nothing. */
const looks = new Set(['state', 'find', 'files']);

/** What names what it acts on: refused when that is no longer there. */
const onRows = new Set(['tap', 'set', 'delete']);

export class MockPhone {
    constructor() {
        this.device = { darkMode: false, rightToLeft: false, language: 'en', scale: 2, idiom: 'phone', clock: '2026-11-20T09:41:00', clockRuns: false, wifi: true };
        this.revision = 1;
        this.commands = [];
        /** What has happened since the start; the pages are told on their own sockets. */
        this.events = [];
        /** What causes the events of the command that is performed. */
        this.cause = null;
        this.refuse = new Set();
        /** Whether the last command was refused because what it meant is no longer there. */
        this.stale = false;
        this.numbered = new WeakMap();
        this.lastNumber = 0;
        this.enabled = true;
        this.active = [profile('Work', '9:00 AM - 5:00 PM'), profile('Cinema', 'All Day')];
        this.inactive = [profile('Night', '10:00 PM - 11:30 PM')];
        this.fixed = { header: product(), toggle: toggle('Enabled', true, { identifier: 'enabled' }), activeGroup: group('Active Profiles'), inactiveGroup: group('Inactive Profiles') };
        this.editing = false;
        /** How it is with the renewal of a program that is watched. */
        this.build = null;
        this.presented = null;
        this.deleting = null;
        this.levels = [[this.root()]];
    }

    get screens() { return this.levels.at(-1); }
    get screen() { return this.screens.at(-1); }

    root() {
        const none = row(7, 'No Profiles');
        const about = [group('About', 'Version 1.0. Sample Go © 2026 Sample'), row(1, 'Miscellaneous', { identifier: 'misc', properties: { iconImage: 'Misc' } })];
        return {
            class: 'SampleRootController', title: 'Sample Go', bar: () => bar(),
            rows: () => [
                this.fixed.header, Object.assign(this.fixed.toggle, { value: this.enabled }),
                ...(this.enabled ? [this.fixed.activeGroup, ...(this.active.length ? this.active : [none]), this.fixed.inactiveGroup, ...(this.inactive.length ? this.inactive : [none])] : []),
                ...about,
            ],
        };
    }

    plain(title = 'Miscellaneous') {
        const rows = [
            group(null, 'Removes every profile and restarts the system shell.'), row(13, 'Reset Profiles', { properties: { isDestructive: true } }),
            group(), row(13, 'Report Problem', { properties: { iconImage: 'email' } }), row(4, 'Version', { value: '1.0' }),
        ];
        return { class: 'SampleMiscController', title, bar: () => bar({ titleView: null, right: [] }), rows: () => rows, links: [{ title: 'Event Status', class: 'SampleStatusController' }] };
    }

    editor(title, isNew) {
        // As each device lays them out, from the trailing edge.
        const timesAt = (this.device.idiom === 'pad' ? 768 : 390) - 135;
        const hours = row(1, 'Active Hours', {
            text: null, height: 64, cellClass: 'SampleRangeCell',
            labels: [
                { tag: 21, text: 'From', frame: [16, 10, 150, 20], colour: '#000000ff', alignment: 0 }, { tag: 22, text: '9:00 AM', frame: [timesAt, 10, 100, 20], colour: '#007affff', alignment: 2 },
                { tag: 23, text: 'To', frame: [16, 34, 150, 20], colour: '#000000ff', alignment: 0 }, { tag: 24, text: '5:00 PM', frame: [timesAt, 34, 100, 20], colour: '#007affff', alignment: 2 },
            ],
        });
        const rows = [
            group(), row(8, 'Title', { identifier: 'title', value: title, set: 'set:', properties: { placeholder: 'Required', autoCaps: 'words', noAutoCorrect: false } }),
            group(), toggle('Enable', true),
            group('Schedule', 'This profile will be active based on these settings.'), toggle('All Day', false), hours,
            group('Ringer Volume & Vibrate'), slider('Playback Volume', 0.25), slider('Ringer Volume', 0.5), toggle('Vibrate', false),
            group('Alerts', 'Turn on to get notified before and after.'), row(1, 'Alert Tone', { detailText: 'Calendar Alert', detailTextColour: '#aaaaaaff' }),
            toggle('Show on StatusBar', true, { properties: { iconImage: 'StatusBar' } }),
            group('Calendars', 'Select calendars.\n\nWithout any, all events count.'),
            row(1, 'Home', { accessory: 3, cellClass: 'SampleCalendarCell', tint: '#555555ff', properties: { iconImage: { swatch: '#ff9500ff' } } }),
            row(1, 'Team and everything else with a very long name that wraps', { accessory: 0, cellClass: 'SampleCalendarCell', properties: { iconImage: { swatch: '#34c759ff' } } }),
        ];
        return {
            class: 'SampleEditorController', title, rows: () => rows,
            bar: () => bar({
                titleView: null, right: isNew ? [{ title: null, image: null, system: 3, style: 2, action: 'save:' }] : [],
                left: isNew ? [{ title: null, image: null, system: 1, style: 0, action: 'cancel:' }] : [],
            }),
        };
    }

    /** A switch that folds a number of rows away; the screen keeps its other rows. */
    folding(count, on = true) {
        const fold = toggle('Unfolded', on);
        const folded = Array.from({ length: count }, (_unused, at) => row(1, `Folded ${at + 1}`));
        const around = [group('Fold'), group('About', 'The end.'), row(1, 'Last')];
        return { class: 'SampleFoldingController', title: 'Folding', bar: () => plainBar(), fold, rows: () => [around[0], fold, ...(fold.value ? folded : []), around[1], around[2]] };
    }

    long(count) {
        const rows = [group('Ten thousand', 'The end of the list.')];
        for (let number = 1; number < count; number += 1) rows.push(row(1, `Row ${number}`));
        return { class: 'SampleLongController', title: 'Long List', bar: () => plainBar(), rows: () => rows };
    }

    empty() { return { class: 'SampleEmptyController', title: 'Empty', bar: () => plainBar(), rows: () => [] }; }

    pane(from = '9:00 AM', to = '5:00 PM') {
        return { class: 'SampleHoursController', title: 'Active Hours', bar: () => bar({ titleView: null, right: [] }), rows: () => [], pane: hours([from, to], 0) };
    }

    tones() {
        return {
            class: 'SampleToneController', title: 'Tones', bar: () => plainBar(), rows: () => [],
            tones: { selected: 'texttone:Chord', noneAtTop: true, list: ['Bell', 'Blip', 'Chord', 'Missing'].map((name) => ({ identifier: `texttone:${name}`, name })) },
        };
    }

    /** The calendars picker: a switch ahead of the first group, then the calendars of each. */
    calendars(groups = { Home: ['Personal', 'Family and everything else with a very long name that wraps'], Work: ['Meetings'] }) {
        const colours = ['#34c759ff', '#000000ff', '#ff9500ff', '#ffffffff'];
        const each = { cellClass: 'SampleCalendarCell', accessory: 0, tint: '#555555ff', tappable: true };
        const calendar = (name) => row(1, name, { ...each, properties: { iconImage: { swatch: colours[name.length % 4] } } });
        const ahead = toggle('Ignore All Day Events', true, { ...each, cellClass: 'SampleSwitchCell', properties: { footerText: 'When turned on, all-day events do not count.' } });
        const rows = [ahead, ...Object.entries(groups).flatMap(([title, names]) => [group(title), ...names.map(calendar)]), group(null, 'Version 1.0. Sample Go © 2026 Sample')];
        const missing = Object.values(groups).flat().length === 0 ? 'calendars' : null;
        return { class: 'SampleCalendarsController', title: 'Calendar', bar: () => bar({ titleView: null, right: [] }), rows: () => rows, missing };
    }

    networks(names = ['Office', 'Home 5 GHz']) {
        const rows = [...names.map((name) => toggle(name, false)), group(null, 'Version 1.0. Sample Go © 2026 Sample')];
        return { class: 'SampleNetworksController', title: 'WiFi Networks', bar: () => bar({ titleView: null, right: [] }), rows: () => rows, missing: names.length === 0 ? 'networks' : null };
    }

    /** The event-status picker: rows that a label of their own says in the colour of the product. */
    eventStatus() {
        const choice = (text, at) => row(7, null, {
            identifier: text, text: null, cellClass: 'SampleStatusCell', tint: pattern, tappable: true, accessory: at === 0 ? 3 : 0,
            labels: [{ tag: 123123, text, frame: [15, 0, 350, 44], colour: pattern, alignment: 0 }],
        });
        const rows = [...['All', 'Accepted', 'Tentative', 'Declined/Cancelled'].map(choice), group(null, 'Version 1.0. Sample Go © 2026 Sample')];
        return { class: 'SampleEventStatusController', title: 'Event Status', bar: () => bar({ titleView: null, right: [] }), rows: () => rows };
    }

    /** A tone screen whose system has none to show. */
    toneless() { return { class: 'SampleToneController', title: 'Alert Tone', bar: () => bar({ titleView: null, right: [] }), rows: () => [], missing: 'tones' }; }

    /** Puts other screens in place of the stack, as the start of a scene. */
    show(...screens) { this.levels = [screens]; this.presented = null; this.changed(); }
    push(screen) { this.screens.push(screen); this.changed(); }

    changed() { this.revision += 1; }

    /** A screen's or a presented thing's own number. */
    number(thing) {
        if (!this.numbered.has(thing)) this.numbered.set(thing, this.lastNumber += 1);
        return this.numbered.get(thing);
    }

    /** The rows of the screen on top, as they are sent: a row that a rebuild made anew has the key of the one that it equals. */
    rows() {
        const { screen } = this;
        if (screen.laidOut?.revision === this.revision) return screen.laidOut.rows;
        const keys = screen.rowKeys ??= new Map();
        const seen = new Map();
        const rows = layOut(screen.rows()).map((each) => {
            const owner = each.identifier || each.userInfo ? [each.kind, each.identifier, each.userInfo?.identifier] : [each.kind, null, null, each.name];
            const likeness = JSON.stringify(owner);
            const place = seen.get(likeness) ?? 0;
            seen.set(likeness, place + 1);
            const name = `${likeness} ${place}`;
            // Its own on its screen: rows of other screens have the same.
            if (!keys.has(name)) keys.set(name, String(keys.size + 1));
            return { ...each, key: keys.get(name) };
        });
        screen.laidOut = { revision: this.revision, rows };
        return rows;
    }

    /** Whether what a command names is gone. */
    isStale({ do: name, screen, presented, key }) {
        if (screen !== undefined && screen !== this.number(this.screen)) return true;
        if (presented !== undefined && (!this.presented || presented !== this.number(this.presented))) return true;
        return onRows.has(name) && key !== undefined && !this.rows().some((each) => each.key === key);
    }

    state(window = {}) {
        const { screen, screens } = this;
        const rows = this.rows();
        const from = window.from ?? 0;
        const count = window.count ?? rows.length;
        const beneath = screens.at(-2);
        const fullBar = screen.bar();
        if (beneath) fullBar.back = { title: beneath.title, image: null };
        return {
            ...(this.build ? { build: this.build } : {}), protocol: this.protocol ?? 1, revision: this.revision, events: [], device: this.device, presented: this.presented && { id: this.number(this.presented), ...this.presented },
            screen: {
                id: this.number(screen), class: screen.class, title: screen.title, specifier: null, links: screen.links ?? [], stack: screens.map((entry) => entry.class), modals: this.levels.length - 1,
                bar: fullBar, editing: this.editing, count: rows.length, rows: rows.slice(from, from + count), pane: screen.pane ?? null, tones: screen.tones ?? null, missing: screen.missing ?? null,
            },
        };
    }

    /** Does what a command says; true when it could be done. */
    perform(command) {
        this.commands.push(command);
        this.stale = this.isStale(command);
        if (this.stale) return false;
        // The key decides, wherever its row stands by now.
        if (onRows.has(command.do) && command.key !== undefined) command = { ...command, row: this.rows().findIndex((each) => each.key === command.key) };
        if (this.refuse.has(command.do) || (this.presented && !undisturbed.has(command.do))) return false;
        const handler = this[`do_${command.do}`];
        if (!handler) return false;
        const done = handler.call(this, command);
        if (done && !looks.has(command.do)) this.changed();
        return done;
    }

    do_state() { return true; }
    do_find({ text }) { return text !== ''; }

    found(text) {
        return this.rows().filter((each) => each.name?.toLowerCase().includes(text.toLowerCase())).map(({ key, index, name, row: place }) => ({ key, index, name, row: place }));
    }

    do_dark({ on }) { this.device = { ...this.device, darkMode: on }; return true; }
    do_link() { this.screens.push(this.eventStatus()); return true; }
    do_pickTimeRow({ row: picked }) { this.screen.pane = hours(this.screen.pane.times, picked); return true; }

    do_pickTime({ time }) {
        const { pane } = this.screen;
        const times = pane.times.map((each, at) => (at === pane.tag ? time : each));
        if (times.every(Boolean) && minuteOfDay(times[1]) <= minuteOfDay(times[0])) {
            // The wheel stays on what was refused.
            this.screen.pane = { ...pane, time };
            this.alert('Error', "Invalid configuration, 'To' time cannot be less than 'From' time.");
        } else {
            this.screen.pane = hours(times, pane.tag);
        }
        return true;
    }

    do_pickTone({ identifier }) { this.screen.tones = { ...this.screen.tones, selected: identifier }; return true; }

    do_back() {
        if (this.screens.length < 2) return false;
        this.screens.pop();
        return true;
    }

    do_tap({ row: index }) {
        const tapped = this.screen.rows()[index];
        if (!tapped?.tappable) return false;
        if (tapped.editingStyle === 1) this.screens.push(this.editor(tapped.name, false));
        else if (tapped.identifier === 'misc') this.screens.push(this.plain());
        else if (tapped.cellClass === 'SampleStatusCell') for (const each of this.screen.rows()) each.accessory = each === tapped ? 3 : 0;
        else if (tapped.cellClass === 'SampleCalendarCell' || tapped.cellClass === 'SampleSwitchCell') tapped.accessory = tapped.accessory === 3 ? 0 : 3;
        else if (tapped.name === 'Reset Profiles') this.presented = { kind: 'confirmation', title: null, message: 'Reset all profiles?', actions: [{ title: 'OK', style: 'destructive' }, { title: 'Cancel', style: 'cancel' }] };
        else if (tapped.name === 'Report Problem') this.presented = { kind: 'mail', from: 'me@example.net', subject: 'Problem', to: ['help@example.org'], body: '<p>Hello</p><p>It <b>rings</b>.</p><script>document.title="bad"</script>', html: true, attachments: mailed };
        else return false;
        return true;
    }

    do_set({ row: index, value }) {
        const target = this.screen.rows()[index];
        if (!target?.set) return false;
        target.value = value;
        if (target.identifier === 'enabled') {
            this.enabled = value;
            // The screen makes its rows anew: equal ones.
            this.fixed.toggle = toggle('Enabled', value, { identifier: 'enabled' });
            Object.assign(this.levels[0][0], this.root());
        }
        return true;
    }

    do_delete({ row: index }) {
        const target = this.screen.rows()[index];
        if (target?.editingStyle !== 1) return false;
        this.deleting = target;
        // As a swipe does on the phone.
        this.editing = true;
        this.presented = {
            kind: 'sheet', title: null, message: `Are you sure you want to delete the profile '${target.name}'?`,
            actions: [{ title: 'Delete', style: 'destructive' }, { title: 'Cancel', style: 'cancel' }],
        };
        return true;
    }

    do_bar({ side, item }) {
        const pressed = this.screen.bar()[side][item];
        if (!pressed) return false;
        if (pressed.action === 'add:') this.levels.push([this.editor('New Profile', true)]);
        else if (pressed.action === 'cancel:') this.levels.pop();
        else if (pressed.action === 'save:') this.alert('Error', 'The profile could not be saved.');
        else if (pressed.action === 'share:') {
            this.presented = { kind: 'sheet', title: null, message: null, actions: [{ title: 'Share 😘', style: 'default' }, { title: 'Follow @sample', style: 'default' }, { title: 'Cancel', style: 'cancel' }] };
        }
        return true;
    }

    do_choose({ action }) {
        if (!this.presented?.actions?.some((each) => each.title === action)) return false;
        this.presented = null;
        if (action === 'Delete') {
            this.active = this.active.filter((each) => each !== this.deleting);
            this.inactive = this.inactive.filter((each) => each !== this.deleting);
        }
        if (action === 'Cancel' || action === 'Delete') this.editing = false;
        if (action.startsWith('Share')) this.presented = { kind: 'social', service: 'SLServiceTypeTwitter', text: "I'm enjoying #Sample, which keeps my phone quiet by reading my calendar." };
        return true;
    }

    do_compose() {
        if (this.presented?.kind !== 'mail' && this.presented?.kind !== 'social') return false;
        this.presented = null;
        return true;
    }

    alert(title, message) {
        this.presented = { kind: 'alert', title, message, actions: [{ title: 'Close', style: 'cancel' }] };
        this.changed();
    }

    activity(title) {
        this.presented = { kind: 'activity', title, message: null, actions: [] };
        this.changed();
    }
}
