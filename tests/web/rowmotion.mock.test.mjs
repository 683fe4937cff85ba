// SPDX-License-Identifier: MIT
// Rows that slide in and out.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { finishAnimations, lastCommand, openPage, settled, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const folding = (count, on) => (phone) => phone.show(phone.root(), phone.folding(count, on));
const control = (page) => page.getByRole('switch', { name: 'Unfolded' });
const rows = (page, count) => page.waitForFunction((wanted) => document.querySelectorAll('.list .row').length === wanted, count);

/** Lets every motion that begins from now on stand still at its start. */
const freeze = (page) => page.evaluate(() => {
    const { animate } = Element.prototype;
    Element.prototype.animate = function (...args) {
        const animation = animate.apply(this, args);
        animation.pause();
        return animation;
    };
});

/** Brings the motions that stand still to the middle of their time. */
const halfway = (page) => page.evaluate(() => { for (const animation of document.getAnimations()) animation.currentTime = animation.effect.getTiming().duration / 2; });

const drawn = (page, text) => page.locator('.list .row', { hasText: text }).evaluate((element) => ({ top: element.getBoundingClientRect().top, opacity: Number(getComputedStyle(element).opacity) }));

function fold(ui, on) {
    ui.phone.screen.fold.value = on;
    ui.phone.changed();
    ui.server.push();
}

async function restsWell(page, count) {
    await rows(page, count);
    await settled(page);
    await page.waitForFunction(() => document.querySelectorAll('.ghost').length === 0);
    assert.equal(await page.evaluate(() => [...document.querySelectorAll('.list [data-name]')].every((each) => getComputedStyle(each).transform === 'none' && getComputedStyle(each).opacity === '1')), true);
}

for (const count of [1, 21]) {
    test(`Rows_${count}RemovedAndInserted_slideAndKeepTheFocusOnTheSwitch`, async () => {
        const ui = await openPage(session, { arrange: folding(count), reducedMotion: 'no-preference' });
        await settled(ui.page);
        await freeze(ui.page);
        await control(ui.page).focus();
        await ui.page.keyboard.press('Space');
        await rows(ui.page, 2);
        // As many leave as could be seen.
        const leaving = await ui.page.locator('.ghost').count();
        assert.ok(count === 1 ? leaving === 1 : leaving > 10, `${leaving} rows leave`);
        await ui.page.keyboard.press('Space');
        await rows(ui.page, count + 2);
        assert.equal((await drawn(ui.page, /^\s*Folded 1\s*$/)).opacity, 0);
        assert.equal(await control(ui.page).evaluate((element) => element === document.activeElement), true);
        await finishAnimations(ui.page);
        await restsWell(ui.page, count + 2);
        assert.deepEqual(ui.phone.commands.filter((command) => command.do === 'set').map((command) => command.value), [false, true]);
        await ui.close();
    });

    test(`Rows_${count}PatchedInQuickSuccession_goOnFromWhatIsShown`, async () => {
        const ui = await openPage(session, { arrange: folding(count), reducedMotion: 'no-preference', viewport: { width: 390, height: 1600 } });
        await settled(ui.page);
        await freeze(ui.page);
        let on = true;
        for (let patch = 0; patch < 5; patch += 1) {
            on = !on;
            await halfway(ui.page);
            const before = await drawn(ui.page, 'Last');
            const first = on ? null : await drawn(ui.page, /^\s*Folded 1\s*$/);
            fold(ui, on);
            await rows(ui.page, on ? count + 2 : 2);
            const after = await drawn(ui.page, 'Last');
            assert.ok(Math.abs(after.top - before.top) < 1, `jumps from ${before.top} to ${after.top}`);
            if (!first) continue;
            const ghost = await ui.page.locator('.ghost', { hasText: /^\s*Folded 1\s*$/ }).last().evaluate((element) => Number(getComputedStyle(element).opacity));
            assert.ok(Math.abs(ghost - first.opacity) < 0.01, `flashes from ${first.opacity} to ${ghost}`);
        }
        await finishAnimations(ui.page);
        await restsWell(ui.page, 2);
        await ui.close();
    });
}

test('Rows_fadingInWhileOthersCome_doNotFlash', async () => {
    const ui = await openPage(session, { arrange: folding(3, false), reducedMotion: 'no-preference' });
    await settled(ui.page);
    await freeze(ui.page);
    fold(ui, true);
    await rows(ui.page, 5);
    await halfway(ui.page);
    const before = await drawn(ui.page, /^\s*Folded 2\s*$/);
    ui.phone.screen.fold.name = ui.phone.screen.fold.text = 'Renamed';
    const inner = ui.phone.screen.rows;
    ui.phone.screen.rows = () => inner().filter((each) => each.name !== 'Folded 1');
    ui.phone.changed();
    ui.server.push();
    await rows(ui.page, 4);
    const after = await drawn(ui.page, /^\s*Folded 2\s*$/);
    assert.ok(before.opacity > 0 && before.opacity < 1);
    assert.ok(Math.abs(after.opacity - before.opacity) < 0.01, `flashes from ${before.opacity} to ${after.opacity}`);
    assert.ok(Math.abs(after.top - before.top) < 1.5);
    await ui.close();
});

test('Rows_leaving_cannotBePressed', async () => {
    const ui = await openPage(session, { arrange: folding(2), reducedMotion: 'no-preference' });
    await settled(ui.page);
    await freeze(ui.page);
    const box = await ui.page.getByRole('button', { name: 'Folded 2' }).boundingBox();
    fold(ui, false);
    await rows(ui.page, 2);
    assert.equal(await ui.page.locator('.ghost').count(), 2);
    await ui.page.mouse.click(box.x + 40, box.y + box.height / 2);
    assert.equal(await ui.page.getByRole('button', { name: 'Folded 2' }).count(), 0);
    await control(ui.page).press('Tab');
    assert.equal(await ui.page.evaluate(() => document.activeElement.textContent.trim()), 'Last');
    await control(ui.page).press('Space');
    await until(() => lastCommand(ui.phone, 'set'), 'the switch was sent');
    assert.equal(lastCommand(ui.phone, 'tap'), undefined);
    await ui.close();
});

test('Rows_changedUnderReducedMotion_doNotMove', async () => {
    const ui = await openPage(session, { arrange: folding(21) });
    await ui.page.evaluate(() => {
        globalThis.begun = 0;
        const { animate } = Element.prototype;
        Element.prototype.animate = function (...args) { globalThis.begun += 1; return animate.apply(this, args); };
    });
    await control(ui.page).click();
    await rows(ui.page, 2);
    assert.equal(await ui.page.locator('.ghost').count(), 0);
    await control(ui.page).click();
    await rows(ui.page, 23);
    assert.equal(await ui.page.evaluate(() => globalThis.begun), 0);
    await ui.close();
});

test('Row_removedByOthersWhileItHasTheFocus_givesItToTheTitle', async () => {
    const ui = await openPage(session, { arrange: folding(2) });
    await ui.page.getByRole('button', { name: 'Folded 2' }).focus();
    fold(ui, false);
    await rows(ui.page, 2);
    assert.equal(await ui.page.getByRole('heading', { level: 1, name: 'Folding' }).evaluate((element) => element === document.activeElement), true);
    await ui.close();
});
