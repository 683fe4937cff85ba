// SPDX-License-Identifier: MIT
// Motions that are turned around, the cross-fades in place of motions, and how long a row stays highlighted.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { advanceTo, drawn, freeze, middle } from './gestures.mjs';
import { accessibilityProblems, finishAnimations, lastCommand, openPage, settled, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const title = (page, name) => page.waitForFunction((wanted) => document.title === wanted, name);
/** How the parts of the screens are drawn, in the order in which they lie: a part that is there before and after has one place in both. */
const parts = (page, selector) => page.locator(selector).evaluateAll((all) => all.map((element) => {
    const { left, top } = element.getBoundingClientRect();
    return { left, top, opacity: Number(getComputedStyle(element).opacity) };
}));

/** Fails where a part is drawn elsewhere, or more or less clearly, than before. */
function continues(before, after, what) {
    assert.equal(after.length, before.length, what);
    before.forEach((one, at) => {
        for (const property of ['left', 'top', 'opacity']) {
            const jump = Math.abs(after[at][property] - one[property]);
            assert.ok(jump < (property === 'opacity' ? 0.01 : 1), `${what} ${at} jumps from ${JSON.stringify(one)} to ${JSON.stringify(after[at])}`);
        }
    });
}

for (const [name, device] of [['leftToRight', {}], ['rightToLeft', { rightToLeft: true, language: 'ar' }]]) {
    for (const [kind, options] of [['motion', { reducedMotion: 'no-preference' }], ['crossFade', { reducedMotion: 'reduce', fades: true }]]) {
        test(`Push_turnedAround_${kind}_${name}_goesOnFromWhereItIs`, async () => {
            const ui = await openPage(session, { ...options, arrange: (phone) => { phone.device = { ...phone.device, ...device }; } });
            await settled(ui.page);
            await freeze(ui.page);
            await ui.page.locator('.row', { hasText: 'Miscellaneous' }).getByRole('button').click();
            await title(ui.page, 'Miscellaneous');
            // There and back, twice: what leaves and what comes change places each time.
            for (const [part, way] of [[0.3, 'back'], [0.4, 'push'], [0.2, 'back']]) {
                await advanceTo(ui.page, part);
                const selectors = ['.bodies > .page', '.bars .bar-content', '.bars .bar-fill'];
                const before = [];
                for (const selector of selectors) before.push(await parts(ui.page, selector));
                const between = ({ left, opacity }) => (kind === 'motion' ? Math.abs(left) > 1 && Math.abs(left) < 389 : opacity > 0 && opacity < 1);
                assert.ok(before[0].some(between), `the screens are under way: ${JSON.stringify(before[0])}`);
                if (way === 'back') ui.phone.perform({ do: 'back' });
                else ui.phone.push(ui.phone.plain());
                ui.server.push();
                await title(ui.page, way === 'back' ? 'Sample Go' : 'Miscellaneous');
                for (const [at, selector] of selectors.entries()) {
                    const after = await parts(ui.page, selector);
                    // A screen that is opened anew lies above what was there.
                    continues(before[at], after.slice(0, before[at].length), `${way}: ${selector}`);
                }
            }
            await finishAnimations(ui.page);
            assert.equal(await ui.page.locator('.bodies .page').count(), 1);
            assert.equal(await ui.page.locator('.bars .bar').count(), 1);
            assert.deepEqual(await parts(ui.page, '.bodies > .page'), [{ left: 0, top: (await parts(ui.page, '.bodies'))[0].top, opacity: 1 }]);
            await ui.page.getByRole('switch').click();
            await until(() => lastCommand(ui.phone, 'set'), 'the root answers');
            await ui.close();
        });
    }
}

for (const [kind, options] of [['motion', { reducedMotion: 'no-preference' }], ['crossFade', { reducedMotion: 'reduce', fades: true }]]) {
    test(`Sheet_escapedWhileItComes_${kind}_goesOnFromWhereItIs`, async () => {
        const ui = await openPage(session, options);
        await settled(ui.page);
        await freeze(ui.page);
        await ui.page.locator('[data-deletable] .cell').first().press('Delete');
        await ui.page.getByRole('dialog').waitFor();
        await advanceTo(ui.page, 0.3);
        const before = [await drawn(ui.page.locator('.layer')), await drawn(ui.page.locator('.sheet'))];
        assert.ok(before[0].opacity > 0 && before[0].opacity < 1);
        await ui.page.keyboard.press('Escape');
        await ui.page.waitForFunction(() => document.querySelector('.layer').inert);
        continues(before, [await drawn(ui.page.locator('.layer')), await drawn(ui.page.locator('.sheet'))], 'the sheet');
        await finishAnimations(ui.page);
        assert.equal(await ui.page.locator('.layer').count(), 0);
        await ui.close();
    });

    test(`Modal_escapedWhileItComes_${kind}_goesOnFromWhereItIs`, async () => {
        const ui = await openPage(session, options);
        await settled(ui.page);
        await freeze(ui.page);
        await ui.page.getByRole('button', { name: 'Add' }).click();
        await title(ui.page, 'New Profile');
        await advanceTo(ui.page, 0.3);
        const before = await parts(ui.page, '.navigator');
        await ui.page.keyboard.press('Escape');
        await title(ui.page, 'Sample Go');
        continues(before, await parts(ui.page, '.navigator'), 'the modal');
        await finishAnimations(ui.page);
        assert.equal(await ui.page.locator('.navigator').count(), 1);
        await ui.close();
    });
}

test('Alert_closedWhileItComes_goesOnFromWhereItIs', async () => {
    const ui = await openPage(session, { reducedMotion: 'no-preference' });
    await settled(ui.page);
    await freeze(ui.page);
    ui.phone.alert('Error', 'The disk is full.');
    ui.server.push();
    await ui.page.getByRole('alertdialog').waitFor();
    await advanceTo(ui.page, 0.4);
    const before = [await drawn(ui.page.locator('.layer')), await drawn(ui.page.locator('.alert'))];
    await ui.page.keyboard.press('Escape');
    await ui.page.waitForFunction(() => document.querySelector('.layer').inert);
    continues(before, [await drawn(ui.page.locator('.layer')), await drawn(ui.page.locator('.alert'))], 'the alert');
    await ui.close();
});

test('Screens_underReducedMotion_fadeAndDoNotMove', async () => {
    const ui = await openPage(session, { fades: true });
    await settled(ui.page);
    await ui.page.evaluate(() => {
        globalThis.begun = [];
        const { animate } = Element.prototype;
        Element.prototype.animate = function (frames, options) { globalThis.begun.push(frames); return animate.call(this, frames, options); };
    });
    const begun = async (what) => {
        const frames = await ui.page.evaluate(() => globalThis.begun.splice(0).flat());
        assert.ok(frames.length > 0 && frames.some((frame) => frame.opacity === 0), `${what} fades`);
        assert.deepEqual(frames.filter((frame) => frame.transform !== undefined && frame.transform !== 'none'), [], `${what} does not move`);
        await settled(ui.page);
    };
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await title(ui.page, 'Miscellaneous');
    await begun('a push');
    await ui.page.getByRole('button', { name: /^Back/ }).click();
    await title(ui.page, 'Sample Go');
    await begun('a pop');
    await ui.page.getByRole('button', { name: 'Add' }).click();
    await title(ui.page, 'New Profile');
    await begun('a modal');
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.getByRole('button', { name: 'Cancel' }).click();
    await title(ui.page, 'Sample Go');
    await begun("a modal's end");
    await ui.page.getByRole('button', { name: 'Twitter' }).click();
    await ui.page.getByRole('dialog').waitFor();
    await begun('a sheet');
    await ui.page.keyboard.press('Escape');
    await ui.page.waitForFunction(() => !document.querySelector('.stage').inert);
    await begun("a sheet's end");
    await ui.page.getByRole('switch').click();
    await ui.page.waitForFunction(() => document.querySelectorAll('.list .row').length === 2);
    assert.deepEqual(await ui.page.evaluate(() => globalThis.begun), [], 'rows are there or not');
    await ui.close();
});

const ground = (locator) => locator.evaluate((element) => getComputedStyle(element).backgroundColor);
const white = 'rgb(255, 255, 255)';
const pressed = 'rgb(209, 209, 214)';

test('Row_tapped_staysHighlightedUntilItsScreenIsBack', async () => {
    const ui = await openPage(session, { reducedMotion: 'no-preference' });
    await settled(ui.page);
    const cell = ui.page.locator('.row', { hasText: 'Miscellaneous' }).locator('.cell');
    ui.server.hold = true;
    const place = await middle(cell);
    await ui.page.mouse.click(...place);
    await ui.page.mouse.move(place[0], 5);
    await until(() => ui.server.held.length > 0, 'the tap was sent');
    await settled(ui.page);
    assert.equal(await ground(cell), pressed, 'while the answer is awaited');
    await freeze(ui.page);
    ui.server.hold = false;
    for (const answer of ui.server.held) answer();
    await title(ui.page, 'Miscellaneous');
    await advanceTo(ui.page, 0.5);
    assert.equal(await ground(cell), pressed, 'while its screen moves away');
    await finishAnimations(ui.page);
    // The way back takes so long that the fade can be seen in it.
    await ui.page.evaluate(() => document.documentElement.style.setProperty('--highlight-time', '3600s'));
    await ui.page.getByRole('button', { name: /^Back/ }).click();
    await title(ui.page, 'Sample Go');
    await ui.page.waitForFunction(() => document.getAnimations().some((each) => each.transitionProperty === 'background-color'));
    assert.equal(await cell.evaluate((element) => element.closest('.row').dataset.pressed), undefined);
    const [red] = (await ground(cell)).match(/[\d.]+/g).map(Number);
    assert.ok(red < 215, 'the fade begins at the highlight');
    await finishAnimations(ui.page);
    assert.equal(await ground(cell), white);
    await ui.close();
});

test('Row_tappedWithoutEffectOnTheScreen_fadesWithTheAnswer', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.editor('Work', false)) });
    const cell = ui.page.locator('.row', { hasText: 'Home' }).locator('.cell');
    await cell.scrollIntoViewIfNeeded();
    ui.server.hold = true;
    const place = await middle(cell);
    await ui.page.mouse.click(...place);
    await ui.page.mouse.move(place[0], 5);
    await until(() => ui.server.held.length > 0, 'the tap was sent');
    assert.equal(await ground(cell), pressed);
    ui.server.hold = false;
    for (const answer of ui.server.held) answer();
    await ui.page.waitForFunction(() => !document.querySelector('.row[data-pressed]'));
    await settled(ui.page);
    assert.equal(await ground(cell), white);
    await ui.close();
});

test('Row_tappedWhenTheConnectionGoes_fades', async () => {
    const ui = await openPage(session);
    ui.server.hold = true;
    await ui.page.getByRole('button', { name: 'Miscellaneous' }).click();
    await until(() => ui.server.held.length > 0, 'the tap was sent');
    assert.equal(await ui.page.locator('.row[data-pressed]').count(), 1);
    ui.server.dropAll();
    await ui.page.waitForFunction(() => !document.querySelector('.row[data-pressed]'));
    ui.server.hold = false;
    await ui.close();
});

test('Row_rebuiltElsewhere_neitherMovesNorFlashes', async () => {
    const ui = await openPage(session, { reducedMotion: 'no-preference' });
    await settled(ui.page);
    await ui.page.evaluate(() => {
        globalThis.begun = 0;
        const { animate } = Element.prototype;
        Element.prototype.animate = function (...args) { globalThis.begun += 1; return animate.apply(this, args); };
        document.addEventListener('transitionrun', () => { globalThis.begun += 1; });
        globalThis.rows = [...document.querySelectorAll('.list .row')];
    });
    // Another process has changed a profile; the screen makes all of its rows anew.
    ui.phone.active = ui.phone.active.map((each, at) => ({ ...each, key: `new ${at}`, name: at === 0 ? 'Office' : each.name, text: at === 0 ? 'Office' : each.text, detailText: 'All Day' }));
    ui.phone.inactive = ui.phone.inactive.map((each, at) => ({ ...each, key: `other ${at}` }));
    Object.assign(ui.phone.levels[0][0], ui.phone.root());
    ui.phone.changed();
    ui.server.push();
    await ui.page.getByText('Office', { exact: true }).waitFor();
    await settled(ui.page);
    assert.equal(await ui.page.evaluate(() => globalThis.begun), 0);
    assert.equal(await ui.page.evaluate(() => [...document.querySelectorAll('.list .row')].every((row, at) => row === globalThis.rows[at])), true);
    assert.equal(await ui.page.locator('.ghost').count(), 0);
    await ui.close();
});
