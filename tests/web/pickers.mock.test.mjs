// SPDX-License-Identifier: MIT
// The screens on which calendars, networks, the event status and the tone are chosen.
import assert from 'node:assert/strict';
import { readFile, readdir } from 'node:fs/promises';
import { after, before, test } from 'node:test';
import { accessibilityProblems, lastCommand, openPage, settled, startBrowser, until } from './harness.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const tones = (phone) => phone.show(phone.root(), phone.tones());
const tone = (page, name) => page.getByRole('radio', { name, exact: true });
const live = (page) => page.locator('body > [aria-live]');

/** Opens the page with a record of what sounds. */
async function openTones(options = {}) {
    const ui = await openPage(session, { arrange: tones, ...options });
    await ui.page.evaluate(() => {
        globalThis.sounds = [];
        const play = HTMLMediaElement.prototype.play;
        HTMLMediaElement.prototype.play = function () { globalThis.sounds.push(this); return play.call(this); };
    });
    return ui;
}

/** Resolves when the application has taken a choice and the page shows it. */
const chosen = (page, name) => page.getByRole('radio', { name, exact: true, checked: true }).waitFor();
const choices = (phone) => phone.commands.filter((command) => command.do === 'pickTone').map((command) => command.identifier);

/** Resolves when exactly this tone sounds and is shown to; null for silence. */
async function sounds(page, name) {
    await page.waitForFunction((wanted) => {
        const heard = globalThis.sounds.filter((audio) => !audio.paused).map((audio) => audio.dataset.tone);
        const shown = [...document.querySelectorAll('.tone:has(.playing) .title')].map((title) => title.textContent);
        return wanted === null ? heard.length === 0 && shown.length === 0 : heard.join() === `texttone:${wanted}` && shown.join() === wanted;
    }, name);
}

test('Tone_chosen_isSentPlayedAndAnnounced', async () => {
    const ui = await openTones();
    await tone(ui.page, 'Bell').click();
    await sounds(ui.page, 'Bell');
    await ui.page.waitForFunction(() => document.querySelector('body > [aria-live]').textContent === 'Playing Bell');
    assert.equal(await live(ui.page).getAttribute('aria-live'), 'polite');
    await chosen(ui.page, 'Bell');
    assert.deepEqual(choices(ui.phone), ['texttone:Bell']);
    assert.equal(await ui.page.locator('.tones .check').count(), 1);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await ui.close();
});

test('Tone_anotherChosen_takesThePlaceOfTheFirst', async () => {
    const ui = await openTones();
    await tone(ui.page, 'Bell').click();
    await sounds(ui.page, 'Bell');
    await tone(ui.page, 'Chord').click();
    await sounds(ui.page, 'Chord');
    await ui.close();
});

test('Tone_noneChosen_isSilence', async () => {
    const ui = await openTones();
    await tone(ui.page, 'Bell').click();
    await sounds(ui.page, 'Bell');
    await tone(ui.page, 'None').click();
    await sounds(ui.page, null);
    await chosen(ui.page, 'None');
    assert.deepEqual(choices(ui.phone), ['texttone:Bell', null]);
    assert.equal(await live(ui.page).textContent(), '');
    await ui.close();
});

test('None_inEachLanguage_isTheProductsOwnWord', async () => {
    const ui = await openTones();
    const resources = new URL('../../resources/', import.meta.url);
    const languages = (await readdir(resources)).filter((name) => name.endsWith('.lproj')).map((name) => name.slice(0, -'.lproj'.length));
    assert.ok(languages.length >= 7);
    for (const language of languages) {
        const table = await readFile(new URL(`${language}.lproj/Localizable.strings`, resources), 'utf8');
        const [, word] = /^"None" = "(.*)";$/m.exec(table);
        ui.phone.device = { ...ui.phone.device, language, rightToLeft: language === 'ar' };
        ui.phone.changed();
        ui.server.push();
        await ui.page.waitForFunction((wanted) => document.documentElement.lang === wanted, language);
        await tone(ui.page, word).waitFor();
    }
    await ui.close();
});

test('Tone_tappedTwice_fallsSilentAndIsSentTwice', async () => {
    const ui = await openTones();
    await tone(ui.page, 'Bell').click();
    await sounds(ui.page, 'Bell');
    await tone(ui.page, 'Bell').click();
    await sounds(ui.page, null);
    await until(() => choices(ui.phone).length === 2, 'both choices were sent');
    await tone(ui.page, 'Bell').click();
    await sounds(ui.page, 'Bell');
    await ui.close();
});

test('Tone_atItsEnd_isShownNoMore', async () => {
    const ui = await openTones();
    await tone(ui.page, 'Blip').click();
    await ui.page.waitForFunction(() => globalThis.sounds.length === 1 && globalThis.sounds[0].paused);
    await sounds(ui.page, null);
    await chosen(ui.page, 'Blip');
    await ui.close();
});

test('Tone_withoutASound_isChosenAllTheSame', async () => {
    const ui = await openTones({ tolerate: /404/ });
    const answered = ui.page.waitForResponse(/\/sounds\//);
    await tone(ui.page, 'Missing').click();
    assert.equal((await answered).status(), 404);
    await sounds(ui.page, null);
    await chosen(ui.page, 'Missing');
    assert.deepEqual(choices(ui.phone), ['texttone:Missing']);
    assert.equal(await live(ui.page).textContent(), '');
    await ui.close();
});

test('Tone_thatTheBrowserRefusesToPlay_isChosenAllTheSame', async () => {
    const ui = await openTones();
    await ui.page.evaluate(() => { HTMLMediaElement.prototype.play = () => Promise.reject(new DOMException('no', 'NotAllowedError')); });
    await tone(ui.page, 'Bell').click();
    await ui.page.waitForFunction(() => document.querySelectorAll('.tone[aria-checked="true"] .title')[0]?.textContent === 'Bell');
    await sounds(ui.page, null);
    await ui.close();
});

test('Tone_refusedByTheApplication_fallsSilent', async () => {
    const ui = await openTones({ arrange: (phone) => { tones(phone); phone.refuse.add('pickTone'); } });
    await tone(ui.page, 'Bell').click();
    await until(() => lastCommand(ui.phone, 'pickTone'), 'the choice was sent');
    await sounds(ui.page, null);
    assert.equal(await tone(ui.page, 'Chord').getAttribute('aria-checked'), 'true');
    await ui.close();
});

test('Tone_choiceUnanswered_playsOnWhateverArrives', async () => {
    const ui = await openTones();
    ui.server.hold = true;
    await tone(ui.page, 'Bell').click();
    await sounds(ui.page, 'Bell');
    await until(() => ui.server.held.length > 0, 'the choice was sent');
    ui.phone.screen.tones = { ...ui.phone.screen.tones, selected: 'texttone:Chord', list: [...ui.phone.screen.tones.list, { identifier: 'texttone:New', name: 'New' }] };
    ui.phone.changed();
    ui.server.push();
    await tone(ui.page, 'New').waitFor();
    await sounds(ui.page, 'Bell');
    ui.server.hold = false;
    ui.phone.screen.tones = { ...ui.phone.screen.tones, selected: 'texttone:Bell' };
    ui.phone.changed();
    ui.server.push();
    for (const answer of ui.server.held) answer();
    await ui.page.waitForFunction(() => document.querySelector('.tone[aria-checked="true"] .title').textContent === 'Bell');
    await sounds(ui.page, 'Bell');
    await ui.close();
});

test('Tone_chosenOnAnotherPage_isShownAndNotHeard', async () => {
    const ui = await openTones();
    const choose = (identifier) => { ui.phone.perform({ do: 'pickTone', identifier }); ui.server.push(); };
    choose('texttone:Bell');
    await ui.page.waitForFunction(() => document.querySelector('.tone[aria-checked="true"] .title').textContent === 'Bell');
    assert.equal(await ui.page.evaluate(() => globalThis.sounds.length), 0);
    // What sounds here is what is chosen, or nothing.
    await tone(ui.page, 'Chord').click();
    await sounds(ui.page, 'Chord');
    await until(() => choices(ui.phone).at(-1) === 'texttone:Chord', 'the choice was sent');
    choose('texttone:Bell');
    await sounds(ui.page, null);
    await ui.close();
});

const departures = {
    back: (ui) => ui.page.locator('.bar-button.back').click(),
    pushed: (ui) => { ui.phone.push(ui.phone.plain()); ui.server.push(); },
    covered: (ui) => { ui.phone.levels.push([ui.phone.editor('New Profile', true)]); ui.phone.changed(); ui.server.push(); },
    openedAnew: (ui) => { ui.phone.show(ui.phone.root()); ui.server.push(); },
    emptied: (ui) => { ui.phone.screen.tones = null; ui.phone.changed(); ui.server.push(); },
};

for (const [name, depart] of Object.entries(departures)) {
    test(`Tone_screenLeft_${name}_isSilence`, async () => {
        const ui = await openTones({ reducedMotion: 'no-preference' });
        await tone(ui.page, 'Bell').click();
        await sounds(ui.page, 'Bell');
        await until(() => choices(ui.phone).length === 1, 'the choice was sent');
        await depart(ui);
        await ui.page.waitForFunction(() => globalThis.sounds.every((audio) => audio.paused));
        await ui.close();
    });
}

test('Tone_onADismissedModal_isSilence', async () => {
    const ui = await openTones({ arrange: (phone) => phone.levels.push([phone.editor('New Profile', true), phone.tones()]) });
    await tone(ui.page, 'Bell').click();
    await sounds(ui.page, 'Bell');
    await until(() => choices(ui.phone).length === 1, 'the choice was sent');
    ui.phone.levels.pop();
    ui.phone.changed();
    ui.server.push();
    await ui.page.waitForFunction(() => globalThis.sounds.every((audio) => audio.paused));
    await ui.close();
});

test('Tones_byKeyboard_areGoneThroughInSilenceAndChosen', async () => {
    const ui = await openTones();
    // The chosen one is where the keyboard gets in.
    await ui.page.locator('.bar-title').focus();
    while (!(await ui.page.evaluate(() => document.activeElement.matches('.tone')))) await ui.page.keyboard.press('Tab');
    const focused = () => ui.page.evaluate(() => document.activeElement.textContent.trim());
    assert.equal(await focused(), 'Chord');
    for (const [press, wanted] of [['ArrowUp', 'Blip'], ['Home', 'None'], ['ArrowUp', 'Missing'], ['ArrowDown', 'None'], ['ArrowRight', 'Bell']]) {
        await ui.page.keyboard.press(press);
        assert.equal(await focused(), wanted);
    }
    const outline = await tone(ui.page, 'Bell').evaluate((element) => getComputedStyle(element).outlineWidth);
    assert.equal(outline, '3px');
    await ui.page.keyboard.press('Space');
    await sounds(ui.page, 'Bell');
    await ui.page.keyboard.press('Enter');
    await sounds(ui.page, null);
    await ui.page.keyboard.press('End');
    await ui.page.keyboard.press('Home');
    await ui.page.keyboard.press('Enter');
    await chosen(ui.page, 'None');
    // Going through them has chosen none.
    assert.deepEqual(choices(ui.phone), ['texttone:Bell', 'texttone:Bell', null]);
    // One stop for all of them.
    await ui.page.keyboard.press('Shift+Tab');
    assert.equal(await ui.page.evaluate(() => document.activeElement.matches('.tone')), false);
    await ui.close();
});

test('PlayingBars_moveUnlessMotionIsReduced', async () => {
    for (const [reducedMotion, moving] of [['no-preference', true], ['reduce', false]]) {
        const ui = await openTones({ reducedMotion });
        await tone(ui.page, 'Bell').click();
        await sounds(ui.page, 'Bell');
        const running = await ui.page.evaluate(() => document.getAnimations().some((animation) => animation.animationName === 'playing' && animation.playState === 'running'));
        assert.equal(running, moving, reducedMotion);
        await ui.close();
    }
});

test('Tones_aThousandOfThem_scrollToTheChosenOneByKeyboard', async () => {
    const list = Array.from({ length: 1000 }, (_unused, at) => ({ identifier: `texttone:T${at}`, name: `T${at}` }));
    const ui = await openTones({ arrange: (phone) => { tones(phone); phone.screen.tones = { selected: null, noneAtTop: true, list }; } });
    await tone(ui.page, 'None').focus();
    await ui.page.keyboard.press('End');
    await settled(ui.page);
    const box = await tone(ui.page, 'T999').boundingBox();
    assert.ok(box.y > 0 && box.y + box.height <= 844, `it is at ${box.y}`);
    await ui.close();
});

const calendars = (phone) => phone.show(phone.root(), phone.calendars());

test('Calendar_swatch_is29HighAndRoundedAtTheRowsStart', async () => {
    const ui = await openPage(session, { arrange: calendars });
    const cell = ui.page.locator('.row', { hasText: 'Personal' });
    const [box, swatch] = [await cell.boundingBox(), await cell.locator('.swatch').boundingBox()];
    assert.deepEqual([swatch.width, swatch.height, swatch.x - box.x], [29, 29, 16]);
    // The row is no higher for it.
    assert.equal(box.height, 44);
    assert.equal(await cell.locator('.swatch').evaluate((element) => getComputedStyle(element).borderRadius), '7px');
    await ui.close();
});

test('Calendar_checkmark_isGreyAndCanBeSeenInTheDark', async () => {
    const ui = await openPage(session, { arrange: calendars });
    const mark = ui.page.locator('.row', { hasText: 'Personal' }).locator('.check');
    await ui.page.getByRole('button', { name: 'Personal' }).click();
    await mark.waitFor();
    const grey = async () => {
        const [red, green, blue] = (await mark.evaluate((element) => getComputedStyle(element).color)).match(/\d+/g).map(Number);
        assert.ok(red === green && green === blue, 'it is grey');
        return red;
    };
    assert.equal(await grey(), 0x55);
    ui.phone.perform({ do: 'dark', on: true });
    ui.server.push();
    await ui.page.waitForFunction(() => document.documentElement.dataset.theme === 'dark');
    await settled(ui.page);
    assert.ok(await grey() > 0x80);
    await ui.close();
});

test('SwitchRow_whoseBodyCanBeTapped_isTwoThings', async () => {
    const ui = await openPage(session, { arrange: calendars });
    const [body, control] = [ui.page.getByRole('button', { name: /Ignore All Day/ }), ui.page.getByRole('switch', { name: /Ignore All Day/ })];
    const box = await ui.page.locator('.row').first().boundingBox();
    // Anywhere but on the switch.
    await ui.page.mouse.click(box.x + box.width - 90, box.y + 6);
    await until(() => lastCommand(ui.phone, 'tap'), 'the tap was sent');
    assert.equal(lastCommand(ui.phone, 'set'), undefined);
    await ui.page.getByRole('button', { name: 'Ignore All Day Events Selected' }).waitFor();
    assert.equal(await control.isChecked(), true);
    await control.click();
    await until(() => lastCommand(ui.phone, 'set'), 'the value was sent');
    assert.equal(ui.phone.commands.filter((command) => command.do === 'tap').length, 1);
    await body.focus();
    await ui.page.keyboard.press('Enter');
    await until(() => ui.phone.commands.filter((command) => command.do === 'tap').length === 2, 'the second tap was sent');
    await ui.page.keyboard.press('Tab');
    assert.equal(await control.evaluate((element) => element === document.activeElement), true);
    await ui.close();
});

test('Footer_ofARowAheadOfTheFirstGroup_standsBeneathIt', async () => {
    const ui = await openPage(session, { arrange: calendars });
    const [row, footer, next] = [
        await ui.page.locator('.row').first().boundingBox(), await ui.page.getByText('all-day events do not count').boundingBox(), await ui.page.getByText('Home', { exact: true }).boundingBox(),
    ];
    assert.ok(row.y + row.height <= footer.y && footer.y + footer.height <= next.y);
    await ui.close();
});

test('EventStatus_rows_areReadInTheProductsColour', async () => {
    const ui = await openPage(session, { arrange: (phone) => phone.show(phone.root(), phone.eventStatus()) });
    const text = ui.page.locator('.own-label').first();
    await ui.page.waitForFunction(() => getComputedStyle(document.querySelector('.own-label')).color !== 'rgb(0, 0, 0)');
    const [red, , blue] = (await text.evaluate((element) => getComputedStyle(element).color)).match(/\d+/g).map(Number);
    assert.ok(blue > red, 'it is the blue of the pattern');
    const row = ui.page.getByRole('button', { name: 'Tentative' });
    await row.focus();
    await ui.page.keyboard.press('Space');
    await ui.page.getByRole('button', { name: 'Tentative Selected' }).waitFor();
    assert.equal(await ui.page.locator('.list .check').count(), 1);
    await ui.close();
});

test('Links_areAGroupOfTheirOwnBeforeTheClosingNote', async () => {
    const ui = await openPage(session, { arrange: (phone) => {
        phone.show(phone.root(), phone.calendars());
        phone.screen.links = [{ title: 'Event Status', class: 'SampleEventStatusController' }];
    } });
    const link = ui.page.getByRole('button', { name: 'Event Status' });
    const [above, box, note] = [await ui.page.getByText('Meetings').boundingBox(), await link.boundingBox(), await ui.page.getByText('Version 1.0').boundingBox()];
    assert.ok(above.y + above.height < box.y && box.y + box.height < note.y);
    await link.focus();
    await ui.page.keyboard.press('Enter');
    await ui.page.getByRole('button', { name: 'Tentative' }).waitFor();
    assert.equal(lastCommand(ui.phone, 'link').item, 0);
    await ui.close();
});

const missing = {
    calendars: { arrange: (phone) => phone.show(phone.root(), phone.calendars({})), title: 'No Calendars', named: ['--device calendars=DIR', '/var/mobile/Library/Calendars'] },
    networks: { arrange: (phone) => phone.show(phone.root(), phone.networks([])), title: 'No Networks', named: ['--device networks=system', '--device networks=FILE', '/var/mobile/Library/Preferences/known-networks.plist'] },
    tones: { arrange: (phone) => phone.show(phone.root(), phone.toneless()), title: 'No Tones', named: ['--device toneController=NAME'] },
};

for (const [name, { arrange, title, named }] of Object.entries(missing)) {
    test(`Missing_${name}_areSaidToBeMissingAndWhereTheyComeFrom`, async () => {
        const ui = await openPage(session, { arrange });
        await ui.page.getByRole('heading', { name: title }).waitFor();
        assert.deepEqual(await ui.page.locator('.notice code').allInnerTexts(), named);
        assert.equal(await ui.page.locator('.notice .icon').count(), 1);
        for (const language of ['de', 'fr', 'es', 'ja', 'zh-Hans', 'ar']) {
            ui.phone.device = { ...ui.phone.device, language, rightToLeft: language === 'ar' };
            ui.phone.changed();
            ui.server.push();
            await ui.page.waitForFunction((wanted) => document.documentElement.lang === wanted, language);
            await ui.page.getByRole('heading', { name: title }).waitFor({ state: 'detached' });
            assert.deepEqual(await ui.page.locator('.notice code').allInnerTexts(), named, language);
        }
        await ui.close();
    });
}

test('Missing_thingsThatCome_takeThePlaceOfTheNotice', async () => {
    const ui = await openPage(session, { arrange: missing.calendars.arrange });
    await ui.page.getByRole('heading', { name: 'No Calendars' }).waitFor();
    ui.phone.screens[1] = ui.phone.calendars();
    ui.phone.changed();
    ui.server.push();
    await ui.page.getByText('Personal').waitFor();
    assert.equal(await ui.page.locator('.notice').count(), 0);
    await ui.close();
});
