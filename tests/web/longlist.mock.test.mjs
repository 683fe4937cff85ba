// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { openPage, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const count = 10_000;
const long = (phone) => phone.show(phone.long(count));
const scrollTo = (page, top) => page.locator('.page').evaluate((element, value) => { element.scrollTop = value; }, top);
const row = (page, number) => page.getByRole('button', { name: `Row ${number}`, exact: true });

test('LongList_opened_asksForAWindowAndDrawsFewRows', async () => {
    const ui = await openPage(session, { arrange: long });
    await row(ui.page, 1).waitFor();
    assert.ok(await ui.page.locator('.row').count() < 100);
    assert.ok(ui.phone.commands.every((command) => command.count <= 200));
    const height = await ui.page.locator('.page').evaluate((element) => element.scrollHeight);
    assert.ok(height > count * 40);
    await ui.close();
});

test('LongList_scrolledFar_asksForTheRowsInSight', async () => {
    const ui = await openPage(session, { arrange: long });
    await row(ui.page, 1).waitFor();
    await scrollTo(ui.page, 220_000);
    await row(ui.page, 5005).waitFor();
    await until(() => ui.phone.commands.at(-1).count === 200, 'the window was asked for last');
    const { from } = ui.phone.commands.at(-1);
    assert.ok(from <= 5000 && from + 200 > 5010);
    assert.ok(await ui.page.locator('.row').count() < 100);
    await ui.close();
});

test('LongList_drawnInPart_staysAList', async () => {
    const ui = await openPage(session, { arrange: long });
    await scrollTo(ui.page, 220_000);
    await row(ui.page, 5005).waitFor();
    const item = ui.page.locator('li', { has: row(ui.page, 5005) });
    await ui.page.waitForFunction(() => document.querySelector('li[aria-setsize="9999"]'));
    assert.equal(await item.getAttribute('aria-posinset'), '5005');
    assert.equal(await item.getAttribute('aria-setsize'), '9999');
    assert.equal(await ui.page.getByRole('region', { name: 'Ten thousand' }).getByRole('list').count(), 1);
    await ui.close();
});

test('LongList_scrolledToItsEnd_showsTheLastRowAndTheFooter', async () => {
    const ui = await openPage(session, { arrange: long });
    await row(ui.page, 1).waitFor();
    await scrollTo(ui.page, 10_000_000);
    await row(ui.page, count - 1).waitFor();
    await scrollTo(ui.page, 10_000_000);
    const footer = ui.page.getByText('The end of the list.');
    await footer.waitFor();
    const [box, view] = [await footer.boundingBox(), await ui.page.locator('.page').boundingBox()];
    assert.ok(box.y + box.height <= view.y + view.height);
    await ui.close();
});

test('LongList_focusedRowScrolledAway_staysInTheDocument', async () => {
    const ui = await openPage(session, { arrange: long });
    await row(ui.page, 3).focus();
    await scrollTo(ui.page, 220_000);
    await row(ui.page, 5005).waitFor();
    assert.equal(await row(ui.page, 3).evaluate((element) => element === document.activeElement), true);
    const box = await row(ui.page, 5005).boundingBox();
    assert.ok(box.y > 0 && box.y < 1600);
    await ui.close();
});

test('LongList_rowPatched_changesInPlace', async () => {
    const ui = await openPage(session, { arrange: long });
    await scrollTo(ui.page, 220_000);
    await row(ui.page, 5005).waitFor();
    const top = await ui.page.locator('.page').evaluate((element) => element.scrollTop);
    ui.phone.screen.rows()[5005].detailText = 'patched';
    ui.phone.changed();
    ui.server.push();
    await ui.page.getByText('patched').waitFor();
    assert.equal(await ui.page.locator('.page').evaluate((element) => element.scrollTop), top);
    await ui.close();
});

test('LongList_changedWhileRowsWereOnTheirWay_asksForWhatItStillNeeds', async () => {
    const ui = await openPage(session, { arrange: long });
    await row(ui.page, 1).waitFor();
    // The last row, which tells how long the list is, has come.
    await ui.page.waitForFunction(() => document.querySelector('li[aria-setsize="9999"]'));
    ui.server.hold = true;
    await scrollTo(ui.page, 220_000);
    await until(() => ui.server.held.length > 0, 'the window is asked for');
    ui.phone.changed();
    ui.server.push();
    await row(ui.page, 5005).waitFor();
    const asked = ui.phone.commands.length;
    ui.server.hold = false;
    for (const answer of ui.server.held) answer();
    // The last row of the new revision, and the group row.
    for (const index of [0, count - 1]) await until(() => ui.phone.commands.slice(asked).some((command) => command.from <= index && index < command.from + command.count), `row ${index} was asked for`);
    assert.equal(await ui.page.getByRole('region', { name: 'Ten thousand' }).count(), 1);
    await ui.close();
});

test('LongList_rowTappedThenBack_isWhereItWas', async () => {
    const ui = await openPage(session, { arrange: long });
    await scrollTo(ui.page, 220_000);
    await row(ui.page, 5005).waitFor();
    ui.phone.push(ui.phone.plain());
    ui.server.push();
    await ui.page.getByRole('heading', { level: 1, name: 'Miscellaneous' }).waitFor();
    await ui.page.getByRole('button', { name: 'Reset Profiles' }).waitFor();
    await ui.page.locator('.bar-button.back').click();
    await row(ui.page, 5005).waitFor();
    await ui.close();
});

/** Counts from now on the ghosts of rows and the rows that slide in. */
const countMotion = (page) => page.evaluate(() => {
    globalThis.moved = 0;
    const { animate } = Element.prototype;
    Element.prototype.animate = function (...args) {
        if (this.matches('[data-index], .ghost')) globalThis.moved += 1;
        return animate.apply(this, args);
    };
});

test('LongList_scrolledFar_slidesNoRowInAndLeavesNoGhost', async () => {
    const ui = await openPage(session, { arrange: long, reducedMotion: 'no-preference' });
    await row(ui.page, 1).waitFor();
    await countMotion(ui.page);
    for (const top of [220_000, 100_000, 300_000]) {
        ui.server.hold = true;
        await scrollTo(ui.page, top);
        await ui.page.locator('.list [aria-busy]').first().waitFor();
        await until(() => ui.server.held.length > 0, 'the rows are asked for');
        // Something else has changed by then, so that the rows come with a new revision.
        ui.phone.changed();
        ui.server.hold = false;
        for (const answer of ui.server.held.splice(0)) answer();
        ui.server.push();
        await ui.page.waitForFunction(() => !document.querySelector('.list [aria-busy]'));
    }
    assert.equal(await ui.page.evaluate(() => globalThis.moved), 0);
    await ui.close();
});

test('LongList_rowInsertedInSight_slidesInAndTheOthersGlide', async () => {
    const ui = await openPage(session, { arrange: long, reducedMotion: 'no-preference' });
    await scrollTo(ui.page, 220_000);
    await row(ui.page, 5005).waitFor();
    await ui.page.waitForFunction(() => !document.querySelector('.list [aria-busy]'));
    await countMotion(ui.page);
    const rows = ui.phone.screen.rows();
    const inserted = { ...rows[5000], key: 'inserted', name: 'Inserted', text: 'Inserted' };
    rows.splice(5005, 0, inserted);
    ui.phone.screen.rows = () => rows;
    ui.phone.changed();
    ui.server.push();
    await ui.page.getByRole('button', { name: 'Inserted' }).waitFor();
    assert.ok(await ui.page.evaluate(() => globalThis.moved) > 1);
    assert.equal(await ui.page.locator('.ghost').count(), 0);
    await ui.close();
});

test('LongList_leftByItsMiddleAndBack_isThereAtOnceWithTheFocusOnTheRow', async () => {
    const ui = await openPage(session, { arrange: (phone) => {
        long(phone);
        phone.do_tap = function () { this.screens.push(this.plain()); return true; };
    } });
    await scrollTo(ui.page, 220_000);
    await row(ui.page, 5005).waitFor();
    await ui.page.waitForFunction(() => !document.querySelector('.list [aria-busy]'));
    const place = async () => Math.round((await row(ui.page, 5005).boundingBox()).y);
    const before = await place();
    const asked = ui.phone.commands.length;
    await row(ui.page, 5005).focus();
    await row(ui.page, 5005).press('Enter');
    await ui.page.getByRole('button', { name: 'Reset Profiles' }).waitFor();
    assert.deepEqual(ui.phone.commands.slice(asked).map((command) => command.do), ['tap']);
    // Each drawing from now on is looked at: none may lack a row.
    await ui.page.evaluate(() => {
        globalThis.lacking = 0;
        new MutationObserver(() => { if (document.querySelector('.page:not([inert]) .list [aria-busy]')) globalThis.lacking += 1; }).observe(document.querySelector('.stage'), { subtree: true, childList: true });
    });
    ui.server.hold = true;
    await ui.page.locator('.bar-button.back').click();
    await until(() => ui.server.held.length === 1, 'the way back is asked for');
    ui.server.held.pop()();
    // With this one answer, and no other.
    await row(ui.page, 5005).waitFor();
    assert.equal(await place(), before);
    assert.equal(await row(ui.page, 5005).evaluate((element) => element === document.activeElement), true);
    assert.equal(await ui.page.evaluate(() => globalThis.lacking), 0);
    ui.server.hold = false;
    const back = ui.phone.commands.slice(asked).filter((command) => command.do === 'back');
    assert.equal(back.length, 1);
    assert.ok(back[0].elsewhere.from <= 5000 && back[0].elsewhere.from + back[0].elsewhere.count > 5010);
    await ui.close();
});

test('LongList_uncoveredByOthers_showsWhatItHadUntilTheRowsAreThere', async () => {
    const ui = await openPage(session, { arrange: long });
    await scrollTo(ui.page, 220_000);
    await row(ui.page, 5005).waitFor();
    await ui.page.waitForFunction(() => !document.querySelector('.list [aria-busy]'));
    ui.phone.push(ui.phone.plain());
    ui.server.push();
    await ui.page.getByRole('button', { name: 'Reset Profiles' }).waitFor();
    ui.phone.screens.pop();
    ui.phone.screen.rows()[5005].detailText = 'renewed';
    ui.phone.changed();
    ui.server.hold = true;
    ui.server.push();
    await row(ui.page, 5005).waitFor();
    assert.equal(await ui.page.locator('.list [aria-busy]').count(), 0);
    ui.server.hold = false;
    for (const answer of ui.server.held.splice(0)) answer();
    await ui.page.getByText('renewed').waitFor();
    await ui.close();
});

test('LongList_coveredByASheetAndShownAgain_isWhereItWasAndScrollsOn', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show({ ...phone.long(count), bar: () => phone.root().bar() }) });
    await scrollTo(ui.page, 220_000);
    await row(ui.page, 5005).waitFor();
    ui.phone.perform({ do: 'bar', side: 'right', item: 0 });
    ui.server.push();
    await ui.page.getByRole('heading', { level: 1, name: 'New Profile' }).waitFor();
    await ui.page.keyboard.press('Escape');
    await ui.page.waitForFunction(() => !document.querySelector('.navigator.modal'));
    assert.equal(await ui.page.locator('.page').evaluate((element) => element.scrollTop), 220_000);
    await row(ui.page, 5005).waitFor();
    await scrollTo(ui.page, 100_000);
    await row(ui.page, 2280).waitFor();
    await ui.close();
});
