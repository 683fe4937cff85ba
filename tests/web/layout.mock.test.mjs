// SPDX-License-Identifier: MIT
// The page on a pad, on a phone held sideways, and for readers who ask for other colours, more contrast or larger type.
import assert from 'node:assert/strict';
import { after, before, test } from 'node:test';
import { accessibilityProblems, openPage, resize, settled, startBrowser } from './harness.mjs';
import { clipped, overlapping } from './layout-checks.mjs';
import { row, toggle } from './mock-rows.mjs';
import { differing, openDarkroom, standingOut } from './pictures.mjs';

let session;
let darkroom;
before(async () => {
    session = await startBrowser();
    darkroom = await openDarkroom(session);
});
after(async () => { await session.close(); });

const scenes = {
    root: () => {},
    editing: (phone) => { phone.editing = true; },
    plain: (phone) => phone.show(phone.root(), phone.plain()),
    editor: (phone) => phone.show(phone.root(), phone.editor('Work', false)),
    pane: (phone) => phone.show(phone.root(), phone.pane()),
    tones: (phone) => phone.show(phone.root(), phone.tones()),
    calendars: (phone) => { phone.show(phone.root(), phone.calendars()); for (const at of [0, 2]) phone.perform({ do: 'tap', row: at }); },
    noCalendars: (phone) => phone.show(phone.root(), phone.calendars({})),
    networks: (phone) => phone.show(phone.root(), phone.networks()),
    eventStatus: (phone) => phone.show(phone.root(), phone.eventStatus()),
    alert: (phone) => phone.alert('Error', 'The profile could not be saved.'),
    activity: (phone) => phone.activity('Resetting'),
    deleting: (phone) => phone.perform({ do: 'delete', row: 3 }),
    sharing: (phone) => phone.perform({ do: 'bar', side: 'right', item: 1 }),
    posting: (phone) => { phone.perform({ do: 'bar', side: 'right', item: 1 }); phone.perform({ do: 'choose', action: 'Share 😘' }); },
    mail: (phone) => { phone.show(phone.root(), phone.plain()); phone.perform({ do: 'tap', row: 3 }); },
    modal: (phone) => phone.perform({ do: 'bar', side: 'right', item: 0 }),
};

const padUpright = { width: 820, height: 1180 };
const padSideways = { width: 1180, height: 820 };
const phoneSideways = { width: 844, height: 390 };

const onPad = (arrange = () => {}) => (phone) => { phone.device = { ...phone.device, idiom: 'pad' }; arrange(phone); };
const shape = (page) => page.evaluate(() => [document.documentElement.dataset.shape, document.documentElement.hasAttribute('data-enclosed')]);
const box = (locator) => locator.evaluate((element) => { const { left, right, top, bottom, width, height } = element.getBoundingClientRect(); return { left, right, top, bottom, width, height }; });

/** Elements of the screen's, the composers' and the prompts' that stick out of the device, or whose row is wider than the device. */
const protruding = (page) => page.evaluate(() => {
    const phone = document.querySelector('.phone').getBoundingClientRect();
    const found = [];
    for (const element of document.querySelectorAll('.bar-button, .bar-title, .row, .switch, .slider, .mark, .own-label, .sheet-card, .alert, .choice, .composer, .composer-title, .wheel-column')) {
        const at = element.getBoundingClientRect();
        if (at.width > 0 && (at.left < phone.left - 0.5 || at.right > phone.right + 0.5)) found.push(`${element.className}: ${at.left} to ${at.right} of ${phone.left} to ${phone.right}`);
    }
    return found;
});

/** Labels that cells have placed themselves, and what of their row they lie on. */
const covered = (page) => page.evaluate(() => {
    const found = [];
    for (const text of document.querySelectorAll('.own-text')) {
        const one = text.getBoundingClientRect();
        for (const part of text.closest('.cell').querySelectorAll('.own-text, .mark')) {
            const other = part.getBoundingClientRect();
            const across = Math.min(one.right, other.right) - Math.max(one.left, other.left);
            const down = Math.min(one.bottom, other.bottom) - Math.max(one.top, other.top);
            if (part !== text && across > 0.5 && down > 0.5) found.push(`${text.textContent} / ${part.className} ${part.textContent}`);
        }
    }
    return found;
});

async function assertTidy(page, where) {
    await settled(page);
    assert.deepEqual(await clipped(page), [], where);
    assert.deepEqual(await overlapping(page), [], where);
    assert.deepEqual(await covered(page), [], where);
    assert.deepEqual(await protruding(page), [], where);
    assert.equal(await page.locator('.page').last().evaluate((element) => element.scrollWidth <= element.clientWidth), true, where);
}

/** Resolves when the state that the application has been given is shown in this direction. */
async function turn(ui, rightToLeft) {
    ui.phone.device = { ...ui.phone.device, rightToLeft, language: rightToLeft ? 'ar' : 'en' };
    ui.phone.changed();
    ui.server.push();
    await ui.page.waitForFunction((direction) => document.documentElement.dir === direction, rightToLeft ? 'rtl' : 'ltr');
}

const media = async (page, features) => {
    const cdp = await page.context().newCDPSession(page);
    const all = { 'prefers-reduced-motion': 'reduce', ...features };
    await cdp.send('Emulation.setEmulatedMedia', { features: Object.entries(all).map(([name, value]) => ({ name, value })) });
};

for (const [name, options, wanted] of [
    ['phoneHeldSideways', { viewport: phoneSideways, touch: true }, ['sideways', false]],
    ['largePhoneHeldSideways', { viewport: { width: 932, height: 430 }, touch: true }, ['sideways', false]],
    ['phoneUpright', { viewport: { width: 430, height: 932 }, touch: true }, ['phone', false]],
    ['phoneAsLowAsItsKeyboardLeaves', { viewport: { width: 390, height: 430 }, touch: true }, ['phone', false]],
    ['desk', { viewport: { width: 1280, height: 900 } }, ['phone', true]],
    ['lowWindowOfADesk', { viewport: { width: 1280, height: 520 } }, ['phone', true]],
    ['lowerWindowOfADesk', { viewport: { width: 1280, height: 400 } }, ['sideways', false]],
    ['foldingPhoneWithoutAMouse', { viewport: { width: 900, height: 540 }, touch: true }, ['phone', false]],
    ['phoneOnATablet', { viewport: padUpright, touch: true }, ['phone', true]],
    ['pad', { viewport: padUpright, touch: true, pad: true }, ['pad', false]],
    ['padHeldSideways', { viewport: padSideways, touch: true, pad: true }, ['pad', false]],
    ['largePadHeldSideways', { viewport: { width: 1366, height: 1024 }, touch: true, pad: true }, ['pad', false]],
    ['padInASmallWindow', { viewport: padUpright, pad: true }, ['pad', false]],
    ['padOnADesk', { viewport: { width: 1280, height: 900 }, pad: true }, ['pad', true]],
    ['padInANarrowWindow', { viewport: { width: 400, height: 900 }, pad: true }, ['phone', false]],
]) {
    test(`Shape_${name}_isChosenByPointerHeightAndWidth`, async () => {
        const { pad, ...rest } = options;
        const ui = await openPage(session, { ...rest, arrange: pad ? onPad() : () => {} });
        assert.deepEqual(await shape(ui.page), wanted);
        const phone = await box(ui.page.locator('.phone'));
        assert.equal(phone.width === options.viewport.width && phone.height === options.viewport.height, !wanted[1]);
        await ui.close();
    });
}

test('Shape_windowTurned_followsIt', async () => {
    const ui = await openPage(session, { viewport: { width: 390, height: 844 }, touch: true });
    assert.deepEqual(await shape(ui.page), ['phone', false]);
    assert.equal(await ui.page.locator('.status-bar').isVisible(), true);
    await resize(ui.page, phoneSideways);
    await ui.page.waitForFunction(() => document.documentElement.dataset.shape === 'sideways');
    assert.equal(await ui.page.locator('.status-bar').isVisible(), false);
    assert.equal((await box(ui.page.locator('.bar').last())).height, 44);
    await ui.close();
});

/** Shows another scene on the same page, from the start. */
async function reopen(ui, arrange) {
    const { phone } = ui;
    phone.device = { ...phone.device, rightToLeft: false, language: 'en' };
    phone.editing = false;
    phone.show(phone.root());
    arrange(phone);
    phone.changed();
    await ui.page.reload();
    await ui.page.locator('.navigator .page').first().waitFor();
}

for (const [where, options] of Object.entries({
    padUpright: { viewport: padUpright, touch: true, pad: true }, padSideways: { viewport: padSideways, touch: true, pad: true },
    padOnADesk: { viewport: { width: 1280, height: 900 }, pad: true }, phoneSideways: { viewport: phoneSideways, touch: true },
})) {
    test(`Layout_${where}_clipsAndOverlapsNothingInAnyScene`, async () => {
        const { pad, ...rest } = options;
        const ui = await openPage(session, { ...rest, arrange: pad ? onPad() : () => {} });
        for (const [name, arrange] of Object.entries(scenes)) {
            await reopen(ui, arrange);
            await assertTidy(ui.page, name);
            if (where !== 'padSideways') assert.deepEqual(await accessibilityProblems(ui.page), [], name);
            await turn(ui, true);
            await assertTidy(ui.page, `${name}, right to left`);
        }
        await ui.close();
    });
}

for (const [where, options, type] of [['zoomedTwiceAt320Points', { viewport: { width: 160, height: 284 }, scale: 2, touch: true }, ''], ['typeOfTwiceTheSizeAt320Points', { viewport: { width: 320, height: 568 }, touch: true }, '200%']]) {
    test(`Layout_${where}_clipsAndOverlapsNothingInAnyScene`, async () => {
        const ui = await openPage(session, options);
        for (const [name, arrange] of Object.entries(scenes)) {
            await reopen(ui, arrange);
            await ui.page.evaluate((size) => { document.documentElement.style.fontSize = size; }, type);
            await assertTidy(ui.page, name);
            // A word that has room for itself on a line of its own is not cut into letters.
            const cut = await ui.page.locator('.kind-6 .title').evaluateAll((titles) => titles.filter((title) => title.getBoundingClientRect().width < parseFloat(getComputedStyle(title).fontSize) * 2.5).map((title) => title.textContent));
            assert.deepEqual(cut, [], name);
            await turn(ui, true);
            await assertTidy(ui.page, `${name}, right to left`);
        }
        await ui.close();
    });
}

test('Wheel_typeOfTwiceTheSize_isInSightWithItsBand', async () => {
    const ui = await openPage(session, { viewport: { width: 320, height: 568 }, arrange: scenes.pane });
    await ui.page.evaluate(() => { document.documentElement.style.fontSize = '200%'; });
    await settled(ui.page);
    const [wheel, rows] = [await box(ui.page.locator('.wheel')), await box(ui.page.locator('.pane > .rows'))];
    assert.ok(wheel.bottom <= 568.5 && rows.bottom <= wheel.top + 0.5, JSON.stringify([wheel, rows]));
    await ui.close();
});

test('Form_onAPad_hasAReadableWidthInTheMiddle', async () => {
    for (const [viewport, touch] of [[padUpright, true], [padSideways, true], [{ width: 1280, height: 900 }, false]]) {
        const ui = await openPage(session, { viewport, touch, arrange: onPad(scenes.editor) });
        const phone = await box(ui.page.locator('.phone'));
        for (const one of await ui.page.locator('.list .row').all()) {
            const at = await box(one);
            assert.ok(Math.abs(at.left - phone.left - (phone.right - at.right)) < 1, 'in the middle');
            assert.equal(Math.round(at.width), 672);
        }
        await ui.close();
    }
});

test('Times_onAPad_lieAtTheTrailingEdgeBeforeTheChevron', async () => {
    for (const rightToLeft of [false, true]) {
        const ui = await openPage(session, { viewport: padUpright, touch: true, arrange: onPad(scenes.editor) });
        await turn(ui, rightToLeft);
        await settled(ui.page);
        const [cell, time, chevron] = await Promise.all(['.cell.labelled', '.cell.labelled .own-label:nth-child(2)', '.cell.labelled .mark'].map((each) => box(ui.page.locator(each).first())));
        // 35 points from the edge, as the cell has laid them out.
        assert.equal(Math.round(rightToLeft ? time.left - cell.left : cell.right - time.right), 35);
        assert.ok(rightToLeft ? chevron.right <= time.left : chevron.left >= time.right);
        await ui.close();
    }
});

test('Label_farFromTheEdges_isScaledToTheRowsWidth', async () => {
    const label = (x) => ({ tag: 1, text: 'Here', frame: [x, 10, 80, 20], colour: null, alignment: 0 });
    const inTheMiddle = (phone) => phone.show({ ...phone.empty(), rows: () => [row(1, 'Wide', { text: null, labels: [label(16), label(192), label(538)] })] });
    const ui = await openPage(session, { viewport: padUpright, touch: true, arrange: onPad(inTheMiddle) });
    await settled(ui.page);
    const cell = await box(ui.page.locator('.cell.labelled'));
    const labels = await ui.page.locator('.own-label').evaluateAll((all) => all.map((each) => each.getBoundingClientRect()).map(({ left, right }) => [left, right]));
    assert.deepEqual([labels[0][0] - cell.left, labels[1][0] - cell.left, cell.right - labels[2][1]].map(Math.round), [16, Math.round(cell.width / 4), Math.round((cell.width * 150) / 768)]);
    await ui.close();
});

test('Sheet_onAPad_isAPopoverBesideWhatWasPressed', async () => {
    for (const [pressed, keys, rightToLeft] of [['.bar-button[data-side="right"][data-item="1"]', 'Enter', false], ['.bar-button[data-side="right"][data-item="1"]', 'Enter', true], ['.list button.cell[aria-keyshortcuts="Delete"]', 'Delete', false]]) {
        const ui = await openPage(session, { viewport: padUpright, arrange: onPad() });
        await turn(ui, rightToLeft);
        const control = ui.page.locator(pressed).first();
        await control.focus();
        await ui.page.keyboard.press(keys);
        const sheet = ui.page.locator('.layer:not([inert]) .sheet');
        await sheet.waitFor();
        await settled(ui.page);
        const [at, anchor] = [await box(sheet), await box(control)];
        assert.ok(at.width < 400, `${at.width} wide`);
        assert.ok(at.top >= anchor.bottom && at.top - anchor.bottom < 24, 'beneath what was pressed');
        assert.ok(at.left >= 0 && at.right <= padUpright.width);
        // The arrow's tip is beneath the middle of what was pressed.
        const tip = at.left + await sheet.evaluate((element) => { const { left, width } = getComputedStyle(element, '::before'); return parseFloat(left) + parseFloat(width) / 2; });
        assert.ok(tip > anchor.left && tip < anchor.right, `${tip} between ${anchor.left} and ${anchor.right}`);
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await resize(ui.page, padSideways);
        await ui.page.waitForFunction(() => matchMedia('(orientation: landscape)').matches);
        await settled(ui.page);
        const [turned, moved] = [await box(sheet), await box(control)];
        assert.ok(turned.top >= moved.bottom && turned.top - moved.bottom < 24 && turned.right <= padSideways.width, 'follows what was pressed');
        await ui.page.keyboard.press('Escape');
        await ui.page.waitForFunction(() => document.querySelectorAll('.presenter .layer').length === 0);
        await ui.close();
    }
});

test('Sheet_onAPadNearTheBottom_standsAboveWhatWasPressed', async () => {
    const many = (phone) => { phone.active = Array.from({ length: 30 }, (_unused, at) => ({ ...phone.active[0], key: `many-${at}`, name: `Profile ${at}`, text: `Profile ${at}` })); };
    const ui = await openPage(session, { viewport: padUpright, arrange: onPad(many) });
    const last = ui.page.locator('.list button.cell[aria-keyshortcuts="Delete"]').nth(17);
    await last.focus();
    await settled(ui.page);
    await ui.page.locator('.page').last().evaluate((page) => { const bottom = document.activeElement.getBoundingClientRect().bottom; page.scrollTop += bottom - page.getBoundingClientRect().bottom + 4; });
    await ui.page.keyboard.press('Delete');
    const sheet = ui.page.locator('.layer:not([inert]) .sheet');
    await sheet.waitFor();
    await settled(ui.page);
    const [at, anchor] = [await box(sheet), await box(last)];
    assert.ok(at.bottom <= anchor.top && anchor.top - at.bottom < 24, JSON.stringify([at, anchor]));
    await ui.close();
});

test('Sheet_onAPadOfWhichNothingWasPressed_isInTheMiddle', async () => {
    const ui = await openPage(session, { viewport: padUpright, touch: true, arrange: onPad(scenes.sharing) });
    await settled(ui.page);
    const at = await box(ui.page.locator('.sheet'));
    assert.ok(at.width < 400 && Math.abs(at.left + at.right - padUpright.width) < 2 && Math.abs(at.top + at.bottom - padUpright.height) < 2, JSON.stringify(at));
    await ui.close();
});

test('Modal_onAPad_isAFormOverTheScreenBeneath', async () => {
    const ui = await openPage(session, { viewport: padUpright, touch: true, arrange: onPad() });
    await ui.page.locator('.bar-button[data-side="right"][data-item="0"]').tap();
    await ui.page.locator('.navigator.modal').waitFor();
    await settled(ui.page);
    const form = await box(ui.page.locator('.navigator.modal .bodies'));
    const bar = await box(ui.page.locator('.navigator.modal .bar'));
    assert.equal(form.width, 540);
    assert.equal(bar.height, 44);
    assert.ok(Math.abs(form.left + form.right - padUpright.width) < 1 && Math.abs(bar.top + form.bottom - padUpright.height) < 1, 'in the middle');
    const beneath = ui.page.locator('.navigator').first();
    assert.equal(await beneath.getByText('Miscellaneous').first().isVisible(), true);
    assert.equal(await beneath.evaluate((element) => element.inert && getComputedStyle(element, '::after').opacity), '1');
    assert.equal(await ui.page.locator('.navigator.modal').evaluate((element) => getComputedStyle(element, '::after').display), 'none');
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.page.keyboard.press('Escape');
    await ui.page.waitForFunction(() => document.querySelectorAll('.navigator').length === 1);
    await settled(ui.page);
    assert.equal(await beneath.evaluate((element) => getComputedStyle(element, '::after').opacity), '0');
    await ui.close();
});

test('Mail_onAPad_isAPageOverTheScreenThatKeepsItsStatusBar', async () => {
    const ui = await openPage(session, { viewport: padUpright, touch: true, arrange: onPad(scenes.mail) });
    await settled(ui.page);
    const at = await box(ui.page.locator('.composer.mail'));
    assert.ok(at.left >= 32 && at.top >= 32 && at.bottom <= padUpright.height - 32 && at.width <= 704, JSON.stringify(at));
    assert.equal(await ui.page.locator('.status-bar').evaluate((element) => element.classList.contains('above')), false);
    await ui.close();
});

/** Opens a scene under forced colours; `looks` gives the picture of what a selector finds. */
async function openForced(arrange, scheme) {
    const ui = await openPage(session, { colorScheme: scheme, arrange: (phone) => { phone.device = { ...phone.device, darkMode: scheme === 'dark' }; arrange(phone); } });
    await media(ui.page, { 'forced-colors': 'active', 'prefers-color-scheme': scheme });
    await ui.page.waitForFunction(() => matchMedia('(forced-colors: active)').matches);
    await settled(ui.page);
    return { ...ui, look: (selector, at = 0) => ui.page.locator(selector).nth(at).screenshot() };
}

async function assertVisible(picture, what) { assert.ok(await standingOut(darkroom, picture) > 20, `${what} can be seen`); }

async function assertToldApart(one, other, what) { assert.ok(await differing(darkroom, one, other) > 20, `${what} can be told apart`); }

for (const scheme of ['light', 'dark']) {
    test(`ForcedColours_${scheme}_controlsAreVisibleAndTellTheirState`, async () => {
        const controls = (phone) => phone.show({ ...phone.empty(), rows: () => [toggle('On', true), toggle('Off', false), ...phone.editor('Work', false).rows().filter((each) => each.kind === 5)] });
        const ui = await openForced(controls, scheme);
        const [on, off, quarter, half] = [await ui.look('.switch', 0), await ui.look('.switch', 1), await ui.look('.slider', 0), await ui.look('.slider', 1)];
        for (const [picture, what] of [[on, 'a switch that is on'], [off, 'a switch that is off'], [quarter, 'a slider'], [await ui.look('.stencil'), 'the sign beside a slider']]) await assertVisible(picture, what);
        await assertToldApart(on, off, 'on and off');
        await assertToldApart(quarter, half, 'a quarter and a half');
        // Also by those who see no colours: by where the thumb is.
        const thumb = (at) => ui.page.locator('.switch').nth(at).evaluate((element) => getComputedStyle(element, '::before').transform);
        assert.notEqual(await thumb(0), await thumb(1));
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.close();
    });

    test(`ForcedColours_${scheme}_checkmarksSwatchesAndChoicesAreVisible`, async () => {
        const ui = await openForced(scenes.calendars, scheme);
        await assertVisible(await ui.look('.list .mark.check'), 'a checkmark');
        for (const at of [0, 1]) {
            const swatch = ui.page.locator('.swatch').nth(at);
            const { x, y, width, height } = await swatch.boundingBox();
            await assertVisible(await ui.page.screenshot({ clip: { x: x - 4, y: y - 4, width: width + 8, height: height + 8 } }), 'a swatch');
        }
        await assertToldApart(await ui.look('.swatch', 0), await ui.look('.swatch', 1), 'two swatches');
        ui.phone.show(ui.phone.root(), ui.phone.tones());
        ui.server.push();
        await ui.page.locator('.tone').first().waitFor();
        await settled(ui.page);
        await assertVisible(await ui.look('.tone .mark.check'), "a tone's checkmark");
        ui.phone.show(ui.phone.root(), ui.phone.pane());
        ui.server.push();
        await ui.page.locator('.cell.centred').first().waitFor();
        await settled(ui.page);
        const ground = (at) => ui.page.locator('.cell.centred').nth(at).evaluate((element) => getComputedStyle(element).backgroundColor);
        assert.notEqual(await ground(0), await ground(1));
        await assertVisible(await ui.look('.wheel'), 'the wheel');
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.close();
    });

    test(`ForcedColours_${scheme}_barsCardsAndPromptsAreVisible`, async () => {
        const ui = await openForced(() => {}, scheme);
        for (const [selector, what] of [['.logo', 'the logo'], ['.bar-button[data-item="0"]', 'the add button'], ['.bar-button[data-item="1"]', 'the share button'], ['.product-card', 'the product'], ['.list .mark', 'a chevron']]) await assertVisible(await ui.look(selector), what);
        // Not "transparent": each card has an edge of its own in one of the reader's colours.
        const edge = (selector) => ui.page.locator(selector).first().evaluate((element) => { const style = getComputedStyle(element); return style.borderTopStyle === 'solid' && parseFloat(style.borderTopWidth) >= 1; });
        for (const selector of ['.product-card', '.list .row']) assert.equal(await edge(selector), true, selector);
        for (const [arrange, selector] of [['alert', '.alert'], ['deleting', '.sheet-card'], ['posting', '.composer.social'], ['activity', '.alert']]) {
            ui.phone.presented = null;
            scenes[arrange](ui.phone);
            ui.phone.changed();
            ui.server.push();
            await ui.page.locator(`.layer:not([inert]) ${selector}`).first().waitFor();
            await settled(ui.page);
            assert.equal(await edge(`.layer:not([inert]) ${selector}`), true, arrange);
            assert.deepEqual(await accessibilityProblems(ui.page), [], arrange);
        }
        await assertVisible(await ui.look('.alert .spinner'), 'the wheel of what is going on');
        await ui.close();
    });
}

for (const scheme of ['light', 'dark']) {
    test(`Contrast_${scheme}_isEnhancedForThoseWhoAskForIt`, async () => {
        const enhanced = (page) => page.evaluate(async () => (await globalThis.axe.run(document, { runOnly: { type: 'rule', values: ['color-contrast-enhanced'] } })).violations
            .flatMap((violation) => violation.nodes.map((node) => `${node.target}: ${node.any[0]?.message}`)));
        const ui = await openPage(session, { colorScheme: scheme, arrange: (phone) => { phone.device = { ...phone.device, darkMode: scheme === 'dark' }; } });
        for (const name of ['root', 'editor', 'calendars', 'plain', 'pane', 'deleting', 'alert', 'mail', 'tones']) {
            await media(ui.page, { 'prefers-contrast': 'no-preference', 'prefers-color-scheme': scheme });
            await reopen(ui, scenes[name]);
            await accessibilityProblems(ui.page);
            // The footers' and the headers' colour is enough for most readers only.
            if (name === 'plain' || name === 'editor') assert.notDeepEqual(await enhanced(ui.page), [], `${name} has less of it otherwise`);
            await media(ui.page, { 'prefers-contrast': 'more', 'prefers-color-scheme': scheme });
            await ui.page.waitForFunction(() => matchMedia('(prefers-contrast: more)').matches);
            assert.deepEqual(await accessibilityProblems(ui.page), [], name);
            assert.deepEqual(await enhanced(ui.page), [], name);
        }
        await ui.close();
    });

    test(`Contrast_${scheme}_givesSwitchesAndTheChosenTimeAnEdge`, async () => {
        const ui = await openPage(session, { arrange: (phone) => { phone.device = { ...phone.device, darkMode: scheme === 'dark' }; scenes.editor(phone); } });
        await media(ui.page, { 'prefers-contrast': 'more' });
        await settled(ui.page);
        for (const at of [0, 1]) {
            const { x, y, width, height } = await ui.page.locator('.switch').nth(at).boundingBox();
            await assertVisible(await ui.page.screenshot({ clip: { x: x - 3, y: y - 3, width: width + 6, height: height + 6 } }), 'a switch');
        }
        ui.phone.show(ui.phone.root(), ui.phone.pane());
        ui.server.push();
        await ui.page.locator('.cell.centred').first().waitFor();
        assert.notEqual(await ui.page.locator('.cell.centred.selected').evaluate((element) => getComputedStyle(element).boxShadow), 'none');
        await ui.close();
    });
}

test('Transparency_reduced_letsLittleShineThrough', async () => {
    const ui = await openPage(session, { arrange: scenes.deleting });
    const veil = () => ui.page.locator('.layer').evaluate((element) => Number(/([\d.]+)\)$/.exec(getComputedStyle(element).backgroundColor)[1]));
    const before = await veil();
    await media(ui.page, { 'prefers-reduced-transparency': 'reduce' });
    await ui.page.waitForFunction(() => matchMedia('(prefers-reduced-transparency: reduce)').matches);
    assert.ok(before < 0.5 && await veil() >= 0.75);
    assert.equal(await ui.page.locator('.icon-chevron').first().evaluate((element) => getComputedStyle(element).opacity), '1');
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});
