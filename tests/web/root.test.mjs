// SPDX-License-Identifier: MIT
// What holds for any application behind the page. QUIETRIX_PAGE_URL names a running one; else the made-up one serves.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, deskSize, openPage, startBrowser } from './harness.mjs';

const url = process.env.QUIETRIX_PAGE_URL ?? null;
let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const closed = (page) => page.waitForFunction(() => document.querySelectorAll('.presenter .layer:not([inert])').length === 0);

test('Root_opened_showsHeaderSwitchAndLinks', async () => {
    const ui = await openPage(session, { url });
    assert.equal(await ui.page.locator('.product-title').count(), 1);
    assert.equal(await ui.page.getByRole('switch').count(), 1);
    assert.ok(await ui.page.locator('.row button.cell').count() >= 1);
    assert.notEqual(await ui.page.title(), '');
    await ui.close();
});

test('Root_switchTurned_changesTheRowsAndKeepsTheFocusOnTheSwitch', async () => {
    const ui = await openPage(session, { url });
    const control = ui.page.getByRole('switch');
    const rows = () => ui.page.locator('.list .row').count();
    const wasOn = await control.isChecked();
    const before = await rows();
    await control.focus();
    await ui.page.keyboard.press('Space');
    await ui.page.waitForFunction((count) => document.querySelectorAll('.list .row').length !== count, before);
    assert.equal(await control.isChecked(), !wasOn);
    assert.equal(wasOn ? before > await rows() : before < await rows(), true);
    assert.equal(await control.evaluate((element) => element === document.activeElement), true);
    await ui.page.keyboard.press('Space');
    await ui.page.waitForFunction((count) => document.querySelectorAll('.list .row').length === count, before);
    await ui.close();
});

test('Root_shareSheetEscaped_closesAndGivesTheFocusBack', async () => {
    const ui = await openPage(session, { url });
    const share = ui.page.locator('.bar-side.trailing .bar-button').first();
    await share.focus();
    await ui.page.keyboard.press('Enter');
    const sheet = ui.page.getByRole('dialog');
    await sheet.waitFor();
    assert.equal(await sheet.getByRole('button').count(), 3);
    await ui.page.keyboard.press('Escape');
    await closed(ui.page);
    assert.equal(await share.evaluate((element) => element === document.activeElement), true);
    await ui.close();
});

test('Root_sharing_opensTheComposerAndCancelClosesIt', async () => {
    const ui = await openPage(session, { url });
    await ui.page.locator('.bar-side.trailing .bar-button').first().click();
    await ui.page.getByRole('dialog').getByRole('button').first().click();
    const composer = ui.page.locator('.composer.social');
    await composer.waitFor();
    assert.notEqual(await composer.locator('.social-text').textContent(), '');
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.keyboard.press('Escape');
    await closed(ui.page);
    await ui.close();
});

test('Root_darkSwitchOnADesk_switchesThePhone', async () => {
    const ui = await openPage(session, { url, viewport: deskSize });
    const toggle = ui.page.locator('.dark-switch');
    const theme = () => ui.page.evaluate(() => document.documentElement.dataset.theme);
    const first = await theme();
    await toggle.click();
    await ui.page.waitForFunction((old) => document.documentElement.dataset.theme !== old, first);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await toggle.click();
    await ui.page.waitForFunction((old) => document.documentElement.dataset.theme === old, first);
    await ui.close();
});

test('Root_onANarrowWindow_hidesWhatIsOutsideThePhone', async () => {
    const ui = await openPage(session, { url });
    assert.equal(await ui.page.locator('.dark-switch').isVisible(), false);
    const box = await ui.page.locator('.phone').boundingBox();
    assert.deepEqual([box.width, box.height], [390, 844]);
    await ui.close();
});
