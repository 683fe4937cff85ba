// SPDX-License-Identifier: MIT
// What the user types is kept, sent, or shown as lost.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, finishAnimations, lastCommand, openPage, settled, startBrowser, until } from './harness.mjs';
import { row } from './mock-rows.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const editor = (phone) => phone.show(phone.root(), phone.editor('Work', false));
const field = (page) => page.getByRole('textbox', { name: 'Title' });
const notice = (page) => page.locator('.unsaved');
const heading = (page, name) => page.getByRole('heading', { level: 1, name });
const sets = (phone) => phone.commands.filter((command) => command.do === 'set');

/** Changes what the screen's rows are, as the application does it by itself. */
function rebuild(ui, change) {
    const { screen } = ui.phone;
    const rows = screen.rows().map((each) => ({ ...each }));
    const changed = change(rows) ?? rows;
    screen.rows = () => changed;
    ui.phone.changed();
    ui.server.push();
}

async function says(page, text) {
    await page.waitForFunction((wanted) => document.querySelector('.unsaved').textContent.includes(wanted), text);
}

test('Typed_whileItsRowIsRebuilt_staysInItsField', async () => {
    const ui = await openPage(session, { arrange: editor });
    await field(ui.page).fill('Thea');
    const mark = await field(ui.page).evaluateHandle((element) => element);
    // Another title and other words: still the same row.
    rebuild(ui, (rows) => { Object.assign(rows[1], { key: 'new', value: 'Office', text: 'Title', detailText: 'x' }); rows.splice(3, 0, row(7, 'Between')); });
    await ui.page.getByText('Between').waitFor();
    assert.equal(await field(ui.page).evaluate((element, old) => element === old && element === document.activeElement, mark), true);
    await ui.page.keyboard.press('End');
    await ui.page.keyboard.type('tre');
    await ui.page.keyboard.press('Enter');
    await until(() => lastCommand(ui.phone, 'set'), 'the text was sent');
    assert.equal(lastCommand(ui.phone, 'set').value, 'Theatre');
    assert.equal(await notice(ui.page).textContent(), '');
    await ui.close();
});

for (const [language, words] of [['en', '“Theatre” could not be saved.'], ['de', '„Theatre“ konnte nicht gesichert werden.'], ['ar', 'تعذر حفظ']]) {
    test(`Typed_whereItsRowGoes_in_${language}_isShownAsNotSaved`, async () => {
        const ui = await openPage(session, { arrange: (phone) => { editor(phone); phone.device = { ...phone.device, language, rightToLeft: language === 'ar' }; } });
        await field(ui.page).fill('Theatre');
        rebuild(ui, (rows) => rows.filter((each) => each.kind !== 8));
        await says(ui.page, words);
        assert.match(await notice(ui.page).textContent(), /Theatre/);
        assert.equal(sets(ui.phone).length, 0, 'nothing is sent to a row that is not there');
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await notice(ui.page).getByRole('button').click();
        assert.equal(await notice(ui.page).textContent(), '');
        assert.equal(await ui.page.evaluate(() => document.activeElement.localName), 'h1', 'the keyboard goes on from the title');
        await ui.close();
    });
}

test('Typed_whenAnotherGoesBack_isShownAsNotSaved', async () => {
    const ui = await openPage(session, { arrange: editor });
    await field(ui.page).fill('Theatre');
    ui.phone.perform({ do: 'back' });
    ui.server.push();
    await heading(ui.page, 'Sample Go').waitFor();
    await says(ui.page, '“Theatre” could not be saved.');
    assert.equal(sets(ui.phone).length, 0);
    await ui.close();
});

test('Typed_onASheetThatAnotherCloses_isShownAsNotSaved', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.perform({ do: 'bar', side: 'right', item: 0 }) });
    await field(ui.page).fill('Theatre');
    ui.phone.perform({ do: 'bar', side: 'left', item: 0 });
    ui.server.push();
    await says(ui.page, '“Theatre” could not be saved.');
    await ui.close();
});

test('Typed_sentToAScreenThatAnotherHasLeft_isShownAsNotSaved', async () => {
    const ui = await openPage(session, { arrange: editor });
    await field(ui.page).fill('Theatre');
    ui.phone.perform({ do: 'back' });
    await ui.page.keyboard.press('Enter');
    await heading(ui.page, 'Sample Go').waitFor();
    await says(ui.page, '“Theatre” could not be saved.');
    assert.equal(ui.phone.stale, true);
    assert.equal(await notice(ui.page).locator('.unsaved-loss').count(), 1);
    await ui.close();
});

test('Typed_beneathAScreenThatAnotherOpens_isThereOnTheWayBack', async () => {
    const ui = await openPage(session, { arrange: editor, reducedMotion: 'no-preference' });
    await settled(ui.page);
    await field(ui.page).fill('Thea');
    ui.phone.push(ui.phone.plain());
    ui.server.push();
    await heading(ui.page, 'Miscellaneous').waitFor();
    await finishAnimations(ui.page);
    ui.phone.perform({ do: 'back' });
    ui.server.push();
    await heading(ui.page, 'Work').waitFor();
    await finishAnimations(ui.page);
    assert.equal(await field(ui.page).inputValue(), 'Thea');
    await field(ui.page).press('Enter');
    await until(() => lastCommand(ui.phone, 'set'), 'the text was sent');
    assert.equal(lastCommand(ui.phone, 'set').value, 'Thea');
    assert.equal(await notice(ui.page).textContent(), '');
    await ui.close();
});

test('Typed_whenTheUserPressesOnWithoutLeavingTheField_isSentFirst', async () => {
    const ui = await openPage(session, { arrange: editor });
    await field(ui.page).fill('Theatre');
    // As on a touch screen whose buttons take no focus.
    await ui.page.locator('.back').evaluate((element) => element.click());
    await heading(ui.page, 'Sample Go').waitFor();
    const done = ui.phone.commands.filter((command) => command.do === 'set' || command.do === 'back').map((command) => command.value ?? command.do);
    assert.deepEqual(done, ['Theatre', 'back']);
    assert.equal(await notice(ui.page).textContent(), '');
    await ui.close();
});

test('Typed_andTakenBackWhileItIsOnItsWay_isSentAgain', async () => {
    const ui = await openPage(session, { arrange: editor });
    ui.server.hold = true;
    for (const text of ['Theatre', 'Work']) {
        await field(ui.page).fill(text);
        await field(ui.page).press('Enter');
    }
    await until(() => sets(ui.phone).length === 2, 'both were sent');
    assert.deepEqual(sets(ui.phone).map((command) => command.value), ['Theatre', 'Work']);
    await ui.close();
});

test('Field_leftWithoutTyping_showsWhatHasComeMeanwhile', async () => {
    const ui = await openPage(session, { arrange: editor });
    await field(ui.page).focus();
    rebuild(ui, (rows) => { rows[1].value = 'Office'; rows.splice(3, 0, row(7, 'Between')); });
    await ui.page.getByText('Between').waitFor();
    assert.equal(await field(ui.page).inputValue(), 'Work');
    await field(ui.page).press('Enter');
    assert.equal(await field(ui.page).inputValue(), 'Office');
    assert.equal(sets(ui.phone).length, 0);
    await ui.close();
});
