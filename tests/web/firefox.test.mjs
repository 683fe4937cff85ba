// SPDX-License-Identifier: MIT
// The way through all screens in Debian's Firefox: what it draws is what the references of the gallery say, which Chromium has
// made, and each screen passes the accessibility check. Then what a user does with a mouse and keys, and the browser's history.
import assert from 'node:assert/strict';
import { readFile } from 'node:fs/promises';
import { fileURLToPath } from 'node:url';
import { after, before, test } from 'node:test';
import { differences, read, slackOf } from './gallery-references.mjs';
import { scenesOfATour, takeTour, tours } from './gallery-tour.mjs';
import { accessibilityProblems, lastCommand, openPage, settled, startBrowser, tryAgain, until, whyNoFirefox } from './harness.mjs';

const skip = whyNoFirefox() ?? false;
let session;
before(async () => { if (!skip) session = await startBrowser({ name: 'firefox' }); });
after(async () => { await session?.close(); });

const records = async (name) => read(String(await readFile(fileURLToPath(new URL(`../../docs/gallery/${name}.jsonl`, import.meta.url)))));

// Its remote protocol can put no forced colours into effect.
const walks = tours.map((tour) => ({ ...tour, appearances: tour.appearances.filter((appearance) => !appearance.forcedColors) }));

for (const tour of walks) {
    const names = tour.appearances.map(({ name }) => name);
    test(`Firefox_${names.join('_')}_drawsEachScreenAsItsReferenceSays`, { skip }, async () => {
        const problems = [];
        const found = await takeTour(session, tour, {
            pictures: false,
            // Once a screen: the other appearances have the same elements.
            seen: async (appearance, scene, page) => {
                if (appearance !== 'light') return;
                for (const problem of await accessibilityProblems(page)) problems.push(`${appearance}, ${scene}: ${problem}`);
            },
        });
        for (const each of found) {
            assert.equal(each.scenes.length, scenesOfATour);
            const lines = differences(await records(each.name), each, slackOf.other);
            assert.equal(lines.length, 0, `${each.name}: ${lines.length} differences\n${lines.slice(0, 40).join('\n')}`);
        }
        assert.deepEqual(problems, []);
    });
}

const editor = (phone) => phone.show(phone.root(), phone.editor('Work', false));
const sets = (phone) => phone.commands.filter((command) => command.do === 'set').map((command) => command.value);

test('Firefox_controls_sendWhatIsMeant', { skip }, async () => {
    const ui = await openPage(session, { arrange: editor });
    const { page } = ui;
    await page.getByRole('switch', { name: 'Vibrate' }).click();
    await until(() => sets(ui.phone).length === 1, 'the switch was sent');
    await page.getByRole('textbox', { name: 'Title' }).fill('Theatre');
    await page.keyboard.press('Enter');
    await until(() => sets(ui.phone).length === 2, 'the text was sent');
    // By its thumb only; the track is no more than ground.
    const slider = page.getByRole('slider', { name: 'Ringer Volume' });
    const box = await slider.boundingBox();
    const y = box.y + box.height / 2;
    await page.mouse.click(box.x + 0.9 * box.width, y);
    await page.mouse.move(box.x + box.width / 2, y);
    await page.mouse.down();
    await page.mouse.move(box.x + 0.75 * box.width, y, { steps: 5 });
    await page.mouse.up();
    await until(() => sets(ui.phone).length === 3, 'the volume was sent');
    const [vibrate, title, volume] = sets(ui.phone);
    assert.deepEqual([vibrate, title], [true, 'Theatre']);
    assert.ok(volume > 0.7 && volume < 0.85, `${volume}`);
    await slider.press('Home');
    await until(() => sets(ui.phone).at(-1) === 0, 'keys move it too');
    await ui.close();
});

test('Firefox_wheel_isMovedByKeysAndByTheMouse', { skip }, async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.pane()) });
    const hours = ui.page.locator('.wheel-hours');
    await hours.press('ArrowUp');
    await until(() => lastCommand(ui.phone, 'pickTime')?.time === '10:00 AM', 'the hour was sent');
    const box = await hours.boundingBox();
    await ui.page.mouse.move(box.x + box.width / 2, box.y + box.height / 2);
    await ui.page.mouse.down();
    await ui.page.mouse.move(box.x + box.width / 2, box.y + box.height / 2 - 70, { steps: 7 });
    await ui.page.mouse.up();
    await until(() => lastCommand(ui.phone, 'pickTime')?.time !== '10:00 AM', 'the drag was sent');
    await ui.close();
});

test('Firefox_history_isThePhones', { skip }, async () => {
    const ui = await openPage(session);
    const { page } = ui;
    await page.getByRole('button', { name: 'Miscellaneous' }).click();
    await page.getByRole('heading', { level: 1, name: 'Miscellaneous' }).waitFor();
    await page.waitForFunction(() => history.state.depth === 1);
    assert.equal(await page.evaluate(() => location.hash), '');
    await page.evaluate(() => history.back());
    await page.getByRole('heading', { level: 1, name: 'Sample Go' }).waitFor();
    await page.waitForFunction(() => history.state.depth === 0);
    assert.ok(lastCommand(ui.phone, 'back'));
    await ui.close();
});

test('Firefox_rowsSwipedByTheMouse_showTheirButton', { skip }, async () => {
    const ui = await openPage(session);
    const row = ui.page.locator('[data-deletable]').first();
    const box = await row.boundingBox();
    await ui.page.mouse.move(box.x + box.width - 40, box.y + box.height / 2);
    await ui.page.mouse.down();
    await ui.page.mouse.move(box.x + box.width - 160, box.y + box.height / 2, { steps: 8 });
    await ui.page.mouse.up();
    await ui.page.locator('.row[data-open]').waitFor();
    await settled(ui.page);
    await ui.page.locator('.row[data-open] .delete').click();
    await until(() => lastCommand(ui.phone, 'delete'), 'its deletion is asked for');
    await ui.close();
});

test('Firefox_longList_isScrolledAndSearched', { skip }, async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.long(10_000)) });
    await ui.page.locator('.page').last().evaluate((element) => { element.scrollTop = element.scrollHeight / 2; });
    await ui.page.waitForFunction(() => [...document.querySelectorAll('.row .title')].some((title) => /^Row (49|50)\d\d$/.test(title.textContent)));
    await ui.page.getByRole('searchbox').fill('Row 9998');
    await ui.page.locator('.results .row').first().waitFor();
    assert.equal(await ui.page.locator('.results .row').count(), 1);
    await ui.close();
});

test('Firefox_lostConnection_isSaidAndTheTextSentAfterwards', { skip }, async () => {
    const ui = await openPage(session, { arrange: editor, tolerate: /can.t establish a connection|was interrupted/ });
    await ui.page.getByRole('textbox', { name: 'Title' }).fill('Theatre');
    ui.server.leave();
    await ui.page.getByRole('button', { name: 'Try Again' }).waitFor();
    assert.equal(await ui.page.locator('.screens').evaluate((element) => element.inert), true);
    ui.server.away = false;
    await tryAgain(ui.page);
    await until(() => sets(ui.phone).length === 1, 'the text was sent');
    assert.deepEqual(sets(ui.phone), ['Theatre']);
    await ui.close();
});
