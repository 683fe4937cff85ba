// SPDX-License-Identifier: MIT
// The tabs that act on the phone as a whole: notifications, files, device settings, faults.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, lastCommand, startBrowser, until } from './harness.mjs';
import { WorkbenchPhone, changedName } from './mock-workbench.mjs';
import { openWorkbench } from './workbench.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const open = (tab, options = {}) => openWorkbench(session, tab, { phone: new WorkbenchPhone(), ...options });
const without = ({ id, from, count, elsewhere, ...command }) => command;
const press = (ui, name) => ui.panel.getByRole('button', { name, exact: true }).click();
const master = (ui) => ui.page.getByRole('switch', { name: 'Enabled' });

test('Post_aName_isPostedSystemWideOrLocally', async () => {
    const ui = await open('post');
    const name = ui.panel.getByLabel('Name of the notification');
    await press(ui, 'Post system-wide');
    await ui.panel.getByText('Which notification? It needs a name.').waitFor();
    await name.fill('com.example.other');
    await press(ui, 'Post system-wide');
    await ui.panel.getByText('Posted com.example.other system-wide.').waitFor();
    assert.deepEqual(without(lastCommand(ui.phone, 'post')), { do: 'post', name: 'com.example.other' });
    const outcome = ui.panel.getByRole('region', { name: 'Outcome' });
    assert.deepEqual((await outcome.locator('.wb-kind').allTextContents()), ['darwin', 'darwinReceived']);
    await name.press('Enter');
    await until(() => ui.phone.commands.filter((command) => command.do === 'post').length === 2, 'Enter posts too');
    await press(ui, 'Post locally');
    await ui.panel.getByText('Posted com.example.other locally.').waitFor();
    assert.deepEqual(without(lastCommand(ui.phone, 'postLocal')), { do: 'postLocal', name: 'com.example.other' });
    await ui.close();
});

test('Post_namesOfEvents_areOffered', async () => {
    const ui = await open('post');
    await ui.panel.getByText('No notification yet.').waitFor();
    await master(ui).click();
    const known = ui.panel.getByRole('region', { name: 'Names seen so far' }).getByRole('listitem');
    await known.filter({ hasText: changedName }).getByText('system-wide', { exact: true }).waitFor();
    await known.filter({ hasText: 'SampleChanged' }).getByText('local', { exact: true }).waitFor();
    assert.equal(await known.count(), 2);
    assert.deepEqual(await ui.panel.locator('datalist option').evaluateAll((options) => options.map((option) => option.value)), ['SampleChanged', changedName]);
    await press(ui, `Post ${changedName} locally`);
    await until(() => lastCommand(ui.phone, 'postLocal')?.name === changedName, 'it was posted');
    await ui.close();
});

test('Post_killTheShell_isSentAndToldOf', async () => {
    const ui = await open('post');
    await press(ui, 'Kill SpringBoard');
    await ui.panel.getByText('Killed SpringBoard.').waitFor();
    await ui.panel.getByText('SpringBoard started').waitFor();
    assert.deepEqual(without(lastCommand(ui.phone, 'kill')), { do: 'kill', process: 'SpringBoard' });
    await ui.close();
});

test('Post_refused_saysWhy', async () => {
    const ui = await open('post', { arrange: (phone) => phone.refuse.add('kill') });
    await press(ui, 'Kill SpringBoard');
    await ui.panel.locator('.wb-bad').getByText('cannot do kill').waitFor();
    await ui.close();
});

test('Files_areTreesWithWhatTheLastCommandChanged', async () => {
    const ui = await open('files');
    const part = (name) => ui.panel.getByRole('region', { name });
    await part('settings').locator('.json-name', { hasText: 'com.example.sample.enabled' }).waitFor();
    assert.equal(await ui.panel.locator('.json-changed').count(), 0);
    ui.phone.stored.profiles.splice(1, 1);
    ui.phone.stored.profiles.push({ identifier: 'ID-New', title: 'New' });
    ui.phone.stored.profiles[0].days = [1, 4];
    await master(ui).click();
    await part('settings').locator('.json-changed', { hasText: 'com.example.sample.enabled: true → false' }).waitFor();
    await part('profiles').locator('.json-removed', { hasText: 'ID-Cinema' }).waitFor();
    await part('profiles').locator('.json-added', { hasText: 'ID-New' }).waitFor();
    await part('profiles').locator('.json-changed', { hasText: '1: 2 → 4' }).waitFor();
    await part('profiles').locator('.json-removed', { hasText: '2: 3' }).waitFor();
    assert.equal(await ui.panel.locator('.json-added, .json-changed, .json-removed').count(), 5);
    assert.equal(await part('log').locator('mark').textContent(), '2026-11-20T09:00:01Z enabled is false\n');
    await ui.page.getByRole('button', { name: 'Dark Mode' }).click();
    await ui.panel.locator('.json-changed').first().waitFor({ state: 'detached' });
    assert.equal(await part('log').locator('mark').textContent(), '');
    await ui.close();
});

test('Files_changedWhileTheyAreOnTheirWay_areAskedForAgain', async () => {
    const ui = await open('files');
    const settings = ui.panel.getByRole('region', { name: 'settings' });
    await settings.locator('.json-name', { hasText: 'version' }).waitFor();
    ui.server.hold = true;
    ui.phone.changed();
    ui.server.push();
    await until(() => ui.server.held.length === 1, 'the files are asked for');
    ui.phone.settings = { ...ui.phone.settings, version: 2 };
    ui.phone.changed();
    ui.server.push();
    ui.server.letGo();
    await settings.locator('.json-leaf', { hasText: 'version: 2' }).waitFor();
    await ui.close();
});

test('Files_foldedByHand_stayFolded', async () => {
    const ui = await open('files');
    const profiles = ui.panel.getByRole('region', { name: 'profiles' });
    await profiles.locator('.json-branch .json-branch .json-branch > summary').first().waitFor();
    await profiles.locator('.json-branch .json-branch > summary').first().click();
    await profiles.locator('details details[open]').waitFor({ state: 'detached' });
    await master(ui).click();
    await ui.panel.getByRole('region', { name: 'settings' }).locator('.json-changed').waitFor();
    assert.equal(await profiles.locator('details details[open]').count(), 0);
    await ui.close();
});

test('Files_thatCannotBeHad_sayWhy', async () => {
    const ui = await open('files', { arrange: (phone) => {
        phone.do_files = () => {
            phone.extra = { files: { settings: null, profiles: null, log: '', problems: { profiles: 'The file has 9 GiB.' } } };
            return true;
        };
    } });
    await ui.panel.getByRole('region', { name: 'settings' }).getByText('There is no such file.').waitFor();
    await ui.panel.getByRole('region', { name: 'profiles' }).getByText('The file has 9 GiB.').waitFor();
    await ui.panel.getByText('The log is empty.').waitFor();
    await ui.close();
});

test('Files_notSupported_saySo', async () => {
    const ui = await open('files', { arrange: (phone) => phone.refuse.add('files') });
    await ui.panel.getByText('cannot do files').waitFor();
    await ui.close();
});

test('Device_everyKey_isThereAndWhatIsTickedGoesAsOneCommand', async () => {
    const ui = await open('device');
    const keys = ['systemVersion', 'idiom', 'scale', 'languages', 'darkMode', 'clock', 'statusBarLibrary', 'toneController', 'mailAccount', 'twitterApp', 'serialNumber', 'UDID', 'model', 'calendars', 'networks', 'tones'];
    for (const key of keys) assert.equal(await ui.panel.getByLabel(key, { exact: true }).count(), 1, key);
    assert.equal(await ui.panel.getByRole('button', { name: 'Apply' }).isDisabled(), true);
    const field = (key) => ui.panel.getByLabel(key, { exact: true });
    await field('languages').fill('de,en');
    await field('darkMode').selectOption('true');
    await field('clock').selectOption('virtual');
    await ui.panel.getByLabel('Start of the virtual clock').fill('2027-01-02T03:04:05');
    await ui.panel.getByLabel('Change mailAccount').check();
    await field('model').fill('none');
    await ui.panel.getByLabel('Change model').uncheck();
    await press(ui, 'Apply');
    await ui.panel.getByText('Changed languages, darkMode, clock, mailAccount.').waitFor();
    assert.deepEqual(without(lastCommand(ui.phone, 'device')), { do: 'device', set: { languages: 'de,en', darkMode: 'true', clock: '2027-01-02T03:04:05', mailAccount: '' } });
    assert.equal(await ui.panel.locator('.wb-setting.wb-active').count(), 0);
    assert.equal(await field('languages').inputValue(), '');
    await ui.page.locator('html[data-theme="dark"]').waitFor();
    await ui.close();
});

test('Device_pathThatEnded_isTold', async () => {
    const ui = await open('device', { arrange: (phone) => { phone.pathEnded = 'there is no row "Work" any more'; } });
    await ui.panel.getByLabel('Change idiom').check();
    await press(ui, 'Apply');
    await ui.panel.getByText('there is no row "Work" any more').waitFor();
    assert.deepEqual(without(lastCommand(ui.phone, 'device')).set, { idiom: 'pad' });
    await ui.close();
});

test('Device_refused_keepsWhatWasFilledIn', async () => {
    const ui = await open('device', { arrange: (phone) => phone.refuse.add('device') });
    await ui.panel.getByLabel('systemVersion', { exact: true }).fill('banana');
    await press(ui, 'Apply');
    await ui.panel.getByText('cannot do device').waitFor();
    assert.equal(await ui.panel.getByLabel('systemVersion', { exact: true }).inputValue(), 'banana');
    await press(ui, 'Undo');
    assert.equal(await ui.panel.getByLabel('systemVersion', { exact: true }).inputValue(), '');
    await ui.close();
});

test('Device_filledInWhileTheAnswerIsOnItsWay_isStillToBeApplied', async () => {
    const ui = await open('device');
    const version = ui.panel.getByLabel('systemVersion', { exact: true });
    await version.fill('12.0');
    ui.server.hold = true;
    await press(ui, 'Apply');
    await until(() => ui.server.held.length > 0, 'it was sent');
    await version.fill('12.1');
    ui.server.letGo();
    await ui.panel.getByText('Changed systemVersion.').waitFor();
    assert.equal(await version.inputValue(), '12.1');
    assert.equal(await ui.panel.getByLabel('Change systemVersion').isChecked(), true);
    await ui.close();
});

test('Faults_areSwitchedAndTheActiveOnesMarked', async () => {
    const ui = await open('faults', { arrange: (phone) => phone.faults.push('mailFails') });
    const fault = (name) => ui.panel.getByRole('checkbox', { name });
    assert.equal(await ui.panel.getByRole('checkbox').count(), 10);
    await ui.panel.getByText('1 active').waitFor();
    assert.equal(await fault('mailFails').isChecked(), true);
    await fault('diskFull').click();
    await ui.panel.getByText('2 active').waitFor();
    assert.deepEqual(without(lastCommand(ui.phone, 'fault')), { do: 'fault', kind: 'diskFull' });
    await ui.panel.getByLabel('Milliseconds of each file operation').fill('750');
    await fault('slow').click();
    await ui.panel.getByText('3 active').waitFor();
    assert.deepEqual(without(lastCommand(ui.phone, 'fault')), { do: 'fault', kind: 'slow', milliseconds: 750 });
    await fault('diskFull').click();
    await ui.panel.getByText('2 active').waitFor();
    assert.deepEqual(without(lastCommand(ui.phone, 'fault')), { do: 'fault', kind: 'diskFull', on: false });
    await press(ui, 'Clear');
    await ui.panel.getByText('None active').waitFor();
    assert.deepEqual(without(lastCommand(ui.phone, 'fault')), { do: 'fault', clear: true });
    assert.equal(await ui.panel.locator('.wb-active').count(), 0);
    await ui.close();
});

test('Faults_refused_areNotShownAsActive', async () => {
    const ui = await open('faults', { arrange: (phone) => phone.refuse.add('fault') });
    await ui.panel.getByRole('checkbox', { name: 'readOnly' }).click();
    await ui.panel.getByText('cannot do fault').waitFor();
    await ui.page.waitForFunction(() => !document.querySelector('#wb-panel :checked'));
    await ui.close();
});

for (const tab of ['post', 'files', 'device', 'faults']) {
    for (const darkMode of [false, true]) {
        test(`Tools_${tab}_${darkMode ? 'dark' : 'light'}_isAccessible`, async () => {
            const ui = await open(tab, { arrange: (phone) => {
                phone.device.darkMode = darkMode;
                phone.faults.push('slow');
            } });
            await master(ui).click();
            if (tab === 'files') await ui.panel.locator('.json-changed').waitFor();
            if (tab === 'device') await ui.panel.getByLabel('Change clock').check();
            if (tab === 'post') await press(ui, 'Kill SpringBoard');
            assert.deepEqual(await accessibilityProblems(ui.page), []);
            await ui.close();
        });
    }
}
