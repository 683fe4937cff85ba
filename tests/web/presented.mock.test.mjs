// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { lastCommand, openPage, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const firstProfile = (page) => page.locator('[data-deletable] .cell').first();

async function swipe(page, locator, distance) {
    const box = await locator.boundingBox();
    const y = box.y + box.height / 2;
    await page.mouse.move(box.x + box.width / 2, y);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width / 2 - distance, y, { steps: 5 });
    await page.mouse.up();
}

test('Row_deleteKey_opensTheSheetAndDeletes', async () => {
    const ui = await openPage(session);
    await firstProfile(ui.page).press('Delete');
    await ui.page.getByRole('dialog', { name: /'Work'/ }).waitFor();
    await ui.page.getByRole('button', { name: 'Delete', exact: true }).last().click();
    await ui.page.waitForFunction(() => document.querySelectorAll('[data-deletable]').length === 2);
    assert.equal(lastCommand(ui.phone, 'delete').row, 3);
    assert.equal(lastCommand(ui.phone, 'choose').action, 'Delete');
    await ui.close();
});

test('Sheet_escaped_choosesCancelAndReturnsTheFocusToTheRow', async () => {
    const ui = await openPage(session);
    const row = firstProfile(ui.page);
    await row.press('Delete');
    await ui.page.getByRole('dialog').waitFor();
    assert.equal(await ui.page.locator('.stage').evaluate((element) => element.inert), true);
    await ui.page.keyboard.press('Escape');
    await ui.page.waitForFunction(() => !document.querySelector('.stage').inert);
    assert.equal(lastCommand(ui.phone, 'choose').action, 'Cancel');
    assert.equal(await row.evaluate((element) => element === document.activeElement), true);
    await ui.close();
});

test('Sheet_tabbed_keepsTheFocusInside', async () => {
    const ui = await openPage(session, { viewport: { width: 1280, height: 900 } });
    await firstProfile(ui.page).press('Delete');
    await ui.page.getByRole('dialog').waitFor();
    for (const key of ['Tab', 'Tab', 'Tab', 'Shift+Tab', 'Shift+Tab']) {
        await ui.page.keyboard.press(key);
        assert.equal(await ui.page.evaluate(() => document.activeElement.closest('.sheet') !== null), true);
    }
    await ui.close();
});

test('Row_swipedWithTheMouse_uncoversDeleteAndIsNoTap', async () => {
    const ui = await openPage(session);
    const row = ui.page.locator('[data-deletable]').first();
    assert.equal(await row.locator('.delete').isVisible(), false);
    await swipe(ui.page, row, 100);
    await row.locator('.delete').waitFor();
    assert.equal(lastCommand(ui.phone, 'tap'), undefined);
    await row.locator('.delete').click();
    await ui.page.getByRole('dialog').waitFor();
    assert.equal(lastCommand(ui.phone, 'delete').row, 3);
    await ui.page.keyboard.press('Escape');
    await ui.page.waitForFunction(() => !document.querySelector('.row[data-open]'));
    assert.equal(await row.locator('button.cell').evaluate((element) => element === document.activeElement), true);
    await ui.close();
});

test('Row_swipedALittle_coversDeleteAgain', async () => {
    const ui = await openPage(session);
    const row = ui.page.locator('[data-deletable]').first();
    await swipe(ui.page, row, 20);
    assert.equal(await row.getAttribute('data-open'), null);
    assert.equal(lastCommand(ui.phone, 'tap'), undefined);
    await ui.close();
});

test('Row_swipedByTouch_uncoversDelete', async () => {
    const ui = await openPage(session, { touch: true });
    const row = ui.page.locator('[data-deletable]').first();
    const box = await row.boundingBox();
    const devtools = await ui.page.context().newCDPSession(ui.page);
    const touch = (type, x) => devtools.send('Input.dispatchTouchEvent', { type, touchPoints: x === null ? [] : [{ x, y: box.y + 20 }] });
    await touch('touchStart', 300);
    for (const x of [280, 250, 220, 190]) await touch('touchMove', x);
    await touch('touchEnd', null);
    await row.locator('.delete').waitFor();
    assert.notEqual(await row.getAttribute('data-open'), null);
    assert.equal(lastCommand(ui.phone, 'tap'), undefined);
    await ui.close();
});

test('Row_tappedBesideAnUncoveredDelete_onlyCoversItAgain', async () => {
    const ui = await openPage(session);
    const row = ui.page.locator('[data-deletable]').first();
    await swipe(ui.page, row, 100);
    await row.locator('.delete').waitFor();
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await ui.page.waitForFunction(() => !document.querySelector('.row[data-open]'));
    assert.equal(lastCommand(ui.phone, 'tap'), undefined);
    await ui.close();
});

test('Alert_escapedAfterAClickBesideIt_closes', async () => {
    const ui = await openPage(session);
    ui.phone.alert('Error', 'The disk is full.');
    ui.server.push();
    await ui.page.getByRole('alertdialog').waitFor();
    await ui.page.mouse.click(20, 800);
    await ui.page.keyboard.press('Escape');
    await until(() => lastCommand(ui.phone, 'choose'), 'the choice was sent');
    assert.equal(lastCommand(ui.phone, 'choose').action, 'Close');
    await ui.close();
});

test('Row_swipedFromRightToLeftLanguages_opensToTheOtherSide', async () => {
    const ui = await openPage(session, { arrange: (phone) => { phone.device = { ...phone.device, rightToLeft: true, language: 'ar' }; } });
    const row = ui.page.locator('[data-deletable]').first();
    await swipe(ui.page, row, -100);
    await row.locator('.delete').waitFor();
    const [outer, button] = [await row.boundingBox(), await row.locator('.delete').boundingBox()];
    assert.equal(button.x, outer.x);
    assert.equal(await row.locator('.delete').textContent(), 'حذف');
    await ui.close();
});

test('Editing_minusPressed_uncoversDelete', async () => {
    const ui = await openPage(session, { arrange: (phone) => { phone.editing = true; } });
    assert.equal(await ui.page.locator('.minus').count(), 3);
    await ui.page.locator('.minus').first().focus();
    await ui.page.keyboard.press('Enter');
    const button = ui.page.locator('.row[data-open] .delete');
    await button.waitFor();
    assert.equal(await button.evaluate((element) => element === document.activeElement), true);
    await ui.page.keyboard.press('Enter');
    await ui.page.getByRole('dialog').waitFor();
    await ui.close();
});

test('Alert_pushed_takesTheFocusAndIsAnnounced', async () => {
    const ui = await openPage(session);
    await ui.page.getByRole('switch').focus();
    ui.phone.alert('Error', 'The disk is full.');
    ui.server.push();
    const alert = ui.page.getByRole('alertdialog', { name: 'Error. The disk is full.' });
    await alert.waitFor();
    assert.equal(await alert.evaluate((element) => element === document.activeElement), true);
    assert.equal(await ui.page.locator('[aria-live]').textContent(), 'Error. The disk is full.');
    await ui.page.getByRole('button', { name: 'Close' }).click();
    await ui.page.waitForFunction(() => document.activeElement?.getAttribute('role') === 'switch');
    await ui.close();
});

test('Activity_pushed_hasNoWayOut', async () => {
    const ui = await openPage(session);
    ui.phone.activity('Resetting');
    ui.server.push();
    await ui.page.getByRole('alertdialog', { name: 'Resetting' }).waitFor();
    const sent = ui.phone.commands.length;
    await ui.page.keyboard.press('Escape');
    await ui.page.keyboard.press('Tab');
    assert.equal(await ui.page.evaluate(() => document.activeElement.getAttribute('role')), 'alertdialog');
    assert.equal(ui.phone.commands.length, sent);
    await ui.close();
});

test('Confirmation_confirmed_choosesItsButton', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.plain()) });
    await ui.page.getByRole('button', { name: 'Reset Profiles' }).click();
    await ui.page.getByRole('dialog', { name: 'Reset all profiles?' }).waitFor();
    await ui.page.getByRole('button', { name: 'OK' }).click();
    await until(() => lastCommand(ui.phone, 'choose'), 'the choice was sent');
    assert.equal(lastCommand(ui.phone, 'choose').action, 'OK');
    await ui.close();
});

test('Social_posted_isSentWithItsTextCounted', async () => {
    const ui = await openPage(session);
    await ui.page.getByRole('button', { name: 'Twitter' }).click();
    await ui.page.getByRole('button', { name: 'Share 😘' }).click();
    await ui.page.getByRole('dialog', { name: 'Twitter' }).waitFor();
    const text = await ui.page.locator('.social-text').textContent();
    assert.match(await ui.page.locator('.social-count').textContent(), new RegExp(`${text.length}$`));
    await ui.page.getByRole('button', { name: 'Post' }).click();
    await until(() => lastCommand(ui.phone, 'compose'), 'the post was sent');
    assert.equal(lastCommand(ui.phone, 'compose').result, 'sent');
    await ui.close();
});

test('Mail_withMarkup_showsItsTextAndRunsNothing', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.plain()) });
    await ui.page.getByRole('button', { name: 'Report Problem' }).click();
    await ui.page.getByRole('dialog', { name: 'Problem' }).waitFor();
    assert.equal(await ui.page.locator('.mail-body').textContent(), 'Hello\nIt rings.');
    assert.equal(await ui.page.locator('.mail-body *').count(), 0);
    assert.match(await ui.page.locator('.attachments').textContent(), /sample\.log.*2/s);
    await ui.page.getByRole('button', { name: 'Cancel' }).click();
    await until(() => lastCommand(ui.phone, 'compose'), 'the cancelling was sent');
    assert.equal(lastCommand(ui.phone, 'compose').result, 'cancelled');
    await ui.close();
});
