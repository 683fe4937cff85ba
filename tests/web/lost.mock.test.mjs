// SPDX-License-Identifier: MIT
// What the page shows and keeps while nobody answers it, and what becomes of it afterwards.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { finger, middle } from './gestures.mjs';
import { accessibilityProblems, lastCommand, openPage, settled, startBrowser, tryAgain, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const editor = (phone) => phone.show(phone.root(), phone.editor('Work', false));
const field = (page) => page.getByRole('textbox', { name: 'Title', includeHidden: true });
const notice = (page) => page.locator('.unsaved');
const sets = (phone) => phone.commands.filter((command) => command.do === 'set');
const status = (page, wanted) => page.waitForFunction((name) => document.querySelector('.phone').dataset.connection === name, wanted);

async function lose(ui) {
    ui.server.leave();
    await status(ui.page, 'lost');
}

async function comeBack(ui) {
    ui.server.away = false;
    await tryAgain(ui.page);
    await status(ui.page, 'open');
}

for (const colorScheme of ['light', 'dark']) {
    test(`Lost_${colorScheme}_nothingTakesInputAndItLooksSo`, async () => {
        const ui = await openPage(session, { arrange: (phone) => { phone.device.darkMode = colorScheme === 'dark'; }, colorScheme });
        const toggle = ui.page.locator('.switch').first();
        const add = ui.page.locator('.bar-side.trailing .bar-button').last();
        const places = [await middle(toggle), await middle(add), await middle(ui.page.locator('.row button.cell').first())];
        const before = ui.phone.commands.length;
        await lose(ui);
        for (const [x, y] of places) await ui.page.mouse.click(x, y);
        await ui.page.keyboard.press('Tab');
        assert.equal(await ui.page.evaluate(() => document.activeElement.textContent.trim()), 'Try Again', 'the keyboard goes to what can be pressed');
        await ui.page.keyboard.press('Tab');
        assert.equal(await ui.page.evaluate(() => document.querySelector('.screens').contains(document.activeElement)), false);
        assert.equal(await toggle.evaluate((element) => element.checked), true);
        await settled(ui.page);
        const drawn = await ui.page.locator('.stage').evaluate((element) => [getComputedStyle(element).opacity, getComputedStyle(element).filter, getComputedStyle(element).cursor]);
        assert.ok(Number(drawn[0]) < 0.7 && drawn[1] === 'grayscale(1)' && drawn[2] === 'not-allowed', drawn.join());
        assert.match(await ui.page.getByRole('status').textContent(), /Connection lost\. Reconnecting…/);
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await comeBack(ui);
        assert.equal(ui.phone.commands.slice(before).every((command) => command.do === 'state'), true, JSON.stringify(ui.phone.commands.slice(before)));
        await ui.page.getByRole('switch').click();
        await until(() => lastCommand(ui.phone, 'set'), 'the switch is live again');
        await settled(ui.page);
        assert.equal(await ui.page.locator('.stage').evaluate((element) => getComputedStyle(element).opacity), '1');
        assert.equal((await ui.page.getByRole('status').textContent()).trim(), '');
        await ui.close();
    });
}

test('Lost_beneathASheet_itsButtonsAndEscapeDoNothing', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.plain()) });
    await ui.page.getByRole('button', { name: 'Reset Profiles' }).click();
    const confirm = ui.page.getByRole('button', { name: 'OK' });
    await confirm.waitFor();
    await settled(ui.page);
    const [x, y] = await middle(confirm);
    await lose(ui);
    await ui.page.mouse.click(x, y);
    await ui.page.keyboard.press('Escape');
    await comeBack(ui);
    assert.equal(lastCommand(ui.phone, 'choose'), undefined);
    await confirm.click();
    await until(() => lastCommand(ui.phone, 'choose'), 'the sheet is live again');
    await ui.close();
});

test('Lost_whileAFormIsOpen_escapeDoesNotLeaveIt', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.perform({ do: 'bar', side: 'right', item: 0 }) });
    await lose(ui);
    await ui.page.keyboard.press('Escape');
    await comeBack(ui);
    await ui.page.getByRole('heading', { name: 'New Profile' }).waitFor();
    assert.equal(ui.phone.commands.filter((command) => command.do === 'bar').length, 1);
    await ui.close();
});

test('Lost_whileTyping_theTextStaysAndIsSentWithTheConnectionBack', async () => {
    const ui = await openPage(session, { arrange: editor });
    await field(ui.page).fill('Theatre');
    await ui.page.keyboard.press('ArrowLeft');
    await lose(ui);
    assert.equal(await field(ui.page).inputValue(), 'Theatre');
    // What somebody types now goes nowhere, and least of all into the field.
    await ui.page.keyboard.type('x');
    assert.equal(await field(ui.page).inputValue(), 'Theatre');
    ui.server.away = false;
    await tryAgain(ui.page);
    await until(() => lastCommand(ui.phone, 'set'), 'the text was sent');
    assert.equal(lastCommand(ui.phone, 'set').value, 'Theatre');
    await ui.page.waitForFunction(() => document.activeElement.classList.contains('field'));
    await ui.page.keyboard.type('!');
    assert.equal(await field(ui.page).inputValue(), 'Theatr!e', 'the keyboard goes on where it was');
    await field(ui.page).press('Enter');
    await until(() => sets(ui.phone).length === 2, 'and its text is sent as ever');
    assert.equal(await notice(ui.page).textContent(), '');
    await ui.close();
});

test('Lost_whileTyping_whereTheRowGoesMeanwhile_isShownAsNotSaved', async () => {
    const ui = await openPage(session, { arrange: editor });
    await field(ui.page).fill('Theatre');
    await lose(ui);
    const rows = ui.phone.screen.rows().filter((each) => each.kind !== 8);
    ui.phone.screen.rows = () => rows;
    ui.phone.changed();
    await comeBack(ui);
    await ui.page.getByText('“Theatre” could not be saved.').waitFor();
    assert.equal(sets(ui.phone).length, 0);
    await ui.close();
});

test('Lost_whileTyping_toAnApplicationThatWasStartedAnew_isShownAsNotSaved', async () => {
    const ui = await openPage(session, { arrange: (phone) => { phone.revision = 900; editor(phone); } });
    await field(ui.page).fill('Theatre');
    await lose(ui);
    ui.phone.show(ui.phone.root());
    ui.phone.revision = 1;
    await comeBack(ui);
    await ui.page.getByText('“Theatre” could not be saved.').waitFor();
    assert.equal(sets(ui.phone).length, 0);
    await ui.page.getByRole('switch').click();
    await until(() => sets(ui.phone).length === 1, 'the root is live');
    await ui.close();
});

test('Lost_beforeTheAnswer_ofATextThatHadArrived_sendsNothingAgain', async () => {
    const ui = await openPage(session, { arrange: editor });
    ui.server.hold = true;
    await field(ui.page).fill('Theatre');
    await field(ui.page).press('Enter');
    await until(() => sets(ui.phone).length === 1, 'the text was sent');
    await lose(ui);
    ui.server.hold = false;
    ui.server.held.length = 0;
    await comeBack(ui);
    await ui.page.getByRole('switch', { name: 'Vibrate' }).click();
    await until(() => sets(ui.phone).length === 2, 'the page goes on');
    assert.equal(typeof lastCommand(ui.phone, 'set').value, 'boolean');
    assert.equal(await notice(ui.page).textContent(), '');
    await ui.close();
});

/** Sends texts that never reach the application, and loses the connection. */
async function loseOnTheWay(ui, ...texts) {
    ui.server.hold = true;
    const perform = ui.phone.do_set;
    ui.phone.do_set = () => true;
    for (const text of texts) {
        await field(ui.page).fill(text);
        await field(ui.page).press('Enter');
    }
    await until(() => sets(ui.phone).length === texts.length, 'they were sent');
    await lose(ui);
    ui.phone.do_set = perform;
    ui.phone.commands.length = 0;
    ui.server.hold = false;
    ui.server.held.length = 0;
}

test('Lost_withTextsOnTheirWay_theLastOneIsSentAgain', async () => {
    const ui = await openPage(session, { arrange: editor });
    await loseOnTheWay(ui, 'Theatre', 'Opera');
    await comeBack(ui);
    await until(() => lastCommand(ui.phone, 'set'), 'it was sent again');
    await ui.page.getByRole('switch', { name: 'Vibrate' }).click();
    await until(() => sets(ui.phone).length === 2, 'the page goes on');
    assert.deepEqual(sets(ui.phone)[0].value, 'Opera');
    assert.equal(await field(ui.page).inputValue(), 'Opera');
    assert.equal(await notice(ui.page).textContent(), '');
    await ui.close();
});

test('Lost_withATextOnItsWay_whereAnotherHasWrittenMeanwhile_isShownAsNotSaved', async () => {
    const ui = await openPage(session, { arrange: editor });
    await loseOnTheWay(ui, 'Theatre');
    ui.phone.screen.rows().find((each) => each.kind === 8).value = 'Office';
    ui.phone.changed();
    await comeBack(ui);
    await ui.page.getByText('“Theatre” could not be saved.').waitFor();
    assert.equal(await field(ui.page).inputValue(), 'Office');
    assert.equal(sets(ui.phone).length, 0, 'what another has written stands');
    await ui.close();
});

test('Refused_withTypedText_keepsItInSight', async () => {
    const ui = await openPage(session, { arrange: editor });
    await field(ui.page).fill('Theatre');
    ui.server.secret = ui.server.provenSecret = 'ff'.repeat(32);
    ui.server.dropAll();
    await ui.page.getByRole('heading', { name: 'Settings was restarted.' }).waitFor();
    await ui.page.getByText('“Theatre” could not be saved.').waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.getByRole('button', { name: 'OK' }).click();
    assert.equal(await notice(ui.page).textContent(), '');
    await ui.close();
});

test('Lost_whileASliderIsHeld_itGoesBackToWhatIsStored', async () => {
    const ui = await openPage(session, { arrange: editor, touch: true });
    const ground = ui.page.locator('.slider-ground').first();
    const slider = ground.locator('input');
    const before = await slider.inputValue();
    const box = await ground.boundingBox();
    const touch = await finger(ui.page);
    const y = box.y + box.height / 2;
    const thumb = box.x + 14 + (box.width - 28) * Number(before);
    await touch.down(thumb, y);
    for (const distance of [10, 20, 60]) await touch.move(thumb + distance, y);
    await ui.page.waitForFunction(([input, was]) => input.value !== was, [await slider.elementHandle(), before]);
    await lose(ui);
    await touch.up();
    await comeBack(ui);
    await ui.page.waitForFunction(([input, was]) => input.value === was, [await slider.elementHandle(), before]);
    assert.equal(sets(ui.phone).length, 0);
    await ui.close();
});

test('TryAgain_pressed_connectsWithoutWaitingForTheNextAttempt', async () => {
    // No attempt of the page's own comes in between.
    const ui = await openPage(session, { beforehand: () => {
        const later = globalThis.setTimeout;
        globalThis.setTimeout = (act, delay, ...rest) => (delay >= 500 ? 1_000_000_000 : later(act, delay, ...rest));
    } });
    await lose(ui);
    ui.server.away = false;
    const button = ui.page.getByRole('button', { name: 'Try Again' });
    assert.ok((await button.boundingBox()).height >= 44, 'it is as large as a finger needs');
    await button.click();
    await status(ui.page, 'open');
    await ui.close();
});

test('Silent_application_isSaidAndPressesGoOn', async () => {
    const ui = await openPage(session);
    ui.server.hold = true;
    await ui.page.getByRole('switch').click();
    await ui.page.getByText('Settings is not answering. Waiting…').waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    assert.equal(await ui.page.locator('.screens').evaluate((element) => element.inert), false);
    ui.server.letGo();
    await ui.page.waitForFunction(() => document.querySelector('.banner').textContent.trim() === '');
    await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 2);
    await ui.close();
});
