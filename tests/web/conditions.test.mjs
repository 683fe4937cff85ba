// SPDX-License-Identifier: MIT
// Calendars, networks, event status and tone of a profile, chosen on the page with the real application behind it.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { mkdir, mkdtemp, rm, writeFile } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { after, before, test } from 'node:test';
import { isDeepStrictEqual } from 'node:util';
import { accessibilityProblems, openPage, patience, settled, startBrowser } from './harness.mjs';
import { silence } from './mock-server.mjs';
import { profile, startPhone } from './real-phone.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const [personal, meetings] = ['home/personal', 'Work/meetings.ics'];

/** What the machine has: two accounts with a calendar each, two networks, a few tones. */
async function writeMachine(directory) {
    await mkdir(join(directory, 'calendars', personal), { recursive: true });
    await mkdir(join(directory, 'calendars', 'Work'));
    await mkdir(join(directory, 'tones'));
    await writeFile(join(directory, 'calendars', personal, 'displayname'), 'Personal');
    await writeFile(join(directory, 'calendars', personal, 'color'), '#34c759');
    await writeFile(join(directory, 'calendars', meetings), 'BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//test//EN\r\nX-WR-CALNAME:Meetings\r\nX-APPLE-CALENDAR-COLOR:#FF9500\r\nEND:VCALENDAR\r\n');
    const networks = ['Office', 'Home 5 GHz'].map((name) => `<dict><key>SSID</key><string>${name}</string></dict>`);
    await writeFile(join(directory, 'networks.plist'), `<plist version="1.0"><array>${networks.join('')}</array></plist>`);
    for (const [name, seconds] of [['Door', 60], ['Lamp', 60], ['Blip', 0.05]]) await writeFile(join(directory, 'tones', `${name}.wav`), silence(seconds));
    return { calendars: join(directory, 'calendars'), networks: join(directory, 'networks.plist'), tones: join(directory, 'tones') };
}

const readList = 'import json, plistlib, sys; json.dump(plistlib.loads(sys.stdin.buffer.read()), sys.stdout)';

/** Opens the page on a phone with one profile; close() ends both. */
async function openPhone({ device = {}, values = {}, machine = writeMachine } = {}, pageOptions = {}) {
    const directory = await mkdtemp(join(tmpdir(), 'quietrix-machine-'));
    const remove = () => rm(directory, { recursive: true, force: true });
    let phone;
    try {
        phone = await startPhone({ device: { ...await machine(directory), ...device }, profiles: [profile('Work', { playAlert: true, ...values })] });
        const ui = await openPage(session, { ...pageOptions, url: phone.url });
        return {
            phone, page: ui.page,
            /** Resolves when the file holds these values of the profile; fails with what it holds instead. */
            async stores(expected) {
                for (const end = Date.now() + patience; ;) {
                    const read = spawnSync('python3', ['-c', readList], { input: await phone.readProfiles(), encoding: 'utf8' });
                    assert.equal(read.status, 0, read.stderr);
                    const [profileNow] = JSON.parse(read.stdout).profiles;
                    const held = Object.fromEntries(Object.keys(expected).map((key) => [key, profileNow[key]]));
                    if (isDeepStrictEqual(held, expected)) return;
                    if (Date.now() > end) assert.deepEqual(held, expected);
                }
            },
            async close() { try { await ui.close(); } finally { try { await phone.close(); } finally { await remove(); } } },
        };
    } catch (error) {
        await phone?.close();
        await remove();
        throw error;
    }
}

const title = (page, text) => page.locator('.bar .bar-title', { hasText: text });
const arrived = async (page, text) => { await title(page, text).last().waitFor(); await settled(page); };
const press = (page, name) => page.locator('.page').last().getByRole('button', { name, exact: true }).click();
const back = (page) => page.locator('.bar-button.back').last().click();

async function openEditor(page) {
    await page.locator('.list .row', { hasText: 'Work' }).getByRole('button').first().click();
    await arrived(page, 'Work');
}

/** The pickers by the editor's button that opens them, and their titles. */
const pickers = { Calendar: 'Calendar', 'WiFi Networks': 'WiFi Networks', 'Event Status': 'Event Status' };
const toneButton = /^Alert Tone/;

async function openPicker(page, name) {
    await press(page, name);
    await arrived(page, pickers[name]);
}

async function openTones(page) {
    await page.locator('.page').last().getByRole('button', { name: toneButton }).click();
    await page.getByRole('radiogroup').waitFor();
    await settled(page);
}

test('Calendars_chosenAndUnchosen_areStoredAtOnce', async () => {
    const ui = await openPhone();
    await openEditor(ui.page);
    await openPicker(ui.page, 'Calendar');
    assert.deepEqual(await ui.page.locator('.page').last().locator('.header').allInnerTexts(), ['home', 'Work']);
    const colours = await ui.page.locator('.swatch').evaluateAll((each) => each.map((element) => getComputedStyle(element).backgroundColor));
    assert.deepEqual(colours, ['rgb(52, 199, 89)', 'rgb(255, 149, 0)']);
    const chosen = async (name) => { await press(ui.page, name); await ui.page.getByRole('button', { name: `${name} Selected` }).waitFor(); };
    const unchosen = async (name) => { await press(ui.page, `${name} Selected`); await ui.page.getByRole('button', { name, exact: true }).waitFor(); };
    await chosen('Personal');
    await ui.stores({ calendarIdentifiers: [personal] });
    await chosen('Meetings');
    await ui.stores({ calendarIdentifiers: [personal, meetings] });
    await unchosen('Personal');
    await chosen('Personal');
    await ui.stores({ calendarIdentifiers: [meetings, personal] });
    await ui.close();
});

test('AllDayEvents_switchAndItsBody_areStoredApart', async () => {
    const ui = await openPhone();
    await openEditor(ui.page);
    await openPicker(ui.page, 'Calendar');
    await ui.page.getByText("ignores the 'all day' events").waitFor();
    const control = ui.page.getByRole('switch', { name: 'Ignore All Day Events' });
    const wasOn = await control.isChecked();
    await press(ui.page, 'Ignore All Day Events');
    await ui.page.getByRole('button', { name: 'Ignore All Day Events Selected' }).waitFor();
    await ui.stores({ calendarIdentifiers: ['allDayEventsIgnored'] });
    assert.equal(await control.isChecked(), wasOn);
    await control.click();
    await ui.page.waitForFunction((before) => document.querySelector('.switch[aria-label="Ignore All Day Events"]').checked !== before, wasOn);
    await press(ui.page, 'Ignore All Day Events Selected');
    await ui.page.getByRole('button', { name: 'Ignore All Day Events', exact: true }).waitFor();
    await ui.stores({ allDayEventsIgnored: !wasOn, calendarIdentifiers: [] });
    await ui.close();
});

test('Editor_switchRows_takeNoTaps', async () => {
    const ui = await openPhone();
    await openEditor(ui.page);
    const control = ui.page.getByRole('switch', { name: 'Vibrate', exact: true });
    const wasOn = await control.isChecked();
    await ui.page.getByText('Vibrate', { exact: true }).click();
    assert.equal(await ui.page.getByRole('button', { name: 'Vibrate', exact: true }).count(), 0);
    assert.equal(await control.isChecked(), wasOn);
    await ui.close();
});

test('Networks_switched_areStoredAtOnce', async () => {
    const ui = await openPhone({ values: { wifiNetworks: ['Office'] } });
    await openEditor(ui.page);
    await openPicker(ui.page, 'WiFi Networks');
    const control = (name) => ui.page.getByRole('switch', { name });
    assert.deepEqual([await control('Office').isChecked(), await control('Home 5 GHz').isChecked()], [true, false]);
    await control('Home 5 GHz').click();
    await ui.stores({ wifiNetworks: ['Office', 'Home 5 GHz'] });
    await control('Office').click();
    await ui.stores({ wifiNetworks: ['Home 5 GHz'] });
    // Whoever comes back sees what was stored.
    await back(ui.page);
    await arrived(ui.page, 'Work');
    await openPicker(ui.page, 'WiFi Networks');
    assert.deepEqual([await control('Office').isChecked(), await control('Home 5 GHz').isChecked()], [false, true]);
    await ui.close();
});

test('EventStatus_chosenThroughTheLink_isStoredAtOnce', async () => {
    const ui = await openPhone({ values: { applyProfileEventStatus: 2 } });
    await openEditor(ui.page);
    await openPicker(ui.page, 'Event Status');
    for (const [name, value] of [['Declined/Cancelled', 3], ['Accepted', 1], ['All', 0]]) {
        await press(ui.page, name);
        await ui.page.getByRole('button', { name: `${name} Selected` }).waitFor();
        assert.equal(await ui.page.locator('.page').last().locator('.check').count(), 1);
        await ui.stores({ applyProfileEventStatus: value });
    }
    await ui.close();
});

test('Tone_chosen_soundsAndIsStored', async () => {
    const ui = await openPhone({ values: { alertToneIdentifier: 'texttone:Lamp' } });
    await ui.page.evaluate(() => {
        globalThis.sounds = [];
        // A short tone is over soon, and so is what is said of it.
        globalThis.said = [];
        const live = document.querySelector('body > [aria-live]');
        new MutationObserver(() => globalThis.said.push(live.textContent)).observe(live, { childList: true });
        const play = HTMLMediaElement.prototype.play;
        HTMLMediaElement.prototype.play = function () { globalThis.sounds.push(this); return play.call(this); };
    });
    const heard = () => ui.page.evaluate(() => globalThis.sounds.filter((audio) => !audio.paused).map((audio) => audio.dataset.tone));
    await openEditor(ui.page);
    await openTones(ui.page);
    const tone = (name) => ui.page.getByRole('radio', { name, exact: true });
    assert.deepEqual(await ui.page.getByRole('radio').allInnerTexts().then((each) => each.map((text) => text.trim())), ['None', 'Blip', 'Calendar Alert', 'Door', 'Lamp']);
    assert.equal(await tone('Lamp').getAttribute('aria-checked'), 'true');
    await tone('Door').click();
    await ui.page.waitForFunction(() => document.querySelector('body > [aria-live]').textContent === 'Playing Door');
    assert.deepEqual(await heard(), ['texttone:Door']);
    assert.ok(await ui.page.evaluate(() => globalThis.sounds[0].duration) > 59, 'all of the file has come');
    await ui.stores({ alertToneIdentifier: 'texttone:Door' });
    await tone('Calendar Alert').click();
    await ui.page.waitForFunction(() => globalThis.said.includes('Playing Calendar Alert'));
    await ui.stores({ alertToneIdentifier: 'texttone:Calendar Alert' });
    await tone('Door').click();
    await ui.page.locator('.playing').waitFor();
    await tone('None').click();
    await ui.page.waitForFunction(() => document.querySelector('.tone').getAttribute('aria-checked') === 'true');
    assert.deepEqual(await heard(), []);
    // "None" is the tone that the screen was opened with.
    await ui.stores({ alertToneIdentifier: 'texttone:Lamp' });
    await tone('Door').click();
    await ui.page.locator('.playing').waitFor();
    await back(ui.page);
    await arrived(ui.page, 'Work');
    assert.deepEqual(await heard(), []);
    await ui.page.locator('.detail', { hasText: 'Door' }).waitFor();
    await ui.close();
});

test('Pickers_byKeyboardAlone_canAllBeUsed', async () => {
    const ui = await openPhone();
    const { page } = ui;
    const focused = () => page.evaluate(() => {
        const element = document.activeElement;
        return (element.getAttribute('aria-label') ?? element.innerText).replace(/\s+/g, ' ').trim();
    });
    /** Goes on with the tab key to what is called so, and presses a key on it. */
    const reach = async (name, role, key = 'Enter') => {
        for (let steps = 0; steps < 60; steps += 1) {
            await page.keyboard.press('Tab');
            if (name.test(await focused()) && await page.evaluate((wanted) => (document.activeElement.getAttribute('role') ?? 'button') === wanted, role)) {
                await page.keyboard.press(key);
                return;
            }
        }
        assert.fail(`${name} is not reached`);
    };
    const goBack = async () => {
        await page.locator('.bar-title').last().focus();
        await page.keyboard.press('Shift+Tab');
        await page.keyboard.press('Enter');
        await arrived(page, 'Work');
    };
    const opened = async (text) => {
        await arrived(page, text);
        await page.waitForFunction(() => document.activeElement.matches('.bar-title'));
    };
    await reach(/^Work/, 'button');
    await opened('Work');

    await reach(/^Calendar$/, 'button');
    await opened('Calendar');
    await reach(/^Ignore All Day Events$/, 'button');
    await page.getByRole('button', { name: 'Ignore All Day Events Selected' }).waitFor();
    const ignored = await page.getByRole('switch').first().isChecked();
    await reach(/^Ignore All Day Events$/, 'switch', 'Space');
    await reach(/^Meetings$/, 'button', 'Space');
    await page.getByRole('button', { name: 'Meetings Selected' }).waitFor();
    await ui.stores({ calendarIdentifiers: ['allDayEventsIgnored', meetings], allDayEventsIgnored: !ignored });

    await goBack();
    await reach(/^WiFi Networks$/, 'button');
    await opened('WiFi Networks');
    await reach(/^Office$/, 'switch', 'Space');
    await goBack();
    await ui.stores({ wifiNetworks: ['Office'] });

    await reach(/^Event Status$/, 'button');
    await opened('Event Status');
    await reach(/^Tentative$/, 'button');
    await page.getByRole('button', { name: 'Tentative Selected' }).waitFor();
    await ui.stores({ applyProfileEventStatus: 2 });

    await goBack();
    await reach(toneButton, 'button');
    await page.waitForFunction(() => document.querySelector('[role="radiogroup"]') && document.activeElement.matches('.bar-title'));
    await reach(/^Calendar Alert$/, 'radio', 'ArrowDown');
    assert.equal(await focused(), 'Door');
    await page.keyboard.press('Enter');
    await page.locator('.playing').waitFor();
    await page.waitForFunction(() => document.activeElement.getAttribute('aria-checked') === 'true');
    await ui.stores({ alertToneIdentifier: 'texttone:Door' });
    await ui.close();
});

/** Visits the four pickers; `look` is called on each. */
async function visitAll(page, look) {
    await openEditor(page);
    await look('the editor');
    for (const name of Object.keys(pickers)) {
        await openPicker(page, name);
        await look(name);
        await back(page);
        await arrived(page, 'Work');
    }
    await page.getByRole('button', { name: toneButton }).click();
    await arrived(page, /./);
    await page.waitForFunction(() => document.querySelector('[role="radiogroup"], .notice'));
    await settled(page);
    await look('the tones');
}

for (const [name, device] of [['light', {}], ['dark', { darkMode: 'true' }]]) {
    test(`Pickers_${name}_areAccessible`, async () => {
        const ui = await openPhone({ device, values: { calendarIdentifiers: ['allDayEventsIgnored', meetings], alertToneIdentifier: 'texttone:Door' } });
        await visitAll(ui.page, async (where) => assert.deepEqual(await accessibilityProblems(ui.page), [], where));
        await ui.page.getByRole('radio', { name: 'Lamp' }).click();
        await ui.page.locator('.playing').waitFor();
        assert.deepEqual(await accessibilityProblems(ui.page), [], 'a tone sounds');
        await ui.close();
    });

    test(`Pickers_${name}OnAMachineWithNothing_sayWhatIsMissingAccessibly`, async () => {
        const machine = async (directory) => {
            await mkdir(join(directory, 'calendars'));
            await writeFile(join(directory, 'networks.plist'), '<plist version="1.0"><array/></plist>');
            return { calendars: join(directory, 'calendars'), networks: join(directory, 'networks.plist'), toneController: 'none' };
        };
        const ui = await openPhone({ machine, device });
        const said = [];
        await visitAll(ui.page, async (where) => {
            assert.deepEqual(await accessibilityProblems(ui.page), [], where);
            said.push(...await ui.page.locator('.page').last().locator('.notice h2').allInnerTexts());
        });
        assert.deepEqual(said, ['No Calendars', 'No Networks', 'No Tones']);
        await ui.close();
    });
}
