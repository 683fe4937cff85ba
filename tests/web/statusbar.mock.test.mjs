// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, openPage, startBrowser } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const clock = (page) => page.locator('.status-bar time');
const device = (more) => (phone) => { phone.device = { ...phone.device, ...more }; };
/** What a text shows, whichever blanks the language's form has. */
const plain = async (locator) => (await locator.textContent()).replace(/\s/g, ' ');

/** The time of a clock here that is so many hours away from the machine's, as the state tells it. */
function told(now, hours) {
    const time = new Date(now.getTime() - now.getTimezoneOffset() * 60_000 + hours * 3_600_000);
    return time.toISOString().slice(0, 19);
}

test('Clock_thatStandsStill_showsThePhonesTimeInTheLanguagesForm', async () => {
    for (const [language, time, shown] of [['en', '2026-11-20T09:41:00', '9:41 AM'], ['de-AT', '2026-11-20T09:41:59', '09:41'], ['en-GB', '2026-11-20T00:05:00', '00:05'], ['ar-EG', '2026-11-20T21:05:00', '٩:٠٥ م']]) {
        const ui = await openPage(session, { arrange: device({ language, clock: time, rightToLeft: language === 'ar-EG' }) });
        assert.equal((await plain(clock(ui.page))).replace(/[\u200e\u200f\u061c]/g, ''), shown, language);
        if (language === 'ar-EG') assert.deepEqual(await accessibilityProblems(ui.page), []);
        const before = await clock(ui.page).textContent();
        ui.phone.device = { ...ui.phone.device, clock: '2026-11-21T12:30:00' };
        ui.phone.changed();
        ui.server.push();
        await ui.page.waitForFunction((old) => document.querySelector('.status-bar time').textContent !== old, before);
        await ui.close();
    }
});

test('Clock_thatRuns_goesOnByItselfAndSendsNothing', async () => {
    const now = new Date(2026, 10, 20, 8, 59, 30);
    const ui = await openPage(session, { arrange: (phone) => device({ clock: told(now, 3), clockRuns: true })(phone), beforehand: `{
        const RealDate = Date;
        globalThis.leap = 0;
        const present = () => ${now.getTime()} + globalThis.leap;
        globalThis.Date = class extends RealDate { constructor(...args) { if (args.length) super(...args); else super(present()); } static now() { return present(); } };
        const { setTimeout: real } = globalThis;
        globalThis.waits = [];
        globalThis.setTimeout = (callback, time, ...rest) => { if (time > 1000 && time <= 60000) { globalThis.waits.push({ callback, time }); return 1e9 + globalThis.waits.length; } return real(callback, time, ...rest); };
    }` });
    assert.equal(await plain(clock(ui.page)), '11:59 AM');
    const sent = ui.phone.commands.length;
    // Half a minute is left of this one; then it is noon.
    const wait = await ui.page.evaluate(() => globalThis.waits.at(-1).time);
    assert.equal(wait, 30_000);
    await ui.page.evaluate(() => { globalThis.leap = 30_000; globalThis.waits.at(-1).callback(); });
    assert.equal(await plain(clock(ui.page)), '12:00 PM');
    assert.equal(await ui.page.evaluate(() => globalThis.waits.at(-1).time), 60_000);
    assert.equal(ui.phone.commands.length, sent);
    await ui.close();
});

test('WifiSign_isThereWhileThePhoneIsOnANetwork', async () => {
    const ui = await openPage(session, { arrange: device({ wifi: true }) });
    const sign = ui.page.getByRole('img', { name: 'Wi-Fi' });
    await sign.waitFor();
    const clockBox = await clock(ui.page).boundingBox();
    const phoneBox = await ui.page.locator('.phone').boundingBox();
    assert.ok(Math.abs(clockBox.x + clockBox.width / 2 - phoneBox.x - phoneBox.width / 2) < 1);
    ui.phone.device = { ...ui.phone.device, wifi: false };
    ui.phone.changed();
    ui.server.push();
    await sign.waitFor({ state: 'detached' });
    await ui.close();
});

test('StatusBar_ofAnApplicationThatTellsNoTime_hasNone', async () => {
    const ui = await openPage(session, { arrange: device({ clock: undefined, clockRuns: undefined, wifi: undefined }) });
    await ui.page.locator('.status-bar .icon-signal').waitFor();
    assert.equal(await clock(ui.page).count(), 0);
    await ui.close();
});
