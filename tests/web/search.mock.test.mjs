// SPDX-License-Identifier: MIT
// The search field above a long list.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, openPage, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const long = (count) => (phone) => phone.show(phone.root(), phone.long(count));
const field = (page) => page.getByRole('searchbox', { name: 'Search' });
const row = (page, number) => page.getByRole('button', { name: `Row ${number}`, exact: true });
const titles = (page) => page.locator('.list .row .title').allTextContents();

test('SearchField_standsAboveListsOfMoreThan30Rows', async () => {
    const ui = await openPage(session, { arrange: long(30) });
    await row(ui.page, 1).waitFor();
    assert.equal(await field(ui.page).count(), 0);
    ui.phone.show(ui.phone.root(), ui.phone.long(31));
    ui.server.push();
    await field(ui.page).waitFor();
    assert.equal(ui.phone.state().screen.count, 31);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

test('Search_ofThousandsOfRows_listsThoseFoundAndAsksForNoOther', async () => {
    const ui = await openPage(session, { arrange: long(10_000) });
    await row(ui.page, 1).waitFor();
    const asked = ui.phone.commands.length;
    await field(ui.page).fill('ROW 777');
    await row(ui.page, 7779).waitFor();
    await ui.page.waitForFunction(() => !document.querySelector('.list [aria-busy]'));
    assert.deepEqual(await titles(ui.page), ['Row 777', ...Array.from({ length: 10 }, (_unused, digit) => `Row ${7770 + digit}`)]);
    const found = ui.phone.commands.slice(asked).filter((command) => command.do === 'find');
    assert.ok(found.length > 0 && found.every((command) => command.count === 0));
    const rows = ui.phone.commands.slice(asked).filter((command) => command.do === 'state').reduce((sum, command) => sum + command.count, 0);
    assert.ok(rows < 30, `${rows} rows were asked for`);
    assert.equal(await ui.page.locator('.list li').last().getAttribute('aria-setsize'), '11');
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

test('Search_rowTapped_actsOnThatRowOfTheScreenThatWasSearched', async () => {
    const ui = await openPage(session, { arrange: long(10_000) });
    const screen = ui.phone.number(ui.phone.screen);
    const { key } = ui.phone.rows()[5005];
    await field(ui.page).fill('row 5005');
    await row(ui.page, 5005).click();
    await until(() => ui.phone.commands.some((command) => command.do === 'tap'), 'the row is tapped');
    const tap = ui.phone.commands.find((command) => command.do === 'tap');
    assert.deepEqual([tap.row, tap.key, tap.screen], [5005, key, screen]);
    for (const find of ui.phone.commands.filter((command) => command.do === 'find')) assert.equal(find.screen, screen);
    await ui.close();
});

test('Search_givenUp_showsTheListWhereItWas', async () => {
    const ui = await openPage(session, { arrange: long(10_000) });
    await row(ui.page, 1).waitFor();
    await ui.page.locator('.page').evaluate((element) => { element.scrollTop = 220_000; });
    await row(ui.page, 5005).waitFor();
    const before = Math.round((await row(ui.page, 5005).boundingBox()).y);
    await field(ui.page).fill('row 17');
    await row(ui.page, 17).waitFor();
    await field(ui.page).press('Escape');
    await row(ui.page, 5005).waitFor();
    assert.equal(await field(ui.page).inputValue(), '');
    assert.equal(Math.round((await row(ui.page, 5005).boundingBox()).y), before);
    await field(ui.page).fill('row 18');
    await row(ui.page, 18).waitFor();
    await ui.page.getByRole('button', { name: 'Clear Text' }).click();
    await row(ui.page, 5005).waitFor();
    assert.equal(await field(ui.page).evaluate((element) => element === document.activeElement), true);
    await ui.close();
});

test('Search_withoutResult_saysSo', async () => {
    const ui = await openPage(session, { arrange: long(100) });
    await field(ui.page).fill('nothing has this name');
    await ui.page.locator('.no-results', { hasText: 'No Results' }).waitFor();
    assert.equal(await ui.page.locator('[aria-live]').textContent(), 'No Results');
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

test('Search_typedFasterThanItIsAnswered_endsWithTheLastText', async () => {
    const ui = await openPage(session, { arrange: long(10_000) });
    await row(ui.page, 1).waitFor();
    ui.server.hold = true;
    await field(ui.page).pressSequentially('row 4242');
    await until(() => ui.server.held.length > 0, 'something is asked');
    assert.equal(ui.phone.commands.filter((command) => command.do === 'find').length, 1);
    ui.server.hold = false;
    for (const answer of ui.server.held.splice(0)) answer();
    await row(ui.page, 4242).waitFor();
    await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 1);
    assert.equal(ui.phone.commands.filter((command) => command.do === 'find').length, 2);
    await ui.close();
});

test('Search_rowsChangedByOthers_isAskedAgain', async () => {
    const ui = await openPage(session, { arrange: long(100) });
    await field(ui.page).fill('row 42');
    await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 1);
    const rows = ui.phone.screen.rows();
    rows.splice(1, 0, { ...rows[3], key: 'other', name: 'Row 420', text: 'Row 420' });
    ui.phone.screen.rows = () => rows;
    ui.phone.changed();
    ui.server.push();
    await row(ui.page, 420).waitFor();
    assert.deepEqual(await titles(ui.page), ['Row 420', 'Row 42']);
    await ui.close();
});

test('Search_resultsByTheThousand_areScrolledThrough', async () => {
    const ui = await openPage(session, { arrange: long(10_000) });
    await field(ui.page).fill('row 1');
    await ui.page.waitForFunction(() => document.querySelector('.list li[aria-setsize="1111"]'));
    assert.ok(await ui.page.locator('.list .row').count() < 100);
    await ui.page.locator('.page').evaluate((element) => { element.scrollTop = 1_000_000; });
    await row(ui.page, 1999).waitFor();
    await ui.close();
});

test('Search_leftForARowAndBack_stillShowsItsResults', async () => {
    const ui = await openPage(session, { arrange: (phone) => {
        long(10_000)(phone);
        phone.do_tap = function () { this.screens.push(this.plain()); return true; };
    } });
    await field(ui.page).fill('row 777');
    await row(ui.page, 7775).click();
    await ui.page.getByRole('button', { name: 'Reset Profiles' }).waitFor();
    await ui.page.locator('.bar-button.back').click();
    await row(ui.page, 7775).waitFor();
    assert.equal(await field(ui.page).inputValue(), 'row 777');
    assert.equal(await row(ui.page, 7775).evaluate((element) => element === document.activeElement), true);
    await ui.close();
});
