// SPDX-License-Identifier: MIT
// What the rows of an editor look like, and how its text is kept.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { lastCommand, openPage, phoneSize, resize, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const editor = (phone) => phone.show(phone.root(), phone.editor('Work', false));
const row = (phone, name) => phone.screen.rows().find((each) => each.name === name);
const field = (page) => page.getByRole('textbox', { name: 'Title' });
const alertPushed = async (ui) => {
    ui.phone.alert('Error', 'The profile could not be saved.');
    ui.server.push();
    await ui.page.getByRole('alertdialog').waitFor();
};

/** Where the words of a label are drawn within its row. */
async function place(page, text) {
    const cell = await page.locator('.cell.labelled').boundingBox();
    const box = await page.locator('.own-text', { hasText: text }).boundingBox();
    const round = (value) => Math.round(value);
    return { middle: round(box.y + box.height / 2 - cell.y), fromLeft: round(box.x - cell.x), fromRight: round(cell.x + cell.width - box.x - box.width) };
}

test('Labels_atAnyWidth_keepTheirDistancesFromTheirEdges', async () => {
    const ui = await openPage(session, { arrange: editor });
    for (const width of [phoneSize.width, 320, 1280]) {
        await resize(ui.page, { width, height: 844 });
        for (const [text, middle] of [['From', 20], ['To', 44]]) {
            const at = await place(ui.page, text);
            assert.deepEqual([at.middle, at.fromLeft], [middle, 16], `${text} at ${width}`);
        }
        for (const [text, middle] of [['9:00 AM', 20], ['5:00 PM', 44]]) {
            const at = await place(ui.page, text);
            assert.deepEqual([at.middle, at.fromRight], [middle, 35], `${text} at ${width}`);
        }
    }
    assert.equal((await ui.page.locator('.cell.labelled').boundingBox()).height, 64);
    await ui.close();
});

test('Labels_fromRightToLeft_areMirrored', async () => {
    const ui = await openPage(session, { arrange: (phone) => { editor(phone); phone.device = { ...phone.device, rightToLeft: true, language: 'ar' }; } });
    assert.equal((await place(ui.page, 'From')).fromRight, 16);
    assert.equal((await place(ui.page, '9:00 AM')).fromLeft, 35);
    await ui.close();
});

test('Labels_centred_standInTheMiddleOfTheirFrame', async () => {
    const arrange = (phone) => { editor(phone); row(phone, 'Active Hours').labels[0] = { tag: 21, text: 'I', frame: [16, 10, 150, 20], colour: null, alignment: 1 }; };
    const ui = await openPage(session, { arrange });
    const at = await ui.page.locator('.own-text').first().evaluate((element) => {
        const [text, cell] = [element.getBoundingClientRect(), element.closest('.cell').getBoundingClientRect()];
        return text.x + text.width / 2 - cell.x;
    });
    assert.ok(Math.abs(at - 91) <= 1, `the middle is at ${at}`);
    await ui.close();
});

test('Labels_blackInTheDark_areWhiteAndColoursStay', async () => {
    const ui = await openPage(session, { arrange: editor });
    const colour = (text) => ui.page.locator('.own-label', { hasText: text }).evaluate((element) => getComputedStyle(element).color);
    assert.equal(await colour('From'), 'rgb(0, 0, 0)');
    ui.phone.perform({ do: 'dark', on: true });
    ui.server.push();
    await ui.page.waitForFunction(() => document.documentElement.dataset.theme === 'dark');
    assert.equal(await colour('From'), 'rgb(255, 255, 255)');
    const [red, green, blue] = (await colour('9:00 AM')).match(/\d+/g).map(Number);
    assert.ok(blue > 200 && blue > green && green > red, 'the time is still blue');
    await ui.close();
});

test('Labels_together_areTheNameOfTheirRow', async () => {
    const ui = await openPage(session, { arrange: editor });
    await ui.page.getByRole('button', { name: 'From 9:00 AM To 5:00 PM', exact: true }).waitFor();
    await ui.close();
});

test('Labels_withoutRoomBesideEachOther_takeALineEach', async () => {
    const ui = await openPage(session, { arrange: editor, viewport: { width: 195, height: 422 } });
    row(ui.phone, 'Active Hours').labels[1].text = '10:30 PM';
    ui.phone.changed();
    ui.server.push();
    await ui.page.getByText('10:30 PM').waitFor();
    const boxes = await ui.page.locator('.own-text').evaluateAll((each) => each.map((element) => { const { top, bottom } = element.getBoundingClientRect(); return [top, bottom]; }));
    for (let at = 1; at < boxes.length; at += 1) assert.ok(boxes[at][0] >= boxes[at - 1][1] - 1, 'a line each');
    await ui.close();
});

test('Slider_withItsTitleAbove_isSeventyHighBetweenItsImages', async () => {
    const ui = await openPage(session, { arrange: editor });
    const item = ui.page.locator('.row', { hasText: 'Playback Volume' });
    const box = await item.boundingBox();
    const [title, control] = [await item.locator('.title').boundingBox(), await item.getByRole('slider').boundingBox()];
    assert.equal(box.height, 70);
    assert.ok(Math.abs(title.y + title.height / 2 - box.y - 18) <= 1, 'the title stands in the upper half');
    assert.ok(Math.abs(control.y + control.height / 2 - box.y - 50) <= 1, 'the slider stands in the lower half');
    assert.equal(control.height, 44);
    await ui.page.waitForFunction(() => [...document.querySelectorAll('.stencil')].every((each) => getComputedStyle(each).maskImage.startsWith('url("blob:')));
    const images = await item.locator('.stencil').evaluateAll((each) => each.map((element) => [element.dataset.image, element.getBoundingClientRect().x, getComputedStyle(element).maskImage]));
    assert.deepEqual(images.map(([name]) => name), ['SpeakerMute@2x', 'SpeakerMax@2x']);
    assert.notEqual(images[0][2], images[1][2]);
    assert.ok(images[0][1] < control.x && images[1][1] >= control.x + control.width);
    await ui.close();
});

test('Slider_withALongTitle_wrapsItAboveTheSlider', async () => {
    const title = 'The loudness of everything that is played while this profile is in force';
    const ui = await openPage(session, { arrange: (phone) => { editor(phone); Object.assign(row(phone, 'Playback Volume'), { name: title, text: title }); }, viewport: { width: 320, height: 640 } });
    const item = ui.page.locator('.row', { hasText: 'The loudness' });
    const [words, control, box] = [await item.locator('.title').boundingBox(), await item.getByRole('slider').boundingBox(), await item.boundingBox()];
    assert.ok(words.height > 40, 'it wraps');
    // The slider's touch area begins a little above its track.
    assert.ok(control.y + control.height / 2 - 14 >= words.y + words.height, 'the thumb does not cover it');
    assert.ok(control.y + control.height / 2 + 14 <= box.y + box.height, 'the row has grown with it');
    await ui.close();
});

test('Slider_movedByKeys_sendsItsValue', async () => {
    const ui = await openPage(session, { arrange: editor });
    await ui.page.getByRole('slider', { name: 'Ringer Volume' }).press('End');
    await until(() => lastCommand(ui.phone, 'set'), 'the value was sent');
    assert.equal(lastCommand(ui.phone, 'set').value, 1);
    await ui.close();
});

test('TextField_savingFailed_keepsWhatWasTypedWithoutAFlicker', async () => {
    const ui = await openPage(session, { arrange: editor });
    await field(ui.page).evaluate((element) => {
        const inherited = Object.getOwnPropertyDescriptor(HTMLInputElement.prototype, 'value');
        globalThis.written = [];
        Object.defineProperty(element, 'value', { get() { return inherited.get.call(this); }, set(value) { globalThis.written.push(value); inherited.set.call(this, value); } });
    });
    ui.server.hold = true;
    await field(ui.page).focus();
    await ui.page.keyboard.press('End');
    await ui.page.keyboard.type(' at home');
    await ui.page.keyboard.press('Enter');
    await until(() => ui.server.held.length > 0, 'the text was sent');
    // The alert is there before the answer, in a state that still has the older text.
    row(ui.phone, 'Title').value = 'Work';
    await alertPushed(ui);
    assert.equal(await field(ui.page).inputValue(), 'Work at home');
    row(ui.phone, 'Title').value = 'Work at home';
    ui.phone.changed();
    ui.server.hold = false;
    for (const answer of ui.server.held) answer();
    ui.server.push();
    await ui.page.getByRole('button', { name: 'Close' }).click();
    await ui.page.waitForFunction(() => !document.querySelector('.stage').inert);
    assert.equal(await field(ui.page).inputValue(), 'Work at home');
    assert.deepEqual((await ui.page.evaluate(() => globalThis.written)).filter((value) => value !== 'Work at home'), []);
    await ui.close();
});

test('TextField_alertWhileTyping_keepsTheTextAndTakesTheFocusBack', async () => {
    const ui = await openPage(session, { arrange: editor });
    await field(ui.page).fill('Thea');
    await alertPushed(ui);
    await ui.page.getByRole('button', { name: 'Close' }).click();
    await ui.page.waitForFunction(() => document.activeElement?.getAttribute('aria-label') === 'Title');
    assert.equal(await field(ui.page).inputValue(), 'Thea');
    assert.equal(lastCommand(ui.phone, 'set'), undefined);
    await ui.page.keyboard.press('End');
    await ui.page.keyboard.type('tre');
    await ui.page.keyboard.press('Enter');
    await until(() => lastCommand(ui.phone, 'set'), 'the text was sent');
    assert.equal(lastCommand(ui.phone, 'set').value, 'Theatre');
    await ui.close();
});

test('TextField_emptied_showsItsPlaceholderAndIsSaved', async () => {
    const ui = await openPage(session, { arrange: editor });
    await field(ui.page).fill('');
    assert.equal(await field(ui.page).evaluate((element) => element.matches(':placeholder-shown')), true);
    await ui.page.keyboard.press('Tab');
    await until(() => lastCommand(ui.phone, 'set'), 'the text was sent');
    assert.equal(lastCommand(ui.phone, 'set').value, '');
    await ui.close();
});

const sheet = (phone) => phone.perform({ do: 'bar', side: 'right', item: 0 });

for (const [language, cancel, save] of [['en', 'Cancel', 'Save'], ['de', 'Abbrechen', 'Sichern'], ['fr', 'Annuler', 'Enregistrer'], ['es', 'Cancelar', 'Guardar'], ['ja', 'キャンセル', '保存'], ['zh-Hans', '取消', '存储'], ['ar', 'إلغاء', 'حفظ']]) {
    test(`Sheet_in_${language}_hasCancelAndABoldSave`, async () => {
        const ui = await openPage(session, { arrange: (phone) => { sheet(phone); phone.device = { ...phone.device, language, rightToLeft: language === 'ar' }; } });
        const weight = (name) => ui.page.getByRole('button', { name, exact: true }).evaluate((element) => getComputedStyle(element).fontWeight);
        assert.equal(await weight(cancel), '400');
        assert.equal(await weight(save), '600');
        await ui.close();
    });
}

test('Sheet_savedInVain_staysWithItsSaveButton', async () => {
    const ui = await openPage(session, { arrange: sheet });
    await ui.page.getByRole('button', { name: 'Save' }).click();
    await ui.page.getByRole('alertdialog').waitFor();
    // This Escape closes the alert and leaves the sheet alone.
    await ui.page.keyboard.press('Escape');
    await ui.page.waitForFunction(() => !document.querySelector('.stage').inert);
    assert.equal(lastCommand(ui.phone, 'bar').side, 'right');
    assert.equal(await ui.page.getByRole('button', { name: 'Save' }).evaluate((element) => element === document.activeElement), true);
    await ui.close();
});

test('Sheet_escaped_isCancelled', async () => {
    const ui = await openPage(session, { arrange: sheet });
    await ui.page.getByRole('switch', { name: 'Vibrate' }).focus();
    await ui.page.keyboard.press('Escape');
    await ui.page.getByRole('switch', { name: 'Enabled' }).waitFor();
    assert.deepEqual([lastCommand(ui.phone, 'bar').side, lastCommand(ui.phone, 'bar').item], ['left', 0]);
    await ui.close();
});

test('Sheet_escapedInATextField_onlyPutsTheTextBack', async () => {
    const ui = await openPage(session, { arrange: sheet });
    const sent = ui.phone.commands.filter((command) => command.do === 'bar').length;
    await field(ui.page).fill('Nothing');
    await ui.page.keyboard.press('Escape');
    assert.equal(await field(ui.page).inputValue(), 'New Profile');
    await ui.page.getByRole('switch', { name: 'Vibrate' }).click();
    await until(() => lastCommand(ui.phone, 'set')?.value === true, 'the sheet still answers');
    assert.equal(ui.phone.commands.filter((command) => command.do === 'bar').length, sent);
    await ui.close();
});

test('Escape_whereNothingCanBeCancelled_pressesNothing', async () => {
    const ui = await openPage(session, { arrange: sheet });
    ui.phone.screen.bar = () => ({ ...ui.phone.editor('Work', true).bar(), left: [] });
    ui.phone.changed();
    ui.server.push();
    await ui.page.getByRole('button', { name: 'Cancel' }).waitFor({ state: 'detached' });
    await ui.page.keyboard.press('Escape');
    ui.phone.show(ui.phone.root(), ui.phone.editor('Work', false));
    ui.server.push();
    await ui.page.locator('.bar-button.back').waitFor();
    await ui.page.keyboard.press('Escape');
    await ui.page.getByRole('switch', { name: 'Vibrate' }).click();
    await until(() => lastCommand(ui.phone, 'set'), 'the screen still answers');
    assert.equal(ui.phone.commands.filter((command) => command.do === 'bar').length, 1);
    assert.equal(lastCommand(ui.phone, 'back'), undefined);
    await ui.close();
});
