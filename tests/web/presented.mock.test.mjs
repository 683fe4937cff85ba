// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, lastCommand, openPage, settled, startBrowser, until } from './harness.mjs';

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

/** Checks that the page has sent no such command: one sent after it has come, so it would have come as well. */
async function sentNo(ui, name) {
    await ui.page.getByRole('switch').click();
    await until(() => lastCommand(ui.phone, 'set'), 'the switch was sent');
    assert.equal(lastCommand(ui.phone, name), undefined);
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
    await row.locator('.delete').click();
    await ui.page.getByRole('dialog').waitFor();
    assert.equal(lastCommand(ui.phone, 'delete').row, 3);
    assert.equal(lastCommand(ui.phone, 'tap'), undefined);
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
    await sentNo(ui, 'tap');
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
    await sentNo(ui, 'tap');
    await ui.close();
});

test('Row_tappedBesideAnUncoveredDelete_onlyCoversItAgain', async () => {
    const ui = await openPage(session);
    const row = ui.page.locator('[data-deletable]').first();
    await swipe(ui.page, row, 100);
    await row.locator('.delete').waitFor();
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await ui.page.waitForFunction(() => !document.querySelector('.row[data-open]'));
    await sentNo(ui, 'tap');
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
    ui.phone.show(ui.phone.root());
    ui.server.push();
    await ui.page.getByRole('alertdialog').waitFor({ state: 'detached' });
    await sentNo(ui, 'choose');
    assert.deepEqual(ui.phone.commands.slice(sent).map((command) => command.do), ['set']);
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

async function openMail(options = {}) {
    const ui = await openPage(session, { ...options, arrange: (phone) => phone.show(phone.root(), phone.plain()) });
    await ui.page.getByRole('button', { name: 'Report Problem' }).click();
    await ui.page.getByRole('dialog', { name: 'Problem' }).waitFor();
    return ui;
}

const question = (ui) => ui.page.getByRole('alertdialog', { name: 'Keep this mail as a draft?' });

/** Waits for the composer to have been ended, and tells how. */
async function ending(ui) {
    await until(() => lastCommand(ui.phone, 'compose'), 'the composer was ended');
    return lastCommand(ui.phone, 'compose').result;
}

test('Mail_withMarkup_showsItsTextAndRunsNothing', async () => {
    const ui = await openMail();
    assert.equal(await ui.page.locator('.mail-body').textContent(), 'Hello\nIt rings.');
    assert.equal(await ui.page.locator('.mail-body *').count(), 0);
    await ui.close();
});

test('Mail_opened_showsEveryFieldAndWhatIsAttached', async () => {
    const ui = await openMail();
    assert.deepEqual(await ui.page.locator('.mail-fields dt').allTextContents(), ['From:', 'To:', 'Subject:']);
    assert.deepEqual(await ui.page.locator('.mail-fields dd').allTextContents(), ['me@example.net', 'help@example.org', 'Problem']);
    const attached = (await ui.page.locator('.attachments li').allInnerTexts()).map((text) => text.split('\n').map((line) => line.trim()).filter(Boolean));
    assert.deepEqual(attached[0], ['sample.log', 'mime', '60 byte', '2026-11-20T09:00:00Z one', '2026-11-20T09:00:01Z <b>two</b> é']);
    assert.deepEqual(attached[1].slice(0, 3), ['long.log', 'text/plain', '2 MB']);
    assert.equal(attached[1].at(-1), 'Only the beginning is shown.');
    assert.deepEqual(attached[2], ['empty', 'mime', '0 byte', 'The file is empty.']);
    await ui.close();
});

test('Mail_opened_leavesTheStatusBarToBeSeen', async () => {
    const ui = await openMail();
    const seen = () => ui.page.locator('.status-bar .icon').first().evaluate((glyph) => {
        const { x, y, width, height } = glyph.getBoundingClientRect();
        document.querySelector('.status-bar').style.pointerEvents = 'auto';
        return { onTop: document.elementFromPoint(x + width / 2, y + height / 2)?.closest('.status-bar') !== null, colour: getComputedStyle(glyph).color };
    });
    assert.deepEqual(await seen(), { onTop: true, colour: 'rgb(0, 0, 0)' });
    await ui.page.getByRole('button', { name: 'Send' }).click();
    await ui.page.getByRole('dialog').waitFor({ state: 'detached' });
    await settled(ui.page);
    assert.deepEqual(await seen(), { onTop: true, colour: 'rgb(255, 255, 255)' });
    await ui.close();
});

test('Mail_attachment_isReadWithTheKeyboard', async () => {
    const ui = await openMail();
    const text = ui.page.getByRole('region', { name: 'long.log' });
    await text.focus();
    await ui.page.keyboard.press('End');
    await ui.page.waitForFunction(() => document.querySelectorAll('.attachment-text')[1].scrollTop > 0);
    await ui.close();
});

test('Mail_sent_isSentAtOnce', async () => {
    const ui = await openMail();
    await ui.page.getByRole('button', { name: 'Send' }).click();
    assert.equal(await ending(ui), 'sent');
    await ui.close();
});

for (const [name, result] of [['Delete Draft', 'cancelled'], ['Save Draft', 'saved']]) {
    test(`Mail_cancelledWith${name.replace(' ', '')}_endsAs_${result}`, async () => {
        const ui = await openMail();
        await ui.page.getByRole('button', { name: 'Cancel' }).click();
        await question(ui).waitFor();
        assert.equal(lastCommand(ui.phone, 'compose'), undefined);
        await ui.page.getByRole('button', { name }).click();
        assert.equal(await ending(ui), result);
        await ui.page.waitForFunction(() => !document.querySelector('.stage').inert);
        await ui.close();
    });
}

test('Mail_cancelledAndKept_isThereAsBefore', async () => {
    const ui = await openMail();
    for (let round = 0; round < 2; round += 1) {
        await ui.page.getByRole('button', { name: 'Cancel' }).click();
        await question(ui).waitFor();
        await ui.page.getByRole('button', { name: 'Back to Mail' }).click();
        await question(ui).waitFor({ state: 'detached' });
        assert.equal(await ui.page.getByRole('button', { name: 'Cancel' }).evaluate((element) => element === document.activeElement), true);
    }
    assert.equal(lastCommand(ui.phone, 'compose'), undefined);
    await ui.close();
});

test('Mail_escaped_asksAndTakesTheQuestionBack', async () => {
    const ui = await openMail();
    await ui.page.mouse.click(200, 20);
    for (let round = 0; round < 2; round += 1) {
        await ui.page.keyboard.press('Escape');
        await question(ui).waitFor();
        await ui.page.keyboard.press('Escape');
        await question(ui).waitFor({ state: 'detached' });
    }
    assert.equal(lastCommand(ui.phone, 'compose'), undefined);
    await ui.close();
});

test('MailQuestion_tabbed_keepsTheFocusInsideAndTheMailOut', async () => {
    const ui = await openMail({ viewport: { width: 1280, height: 900 } });
    await ui.page.keyboard.press('Escape');
    await question(ui).waitFor();
    assert.equal(await ui.page.locator('.composer-main').evaluate((element) => element.inert), true);
    const focused = [];
    for (const key of ['Tab', 'Tab', 'Tab', 'Tab', 'Shift+Tab', 'Shift+Tab']) {
        await ui.page.keyboard.press(key);
        focused.push(await ui.page.evaluate(() => document.activeElement.textContent));
    }
    assert.deepEqual(focused, ['Delete Draft', 'Save Draft', 'Back to Mail', 'Delete Draft', 'Back to Mail', 'Save Draft']);
    await ui.close();
});

test('MailQuestion_asked_isAccessibleInLightAndDark', async () => {
    const ui = await openMail();
    await ui.page.keyboard.press('Escape');
    await question(ui).waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    ui.phone.device = { ...ui.phone.device, darkMode: true };
    ui.phone.changed();
    ui.server.push();
    await ui.page.waitForFunction(() => document.documentElement.dataset.theme === 'dark');
    assert.equal(await question(ui).isVisible(), true);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

test('MailQuestion_inAnotherLanguage_speaksIt', async () => {
    const ui = await openMail();
    ui.phone.device = { ...ui.phone.device, language: 'ar', rightToLeft: true };
    ui.phone.changed();
    ui.server.push();
    await ui.page.getByRole('button', { name: 'إلغاء' }).click();
    await ui.page.getByRole('button', { name: 'حفظ المسودة' }).click();
    assert.equal(await ending(ui), 'saved');
    await ui.close();
});

test('Social_cancelledOrEscaped_isDropped', async () => {
    for (const leave of [(page) => page.getByRole('button', { name: 'Cancel' }).click(), (page) => page.keyboard.press('Escape')]) {
        const ui = await openPage(session);
        await ui.page.getByRole('button', { name: 'Twitter' }).click();
        await ui.page.getByRole('button', { name: 'Share 😘' }).click();
        await ui.page.getByRole('dialog', { name: 'Twitter' }).waitFor();
        await leave(ui.page);
        assert.equal(await ending(ui), 'cancelled');
        await ui.close();
    }
});
