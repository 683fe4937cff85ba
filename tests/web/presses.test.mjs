// SPDX-License-Identifier: MIT
// What a press stores, with the real application behind the page: hasty, far away, and with another page on the same phone.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { farAway, finger, middle } from './gestures.mjs';
import { openPage, settled, startBrowser, until } from './harness.mjs';
import { openPhone as openOn, profile, row } from './real-phone.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const openPhone = (options, pageOptions) => openOn(session, options, pageOptions);
const toggle = (page, name) => page.getByRole('switch', { name, exact: true });
const work = (values = {}) => profile('Work', { allDay: false, startTime: '9:00 AM', endTime: '5:00 PM', vibrate: false, ringerVolume: 0.5, playBackVolume: 0.25, ...values });
const stored = (ui) => ui.phone.storedProfiles().find((each) => each.identifier === 'ID-Work');

async function edit(ui) {
    await row(ui.page, 'Work').getByRole('button').first().click();
    await toggle(ui.page, 'Enable').waitFor();
    await settled(ui.page);
}

/** Changes something on purpose and waits until it is stored: what was stored before by mistake is in the file by then. */
async function storeSomething(ui) {
    const control = toggle(ui.page, 'Enable');
    const before = stored(ui).enabled;
    await control.press('Space');
    await until(() => stored(ui)?.enabled === !before, 'the profile was switched');
}

test('Editor_scrolledOverItsSliders_storesNoVolume', async () => {
    const ui = await openPhone({ profiles: [work()] }, { touch: true, viewport: { width: 390, height: 520 } });
    await edit(ui);
    const touch = await finger(ui.page);
    for (const name of ['Playback Volume', 'Ringer Volume', 'Playback Volume']) {
        const slider = ui.page.getByRole('slider', { name });
        await slider.evaluate((element) => element.scrollIntoView({ block: 'center' }));
        const box = await slider.boundingBox();
        const from = await ui.page.locator('.page').evaluate((element) => element.scrollTop);
        const x = box.x + box.width * 0.9;
        await touch.swipe([x, box.y + 22], [x, box.y - 130]);
        await ui.page.waitForFunction((start) => document.querySelector('.page').scrollTop !== start, from);
    }
    await storeSomething(ui);
    assert.deepEqual([stored(ui).playBackVolume, stored(ui).ringerVolume], [0.25, 0.5]);
    await ui.close();
});

test('Editor_sliderDraggedByItsThumb_storesWhereItWasLetGo', async () => {
    const ui = await openPhone({ profiles: [work()] }, { touch: true });
    await edit(ui);
    const slider = ui.page.getByRole('slider', { name: 'Ringer Volume' });
    await slider.scrollIntoViewIfNeeded();
    const [x, y] = await middle(slider);
    await (await finger(ui.page)).swipe([x, y], [x + 80, y]);
    const shown = Number(await slider.inputValue());
    assert.ok(shown > 0.6 && shown < 1);
    await until(() => Math.abs(stored(ui).ringerVolume - shown) < 1e-6, 'the volume was stored');
    await ui.close();
});

for (const [name, options] of [['moving', { reducedMotion: 'no-preference' }], ['fading', { fades: true }]]) {
    test(`Profile_pressedTwice_${name}_isOpenedAndNotChanged`, async () => {
        const ui = await openPhone({ profiles: [work(), ...['A', 'B', 'C', 'D', 'E', 'F'].map((each) => profile(each))] }, options);
        await settled(ui.page);
        const before = ui.phone.storedProfiles();
        const [x, y] = await middle(row(ui.page, 'Work'));
        // On the right, where the editor has its switches and sliders.
        const place = [x + 120, y];
        await ui.page.mouse.click(...place);
        // The first frames of the editor's coming.
        await ui.page.waitForFunction(() => document.querySelectorAll('.bodies .page').length === 2);
        await ui.page.mouse.click(...place, { clickCount: 2 });
        await toggle(ui.page, 'Enable').waitFor();
        await settled(ui.page);
        assert.equal(await ui.page.title(), 'Work');
        await storeSomething(ui);
        // Nothing but what was switched on purpose is other than before.
        for (const [at, each] of ui.phone.storedProfiles().entries()) {
            const expected = each.identifier === 'ID-Work' ? { ...before[at], enabled: false } : before[at];
            assert.deepEqual(Object.fromEntries(Object.keys(expected).map((key) => [key, each[key]])), expected);
        }
        await ui.close();
    });
}

test('Switches_pressedWhileAnswersAreOnTheirWay_areAllStored', async () => {
    const ui = await openPhone({ profiles: [work()] }, { beforehand: farAway(150) });
    await edit(ui);
    const places = [];
    for (const name of ['All Day', 'Vibrate']) places.push(await middle(toggle(ui.page, name)));
    // All Day takes the row of the hours away, so that Vibrate stands elsewhere when it is pressed there.
    for (const place of places) await ui.page.mouse.click(...place);
    await until(() => stored(ui).allDay === true && stored(ui).vibrate === true, 'both were stored');
    await row(ui.page, 'From').waitFor({ state: 'detached' });
    assert.equal(await toggle(ui.page, 'Vibrate').isChecked(), true);
    await ui.close();
});

test('Switch_pressedOnAScreenThatAnotherPageHasLeft_changesNothing', async () => {
    const ui = await openPhone({ profiles: [work()] }, { beforehand: farAway(150) });
    await edit(ui);
    const other = await openPage(session, { url: ui.phone.url });
    const place = await middle(toggle(ui.page, 'Enable'));
    const before = ui.phone.storedProfiles();
    await other.page.locator('.back').click();
    await other.page.waitForFunction(() => document.title !== 'Work');
    // This page is told of it only later.
    await ui.page.mouse.click(...place);
    await row(ui.page, 'Work').waitFor();
    await row(ui.page, 'Miscellaneous').getByRole('button').click();
    await ui.page.waitForFunction(() => document.title === 'Miscellaneous');
    assert.deepEqual(ui.phone.storedProfiles(), before);
    assert.equal(ui.phone.switchIsOn(), true);
    await other.close();
    await ui.close();
});

test('Typed_whenAnotherPageGoesBack_isShownAsNotSaved', async () => {
    const ui = await openPhone({ profiles: [work()] });
    await edit(ui);
    await ui.page.getByRole('textbox', { name: 'Title' }).fill('Theatre');
    const other = await openPage(session, { url: ui.phone.url });
    await other.page.locator('.back').click();
    await row(ui.page, 'Work').waitFor();
    await ui.page.waitForFunction(() => document.querySelector('.unsaved').textContent.includes('“Theatre” could not be saved.'));
    assert.equal(stored(ui).title, 'Work');
    await other.close();
    await ui.close();
});
