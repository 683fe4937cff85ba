// SPDX-License-Identifier: MIT
// The browser's Back and Forward, which are the phone's as far as it has a way back.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { lastCommand, openPage, settled, startBrowser, tryAgain, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const heading = (page, name) => page.getByRole('heading', { level: 1, name });
const done = (phone, name) => phone.commands.filter((command) => command.do === name).length;
const depth = (page, wanted) => page.waitForFunction((number) => history.state?.depth === number, wanted);
/** A Back that stays on the page; what it does comes later. */
const back = (page) => page.evaluate(() => history.back());
/** A Back that leads to a screen, and its entry. */
async function backTo(page, name, number) {
    await back(page);
    await heading(page, name).waitFor();
    await depth(page, number);
}
const deep = (phone) => phone.show(phone.root(), phone.plain(), phone.eventStatus());

test('Back_ofTheBrowser_goesBackOneScreenAndLeavesFromTheFirst', async () => {
    const ui = await openPage(session);
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await heading(ui.page, 'Miscellaneous').waitFor();
    await ui.page.getByRole('button', { name: 'Event Status' }).click();
    await heading(ui.page, 'Event Status').waitFor();
    await depth(ui.page, 2);
    await backTo(ui.page, 'Miscellaneous', 1);
    assert.equal(done(ui.phone, 'back'), 1);
    assert.equal(ui.page.url(), ui.server.address, 'no entry shows a secret');
    await backTo(ui.page, 'Sample Go', 0);
    await ui.page.goBack();
    assert.equal(ui.page.url(), 'about:blank');
    assert.equal(done(ui.phone, 'back'), 2);
    await ui.close();
});

test('Back_onAPageOpenedDeepInThePhone_goesBackOneScreen', async () => {
    const ui = await openPage(session, { arrange: deep });
    await depth(ui.page, 2);
    await backTo(ui.page, 'Miscellaneous', 1);
    await ui.page.reload();
    await heading(ui.page, 'Miscellaneous').waitFor();
    await depth(ui.page, 1);
    await back(ui.page);
    await heading(ui.page, 'Sample Go').waitFor();
    assert.equal(done(ui.phone, 'back'), 2);
    await ui.close();
});

test('Back_twiceAtOnce_goesBackTwoScreensOneAfterTheOther', async () => {
    const ui = await openPage(session, { arrange: deep });
    await depth(ui.page, 2);
    const entries = await ui.page.evaluate(() => history.length);
    ui.server.hold = true;
    await back(ui.page);
    await until(() => done(ui.phone, 'back') === 1, 'the first was sent');
    await back(ui.page);
    await depth(ui.page, 0);
    assert.equal(done(ui.phone, 'back'), 1, 'the second waits for the first');
    ui.server.letGo();
    await heading(ui.page, 'Sample Go').waitFor();
    assert.equal(done(ui.phone, 'back'), 2);
    await depth(ui.page, 0);
    assert.equal(await ui.page.evaluate(() => history.length), entries, 'no entries were made on the way');
    await ui.close();
});

test('Back_overTwoEntries_goesBackTwoScreens', async () => {
    const ui = await openPage(session, { arrange: deep });
    await depth(ui.page, 2);
    await ui.page.evaluate(() => history.go(-2));
    await heading(ui.page, 'Sample Go').waitFor();
    assert.equal(done(ui.phone, 'back'), 2);
    await depth(ui.page, 0);
    await ui.close();
});

test('BackButton_ofTheScreen_takesItsEntryAwayToo', async () => {
    const ui = await openPage(session, { arrange: deep });
    await depth(ui.page, 2);
    await ui.page.locator('.back').click();
    await heading(ui.page, 'Miscellaneous').waitFor();
    await depth(ui.page, 1);
    await back(ui.page);
    await heading(ui.page, 'Sample Go').waitFor();
    assert.equal(done(ui.phone, 'back'), 2);
    await ui.close();
});

test('Back_whileASheetIsOpen_isItsCancel', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.plain()) });
    await ui.page.getByRole('button', { name: 'Reset Profiles' }).click();
    await ui.page.getByRole('button', { name: 'OK' }).waitFor();
    await depth(ui.page, 2);
    await back(ui.page);
    await ui.page.locator('.layer').waitFor({ state: 'detached' });
    assert.equal(lastCommand(ui.phone, 'choose').action, 'Cancel');
    await depth(ui.page, 1);
    assert.equal(done(ui.phone, 'back'), 0);
    await ui.close();
});

test('Back_onAForm_isItsCancel', async () => {
    const ui = await openPage(session);
    await ui.page.getByRole('button', { name: 'Add' }).click();
    await heading(ui.page, 'New Profile').waitFor();
    await depth(ui.page, 1);
    await back(ui.page);
    await ui.page.waitForFunction(() => document.querySelectorAll('.navigator').length === 1);
    assert.equal(lastCommand(ui.phone, 'bar').side, 'left');
    await depth(ui.page, 0);
    await ui.close();
});

test('Back_onAMail_asksAndThenTakesTheQuestionBack', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.plain()) });
    await ui.page.getByRole('button', { name: 'Report Problem' }).click();
    await ui.page.getByRole('dialog', { name: 'Problem' }).waitFor();
    await depth(ui.page, 2);
    await back(ui.page);
    const question = ui.page.getByRole('alertdialog');
    await question.waitFor();
    await depth(ui.page, 2);
    await back(ui.page);
    await question.waitFor({ state: 'detached' });
    await depth(ui.page, 2);
    assert.equal(done(ui.phone, 'compose'), 0);
    await ui.close();
});

test('Back_whereThereIsNoWayBack_changesNothingAndWorksAfterwards', async () => {
    const ui = await openPage(session, { arrange: (phone) => { phone.show(phone.root(), phone.plain()); phone.activity('Please wait'); } });
    await ui.page.getByText('Please wait').waitFor();
    await depth(ui.page, 2);
    await ui.page.evaluate(() => {
        globalThis.visited = [];
        window.addEventListener('popstate', () => globalThis.visited.push(history.state.depth));
    });
    await back(ui.page);
    // The browser goes back and the page forth again.
    await ui.page.waitForFunction(() => globalThis.visited.join() === '1,2');
    assert.equal(ui.phone.commands.filter((command) => command.do !== 'state').length, 0);
    ui.phone.presented = null;
    ui.phone.changed();
    ui.server.push();
    await depth(ui.page, 1);
    await back(ui.page);
    await heading(ui.page, 'Sample Go').waitFor();
    await ui.close();
});

test('Back_thatThePhoneRefuses_leavesTheHistoryAsItWas', async () => {
    const ui = await openPage(session, { arrange: deep });
    await depth(ui.page, 2);
    ui.phone.refuse.add('back');
    await back(ui.page);
    await until(() => done(ui.phone, 'back') === 1, 'it was sent');
    await depth(ui.page, 2);
    await heading(ui.page, 'Event Status').waitFor();
    ui.phone.refuse.clear();
    await back(ui.page);
    await heading(ui.page, 'Miscellaneous').waitFor();
    await ui.close();
});

test('Forward_ofTheBrowser_comesBackToWhatIsShown', async () => {
    const ui = await openPage(session, { arrange: deep });
    await depth(ui.page, 2);
    await backTo(ui.page, 'Miscellaneous', 1);
    const moved = ui.page.evaluate(() => new Promise((resolve) => { window.addEventListener('popstate', () => { if (history.state.depth === 1) resolve(); }); }));
    await ui.page.evaluate(() => history.forward());
    await moved;
    assert.equal(await ui.page.title(), 'Miscellaneous');
    await back(ui.page);
    await heading(ui.page, 'Sample Go').waitFor();
    assert.equal(done(ui.phone, 'back'), 2);
    await ui.close();
});

test('Back_whileAnotherOpensAndClosesScreens_staysInStep', async () => {
    const ui = await openPage(session);
    for (let round = 0; round < 3; round += 1) {
        ui.phone.push(ui.phone.plain());
        ui.server.push();
        await heading(ui.page, 'Miscellaneous').waitFor();
        ui.phone.perform({ do: 'back' });
        ui.server.push();
        await heading(ui.page, 'Sample Go').waitFor();
    }
    ui.phone.push(ui.phone.plain());
    ui.server.push();
    await heading(ui.page, 'Miscellaneous').waitFor();
    await depth(ui.page, 1);
    const before = done(ui.phone, 'back');
    await backTo(ui.page, 'Sample Go', 0);
    assert.equal(done(ui.phone, 'back'), before + 1);
    await ui.close();
});

test('Screens_closedAndOpenedByAnotherAtOnce_areNotTakenForTheUsersBack', async () => {
    const ui = await openPage(session, { arrange: deep });
    await depth(ui.page, 2);
    for (let round = 0; round < 5; round += 1) {
        // Both come before the browser has gone back for the first.
        ui.phone.perform({ do: 'back' });
        ui.server.push();
        ui.phone.push(ui.phone.eventStatus());
        ui.server.push();
        ui.phone.alert(`Round ${round}`, null);
        ui.server.push();
        await ui.page.getByRole('alertdialog', { name: `Round ${round}` }).waitFor();
        await depth(ui.page, 3);
        ui.phone.presented = null;
        ui.phone.changed();
        ui.server.push();
        await depth(ui.page, 2);
    }
    assert.equal(ui.phone.commands.filter((command) => command.id !== undefined && command.do !== 'state').length, 0, 'the page has asked for nothing');
    assert.equal(ui.phone.screens.length, 3);
    await ui.close();
});

test('Back_whileTheConnectionIsLost_isTheBrowsersOwn', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.plain()) });
    await depth(ui.page, 1);
    ui.server.leave();
    await ui.page.getByRole('button', { name: 'Try Again' }).waitFor();
    await back(ui.page);
    await depth(ui.page, 0);
    ui.server.away = false;
    await tryAgain(ui.page);
    await depth(ui.page, 1);
    await settled(ui.page);
    assert.equal(done(ui.phone, 'back'), 0, 'nobody has gone back on the phone');
    assert.equal(await ui.page.title(), 'Miscellaneous');
    await ui.close();
});

test('Back_withTextInAField_sendsItFirst', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.editor('Work', false)) });
    await depth(ui.page, 1);
    await ui.page.getByRole('textbox', { name: 'Title' }).fill('Theatre');
    await back(ui.page);
    await heading(ui.page, 'Sample Go').waitFor();
    assert.deepEqual(ui.phone.commands.filter((command) => command.do === 'set' || command.do === 'back').map((command) => command.value ?? command.do), ['Theatre', 'back']);
    await ui.close();
});
