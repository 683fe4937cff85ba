// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, openPage, startBrowser } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

test('Connection_malformedMessages_areIgnored', async () => {
    const ui = await openPage(session);
    for (const text of [
        '', 'nonsense', '[]', 'null', '42', '{}', '{"state":null}', '{"state":{"screen":7}}', '{"state":{"screen":{"rows":"x"}},"id":"y"', '{"id":{}}',
        JSON.stringify({ state: { revision: -5, screen: { rows: [{ index: 'x' }], bar: 3, links: {} } } }),
    ]) ui.server.raw(text);
    ui.phone.alert('Still', 'here');
    ui.server.push();
    await ui.page.getByRole('alertdialog').waitFor();
    assert.equal(await ui.page.getByRole('heading', { name: 'Sample Go', includeHidden: true }).count() > 0, true);
    await ui.close();
});

test('Connection_stateWithMissingParts_isDrawn', async () => {
    const ui = await openPage(session);
    ui.server.raw(JSON.stringify({
        state: { revision: 1e6, screen: { stack: ['A'], count: 1, rows: [{ index: 0, kind: 99, name: 'Odd', labels: [{ frame: [1, 2] }], properties: [], onTint: 'red' }, null, { index: -3 }] } },
    }));
    await ui.page.getByText('Odd', { exact: true }).waitFor();
    await ui.close();
});

test('Connection_olderRevision_isNotShown', async () => {
    const ui = await openPage(session);
    ui.phone.revision = 50;
    ui.server.push();
    const stale = { ...ui.phone.state(), revision: 3, presented: { kind: 'alert', title: 'Stale', message: null, actions: [] } };
    ui.server.raw(JSON.stringify({ state: stale }));
    ui.phone.alert('Fresh', null);
    ui.server.push();
    await ui.page.getByRole('alertdialog', { name: 'Fresh' }).waitFor();
    assert.equal(await ui.page.getByText('Stale').count(), 0);
    await ui.close();
});

test('Connection_dropped_saysSoAndComesBackByItself', async () => {
    const ui = await openPage(session);
    // It comes back so soon that what the banner says meanwhile is written down.
    await ui.page.evaluate(() => {
        globalThis.said = [];
        const banner = document.querySelector('.banner[role="status"]');
        new MutationObserver(() => globalThis.said.push(banner.textContent.trim())).observe(banner, { childList: true, characterData: true, subtree: true });
    });
    ui.phone.enabled = false;
    ui.phone.changed();
    ui.server.dropAll();
    await ui.page.waitForFunction(() => globalThis.said.some((text) => text.startsWith('Connection lost')));
    await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 2);
    await ui.page.waitForFunction(() => document.querySelector('.banner').textContent.trim() === '');
    await ui.close();
});

test('Connection_restartedApplication_isTakenOverAlthoughItsRevisionsBeginAnew', async () => {
    const ui = await openPage(session, { arrange: (phone) => { phone.revision = 900; } });
    ui.phone.revision = 1;
    ui.phone.enabled = false;
    ui.server.dropAll();
    await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 2);
    await ui.close();
});

test('Connection_neverMade_showsAFinishedScreenAndRecovers', async () => {
    const ui = await openPage(session);
    // The socket is refused from the first attempt on, as by an application that has gone away.
    await ui.page.addInitScript(() => {
        const { WebSocket: Real, setTimeout: later } = globalThis;
        globalThis.refusing = true;
        globalThis.WebSocket = class extends Real {
            constructor(url) {
                super(globalThis.refusing ? url.replace('/ws', '/nowhere') : url);
                // The page would try again by itself, at a time of its own; here only its button does.
                this.addEventListener('close', () => { globalThis.setTimeout = () => { globalThis.setTimeout = later; return 1; }; });
            }
        };
    });
    await ui.page.reload();
    await ui.page.getByRole('heading', { name: 'Settings cannot be reached' }).waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.evaluate(() => { globalThis.refusing = false; });
    await ui.page.getByRole('button', { name: 'Try Again' }).click();
    await ui.page.getByRole('switch').waitFor();
    assert.equal(await ui.page.getByText('Settings cannot be reached').count(), 0);
    await ui.close();
});

test('Images_unknownToTheServer_leaveAReadablePage', async () => {
    const ui = await openPage(session, {
        tolerate: /404/,
        arrange: (phone) => {
            const screen = phone.root();
            const bar = screen.bar();
            screen.bar = () => ({ ...bar, barTint: { pattern: 'missing', alpha: 1 }, titleView: null });
            screen.rows().at(-1).properties.iconImage = 'missing';
            phone.show(screen);
        },
    });
    const dark = await ui.page.locator('.bar-fill').evaluate((element) => getComputedStyle(element).backgroundColor);
    const parts = dark.match(/\d+/g).map(Number);
    assert.ok(parts.slice(0, 3).every((part) => part < 110), dark);
    assert.equal(await ui.page.getByRole('button', { name: 'Miscellaneous' }).isVisible(), true);
    await ui.close();
});
