// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { finishAnimations, lastCommand, openPage, settled, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const heading = (page, name) => page.getByRole('heading', { level: 1, name });

test('Push_byKeyboard_focusesTheNewTitleAndAnnouncesIt', async () => {
    const ui = await openPage(session);
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).press('Enter');
    await heading(ui.page, 'Miscellaneous').waitFor();
    assert.equal(await heading(ui.page, 'Miscellaneous').evaluate((element) => element === document.activeElement), true);
    assert.equal(await ui.page.locator('[aria-live]').textContent(), 'Miscellaneous');
    assert.equal(await ui.page.title(), 'Miscellaneous');
    assert.equal(await ui.page.locator('.bodies .page').count(), 1);
    await ui.close();
});

test('Back_pressed_returnsToTheRowAndTheScrollPosition', async () => {
    const ui = await openPage(session, { viewport: { width: 390, height: 480 } });
    const row = ui.page.getByRole('button', { name: 'Miscellaneous' });
    await row.scrollIntoViewIfNeeded();
    const scrolled = await ui.page.locator('.page').evaluate((element) => element.scrollTop);
    assert.ok(scrolled > 0);
    await row.focus();
    await row.press('Enter');
    await heading(ui.page, 'Miscellaneous').waitFor();
    await ui.page.getByRole('button', { name: /Back: Sample Go/ }).click();
    await row.waitFor();
    assert.equal(await row.evaluate((element) => element === document.activeElement), true);
    assert.equal(await ui.page.locator('.page').evaluate((element) => element.scrollTop), scrolled);
    assert.ok(lastCommand(ui.phone, 'back'));
    await ui.close();
});

/** Makes a push and a pop take so long that they end only with finishAnimations(). */
const slowMotion = (page) => page.evaluate(() => document.documentElement.style.setProperty('--push-time', '3600s'));

test('Push_withMotion_slidesThePageBeneathAThirdAndEndsWithOnePage', async () => {
    const ui = await openPage(session, { reducedMotion: 'no-preference' });
    await settled(ui.page);
    await slowMotion(ui.page);
    await ui.page.evaluate(() => {
        globalThis.frames = [];
        const animate = Element.prototype.animate;
        Element.prototype.animate = function (keyframes, options) {
            if (this.classList.contains('page')) globalThis.frames.push(keyframes.map((frame) => frame.transform));
            return animate.call(this, keyframes, options);
        };
    });
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await ui.page.waitForFunction(() => document.querySelectorAll('.bodies .page').length === 2);
    await finishAnimations(ui.page);
    await ui.page.waitForFunction(() => document.querySelectorAll('.bodies .page').length === 1);
    const frames = await ui.page.evaluate(() => globalThis.frames.flat());
    assert.ok(frames.some((frame) => frame.includes('-33.3%')));
    assert.ok(frames.some((frame) => frame.includes('100%')));
    await ui.close();
});

test('Push_interruptedByPop_endsOnTheRoot', async () => {
    const ui = await openPage(session, { reducedMotion: 'no-preference' });
    await slowMotion(ui.page);
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await ui.page.waitForFunction(() => document.querySelectorAll('.bodies .page').length === 2);
    ui.phone.perform({ do: 'back' });
    ui.server.push();
    await ui.page.waitForFunction(() => document.title === 'Sample Go');
    await finishAnimations(ui.page);
    assert.equal(await ui.page.locator('.bodies .page').count(), 1);
    assert.equal(await ui.page.locator('.bars .bar').count(), 1);
    assert.equal(await ui.page.locator('.page').evaluate((element) => getComputedStyle(element).transform), 'none');
    assert.equal(await ui.page.getByRole('switch').isEnabled(), true);
    await ui.page.getByRole('switch').click();
    await until(() => lastCommand(ui.phone, 'set'), 'the root answers');
    await ui.close();
});

test('Modal_presentedAndCancelled_liesAboveAndGoesAgain', async () => {
    const ui = await openPage(session);
    const add = ui.page.getByRole('button', { name: 'Add' });
    await add.focus();
    await add.press('Enter');
    await heading(ui.page, 'New Profile').waitFor();
    assert.equal(await ui.page.locator('.navigator').first().evaluate((element) => element.inert), true);
    await ui.page.getByRole('button', { name: 'Cancel' }).click();
    await ui.page.waitForFunction(() => document.querySelectorAll('.navigator').length === 1);
    assert.deepEqual({ side: lastCommand(ui.phone, 'bar').side, item: lastCommand(ui.phone, 'bar').item }, { side: 'left', item: 0 });
    assert.equal(await add.evaluate((element) => element === document.activeElement), true);
    await ui.close();
});

test('Modal_alreadyThereWhenThePageOpens_canBeLeft', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.perform({ do: 'bar', side: 'right', item: 0 }) });
    await heading(ui.page, 'New Profile').waitFor();
    await ui.page.getByRole('button', { name: 'Cancel' }).click();
    await ui.page.getByRole('switch', { name: 'Enabled' }).waitFor();
    await ui.page.waitForFunction(() => document.querySelectorAll('.navigator').length === 1);
    await ui.close();
});

test('BarItems_pressed_countFromTheOutside', async () => {
    const ui = await openPage(session);
    const [outer, inner] = [await ui.page.getByRole('button', { name: 'Add' }).boundingBox(), await ui.page.getByRole('button', { name: 'Twitter' }).boundingBox()];
    assert.ok(outer.x > inner.x);
    await ui.page.getByRole('button', { name: 'Twitter' }).click();
    await until(() => lastCommand(ui.phone, 'bar'), 'the button was sent');
    assert.equal(lastCommand(ui.phone, 'bar').item, 1);
    await ui.close();
});

test('Links_pressed_openTheirScreen', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.plain()) });
    await ui.page.getByRole('button', { name: 'Event Status' }).click();
    await heading(ui.page, 'Event Status').waitFor();
    assert.equal(lastCommand(ui.phone, 'link').item, 0);
    await ui.close();
});

test('Language_changed_turnsThePageAround', async () => {
    const ui = await openPage(session);
    ui.phone.device = { ...ui.phone.device, rightToLeft: true, language: 'ar' };
    ui.phone.push(ui.phone.plain());
    ui.server.push();
    await ui.page.waitForFunction(() => document.documentElement.dir === 'rtl' && document.documentElement.lang === 'ar');
    const box = await ui.page.locator('.bar-button.back').boundingBox();
    assert.ok(box.x > 195);
    assert.equal(await ui.page.getByRole('button', { name: /^رجوع/ }).count(), 1);
    await ui.close();
});
