// SPDX-License-Identifier: MIT
// A press means what was under the pointer when it began, and nothing that only passes there.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { advanceTo, drawn, farAway, finger, freeze, middle } from './gestures.mjs';
import { accessibilityProblems, finishAnimations, lastCommand, openPage, settled, startBrowser, until } from './harness.mjs';
import { group, toggle } from './mock-rows.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const moving = { reducedMotion: 'no-preference' };
const pages = (page, count) => page.waitForFunction((wanted) => document.querySelectorAll('.bodies .page').length === wanted, count);
const heading = (page, name) => page.getByRole('heading', { level: 1, name });
const done = (phone, name) => phone.commands.filter((command) => command.do === name);
const folding = (phone) => {
    const screen = phone.folding(3);
    const rows = screen.rows;
    const more = [group('Below'), toggle('Vibrate', false), toggle('Sound', false)];
    phone.show(phone.root(), Object.assign(screen, { rows: () => [...rows(), ...more] }));
};
const rowNamed = (phone, name) => phone.rows().find((each) => each.name === name);

/** Checks that nothing but the switch itself is sent when it is pressed: what was sent before has come by then. */
async function pressSwitch(ui, name) {
    const before = done(ui.phone, 'set').length;
    await ui.page.getByRole('switch', { name }).click();
    await until(() => done(ui.phone, 'set').length > before, 'the switch was sent');
    assert.equal(done(ui.phone, 'set').length, before + 1);
}

test('Presses_sent_nameTheirScreenAndRow', async () => {
    const ui = await openPage(session);
    const root = ui.phone.number(ui.phone.screen);
    const { key } = rowNamed(ui.phone, 'Work');
    await ui.page.getByRole('button', { name: /Work/ }).first().click();
    await heading(ui.page, 'Work').waitFor();
    const tap = lastCommand(ui.phone, 'tap');
    assert.equal(tap.screen, root);
    assert.equal(tap.key, key);
    await ui.page.getByRole('button', { name: /^Back/ }).click();
    await heading(ui.page, 'Sample Go').waitFor();
    assert.notEqual(lastCommand(ui.phone, 'back').screen, root);
    await ui.page.locator('[data-deletable] .cell').first().press('Delete');
    await ui.page.getByRole('dialog').waitFor();
    const sheet = ui.phone.number(ui.phone.presented);
    await ui.page.keyboard.press('Escape');
    await until(() => lastCommand(ui.phone, 'choose'), 'the choice was sent');
    assert.equal(lastCommand(ui.phone, 'choose').presented, sheet);
    await ui.close();
});

test('Presses_onAnApplicationWithoutScreenNumbers_carryRowNumbersOnly', async () => {
    const ui = await openPage(session, {
        arrange: (phone) => {
            const { state } = phone;
            phone.state = (window) => { const made = state.call(phone, window); delete made.screen.id; return made; };
        },
    });
    await ui.page.getByRole('switch').click();
    await until(() => lastCommand(ui.phone, 'set'), 'the switch was sent');
    assert.deepEqual(Object.keys(lastCommand(ui.phone, 'set')).sort(), ['count', 'do', 'elsewhere', 'from', 'id', 'row', 'value']);
    await ui.close();
});

test('DoublePress_onARow_changesNothingOnTheScreenThatItOpens', async () => {
    const ui = await openPage(session, { ...moving, arrange: (phone) => { phone.active = [...phone.active, ...['A', 'B', 'C', 'D'].map((name) => ({ ...phone.active[0], key: name, name, text: name, userInfo: { identifier: name } }))]; } });
    await settled(ui.page);
    await freeze(ui.page);
    const places = [];
    for (const row of await ui.page.locator('[data-deletable]').all()) places.push(await middle(row));
    await ui.page.mouse.click(...places[0]);
    await pages(ui.page, 2);
    // The editor comes in, and its rows pass under the pointer.
    for (const part of [0, 0.2, 0.4, 0.8, 1]) {
        await advanceTo(ui.page, part);
        for (const place of places) await ui.page.mouse.click(...place, { clickCount: 2 });
    }
    // A press that begins while it comes and ends when it is there is none either.
    await ui.page.mouse.move(...await middle(ui.page.getByRole('switch', { name: 'Enable', exact: true })));
    await ui.page.mouse.down();
    await finishAnimations(ui.page);
    await ui.page.mouse.up();
    await pressSwitch(ui, 'Vibrate');
    assert.deepEqual(done(ui.phone, 'set').map((command) => command.key), [rowNamed(ui.phone, 'Vibrate').key]);
    assert.equal(done(ui.phone, 'tap').length, 1);
    await ui.close();
});

test('DoublePress_whoseSecondComesFirstToTheApplication_isRefusedAsStale', async () => {
    const ui = await openPage(session, { beforehand: farAway(150) });
    await ui.page.getByRole('button', { name: /Work/ }).first().dblclick();
    await heading(ui.page, 'Work').waitFor();
    await until(() => done(ui.phone, 'tap').length === 2, 'both were sent');
    assert.equal(ui.phone.stale, true);
    assert.equal(ui.phone.screens.length, 2);
    await pressSwitch(ui, 'Vibrate');
    await ui.close();
});

test('Keys_whileAScreenComesIn_pressNothing', async () => {
    const ui = await openPage(session, moving);
    await settled(ui.page);
    await freeze(ui.page);
    await ui.page.getByRole('button', { name: /Work/ }).first().press('Enter');
    await pages(ui.page, 2);
    const control = ui.page.getByRole('switch', { name: 'Vibrate' });
    await control.focus();
    await ui.page.keyboard.press('Space');
    assert.equal(await control.isChecked(), false);
    // As assistive technology presses.
    await control.evaluate((element) => element.click());
    const field = ui.page.getByRole('textbox', { name: 'Title' });
    await field.focus();
    await ui.page.keyboard.type('x');
    assert.equal(await control.isChecked(), false);
    assert.equal(await field.inputValue(), 'Work');
    await finishAnimations(ui.page);
    await pressSwitch(ui, 'Vibrate');
    assert.equal(done(ui.phone, 'set').length, 1);
    await ui.close();
});

test('Back_whileAScreenComesIn_turnsItAround', async () => {
    const ui = await openPage(session, moving);
    await settled(ui.page);
    await freeze(ui.page);
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await pages(ui.page, 2);
    await advanceTo(ui.page, 0.2);
    await ui.page.mouse.click(...await middle(ui.page.locator('.bar:not([inert]) .back')));
    await ui.page.waitForFunction(() => document.title === 'Sample Go');
    await finishAnimations(ui.page);
    await pressSwitch(ui, 'Enabled');
    await ui.close();
});

test('Back_pressedTwice_goesBackOneScreen', async () => {
    const ui = await openPage(session, { ...moving, arrange: (phone) => phone.show(phone.root(), phone.plain(), phone.eventStatus()) });
    await settled(ui.page);
    await freeze(ui.page);
    const place = await middle(ui.page.locator('.back'));
    await ui.page.mouse.click(...place);
    await ui.page.waitForFunction(() => document.title === 'Miscellaneous');
    await advanceTo(ui.page, 0.5);
    await ui.page.mouse.click(...place, { clickCount: 2 });
    await finishAnimations(ui.page);
    await ui.page.getByRole('button', { name: 'Reset Profiles' }).click();
    await ui.page.getByRole('dialog').waitFor();
    assert.equal(done(ui.phone, 'back').length, 1);
    await ui.close();
});

test('DoublePress_onAdd_leavesTheNewSheetAlone', async () => {
    const ui = await openPage(session, moving);
    await settled(ui.page);
    await freeze(ui.page);
    const place = await middle(ui.page.getByRole('button', { name: 'Add' }));
    await ui.page.mouse.click(...place);
    await ui.page.waitForFunction(() => document.querySelectorAll('.navigator').length === 2);
    for (const part of [0, 0.5, 1]) {
        await advanceTo(ui.page, part);
        await ui.page.mouse.click(...place, { clickCount: 2 });
    }
    await finishAnimations(ui.page);
    const cancel = await middle(ui.page.getByRole('button', { name: 'Cancel' }));
    await ui.page.mouse.click(...cancel);
    await ui.page.waitForFunction(() => document.title === 'Sample Go');
    // What is uncovered stands still, but not in sight yet.
    await ui.page.mouse.click(...cancel, { clickCount: 2 });
    await ui.page.mouse.click(...place);
    await finishAnimations(ui.page);
    await pressSwitch(ui, 'Enabled');
    assert.deepEqual(done(ui.phone, 'bar').map(({ side, item }) => [side, item]), [['right', 0], ['left', 0]]);
    await ui.close();
});

test('DoublePress_onWhatAsks_doesNotAnswerIt', async () => {
    const ui = await openPage(session, { ...moving, arrange: (phone) => phone.show(phone.root(), phone.plain()) });
    await settled(ui.page);
    await freeze(ui.page);
    await ui.page.getByRole('button', { name: 'Reset Profiles' }).click();
    const ok = ui.page.getByRole('button', { name: 'OK' });
    await ok.waitFor();
    for (const part of [0.3, 0.9]) {
        await advanceTo(ui.page, part);
        await ui.page.mouse.click(...await middle(ok), { clickCount: 2 });
        await ui.page.mouse.click(195, 100, { clickCount: 2 });
    }
    await finishAnimations(ui.page);
    assert.equal(await ok.isVisible(), true);
    const place = await middle(ui.page.getByRole('button', { name: 'Cancel' }));
    await ui.page.mouse.click(...place);
    await ui.page.waitForFunction(() => !document.querySelector('.stage').inert);
    const beneath = await middle(ui.page.getByRole('button', { name: 'Reset Profiles' }));
    await ui.page.mouse.click(...beneath);
    await finishAnimations(ui.page);
    await ui.page.getByRole('button', { name: 'Report Problem' }).click();
    await ui.page.getByRole('dialog').waitFor();
    assert.equal(done(ui.phone, 'tap').length, 2);
    assert.deepEqual(done(ui.phone, 'choose').map((command) => command.action), ['Cancel']);
    await ui.close();
});

test('Presses_whileAnswersAreOnTheirWay_areAllDoneInOrder', async () => {
    const ui = await openPage(session, { arrange: folding, beforehand: farAway(150) });
    const before = Object.fromEntries(['Vibrate', 'Sound'].map((name) => [name, rowNamed(ui.phone, name)]));
    const places = [];
    for (const name of ['Unfolded', 'Vibrate', 'Sound']) places.push(await middle(ui.page.getByRole('switch', { name })));
    // The first takes three rows away, so that the others stand elsewhere when they come to the application.
    for (const place of places) await ui.page.mouse.click(...place);
    await until(() => done(ui.phone, 'set').length === 3, 'all were sent');
    await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 4);
    assert.equal(ui.phone.screen.fold.value, false);
    for (const name of ['Vibrate', 'Sound']) {
        assert.equal(rowNamed(ui.phone, name).value, true);
        assert.equal(rowNamed(ui.phone, name).key, before[name].key);
        assert.notEqual(rowNamed(ui.phone, name).index, before[name].index);
    }
    assert.deepEqual(await ui.page.getByRole('switch').evaluateAll((all) => all.map((each) => each.checked)), [false, true, true]);
    await ui.close();
});

for (const kind of ['mouse', 'finger']) {
    test(`Press_ofA_${kind}_whoseRowMovesAwayBeforeItEnds_meansTheRowThatItBeganOn`, async () => {
        const ui = await openPage(session, { arrange: folding, touch: true });
        const vibrate = ui.page.getByRole('switch', { name: 'Vibrate' });
        const place = await middle(vibrate);
        const touch = await finger(ui.page);
        if (kind === 'mouse') {
            await ui.page.mouse.move(...place);
            await ui.page.mouse.down();
        } else {
            await touch.down(...place);
        }
        ui.phone.screen.fold.value = false;
        ui.phone.changed();
        ui.server.push();
        await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 4);
        const gone = await drawn(vibrate);
        assert.ok(Math.abs(gone.top - place[1]) > 40, 'the row is elsewhere');
        if (kind === 'mouse') await ui.page.mouse.up();
        else await touch.up();
        await until(() => lastCommand(ui.phone, 'set'), 'the switch was sent');
        assert.equal(rowNamed(ui.phone, 'Vibrate').value, true);
        assert.equal(done(ui.phone, 'set').length + done(ui.phone, 'tap').length, 1);
        await ui.close();
    });
}

test('Press_onRowsThatComeUnderTheFinger_isNone', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.folding(12, false)), touch: true });
    const touch = await finger(ui.page);
    const last = ui.page.getByRole('button', { name: 'Last' });
    const [x, y] = await middle(last);
    const below = [x, y + 200];
    await touch.down(...below);
    ui.phone.screen.fold.value = true;
    ui.phone.changed();
    ui.server.push();
    await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 14);
    await touch.up();
    await ui.page.getByRole('switch').press('Space');
    await until(() => lastCommand(ui.phone, 'set'), 'the switch was sent');
    assert.equal(lastCommand(ui.phone, 'tap'), undefined);
    await ui.close();
});

test('Press_onARowThatHasGone_isRefusedAndTheScreenShowsWhatIsThere', async () => {
    const ui = await openPage(session, { arrange: folding });
    const { screen } = ui.phone;
    const rows = screen.rows;
    // Nobody has told the page yet.
    screen.rows = () => rows().filter((each) => each.name !== 'Vibrate');
    ui.phone.changed();
    await ui.page.getByRole('switch', { name: 'Vibrate' }).click();
    await ui.page.getByRole('switch', { name: 'Vibrate' }).waitFor({ state: 'detached' });
    assert.equal(ui.phone.stale, true);
    assert.deepEqual(ui.phone.rows().filter((each) => each.kind === 6).map((each) => each.value), [true, false]);
    await ui.close();
});

test('Press_onAScreenThatAnotherHasLeft_isRefusedAndShowsTheScreenOnTop', async () => {
    const ui = await openPage(session, { arrange: folding });
    ui.phone.perform({ do: 'back' });
    await ui.page.getByRole('switch', { name: 'Unfolded' }).click();
    await heading(ui.page, 'Sample Go').waitFor();
    assert.equal(ui.phone.stale, true);
    assert.equal(ui.phone.enabled, true, 'the switch in the same place of the other screen stays');
    assert.equal(await ui.page.getByRole('switch', { name: 'Enabled' }).isChecked(), true);
    await ui.close();
});

test('Screen_ofTheSameKindInItsPlace_isAnotherScreen', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.editor('Work', false)) });
    const field = ui.page.getByRole('textbox', { name: 'Title' });
    const mark = await field.evaluateHandle((element) => element);
    ui.phone.show(ui.phone.levels[0][0], ui.phone.editor('Night', false));
    ui.server.push();
    await ui.page.waitForFunction(() => document.querySelector('.field')?.value === 'Night');
    assert.equal(await field.evaluate((element, old) => element === old, mark), false);
    await pressSwitch(ui, 'Vibrate');
    assert.equal(lastCommand(ui.phone, 'set').screen, ui.phone.number(ui.phone.screen));
    await ui.close();
});

test('Screens_underASlowProcessor_takeADoublePressAsOne', async () => {
    const ui = await openPage(session, moving);
    await settled(ui.page);
    const devtools = await ui.page.context().newCDPSession(ui.page);
    await devtools.send('Emulation.setCPUThrottlingRate', { rate: 6 });
    await ui.page.getByRole('button', { name: /Work/ }).first().dblclick();
    await heading(ui.page, 'Work').waitFor();
    await settled(ui.page);
    await devtools.send('Emulation.setCPUThrottlingRate', { rate: 1 });
    await pressSwitch(ui, 'Vibrate');
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});
