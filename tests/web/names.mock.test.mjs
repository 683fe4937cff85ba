// SPDX-License-Identifier: MIT
// Names that show nothing, the title field, the tone that is chosen, and the status bar.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, lastCommand, openPage, settled, startBrowser, until } from './harness.mjs';
import { bar, group, row, toggle } from './mock-rows.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const editor = (title) => (phone) => phone.show(phone.root(), phone.editor(title, false));
const field = (page) => page.getByRole('textbox', { name: 'Title' });
const clear = (page) => page.getByRole('button', { name: 'Clear Text' });

test('EmptyTitle_hasAHeadingAndARowThatCanBeNamed', async () => {
    const ui = await openPage(session, { arrange: (phone) => {
        phone.active[0].name = phone.active[0].text = '';
        phone.show(phone.root());
    } });
    await ui.page.getByRole('button', { name: /^Untitled/ }).click();
    await ui.page.getByRole('heading', { level: 1, name: 'Untitled' }).waitFor();
    assert.equal(await field(ui.page).inputValue(), '');
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    // The way back to such a screen says at least that.
    ui.phone.push(ui.phone.plain());
    ui.server.push();
    await ui.page.getByRole('heading', { level: 1, name: 'Miscellaneous' }).waitFor();
    assert.equal((await ui.page.locator('.bars .bar:not([inert]) .bar-button.back').textContent()).trim(), 'Back');
    await ui.close();
});

test('NamesThatShowNothingOrHoldControls_areSeenAndToldApart', async () => {
    const names = ['\u200b', '\u200c', '   ', 'Office\u001b[2J', 'Office\u0007[2J', '\u202eecfifO', 'Caf\u00e9 \u{1f469}\u200d\u{1f373}', 'line\nbreak'];
    const rows = [group('Head\u2066ing'), ...names.map((name) => toggle(name, false)), ...names.map((name) => row(1, name))];
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), {
        class: 'SampleNamesController', title: 'A\u0000B', bar: () => bar({ titleView: null, right: [] }), rows: () => rows,
    }) });
    await ui.page.locator('.list .row').nth(15).waitFor();
    const spoken = ['[U+200B]', '[U+200C]', '[U+0020][U+0020][U+0020]', 'Office[ESC][2J', 'Office[BEL][2J', '[U+202E]ecfifO', 'Caf\u00e9 \u{1f469}\u200d\u{1f373}', 'line[LF]break'];
    for (const name of spoken) {
        assert.equal(await ui.page.getByRole('switch', { name, exact: true }).count(), 1, name);
        assert.equal(await ui.page.getByRole('button', { name, exact: true }).count(), 1, name);
    }
    const seen = await ui.page.locator('.list .row .title').evaluateAll((titles) => titles.map((title) => (title.querySelector('[aria-hidden]') ?? title).textContent));
    assert.equal(new Set(seen).size, names.length);
    const widths = await ui.page.locator('.list .row .title').evaluateAll((titles) => titles.map((title) => title.getBoundingClientRect().width));
    assert.ok(widths.every((width) => width > 20), `${widths}`);
    assert.equal(await ui.page.getByRole('heading', { level: 1, name: 'A[NUL]B' }).count(), 1);
    assert.equal(await ui.page.getByRole('heading', { level: 2, name: 'Head[U+2066]ing' }).count(), 1);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

test('TitleField_isAsHighAsItsRowAndHasNoRing', async () => {
    const ui = await openPage(session, { arrange: editor('Work') });
    await field(ui.page).focus();
    const boxes = await field(ui.page).evaluate((element) => [element, element.closest('.row')].map((each) => each.getBoundingClientRect().height));
    assert.equal(boxes[0], boxes[1]);
    assert.equal(boxes[1], 44);
    const outlines = await field(ui.page).evaluate((element) => [element, element.closest('.cell'), element.closest('.row')].map((each) => getComputedStyle(each).outlineStyle));
    assert.deepEqual(outlines, ['none', 'none', 'none']);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

test('TitleField_atRest_endsALongTitleWithAnEllipsis', async () => {
    const long = 'A title that is far too long for the row that it stands in and goes on';
    const ui = await openPage(session, { arrange: editor(long) });
    const style = () => field(ui.page).evaluate((element) => getComputedStyle(element).textOverflow);
    assert.ok(await field(ui.page).evaluate((element) => element.scrollWidth > element.clientWidth));
    assert.equal(await style(), 'ellipsis');
    await field(ui.page).focus();
    assert.equal(await style(), 'clip');
    await field(ui.page).press('End');
    await field(ui.page).blur();
    assert.equal(await style(), 'ellipsis');
    assert.equal(await field(ui.page).evaluate((element) => element.scrollLeft), 0);
    await ui.close();
});

test('TitleField_clearButton_emptiesItAndKeepsTheFocus', async () => {
    const ui = await openPage(session, { arrange: editor('Work'), touch: true });
    assert.equal(await clear(ui.page).count(), 0);
    await field(ui.page).tap();
    await clear(ui.page).waitFor();
    const size = await clear(ui.page).boundingBox();
    assert.ok(size.width >= 44 && size.height >= 44);
    await clear(ui.page).tap();
    assert.equal(await field(ui.page).inputValue(), '');
    assert.equal(await field(ui.page).evaluate((element) => element === document.activeElement), true);
    assert.equal(lastCommand(ui.phone, 'set'), undefined);
    assert.equal(await clear(ui.page).count(), 0);
    await field(ui.page).pressSequentially('Home');
    await clear(ui.page).waitFor();
    await field(ui.page).press('Enter');
    await until(() => lastCommand(ui.phone, 'set')?.value === 'Home', 'the title is sent');
    assert.equal(await clear(ui.page).count(), 0);
    await ui.close();
});

test('ToneScreen_opensWithTheChosenToneInSight', async () => {
    const list = Array.from({ length: 60 }, (_unused, at) => ({ identifier: `texttone:Tone ${at}`, name: `Tone ${at}` }));
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root()) });
    ui.phone.push({ ...ui.phone.tones(), tones: { selected: 'texttone:Tone 45', noneAtTop: true, list } });
    ui.server.push();
    const chosen = ui.page.getByRole('radio', { name: 'Tone 45' });
    await chosen.waitFor();
    await settled(ui.page);
    const inSight = async () => {
        const [box, view] = [await chosen.boundingBox(), await ui.page.locator('.bodies .page').last().boundingBox()];
        return box.y >= view.y && box.y + box.height <= view.y + view.height;
    };
    assert.equal(await inSight(), true);
    // Once: what the user has scrolled to stays, whatever is chosen elsewhere.
    const scroller = ui.page.locator('.bodies .page').last();
    await scroller.evaluate((element) => { element.scrollTop = 0; });
    ui.phone.changed();
    ui.phone.screen.tones = { ...ui.phone.screen.tones, selected: 'texttone:Tone 46' };
    ui.server.push();
    await ui.page.locator('.tone[aria-checked="true"]', { hasText: 'Tone 46' }).waitFor({ state: 'attached' });
    assert.equal(await scroller.evaluate((element) => element.scrollTop), 0);
    await ui.close();
});
