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
    assert.equal(await ui.page.locator('li[aria-setsize="9999"]').count(), 0);
    ui.server.hold = false;
    for (const answer of ui.server.held) answer();
    await ui.page.waitForFunction(() => document.querySelector('li[aria-setsize="9999"]'));
    await ui.page.getByRole('region', { name: 'Ten thousand' }).waitFor();
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
