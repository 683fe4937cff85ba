// SPDX-License-Identifier: MIT
// A program that is started anew when it has changed: what the page shows of the build, and that nobody is disturbed.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, deskSize, openPage, phoneSize, startBrowser } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const ready = { state: 'ready', error: null, pathEnded: null, page: 1 };
const failed = { ...ready, state: 'failed', error: { file: '/home/somebody/source/Screen.cpp', line: 12, column: 7, text: "'rows' was not declared in this scope" } };
const watched = (build = ready) => (phone) => { phone.build = build; };
const tell = (ui, build) => {
    ui.phone.build = build;
    ui.phone.changed();
    ui.server.push();
};
const alert = (page) => page.locator('.build [role="alert"]');
const boxes = (page) => page.evaluate(() => ['.build-note', '.phone'].map((name) => document.querySelector(name)?.getBoundingClientRect().toJSON()));

for (const [name, viewport, dark] of [['narrowAndLight', phoneSize, false], ['wideAndDark', deskSize, true], ['lowAndLight', { width: 700, height: 390 }, false]]) {
    test(`Build_failed_${name}_standsAboveThePhoneUntilItIsMended`, async () => {
        const ui = await openPage(session, { viewport, colorScheme: dark ? 'dark' : 'light', arrange: (phone) => { phone.device.darkMode = dark; phone.build = ready; } });
        assert.equal(await ui.page.locator('.build-note').count(), 0);
        const before = (await boxes(ui.page))[1];
        tell(ui, { ...ready, state: 'building' });
        await ui.page.locator('.build-line').waitFor({ state: 'attached' });
        await ui.page.waitForFunction(() => !document.querySelector('.build-line').hidden);
        assert.deepEqual((await boxes(ui.page))[1], before, 'a build moves nothing');
        tell(ui, failed);
        await ui.page.getByText('The build failed').waitFor();
        const text = (await alert(ui.page).textContent()).replace(/\s+/g, ' ').trim();
        assert.match(text, /The build failed.*\/home\/somebody\/source\/Screen\.cpp:12:7.*'rows' was not declared/);
        await ui.page.waitForFunction(() => document.querySelector('.phone').getBoundingClientRect().top >= document.querySelector('.build-note').getBoundingClientRect().bottom);
        const phone = (await boxes(ui.page))[1];
        assert.ok(phone.bottom <= viewport.height + 0.5 && phone.left === before.left, JSON.stringify(phone));
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.page.getByRole('switch').first().click();
        tell(ui, ready);
        await ui.page.getByText('The build failed').waitFor({ state: 'detached' });
        await ui.page.waitForFunction((top) => document.querySelector('.phone').getBoundingClientRect().top === top, before.top);
        await ui.close();
    });
}

test('Build_refused_saysThatItCannotBeStarted', async () => {
    const ui = await openPage(session, { arrange: watched({ ...ready, state: 'refused', error: { file: null, line: null, column: null, text: 'The new program was ended by signal 6 (Aborted).' } }) });
    await ui.page.getByText('What was built cannot be started').waitFor();
    assert.equal(await ui.page.locator('.build code').count(), 0);
    await ui.close();
});

test('Build_pathEnded_isSaidUntilItIsPutAway', async () => {
    const pathEnded = 'Nothing opens the screen InnerController any more.';
    const ui = await openPage(session, { arrange: watched({ ...ready, pathEnded }) });
    const note = ui.page.locator('.build [role="status"]').getByText(pathEnded);
    await note.waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.getByRole('button', { name: 'Close', exact: true }).click();
    await note.waitFor({ state: 'detached' });
    tell(ui, { ...ready, pathEnded });
    await ui.page.waitForFunction(() => !document.querySelector('.build-note'));
    tell(ui, { ...ready, pathEnded: 'Another sentence.' });
    await ui.page.getByText('Another sentence.').waitFor();
    await ui.close();
});

test('Build_failed_standsInTheWorkbenchToo', async () => {
    const ui = await openPage(session, { viewport: deskSize, arrange: watched(failed) });
    await ui.page.keyboard.press('F2');
    await ui.page.locator('.wb-build').getByText('Screen.cpp:12:7').waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    tell(ui, ready);
    await ui.page.locator('.wb-build').waitFor({ state: 'hidden' });
    await ui.close();
});

/** What the phone and its banner have said of the connection. */
const listen = (page) => page.evaluate(() => {
    globalThis.said = [];
    const phone = document.querySelector('.phone');
    new MutationObserver(() => globalThis.said.push(phone.dataset.connection, document.querySelector('.banner').textContent.trim()))
        .observe(phone, { subtree: true, childList: true, characterData: true, attributes: true, attributeFilter: ['data-connection'] });
});

test('Renewal_thatIsQuick_isNotSaidAndKeepsWhatIsTyped', async () => {
    const ui = await openPage(session, { arrange: (phone) => { phone.build = ready; phone.show(phone.root(), phone.editor('Work', false)); } });
    const field = ui.page.getByRole('textbox', { name: 'Title' });
    await field.focus();
    await ui.page.keyboard.press('End');
    await ui.page.keyboard.type('shop');
    await listen(ui.page);
    const opened = ui.server.firstMessages.length;
    ui.server.sendBack();
    await ui.page.waitForFunction(() => globalThis.said.includes('renewing') && globalThis.said.at(-2) === 'open');
    const said = await ui.page.evaluate(() => globalThis.said);
    assert.equal(said.includes('lost'), false, said.join());
    assert.equal(said.some((text) => text.startsWith('Connection lost')), false, said.join());
    assert.ok(ui.server.firstMessages.length > opened);
    assert.equal(await field.inputValue(), 'Workshop');
    assert.equal(await field.evaluate((element) => element === document.activeElement), true);
    assert.equal(await ui.page.evaluate(() => document.querySelector('.screens').inert), false);
    await ui.close();
});

test('Renewal_thatTakesLong_isSaid', async () => {
    const ui = await openPage(session, { arrange: watched() });
    ui.server.sendBack({ andLeave: true });
    await ui.page.getByText('Connection lost. Reconnecting…').waitFor();
    ui.server.away = false;
    await ui.page.evaluate(() => { window.dispatchEvent(new Event('online')); });
    await ui.page.waitForFunction(() => document.querySelector('.phone').dataset.connection === 'open');
    await ui.close();
});

test('Page_builtAnew_loadsItselfOnceWhatIsTypedIsStored', async () => {
    const ui = await openPage(session, { arrange: (phone) => { phone.build = ready; phone.show(phone.root(), phone.editor('Work', false)); } });
    await ui.page.evaluate(() => { globalThis.before = true; });
    await ui.page.getByRole('textbox', { name: 'Title' }).fill('Theatre');
    tell(ui, { ...ready, page: 2 });
    await ui.page.waitForFunction(() => !globalThis.before && document.querySelector('.phone')?.dataset.connection === 'open');
    assert.deepEqual(ui.phone.commands.filter((command) => command.do === 'set').map((command) => command.value), ['Theatre']);
    // The new page is of the new version.
    await ui.page.evaluate(() => { globalThis.before = true; });
    tell(ui, { ...ready, page: 2 });
    tell(ui, { ...failed, page: 2 });
    await ui.page.getByText('The build failed').waitFor();
    assert.equal(await ui.page.evaluate(() => globalThis.before), true);
    await ui.close();
});
