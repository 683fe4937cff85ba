// SPDX-License-Identifier: MIT
import assert from 'node:assert/strict';
import { readFile } from 'node:fs/promises';
import { after, before, test } from 'node:test';
import { accessibilityProblems, startBrowser, until } from './harness.mjs';
import { openWorkbench } from './workbench.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const field = (ui) => ui.panel.getByRole('combobox', { name: 'Command' });
const button = (ui, name) => ui.panel.getByRole('region', { name: 'Script' }).getByRole('button', { name, exact: true });
const run = async (ui, line) => {
    await field(ui).fill(line);
    await field(ui).press('Enter');
};
/** What the application was told beside looking, without what belongs to the conversation. */
const told = (phone) => phone.commands.filter(({ do: name }) => name !== 'state').map(({ id, from, count, elsewhere, ...command }) => command);
const options = (ui) => ui.panel.getByRole('option').allTextContents();
const steps = (ui) => ui.panel.getByRole('listitem').locator('code').allTextContents();

test('Console_lines_areSentAsTheySay', async () => {
    const ui = await openWorkbench(session, 'console');
    const lines = {
        '{"do":"tap","row":8}': { do: 'tap', row: 8 },
        'tap row=8 key=12': { do: 'tap', row: 8, key: '12' },
        'set row=1 value=false': { do: 'set', row: 1, value: false },
        'set row=1 value="two words"': { do: 'set', row: 1, value: 'two words' },
        'set row=1 value=word': { do: 'set', row: 1, value: 'word' },
        'choose action="Share \\"it\\""': { do: 'choose', action: 'Share "it"' },
        'pickTone identifier=null': { do: 'pickTone', identifier: null },
        'device set.languages=ar set.darkMode=true': { do: 'device', set: { languages: 'ar', darkMode: true } },
        'dark on=true': { do: 'dark', on: true },
    };
    for (const line of Object.keys(lines)) await run(ui, line);
    await until(() => told(ui.phone).length === Object.keys(lines).length, 'all were sent');
    assert.deepEqual(told(ui.phone), Object.values(lines));
    await ui.close();
});

test('Console_lineThatIsNoCommand_saysWhyAndSendsNothing', async () => {
    const ui = await openWorkbench(session, 'console');
    for (const [line, why] of [['{"do":"tap",', /JSON|position|Expected|property/], ['{"row":3}', 'The object has no "do"'], ['tap 3', '“3” is no field'], ['row=3', 'A line begins with']]) {
        await run(ui, line);
        await ui.panel.locator('.wb-entry').last().getByText(why).waitFor();
    }
    assert.deepEqual(told(ui.phone), []);
    await ui.close();
});

test('Console_answers_areFoldedAndSayWhatCameOfThem', async () => {
    const ui = await openWorkbench(session, 'console');
    await run(ui, 'tap row=8');
    const done = ui.panel.locator('.wb-entry').last();
    await done.getByText(/^ok · revision 2 · SampleMiscController, 5 rows$/).waitFor();
    assert.equal(await done.locator('details[open]').count(), 0);
    await done.locator('summary').click();
    await done.getByText('state', { exact: true }).waitFor();
    await run(ui, 'tap row=99');
    await ui.panel.locator('.wb-entry').last().getByText('cannot do tap').waitFor();
    await run(ui, 'back screen=77');
    await ui.panel.locator('.wb-entry').last().getByText(/^stale/).waitFor();
    await ui.close();
});

test('Console_completion_offersCommandsFieldsAndWhatTheScreenHas', async () => {
    const ui = await openWorkbench(session, 'console');
    const input = field(ui);
    await input.pressSequentially('pick');
    assert.deepEqual(await options(ui), ['pickTime', 'pickTimeRow', 'pickTone']);
    await input.press('ArrowDown');
    await input.press('ArrowDown');
    assert.equal(await ui.panel.getByRole('option', { selected: true }).textContent(), 'pickTimeRow');
    await input.press('Enter');
    assert.equal(await input.inputValue(), 'pickTimeRow ');
    await input.fill('');
    await input.pressSequentially('ba');
    await input.press('Escape');
    await input.pressSequentially('r s');
    assert.ok((await options(ui)).includes('side='));
    await input.press('Tab');
    assert.equal(await input.inputValue(), 'bar side=');
    assert.deepEqual(await options(ui), ['left', 'right']);
    await input.fill('');
    await input.pressSequentially('tap key=');
    assert.ok((await options(ui)).some((text) => text.endsWith('Miscellaneous')));
    // A name leads to the key as well.
    await input.pressSequentially('misc');
    await input.press('Tab');
    const key = ui.phone.rows().find((row) => row.name === 'Miscellaneous').key;
    assert.equal(await input.inputValue(), `tap key=${key} `);
    await input.fill('');
    await input.pressSequentially('{"do":"comp');
    await input.press('Tab');
    assert.equal(await input.inputValue(), '{"do":"compose');
    await input.pressSequentially('","r');
    await input.press('Tab');
    assert.equal(await input.inputValue(), '{"do":"compose","result');
    await ui.close();
});

test('Console_arrowUp_bringsBackEarlierLinesAlsoAfterAReload', async () => {
    const ui = await openWorkbench(session, 'console');
    await run(ui, 'dark on=true');
    await run(ui, 'back');
    await field(ui).fill('unfinished');
    await field(ui).press('Escape');
    for (const expected of ['back', 'dark on=true', 'dark on=true']) {
        await field(ui).press('ArrowUp');
        assert.equal(await field(ui).inputValue(), expected);
    }
    await field(ui).press('ArrowDown');
    await field(ui).press('ArrowDown');
    assert.equal(await field(ui).inputValue(), 'unfinished');
    await ui.page.reload();
    await field(ui).waitFor();
    await field(ui).press('ArrowUp');
    assert.equal(await field(ui).inputValue(), 'back');
    await ui.close();
});

test('Script_recorded_holdsWhatThePhoneAndTheConsoleDoAndIsSaved', async () => {
    const ui = await openWorkbench(session, 'console');
    await button(ui, 'Record').click();
    await ui.page.getByRole('switch', { name: 'Enabled' }).click();
    await run(ui, 'dark on=true');
    await run(ui, 'find text=misc');
    await run(ui, 'wait event=reload seconds=1');
    await ui.page.locator('.list .row', { hasText: 'Miscellaneous' }).click();
    await ui.page.getByRole('heading', { level: 1, name: 'Miscellaneous' }).waitFor();
    await button(ui, 'Stop recording').click();
    await run(ui, 'back');
    assert.deepEqual(await steps(ui), ['set row=1 value=false', 'dark on=true', 'wait event=reload seconds=1', 'tap row=3']);
    const [download] = await Promise.all([ui.page.waitForEvent('download'), button(ui, 'Save…').click()]);
    assert.equal(download.suggestedFilename(), 'script.jsonl');
    const saved = (await readFile(await download.path(), 'utf8')).trimEnd().split('\n').map((line) => JSON.parse(line));
    assert.deepEqual(saved, [{ do: 'set', row: 1, value: false }, { do: 'dark', on: true }, { do: 'wait', event: 'reload', seconds: 1 }, { do: 'tap', row: 3 }]);
    await ui.close();
});

const open = (ui, text) => ui.panel.locator('input[type="file"]').setInputFiles({ name: 'way.jsonl', mimeType: 'text/plain', buffer: Buffer.from(text) });

test('Script_opened_isPlayedUpToWhatIsRefused', async () => {
    const ui = await openWorkbench(session, 'console');
    await open(ui, '# a way\n{"do":"set","row":1,"value":false}\n\ntap row=3\ntap row=99\nback\n');
    await ui.panel.getByText('0 of 4 steps played').waitFor();
    await button(ui, 'Play').click();
    await ui.panel.getByText('Step 3: cannot do tap').waitFor();
    assert.deepEqual(told(ui.phone), [{ do: 'set', row: 1, value: false }, { do: 'tap', row: 3 }, { do: 'tap', row: 99 }]);
    assert.deepEqual(await ui.panel.getByRole('img').evaluateAll((marks) => marks.map((mark) => mark.ariaLabel)), ['done', 'done', 'refused', 'not played']);
    assert.equal(await ui.panel.getByRole('progressbar').evaluate((bar) => bar.value), 2);
    // What is played is not recorded, and what was refused can be taken out.
    await ui.panel.getByRole('button', { name: 'Remove step 3' }).click();
    await button(ui, 'Play').click();
    await ui.panel.getByText('3 of 3 steps played').waitFor();
    assert.deepEqual(told(ui.phone).map((command) => command.do), ['set', 'tap', 'tap', 'back']);
    await ui.close();
});

test('Script_played_inSteps', async () => {
    const ui = await openWorkbench(session, 'console');
    await open(ui, 'set row=1 value=false\nset row=1 value=true\n');
    await button(ui, 'Step').click();
    await ui.panel.getByText('1 of 2 steps played').waitFor();
    assert.equal(told(ui.phone).length, 1);
    await button(ui, 'Step').click();
    await ui.panel.getByText('2 of 2 steps played').waitFor();
    await button(ui, 'Step').click();
    await ui.panel.getByText('1 of 2 steps played').waitFor();
    assert.deepEqual(told(ui.phone).map((command) => command.value), [false, true, false]);
    await ui.close();
});

test('Script_playing_isStopped', async () => {
    const ui = await openWorkbench(session, 'console');
    await open(ui, 'dark on=true\ndark on=false\n');
    ui.server.hold = true;
    await button(ui, 'Play').click();
    await until(() => ui.server.held.length === 1, 'the first was sent');
    await button(ui, 'Stop').click();
    ui.server.letGo();
    await ui.panel.getByText('1 of 2 steps played').waitFor();
    assert.deepEqual(told(ui.phone), [{ do: 'dark', on: true }]);
    await ui.close();
});

test('Script_fileThatIsNone_saysWhereAndLeavesTheOldOne', async () => {
    const ui = await openWorkbench(session, 'console');
    await open(ui, 'back\n');
    await open(ui, 'back\n{"row":1}\n');
    await ui.panel.getByText('way.jsonl: Line 2: The object has no "do" that names a command.').waitFor();
    assert.deepEqual(await steps(ui), ['back']);
    await ui.close();
});

for (const darkMode of [false, true]) {
    test(`Console_${darkMode ? 'dark' : 'light'}_isAccessible`, async () => {
        const ui = await openWorkbench(session, 'console', { arrange: (phone) => { phone.device.darkMode = darkMode; } });
        await open(ui, 'set row=1 value=false\ntap row=99\nback\n');
        await button(ui, 'Play').click();
        await ui.panel.getByText('Step 2: cannot do tap').waitFor();
        await field(ui).pressSequentially('tap ');
        await ui.panel.getByRole('option').first().waitFor();
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.close();
    });
}

test('Workbench_tabs_areChosenByTheArrowKeys', async () => {
    const ui = await openWorkbench(session, 'rows');
    const tab = (name) => ui.pane.getByRole('tab', { name });
    await tab('Rows').press('ArrowRight');
    await field(ui).waitFor();
    assert.equal(await tab('Console').evaluate((element) => element === document.activeElement), true);
    assert.equal(await ui.pane.getByRole('tab', { selected: true }).count(), 1);
    assert.equal(await ui.pane.locator('[role="tab"][tabindex="0"]').count(), 1);
    assert.match(ui.page.url(), /\?workbench=console$/);
    await tab('Console').press('Home');
    await ui.panel.getByRole('searchbox').waitFor();
    await tab('Rows').press('ArrowLeft');
    assert.equal(await ui.pane.getByRole('tab').last().getAttribute('aria-selected'), 'true');
    await ui.close();
});
