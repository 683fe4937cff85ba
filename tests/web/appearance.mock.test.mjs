// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, deskSize, openPage, phoneSize, resize, settled, startBrowser } from './harness.mjs';
import { clipped, overlapping } from './layout-checks.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const scenes = {
    root: () => {},
    editing: (phone) => { phone.editing = true; },
    plain: (phone) => phone.show(phone.root(), phone.plain()),
    editor: (phone) => phone.show(phone.root(), phone.editor('Work', false)),
    long: (phone) => phone.show(phone.long(1000)),
    empty: (phone) => phone.show(phone.empty()),
    pane: (phone) => phone.show(phone.root(), phone.pane()),
    unset: (phone) => phone.show(phone.root(), phone.pane(null, null)),
    refusedHours: (phone) => { phone.show(phone.root(), phone.pane()); phone.perform({ do: 'pickTime', time: '6:00 PM' }); },
    tones: (phone) => phone.show(phone.root(), phone.tones()),
    toneless: (phone) => phone.show(phone.root(), phone.toneless()),
    calendars: (phone) => { phone.show(phone.root(), phone.calendars()); for (const at of [0, 2]) phone.perform({ do: 'tap', row: at }); },
    noCalendars: (phone) => phone.show(phone.root(), phone.calendars({})),
    networks: (phone) => phone.show(phone.root(), phone.networks()),
    noNetworks: (phone) => phone.show(phone.root(), phone.networks([])),
    eventStatus: (phone) => phone.show(phone.root(), phone.eventStatus()),
    alert: (phone) => phone.alert('Error', 'The profile could not be saved.'),
    activity: (phone) => phone.activity('Resetting'),
    deleting: (phone) => phone.perform({ do: 'delete', row: 3 }),
    sharing: (phone) => phone.perform({ do: 'bar', side: 'right', item: 1 }),
    posting: (phone) => { phone.perform({ do: 'bar', side: 'right', item: 1 }); phone.perform({ do: 'choose', action: 'Share 😘' }); },
    mail: (phone) => { phone.show(phone.root(), phone.plain()); phone.perform({ do: 'tap', row: 3 }); },
    modal: (phone) => phone.perform({ do: 'bar', side: 'right', item: 0 }),
};

for (const [name, arrange] of Object.entries(scenes)) {
    test(`Scene_${name}_isAccessibleInLightAndDark`, async () => {
        const ui = await openPage(session, { arrange });
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        ui.phone.device = { ...ui.phone.device, darkMode: true };
        ui.phone.changed();
        ui.server.push();
        await ui.page.waitForFunction(() => document.documentElement.dataset.theme === 'dark');
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.close();
    });
}

const sizes = { narrow: { width: 320, height: 640 }, phone: phoneSize, desk: deskSize };

for (const scene of ['root', 'editor', 'plain', 'deleting', 'posting', 'editing', 'pane', 'modal', 'tones', 'toneless', 'calendars', 'noCalendars', 'networks', 'noNetworks', 'eventStatus']) {
    test(`Layout_${scene}_clipsAndOverlapsNothingAtAnySizeAndDirection`, async () => {
        const ui = await openPage(session, { arrange: scenes[scene] });
        const check = async (where) => {
            await settled(ui.page);
            assert.deepEqual(await clipped(ui.page), [], where);
            assert.deepEqual(await overlapping(ui.page), [], where);
            assert.equal(await ui.page.locator('.page').last().evaluate((element) => element.scrollWidth <= element.clientWidth), true, where);
        };
        for (const rightToLeft of [false, true]) {
            ui.phone.device = { ...ui.phone.device, rightToLeft, language: rightToLeft ? 'ar' : 'en' };
            ui.phone.changed();
            ui.server.push();
            await ui.page.waitForFunction((direction) => document.documentElement.dir === direction, rightToLeft ? 'rtl' : 'ltr');
            for (const [name, size] of Object.entries(sizes)) {
                await resize(ui.page, size);
                await check(`${name}, right to left: ${rightToLeft}`);
            }
            await resize(ui.page, phoneSize);
            await ui.page.evaluate(() => { document.documentElement.style.fontSize = '200%'; });
            await check(`large type, right to left: ${rightToLeft}`);
            await ui.page.evaluate(() => { document.documentElement.style.fontSize = ''; });
        }
        await ui.close();
    });
}

test('Bar_ofALightPattern_isVeiledUntilWhiteTextCanBeRead', async () => {
    const ui = await openPage(session);
    const fill = ui.page.locator('.bar-fill');
    // The cautious veil gives way to the measured one.
    await ui.page.waitForFunction(() => !getComputedStyle(document.querySelector('.bar-fill')).backgroundImage.includes('0.55'));
    const [, alpha] = /rgba\(0, 0, 0, ([\d.]+)\)/.exec(await fill.evaluate((element) => getComputedStyle(element).backgroundImage));
    const linear = (part) => (part / 255 <= 0.04045 ? part / 255 / 12.92 : ((part / 255 + 0.055) / 1.055) ** 2.4);
    const [red, green, blue] = [0xd5, 0xe6, 0xff].map((part) => linear(part * (1 - alpha)));
    const contrast = 1.05 / (0.2126 * red + 0.7152 * green + 0.0722 * blue + 0.05);
    assert.ok(contrast >= 4.5 && contrast < 5, `contrast ${contrast}`);
    await ui.close();
});

test('Detail_ofAPatternColour_isASolidReadableColour', async () => {
    const ui = await openPage(session);
    const colour = await ui.page.locator('.detail').first().evaluate((element) => getComputedStyle(element).color);
    assert.match(colour, /^rgb\(\d+, \d+, \d+\)$/);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

/** Keeps in the page, as `fades`, how long each fade of a title that has begun takes, whoever began it. */
function keepFades() {
    globalThis.fades = [];
    const { animate } = Element.prototype;
    Element.prototype.animate = function keep(frames, options) {
        if (this.matches('.bar-title > *')) globalThis.fades.push(options.duration);
        return animate.call(this, frames, options);
    };
    addEventListener('animationstart', (event) => { if (event.target.matches('.bar-title > *')) globalThis.fades.push(event.animationName); });
}

test('Logo_fadesInOnceAnArrival', async () => {
    const ui = await openPage(session, { reducedMotion: 'no-preference', beforehand: keepFades });
    const fades = () => ui.page.evaluate(() => globalThis.fades);
    await settled(ui.page);
    assert.deepEqual(await fades(), [1000]);
    ui.phone.enabled = false;
    ui.phone.changed();
    ui.server.push();
    await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 2);
    assert.deepEqual(await fades(), [1000]);
    await ui.close();
});

test('Logo_uncoveredAgain_doesNotFadeAgain', async () => {
    const ui = await openPage(session, { reducedMotion: 'no-preference', beforehand: keepFades });
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await ui.page.getByRole('button', { name: /Back: / }).waitFor();
    await settled(ui.page);
    const before = await ui.page.evaluate(() => globalThis.fades);
    await ui.page.getByRole('button', { name: /Back: / }).click();
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).waitFor();
    await settled(ui.page);
    assert.deepEqual(await ui.page.evaluate(() => globalThis.fades), before);
    await ui.close();
});

test('Title_fades_asLongAsThePhoneAsksAndNotUnderReducedMotion', async () => {
    const asking = (seconds) => (phone) => { const root = phone.root(); const { bar } = root; phone.show({ ...root, bar: () => ({ ...bar(), titleFade: seconds }) }); };
    for (const [seconds, reducedMotion, wanted] of [[0.25, 'no-preference', [250]], [0, 'no-preference', []], [1, 'reduce', []]]) {
        const ui = await openPage(session, { arrange: asking(seconds), reducedMotion, beforehand: keepFades });
        await settled(ui.page);
        assert.deepEqual(await ui.page.evaluate(() => globalThis.fades), wanted);
        await ui.close();
    }
});

test('StatusBar_style_followsTheState', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.empty()) });
    const light = () => ui.page.locator('.status-bar').evaluate((element) => element.classList.contains('light-content'));
    assert.equal(await light(), false);
    await ui.page.locator('.bar-button.back').click();
    await ui.page.getByRole('switch').waitFor();
    assert.equal(await light(), true);
    await ui.close();
});

test('Phone_onADesk_isAFramedPhone', async () => {
    const ui = await openPage(session, { viewport: { width: 1280, height: 1000 } });
    const box = await ui.page.locator('.phone').boundingBox();
    assert.deepEqual([box.width, box.height, box.x], [390, 844, 445]);
    await ui.close();
});
