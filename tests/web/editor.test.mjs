// SPDX-License-Identifier: MIT
// The profile editor and its active hours on the page, with the real application behind it.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, settled, startBrowser, until } from './harness.mjs';
import { openPhone as openOn, profile, row } from './real-phone.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const openPhone = (options) => openOn(session, options);
const toggle = (page, name) => page.getByRole('switch', { name, exact: true });
const column = (page, name) => page.getByRole('spinbutton', { name, exact: true });
const work = (values = {}) => profile('Work', { allDay: false, startTime: '9:00 AM', endTime: '5:00 PM', playAlert: true, alertToneIdentifier: 'texttone:Calendar Alert', ...values });

/** Waits until the file holds a profile of that title for which the check answers yes. */
async function stored(ui, title, check, what) {
    let found;
    await until(() => {
        found = ui.phone.storedProfiles().find((each) => each.title === title);
        return found !== undefined && check(found);
    }, `${title}: ${what}`);
    return found;
}

async function edit(ui, title) {
    await row(ui.page, title).getByRole('button').first().click();
    await toggle(ui.page, 'Enable').waitFor();
    await settled(ui.page);
}

/** Presses Add, and gives the new profile's title field. */
async function addProfile(ui) {
    await ui.page.locator('.bar-side.trailing .bar-button').last().click();
    const title = ui.page.getByRole('textbox', { name: 'Title' });
    await title.waitFor();
    await settled(ui.page);
    return title;
}

/** Waits until the wheel edits a time, and stands on it. */
async function edits(page, name) {
    await page.getByRole('button', { name, pressed: true }).waitFor();
    await page.getByRole('group', { name }).waitFor();
    await page.waitForFunction(() => !document.querySelector('.wheel-column[data-moving]'));
}

/** Moves the focus on by Tab until it is on the element. */
async function tabTo(page, locator) {
    for (let step = 0; step < 80; step += 1) {
        if (await locator.evaluate((element) => element === document.activeElement)) return;
        await page.keyboard.press('Tab');
    }
    throw new Error(`the keyboard does not reach ${locator}`);
}

test('Editor_newProfile_isNamedTimedSavedFoundAndChanged', async () => {
    const ui = await openPhone({ profiles: [profile('Night')] });
    const title = await addProfile(ui);
    await title.fill('Gym');
    await title.press('Enter');
    if (!(await toggle(ui.page, 'Enable').isChecked())) await toggle(ui.page, 'Enable').click();
    await toggle(ui.page, 'All Day').waitFor();
    if (await toggle(ui.page, 'All Day').isChecked()) await toggle(ui.page, 'All Day').click();
    await row(ui.page, 'From').waitFor();
    await settled(ui.page);

    await row(ui.page, 'From').getByRole('button').click();
    await column(ui.page, 'Hours').waitFor();
    await settled(ui.page);
    await ui.page.getByRole('button', { name: /^To / }).click();
    await edits(ui.page, /^To /);
    await column(ui.page, 'AM or PM').press('End');
    await column(ui.page, 'Hours').press('End');
    await column(ui.page, 'Hours').press('ArrowDown');
    await column(ui.page, 'Minutes').press('End');
    await column(ui.page, 'Minutes').press('Enter');
    await ui.page.getByRole('button', { name: 'To 11:59 PM' }).waitFor();
    await ui.page.getByRole('button', { name: /Gym|Back/ }).first().click();
    await row(ui.page, '11:59 PM').waitFor();
    assert.deepEqual(ui.phone.storedProfiles().map((each) => each.title), ['Night'], 'nothing is stored before Save');

    await settled(ui.page);
    await ui.page.getByRole('button', { name: 'Save' }).click();
    await row(ui.page, 'Gym').waitFor();
    const saved = await stored(ui, 'Gym', () => true, 'stored');
    assert.equal(saved.endTime, '11:59 PM');
    assert.equal('newProfile' in saved, false);

    await settled(ui.page);
    await edit(ui, 'Gym');
    const before = saved.vibrate;
    await toggle(ui.page, 'Vibrate').click();
    await stored(ui, 'Gym', (each) => each.vibrate !== before, 'vibrates otherwise');
    await ui.page.getByRole('slider', { name: 'Ringer Volume' }).focus();
    await ui.page.keyboard.press('End');
    await stored(ui, 'Gym', (each) => each.ringerVolume === 1, 'rings loud');
    await ui.close();
});

test('Editor_newProfileCancelled_leavesNothing', async () => {
    const ui = await openPhone({ profiles: [profile('Night')] });
    const title = await addProfile(ui);
    await title.fill('Gym');
    await ui.page.getByRole('button', { name: 'Cancel' }).click();
    await row(ui.page, 'Night').waitFor();
    await settled(ui.page);
    assert.equal(await row(ui.page, 'Gym').count(), 0);
    assert.deepEqual(ui.phone.storedProfiles().map((each) => each.title), ['Night']);
    await ui.close();
});

test('Editor_switches_bringAndTakeTheirRows', async () => {
    const ui = await openPhone({ profiles: [work()] });
    await edit(ui, 'Work');
    await toggle(ui.page, 'All Day').click();
    await row(ui.page, 'From').waitFor({ state: 'detached' });
    await toggle(ui.page, 'All Day').click();
    await row(ui.page, 'From').waitFor();
    await toggle(ui.page, 'Ring Alert').click();
    await row(ui.page, 'Alert Tone').waitFor({ state: 'detached' });
    await toggle(ui.page, 'Enable').click();
    await row(ui.page, 'All Day').waitFor({ state: 'detached' });
    await stored(ui, 'Work', (each) => each.enabled === false && each.playAlert === false, 'switched off');
    await toggle(ui.page, 'Enable').click();
    await row(ui.page, 'All Day').waitFor();
    await ui.close();
});

test('Editor_failedSave_showsTheErrorAndKeepsWhatWasTyped', async () => {
    const ui = await openPhone({ profiles: [work()] });
    await edit(ui, 'Work');
    await ui.phone.breakProfiles();
    const title = ui.page.getByRole('textbox', { name: 'Title' });
    await title.fill('Office');
    await title.press('Enter');
    const alert = ui.page.getByRole('alertdialog');
    await alert.waitFor();
    assert.match(await alert.innerText(), /Error/);
    await alert.getByRole('button', { name: 'Close' }).click();
    await alert.waitFor({ state: 'detached' });
    assert.equal(await title.inputValue(), 'Office');
    await ui.close();
});

test('ActiveHours_toEqualToFrom_isRefusedAndNothingIsStored', async () => {
    const ui = await openPhone({ profiles: [work({ endTime: '10:00 AM' })] });
    await edit(ui, 'Work');
    await row(ui.page, 'From').getByRole('button').click();
    await column(ui.page, 'Hours').waitFor();
    await settled(ui.page);
    await column(ui.page, 'Hours').press('ArrowUp');
    await column(ui.page, 'Hours').press('Enter');
    const alert = ui.page.getByRole('alertdialog');
    await alert.waitFor();
    assert.match(await alert.innerText(), /Invalid configuration, 'To' time cannot be less than 'From' time\./);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.keyboard.press('Escape');
    await alert.waitFor({ state: 'detached' });
    assert.equal(await ui.page.getByRole('button', { name: 'From 9:00 AM' }).count(), 1);
    assert.equal(await column(ui.page, 'Hours').getAttribute('aria-valuetext'), '10', 'the wheel stays where the user put it');
    assert.equal(ui.phone.storedProfiles()[0].startTime, '9:00 AM');
    await ui.close();
});

test('Editor_byKeyboardAlone_changesEveryKindOfRow', async () => {
    const ui = await openPhone({ profiles: [work({ vibrate: false, playBackVolume: 0 })] });
    const { page } = ui;
    const press = (key) => page.keyboard.press(key);
    await tabTo(page, row(page, 'Work').getByRole('button').first());
    await press('Enter');
    await toggle(page, 'Enable').waitFor();
    await settled(page);

    await tabTo(page, page.getByRole('textbox', { name: 'Title' }));
    await press('Control+A');
    await page.keyboard.type('Desk');
    await press('Enter');
    await stored(ui, 'Desk', () => true, 'renamed');
    await tabTo(page, page.getByRole('slider', { name: 'Playback Volume' }));
    await press('End');
    await stored(ui, 'Desk', (each) => each.playBackVolume === 1, 'played loud');
    await tabTo(page, toggle(page, 'Vibrate'));
    await press('Space');
    await stored(ui, 'Desk', (each) => each.vibrate === true, 'vibrates');

    const hours = row(page, 'From').getByRole('button');
    await tabTo(page, hours);
    await press('Enter');
    await column(page, 'Hours').waitFor();
    await settled(page);
    await tabTo(page, page.getByRole('button', { name: /^To / }));
    await press('Enter');
    await edits(page, /^To /);
    await tabTo(page, column(page, 'Hours'));
    await press('ArrowUp');
    await press('Enter');
    await stored(ui, 'Desk', (each) => each.endTime === '6:00 PM', 'ends later');
    await ui.close();
});

for (const [name, device] of [['light', {}], ['dark', { darkMode: 'true' }], ['rightToLeft', { languages: 'ar' }]]) {
    test(`EditorAndHours_${name}_areAccessible`, async () => {
        const ui = await openPhone({ device, profiles: [work()] });
        await row(ui.page, 'Work').getByRole('button').first().click();
        await ui.page.locator('.cell.labelled').waitFor();
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.page.locator('.cell.labelled').click();
        await ui.page.locator('.wheel-column').first().waitFor();
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.close();
    });
}

test('NewProfileSheet_lightAndDark_isAccessible', async () => {
    for (const darkMode of ['false', 'true']) {
        const ui = await openPhone({ device: { darkMode } });
        await ui.page.locator('.bar-side.trailing .bar-button').last().click();
        await ui.page.getByRole('button', { name: 'Save' }).waitFor();
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.close();
    }
});
