// SPDX-License-Identifier: MIT
// A slider under a finger, a mouse and keys: only its thumb moves, and only when it is meant.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { finger } from './gestures.mjs';
import { lastCommand, openPage, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const editor = (phone) => phone.show(phone.root(), phone.editor('Work', false));
const slider = (page) => page.getByRole('slider', { name: 'Ringer Volume' });
const short = { width: 390, height: 520 };
const sent = (phone) => phone.commands.filter((command) => command.do === 'set');

/** The middle of the thumb, and what a point to the right of it is worth. */
async function thumb(page) {
    const box = await slider(page).boundingBox();
    const value = Number(await slider(page).inputValue());
    return { x: box.x + 14 + (box.width - 28) * value, y: box.y + box.height / 2, point: 1 / (box.width - 28) };
}

/** Checks that the page has sent no value but one that is sent now. */
async function sentOnly(ui, count) {
    await ui.page.getByRole('switch', { name: 'Enable' }).press('Space');
    await until(() => sent(ui.phone).some((command) => typeof command.value === 'boolean'), 'the switch was sent');
    assert.equal(sent(ui.phone).filter((command) => typeof command.value === 'number').length, count);
}

test('Slider_trackTappedOrDragged_movesNothing', async () => {
    const ui = await openPage(session, { arrange: editor, touch: true });
    const { x, y } = await thumb(ui.page);
    const touch = await finger(ui.page);
    for (const away of [-100, -60, 60, 100]) {
        await ui.page.mouse.click(x + away, y);
        await touch.tap(x + away, y);
        await touch.swipe([x + away, y], [x + away / 2, y]);
        assert.equal(await slider(ui.page).inputValue(), '0.5', `${away} points away`);
    }
    await sentOnly(ui, 0);
    await ui.close();
});

test('Slider_verticalSwipesOverItsTrack_scrollTheListAndStoreNothing', async () => {
    const ui = await openPage(session, { arrange: editor, touch: true, viewport: short });
    const touch = await finger(ui.page);
    const scroll = () => ui.page.locator('.page').evaluate((element) => element.scrollTop);
    for (const away of [-100, 60, 100]) {
        await slider(ui.page).scrollIntoViewIfNeeded();
        const { x, y } = await thumb(ui.page);
        const from = await scroll();
        await touch.swipe([x + away, y], [x + away, y - 150]);
        await ui.page.waitForFunction((start) => document.querySelector('.page').scrollTop > start, from);
        assert.equal(await slider(ui.page).inputValue(), '0.5');
    }
    await sentOnly(ui, 0);
    await ui.close();
});

test('Slider_thumbUnderAVerticalSwipe_isGivenBackToTheScroll', async () => {
    const ui = await openPage(session, { arrange: editor, touch: true, viewport: short });
    const touch = await finger(ui.page);
    await slider(ui.page).scrollIntoViewIfNeeded();
    const { x, y } = await thumb(ui.page);
    const from = await ui.page.locator('.page').evaluate((element) => element.scrollTop);
    await touch.down(x + 15, y);
    for (let step = 1; step <= 10; step += 1) await touch.move(x + 15 + step, y - 15 * step);
    await touch.up();
    await ui.page.waitForFunction((start) => document.querySelector('.page').scrollTop > start, from);
    assert.equal(await slider(ui.page).inputValue(), '0.5');
    assert.equal(await slider(ui.page).evaluate((element) => element.style.getPropertyValue('--fill')), '0.5');
    assert.equal(await slider(ui.page).getAttribute('data-busy'), null, 'the slider follows the application again');
    await sentOnly(ui, 0);
    await ui.close();
});

test('Slider_takenFromTheFinger_goesBackToWhereItWas', async () => {
    const ui = await openPage(session, { arrange: editor, touch: true });
    const touch = await finger(ui.page);
    const { x, y } = await thumb(ui.page);
    await touch.down(x, y);
    for (let step = 1; step <= 5; step += 1) await touch.move(x + 12 * step, y);
    await ui.page.waitForFunction(() => document.querySelector('[aria-label="Ringer Volume"]').value !== '0.5');
    // What the application has meanwhile counts as well.
    ui.phone.screen.rows().find((each) => each.name === 'Ringer Volume').value = 0.25;
    ui.phone.screen.rows().find((each) => each.name === 'Vibrate').value = true;
    ui.phone.changed();
    ui.server.push();
    await ui.page.waitForFunction(() => document.querySelector('[aria-label="Vibrate"]').checked);
    assert.notEqual(await slider(ui.page).inputValue(), '0.25', 'while the finger has it');
    await touch.cancel();
    await ui.page.waitForFunction(() => document.querySelector('[aria-label="Ringer Volume"]').value === '0.25');
    await sentOnly(ui, 0);
    await ui.close();
});

test('Slider_takenFromTheFingerWhileAValueIsOnItsWay_goesBackToThatValue', async () => {
    const ui = await openPage(session, { arrange: editor, touch: true });
    ui.server.hold = true;
    await slider(ui.page).press('End');
    await until(() => ui.server.held.length > 0, 'the value was sent');
    const touch = await finger(ui.page);
    const { x, y } = await thumb(ui.page);
    await touch.down(x, y);
    for (let step = 1; step <= 5; step += 1) await touch.move(x - 12 * step, y);
    await ui.page.waitForFunction(() => document.querySelector('[aria-label="Ringer Volume"]').value !== '1');
    await touch.cancel();
    await ui.page.waitForFunction(() => document.querySelector('[aria-label="Ringer Volume"]').value === '1');
    assert.equal(await slider(ui.page).getAttribute('aria-valuetext'), '100%');
    await ui.close();
});

for (const [name, device] of [['leftToRight', {}], ['rightToLeft', { rightToLeft: true, language: 'ar' }]]) {
    test(`Slider_thumbDraggedByAFinger_${name}_comesAlongAndIsSentOnce`, async () => {
        const ui = await openPage(session, { arrange: (phone) => { editor(phone); phone.device = { ...phone.device, ...device }; }, touch: true });
        const touch = await finger(ui.page);
        const { x, y, point } = await thumb(ui.page);
        await touch.down(x + 20, y);
        assert.equal(await slider(ui.page).inputValue(), '0.5', 'the thumb does not jump to the finger');
        for (let step = 1; step <= 5; step += 1) await touch.move(x + 20 + 12 * step, y);
        // Sideways already, a finger may wander.
        await touch.move(x + 80, y + 40);
        assert.equal(sent(ui.phone).length, 0, 'nothing is sent while the finger is down');
        await touch.up();
        await until(() => sent(ui.phone).length > 0, 'the value was sent');
        const expected = 0.5 + 60 * point * (device.rightToLeft ? -1 : 1);
        assert.ok(Math.abs(lastCommand(ui.phone, 'set').value - expected) < 0.01, `${lastCommand(ui.phone, 'set').value}, expected ${expected}`);
        await sentOnly(ui, 1);
        await ui.close();
    });
}

test('Slider_thumb_isTakenFromTwentyTwoPointsAndNoFurther', async () => {
    const ui = await openPage(session, { arrange: editor });
    for (const [away, moves] of [[-24, false], [24, false], [-21, true], [21, true]]) {
        const { x, y } = await thumb(ui.page);
        const before = await slider(ui.page).inputValue();
        await ui.page.mouse.move(x + away, y);
        await ui.page.mouse.down();
        await ui.page.mouse.move(x + away + 30, y, { steps: 3 });
        await ui.page.mouse.up();
        assert.equal(await slider(ui.page).inputValue() !== before, moves, `${away} points away`);
    }
    await sentOnly(ui, 2);
    await ui.close();
});

test('Slider_byKeys_movesAndSaysWhereItStands', async () => {
    const ui = await openPage(session, { arrange: editor });
    ui.server.hold = true;
    await slider(ui.page).focus();
    assert.equal(await slider(ui.page).getAttribute('aria-valuetext'), '50%');
    await ui.page.keyboard.press('End');
    assert.equal(await slider(ui.page).getAttribute('aria-valuetext'), '100%', 'before the answer is there');
    await until(() => ui.server.held.length > 0, 'the value was sent');
    assert.equal(lastCommand(ui.phone, 'set').value, 1);
    ui.server.hold = false;
    for (const answer of ui.server.held) answer();
    await ui.page.keyboard.press('Home');
    await until(() => lastCommand(ui.phone, 'set').value === 0, 'the other end was sent');
    await ui.close();
});

test('Slider_refused_returnsToWhatIsStored', async () => {
    const ui = await openPage(session, { arrange: (phone) => { editor(phone); phone.refuse.add('set'); } });
    await slider(ui.page).press('End');
    await ui.page.waitForFunction(() => document.querySelector('[aria-label="Ringer Volume"]').value === '0.5');
    assert.equal(await slider(ui.page).getAttribute('aria-valuetext'), '50%');
    await ui.close();
});
