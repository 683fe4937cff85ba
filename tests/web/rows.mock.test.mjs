// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { lastCommand, openPage, settled, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const editor = (phone) => phone.show(phone.root(), phone.editor('Work', false));
const row = (phone, name) => phone.screen.rows().find((each) => each.name === name);
const slider = (page) => page.getByRole('slider', { name: 'Playback Volume' });

async function dragTo(page, locator, share) {
    const box = await locator.boundingBox();
    await page.mouse.move(box.x + box.width * 0.25, box.y + box.height / 2);
    await page.mouse.down();
    await page.mouse.move(box.x + box.width * share, box.y + box.height / 2, { steps: 4 });
}

test('Switch_toggled_sendsItsRowAndValue', async () => {
    const ui = await openPage(session, { arrange: editor });
    await ui.page.getByRole('switch', { name: 'Vibrate' }).click();
    await until(() => lastCommand(ui.phone, 'set'), 'the value was sent');
    const { row, value } = lastCommand(ui.phone, 'set');
    assert.equal(ui.phone.screen.rows()[row].name, 'Vibrate');
    assert.equal(value, true);
    await ui.close();
});

test('Switch_refusedByTheApplication_returns', async () => {
    const ui = await openPage(session, { arrange: (phone) => { editor(phone); phone.refuse.add('set'); } });
    const control = ui.page.getByRole('switch', { name: 'Vibrate' });
    await control.click();
    await ui.page.waitForFunction(() => !document.querySelector('[aria-label="Vibrate"]').checked);
    assert.equal(lastCommand(ui.phone, 'set').value, true);
    await ui.close();
});

test('ControlRow_bodyTappedWhereATapDoesNothing_sendsNothing', async () => {
    const ui = await openPage(session, { arrange: editor });
    for (const name of ['All Day', 'Playback Volume']) await ui.page.getByText(name).click();
    assert.equal(await ui.page.getByRole('button', { name: 'All Day' }).count(), 0);
    // What is sent later has come when this is there.
    await ui.page.getByRole('switch', { name: 'Vibrate' }).click();
    await until(() => lastCommand(ui.phone, 'set'), 'the value was sent');
    assert.equal(lastCommand(ui.phone, 'tap'), undefined);
    assert.equal(await ui.page.getByRole('switch', { name: 'All Day' }).isChecked(), false);
    await ui.close();
});

test('Row_thatDoesNotAnswerATap_isNoButton', async () => {
    const ui = await openPage(session, { arrange: (phone) => { editor(phone); row(phone, 'Alert Tone').tappable = false; } });
    await ui.page.getByText('Alert Tone').click();
    assert.equal(await ui.page.getByRole('button', { name: /Alert Tone/ }).count(), 0);
    await ui.page.getByRole('button', { name: 'Home' }).click();
    await until(() => lastCommand(ui.phone, 'tap'), 'the tap was sent');
    assert.equal(ui.phone.commands.filter((command) => command.do === 'tap').length, 1);
    await ui.close();
});

test('Slider_patchedWhileDragged_staysWithTheUser', async () => {
    const ui = await openPage(session, { arrange: editor });
    const control = slider(ui.page);
    await dragTo(ui.page, control, 0.75);
    const dragged = await control.inputValue();
    ui.phone.screen.rows().find((row) => row.name === 'Playback Volume').value = 0;
    ui.phone.screen.rows().find((row) => row.name === 'Ringer Volume').value = 1;
    ui.phone.changed();
    ui.server.push();
    await ui.page.waitForFunction(() => document.querySelector('[aria-label="Ringer Volume"]').value === '1');
    assert.equal(await control.inputValue(), dragged);
    await ui.page.mouse.up();
    await until(() => lastCommand(ui.phone, 'set'), 'the value was sent');
    assert.equal(lastCommand(ui.phone, 'set').value, Number(dragged));
    await ui.close();
});

test('Slider_changeUnanswered_keepsItsValueUntilTheAnswer', async () => {
    const ui = await openPage(session, { arrange: editor });
    const control = slider(ui.page);
    ui.server.hold = true;
    await dragTo(ui.page, control, 0.75);
    await ui.page.mouse.up();
    await until(() => ui.server.held.length > 0, 'the value was sent');
    const mine = await control.inputValue();
    const rows = ui.phone.screen.rows();
    rows.find((row) => row.name === 'Playback Volume').value = 0.1;
    rows.find((row) => row.name === 'Ringer Volume').value = 1;
    ui.phone.changed();
    ui.server.push();
    await ui.page.waitForFunction(() => document.querySelector('[aria-label="Ringer Volume"]').value === '1');
    assert.equal(await control.inputValue(), mine);
    rows.find((row) => row.name === 'Playback Volume').value = 0.2;
    ui.phone.changed();
    ui.server.hold = false;
    ui.phone.screen.laidOut = null;
    for (const answer of ui.server.held) answer();
    ui.server.push();
    await ui.page.waitForFunction(() => document.querySelector('[aria-label="Playback Volume"]').value === '0.2');
    await ui.close();
});

test('TextField_patchedWhileTyping_keepsTheTypedTextAndCommitsOnReturn', async () => {
    const ui = await openPage(session, { arrange: editor });
    const field = ui.page.getByRole('textbox', { name: 'Title' });
    await field.fill('Theatre');
    ui.phone.screen.rows()[1].value = 'Changed elsewhere';
    ui.phone.screen.title = 'Elsewhere';
    ui.phone.changed();
    ui.server.push();
    await ui.page.getByRole('heading', { level: 1, name: 'Elsewhere' }).waitFor();
    assert.equal(await field.inputValue(), 'Theatre');
    await field.press('Enter');
    await until(() => lastCommand(ui.phone, 'set'), 'the text was sent');
    assert.equal(lastCommand(ui.phone, 'set').value, 'Theatre');
    assert.equal(await field.evaluate((element) => element === document.activeElement), false);
    assert.equal(ui.phone.commands.filter((command) => command.do === 'set').length, 1);
    await ui.close();
});

test('TextField_leftOrEscaped_commitsOrRestores', async () => {
    const ui = await openPage(session, { arrange: editor });
    const field = ui.page.getByRole('textbox', { name: 'Title' });
    await field.fill('Nothing');
    await field.press('Escape');
    assert.equal(await field.inputValue(), 'Work');
    await field.fill('Opera');
    await field.blur();
    await until(() => lastCommand(ui.phone, 'set'), 'the text was sent');
    assert.deepEqual(ui.phone.commands.filter((command) => command.do === 'set').map((command) => command.value), ['Opera']);
    await ui.close();
});

test('TextField_properties_reachTheKeyboard', async () => {
    const ui = await openPage(session, { arrange: editor });
    const field = ui.page.getByRole('textbox', { name: 'Title' });
    assert.equal(await field.getAttribute('placeholder'), 'Required');
    assert.equal(await field.getAttribute('autocapitalize'), 'words');
    assert.equal(await field.getAttribute('enterkeyhint'), 'done');
    await ui.close();
});

test('Rows_rebuilt_keepTheirElements', async () => {
    const ui = await openPage(session);
    const control = ui.page.getByRole('switch');
    const mark = await control.evaluateHandle((element) => element);
    await control.click();
    await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 2);
    assert.equal(await control.evaluate((element, old) => element === old, mark), true);
    await ui.close();
});

test('Rows_changedUnderReducedMotion_doNotMove', async () => {
    const ui = await openPage(session);
    await ui.page.evaluate(() => {
        globalThis.begun = 0;
        const animate = Element.prototype.animate;
        Element.prototype.animate = function (...args) { globalThis.begun += 1; return animate.apply(this, args); };
    });
    await ui.page.getByRole('switch').click();
    await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 2);
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await ui.page.getByRole('heading', { level: 1, name: 'Miscellaneous' }).waitFor();
    assert.equal(await ui.page.evaluate(() => globalThis.begun), 0);
    await ui.close();
});

test('Row_chosenByTapping_showsItsCheckmark', async () => {
    const ui = await openPage(session, { arrange: editor });
    const row = ui.page.locator('.row', { hasText: 'Team and everything' });
    assert.equal(await row.locator('.check').count(), 0);
    await row.getByRole('button').click();
    await row.getByText('Selected').waitFor({ state: 'attached' });
    await ui.close();
});

test('Switch_onTint_followsTheState', async () => {
    const ui = await openPage(session, { arrange: editor });
    const image = () => ui.page.getByRole('switch', { name: 'Enable' }).evaluate((element) => getComputedStyle(element).backgroundImage);
    // The image itself comes a moment after the switch.
    await ui.page.waitForFunction(() => getComputedStyle(document.querySelector('.switch:checked')).backgroundImage.includes('url("blob:'));
    assert.match(await image(), /url\("blob:/);
    for (const row of ui.phone.screen.rows()) if (row.kind === 6) row.onTint = '#ffffff99';
    ui.phone.perform({ do: 'dark', on: true });
    ui.server.push();
    await ui.page.waitForFunction(() => document.documentElement.dataset.theme === 'dark');
    assert.equal(await image(), 'none');
    await settled(ui.page);
    assert.match(await ui.page.getByRole('switch', { name: 'Enable' }).evaluate((element) => getComputedStyle(element).backgroundColor), /rgba\(255, 255, 255, 0\.6\)/);
    await ui.close();
});
