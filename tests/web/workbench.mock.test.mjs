// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, deskSize, openPage, phoneSize, resize, settled, startBrowser, until } from './harness.mjs';
import { WorkbenchPhone } from './mock-workbench.mjs';
import { openWorkbench } from './workbench.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const button = (page) => page.getByRole('button', { name: 'Workbench', exact: true });
const pane = (page) => page.getByRole('complementary', { name: 'Workbench' });
const box = (locator) => locator.boundingBox();
const edge = (page) => page.getByRole('separator', { name: 'Width of the workbench' });

test('Workbench_notOpened_isNotFetched', async () => {
    const fetched = [];
    const ui = await openPage(session, { viewport: deskSize, between: (page) => page.on('request', (request) => fetched.push(new URL(request.url()).pathname)) });
    await button(ui.page).waitFor();
    assert.deepEqual(fetched.filter((path) => path.includes('workbench')), []);
    // What it shares with the phone's page is named in the document, and need not be waited for twice.
    const parts = fetched.filter((path) => path.startsWith('/parts/'));
    assert.ok(parts.length > 0);
    for (const path of parts) assert.equal(await ui.page.locator(`link[rel="modulepreload"][href="${path}"]`).count(), 1);
    assert.equal(await button(ui.page).getAttribute('lang'), 'en');
    await ui.close();
});

test('Workbench_button_opensItBesideThePhone', async () => {
    const ui = await openPage(session, { viewport: deskSize });
    await button(ui.page).click();
    await pane(ui.page).waitFor();
    const [phone, bench, opener] = [await box(ui.page.locator('.phone')), await box(pane(ui.page)), await box(button(ui.page))];
    assert.equal(bench.x + bench.width, deskSize.width);
    assert.ok(phone.x > 0 && phone.x + phone.width < opener.x && opener.x + opener.width < bench.x);
    assert.equal(phone.width, 390);
    assert.equal(await pane(ui.page).getAttribute('lang'), 'en');
    await ui.page.getByRole('button', { name: 'Close the workbench' }).click();
    await pane(ui.page).waitFor({ state: 'hidden' });
    const { x, width } = await box(ui.page.locator('.phone'));
    assert.equal(Math.round(x + width / 2), deskSize.width / 2);
    assert.equal(await button(ui.page).evaluate((element) => element === document.activeElement), true);
    await ui.close();
});

test('Workbench_opened_staysThroughAReloadAndGoesFromTheAddressWhenClosed', async () => {
    const ui = await openPage(session, { viewport: deskSize });
    await button(ui.page).click();
    await pane(ui.page).waitFor();
    assert.match(ui.page.url(), /\?workbench=rows$/);
    // The entry of the history that a screen makes has it too, and so has the one beneath after the way back.
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await ui.page.getByRole('heading', { level: 1, name: 'Miscellaneous' }).waitFor();
    await ui.page.goBack();
    await ui.page.getByRole('switch', { name: 'Enabled' }).waitFor();
    assert.match(ui.page.url(), /\?workbench=rows$/);
    await ui.page.reload();
    await pane(ui.page).waitFor();
    await ui.page.keyboard.press('F2');
    await pane(ui.page).waitFor({ state: 'hidden' });
    assert.ok(!ui.page.url().includes('workbench'));
    await ui.close();
});

test('Workbench_closedOnAScreenAndLeftByAWayBack_isNotInTheAddressOfTheEntryBeneath', async () => {
    const ui = await openWorkbench(session, 'rows');
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await ui.page.getByRole('heading', { level: 1, name: 'Miscellaneous' }).waitFor();
    await ui.page.keyboard.press('F2');
    await ui.page.goBack();
    await ui.page.getByRole('switch', { name: 'Enabled' }).waitFor();
    await ui.page.waitForFunction(() => !location.search.includes('workbench'));
    await ui.close();
});

test('Workbench_F2_opensItWithTheFocusOnItsTabAndGivesItBack', async () => {
    const ui = await openPage(session, { viewport: deskSize });
    await ui.page.keyboard.press('F2');
    await pane(ui.page).waitFor();
    await ui.page.waitForFunction(() => document.activeElement.getAttribute('role') === 'tab');
    await ui.page.keyboard.press('F2');
    await pane(ui.page).waitFor({ state: 'hidden' });
    assert.equal(await button(ui.page).evaluate((element) => element === document.activeElement), true);
    await ui.close();
});

test('Workbench_narrowWindow_offersNoneAndHidesAnOpenOne', async () => {
    const ui = await openPage(session, { viewport: phoneSize });
    await ui.page.keyboard.press('F2');
    assert.equal(await button(ui.page).count(), 0);
    assert.equal(await pane(ui.page).count(), 0);
    await resize(ui.page, deskSize);
    await ui.page.keyboard.press('F2');
    await pane(ui.page).waitFor();
    await resize(ui.page, phoneSize);
    await pane(ui.page).waitFor({ state: 'hidden' });
    assert.equal((await box(ui.page.locator('.phone'))).width, phoneSize.width);
    await resize(ui.page, deskSize);
    await pane(ui.page).waitFor();
    await ui.close();
});

test('Workbench_separator_isMovedByPointerAndByKeysAndRemembered', async () => {
    const ui = await openWorkbench(session, 'rows');
    const width = async () => (await box(ui.pane)).width;
    const wide = await width();
    const { x, y, height } = await box(edge(ui.page));
    await ui.page.mouse.move(x + 4, y + height / 2);
    await ui.page.mouse.down();
    await ui.page.mouse.move(x + 104, y + height / 2, { steps: 4 });
    await ui.page.mouse.up();
    assert.equal(await width(), wide - 100);
    await edge(ui.page).press('ArrowRight');
    assert.equal(await width(), wide - 116);
    await edge(ui.page).press('ArrowLeft');
    assert.equal(await width(), wide - 100);
    assert.equal(Number(await edge(ui.page).getAttribute('aria-valuenow')), wide - 100);
    await ui.page.reload();
    await ui.pane.waitFor();
    assert.equal(await width(), wide - 100);
    await edge(ui.page).press('Home');
    assert.equal(await width(), Number(await edge(ui.page).getAttribute('aria-valuemin')));
    await edge(ui.page).press('End');
    assert.equal(await width(), Number(await edge(ui.page).getAttribute('aria-valuemax')));
    const phone = await box(ui.page.locator('.phone'));
    assert.ok(phone.x > 0 && phone.x + phone.width < (await box(button(ui.page))).x);
    await ui.close();
});

test('Workbench_rightToLeft_standsOnTheOtherSideAndItsEdgeFollowsTheArrows', async () => {
    const ui = await openWorkbench(session, 'rows', { arrange: (phone) => Object.assign(phone.device, { rightToLeft: true, language: 'ar' }) });
    await ui.page.locator('html[dir="rtl"]').waitFor();
    const bench = await box(ui.pane);
    assert.equal(bench.x, 0);
    assert.ok((await box(ui.page.locator('.phone'))).x > bench.width);
    await edge(ui.page).press('ArrowLeft');
    assert.equal((await box(ui.pane)).width, bench.width - 16);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

test('Workbench_keysInIt_doNothingOnThePhone', async () => {
    const ui = await openWorkbench(session, 'rows', { arrange: (phone) => phone.perform({ do: 'bar', side: 'right', item: 0 }) });
    await ui.page.getByRole('heading', { level: 1, name: 'New Profile' }).waitFor();
    const asked = ui.phone.commands.length;
    await ui.pane.getByRole('tab', { name: 'Rows' }).press('Escape');
    await ui.pane.getByRole('searchbox').press('Escape');
    assert.ok(ui.phone.commands.slice(asked).every((command) => command.do === 'state' || command.do === 'find'));
    await ui.close();
});

test('Workbench_somethingPresentedWhileItIsUsed_keepsTheFocus', async () => {
    const ui = await openWorkbench(session, 'rows');
    const filter = ui.pane.getByRole('searchbox');
    await filter.focus();
    ui.phone.alert('Error', 'Something is wrong.');
    ui.server.push();
    const alert = ui.page.getByRole('alertdialog', { name: 'Error' });
    await alert.waitFor();
    await settled(ui.page);
    assert.equal(await filter.evaluate((element) => element === document.activeElement), true);
    ui.phone.perform({ do: 'choose', action: 'Close' });
    ui.server.push();
    await alert.waitFor({ state: 'detached' });
    assert.equal(await filter.evaluate((element) => element === document.activeElement), true);
    await ui.close();
});

test('Workbench_connectionLost_saysSoAndComesBack', async () => {
    const ui = await openWorkbench(session, 'rows');
    ui.server.leave();
    await ui.pane.getByText('Not connected').waitFor();
    ui.server.away = false;
    await ui.page.evaluate(() => { window.dispatchEvent(new Event('online')); });
    await ui.pane.getByText('Not connected').waitFor({ state: 'detached' });
    await ui.close();
});

test('Workbench_itsOwnConnection_leavesThePhonesRowsAlone', async () => {
    const ui = await openWorkbench(session, 'rows', { arrange: (phone) => phone.show(phone.long(10_000)) });
    await ui.page.getByRole('button', { name: 'Row 1', exact: true }).waitFor();
    await ui.pane.locator('.wb-list').evaluate((element) => { element.scrollTop = 120_000; });
    await ui.pane.getByText('Row 5003', { exact: true }).waitFor();
    ui.phone.screen.rows()[2].detailText = 'patched';
    ui.phone.changed();
    ui.server.push();
    // The phone is still pushed its own rows.
    await ui.page.locator('.phone').getByText('patched').waitFor();
    await until(() => ui.phone.commands.some((command) => command.from > 4000), 'the table asked for its own');
    await ui.close();
});

for (const colorScheme of ['light', 'dark']) {
    test(`Workbench_${colorScheme}_isAccessible`, async () => {
        const ui = await openWorkbench(session, 'rows', { arrange: (phone) => { phone.device.darkMode = colorScheme === 'dark'; } });
        await ui.page.getByRole('switch', { name: 'Enabled' }).click();
        await ui.pane.locator('mark').first().waitFor();
        await ui.pane.locator('[data-place="1"]').click();
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.close();
    });
}

test('Workbench_applicationThatHasAnotherSecret_goesWithThePhone', async () => {
    const ui = await openWorkbench(session, 'rows');
    ui.server.secret = 'ff'.repeat(32);
    ui.server.dropAll();
    await ui.page.getByRole('heading', { name: 'Settings was restarted. Open the address that it printed.' }).waitFor();
    assert.equal(await ui.page.locator('.workbench, button').count(), 0);
    const phone = await box(ui.page.locator('.phone'));
    assert.equal(Math.round(phone.x + phone.width / 2), deskSize.width / 2);
    await ui.page.keyboard.press('F2');
    assert.equal(await pane(ui.page).count(), 0);
    await ui.close();
});

test('Workbench_forcedColours_keepWhatIsChosenReadable', async () => {
    const ui = await openWorkbench(session, 'timeline', { phone: new WorkbenchPhone() });
    await ui.page.emulateMedia({ forcedColors: 'active' });
    await ui.page.getByRole('switch', { name: 'Enabled' }).click();
    await ui.pane.locator('[data-place="2"]').click();
    await ui.pane.locator('.wb-chosen').waitFor();
    const colours = await ui.pane.locator('.wb-chosen').evaluate((chosen) => {
        const probe = document.body.appendChild(document.createElement('i'));
        const system = (name) => { probe.style.cssText = `forced-color-adjust: none; color: ${name}`; return getComputedStyle(probe).color; };
        return { ground: getComputedStyle(chosen).backgroundColor, texts: [...new Set([...chosen.querySelectorAll('*')].map((each) => getComputedStyle(each).color))], highlight: system('Highlight'), on: system('HighlightText') };
    });
    assert.deepEqual([colours.ground, colours.texts], [colours.highlight, [colours.on]]);
    await ui.close();
});

for (const tab of ['rows', 'console', 'overlays', 'post', 'files', 'device', 'faults', 'timeline']) {
    test(`Workbench_narrowest_${tab}_fitsItsPane`, async () => {
        const ui = await openWorkbench(session, tab, { phone: new WorkbenchPhone() });
        await edge(ui.page).press('Home');
        await settled(ui.page);
        const wider = await ui.pane.evaluate((pane) => [...pane.querySelectorAll('.wb-tabs, .wb-content, #wb-panel, #wb-panel > *, .wb-card, .wb-bar')].filter((each) => each.scrollWidth > each.clientWidth + 1).map((each) => each.className || each.id));
        assert.deepEqual(wider, []);
        await ui.close();
    });
}
