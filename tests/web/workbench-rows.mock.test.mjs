// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { startBrowser } from './harness.mjs';
import { cell, line, openWorkbench } from './workbench.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const count = 10_000;
const long = (phone) => phone.show(phone.long(count));
const clipboard = (page) => page.evaluate(() => navigator.clipboard.readText());
const mayCopy = (page) => page.context().grantPermissions(['clipboard-read', 'clipboard-write']);
const marked = (found) => found.locator('mark').allTextContents();

test('Rows_ofTheScreen_areShownInEveryColumn', async () => {
    const ui = await openWorkbench(session, 'rows', { arrange: (phone) => Object.assign(phone.active[0], { set: 'set:', get: 'get:', action: 'act:', detail: 'SampleDetail', properties: { iconImage: 'Misc' } }) });
    const work = line(ui.panel, 'Work');
    const shown = { index: '3', section: '1', kind: '1 link', name: 'Work', identifier: 'title', value: '', set: 'set:', get: 'get:', action: 'act:', detail: 'SampleDetail', properties: '{"iconImage":"Misc"}', info: '{"class":"SampleProfile","identifier":"Work"}' };
    for (const [column, text] of Object.entries(shown)) assert.equal((await cell(work, column).textContent()).trim(), text, column);
    assert.equal((await cell(line(ui.panel, 'Enabled'), 'value').textContent()).trim(), 'true');
    assert.equal((await cell(line(ui.panel, 'Enabled'), 'class').textContent()).trim(), 'SampleSwitchCell');
    assert.equal(await ui.panel.getByRole('row').count(), 10);
    // Lines of every kind have room for what they say.
    assert.deepEqual(await ui.panel.locator('.wb-list-body .wb-cell').evaluateAll((cells) => [...new Set(cells.map((each) => each.clientHeight))]), [23]);
    await ui.close();
});

test('Rows_changedByACommand_areMarkedCellByCellUntilTheNext', async () => {
    const ui = await openWorkbench(session, 'rows');
    const master = ui.page.getByRole('switch', { name: 'Enabled' });
    await master.click();
    await line(ui.panel, 'false').waitFor();
    assert.deepEqual(await marked(line(ui.panel, 'Enabled')), ['false']);
    await master.click();
    const work = line(ui.panel, 'Work');
    await work.waitFor();
    assert.deepEqual(await marked(line(ui.panel, 'Enabled')), ['true']);
    assert.ok((await work.getAttribute('class')).includes('wb-new'));
    // A command that changes nothing leaves no mark.
    ui.phone.refuse.add('dark');
    await ui.page.getByRole('button', { name: 'Dark Mode' }).click();
    await ui.panel.locator('mark').first().waitFor({ state: 'detached' });
    assert.equal(await ui.panel.locator('.wb-new').count(), 0);
    await ui.close();
});

test('Rows_pointedAt_lightUpOnTheOtherSide', async () => {
    const ui = await openWorkbench(session, 'rows');
    await line(ui.panel, 'Cinema').hover();
    const light = ui.page.locator('.wb-light');
    await light.waitFor();
    const [lit, row] = [await light.boundingBox(), await ui.page.locator('.list .row', { hasText: 'Cinema' }).boundingBox()];
    assert.deepEqual(lit, row);
    await ui.page.locator('.list .row', { hasText: 'Work' }).hover();
    await ui.panel.locator('.wb-pointed', { hasText: 'Work' }).waitFor();
    assert.equal(await light.count(), 0);
    await ui.close();
});

test('Rows_byKeyboard_areLitAndOpened', async () => {
    const ui = await openWorkbench(session, 'rows');
    await ui.panel.locator('[data-place="0"]').focus();
    for (let step = 0; step < 3; step += 1) await ui.page.keyboard.press('ArrowDown');
    await ui.page.waitForFunction(() => document.activeElement.textContent.includes('Work'));
    const light = ui.page.locator('.wb-light');
    await light.waitFor();
    assert.deepEqual(await light.boundingBox(), await ui.page.locator('.list .row', { hasText: 'Work' }).boundingBox());
    await ui.page.keyboard.press('Enter');
    await ui.panel.getByRole('region', { name: 'Chosen row' }).getByText('"SampleProfile"').waitFor();
    await ui.page.keyboard.press('End');
    await ui.page.waitForFunction(() => document.activeElement.textContent.includes('Miscellaneous'));
    assert.equal(await ui.panel.locator('[data-place][tabindex="0"]').count(), 1);
    await ui.close();
});

test('Rows_filtered_byNameIdentifierKeyOrClass', async () => {
    const ui = await openWorkbench(session, 'rows');
    const filter = ui.panel.getByRole('searchbox', { name: 'Filter rows' });
    const names = async (text, expected) => {
        await filter.fill(text);
        await ui.panel.getByText(`${expected.length} of 9 rows`).waitFor();
        await ui.page.waitForFunction((number) => document.querySelectorAll('.wb-list-body [data-place]').length === number, expected.length);
        assert.deepEqual((await ui.panel.locator('.wb-list-body .wb-column-name').allTextContents()).map((each) => each.trim()), expected);
    };
    await names('WORK', ['Work']);
    await names('title', ['Work', 'Cinema', 'Night']);
    await names('sampleswitch', ['Enabled']);
    await filter.fill('nothing like it');
    await ui.panel.getByText('No rows.').waitFor();
    assert.ok(ui.phone.commands.every((command) => command.do !== 'find'));
    await ui.close();
});

test('Rows_tenThousand_areFetchedAsTheyAreLookedAt', async () => {
    const ui = await openWorkbench(session, 'rows', { arrange: long });
    await ui.panel.getByText('10000 rows').waitFor();
    await ui.panel.locator('.wb-list').evaluate((element) => { element.scrollTop = 120_000; });
    await ui.panel.getByText('Row 5003', { exact: true }).waitFor();
    assert.ok(await ui.panel.locator('.wb-list-body [data-place]').count() < 120);
    assert.ok(ui.phone.commands.every((command) => command.count <= 200));
    assert.ok(ui.phone.commands.length < 12);
    await ui.close();
});

test('Rows_tenThousandFiltered_areFoundByTheApplication', async () => {
    const ui = await openWorkbench(session, 'rows', { arrange: long });
    await ui.panel.getByRole('searchbox').fill('row 77');
    await ui.panel.getByText('111 of 10000 rows, by name').waitFor();
    await ui.panel.getByText('Row 7700', { exact: true }).waitFor();
    await ui.page.waitForFunction(() => !document.querySelector('.wb-waiting'));
    assert.ok(ui.phone.commands.some((command) => command.do === 'find' && command.text === 'row 77'));
    await ui.panel.getByRole('searchbox').fill('');
    await ui.panel.getByText('10000 rows', { exact: true }).waitFor();
    await ui.close();
});

test('Rows_changedWhileFiltered_areLookedThroughAgain', async () => {
    const ui = await openWorkbench(session, 'rows');
    await ui.panel.getByRole('searchbox').fill('title');
    await ui.panel.getByText('3 of 9 rows').waitFor();
    await ui.page.getByRole('switch', { name: 'Enabled' }).click();
    await ui.panel.getByText('0 of 4 rows').waitFor();
    await ui.close();
});

test('Rows_copied_areJSON', async () => {
    const ui = await openWorkbench(session, 'rows');
    await mayCopy(ui.page);
    await line(ui.panel, 'Cinema').click();
    await ui.panel.getByRole('button', { name: 'Copy row' }).click();
    await ui.panel.getByText('Copied row 4.').waitFor();
    const one = JSON.parse(await clipboard(ui.page));
    assert.deepEqual([one.name, one.index, one.userInfo.identifier], ['Cinema', 4, 'Cinema']);
    await ui.panel.getByRole('searchbox').fill('title');
    await ui.panel.getByRole('button', { name: 'Copy shown' }).click();
    await ui.panel.getByText('Copied 3 rows.').waitFor();
    assert.deepEqual(JSON.parse(await clipboard(ui.page)).map((each) => each.name), ['Work', 'Cinema', 'Night']);
    await ui.close();
});

test('Rows_copiedOfALongList_areFetchedFirst', async () => {
    const ui = await openWorkbench(session, 'rows', { arrange: (phone) => phone.show(phone.long(1000)) });
    await mayCopy(ui.page);
    await ui.panel.getByText('1000 rows').waitFor();
    await ui.panel.getByRole('button', { name: 'Copy shown' }).click();
    await ui.panel.getByText('Copied 1000 rows.').waitFor();
    assert.deepEqual(JSON.parse(await clipboard(ui.page)).map((each) => each.index), Array.from({ length: 1000 }, (_unused, index) => index));
    await ui.close();
});

test('Rows_ofAnotherScreen_takeTheirPlaceFromTheTop', async () => {
    const ui = await openWorkbench(session, 'rows', { arrange: long });
    await ui.panel.locator('.wb-list').evaluate((element) => { element.scrollTop = 120_000; });
    await ui.panel.getByText('Row 5003', { exact: true }).waitFor();
    ui.phone.push(ui.phone.long(5000));
    ui.server.push();
    await ui.panel.getByText('5000 rows').waitFor();
    await line(ui.panel, 'Row 1').waitFor();
    assert.equal(await ui.panel.locator('.wb-list').evaluate((element) => element.scrollTop), 0);
    await ui.close();
});
