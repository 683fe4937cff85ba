// SPDX-License-Identifier: MIT
// A page whose way to a real application is cut, or whose application is killed: what was typed is in the profiles file or in sight.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { startBrowser, tryAgain } from './harness.mjs';
import { freePort, openPhone, profile, row } from './real-phone.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const status = (page, wanted) => page.waitForFunction((name) => document.querySelector('.phone').dataset.connection === name, wanted);
const field = (page) => page.locator('.field');

/** A way between page and application that can be cut: whole, or only the one to the application. */
function way() {
    const sockets = new Set();
    let isCut = false;
    let isDeaf = false;
    return {
        install: (page) => page.routeWebSocket(/\/ws$/, (socket) => {
            if (isCut) {
                socket.close({ code: 1001 });
                return;
            }
            sockets.add(socket);
            const server = socket.connectToServer();
            socket.onMessage((message) => { if (!isDeaf) server.send(message); });
            server.onMessage((message) => socket.send(message));
        }),
        cut() {
            isCut = true;
            for (const socket of sockets) socket.close({ code: 1001 });
            sockets.clear();
        },
        mend() { isCut = isDeaf = false; },
        /** From now on nothing reaches the application. */
        swallow() { isDeaf = true; },
    };
}

async function openEditor(between, options = {}) {
    const ui = await openPhone(session, { profiles: [profile('Work'), profile('Night')], ...options }, between ? { between: (page) => between.install(page) } : {});
    await row(ui.page, 'Work').getByRole('button').first().click();
    await field(ui.page).waitFor();
    await ui.page.waitForFunction(() => !document.querySelector('[data-moving]'));
    return ui;
}

const titles = (ui) => ui.phone.storedProfiles().map((each) => each.title).sort();
test('Text_beingTypedWhenTheWayIsCut_isStoredOnceItIsMended', async () => {
    const path = way();
    const ui = await openEditor(path);
    await field(ui.page).fill('Theatre');
    path.cut();
    await status(ui.page, 'lost');
    assert.deepEqual(titles(ui), ['Night', 'Work']);
    path.mend();
    await tryAgain(ui.page);
    await ui.page.waitForFunction(() => document.querySelector('h1')?.textContent.includes('Theatre'));
    assert.deepEqual(titles(ui), ['Night', 'Theatre']);
    assert.equal(await ui.page.locator('.unsaved').textContent(), '');
    await ui.close();
});

test('Text_lostOnTheWay_isStoredOnceItIsMended', async () => {
    const path = way();
    const ui = await openEditor(path);
    path.swallow();
    await field(ui.page).fill('Theatre');
    await field(ui.page).press('Enter');
    path.cut();
    await status(ui.page, 'lost');
    path.mend();
    await tryAgain(ui.page);
    await ui.page.waitForFunction(() => document.querySelector('h1')?.textContent.includes('Theatre'));
    assert.deepEqual(titles(ui), ['Night', 'Theatre']);
    await ui.close();
});

test('Text_beingTypedWhenTheApplicationIsKilled_isShownAsNotSavedByTheNextOne', async () => {
    const ui = await openEditor(null, { port: await freePort() });
    await field(ui.page).fill('Theatre');
    await ui.phone.kill();
    await status(ui.page, 'lost');
    assert.equal(await field(ui.page).inputValue(), 'Theatre');
    assert.equal(await ui.page.locator('.screens').evaluate((element) => element.inert), true);
    await ui.phone.startAgain();
    await tryAgain(ui.page);
    await ui.page.getByText('“Theatre” could not be saved.').waitFor();
    await row(ui.page, 'Night').waitFor();
    assert.deepEqual(titles(ui), ['Night', 'Work']);
    await ui.page.getByRole('button', { name: 'OK' }).click();
    await ui.page.getByRole('switch').click();
    await row(ui.page, 'Night').waitFor({ state: 'detached' });
    assert.equal(ui.phone.switchIsOn(), false);
    await ui.close();
});

test('Back_ofTheBrowser_onARealEditor_storesTheTitleAndGoesBack', async () => {
    const ui = await openEditor(null);
    await ui.page.waitForFunction(() => history.state.depth === 2);
    await field(ui.page).fill('Theatre');
    await ui.page.evaluate(() => history.back());
    await row(ui.page, 'Theatre').waitFor();
    assert.deepEqual(titles(ui), ['Night', 'Theatre']);
    await ui.page.waitForFunction(() => history.state.depth === 1);
    await ui.close();
});

test('Program_startedAnewWhileATextIsTyped_showsTheNewBundleOnTheSameScreen', async () => {
    const ui = await openEditor(null, { watch: true });
    await ui.page.evaluate(() => {
        globalThis.before = true;
        globalThis.said = [];
        new MutationObserver((changes) => globalThis.said.push(...changes.map(() => document.querySelector('.phone').dataset.connection)))
            .observe(document.querySelector('.phone'), { attributes: true, attributeFilter: ['data-connection'] });
    });
    await field(ui.page).fill('Theatre');
    await ui.phone.changeBundle('en.lproj/Localizable.strings', (text) => text.replace('= "Vibrate"', '= "Shake"'));
    await row(ui.page, 'Shake').waitFor();
    assert.equal(await field(ui.page).inputValue(), 'Theatre');
    assert.equal(await field(ui.page).evaluate((element) => element === document.activeElement), true);
    assert.equal(await ui.page.evaluate(() => globalThis.before && !globalThis.said.includes('lost')), true);
    await field(ui.page).press('Enter');
    await ui.page.waitForFunction(() => document.querySelector('h1')?.textContent.includes('Theatre'));
    assert.deepEqual(titles(ui), ['Night', 'Theatre']);
    await ui.close();
});
