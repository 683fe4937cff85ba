// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, deskSize, lastCommand, openPage, settled, startBrowser } from './harness.mjs';
import { WorkbenchPhone } from './mock-workbench.mjs';
import { openWorkbench } from './workbench.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const turnOn = (ui, name) => ui.panel.getByRole('checkbox', { name }).check();
const part = (ui, name) => ui.panel.getByRole('region', { name });
const found = (ui, kind) => ui.page.locator(`.wb-found-${kind}`);
/** Spoils a part of the phone, as no screen of the page's own would. */
const spoil = (ui, selector, style) => ui.page.locator(selector).first().evaluate((element, wanted) => Object.assign(element.style, wanted), style);
const measures = (locator) => locator.evaluateAll((parts) => parts.map((each) => each.dataset.measure));

test('Frames_on_liesOverTextsAndControlsAndFollowsThem', async () => {
    const ui = await openWorkbench(session, 'overlays');
    await turnOn(ui, 'Frames');
    await found(ui, 'control').first().waitFor();
    const boxes = async () => found(ui, 'control').evaluateAll((parts) => parts.map((each) => { const { x, y, width } = each.getBoundingClientRect(); return [x, y, width].map(Math.round).join(); }));
    const where = await ui.page.locator('.list .row', { hasText: 'Work' }).locator('button.cell').boundingBox();
    assert.ok((await boxes()).includes([where.x, where.y, where.width].map(Math.round).join()));
    assert.ok((await measures(found(ui, 'control'))).includes('358 × 44'));
    // Nobody touches the phone, which moves by itself.
    ui.phone.perform({ do: 'set', row: 1, value: false });
    ui.server.push();
    const misc = ui.page.locator('.list .row', { hasText: 'Miscellaneous' }).locator('button.cell');
    await settled(ui.page);
    await ui.page.waitForFunction((bottom) => { const parts = [...document.querySelectorAll('.wb-found-control')]; return parts.length > 0 && parts.every((each) => each.getBoundingClientRect().bottom <= bottom + 1); }, (await misc.boundingBox()).y + 44);
    await ui.panel.getByRole('checkbox', { name: 'Frames' }).uncheck();
    await found(ui, 'control').first().waitFor({ state: 'detached' });
    await ui.close();
});

test('TouchTargets_underFortyFourPoints_areFoundAndLit', async () => {
    const ui = await openWorkbench(session, 'overlays');
    await turnOn(ui, 'Touch targets');
    await part(ui, 'Touch targets').getByText('none').waitFor();
    // The switch is drawn smaller than its target is.
    assert.ok((await ui.page.getByRole('switch', { name: 'Enabled' }).boundingBox()).height < 44);
    await spoil(ui, '.list .row:has(button.cell) button.cell', { minHeight: '30px', height: '30px' });
    const finding = part(ui, 'Touch targets').getByRole('button', { name: /× 30.*Work/ });
    await finding.hover();
    const light = ui.page.locator('.wb-light');
    await light.waitFor();
    assert.equal((await light.boundingBox()).height, 30);
    await ui.close();
});

test('Contrast_tooWeak_isFoundAndOverPicturesNotToldOf', async () => {
    const ui = await openWorkbench(session, 'overlays');
    await turnOn(ui, 'Contrast');
    await part(ui, 'Contrast').getByText('none, 2 over pictures').waitFor();
    await spoil(ui, '.row .detail', { color: '#b0b0b0' });
    await part(ui, 'Contrast').getByRole('button', { name: /2\.1\d.*9:00 AM/ }).waitFor();
    await spoil(ui, '.row .detail', { color: '#000000', opacity: '0.3' });
    await part(ui, 'Contrast').getByRole('button', { name: /2\.\d\d.*9:00 AM/ }).waitFor();
    await spoil(ui, '.row .detail', { color: '#000000', opacity: '1' });
    await part(ui, 'Contrast').getByText('none, 2 over pictures').waitFor();
    await ui.close();
});

test('FocusOrder_on_numbersWhatTheTabKeyComesTo', async () => {
    const ui = await openWorkbench(session, 'overlays');
    await turnOn(ui, 'Order of focus');
    await found(ui, 'stop').first().waitFor();
    assert.deepEqual(await measures(found(ui, 'stop')), ['1', '2', '3', '4', '5', '6', '7']);
    const drawn = await found(ui, 'stop').evaluateAll((parts) => parts.map((each) => Math.round(each.getBoundingClientRect().y)));
    await ui.page.locator('.phone h1').focus();
    for (const y of drawn) {
        await ui.page.keyboard.press('Tab');
        assert.equal(await ui.page.evaluate(() => Math.round(document.activeElement.getBoundingClientRect().y)), y);
    }
    // Beneath what is presented nothing is reached.
    ui.phone.alert('Error', 'Something is wrong.');
    ui.server.push();
    await ui.page.getByRole('alertdialog').waitFor();
    await ui.page.waitForFunction(() => document.querySelectorAll('.wb-found-stop').length === 1);
    await ui.close();
});

test('CutTexts_thatDoNotShowWhole_areFound', async () => {
    const ui = await openWorkbench(session, 'overlays');
    await turnOn(ui, 'Cut texts');
    await part(ui, 'Cut texts').getByText('none').waitFor();
    await spoil(ui, '.row:has(.detail) .title', { overflow: 'hidden', whiteSpace: 'nowrap', width: '20px', flex: 'none' });
    await part(ui, 'Cut texts').getByRole('button', { name: /wider.*Work/ }).waitFor();
    await ui.close();
});

test('Overlays_workbenchClosed_areGoneUntilItIsOpen', async () => {
    const ui = await openWorkbench(session, 'overlays');
    await turnOn(ui, 'Order of focus');
    await found(ui, 'stop').first().waitFor();
    await ui.page.keyboard.press('F2');
    await found(ui, 'stop').first().waitFor({ state: 'detached' });
    await ui.page.keyboard.press('F2');
    await found(ui, 'stop').first().waitFor();
    await ui.close();
});

test('Overlays_on_letPressesThroughAndAreAccessible', async () => {
    const ui = await openWorkbench(session, 'overlays', { arrange: (phone) => Object.assign(phone.device, { darkMode: true, rightToLeft: true, language: 'ar' }) });
    for (const name of ['Frames', 'Touch targets', 'Contrast', 'Order of focus', 'Cut texts']) await turnOn(ui, name);
    await found(ui, 'stop').first().waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.locator('.list .row', { hasText: 'Miscellaneous' }).click();
    await ui.page.getByRole('heading', { level: 1, name: 'Miscellaneous' }).waitFor();
    await ui.close();
});

test('Overlays_workbenchMadeNarrower_stayOnThePhone', async () => {
    const ui = await openWorkbench(session, 'overlays');
    await turnOn(ui, 'Order of focus');
    await found(ui, 'stop').first().waitFor();
    const before = await ui.page.locator('.phone').boundingBox();
    await ui.page.getByRole('separator', { name: 'Width of the workbench' }).press('Home');
    const phone = await ui.page.locator('.phone').boundingBox();
    assert.ok(phone.x > before.x);
    await ui.page.waitForFunction((x) => Math.round(document.querySelector('.wb-overlay-layer').getBoundingClientRect().x) === Math.round(x), phone.x);
    await ui.close();
});

test('PseudoLanguage_switched_isTheDevicesAndGivesTheOldOneBack', async () => {
    const ui = await openWorkbench(session, 'overlays', { phone: new WorkbenchPhone() });
    const accented = ui.panel.getByRole('checkbox', { name: 'Pseudo-language', exact: false }).first();
    const fromTheRight = ui.panel.getByRole('checkbox', { name: /from the right/ });
    ui.phone.device = { ...ui.phone.device, language: 'de', languages: ['de', 'en'] };
    ui.server.push();
    await ui.page.locator('html[lang="de"]').waitFor();
    await accented.check();
    await ui.page.locator('html[lang="en-XA"][dir="ltr"]').waitFor();
    assert.deepEqual(lastCommand(ui.phone, 'device').set, { languages: ['en-XA', 'de', 'en'] });
    // The page's own words too.
    await ui.page.locator('.dark-switch[aria-label="[Ðååŕķ Ṁööðéé]"]').waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await fromTheRight.check();
    await ui.page.locator('html[lang="ar-XB"][dir="rtl"]').waitFor();
    assert.deepEqual(lastCommand(ui.phone, 'device').set, { languages: ['ar-XB', 'de', 'en'] });
    await ui.page.waitForFunction(() => [...document.querySelectorAll('.wb-overlays input')].slice(-2).map((each) => each.checked).join() === 'false,true');
    // Whoever looks at the phone sees it, and may switch it off.
    const second = await openPage(session, { viewport: deskSize, url: `${ui.server.address}?workbench=overlays#secret=${ui.server.secret}` });
    await second.page.locator('html[lang="ar-XB"]').waitFor();
    await second.page.getByRole('checkbox', { name: /from the right/ }).uncheck();
    await ui.page.locator('html[lang="de"][dir="ltr"]').waitFor();
    assert.deepEqual(lastCommand(ui.phone, 'device').set, { languages: ['de', 'en'] });
    assert.equal(await fromTheRight.isChecked(), false);
    await second.close();
    await ui.close();
});
