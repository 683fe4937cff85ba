// SPDX-License-Identifier: MIT
// The active hours: their two rows, and the time wheel.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { deskSize, lastCommand, openPage, phoneSize, resize, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const hours = (from, to) => (phone) => phone.show(phone.root(), phone.pane(from, to));
const column = (page, name) => page.getByRole('spinbutton', { name, exact: true });
const picked = (phone) => phone.commands.filter((command) => command.do === 'pickTime').map((command) => command.time);
const shown = async (page) => (await page.locator('.wheel-column').evaluateAll((columns) => columns.map((each) => each.getAttribute('aria-valuetext')))).join(' ');
const still = (page) => page.waitForFunction(() => !document.querySelector('.wheel-column[data-moving]'));

/** Waits until the wheel stands on a time, and checks that this is what is drawn in the band. */
async function standsOn(page, text) {
    await page.waitForFunction((wanted) => [...document.querySelectorAll('.wheel-column')].map((each) => each.getAttribute('aria-valuetext')).join(' ') === wanted, text);
    await still(page);
    assert.equal(await page.evaluate(() => [...document.querySelectorAll('.wheel-column')]
        .map((each) => [...each.querySelectorAll('.wheel-value:not([hidden])')].find((value) => Number(value.style.getPropertyValue('--offset')) === 0)?.textContent).join(' ')), text);
}

const middle = async (locator) => {
    const box = await locator.boundingBox();
    return { x: box.x + box.width / 2, y: box.y + box.height / 2 };
};

/** Takes a column with the mouse and moves it by a number of rows, without letting go. */
async function drag(page, locator, rows) {
    const { x, y } = await middle(locator);
    await page.mouse.move(x, y);
    await page.mouse.down();
    // The first few points only tell a drag from a click.
    const sign = Math.sign(rows);
    await page.mouse.move(x, y - sign * 5);
    await page.mouse.move(x, y - sign * 5 - rows * 34, { steps: 4 });
}

/** Keys that follow each other at once, however slow the machine is. */
const keys = (locator, ...names) => locator.evaluate((element, all) => {
    element.focus();
    for (const key of all) element.dispatchEvent(new KeyboardEvent('keydown', { key, bubbles: true, cancelable: true }));
}, names);

test('Wheel_opened_standsOnTheStoredTimeAndSendsNothing', async () => {
    const ui = await openPage(session, { arrange: hours('9:05 AM', '5:00 PM') });
    await standsOn(ui.page, '9 05 AM');
    assert.equal(await ui.page.getByRole('group', { name: 'From 9:05 AM' }).getByRole('spinbutton').count(), 3);
    assert.equal(await column(ui.page, 'Hours').getAttribute('aria-valuenow'), '9');
    assert.equal(await ui.page.getByRole('button', { name: 'From 9:05 AM' }).getAttribute('aria-pressed'), 'true');
    assert.deepEqual(picked(ui.phone), []);
    await ui.close();
});

for (const [name, key, text, sent] of [
    ['Hours', 'ArrowUp', '10 00 AM', '10:00 AM'], ['Hours', 'ArrowDown', '8 00 AM', '8:00 AM'], ['Hours', 'Home', '1 00 AM', '1:00 AM'], ['Hours', 'End', '12 00 AM', '12:00 AM'],
    ['Minutes', 'ArrowDown', '9 59 AM', '9:59 AM'], ['Minutes', 'PageUp', '9 10 AM', '9:10 AM'], ['Minutes', 'PageDown', '9 50 AM', '9:50 AM'], ['Minutes', 'End', '9 59 AM', '9:59 AM'],
    ['AM or PM', 'ArrowUp', '9 00 PM', '9:00 PM'], ['AM or PM', 'End', '9 00 PM', '9:00 PM'], ['AM or PM', 'p', '9 00 PM', '9:00 PM'],
]) {
    test(`Wheel_${key}On${name.replaceAll(' ', '')}_movesAndSendsTheTime`, async () => {
        const ui = await openPage(session, { arrange: hours('9:00 AM', '11:59 PM') });
        await column(ui.page, name).press(key);
        await until(() => picked(ui.phone).length > 0, 'the time was sent');
        assert.deepEqual(picked(ui.phone), [sent]);
        await standsOn(ui.page, text);
        await ui.page.getByRole('button', { name: `From ${sent}` }).waitFor();
        await ui.close();
    });
}

test('Wheel_keysAtTheEndOfAmPm_stayThere', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:00 PM') });
    await column(ui.page, 'AM or PM').press('ArrowDown');
    await column(ui.page, 'AM or PM').press('Home');
    await column(ui.page, 'Hours').press('ArrowUp');
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    assert.deepEqual(picked(ui.phone), ['10:00 AM']);
    await ui.close();
});

test('Wheel_severalKeysInARow_areOneMove', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:00 PM') });
    await keys(column(ui.page, 'Minutes'), 'ArrowUp', 'ArrowUp', 'ArrowUp');
    await ui.page.keyboard.press('Tab');
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    assert.deepEqual(picked(ui.phone), ['9:03 AM']);
    await ui.close();
});

test('Wheel_digitsTyped_chooseTheValueTheyMake', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '11:59 PM') });
    // Without Return the number is taken when no other digit comes.
    await keys(column(ui.page, 'Hours'), '1', '1');
    await until(() => picked(ui.phone).length === 1, 'the hour was sent');
    await keys(column(ui.page, 'Minutes'), '0', '7', 'Enter');
    await until(() => picked(ui.phone).length === 2, 'the minute was sent');
    await keys(column(ui.page, 'Minutes'), '4', '7', '3', 'Enter');
    await until(() => picked(ui.phone).length === 3, 'the other minute was sent');
    assert.deepEqual(picked(ui.phone), ['11:00 AM', '11:07 AM', '11:03 AM']);
    await ui.close();
});

test('Wheel_tabbedThrough_stopsOnceAtEachColumn', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:00 PM') });
    await ui.page.getByRole('button', { name: 'To 5:00 PM' }).focus();
    const stops = [];
    for (let press = 0; press < 3; press += 1) {
        await ui.page.keyboard.press('Tab');
        stops.push(await ui.page.evaluate(() => document.activeElement.getAttribute('aria-label')));
    }
    assert.deepEqual(stops, ['Hours', 'Minutes', 'AM or PM']);
    await ui.close();
});

test('Wheel_draggedWithTheMouse_followsAndSendsOnceLetGo', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '11:59 PM') });
    await drag(ui.page, column(ui.page, 'Hours'), 2);
    assert.equal(await shown(ui.page), '11 00 AM');
    // The ring is for keys.
    assert.equal(await column(ui.page, 'Hours').evaluate((element) => getComputedStyle(element, '::after').content), 'none');
    assert.deepEqual(picked(ui.phone), []);
    await ui.page.mouse.up();
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    assert.deepEqual(picked(ui.phone), ['11:00 AM']);
    await standsOn(ui.page, '11 00 AM');
    await ui.close();
});

test('Wheel_draggedPastTheEndOfAmPm_comesBack', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '11:59 PM') });
    await drag(ui.page, column(ui.page, 'AM or PM'), -3);
    await ui.page.mouse.up();
    await standsOn(ui.page, '9 00 AM');
    await drag(ui.page, column(ui.page, 'AM or PM'), 3);
    await ui.page.mouse.up();
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    assert.deepEqual(picked(ui.phone), ['9:00 PM']);
    await ui.close();
});

test('Wheel_draggedThereAndBack_sendsNothing', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:00 PM') });
    const { x, y } = await middle(column(ui.page, 'Hours'));
    await drag(ui.page, column(ui.page, 'Hours'), 2);
    await ui.page.mouse.move(x, y - 5, { steps: 4 });
    await ui.page.mouse.up();
    await standsOn(ui.page, '9 00 AM');
    await ui.page.getByRole('button', { name: 'To 5:00 PM' }).click();
    await until(() => lastCommand(ui.phone, 'pickTimeRow'), 'the row was sent');
    assert.deepEqual(picked(ui.phone), []);
    await ui.close();
});

test('Wheel_valueClicked_rollsThere', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '11:59 PM'), reducedMotion: 'no-preference' });
    const { x, y } = await middle(column(ui.page, 'Minutes'));
    await ui.page.mouse.click(x, y + 34);
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    assert.deepEqual(picked(ui.phone), ['9:01 AM']);
    await ui.page.mouse.click(x, y);
    await ui.page.mouse.click(x, y - 60);
    await until(() => picked(ui.phone).length > 1, 'the other time was sent');
    assert.deepEqual(picked(ui.phone), ['9:01 AM', '9:59 AM']);
    await ui.close();
});

test('Wheel_mouseWheelTurned_movesARowANotchAndDoesNotScroll', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '11:59 PM'), viewport: { width: 390, height: 300 } });
    const target = column(ui.page, 'Hours');
    await target.scrollIntoViewIfNeeded();
    const top = await ui.page.locator('.page').evaluate((element) => element.scrollTop);
    await target.hover();
    await ui.page.mouse.wheel(0, 120);
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    assert.deepEqual(picked(ui.phone), ['10:00 AM']);
    // A touch pad sends short ways; together they make rows.
    await target.evaluate((element) => { for (let part = 0; part < 5; part += 1) element.dispatchEvent(new WheelEvent('wheel', { deltaY: -14, bubbles: true, cancelable: true })); });
    await until(() => picked(ui.phone).length > 1, 'the other time was sent');
    assert.equal(picked(ui.phone)[1], '8:00 AM');
    assert.equal(await ui.page.locator('.page').evaluate((element) => element.scrollTop), top);
    await ui.close();
});

test('Wheel_flungByTouch_rollsOnAndSendsOnceAtRest', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '11:59 PM'), touch: true, reducedMotion: 'no-preference' });
    const { x, y } = await middle(column(ui.page, 'Minutes'));
    const devtools = await ui.page.context().newCDPSession(ui.page);
    // Told apart by the times that the events carry, so that the speed is the same on a slow machine.
    let timestamp = Date.now() / 1000;
    const touch = (type, at) => { timestamp += 0.016; return devtools.send('Input.dispatchTouchEvent', { type, timestamp, touchPoints: at === null ? [] : [{ x, y: at }] }); };
    await touch('touchStart', y);
    for (const way of [10, 30, 50, 70, 90]) await touch('touchMove', y - way);
    await touch('touchEnd', null);
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    await still(ui.page);
    const [time, ...more] = picked(ui.phone);
    assert.deepEqual(more, []);
    const minute = Number(/:(\d\d)/.exec(time)[1]);
    assert.ok(minute > 3 && minute < 59, `rolled on to ${time}`);
    await standsOn(ui.page, `9 ${String(minute).padStart(2, '0')} AM`);
    assert.equal(await ui.page.locator('.page').evaluate((element) => element.scrollTop), 0);
    await ui.close();
});

test('Wheel_stateArrivingWhileHeld_movesOnlyTheOtherColumns', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '11:59 PM') });
    await drag(ui.page, column(ui.page, 'Hours'), 2);
    ui.phone.screen.pane = ui.phone.pane('7:30 AM', '11:59 PM').pane;
    ui.phone.changed();
    ui.server.push();
    await ui.page.getByRole('button', { name: 'From 7:30 AM' }).waitFor();
    await ui.page.waitForFunction(() => document.querySelector('.wheel-minutes').getAttribute('aria-valuetext') === '30');
    assert.equal(await column(ui.page, 'Hours').getAttribute('aria-valuetext'), '11');
    await ui.page.mouse.up();
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    assert.deepEqual(picked(ui.phone), ['11:30 AM']);
    await ui.close();
});

test('Wheel_heldUnmovedWhileAStateArrives_takesItWhenLetGo', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:00 PM') });
    const { x, y } = await middle(column(ui.page, 'Hours'));
    await ui.page.mouse.move(x, y);
    await ui.page.mouse.down();
    ui.phone.screen.pane = ui.phone.pane('7:30 AM', '5:00 PM').pane;
    ui.phone.changed();
    ui.server.push();
    await ui.page.getByRole('button', { name: 'From 7:30 AM' }).waitFor();
    assert.equal(await column(ui.page, 'Hours').getAttribute('aria-valuetext'), '9');
    await ui.page.mouse.up();
    await standsOn(ui.page, '7 30 AM');
    assert.deepEqual(picked(ui.phone), []);
    await ui.close();
});

test('Wheel_moveUnanswered_staysUntilTheAnswer', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:00 PM') });
    ui.server.hold = true;
    await column(ui.page, 'Hours').press('ArrowUp');
    await until(() => ui.server.held.length > 0, 'the time was sent');
    ui.phone.screen.pane = { ...ui.phone.pane('9:00 AM', '5:00 PM').pane, rows: ['From 9:00 AM', 'To 6:00 PM'] };
    ui.phone.changed();
    ui.server.push();
    await ui.page.getByRole('button', { name: 'To 6:00 PM' }).waitFor();
    assert.equal(await shown(ui.page), '10 00 AM');
    ui.server.hold = false;
    for (const answer of ui.server.held) answer();
    ui.server.push();
    await standsOn(ui.page, '9 00 AM');
    assert.deepEqual(picked(ui.phone), ['10:00 AM']);
    await ui.close();
});

test('Wheel_timeRefusedWithAnAlert_staysOnIt', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:00 PM') });
    await column(ui.page, 'AM or PM').press('p');
    await ui.page.getByRole('alertdialog').waitFor();
    assert.equal(await shown(ui.page), '9 00 PM');
    await ui.page.getByRole('button', { name: 'Close' }).click();
    await ui.page.waitForFunction(() => !document.querySelector('.stage').inert);
    await standsOn(ui.page, '9 00 PM');
    await ui.page.getByRole('button', { name: 'From 9:00 AM' }).waitFor();
    assert.equal(await column(ui.page, 'AM or PM').evaluate((element) => element === document.activeElement), true);
    assert.deepEqual(picked(ui.phone), ['9:00 PM']);
    await ui.close();
});

test('Wheel_commandRefused_returnsToTheStoredTime', async () => {
    const ui = await openPage(session, { arrange: (phone) => { hours('9:00 AM', '5:00 PM')(phone); phone.refuse.add('pickTime'); } });
    await column(ui.page, 'Hours').press('ArrowUp');
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    await standsOn(ui.page, '9 00 AM');
    await ui.close();
});

test('Wheel_whoseConnectionGoesBeforeTheAnswer_returnsToTheStoredTimeAndTakesNoInput', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:00 PM') });
    ui.server.hold = true;
    await column(ui.page, 'Hours').press('ArrowUp');
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    await standsOn(ui.page, '10 00 AM');
    ui.server.leave();
    await ui.page.locator('.banner-button').waitFor();
    await standsOn(ui.page, '9 00 AM');
    await ui.page.locator('.wheel-hours').evaluate((element) => element.focus());
    await ui.page.keyboard.press('ArrowUp');
    await standsOn(ui.page, '9 00 AM');
    assert.deepEqual(picked(ui.phone), ['10:00 AM']);
    await ui.close();
});

test('Wheel_withoutAStoredTime_looksUnsetUntilItIsMoved', async () => {
    const ui = await openPage(session, { arrange: hours(null, '5:00 PM') });
    const wheel = ui.page.locator('.wheel');
    assert.match(await wheel.getAttribute('class'), /unset/);
    assert.equal(await shown(ui.page), 'None None None');
    assert.equal(await column(ui.page, 'Hours').getAttribute('aria-valuenow'), null);
    await column(ui.page, 'Hours').press('ArrowUp');
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    assert.deepEqual(picked(ui.phone), ['1:00 AM']);
    await standsOn(ui.page, '1 00 AM');
    assert.doesNotMatch(await wheel.getAttribute('class'), /unset/);
    await ui.close();
});

test('Wheel_withoutAStoredTimeTurnedBackToTheFirst_sendsIt', async () => {
    const ui = await openPage(session, { arrange: hours(null, '5:00 PM') });
    await keys(column(ui.page, 'Hours'), 'ArrowUp', 'ArrowDown', 'Enter');
    await until(() => picked(ui.phone).length > 0, 'the time was sent');
    assert.deepEqual(picked(ui.phone), ['12:00 AM']);
    await ui.close();
});

test('Row_selected_rollsTheSameWheelToItsTimeAndSendsNone', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:30 PM'), reducedMotion: 'no-preference' });
    const wheel = await ui.page.locator('.wheel').elementHandle();
    await ui.page.evaluate(() => {
        globalThis.moved = false;
        new MutationObserver(() => { globalThis.moved ||= document.querySelector('.wheel-column[data-moving]') !== null; }).observe(document.querySelector('.wheel'), { subtree: true, attributes: true });
    });
    await ui.page.getByRole('button', { name: 'To 5:30 PM' }).click();
    await standsOn(ui.page, '5 30 PM');
    await ui.page.waitForFunction(() => globalThis.moved);
    assert.equal(lastCommand(ui.phone, 'pickTimeRow').row, 1);
    assert.equal(await ui.page.locator('.wheel').evaluate((element, old) => element === old, wheel), true);
    assert.equal(await ui.page.getByRole('group', { name: 'To 5:30 PM' }).count(), 1);
    assert.equal(await ui.page.getByRole('button', { name: 'To 5:30 PM' }).getAttribute('aria-pressed'), 'true');
    assert.deepEqual(picked(ui.phone), []);
    await ui.close();
});

test('Row_selectedWhileTheWheelMoves_endsTheMoveForTheOldRowFirst', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:30 PM'), reducedMotion: 'no-preference' });
    await column(ui.page, 'Hours').press('ArrowUp');
    // As assistive technology does it: the focus stays where it is.
    await ui.page.getByRole('button', { name: 'To 5:30 PM' }).evaluate((element) => element.click());
    await standsOn(ui.page, '5 30 PM');
    const sent = ui.phone.commands.filter((command) => command.do.startsWith('pickTime')).map((command) => command.time ?? command.row);
    assert.deepEqual(sent, ['10:00 AM', 1]);
    await ui.page.getByRole('button', { name: 'From 10:00 AM' }).waitFor();
    await ui.close();
});

test('Back_pressedWhileTheWheelMoves_losesNothing', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:30 PM'), reducedMotion: 'no-preference' });
    await drag(ui.page, column(ui.page, 'Hours'), 1);
    await ui.page.mouse.up();
    await ui.page.locator('.bar-button.back').evaluate((element) => element.click());
    await ui.page.getByRole('switch', { name: 'Enabled' }).waitFor();
    assert.deepEqual(ui.phone.commands.filter((command) => command.do !== 'state').map((command) => command.do), ['pickTime', 'back']);
    await ui.close();
});

test('Row_highlightedBesideTheOneInTheWheel_isToldApart', async () => {
    const ui = await openPage(session, { arrange: (phone) => { hours('9:00 AM', '5:00 PM')(phone); phone.screen.pane = { ...phone.screen.pane, selected: 0, tag: 1, time: '5:00 PM' }; } });
    const [from, to] = [ui.page.getByRole('button', { name: 'From 9:00 AM' }), ui.page.getByRole('button', { name: 'To 5:00 PM' })];
    const ground = (locator) => locator.evaluate((element) => getComputedStyle(element).backgroundColor);
    assert.notEqual(await ground(from), await ground(to));
    assert.equal(await to.getAttribute('aria-pressed'), 'true');
    await standsOn(ui.page, '5 00 PM');
    await ui.close();
});

test('Wheel_underReducedMotion_jumps', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:00 PM') });
    await ui.page.evaluate(() => {
        globalThis.moves = 0;
        new MutationObserver(() => { globalThis.moves += 1; }).observe(document.querySelector('.wheel'), { subtree: true, attributeFilter: ['data-moving'] });
    });
    await ui.page.getByRole('button', { name: 'To 5:00 PM' }).click();
    await standsOn(ui.page, '5 00 PM');
    assert.equal(await ui.page.evaluate(() => globalThis.moves), 0);
    await ui.close();
});

test('Wheel_inAnotherLanguage_namesItsColumnsInIt', async () => {
    const ui = await openPage(session, { arrange: (phone) => { hours('9:00 AM', '5:00 PM')(phone); phone.device = { ...phone.device, language: 'de' }; } });
    for (const name of ['Stunden', 'Minuten', 'Tageshälfte']) assert.equal(await column(ui.page, name).count(), 1);
    await ui.close();
});

test('Pane_atAnySize_hasItsWheelAtTheBottomAndTheRowsInTheMiddleAbove', async () => {
    const ui = await openPage(session, { arrange: hours('9:00 AM', '5:00 PM') });
    for (const rightToLeft of [false, true]) {
        ui.phone.device = { ...ui.phone.device, rightToLeft, language: rightToLeft ? 'ar' : 'en' };
        ui.phone.changed();
        ui.server.push();
        await ui.page.waitForFunction((direction) => document.documentElement.dir === direction, rightToLeft ? 'rtl' : 'ltr');
        for (const size of [{ width: 320, height: 568 }, phoneSize, deskSize]) {
            await resize(ui.page, size);
            const [body, wheel, rows] = [await ui.page.locator('.page').boundingBox(), await ui.page.locator('.wheel').boundingBox(), await ui.page.locator('.pane .rows').boundingBox()];
            assert.ok(Math.abs(wheel.y + wheel.height - body.y - body.height) < 1, 'the wheel is at the bottom');
            assert.ok(Math.abs(wheel.height - 216) <= 1, `the wheel is ${wheel.height} high`);
            assert.equal(wheel.width, body.width);
            assert.ok(Math.abs(rows.y - body.y - (wheel.y - rows.y - rows.height)) < 2, 'the rows are in the middle');
            // The hours come first, as the time is written.
            const columns = await ui.page.locator('.wheel-column').evaluateAll((each) => each.map((element) => element.getBoundingClientRect().x));
            assert.deepEqual(columns, [...columns].sort((one, other) => one - other));
        }
    }
    await ui.close();
});
