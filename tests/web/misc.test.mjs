// SPDX-License-Identifier: MIT
// Maintenance and support on the page, with the real application and its system shell behind it.
import assert from 'node:assert/strict';
import { spawnSync } from 'node:child_process';
import { after, before, test } from 'node:test';
import { accessibilityProblems, settled, startBrowser, until } from './harness.mjs';
import { openPhone, profile, row, version } from './real-phone.mjs';

let session;
before(async () => { session = await startBrowser(); });
after(async () => { await session.close(); });

const profilesFile = 'var/mobile/Library/Preferences/com.velmora.quietrix.profiles.plist';
const outbox = 'var/mobile/Library/Mail/Outbox';
const mailDevice = { mailAccount: 'user@example.org', serialNumber: 'F17' };

/** The miscellaneous screen on a phone with these profiles. */
async function openMisc(options) {
    const ui = await openPhone(session, options);
    await row(ui.page, 'Miscellaneous').getByRole('button').first().click();
    await row(ui.page, 'Report Problem').waitFor();
    await settled(ui.page);
    return ui;
}

/** Taps a row and confirms its question with a button. */
async function confirm(page, name, button) {
    await row(page, name).getByRole('button').first().click();
    await page.getByRole('button', { name: button, exact: true }).click();
}

/** Moves the clock of a phone on which it moves no other way, as another page of the phone would. */
const advance = ({ page, phone }, seconds) => page.evaluate(({ secret, amount }) => new Promise((resolve, reject) => {
    const socket = new WebSocket(`ws://${location.host}/ws`);
    socket.addEventListener('open', () => {
        socket.send(JSON.stringify({ secret }));
        socket.send(JSON.stringify({ do: 'advance', seconds: amount, id: 1 }));
    });
    socket.addEventListener('close', () => reject(new Error('the clock is out of reach')));
    socket.addEventListener('message', ({ data }) => {
        const { id, ok, error } = JSON.parse(data);
        if (id !== 1) return;
        if (ok) resolve();
        else reject(new Error(error));
        socket.close();
    });
}), { secret: new URL(phone.url).hash.split('=')[1], amount: seconds });

/** The parts of a message file as another parser reads them. */
function parsed(text) {
    const script = `
import email, email.policy, json, sys
mail = email.message_from_bytes(sys.stdin.buffer.read(), policy=email.policy.default)
body, log = mail.iter_parts()
print(json.dumps({"subject": mail["Subject"], "to": mail["To"], "body": body.get_content(), "type": dict(log.raw_items())["Content-Type"].strip(),
                  "name": log.get_filename(), "log": log.get_payload(decode=True).decode()}))`;
    const read = spawnSync('python3', ['-B', '-c', script], { input: text, encoding: 'utf8' });
    if (read.status !== 0) throw new Error(`the message file cannot be read: ${read.stderr}`);
    return JSON.parse(read.stdout);
}

test('Reset_confirmed_showsItsProgressAndLeavesNoProfiles', async () => {
    const ui = await openMisc({ device: { clock: '2026-11-20T09:00:00' }, profiles: [profile('Work'), profile('Night', { enabled: false })] });
    await confirm(ui.page, 'Reset Profiles', 'OK');
    const progress = ui.page.getByRole('alertdialog', { name: 'Resetting' });
    await progress.waitFor();
    assert.match(await progress.innerText(), /Your device will be respring once it is done\./);
    assert.equal(await progress.getByRole('button').count(), 0);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    assert.notEqual(await ui.phone.readPhoneFile(profilesFile), null);
    await advance(ui, 2);
    await progress.waitFor({ state: 'detached' });
    assert.equal(await ui.phone.readPhoneFile(profilesFile), null);
    await settled(ui.page);
    await ui.page.getByRole('button', { name: /Quietrix Go|Back/ }).first().click();
    await ui.page.waitForFunction(() => (document.querySelector('.list')?.innerText.match(/No Profiles/g) ?? []).length === 2);
    assert.equal(await row(ui.page, 'Work').count(), 0);
    await ui.close();
});

test('Reset_cancelled_keepsTheProfiles', async () => {
    const ui = await openMisc({ profiles: [profile('Work')] });
    await confirm(ui.page, 'Reset Profiles', 'Cancel');
    await ui.page.getByRole('dialog').waitFor({ state: 'detached' });
    assert.equal(await ui.page.getByRole('alertdialog').count(), 0);
    assert.notEqual(await ui.phone.readPhoneFile(profilesFile), null);
    await ui.close();
});

test('Report_sentByKeyboard_endsInTheOutboxAsItWasShown', async () => {
    const ui = await openMisc({ device: mailDevice });
    await ui.phone.writePhoneFile('tmp/velmora.log', 'one line\n');
    await row(ui.page, 'Report Problem').getByRole('button').first().focus();
    await ui.page.keyboard.press('Enter');
    await ui.page.getByRole('button', { name: 'Send Now', exact: true }).waitFor();
    await ui.page.getByRole('button', { name: 'Send Now', exact: true }).press('Enter');
    const composer = ui.page.getByRole('dialog', { name: 'Quietrix Go - velmora.log' });
    await composer.waitFor();
    const body = await composer.locator('.mail-body').textContent();
    assert.match(body, /^Please donot remove the below information\.\nSerial number: F17\n/);
    assert.match(body, new RegExp(`\\nVersion ${version.replaceAll('.', '\\.')}\\. Quietrix Go .*$`));
    assert.match(await composer.locator('.attachments').innerText(), /velmora\.log[\s\S]*one line/);
    assert.deepEqual(await accessibilityProblems(ui.page), []);
    await composer.getByRole('button', { name: 'Send' }).press('Enter');
    await composer.waitFor({ state: 'detached' });
    const [name, ...others] = await ui.phone.listPhoneFiles(outbox);
    assert.deepEqual(others, []);
    const mail = parsed(await ui.phone.readPhoneFile(`${outbox}/${name}`));
    assert.deepEqual([mail.subject, mail.to, mail.type, mail.name, mail.log], ['Quietrix Go - velmora.log', 'support@velmora.com', 'mime', 'velmora.log', 'one line\n']);
    assert.equal(mail.body.trim(), body);
    await ui.close();
});

test('Report_withoutAnAccount_saysSo', async () => {
    const ui = await openMisc({});
    await confirm(ui.page, 'Report Problem', 'Send Now');
    const alert = ui.page.getByRole('alertdialog', { name: 'Information' });
    await alert.waitFor();
    assert.match(await alert.innerText(), /No email accounts configured\./);
    await alert.getByRole('button', { name: 'Close' }).click();
    await alert.waitFor({ state: 'detached' });
    assert.deepEqual(await ui.phone.listPhoneFiles(outbox), []);
    await ui.close();
});

test('ShareAndFollow_chosen_openTheServicesPages', async () => {
    const ui = await openMisc({});
    const sheet = async (button) => {
        await ui.page.locator('.bar-side.trailing .bar-button').last().click();
        await ui.page.getByRole('button', { name: button }).click();
    };
    await sheet(/^Share/);
    await ui.page.getByRole('button', { name: 'Post' }).click();
    await until(() => /Please open https:\/\/twitter\.com\/intent\/tweet\?\S*Quietrix/.test(ui.phone.errors()), 'the share page was opened');
    await settled(ui.page);
    await sheet(/^Follow/);
    await until(() => /Please open https:\/\/twitter\.com\/velmora$/m.test(ui.phone.errors()), 'the account was opened');
    await ui.close();
});

for (const [name, device] of [['light', {}], ['dark', { darkMode: 'true' }], ['japanese', { languages: 'ja' }]]) {
    test(`Misc_${name}_isAccessible`, async () => {
        const ui = await openPhone(session, { device });
        await ui.page.locator('.list .row').last().getByRole('button').first().click();
        await ui.page.locator('.list .row .destructive').waitFor();
        assert.deepEqual(await accessibilityProblems(ui.page), []);
        await ui.close();
    });
}
