// SPDX-License-Identifier: MIT
// Swiping rows aside, and taps beside a sheet.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { advanceTo, drawn, finger, freeze, middle } from './gestures.mjs';
import { accessibilityProblems, finishAnimations, lastCommand, openPage, settled, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const rowAt = (page, at) => page.locator('[data-deletable]').nth(at);
const widthOf = (locator) => locator.evaluate((element) => element.getBoundingClientRect().width);
const openRows = (page) => page.locator('.row[data-open]').count();
const done = (phone, name) => phone.commands.filter((command) => command.do === name);

/** Holds a row so many points from where it was taken; gives the finger, which is still down. */
async function pull(page, row, distance) {
    const touch = await finger(page);
    const [x, y] = await middle(row);
    const start = x + 120;
    await touch.down(start, y);
    for (let step = 1; step <= 8; step += 1) await touch.move(start - distance * step / 8, y);
    return { ...touch, to: (further) => touch.move(start - further, y) };
}

test('Swipe_ofASecondRow_coversTheFirstOneAsItBegins', async () => {
    const ui = await openPage(session, { touch: true });
    await (await pull(ui.page, rowAt(ui.page, 0), 100)).up();
    await rowAt(ui.page, 0).locator('.delete').waitFor();
    const held = await pull(ui.page, rowAt(ui.page, 1), 100);
    await ui.page.waitForFunction(() => document.querySelectorAll('.row[data-open]').length === 0);
    await held.up();
    await rowAt(ui.page, 1).locator('.delete').waitFor();
    assert.equal(await openRows(ui.page), 1);
    assert.equal(await rowAt(ui.page, 0).locator('.delete').isVisible(), false);
    await ui.close();
});

for (const [name, device] of [['leftToRight', {}], ['rightToLeft', { rightToLeft: true, language: 'ar' }]]) {
    test(`Swipe_beyondItsButton_${name}_stretchesItWithTheFinger`, async () => {
        const ui = await openPage(session, { touch: true, arrange: (phone) => { phone.device = { ...phone.device, ...device }; } });
        const row = rowAt(ui.page, 0);
        const way = device.rightToLeft ? -1 : 1;
        const box = await row.boundingBox();
        const y = box.y + box.height / 2;
        const start = way === 1 ? box.x + box.width - 20 : box.x + 20;
        const touch = await finger(ui.page);
        await touch.down(start, y);
        for (const distance of [10, 20, 120, 180]) await touch.move(start - way * distance, y);
        const stretched = (beyond) => ui.page.waitForFunction((least) => document.querySelector('.swiping > .delete')?.getBoundingClientRect().width > least, beyond);
        await stretched(150);
        const first = await widthOf(row.locator('.delete'));
        await touch.move(start - way * 200, y);
        await stretched(first + 10);
        const second = await widthOf(row.locator('.delete'));
        assert.ok(Math.abs(second - first - 20) < 1, `from ${first} to ${second}`);
        // It reaches to the row.
        const [cell, button] = [await row.locator('.cell').boundingBox(), await row.locator('.delete').boundingBox()];
        if (way === 1) assert.ok(Math.abs(cell.x + cell.width - button.x) < 1);
        else assert.ok(Math.abs(button.x + button.width - cell.x) < 1);
        await touch.up();
        await ui.page.locator('.row[data-open]:not(.swiping) .delete').waitFor();
        assert.ok(await widthOf(row.locator('.delete')) < 150, 'it shrinks when the finger lets go');
        assert.equal(done(ui.phone, 'delete').length, 0);
        await ui.close();
    });
}

test('Swipe_acrossTheWholeRow_asksForItsDeletion', async () => {
    const ui = await openPage(session, { touch: true });
    const row = rowAt(ui.page, 0);
    const held = await pull(ui.page, row, 290);
    assert.equal(done(ui.phone, 'delete').length, 0, 'while the finger is down nothing is asked');
    await held.up();
    await ui.page.getByRole('dialog', { name: /'Work'/ }).waitFor();
    assert.equal(lastCommand(ui.phone, 'delete').key, ui.phone.rows()[3].key);
    assert.equal(lastCommand(ui.phone, 'tap'), undefined);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.keyboard.press('Escape');
    await ui.page.waitForFunction(() => !document.querySelector('.row[data-open]'));
    assert.equal(await ui.page.locator('[data-deletable]').count(), 3);
    await ui.close();
});

test('Swipe_takenBackFromAcrossTheRow_asksNothing', async () => {
    const ui = await openPage(session, { touch: true });
    const row = rowAt(ui.page, 0);
    const held = await pull(ui.page, row, 290);
    await held.to(100);
    await held.up();
    await row.locator('.delete').waitFor();
    await ui.page.getByRole('switch').press('Space');
    await until(() => lastCommand(ui.phone, 'set'), 'the switch was sent');
    assert.equal(done(ui.phone, 'delete').length, 0);
    await ui.close();
});

test('Swipe_ended_leavesAKeyItsPress', async () => {
    const ui = await openPage(session, { touch: true });
    const held = await pull(ui.page, rowAt(ui.page, 0), 100);
    // What a key does, before any timer comes.
    await ui.page.evaluate(() => window.addEventListener('pointerup', () => document.querySelector('[role="switch"]').click(), { once: true }));
    await held.up();
    await until(() => lastCommand(ui.phone, 'set'), 'the switch was sent');
    await ui.close();
});

test('Delete_pressed_leavesTheOtherRowsAsTheyAre', async () => {
    const ui = await openPage(session, { touch: true });
    const others = async () => {
        const places = [];
        for (const at of [1, 2]) places.push(await rowAt(ui.page, at).locator('.title').boundingBox());
        return places;
    };
    const before = await others();
    await (await pull(ui.page, rowAt(ui.page, 0), 100)).up();
    await rowAt(ui.page, 0).locator('.delete').click();
    await ui.page.getByRole('dialog').waitFor();
    assert.equal(ui.phone.editing, true);
    assert.equal(await ui.page.locator('.minus').count(), 0);
    assert.deepEqual(await others(), before);
    await ui.page.keyboard.press('Escape');
    await ui.page.waitForFunction(() => !document.querySelector('.row[data-open]'));
    // Editing that was asked for as such is shown, also while a deletion is asked for.
    ui.phone.editing = true;
    ui.phone.changed();
    ui.server.push();
    await ui.page.waitForFunction(() => document.querySelectorAll('.minus').length === 3);
    await ui.page.locator('.minus').first().click();
    await ui.page.locator('.row[data-open] .delete').click();
    await ui.page.getByRole('dialog').waitFor();
    assert.equal(await ui.page.locator('.minus').count(), 3);
    await ui.close();
});

test('Swipe_ofARowThatIsOnItsWayBack_goesOnFromWhereItIs', async () => {
    const ui = await openPage(session, { touch: true, reducedMotion: 'no-preference' });
    await settled(ui.page);
    const row = rowAt(ui.page, 0);
    const cell = row.locator('.cell');
    await (await pull(ui.page, row, 100)).up();
    await settled(ui.page);
    const resting = (await drawn(cell)).left;
    // The row's way back stands still half-way.
    await ui.page.evaluate(() => { document.documentElement.style.setProperty('--rows-time', '3600s'); });
    await ui.page.mouse.click(200, 830);
    await ui.page.waitForFunction(() => document.getAnimations().some((each) => each.transitionProperty === 'transform'));
    await ui.page.evaluate(() => { for (const each of document.getAnimations()) { each.pause(); each.currentTime = each.effect.getTiming().duration / 10; } });
    const between = (await drawn(cell)).left;
    const row0 = (await drawn(row)).left;
    assert.ok(between > resting + 1 && between < row0 - 1, `stands at ${between}, between ${resting} and ${row0}`);
    const touch = await finger(ui.page);
    const [x, y] = await middle(row);
    await touch.down(x, y);
    await touch.move(x - 30, y);
    await ui.page.locator('.row.swiping').waitFor();
    const taken = (await drawn(cell)).left;
    assert.ok(Math.abs(taken - between) < 1.5, `jumps from ${between} to ${taken}`);
    await touch.move(x - 40, y);
    await cell.evaluate((element, place) => new Promise((resolve) => {
        const look = () => (Math.abs(element.getBoundingClientRect().left - place) < 1.5 ? resolve() : requestAnimationFrame(look));
        look();
    }), taken - 10);
    await touch.up();
    await ui.close();
});

test('Sheet_tappedBeside_isCancelled', async () => {
    const ui = await openPage(session, { touch: true });
    await rowAt(ui.page, 0).locator('.cell').press('Delete');
    await ui.page.getByRole('dialog').waitFor();
    await (await finger(ui.page)).tap(195, 100);
    await until(() => lastCommand(ui.phone, 'choose'), 'the choice was sent');
    assert.equal(lastCommand(ui.phone, 'choose').action, 'Cancel');
    await ui.page.getByRole('dialog').waitFor({ state: 'detached' });
    assert.equal(lastCommand(ui.phone, 'tap'), undefined);
    await ui.close();
});

test('Sheet_pressedAndLetGoBesideIt_stays', async () => {
    const ui = await openPage(session);
    await rowAt(ui.page, 0).locator('.cell').press('Delete');
    const sheet = ui.page.getByRole('dialog');
    await sheet.waitFor();
    await ui.page.mouse.move(...await middle(sheet.getByRole('button', { name: 'Delete' })));
    await ui.page.mouse.down();
    await ui.page.mouse.move(195, 100, { steps: 4 });
    await ui.page.mouse.up();
    await sheet.getByRole('button', { name: 'Cancel' }).click();
    await until(() => lastCommand(ui.phone, 'choose'), 'the choice was sent');
    assert.deepEqual(done(ui.phone, 'choose').map((command) => command.action), ['Cancel']);
    await ui.close();
});

test('Alert_tappedBeside_stays', async () => {
    const ui = await openPage(session);
    ui.phone.alert('Error', 'The disk is full.');
    ui.server.push();
    await ui.page.getByRole('alertdialog').waitFor();
    await ui.page.mouse.click(195, 100);
    await ui.page.getByRole('button', { name: 'Close' }).click();
    await ui.page.getByRole('alertdialog').waitFor({ state: 'detached' });
    assert.equal(done(ui.phone, 'choose').length, 1);
    await ui.close();
});

test('DraftQuestion_tappedBeside_goesBackToTheMail', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.plain()) });
    await ui.page.getByRole('button', { name: 'Report Problem' }).click();
    await ui.page.getByRole('dialog').waitFor();
    await ui.page.keyboard.press('Escape');
    await ui.page.locator('.draft-choice').waitFor();
    await ui.page.mouse.click(195, 60);
    await ui.page.locator('.draft-choice').waitFor({ state: 'detached' });
    assert.equal(done(ui.phone, 'compose').length, 0);
    await ui.close();
});

test('Sheet_tappedBesideWhileItComes_stays', async () => {
    const ui = await openPage(session, { reducedMotion: 'no-preference' });
    await settled(ui.page);
    await freeze(ui.page);
    await rowAt(ui.page, 0).locator('.cell').press('Delete');
    await ui.page.getByRole('dialog').waitFor();
    await advanceTo(ui.page, 0.5);
    await ui.page.mouse.click(195, 100);
    await finishAnimations(ui.page);
    await ui.page.mouse.click(195, 100);
    await until(() => lastCommand(ui.phone, 'choose'), 'the choice was sent');
    assert.equal(done(ui.phone, 'choose').length, 1);
    await ui.close();
});
