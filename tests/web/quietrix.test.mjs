// SPDX-License-Identifier: MIT
// The plug-in on the page, with the real application behind it.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, openPage, settled, startBrowser } from './harness.mjs';
import { openPhone as openOn, profile, row } from './real-phone.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const openPhone = (options, pageOptions) => openOn(session, options, pageOptions);

const texts = (page) => page.locator('.list').innerText();

test('RootList_opened_showsTheProfilesOfTheFile', async () => {
    const ui = await openPhone({ profiles: [profile('Work', { allDay: false, startTime: '9:05 AM', endTime: '11:30 PM' }), profile('Night', { enabled: false })] });
    const shown = await texts(ui.page);
    for (const text of ['Quietrix Go', 'Silence your iDevice without noice!!', 'Enabled', 'Active Profiles', 'Work', '9:05 AM - 11:30 PM', 'Inactive Profiles', 'Night', 'All Day', 'About', 'Miscellaneous', 'Version 1.4.2. Quietrix Go']) {
        assert.ok(shown.includes(text), `${text} is missing in: ${shown}`);
    }
    assert.match(await ui.page.locator('.product-title').first().innerText(), /Quietrix Go/);
    await ui.close();
});

test('RootList_switchTurned_isStoredForOtherProcesses', async () => {
    const ui = await openPhone({ profiles: [profile('Work')], enabled: false });
    await ui.page.getByRole('switch').click();
    await row(ui.page, 'Work').waitFor();
    assert.equal(ui.phone.switchIsOn(), true);
    await ui.page.getByRole('switch').click();
    await row(ui.page, 'Work').waitFor({ state: 'detached' });
    assert.equal(ui.phone.switchIsOn(), false);
    await ui.close();
});

test('RootList_profileSwipedAndConfirmed_leavesThePageAndTheFile', async () => {
    const ui = await openPhone({ profiles: [profile('Work'), profile('Night')] });
    const box = await row(ui.page, 'Work').boundingBox();
    await ui.page.mouse.move(box.x + box.width - 40, box.y + box.height / 2);
    await ui.page.mouse.down();
    await ui.page.mouse.move(box.x + box.width - 140, box.y + box.height / 2, { steps: 6 });
    await ui.page.mouse.up();
    await ui.page.locator('.list').getByRole('button', { name: /^Delete/ }).first().click();
    const sheet = ui.page.getByRole('dialog');
    await sheet.waitFor();
    assert.match(await sheet.innerText(), /Are you sure you want to delete the profile 'Work'\?/);
    await sheet.getByRole('button', { name: 'Delete' }).click();
    await row(ui.page, 'Work').waitFor({ state: 'detached' });
    const file = await ui.phone.readProfiles();
    assert.equal(file.includes('ID-Work'), false);
    assert.equal(file.includes('ID-Night'), true);
    await ui.close();
});

test('RootList_profileDeletedByKeyboard_asksAndCancelKeepsIt', async () => {
    const ui = await openPhone({ profiles: [profile('Work')] });
    await row(ui.page, 'Work').getByRole('button').first().focus();
    await ui.page.keyboard.press('Delete');
    const sheet = ui.page.getByRole('dialog');
    await sheet.waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.keyboard.press('Escape');
    await sheet.waitFor({ state: 'detached' });
    assert.equal(await row(ui.page, 'Work').count(), 1);
    assert.equal((await ui.phone.readProfiles()).includes('ID-Work'), true);
    await ui.close();
});

test('RootList_profileAddedByAnotherProcess_appearsByItself', async () => {
    const ui = await openPhone({ profiles: [profile('Work')] });
    await ui.phone.writeProfiles([profile('Work'), profile('Gym')]);
    ui.phone.post('com.velmora.ProfileAddedNotification');
    await row(ui.page, 'Gym').waitFor();
    await ui.close();
});

test('RootList_oneOfAThousandChangedElsewhere_isFollowed', async () => {
    const profiles = Array.from({ length: 1000 }, (_, number) => profile(`P${String(number).padStart(4, '0')}`));
    const ui = await openPhone({ profiles });
    await row(ui.page, 'P0001').waitFor();
    profiles[1].title = 'Renamed';
    await ui.phone.writeProfiles(profiles);
    ui.phone.post('com.velmora.ProfileChangedNotification');
    await row(ui.page, 'Renamed').waitFor();
    assert.equal(await row(ui.page, 'P0001').count(), 0);
    assert.ok(await ui.page.locator('.list .row').count() < 200);
    await ui.close();
});

test('Pages_twoOnOneApplication_showTheSamePhone', async () => {
    const ui = await openPhone({ profiles: [profile('Work')], enabled: false });
    const second = await openPage(session, { url: ui.phone.url });
    await ui.page.getByRole('switch').click();
    await row(second.page, 'Work').waitFor();
    assert.equal(await second.page.getByRole('switch').isChecked(), true);
    await second.close();
    await ui.close();
});

test('Screens_miscellaneousAndAdd_canBeEnteredAndLeft', async () => {
    const ui = await openPhone({ profiles: [profile('Work')] });
    await row(ui.page, 'Miscellaneous').getByRole('button').first().click();
    await row(ui.page, 'Report Problem').waitFor();
    await settled(ui.page);
    await ui.page.getByRole('button', { name: /Quietrix Go|Back/ }).first().click();
    await row(ui.page, 'Work').waitFor();
    await settled(ui.page);
    await ui.page.locator('.bar-side.trailing .bar-button').last().click();
    await ui.page.getByText('New Profile').first().waitFor();
    await settled(ui.page);
    await ui.page.getByRole('button', { name: 'Cancel' }).click();
    await row(ui.page, 'Work').waitFor();
    await ui.close();
});

for (const [name, device] of [['light', {}], ['dark', { darkMode: 'true' }], ['rightToLeft', { languages: 'ar' }], ['german', { languages: 'de' }]]) {
    test(`RootList_${name}_isAccessible`, async () => {
        const ui = await openPhone({ device, profiles: [profile('Work'), profile('Night', { enabled: false })] });
        await row(ui.page, 'Work').waitFor();
        assert.equal(await ui.page.evaluate(() => document.documentElement.dir || 'ltr'), name === 'rightToLeft' ? 'rtl' : 'ltr');
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.close();
    });
}
