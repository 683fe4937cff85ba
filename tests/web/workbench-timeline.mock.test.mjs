// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, settled, startBrowser } from './harness.mjs';
import { WorkbenchPhone, changedName } from './mock-workbench.mjs';
import { cell, line, openWorkbench } from './workbench.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const open = (options = {}) => openWorkbench(session, 'timeline', { phone: new WorkbenchPhone(), ...options });
const master = (ui) => ui.page.locator('.stage').first().getByRole('switch', { name: 'Enabled' });
const lines = (ui) => ui.panel.locator('.wb-list-body [data-place]');
/** What is drawn: the level of each line, and its words. */
const drawn = (ui) => lines(ui).evaluateAll((all) => all.map((each) => `${each.ariaLevel} ${each.querySelector('.wb-kind').textContent} ${each.querySelector('.wb-column-what').textContent.trim()}`.trim()));
const count = (ui, number) => ui.page.waitForFunction((wanted) => document.querySelectorAll('.wb-list-body [data-place]').length === wanted, number);
const press = (ui, name) => ui.panel.getByRole('button', { name, exact: true }).click();
const kind = (ui, name) => ui.panel.getByRole('group', { name: 'Kinds of events' }).getByRole('button', { name: new RegExp(`^${name} \\d+$`) });

const ofASwitch = (value) => [
    `1 command set row=1 value=${value}`, '2 call SampleRootController setPreferenceValue:specifier: row 2', '3 store update enabled',
    '4 write /var/mobile/Library/Preferences/com.example.sample.plist', '4 local SampleChanged', `4 darwin ${changedName}`, `5 darwinReceived ${changedName}`, '4 reload',
];

test('Timeline_events_standUnderWhatTheyCameOf', async () => {
    const ui = await open();
    await ui.panel.getByText('Nothing has happened yet.').waitFor();
    await master(ui).click();
    await count(ui, 8);
    assert.deepEqual(await drawn(ui), ofASwitch(false));
    assert.ok(ui.phone.commands.some((command) => command.events === 'all'));
    const store = line(ui.panel, 'update enabled');
    assert.equal((await cell(store, 'time').textContent()).trim(), '0:00.006');
    assert.equal((await cell(store, 'took').textContent()).trim(), '4.3');
    // What comes of an old event later stands under it.
    ui.phone.tell({ event: 'log', text: 'much later' }, 4);
    ui.phone.tell({ event: 'local', name: 'FromOutside' }, null);
    ui.server.push();
    await count(ui, 10);
    assert.equal((await drawn(ui))[5], '5 log much later');
    assert.equal((await drawn(ui))[9], '1 local FromOutside');
    await ui.close();
});

test('Timeline_commandsOfOthers_goByTheirNumber', async () => {
    const ui = await open();
    ui.phone.tell({ event: 'local', name: 'Foreign' }, { command: 7, id: 999, connection: 44 });
    ui.server.push();
    await count(ui, 2);
    assert.deepEqual(await drawn(ui), ['1 command command 7 of connection 44', '2 local Foreign']);
    await ui.pane.getByRole('tab', { name: 'Post' }).click();
    await ui.panel.getByLabel('Name of the notification').fill('com.example.mine');
    await press(ui, 'Post locally');
    await ui.panel.getByText('Posted com.example.mine locally.').waitFor();
    await ui.pane.getByRole('tab', { name: 'Timeline' }).click();
    await count(ui, 4);
    assert.deepEqual((await drawn(ui)).slice(2), ['1 command postLocal name=com.example.mine (workbench)', '2 local com.example.mine']);
    await ui.close();
});

test('Timeline_branches_areFoldedByPointerAndByKeys', async () => {
    const ui = await open();
    await master(ui).click();
    await count(ui, 8);
    await line(ui.panel, 'update enabled').locator('.wb-twisty').click();
    await count(ui, 3);
    await line(ui.panel, 'update enabled').getByText('+5').waitFor();
    assert.equal(await line(ui.panel, 'update enabled').getAttribute('aria-expanded'), 'false');
    // Folding is no choosing.
    assert.equal(await ui.page.locator('.phone[inert]').count(), 0);
    await line(ui.panel, 'update enabled').focus();
    await ui.page.keyboard.press('ArrowRight');
    await count(ui, 8);
    await line(ui.panel, 'SampleChanged').focus();
    await ui.page.keyboard.press('ArrowLeft');
    await ui.page.waitForFunction(() => document.activeElement.textContent.includes('update enabled'));
    await ui.page.keyboard.press('ArrowLeft');
    await count(ui, 3);
    await press(ui, 'Fold all');
    await count(ui, 1);
    await press(ui, 'Unfold all');
    await count(ui, 3);
    await ui.close();
});

test('Timeline_filtered_keepsWhatMatchesAndWhatItStandsUnder', async () => {
    const ui = await open();
    await master(ui).click();
    await count(ui, 8);
    await ui.panel.getByRole('searchbox', { name: 'Filter events' }).fill('samplechanged');
    await count(ui, 4);
    assert.deepEqual(await drawn(ui), ofASwitch(false).filter((_each, at) => [0, 1, 2, 4].includes(at)));
    assert.equal(await ui.panel.locator('.wb-context').count(), 3);
    await ui.panel.getByRole('searchbox', { name: 'Filter events' }).fill('');
    await count(ui, 8);
    for (const name of ['call', 'store', 'reload']) await kind(ui, name).click();
    // The call and the store stay for the sake of what came of them.
    await count(ui, 7);
    for (const name of ['write', 'local', 'darwin', 'darwinReceived']) await kind(ui, name).click();
    await count(ui, 1);
    assert.equal(await kind(ui, 'store').getAttribute('aria-pressed'), 'false');
    await kind(ui, 'write').click();
    await count(ui, 4);
    await ui.close();
});

test('Timeline_paused_standsStillAndLosesNothing', async () => {
    const ui = await open();
    await press(ui, 'Pause');
    await master(ui).click();
    await ui.panel.getByText('Paused, 7 more').waitFor();
    assert.equal(await lines(ui).count(), 0);
    await press(ui, 'Pause');
    await count(ui, 8);
    await press(ui, 'Clear');
    await ui.panel.getByText('Nothing has happened yet.').waitFor();
    await master(ui).click();
    await count(ui, 8);
    assert.deepEqual(await drawn(ui), ofASwitch(true));
    await ui.close();
});

test('Timeline_closedWorkbench_goesOnRecording', async () => {
    const ui = await open();
    await ui.page.keyboard.press('F2');
    await ui.pane.waitFor({ state: 'hidden' });
    await master(ui).click();
    await ui.page.locator('.list .row', { hasText: 'Work' }).waitFor({ state: 'detached' });
    await ui.page.keyboard.press('F2');
    await count(ui, 8);
    await ui.close();
});

test('Timeline_tenThousandEvents_areDrawnAsTheyAreLookedAt', async () => {
    const ui = await open();
    for (let number = 0; number < 1000; number += 1) {
        const store = ui.phone.tell({ event: 'store', call: 'update', identifier: `ID-${number}`, ok: true }, null);
        for (let each = 0; each < 9; each += 1) ui.phone.tell({ event: 'log', text: `line ${number}-${each}` }, store);
    }
    ui.server.push();
    await kind(ui, 'log').waitFor();
    const list = ui.panel.locator('.wb-list');
    await ui.panel.getByText('line 999-8', { exact: true }).waitFor();
    assert.ok(await lines(ui).count() < 120);
    assert.equal(await list.locator('[role="treegrid"]').getAttribute('aria-rowcount'), '10001');
    await list.evaluate((element) => { element.scrollTop = 120_000; });
    await ui.panel.getByText('update ID-500', { exact: true }).waitFor();
    // Who has scrolled away from the end stays there.
    ui.phone.tell({ event: 'log', text: 'one more' }, null);
    ui.server.push();
    await kind(ui, 'log').getByText('9001').waitFor();
    assert.equal(await list.evaluate((element) => element.scrollTop), 120_000);
    await ui.panel.getByRole('searchbox', { name: 'Filter events' }).fill('line 7-');
    await count(ui, 10);
    await ui.close();
});

test('Timeline_applicationThatTellsNoCauses_isAFlatList', async () => {
    const ui = await open();
    ui.phone.events.push({ event: 'local', name: 'One' }, { event: 'reload' });
    ui.server.push();
    await count(ui, 2);
    assert.deepEqual(await drawn(ui), ['1 local One', '1 reload']);
    await ui.close();
});

test('Past_chosenMoment_isShownAndTakesNoInput', async () => {
    const ui = await open();
    await master(ui).click();
    await count(ui, 8);
    await ui.page.locator('.stage .row', { hasText: 'Miscellaneous' }).click();
    await ui.page.getByRole('heading', { level: 1, name: 'Miscellaneous' }).waitFor();
    await count(ui, 10);
    const past = ui.page.locator('.wb-past');
    await line(ui.panel, 'SampleChanged').click();
    await past.waitFor();
    await settled(ui.page);
    // Off, and so without profiles.
    assert.equal(await past.locator('.switch').evaluate((element) => element.checked), false);
    assert.equal(await past.locator('.row', { hasText: 'Work' }).count(), 0);
    await ui.panel.getByText('The phone as it was at 0:00.012').waitFor();
    assert.equal(await ui.page.locator('.wb-past-label').textContent(), 'Past · 0:00.012');
    const asked = ui.phone.commands.length;
    const { x, y, width } = await past.locator('.row', { hasText: 'Miscellaneous' }).boundingBox();
    await ui.page.mouse.click(x + width / 2, y + 20);
    await ui.page.keyboard.press('Escape');
    await ui.page.goBack();
    await ui.page.waitForFunction(() => history.state.depth === 1);
    assert.deepEqual(ui.phone.commands.slice(asked).filter((command) => command.do !== 'state'), []);
    await press(ui, 'Back to now');
    await past.waitFor({ state: 'detached' });
    await ui.page.getByRole('heading', { level: 1, name: 'Miscellaneous' }).waitFor();
    assert.equal(await ui.page.locator('[inert] .phone, .phone[inert]').count(), 0);
    await ui.close();
});

test('Past_ofAnotherScreen_isReachedMomentByMoment', async () => {
    const ui = await open();
    await master(ui).click();
    await count(ui, 8);
    await master(ui).click();
    await count(ui, 16);
    await ui.page.locator('.stage .row', { hasText: 'Miscellaneous' }).click();
    await count(ui, 18);
    const past = ui.page.locator('.wb-past');
    await line(ui.panel, 'SampleMiscController').click();
    await past.getByText('Reset Profiles').waitFor();
    await press(ui, 'Earlier');
    await past.locator('.row', { hasText: 'Cinema' }).waitFor();
    await press(ui, 'Earlier');
    await past.locator('.row', { hasText: 'Cinema' }).waitFor({ state: 'detached' });
    await press(ui, 'Later');
    await past.locator('.row', { hasText: 'Cinema' }).waitFor();
    await press(ui, 'Before');
    await past.locator('.row', { hasText: 'Cinema' }).waitFor({ state: 'detached' });
    await past.locator('.row', { hasText: 'Miscellaneous' }).waitFor();
    await ui.panel.getByText(/^The phone as it was .*just before this/).waitFor();
    await press(ui, 'Before');
    await past.locator('.row', { hasText: 'Cinema' }).waitFor();
    // While the past is shown, the list's keys show what they lead to.
    await line(ui.panel, 'SampleMiscController').click();
    await past.getByText('Reset Profiles').waitFor();
    await line(ui.panel, 'SampleMiscController').focus();
    await ui.page.keyboard.press('ArrowUp');
    await ui.page.keyboard.press('ArrowUp');
    await past.locator('.row', { hasText: 'Cinema' }).waitFor();
    await ui.page.keyboard.press('Escape');
    await past.waitFor({ state: 'detached' });
    await ui.close();
});

test('Past_dressedInDark_leavesThePresentAsItIs', async () => {
    const ui = await open({ arrange: (phone) => { phone.device.darkMode = true; } });
    await master(ui).click();
    await count(ui, 8);
    await ui.page.getByRole('button', { name: 'Dark Mode' }).click();
    await ui.page.locator('html[data-theme="light"]').waitFor();
    await line(ui.panel, 'SampleChanged').click();
    await ui.page.locator('.wb-past').waitFor();
    assert.equal(await ui.page.locator('html').getAttribute('data-theme'), 'dark');
    // The present goes on beneath it.
    ui.phone.perform({ do: 'set', row: 1, value: true });
    Object.assign(ui.phone, { device: { ...ui.phone.device, rightToLeft: true, language: 'ar' } });
    ui.phone.changed();
    ui.server.push();
    await ui.page.locator('.screens .row', { hasText: 'Cinema' }).waitFor({ state: 'attached' });
    await ui.page.waitForFunction(() => document.documentElement.dataset.theme === 'dark' && document.documentElement.dir === 'ltr');
    assert.equal(await ui.page.locator('.wb-past .row', { hasText: 'Cinema' }).count(), 0);
    await press(ui, 'Back to now');
    assert.deepEqual(await ui.page.evaluate(() => [document.documentElement.dataset.theme, document.documentElement.dir]), ['light', 'rtl']);
    await ui.close();
});

test('Past_withSomethingPresented_showsIt', async () => {
    const ui = await open();
    ui.phone.alert('Error', 'Something was wrong.');
    ui.phone.tell({ event: 'present', class: 'SampleAlert' }, null);
    ui.server.push();
    await ui.page.getByRole('alertdialog', { name: 'Error' }).getByRole('button', { name: 'Close' }).click();
    await ui.page.getByRole('alertdialog').waitFor({ state: 'detached' });
    await line(ui.panel, 'SampleAlert').click();
    await ui.page.locator('.wb-past').getByText('Something was wrong.').waitFor();
    // What is presented beneath the past is not pressed either.
    ui.phone.alert('Error', 'Something else.');
    ui.server.push();
    await ui.page.locator('.presenter').first().getByText('Something else.').waitFor({ state: 'attached' });
    const asked = ui.phone.commands.length;
    await ui.page.evaluate(() => document.activeElement.blur());
    await ui.page.keyboard.press('Escape');
    await ui.page.locator('.wb-past').getByText('Something was wrong.').waitFor();
    await ui.pane.getByRole('tab', { name: 'Timeline' }).focus();
    assert.deepEqual(ui.phone.commands.slice(asked).filter((command) => command.do !== 'state'), []);
    await ui.pane.getByRole('tab', { name: 'Rows' }).click();
    await ui.page.locator('.wb-past').waitFor({ state: 'detached' });
    await ui.close();
});

for (const [name, device] of Object.entries({ light: {}, dark: { darkMode: true }, rightToLeft: { rightToLeft: true, language: 'ar' } })) {
    test(`Timeline_${name}_isAccessible`, async () => {
        const ui = await open({ arrange: (phone) => Object.assign(phone.device, device) });
        await master(ui).click();
        await count(ui, 8);
        await kind(ui, 'write').click();
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await line(ui.panel, 'SampleChanged').click();
        await ui.page.locator('.wb-past').waitFor();
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.close();
    });
}

test('Timeline_branchAsLongAsItself_isDrawn', async () => {
    const ui = await open();
    let last = null;
    for (let number = 0; number < 12_000; number += 1) last = ui.phone.tell({ event: 'log', text: `again ${number}` }, last);
    ui.server.push();
    await ui.panel.getByText('again 11999', { exact: true }).waitFor();
    await press(ui, 'Fold all');
    await count(ui, 1);
    await ui.panel.getByText('+11999').waitFor();
    await ui.close();
});

test('Timeline_fullToTheBrim_letsTheOldestGo', async () => {
    const ui = await open();
    for (let number = 0; number < 22_000; number += 1) ui.phone.tell({ event: number < 500 ? 'reload' : 'log', text: `line ${number}` }, null);
    ui.server.push();
    await ui.panel.getByText('line 21999', { exact: true }).waitFor();
    assert.equal(await ui.panel.getByRole('treegrid').getAttribute('aria-rowcount'), '20001');
    assert.equal(await kind(ui, 'reload').count(), 0);
    await kind(ui, 'log').getByText('20000').waitFor();
    await ui.close();
});

test('Timeline_connectedAnew_addsWhatIsNewOnly', async () => {
    const ui = await open();
    await master(ui).click();
    await count(ui, 8);
    ui.server.leave();
    await ui.pane.getByText('Not connected').waitFor();
    ui.phone.tell({ event: 'log', text: 'meanwhile' }, 3);
    ui.server.away = false;
    await ui.page.evaluate(() => { window.dispatchEvent(new Event('online')); });
    await count(ui, 9);
    assert.equal((await drawn(ui))[4], '5 log meanwhile');
    // Another application has other events by the same numbers.
    ui.server.leave();
    await ui.pane.getByText('Not connected').waitFor();
    ui.phone.events = [];
    ui.phone.at = 100;
    ui.phone.tell({ event: 'process', name: 'SpringBoard', state: 'started' }, null);
    ui.server.away = false;
    await ui.page.evaluate(() => { window.dispatchEvent(new Event('online')); });
    await count(ui, 10);
    assert.equal((await drawn(ui))[9], '1 process SpringBoard started');
    await ui.close();
});
