// SPDX-License-Identifier: MIT
// The plug-in on the page, with the real application behind it.
import assert from 'node:assert/strict';
import { createServer } from 'node:http';
import { after, before, test } from 'node:test';
import { accessibilityProblems, openPage, settled, startBrowser } from './harness.mjs';
import { requireModule } from './modules.mjs';
import { freePort, openPhone as openOn, profile, row, version } from './real-phone.mjs';

const { WebSocket } = requireModule('ws');

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const openPhone = (options, pageOptions) => openOn(session, options, pageOptions);

const texts = (page) => page.locator('.list').innerText();

test('RootList_opened_showsTheProfilesOfTheFile', async () => {
    const ui = await openPhone({ profiles: [profile('Work', { allDay: false, startTime: '9:05 AM', endTime: '11:30 PM' }), profile('Night', { enabled: false })] });
    const shown = await texts(ui.page);
    for (const text of ['Quietrix Go', 'Silence your iDevice without noice!!', 'Enabled', 'Active Profiles', 'Work', '9:05 AM - 11:30 PM', 'Inactive Profiles', 'Night', 'All Day', 'About', 'Miscellaneous', `Version ${version}. Quietrix Go`]) {
        assert.ok(shown.includes(text), `${text} is missing in: ${shown}`);
    }
    assert.match(await ui.page.locator('.product-title').first().innerText(), /Quietrix Go/);
    await ui.close();
});

test('RootList_switchTurned_isStoredForOtherProcesses', async () => {
    const ui = await openPhone({ profiles: [profile('Work')], enabled: false });
    await ui.page.getByRole('switch').click();
    await row(ui.page, 'Work').waitFor();
    assert.equal(ui.phone.switchIsOn(), true);
    await ui.page.getByRole('switch').click();
    await row(ui.page, 'Work').waitFor({ state: 'detached' });
    assert.equal(ui.phone.switchIsOn(), false);
    await ui.close();
});

test('RootList_profileSwipedAndConfirmed_leavesThePageAndTheFile', async () => {
    const ui = await openPhone({ profiles: [profile('Work'), profile('Night')] });
    const box = await row(ui.page, 'Work').boundingBox();
    await ui.page.mouse.move(box.x + box.width - 40, box.y + box.height / 2);
    await ui.page.mouse.down();
    await ui.page.mouse.move(box.x + box.width - 140, box.y + box.height / 2, { steps: 6 });
    await ui.page.mouse.up();
    await ui.page.locator('.list').getByRole('button', { name: /^Delete/ }).first().click();
    const sheet = ui.page.getByRole('dialog');
    await sheet.waitFor();
    assert.match(await sheet.innerText(), /Are you sure you want to delete the profile 'Work'\?/);
    await sheet.getByRole('button', { name: 'Delete' }).click();
    await row(ui.page, 'Work').waitFor({ state: 'detached' });
    const file = await ui.phone.readProfiles();
    assert.equal(file.includes('ID-Work'), false);
    assert.equal(file.includes('ID-Night'), true);
    await ui.close();
});

test('RootList_profileDeletedByKeyboard_asksAndCancelKeepsIt', async () => {
    const ui = await openPhone({ profiles: [profile('Work')] });
    await row(ui.page, 'Work').getByRole('button').first().focus();
    await ui.page.keyboard.press('Delete');
    const sheet = ui.page.getByRole('dialog');
    await sheet.waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.keyboard.press('Escape');
    await sheet.waitFor({ state: 'detached' });
    assert.equal(await row(ui.page, 'Work').count(), 1);
    assert.equal((await ui.phone.readProfiles()).includes('ID-Work'), true);
    await ui.close();
});

test('RootList_profileAddedByAnotherProcess_appearsByItself', async () => {
    const ui = await openPhone({ profiles: [profile('Work')] });
    await ui.phone.writeProfiles([profile('Work'), profile('Gym')]);
    ui.phone.post('com.velmora.ProfileAddedNotification');
    await row(ui.page, 'Gym').waitFor();
    await ui.close();
});

test('RootList_oneOfAThousandChangedElsewhere_isFollowed', async () => {
    const profiles = Array.from({ length: 1000 }, (_, number) => profile(`P${String(number).padStart(4, '0')}`));
    const ui = await openPhone({ profiles });
    await row(ui.page, 'P0001').waitFor();
    profiles[1].title = 'Renamed';
    await ui.phone.writeProfiles(profiles);
    ui.phone.post('com.velmora.ProfileChangedNotification');
    await row(ui.page, 'Renamed').waitFor();
    assert.equal(await row(ui.page, 'P0001').count(), 0);
    assert.ok(await ui.page.locator('.list .row').count() < 200);
    await ui.close();
});

test('Pages_twoOnOneApplication_showTheSamePhone', async () => {
    const ui = await openPhone({ profiles: [profile('Work')], enabled: false });
    const second = await openPage(session, { url: ui.phone.url });
    await ui.page.getByRole('switch').click();
    await row(second.page, 'Work').waitFor();
    assert.equal(await second.page.getByRole('switch').isChecked(), true);
    await second.close();
    await ui.close();
});

test('OtherServerOfTheMachine_visitedByTheSameBrowser_getsNothing', async () => {
    const ui = await openPhone({ profiles: [profile('Work')] });
    await row(ui.page, 'Miscellaneous').locator('img').waitFor();
    const address = new URL(ui.phone.url);
    const secret = address.hash.split('=')[1];
    assert.match(secret, /^[0-9a-f]{64}$/);
    const heard = [];
    const other = createServer((request, response) => {
        heard.push(`${request.method} ${request.url} ${JSON.stringify(request.rawHeaders)}`);
        response.writeHead(200, { 'Content-Type': 'text/html', 'Set-Cookie': 'visited=yes; Path=/' });
        response.end('<!doctype html><title>Another server</title><link rel="icon" href="data:,">');
    });
    await new Promise((resolve) => { other.listen(0, '127.0.0.1', resolve); });
    try {
        // In the tab that shows the phone, as a link would lead there, and in a tab of its own.
        const visitor = await ui.page.context().newPage();
        await visitor.goto(`http://127.0.0.1:${other.address().port}/`);
        const seen = await visitor.evaluate(async (phone) => {
            const attempt = (path, options) => fetch(phone + path, options).then((answer) => answer.text(), () => 'refused');
            const socket = await new Promise((resolve) => {
                const made = new WebSocket(`${phone.replace('http', 'ws')}/ws`);
                made.addEventListener('open', () => resolve('opened'));
                made.addEventListener('error', () => resolve('refused'));
            });
            const image = await new Promise((resolve) => {
                const made = new Image();
                made.addEventListener('load', () => resolve('shown'));
                made.addEventListener('error', () => resolve('refused'));
                made.src = `${phone}/image/Misc`;
            });
            return {
                socket, image,
                page: await attempt('/', { credentials: 'include' }),
                picture: await attempt('/image/Misc', { credentials: 'include', mode: 'no-cors' }),
                remembered: Object.values(sessionStorage).join(), cookie: document.cookie,
            };
        }, address.origin);
        assert.deepEqual(seen, { socket: 'refused', image: 'refused', page: 'refused', picture: seen.picture, remembered: '', cookie: 'visited=yes' });
        assert.ok(['', 'refused'].includes(seen.picture), seen.picture);
        await ui.page.goto(`http://127.0.0.1:${other.address().port}/`);
        assert.equal(heard.length, 2);
        for (const request of heard) assert.equal(request.includes(secret), false, request);

        // With all that it was told, it has no way in: neither for what the phone shows nor to act on it.
        const cookies = await ui.page.context().cookies();
        assert.deepEqual(cookies.map((cookie) => cookie.name), ['visited']);
        const headers = { Cookie: cookies.map((cookie) => `${cookie.name}=${cookie.value}`).join('; '), Origin: address.origin };
        for (const path of ['/image/Misc', '/sounds/texttone:Calendar%20Alert']) assert.equal((await fetch(address.origin + path, { headers })).status, 401);
        const socket = new WebSocket(`${address.origin.replace('http', 'ws')}/ws`, { headers });
        const code = await new Promise((resolve) => {
            socket.on('open', () => socket.send('{"do":"set","row":1,"value":false}'));
            socket.on('message', (text) => resolve(String(text)));
            socket.on('close', resolve);
            socket.on('error', resolve);
        });
        assert.equal(code, 4401);
        assert.equal(ui.phone.switchIsOn(), true);
        // Back in the phone's tab, the page is let in again.
        await ui.page.goBack();
        await row(ui.page, 'Work').waitFor();
    } finally {
        other.closeAllConnections();
        await new Promise((resolve) => { other.close(resolve); });
    }
    await ui.close();
});

test('Application_startedAgainOnItsPort_isGoneOnWithByAnOpenPage', async () => {
    const ui = await openPhone({ profiles: [profile('Work')], port: await freePort() });
    await row(ui.page, 'Work').waitFor();
    const before = ui.phone.url;
    await ui.page.evaluate(() => {
        globalThis.passed = [];
        const phone = document.querySelector('.phone');
        new MutationObserver(() => globalThis.passed.push(phone.dataset.connection)).observe(phone, { attributeFilter: ['data-connection'] });
    });
    await ui.phone.restart();
    assert.equal(ui.phone.url, before);
    await ui.page.waitForFunction(() => globalThis.passed.includes('lost') && globalThis.passed.at(-1) === 'open');
    await ui.page.getByRole('switch').click();
    await row(ui.page, 'Work').waitFor({ state: 'detached' });
    assert.equal(ui.phone.switchIsOn(), false);
    await ui.page.reload();
    await ui.page.getByRole('switch').waitFor();
    await ui.close();
});

test('Application_startedAgainWithANewSecret_isSaidToBeAndOpensAtItsNewAddress', async () => {
    const ui = await openPhone({ profiles: [profile('Work')], port: await freePort() });
    await row(ui.page, 'Work').waitFor();
    await ui.phone.restart('--new-secret');
    await ui.page.getByText('Settings was restarted. Open the address that it printed.').waitFor();
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.goto(ui.phone.url);
    await row(ui.page, 'Work').waitFor();
    await ui.close();
});

test('Screens_miscellaneousAndAdd_canBeEnteredAndLeft', async () => {
    const ui = await openPhone({ profiles: [profile('Work')] });
    await row(ui.page, 'Miscellaneous').getByRole('button').first().click();
    await row(ui.page, 'Report Problem').waitFor();
    await settled(ui.page);
    await ui.page.getByRole('button', { name: /Quietrix Go|Back/ }).first().click();
    await row(ui.page, 'Work').waitFor();
    await settled(ui.page);
    await ui.page.locator('.bar-side.trailing .bar-button').last().click();
    await ui.page.getByText('New Profile').first().waitFor();
    await settled(ui.page);
    await ui.page.getByRole('button', { name: 'Cancel' }).click();
    await row(ui.page, 'Work').waitFor();
    await ui.close();
});

for (const [name, device] of [['light', {}], ['dark', { darkMode: 'true' }], ['rightToLeft', { languages: 'ar' }], ['german', { languages: 'de' }]]) {
    test(`RootList_${name}_isAccessible`, async () => {
        const ui = await openPhone({ device, profiles: [profile('Work'), profile('Night', { enabled: false })] });
        await row(ui.page, 'Work').waitFor();
        assert.equal(await ui.page.evaluate(() => document.documentElement.dir || 'ltr'), name === 'rightToLeft' ? 'rtl' : 'ltr');
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.close();
    });
}
