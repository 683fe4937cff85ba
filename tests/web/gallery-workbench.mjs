// SPDX-License-Identifier: MIT
// Pictures of the workbench for its page in docs/. They are looked at and not compared: the times in them are another each time.
import { settled } from './harness.mjs';
import { asWebP } from './pictures.mjs';
import { openPhone, profile, row } from './real-phone.mjs';
import { line } from './workbench.mjs';

const size = { width: 1440, height: 860 };

const scenes = {
    /** All that a switch has caused, from the press to the last reload, and the phone as it was in the middle of it. */
    async timeline(page, pane) {
        await row(page, 'Work').click();
        await page.getByRole('heading', { level: 1, name: 'Work' }).waitFor();
        await pane.getByRole('button', { name: 'Clear' }).click();
        await page.getByRole('switch', { name: 'Vibrate', exact: true }).first().click();
        await pane.locator('.wb-event-darwinReceived').waitFor();
        await pane.locator('.wb-event-write').first().click();
        await page.locator('.wb-past').waitFor();
        await settled(page);
        const isWhole = await pane.locator('.wb-list').evaluate((list) => list.scrollHeight <= list.clientHeight);
        if (!isWhole) throw new Error('the picture has no room for the whole of what a switch has caused');
    },
    /** What turning the main switch off and on again has changed, and a row lit on the phone. */
    async rows(page, pane) {
        const master = page.getByRole('switch', { name: 'Enabled' });
        await master.click();
        await row(page, 'Work').waitFor({ state: 'detached' });
        await master.click();
        await line(pane, 'Work').click();
        await pane.getByRole('region', { name: 'Chosen row' }).waitFor();
    },
};

/** How many pictures there are. */
export const picturesOfTheWorkbench = Object.keys(scenes).length;

/** Takes the pictures, each told with its name and its bytes, as a WebP file. */
export async function pictureWorkbench(session, darkroom, taken) {
    for (const [name, prepare] of Object.entries(scenes)) {
        const ui = await openPhone(session, { profiles: [profile('Work'), profile('Cinema')], device: { clock: '2026-11-20T09:41:00' } }, { viewport: size });
        await ui.page.keyboard.press('F2');
        const pane = ui.page.getByRole('complementary', { name: 'Workbench' });
        await pane.getByRole('tab', { name: new RegExp(`^${name}$`, 'i') }).click();
        await prepare(ui.page, pane);
        await settled(ui.page);
        await taken(name, await asWebP(darkroom, await ui.page.screenshot()));
        await ui.close();
    }
}
