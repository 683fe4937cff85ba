// SPDX-License-Identifier: MIT
// The way back by a finger from the screen's leading edge.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { advanceTo, drawn, finger, freeze } from './gestures.mjs';
import { finishAnimations, lastCommand, openPage, settled, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const width = 390;
const heading = (page, name) => page.getByRole('heading', { level: 1, name });
const done = (phone, name) => phone.commands.filter((command) => command.do === name).length;
const top = (page) => page.locator('.navigator:last-child .bodies > .page').last();
/** What the page has drawn after the finger's last move. */
const frame = (page) => page.evaluate(() => new Promise((resolve) => { requestAnimationFrame(() => requestAnimationFrame(resolve)); }));
const misc = (phone) => phone.show(phone.root(), phone.plain());
const rightToLeft = (phone) => { phone.device = { ...phone.device, rightToLeft: true, language: 'ar' }; };
const moving = { touch: true, reducedMotion: 'no-preference' };

/** Opens Miscellaneous on the first screen, as a user does who then wants to go back. */
async function openMisc(options = moving, arrange = () => {}) {
    const ui = await openPage(session, { ...options, arrange });
    await ui.page.locator('.row', { hasText: 'Miscellaneous' }).getByRole('button').click();
    await ui.page.waitForFunction(() => document.title === 'Miscellaneous');
    await settled(ui.page);
    return ui;
}

/** Pulls from the leading edge so far along; the finger stays down. */
async function pull(page, distance, { start = 6, y = 400, direction = 1 } = {}) {
    const touch = await finger(page);
    const x = direction === 1 ? start : width - start;
    await touch.down(x, y);
    for (let step = 1; step <= 10; step += 1) await touch.move(x + direction * distance * step / 10, y);
    await frame(page);
    return { ...touch, async to(further) { await touch.move(x + direction * further, y); await frame(page); } };
}

/** Lifts a finger that has rested, so that it is not flicked. */
async function rest(page, touch, distance, options) {
    await page.waitForFunction((start) => performance.now() - start > 200, await page.evaluate(() => performance.now()));
    await touch.to(distance, options);
    await touch.up();
}

for (const [name, arrange, direction] of [['leftToRight', () => {}, 1], ['rightToLeft', rightToLeft, -1]]) {
    test(`Pull_${name}_followsTheFingerAndGoesBackBeyondHalfTheWay`, async () => {
        const ui = await openMisc(moving, arrange);
        const touch = await pull(ui.page, 120, { direction });
        for (const distance of [120, 250, 200]) {
            await touch.to(distance);
            const { left } = await drawn(top(ui.page));
            assert.ok(Math.abs(left - direction * distance) < 1.5, `at ${distance} it stands at ${left}`);
            const beneath = await drawn(ui.page.locator('.bodies > .page').first());
            const wanted = -direction * (width / 3) * (1 - distance / width);
            assert.ok(Math.abs(beneath.left - wanted) < 2, `the screen beneath stands at ${beneath.left}, not ${wanted}`);
        }
        await rest(ui.page, touch, 230);
        await until(() => lastCommand(ui.phone, 'back'), 'it goes back');
        await ui.page.waitForFunction(() => document.title === 'Sample Go');
        await finishAnimations(ui.page);
        assert.equal(await ui.page.locator('.bodies .page').count(), 1);
        assert.equal(await ui.page.locator('.bars .bar').count(), 1);
        assert.equal((await drawn(top(ui.page))).left, 0);
        assert.equal(done(ui.phone, 'back'), 1);
        await ui.page.locator('.switch').first().click();
        await until(() => lastCommand(ui.phone, 'set'), 'the screen takes input');
        await ui.close();
    });
}

test('Pull_givenUpHalfWay_leavesTheScreenAsItWas', async () => {
    const ui = await openMisc();
    const touch = await pull(ui.page, 300);
    await rest(ui.page, touch, 100);
    await finishAnimations(ui.page);
    assert.equal(await ui.page.locator('.bodies .page').count(), 1);
    assert.equal(await ui.page.title(), 'Miscellaneous');
    assert.equal((await drawn(top(ui.page))).left, 0);
    assert.equal(done(ui.phone, 'back'), 0);
    // And it works as before.
    await ui.page.getByRole('button', { name: 'Report Problem' }).click();
    await ui.page.getByRole('dialog', { name: 'Problem' }).waitFor();
    await ui.close();
});

test('Pull_flicked_goesBackThoughItIsShort', async () => {
    const ui = await openMisc();
    await (await finger(ui.page)).flick([6, 400], [120, 402], 60);
    await ui.page.waitForFunction(() => document.title === 'Sample Go');
    assert.equal(done(ui.phone, 'back'), 1);
    await ui.close();
});

test('Pull_flickedBackwards_isGivenUpThoughItIsLong', async () => {
    const ui = await openMisc();
    const devtools = await ui.page.context().newCDPSession(ui.page);
    const start = Date.now() / 1000;
    const at = (type, x, part) => devtools.send('Input.dispatchTouchEvent', { type, touchPoints: x === null ? [] : [{ x, y: 400 }], timestamp: start + part });
    await at('touchStart', 6, 0);
    for (const [x, time] of [[100, 0.1], [200, 0.2], [380, 0.3], [350, 0.32], [300, 0.34]]) await at('touchMove', x, time);
    await at('touchEnd', null, 0.35);
    await finishAnimations(ui.page);
    assert.equal(await ui.page.title(), 'Miscellaneous');
    assert.equal(done(ui.phone, 'back'), 0);
    await ui.close();
});

test('Pull_fromElsewhere_orUpAndDown_orOnTheFirstScreen_isNone', async () => {
    const ui = await openMisc();
    const touch = await finger(ui.page);
    await touch.swipe([60, 400], [350, 400]);
    await touch.swipe([6, 400], [10, 700]);
    await touch.swipe([6, 400], [60, 480]);
    await settled(ui.page);
    assert.equal(done(ui.phone, 'back'), 0);
    assert.equal(await ui.page.locator('.bodies .page').count(), 1);
    ui.phone.perform({ do: 'back' });
    ui.server.push();
    await ui.page.waitForFunction(() => document.title === 'Sample Go');
    await settled(ui.page);
    ui.phone.commands.length = 0;
    await touch.swipe([6, 400], [350, 400]);
    await settled(ui.page);
    assert.deepEqual(ui.phone.commands.filter((command) => command.do !== 'state'), []);
    await ui.close();
});

test('Tap_onTheBackButtonAtTheEdge_stillPressesIt', async () => {
    const ui = await openMisc();
    const box = await ui.page.locator('.back').boundingBox();
    assert.ok(box.x < 20, `the button begins at ${box.x}`);
    await (await finger(ui.page)).tap(box.x + 4, box.y + box.height / 2);
    await ui.page.waitForFunction(() => document.title === 'Sample Go');
    await ui.close();
});

test('Pull_ofARowAtTheEdge_neitherTapsNorSwipesIt', async () => {
    const ui = await openMisc(moving, (phone) => { misc(phone); phone.push({ ...phone.root(), title: 'Again' }); phone.screens.splice(1, 1); });
    // The row that is under the finger can be deleted and tapped.
    ui.phone.show(ui.phone.root(), { ...ui.phone.root(), class: 'SampleOther', title: 'Other' });
    ui.server.push();
    await ui.page.waitForFunction(() => document.title === 'Other');
    await settled(ui.page);
    const box = await ui.page.locator('.row[data-deletable]').first().boundingBox();
    const touch = await pull(ui.page, 200, { start: Math.max(6, box.x + 2), y: box.y + box.height / 2 });
    assert.equal(await ui.page.locator('.row.swiping').count(), 0);
    await rest(ui.page, touch, 100);
    await finishAnimations(ui.page);
    assert.deepEqual(ui.phone.commands.filter((command) => ['tap', 'back', 'delete'].includes(command.do) && command.id > 2), []);
    await ui.close();
});

test('Pull_thatThePhoneRefuses_comesBack', async () => {
    const ui = await openMisc();
    ui.phone.refuse.add('back');
    const touch = await pull(ui.page, 300);
    await rest(ui.page, touch, 300);
    await until(() => done(ui.phone, 'back') === 1, 'it was asked for');
    await ui.page.waitForFunction(() => document.querySelector('.bodies > .page.above').getBoundingClientRect().left < 300);
    await finishAnimations(ui.page);
    assert.equal(await ui.page.locator('.bodies .page').count(), 1);
    assert.equal((await drawn(top(ui.page))).left, 0);
    ui.phone.refuse.clear();
    await ui.page.locator('.back').click();
    await ui.page.waitForFunction(() => document.title === 'Sample Go');
    await ui.close();
});

test('Pull_whoseAnswerIsLate_staysAsideAndTakesNoInputUntilThen', async () => {
    const ui = await openMisc();
    ui.server.hold = true;
    const touch = await pull(ui.page, 300);
    await rest(ui.page, touch, 300);
    await until(() => done(ui.phone, 'back') === 1, 'it was sent');
    await settled(ui.page);
    const parts = await ui.page.locator('.bodies > .page').evaluateAll((all) => all.map((page) => page.getBoundingClientRect().left));
    assert.deepEqual(parts.map((left) => Math.round(left) + 0), [0, width]);
    // The screen beneath shows, and is not there yet.
    const box = await ui.page.locator('.bodies > .page').first().locator('.switch').boundingBox();
    await ui.page.mouse.click(box.x + box.width / 2, box.y + box.height / 2);
    assert.equal(done(ui.phone, 'set'), 0);
    // Nor does the screen that is on its way out.
    await ui.page.locator('.bar .back').last().evaluate((button) => button.click());
    assert.equal(done(ui.phone, 'back'), 1);
    ui.server.letGo();
    await ui.page.waitForFunction(() => document.title === 'Sample Go');
    await finishAnimations(ui.page);
    await ui.page.locator('.switch').first().click();
    await until(() => done(ui.phone, 'set') === 1, 'now it is');
    await ui.close();
});

test('Pull_whoseConnectionIsLost_comesBack', async () => {
    const ui = await openMisc();
    ui.server.hold = true;
    const touch = await pull(ui.page, 300);
    await rest(ui.page, touch, 300);
    await until(() => done(ui.phone, 'back') === 1, 'it was sent');
    ui.phone.push(ui.phone.plain());
    ui.phone.screens.splice(1, 1);
    ui.server.held.length = 0;
    ui.server.hold = false;
    ui.server.leave();
    await ui.page.getByRole('button', { name: 'Try Again' }).waitFor();
    await finishAnimations(ui.page);
    assert.equal((await drawn(top(ui.page))).left, 0);
    await ui.close();
});

for (const [name, change, shown] of [
    ['anotherOpensAScreen', (phone) => phone.push(phone.eventStatus()), 'Event Status'],
    ['anotherGoesBack', (phone) => phone.perform({ do: 'back' }), 'Sample Go'],
]) {
    test(`Pull_while_${name}_isTakenOutOfTheHand`, async () => {
        const ui = await openMisc();
        const touch = await pull(ui.page, 200);
        await freeze(ui.page);
        const before = await drawn(ui.page.locator('.bodies > .page').nth(1));
        change(ui.phone);
        ui.server.push();
        await ui.page.waitForFunction((title) => document.title === title, shown);
        const after = await drawn(ui.page.locator('.bodies > .page').nth(1));
        assert.ok(Math.abs(after.left - before.left) < 1, `from ${before.left} to ${after.left}`);
        await touch.to(350);
        assert.ok(Math.abs((await drawn(ui.page.locator('.bodies > .page').nth(1))).left - before.left) < 1, 'the finger moves nothing any more');
        await touch.up();
        await advanceTo(ui.page, 0.5);
        await finishAnimations(ui.page);
        assert.equal(await ui.page.locator('.bodies .page').count(), 1);
        assert.equal(await ui.page.locator('.bars .bar').count(), 1);
        const backs = shown === 'Sample Go' ? 1 : 0;
        assert.equal(done(ui.phone, 'back'), backs);
        if (backs === 0) {
            // The screen that was pulled takes input again once it is back.
            ui.phone.perform({ do: 'back' });
            ui.server.push();
            await ui.page.waitForFunction(() => document.title === 'Miscellaneous');
            await finishAnimations(ui.page);
            await ui.page.getByRole('button', { name: 'Report Problem' }).click();
            await ui.page.getByRole('dialog', { name: 'Problem' }).waitFor();
        }
        await ui.close();
    });
}

test('Pull_underReducedMotion_fadesInPlaceOfMoving', async () => {
    const ui = await openMisc({ touch: true, reducedMotion: 'reduce' });
    const touch = await pull(ui.page, 195);
    const { left, opacity } = await drawn(top(ui.page));
    assert.equal(left, 0);
    assert.ok(Math.abs(opacity - 0.5) < 0.02, `${opacity}`);
    await rest(ui.page, touch, 300);
    await ui.page.waitForFunction(() => document.title === 'Sample Go');
    await ui.close();
});

test('Pull_byAMouse_onADrawnPhone_countsFromThePhonesEdge', async () => {
    const ui = await openMisc({ reducedMotion: 'no-preference', viewport: { width: 1280, height: 900 } });
    const box = await ui.page.locator('.phone').boundingBox();
    await ui.page.mouse.move(box.x + 5, 450);
    await ui.page.mouse.down();
    await ui.page.mouse.move(box.x + 150, 450, { steps: 5 });
    await ui.page.mouse.move(box.x + 300, 450, { steps: 5 });
    await frame(ui.page);
    assert.ok(Math.abs((await drawn(top(ui.page))).left - box.x - 295) < 2);
    await ui.page.mouse.up();
    await ui.page.waitForFunction(() => document.title === 'Sample Go');
    await ui.close();
});

test('Pull_byAMouse_ofARowGivenUp_leavesNothingInTheHand', async () => {
    const ui = await openPage(session, { reducedMotion: 'no-preference', arrange: (phone) => phone.show(phone.root(), { ...phone.root(), class: 'SampleOther', title: 'Other' }) });
    await settled(ui.page);
    const box = await ui.page.locator('.row[data-deletable]').first().boundingBox();
    const y = box.y + box.height / 2;
    await ui.page.mouse.move(box.x + 1, y);
    await ui.page.mouse.down();
    // Up and down first: that is none, whatever comes then.
    await ui.page.mouse.move(box.x + 2, y + 40, { steps: 4 });
    await ui.page.mouse.move(box.x + 200, y + 40, { steps: 4 });
    await frame(ui.page);
    assert.equal((await drawn(top(ui.page))).left, 0);
    await ui.page.mouse.up();
    await ui.page.mouse.move(box.x + 1, y);
    await ui.page.mouse.down();
    await ui.page.mouse.move(box.x + 60, y, { steps: 4 });
    // It rests, so that it is not flicked.
    await ui.page.waitForFunction((start) => performance.now() - start > 200, await ui.page.evaluate(() => performance.now()));
    await ui.page.mouse.move(box.x + 50, y);
    await ui.page.mouse.up();
    await finishAnimations(ui.page);
    // Without a button down it only passes over the row.
    await ui.page.mouse.move(box.x + 300, y);
    await ui.page.mouse.move(box.x + 100, y, { steps: 6 });
    await frame(ui.page);
    assert.equal(await ui.page.locator('.row.swiping').count(), 0);
    assert.equal((await drawn(ui.page.locator('.row[data-deletable] .cell').first())).left, box.x);
    await ui.close();
});

test('Pull_onAForm_pullsItAsideAndIsItsCancel', async () => {
    const ui = await openPage(session, moving);
    await ui.page.getByRole('button', { name: 'Add' }).click();
    await heading(ui.page, 'New Profile').waitFor();
    await settled(ui.page);
    const form = ui.page.locator('.navigator.modal');
    let touch = await pull(ui.page, 150);
    assert.ok(Math.abs((await drawn(form)).left - 150) < 1.5);
    assert.equal(await ui.page.locator('.navigator').first().isVisible(), true);
    await rest(ui.page, touch, 100);
    await finishAnimations(ui.page);
    assert.equal((await drawn(form)).left, 0);
    assert.equal(done(ui.phone, 'bar'), 1);
    touch = await pull(ui.page, 150);
    await rest(ui.page, touch, 250);
    await ui.page.waitForFunction(() => document.title === 'Sample Go');
    await finishAnimations(ui.page);
    assert.equal(lastCommand(ui.phone, 'bar').side, 'left');
    assert.equal(await ui.page.locator('.navigator').count(), 1);
    await ui.page.locator('.switch').first().click();
    await until(() => lastCommand(ui.phone, 'set'), 'the screen takes input');
    await ui.close();
});

test('Pull_onASheet_pullsItAwayAndIsItsCancel', async () => {
    const ui = await openPage(session, { ...moving, arrange: misc });
    await ui.page.getByRole('button', { name: 'Reset Profiles' }).click();
    await ui.page.getByRole('button', { name: 'OK' }).waitFor();
    await settled(ui.page);
    const layer = ui.page.locator('.layer');
    let touch = await pull(ui.page, 195);
    assert.ok(Math.abs((await drawn(layer)).opacity - 0.5) < 0.03);
    await rest(ui.page, touch, 100);
    await finishAnimations(ui.page);
    assert.equal((await drawn(layer)).opacity, 1);
    assert.equal(done(ui.phone, 'choose'), 0);
    touch = await pull(ui.page, 195);
    await rest(ui.page, touch, 280);
    await layer.waitFor({ state: 'detached' });
    assert.equal(lastCommand(ui.phone, 'choose').action, 'Cancel');
    assert.equal(done(ui.phone, 'back'), 0);
    await ui.close();
});

test('Pull_onAnAlertWithoutACancel_isNone', async () => {
    const ui = await openPage(session, { ...moving, arrange: (phone) => { misc(phone); phone.activity('Please wait'); } });
    await ui.page.getByText('Please wait').waitFor();
    await finishAnimations(ui.page);
    const touch = await pull(ui.page, 300);
    assert.equal((await drawn(ui.page.locator('.layer'))).opacity, 1);
    await touch.up();
    assert.deepEqual(ui.phone.commands.filter((command) => command.do !== 'state'), []);
    await ui.close();
});
