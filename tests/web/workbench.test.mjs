// SPDX-License-Identifier: MIT
// The workbench on the real application.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, deskSize, openPage, settled, startBrowser, tryAgain } from './harness.mjs';
import { freePort, openPhone, openRecording, profile, row } from './real-phone.mjs';
import { cell, line } from './workbench.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const open = async (tab, options = { profiles: [profile('Work'), profile('Cinema')] }) => {
    const ui = await openPhone(session, options, { viewport: deskSize });
    await ui.page.keyboard.press('F2');
    const pane = ui.page.getByRole('complementary', { name: 'Workbench' });
    await pane.getByRole('tab', { name: tab }).click();
    await settled(ui.page);
    return { ...ui, pane, panel: pane.getByRole('tabpanel') };
};
const run = async (ui, text) => {
    const field = ui.panel.getByRole('combobox', { name: 'Command' });
    await field.fill(text);
    await field.press('Enter');
    return ui.panel.locator('.wb-entry', { hasText: text }).last();
};

test('Workbench_rowsOfTheRoot_areThoseOfTheScreen', async () => {
    const ui = await open('Rows');
    const work = line(ui.panel, 'Work');
    assert.equal((await cell(work, 'detail').textContent()).trim(), 'QuietrixProflePreferencesController');
    assert.equal((await cell(work, 'identifier').textContent()).trim(), 'title');
    assert.match(await cell(work, 'info').textContent(), /ID-Work/);
    const enabled = line(ui.panel, 'Enabled');
    assert.equal((await cell(enabled, 'set').textContent()).trim(), 'setPreferenceValue:specifier:');
    assert.equal((await cell(enabled, 'get').textContent()).trim(), 'preferenceValue:');
    assert.equal((await cell(enabled, 'class').textContent()).trim(), 'QXSwitchCell');
    await ui.page.getByRole('switch', { name: 'Enabled' }).click();
    await enabled.locator('mark', { hasText: 'false' }).waitFor();
    await line(ui.panel, 'Work').waitFor({ state: 'detached' });
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

test('Workbench_aThousandProfiles_areLookedAtInSlices', async () => {
    const ui = await open('Rows', { profiles: Array.from({ length: 1000 }, (_unused, number) => profile(`Profile ${number}`)) });
    await ui.panel.getByText(/^\d{4} rows$/).waitFor();
    await ui.panel.locator('.wb-list').evaluate((element) => { element.scrollTop = 500 * 24; });
    await ui.panel.getByText('Profile 500', { exact: true }).waitFor();
    await ui.panel.getByRole('searchbox').fill('profile 77');
    await ui.panel.getByText(/^11 of \d{4} rows, by name$/).waitFor();
    await ui.panel.getByText('Profile 779', { exact: true }).waitFor();
    await ui.close();
});

test('Workbench_console_drivesThePhone', async () => {
    const ui = await open('Console');
    const field = ui.panel.getByRole('combobox', { name: 'Command' });
    await field.pressSequentially('tap key=Work');
    await ui.panel.getByRole('option').first().waitFor();
    await field.press('Tab');
    await field.press('Enter');
    await ui.page.getByRole('heading', { level: 1, name: 'Work' }).waitFor();
    await (await run(ui, 'tap row=4000')).locator('.wb-error').waitFor();
    await (await run(ui, 'back')).getByText(/^ok · revision \d+ · QuietrixPreferencesController/).waitFor();
    await row(ui.page, 'Cinema').waitFor();
    await ui.close();
});

test('Workbench_scriptRecordedAndPlayed_doesTheSameAgain', async () => {
    const ui = await open('Console');
    const script = ui.panel.getByRole('region', { name: 'Script' });
    await script.getByRole('button', { name: 'Record' }).click();
    await row(ui.page, 'Work').click();
    await ui.page.getByRole('heading', { level: 1, name: 'Work' }).waitFor();
    await ui.page.getByRole('switch', { name: 'Vibrate', exact: true }).first().click();
    await ui.page.locator('.bar-button.back').click();
    await row(ui.page, 'Cinema').waitFor();
    await script.getByRole('button', { name: 'Stop recording' }).click();
    const vibrates = () => ui.phone.storedProfiles().find((each) => each.title === 'Work').vibrate;
    const recorded = vibrates();
    await ui.phone.writeProfiles([profile('Work', { vibrate: !recorded }), profile('Cinema')]);
    await (await run(ui, 'open')).getByText(/^ok/).waitFor();
    await script.getByRole('button', { name: 'Play' }).click();
    await script.getByText('3 of 3 steps played').waitFor();
    assert.equal(vibrates(), recorded);
    await row(ui.page, 'Cinema').waitFor();
    await ui.close();
});

test('Workbench_posted_arrivesAndIsKnownFromThenOn', async () => {
    const ui = await open('Post');
    await ui.panel.getByLabel('Name of the notification').fill('com.example.workbench');
    await ui.panel.getByRole('button', { name: 'Post system-wide', exact: true }).click();
    await ui.panel.getByText('Posted com.example.workbench system-wide.').waitFor();
    await ui.panel.getByRole('region', { name: 'Names seen so far' }).getByText('com.example.workbench').waitFor();
    await ui.close();
});

test('Workbench_timeline_showsWhatASwitchCausesAndThePhoneBefore', async () => {
    const ui = await open('Timeline');
    await ui.panel.getByRole('button', { name: 'Clear' }).click();
    await ui.page.locator('.screens').getByRole('switch', { name: 'Enabled' }).click();
    const write = ui.panel.locator('.wb-list-body [role="row"].wb-event-write').first();
    await write.waitFor();
    await row(ui.page, 'Work').waitFor({ state: 'detached' });
    await ui.page.locator('.screens').getByRole('switch', { name: 'Enabled' }).click();
    await row(ui.page, 'Work').waitFor();
    await write.click();
    const past = ui.page.locator('.wb-past');
    await past.locator('.row', { hasText: 'Miscellaneous' }).waitFor();
    assert.equal(await past.locator('.switch').first().evaluate((element) => element.checked), false);
    await past.locator('.row', { hasText: 'Work' }).waitFor({ state: 'detached' });
    await ui.panel.getByRole('button', { name: 'Back to now' }).click();
    await past.waitFor({ state: 'detached' });
    await ui.close();
});

test('Workbench_timelineOfASwitch_isATreeDownToTheFileAndBack', async () => {
    const ui = await open('Timeline');
    await ui.panel.getByRole('button', { name: 'Clear' }).click();
    await ui.page.getByRole('switch', { name: 'Enabled' }).click();
    await row(ui.page, 'Work').waitFor({ state: 'detached' });
    const levelOf = (found) => found.first().evaluate((each) => Number(each.ariaLevel));
    const level = (words) => levelOf(ui.panel.locator('.wb-list-body [role="row"]', { hasText: words }));
    await ui.panel.locator('.wb-event-write').first().waitFor();
    assert.equal(await level('set row=1 value=false'), 1);
    assert.equal(await level('setPreferenceValue:specifier:'), 2);
    assert.ok(await level('com.velmora.quietrix.plist') > 2);
    assert.equal(await levelOf(ui.panel.locator('.wb-event-darwinReceived')), await levelOf(ui.panel.locator('.wb-event-darwin')) + 1);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

test('Workbench_files_showWhatASwitchStores', async () => {
    const ui = await open('Files');
    const part = (name) => ui.panel.getByRole('region', { name });
    await part('profiles').getByText('ID-Work').first().waitFor({ state: 'attached' });
    await ui.page.getByRole('switch', { name: 'Enabled' }).click();
    await part('settings').locator('.json-changed', { hasText: 'true → false' }).waitFor();
    assert.equal(await part('profiles').locator('.json-added, .json-changed, .json-removed').count(), 0);
    await ui.close();
});

test('Workbench_device_changesTheLanguageAndStaysOnTheScreen', async () => {
    const ui = await open('Device');
    await row(ui.page, 'Work').click();
    await ui.page.getByRole('heading', { level: 1, name: 'Work' }).waitFor();
    await ui.panel.getByLabel('languages', { exact: true }).fill('ar');
    await ui.panel.getByLabel('darkMode', { exact: true }).selectOption('true');
    await ui.panel.getByRole('button', { name: 'Apply' }).click();
    await ui.panel.getByText('Changed languages, darkMode.').waitFor();
    await ui.page.locator('html[dir="rtl"][data-theme="dark"]').waitFor();
    await ui.page.getByRole('heading', { level: 1, name: 'Work' }).waitFor();
    await ui.panel.getByLabel('systemVersion', { exact: true }).fill('banana');
    await ui.panel.getByRole('button', { name: 'Apply' }).click();
    await ui.panel.locator('.wb-outcome.wb-bad', { hasText: 'systemVersion' }).waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

test('Workbench_faults_makeASwitchFailUntilTheyAreCleared', async () => {
    const ui = await open('Faults');
    await ui.panel.getByRole('checkbox', { name: 'profilesLocked' }).waitFor();
    for (const kind of ['profilesUnreadable', 'profilesCutShort', 'profilesLocked', 'diskFull', 'readOnly', 'slow', 'calendarsSilent', 'networksSilent', 'tonesSilent', 'mailFails']) {
        await ui.panel.getByRole('checkbox', { name: kind }).click();
        await ui.panel.getByText(`${kind} is on.`).waitFor();
    }
    await ui.panel.getByText('10 active').waitFor();
    await ui.panel.getByRole('button', { name: 'Clear' }).click();
    await ui.panel.getByText('None active').waitFor();
    await ui.panel.getByRole('checkbox', { name: 'diskFull' }).click();
    await ui.panel.getByText('1 active').waitFor();
    await row(ui.page, 'Work').click();
    await ui.page.getByRole('switch', { name: 'Vibrate', exact: true }).first().click();
    await ui.page.getByRole('alertdialog').waitFor();
    await ui.panel.getByRole('checkbox', { name: 'diskFull' }).click();
    await ui.panel.getByText('None active').waitFor();
    await ui.close();
});

test('Workbench_killedShell_comesBack', async () => {
    const ui = await open('Post');
    await ui.panel.getByRole('button', { name: 'Kill SpringBoard' }).click();
    await ui.panel.getByText('Killed SpringBoard.').waitFor();
    await ui.panel.getByText('SpringBoard started').waitFor();
    await ui.panel.getByLabel('Name of the notification').fill('com.example.local');
    await ui.panel.getByRole('button', { name: 'Post locally', exact: true }).click();
    await ui.panel.getByRole('region', { name: 'Names seen so far' }).getByText('com.example.local').waitFor();
    await ui.close();
});

test('Workbench_whatTheApplicationDoesNotKnow_isSaidAndNothingElseSuffers', async () => {
    const ui = await open('Console');
    await (await run(ui, 'nonsense')).locator('.wb-error').waitFor();
    await ui.pane.getByRole('tab', { name: 'Rows' }).click();
    await line(ui.panel, 'Cinema').waitFor();
    await ui.close();
});

test('Recording_opens_whereItEndedAndShowsEachMoment', async () => {
    const ui = await openRecording(session, 'hours-and-tone.rec', { viewport: deskSize });
    const pane = ui.page.getByRole('complementary', { name: 'Workbench' });
    const status = pane.locator('.wb-past-bar [role="status"]');
    const past = ui.page.locator('.wb-past');
    await pane.getByText('just after this').waitFor();
    await ui.page.locator('html[data-theme="dark"][lang="de"]').waitFor();
    await past.getByText('Büro').waitFor();
    assert.deepEqual(await pane.getByRole('tab').allTextContents(), ['Timeline']);
    assert.match(await ui.page.locator('.wb-past-label').textContent(), /^Recording hours-and-tone\.rec · \d+:\d\d\.\d{3}$/);
    assert.ok(await ui.page.evaluate(() => document.querySelector('.phone').inert));
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    // The images are those of the bundle.
    await ui.page.waitForFunction(() => [...document.querySelectorAll('.wb-past img')].some((image) => image.naturalWidth > 0));
    // The dark mode was the last change: the phone was light just before it.
    const dark = line(pane, 'dark on=true');
    await dark.click();
    await ui.page.locator('html[data-theme="dark"]').waitFor();
    await pane.getByRole('button', { name: 'Before', exact: true }).click();
    await ui.page.locator('html[data-theme="light"]').waitFor();
    await status.getByText('just before this').waitFor();
    assert.match(await ui.page.locator('.wb-past-label').textContent(), / · before /);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await pane.getByRole('button', { name: 'Before', exact: true }).click();
    // The arrows step from moment to moment, in the list and without a focus.
    await pane.locator('.wb-list').evaluate((list) => { list.scrollTop = 0; });
    await line(pane, 'set row=1 value=true').click();
    await past.getByText('Keine Profile').first().waitFor();
    await line(pane, 'set row=1 value=true').focus();
    await ui.page.keyboard.press('ArrowUp');
    await past.getByText('Keine Profile').first().waitFor({ state: 'detached' });
    await ui.page.evaluate(() => document.activeElement.blur());
    await ui.page.keyboard.press('ArrowRight');
    await past.getByText('Keine Profile').first().waitFor();
    await ui.page.keyboard.press('Escape');
    assert.equal(await ui.page.locator('.wb-past').count(), 1);
    // Without the workbench it is the last state, which says what it is and takes nothing.
    await ui.page.keyboard.press('F2');
    await past.waitFor({ state: 'detached' });
    await ui.page.locator('.banner', { hasText: 'Aufzeichnung hours-and-tone.rec' }).waitFor();
    await ui.page.locator('.dark-switch').waitFor({ state: 'hidden' });
    assert.ok(await ui.page.locator('.stage').evaluate((stage) => stage.closest('[inert]') !== null));
    await ui.page.keyboard.press('F2');
    await past.getByText('Keine Profile').first().waitFor();
    await ui.close();
});

const notConnected = (ui) => ui.pane.getByText('Not connected');
const tabs = ['Rows', 'Console', 'Overlays', 'Post', 'Files', 'Device', 'Faults', 'Timeline'];

/** What a tab shows of the phone when it is back, and that it acts on it again. */
const isAlive = {
    Rows: async (ui) => { await cell(line(ui.panel, 'Enabled'), 'value').getByText('false').waitFor(); },
    Console: async (ui) => { await (await run(ui, 'state')).getByText(/^ok · revision \d+/).waitFor(); },
    Overlays: async (ui) => {
        await ui.panel.getByRole('checkbox', { name: 'Pseudo-language' }).first().check();
        await ui.page.getByRole('switch', { name: /^\[.*\]$/ }).waitFor();
    },
    Post: async (ui) => {
        await ui.panel.getByLabel('Name of the notification').fill('com.example.back');
        await ui.panel.getByRole('button', { name: 'Post system-wide', exact: true }).click();
        await ui.panel.getByRole('region', { name: 'Names seen so far' }).getByText('com.example.back').waitFor();
    },
    Files: async (ui) => { await ui.panel.getByRole('region', { name: 'settings' }).locator('.json-changed').waitFor(); },
    Device: async (ui) => {
        await ui.panel.getByLabel('languages', { exact: true }).fill('de');
        await ui.panel.getByRole('button', { name: 'Apply' }).click();
        await row(ui.page, 'Aktiviert').waitFor();
    },
    Faults: async (ui) => {
        await ui.panel.getByText('None active').waitFor();
        await ui.panel.getByRole('checkbox', { name: 'slow' }).click();
        await ui.panel.getByText('1 active').waitFor();
    },
    Timeline: async (ui) => { await ui.panel.locator('.wb-list-body').getByText('set row=1 value=').last().waitFor(); },
};

test('Workbench_openWhenTheApplicationIsKilled_goesOnWithTheNextOneOnEachTab', async () => {
    const ui = await open('Rows', { profiles: [profile('Work')], port: await freePort() });
    for (const tab of tabs) {
        await ui.pane.getByRole('tab', { name: tab }).click();
        await settled(ui.page);
        await ui.phone.kill();
        await notConnected(ui).waitFor();
        assert.equal(await ui.page.locator('.screens').evaluate((element) => element.inert), true, tab);
        assert.equal(await ui.pane.getByRole('tab', { name: tab }).getAttribute('aria-selected'), 'true');
        await ui.phone.startAgain();
        await tryAgain(ui.page);
        await notConnected(ui).waitFor({ state: 'detached' });
        await ui.page.waitForFunction(() => document.querySelector('.phone').dataset.connection === 'open');
        await ui.page.getByRole('switch').first().click();
        await isAlive[tab](ui);
    }
    await ui.close();
});

test('Workbench_commandWhileTheApplicationIsGone_isRefusedAndNotDoneLater', async () => {
    const ui = await open('Console', { profiles: [profile('Work')], port: await freePort() });
    await ui.phone.kill();
    await notConnected(ui).waitFor();
    await (await run(ui, 'set row=1 value=false')).getByText('There is no connection.').waitFor();
    await ui.phone.startAgain();
    await tryAgain(ui.page);
    await notConnected(ui).waitFor({ state: 'detached' });
    await (await run(ui, 'state')).getByText(/^ok · revision/).waitFor();
    assert.equal(ui.phone.switchIsOn(), true);
    await ui.close();
});

test('Workbench_secondPage_seesWhatTheFirstDoes', async () => {
    const ui = await open('Timeline');
    const other = await openPage(session, { url: ui.phone.url, viewport: deskSize });
    await other.page.getByRole('switch').first().click();
    await ui.panel.getByText(/^command \d+ of connection \d+$/).first().waitFor();
    await row(ui.page, 'Work').waitFor({ state: 'detached' });
    await other.close();
    await ui.page.getByRole('switch').first().click();
    await row(ui.page, 'Work').waitFor();
    await ui.close();
});
