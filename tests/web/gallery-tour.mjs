// SPDX-License-Identifier: MIT
// The ways through all screens and all that they present, on the real application. Nothing on them depends on the machine: its
// clock is a virtual one, and its calendars, networks, tones and device facts are made up. Rows are pressed by their places and
// not by their names, so that the same way leads through every language.
import { mkdir, mkdtemp, rm, writeFile } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { openPage, resize, settled } from './harness.mjs';
import { drawnIn, fallbackFonts } from './gallery-drawn.mjs';
import { silence } from './mock-server.mjs';
import { profile, startPhone } from './real-phone.mjs';

const upright = { width: 390, height: 844 };

/** Each tour is one way through one phone; where its appearances differ only in the window, each scene is looked at in all of them. */
export const tours = [
    { device: {}, appearances: [{ name: 'light', viewport: upright }, { name: 'sideways', viewport: { width: 844, height: 390 } }, { name: 'forced-colours', viewport: upright, forcedColors: 'active' }] },
    { device: { darkMode: 'true' }, appearances: [{ name: 'dark', viewport: upright, colorScheme: 'dark' }] },
    { device: { languages: 'ar' }, appearances: [{ name: 'arabic', viewport: upright }] },
    { device: { idiom: 'pad' }, appearances: [{ name: 'pad', viewport: { width: 820, height: 1180 } }] },
];

const facts = {
    clock: '2026-11-20T09:00:00', systemVersion: '11.4', scale: '2', serialNumber: 'F17XK2PLHG7F', UDID: '3f0c6a51d2b94e7f8a1c5b6d7e8f90a1b2c3d4e5', model: 'Phone9,1',
    statusBarLibrary: 'true', toneController: 'PSUIToneController', twitterApp: 'false',
};

const profiles = [
    profile('Work', { allDay: false, startTime: '9:00 AM', endTime: '5:00 PM', playAlert: true, alertToneIdentifier: 'texttone:Harp', ringerVolume: 0.25, playBackVolume: 0.75, vibrate: true, wifiNetworks: ['Office'], calendarIdentifiers: ['home/personal'] }),
    profile('Cinema', { allDay: true, ringerVolume: 0, dnDEnabled: true }),
    profile('A walk with the dog, and what else there is to do in the evening', { allDay: false, startTime: '8:00 PM', endTime: '11:30 PM', enabled: false }),
];

async function writeMachine(directory, { empty }) {
    await mkdir(join(directory, 'calendars', 'home', 'personal'), { recursive: true });
    await mkdir(join(directory, 'none'));
    await mkdir(join(directory, 'tones'));
    await writeFile(join(directory, 'calendars', 'home', 'personal', 'displayname'), 'Personal');
    await writeFile(join(directory, 'calendars', 'home', 'personal', 'color'), '#34c759');
    await mkdir(join(directory, 'calendars', 'Work'));
    await writeFile(join(directory, 'calendars', 'Work', 'meetings.ics'), 'BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//EN\r\nX-WR-CALNAME:Meetings\r\nX-APPLE-CALENDAR-COLOR:#FF9500\r\nEND:VCALENDAR\r\n');
    const networks = (empty ? [] : ['Office', 'Home 5 GHz']).map((name) => `<dict><key>SSID</key><string>${name}</string></dict>`);
    await writeFile(join(directory, 'networks.plist'), `<plist version="1.0"><array>${networks.join('')}</array></plist>`);
    for (const name of ['Door', 'Harp', 'Lamp']) await writeFile(join(directory, 'tones', `${name}.wav`), silence(1));
    return { calendars: join(directory, empty ? 'none' : 'calendars'), networks: join(directory, 'networks.plist'), tones: join(directory, 'tones') };
}

/** What the steps of a tour press, and what they wait for. */
class Hand {
    constructor(page, phone) {
        this.page = page;
        this.phone = phone;
    }

    screen() { return this.page.locator('.navigator').last().locator('.page').last(); }
    /** Rows that open something, controls not counted. */
    opener(place) { return this.screen().locator('.list .row button.cell').nth(place); }

    /** Does what leads to another screen, and waits for it. */
    async go(act) {
        await this.page.evaluate(() => { globalThis.screenLeft = [...document.querySelectorAll('.navigator')].filter((each) => !each.inert).at(-1).querySelector('.page:last-child'); });
        await act();
        await this.page.waitForFunction(() => [...document.querySelectorAll('.navigator')].filter((each) => !each.inert).at(-1)?.querySelector('.page:last-child') !== globalThis.screenLeft);
        await this.rest();
    }

    open(place) { return this.go(() => this.opener(place).click()); }
    back() { return this.go(() => this.page.locator('.bar-button.back').last().click()); }
    bar(item) { return this.page.locator('.navigator').last().locator(`.bar-button[data-side="right"][data-item="${item}"]`).last().click(); }

    /** Does what presents something, and waits for that. */
    async present(act, selector) {
        await act();
        await this.page.locator(`.layer:not([inert]) ${selector}`).first().waitFor();
        await this.rest();
    }

    async choose(selector) {
        await this.page.locator(`.layer:not([inert]) ${selector}`).click();
        await this.page.waitForFunction(() => document.querySelectorAll('.layer').length === 0);
        await this.rest();
    }

    rest() { return settled(this.page); }
}

const cancel = '.choice.cancel';

/** The scenes of a phone in use: a name, what leads there, and what to do before the next one. */
const usedPhone = [
    ['profiles', async () => {}],
    ['profiles, switched off', async (hand) => {
        const rows = await hand.screen().locator('.list .row').count();
        await hand.page.getByRole('switch').click();
        await hand.page.waitForFunction((count) => document.querySelectorAll('.list .row').length < count, rows);
        return async () => {
            await hand.page.getByRole('switch').click();
            await hand.page.waitForFunction((count) => document.querySelectorAll('.list .row').length === count, rows);
        };
    }],
    ['share sheet', (hand) => hand.present(() => hand.bar(1), '.sheet')],
    ['social composer', async (hand) => {
        await hand.present(() => hand.page.locator('.layer:not([inert]) .choice').first().click(), '.composer.social');
        return () => hand.choose('.composer-bar .bar-button >> nth=0');
    }],
    ['deletion', async (hand) => {
        await hand.opener(0).focus();
        await hand.present(() => hand.page.keyboard.press('Delete'), '.sheet');
        return () => hand.choose(cancel);
    }],
    ['profile', (hand) => hand.open(0)],
    ['profile, its end', () => {}, { scrolled: true }],
    ['active hours', (hand) => hand.open(0)],
    ['alert', async (hand) => {
        // The other time, moved before the first.
        await hand.page.locator('.cell.centred').nth(1).click();
        await hand.page.locator('.cell.centred').nth(1).and(hand.page.locator('[aria-pressed="true"]')).waitFor();
        await hand.page.locator('.wheel-column').nth(2).focus();
        await hand.present(() => hand.page.keyboard.press('Home'), '.alert');
        return async () => { await hand.choose('.choice'); await hand.back(); };
    }],
    ['alert tone', async (hand) => { await hand.open(1); return () => hand.back(); }],
    ['networks', async (hand) => { await hand.open(2); return () => hand.back(); }],
    ['calendars', async (hand) => { await hand.open(3); return () => hand.back(); }],
    ['event status', async (hand) => {
        await hand.go(() => hand.screen().locator('.links button').click());
        return async () => { await hand.back(); await hand.back(); };
    }],
    ['new profile', async (hand) => {
        await hand.go(() => hand.bar(0));
        return () => hand.go(() => hand.page.keyboard.press('Escape'));
    }],
    ['miscellaneous', (hand) => hand.go(() => hand.screen().locator('.list .row button.cell').last().click())],
    ['report', async (hand) => {
        await hand.phone.writePhoneFile('tmp/velmora.log', '2026-11-20T09:00:00Z Work applied\n');
        await hand.present(() => hand.opener(1).click(), '.sheet');
    }],
    ['mail composer', (hand) => hand.present(() => hand.page.locator('.layer:not([inert]) .choice').first().click(), '.composer.mail')],
    ['draft of a mail', async (hand) => {
        await hand.present(() => hand.page.locator('.composer-bar .bar-button').first().click(), '.draft-question .sheet');
        return () => hand.choose('.draft-question .choice.destructive');
    }],
    ['bundles', async (hand) => {
        await hand.back();
        await hand.back();
        return async () => {
            await hand.open(0);
            await hand.go(() => hand.screen().locator('.list .row button.cell').last().click());
        };
    }],
    ['confirmation', (hand) => hand.present(() => hand.opener(0).click(), '.sheet')],
    // The clock stands still, and with it what is going on.
    ['activity', (hand) => hand.present(() => hand.page.locator('.layer:not([inert]) .choice').first().click(), '.alert.activity')],
];

/** Those of a phone on which there is nothing yet. */
const freshPhone = [
    ['no profiles', () => {}],
    ['new profile, no calendars', async (hand) => {
        await hand.go(() => hand.bar(0));
        // Before the way to the event status.
        await hand.go(() => hand.screen().locator('.list .row button.cell').nth(-2).click());
        return () => hand.back();
    }],
    ['new profile, no networks', async (hand) => {
        await hand.go(() => hand.screen().locator('.list .row button.cell').nth(-3).click());
        return async () => { await hand.back(); await hand.go(() => hand.page.keyboard.press('Escape')); };
    }],
    ['information', async (hand) => {
        await hand.go(() => hand.screen().locator('.list .row button.cell').last().click());
        await hand.present(() => hand.opener(1).click(), '.sheet');
        await hand.present(() => hand.page.locator('.layer:not([inert]) .choice').first().click(), '.alert');
    }],
];

export const scenesOfATour = usedPhone.length + freshPhone.length;

async function walk(session, tour, fresh, { pictures, look, last }) {
    const directory = await mkdtemp(join(tmpdir(), 'quietrix-gallery-'));
    let phone;
    try {
        const machine = await writeMachine(directory, { empty: fresh });
        phone = await startPhone({ device: { ...facts, mailAccount: fresh ? '' : 'user@example.org', ...machine, ...tour.device }, profiles: fresh ? [] : profiles });
        session.servers.add(phone);
        const [first] = tour.appearances;
        const ui = await openPage(session, { url: phone.url, viewport: first.viewport, colorScheme: first.colorScheme ?? 'light' });
        const { page } = ui;
        const hand = new Hand(page, phone);
        for (const [name, step, { scrolled = false } = {}] of fresh ? freshPhone : usedPhone) {
            const leave = await step(hand);
            await hand.rest();
            for (const appearance of tour.appearances) {
                if (tour.appearances.length > 1) {
                    await resize(page, appearance.viewport);
                    await page.emulateMedia({ forcedColors: appearance.forcedColors ?? 'none' });
                }
                await page.evaluate((toTheEnd) => { const all = document.querySelectorAll('.navigator:not([inert]) .page'); const one = all[all.length - 1]; if (one) one.scrollTop = toTheEnd ? one.scrollHeight : 0; }, scrolled);
                await hand.rest();
                await look(appearance, name, { records: await drawnIn(page), fonts: await fallbackFonts(page), picture: pictures ? await page.screenshot({ animations: 'allow', caret: 'hide' }) : null, page });
            }
            if (tour.appearances.length > 1) {
                await resize(page, first.viewport);
                await page.emulateMedia({ forcedColors: 'none' });
                await hand.rest();
            }
            if (name === last) break;
            if (leave) await leave();
        }
        await ui.close();
    } finally {
        session.servers.delete(phone);
        await phone?.close();
        await rm(directory, { recursive: true, force: true });
    }
}

/**
 * Walks a tour. Gives each of its appearances as {name, viewport, browser, fonts, scenes: [{name, records, picture}]}; `seen` is
 * told each scene's name as it is looked at, with the page on which it can be seen. The tour ends with the scene of the phone in
 * use that is named `last`, if one is.
 */
export async function takeTour(session, tour, { pictures = true, seen = async () => {}, last = null } = {}) {
    const found = new Map(tour.appearances.map(({ name, viewport }) => [name, { name, viewport, browser: session.browser.version(), fonts: null, scenes: [] }]));
    const look = async (appearance, name, { records, fonts, picture, page }) => {
        const made = found.get(appearance.name);
        made.fonts = fonts;
        made.scenes.push({ name, records, picture });
        await seen(appearance.name, name, page);
    };
    for (const fresh of last === null ? [false, true] : [false]) await walk(session, tour, fresh, { pictures, look, last });
    return [...found.values()];
}
