// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, openPage, phoneSize, settled, startBrowser } from './harness.mjs';
import { row } from './mock-rows.mjs';
import { images } from './mock-server.mjs';

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

test('Connection_applicationOfAnotherVersion_isLeftWithTheWordsWhatToDo', async () => {
    const ui = await openPage(session);
    // It was upgraded and started anew; this page is the old one's.
    ui.phone.protocol = 2;
    ui.server.dropAll();
    await ui.page.getByRole('heading', { name: 'This page and Settings are of different versions. Reload the page, or start Settings anew.' }).waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    const commands = ui.phone.commands.length;
    // The page that comes with a reload may speak with it; this one is of the old version still.
    await ui.page.reload();
    await ui.page.getByRole('heading', { name: 'This page and Settings are of different versions.' }).waitFor();
    assert.deepEqual(ui.phone.commands.slice(commands).filter((command) => command.do !== 'state'), []);
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

const restarted = 'Settings was restarted. Open the address that it printed.';
const uninvited = 'Open the address that Settings printed when it started.';

test('Secret_ofTheAddress_isTakenOutOfItAndSurvivesAReload', async () => {
    const ui = await openPage(session);
    assert.equal(ui.page.url(), ui.server.address);
    await ui.page.reload();
    await ui.page.getByRole('switch').waitFor();
    assert.equal(ui.page.url(), ui.server.address);
    const kinds = ui.server.firstMessages.map((message) => Object.keys(message).join());
    assert.deepEqual(kinds, ['prove', 'secret', 'prove', 'secret']);
    assert.notEqual(ui.server.firstMessages[0].prove, ui.server.firstMessages[2].prove);
    await ui.close();
});

test('Secret_keptInATab_isThatTabsOnly', async () => {
    const ui = await openPage(session);
    const stored = await ui.page.evaluate(() => [Object.values(globalThis.sessionStorage), Object.values(globalThis.localStorage), document.cookie]);
    assert.deepEqual(stored, [[ui.server.secret], [], '']);
    const other = await ui.page.context().newPage();
    await other.goto(ui.server.address);
    await other.getByText(uninvited).waitFor();
    await ui.close();
});

test('Secret_missing_isSaidAndNobodyIsCalled', async () => {
    for (const colorScheme of ['light', 'dark']) {
        const ui = await openPage(session, { url: (server) => server.address, ready: '.notice', colorScheme });
        await ui.page.getByRole('heading', { name: uninvited }).waitFor();
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        assert.equal(await ui.page.getByRole('button').count(), 0);
        assert.deepEqual(ui.server.firstMessages, []);
        // The address in the same tab then changes nothing but the fragment.
        await ui.page.goto(ui.server.url);
        await ui.page.getByRole('switch').waitFor();
        assert.equal(ui.page.url(), ui.server.address);
        await ui.close();
    }
});

const refusals = {
    byItsCode: (server) => { server.secret = 'ff'.repeat(32); },
    byItsProof: (server) => { server.secret = server.provenSecret = 'ff'.repeat(32); },
};

for (const [way, refuse] of Object.entries(refusals)) {
    for (const darkMode of [false, true]) {
        test(`Secret_refused_${way}_${darkMode ? 'dark' : 'light'}_isSaidInPlaceOfTheScreenAndNotTriedAgain`, async () => {
            const ui = await openPage(session, { arrange: (phone) => { phone.device.darkMode = darkMode; phone.alert('Still', 'open'); } });
            await ui.page.getByRole('alertdialog').waitFor();
            const before = ui.server.firstMessages.length;
            refuse(ui.server);
            ui.server.dropAll();
            await ui.page.getByRole('heading', { name: restarted }).waitFor();
            assert.equal(await ui.page.getByText('Reconnecting').count(), 0);
            assert.equal(await ui.page.locator('.navigator, .row, [role="alertdialog"], button').count(), 0);
            assert.equal(await ui.page.title(), 'Settings');
            assert.deepEqual(await accessibilityProblems(ui.page), []);
            const said = ui.server.firstMessages.slice(before).map((message) => Object.keys(message).join());
            assert.deepEqual(said, way === 'byItsCode' ? ['prove', 'secret'] : ['prove'], 'who cannot prove to know the secret is not told it');
            // What would end the pause between two attempts has none to end.
            await ui.page.evaluate(() => { window.dispatchEvent(new Event('online')); document.dispatchEvent(new Event('visibilitychange')); });
            ui.server.provenSecret = ui.server.secret;
            await ui.page.goto(ui.server.url);
            await ui.page.getByRole('alertdialog', { name: 'Still' }).waitFor();
            assert.equal(ui.server.firstMessages.length, before + said.length + 2, 'only the new address was tried');
            await ui.close();
        });
    }
}

test('Secret_refusedInOtherLanguages_isSaidInThem', async () => {
    for (const [language, words] of [['de', 'Einstellungen wurde neu gestartet'], ['ar', 'أُعيد تشغيل الإعدادات']]) {
        const ui = await openPage(session, { arrange: (phone) => { Object.assign(phone.device, { language, rightToLeft: language === 'ar' }); } });
        refusals.byItsCode(ui.server);
        ui.server.dropAll();
        const heading = ui.page.getByRole('heading', { name: words });
        await heading.waitFor();
        const box = await heading.boundingBox();
        assert.ok(box.x >= 16 && box.x + box.width <= phoneSize.width - 16, `it is ${box.width} wide at ${box.x}`);
        await ui.close();
    }
});

test('Words_ofALanguageThatIsLate_areWaitedForWithWhatIsSaidInThem', async () => {
    let release;
    const asked = new Promise((resolve) => { release = resolve; });
    let reached;
    const loading = new Promise((resolve) => { reached = resolve; });
    const ui = await openPage(session, { between: (page) => page.route('**/words/de.js', async (route) => { reached(); await asked; await route.continue(); }) });
    ui.phone.device = { ...ui.phone.device, language: 'de' };
    ui.phone.push(ui.phone.plain('Verschiedenes'));
    ui.server.push();
    await loading;
    ui.phone.alert('Danach', null);
    ui.server.push();
    assert.equal(await ui.page.evaluate(() => document.documentElement.lang), 'en', 'nothing is said half in one language');
    release();
    await ui.page.getByRole('alertdialog', { name: 'Danach' }).waitFor();
    assert.equal(await ui.page.getByRole('button', { name: /^Zurück/, includeHidden: true }).count(), 1);
    await ui.close();
});

test('Words_thatCannotBeFetched_areInEnglish', async () => {
    const ui = await openPage(session, { tolerate: /Failed to load|ERR_FAILED/, between: (page) => page.route('**/words/fr.js', (route) => route.abort()) });
    ui.phone.device = { ...ui.phone.device, language: 'fr' };
    ui.phone.push(ui.phone.plain('Divers'));
    ui.server.push();
    await ui.page.getByRole('heading', { level: 1, name: 'Divers' }).waitFor();
    assert.equal(await ui.page.getByRole('button', { name: /^Back/ }).count(), 1);
    await ui.close();
});

test('Images_areAskedForWithTheSecretAndDrawnFromTheDocumentsOwnAddresses', async () => {
    const asked = [];
    const ui = await openPage(session, { url: (server) => server.url, beforehand: () => {
        const ask = globalThis.fetch;
        globalThis.asked = [];
        globalThis.fetch = (path, options) => { globalThis.asked.push([path, options.headers.Authorization]); return ask(path, options); };
    } });
    await ui.page.waitForFunction(() => document.querySelector('img.row-icon')?.complete && document.querySelector('img.logo:not(.coming)')?.complete);
    for (const [path, authorization] of await ui.page.evaluate(() => globalThis.asked)) {
        asked.push(path.split('?')[0]);
        assert.equal(authorization, `Bearer ${ui.server.secret}`);
        assert.equal(path.includes(ui.server.secret), false);
    }
    assert.deepEqual(asked.sort(), [...new Set(asked)], 'each once');
    assert.ok(asked.includes('/image/Misc') && asked.includes('/image/nav'), asked.join());
    const shown = await ui.page.evaluate(() => [...document.images].map((image) => [image.src.slice(0, 5), image.naturalWidth > 0]));
    assert.ok(shown.length > 0 && shown.every(([scheme, there]) => scheme === 'blob:' && there), JSON.stringify(shown));
    assert.match(await ui.page.locator('.bar-fill').evaluate((element) => getComputedStyle(element).backgroundImage), /url\("blob:/);
    await ui.close();
});

test('Images_ofScreensLeftLongAgo_areReleased', async () => {
    for (let at = 0; at < 400; at += 1) images[`made-${at}`] = images.Misc;
    const ui = await openPage(session, { beforehand: () => {
        globalThis.held = new Set();
        const { createObjectURL, revokeObjectURL } = URL;
        URL.createObjectURL = (blob) => { const address = createObjectURL.call(URL, blob); globalThis.held.add(address); return address; };
        URL.revokeObjectURL = (address) => { globalThis.held.delete(address); revokeObjectURL.call(URL, address); };
    } });
    for (let at = 0; at < 10; at += 1) {
        const name = `Screen ${at}`;
        const rows = Array.from({ length: 40 }, (_unused, each) => row(1, `Row ${each}`, { properties: { iconImage: `made-${at * 40 + each}` } }));
        ui.phone.show({ ...ui.phone.plain(name), class: `Screen${at}`, links: [], rows: () => rows });
        ui.server.push();
        await ui.page.getByRole('heading', { name }).waitFor();
        // All of what is in the document is drawn.
        await ui.page.waitForFunction(() => document.querySelectorAll('.row').length > 10 && [...document.querySelectorAll('.row')].every((each) => each.querySelector('img.row-icon')?.complete));
    }
    await settled(ui.page);
    const held = await ui.page.evaluate(() => globalThis.held.size);
    // Those of the last two screens, and some for the way back.
    assert.ok(held <= 64 + 2 * 40, `${held} are held`);
    await ui.close();
});

test('Images_lostOnTheWay_comeWithTheNextConnection', async () => {
    const ui = await openPage(session, { tolerate: /503/, beforehand: () => {
        const ask = globalThis.fetch;
        globalThis.broken = true;
        globalThis.fetch = (path, options) => (globalThis.broken ? Promise.reject(new TypeError('lost')) : ask(path, options));
    } });
    assert.equal(await ui.page.locator('img.row-icon').count(), 0);
    await ui.page.evaluate(() => { globalThis.broken = false; });
    ui.server.dropAll();
    await ui.page.locator('img.row-icon').first().waitFor();
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
