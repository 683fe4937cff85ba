// SPDX-License-Identifier: MIT
// A made-up application that also answers what the workbench asks for: events with their causes, device settings, faults, files.
import { MockPhone } from './mock-phone.mjs';

const faultKinds = ['profilesUnreadable', 'profilesCutShort', 'profilesLocked', 'diskFull', 'readOnly', 'slow', 'calendarsSilent', 'networksSilent', 'tonesSilent', 'mailFails'];
const deviceKeys = [
    'systemVersion', 'idiom', 'scale', 'languages', 'darkMode', 'clock', 'statusBarLibrary', 'toneController', 'mailAccount', 'twitterApp', 'serialNumber', 'UDID', 'model', 'calendars', 'networks', 'tones',
];

export const changedName = 'com.example.sample.changed';

export class WorkbenchPhone extends MockPhone {
    constructor() {
        super();
        this.faults = [];
        this.faultMilliseconds = null;
        this.settings = { 'com.example.sample.enabled': true, version: 1 };
        this.stored = { format: 1, profiles: ['Work', 'Cinema', 'Night'].map((title) => ({ identifier: `ID-${title}`, title, enabled: true, days: [1, 2, 3], volume: 0.5 })) };
        this.log = '2026-11-20T09:00:00Z started\n';
        this.at = 0;
        /** What the path of screens ended with when the device was changed last. */
        this.pathEnded = null;
        /** What the answer to the command that is performed carries beside the state. */
        this.extra = {};
    }

    /** Something happens, caused by an event, or by the command that is performed; its number. */
    tell(event, cause = this.cause ?? null) {
        const id = this.events.length + 1;
        this.at += 3;
        this.events.push({ id, at: this.at, cause, ...event });
        return id;
    }

    state(window) { return { ...super.state(window), faults: [...this.faults], ...(this.faultMilliseconds === null ? {} : { faultMilliseconds: this.faultMilliseconds }) }; }

    perform(command) {
        this.extra = {};
        return super.perform(command);
    }

    do_set(command) {
        const target = this.screen.rows()[command.row];
        const done = super.do_set(command);
        if (!done) return false;
        const call = this.tell({ event: 'call', class: this.screen.class, selector: 'setPreferenceValue:specifier:', row: this.rows()[command.row]?.key ?? null });
        this.settings = { ...this.settings, 'com.example.sample.enabled': command.value };
        const store = this.tell({ event: 'store', call: 'update', identifier: target.identifier, ok: true, ms: 4.25 }, call);
        this.tell({ event: 'write', path: '/var/mobile/Library/Preferences/com.example.sample.plist', ok: true, ms: 3.5 }, store);
        this.tell({ event: 'local', name: 'SampleChanged' }, store);
        const posted = this.tell({ event: 'darwin', name: changedName }, store);
        this.tell({ event: 'darwinReceived', name: changedName }, posted);
        this.tell({ event: 'reload' }, store);
        this.log += `2026-11-20T09:00:01Z enabled is ${command.value}\n`;
        return true;
    }

    do_tap(command) {
        const done = super.do_tap(command);
        if (done) this.tell({ event: 'push', class: this.screen.class });
        return done;
    }

    do_post({ name }) {
        const posted = this.tell({ event: 'darwin', name });
        this.tell({ event: 'darwinReceived', name }, posted);
        return true;
    }

    do_postLocal({ name }) {
        this.tell({ event: 'local', name });
        return true;
    }

    do_kill({ process }) {
        if (process !== 'SpringBoard') return false;
        const kill = this.tell({ event: 'kill', process });
        this.tell({ event: 'process', name: process, state: 'ended' }, kill);
        this.tell({ event: 'process', name: process, state: 'started', ms: 12 }, kill);
        return true;
    }

    do_files() {
        this.extra = { files: { settings: structuredClone(this.settings), profiles: structuredClone(this.stored), log: this.log, problems: {} } };
        return true;
    }

    do_device({ set }) {
        if (Object.keys(set).some((key) => !deviceKeys.includes(key))) return false;
        if (set.darkMode !== undefined) this.device = { ...this.device, darkMode: set.darkMode === 'true' };
        if (set.idiom !== undefined) this.device = { ...this.device, idiom: set.idiom };
        if (set.languages !== undefined) {
            const languages = [set.languages].flat().join().split(',');
            const { languages: _before, ...device } = this.device;
            this.device = { ...device, language: languages[0], rightToLeft: languages[0].startsWith('ar'), ...(languages.length > 1 ? { languages } : {}) };
        }
        if (this.pathEnded !== null) this.extra = { pathEnded: this.pathEnded };
        return true;
    }

    do_fault({ kind, milliseconds, on = true, clear }) {
        if (clear) {
            this.faults = [];
        } else {
            if (!faultKinds.includes(kind)) return false;
            this.faults = this.faults.filter((each) => each !== kind);
            if (on) this.faults.push(kind);
            if (kind === 'slow') this.faultMilliseconds = on ? milliseconds : null;
        }
        return true;
    }
}
