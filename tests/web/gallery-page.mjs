// SPDX-License-Identifier: MIT
// The picture of the page for the README: three screens on one desk, with the buttons that stand beside a phone.
import { settled } from './harness.mjs';
import { openPhone, profile, row } from './real-phone.mjs';

const size = { width: 1480, height: 820 };
/** How far the phones stand apart, from middle to middle. */
const apart = 440;
const phoneAndFrame = 424;

const profiles = [
    profile('Work', { allDay: false, startTime: '9:00 AM', endTime: '5:00 PM', playAlert: true, ringerVolume: 0.35, playBackVolume: 0.5, vibrate: true }),
    profile('Night', { allDay: false, startTime: '9:30 PM', endTime: '11:59 PM' }), profile('Cinema', { enabled: false }), profile('Holidays', { enabled: false }),
];

async function pictures(session) {
    const ui = await openPhone(session, { profiles, device: { clock: '2026-11-20T09:41:00' } }, { viewport: size });
    const { page } = ui;
    const taken = [];
    const take = async () => {
        await page.mouse.move(0, 0);
        await settled(page);
        taken.push((await page.screenshot()).toString('base64'));
    };
    await row(page, 'Work').waitFor();
    await take();
    await row(page, 'Work').click();
    await page.getByRole('heading', { level: 1, name: 'Work' }).waitFor();
    await take();
    await row(page, 'From').click();
    await page.getByRole('heading', { level: 1, name: 'Active Hours' }).waitFor();
    await page.locator('.dark-switch').click();
    await page.locator('html[data-theme="dark"]').waitFor();
    await take();
    await ui.close();
    return taken;
}

/** The picture's bytes, as a PNG file. */
export async function picturePage(session, darkroom) {
    const url = await darkroom.page.evaluate(async ({ taken, plan }) => {
        const [first, ...others] = await Promise.all(taken.map((each) => globalThis.load('png', each)));
        const canvas = document.createElement('canvas');
        [canvas.width, canvas.height] = [plan.width, plan.height];
        const context = canvas.getContext('2d');
        const middle = (plan.width - plan.phone) / 2;
        // The first one's window, with nothing on its ground but the buttons.
        context.drawImage(first, 0, 0);
        context.drawImage(first, 0, 0, 1, plan.height, 0, 0, plan.width - plan.buttons, plan.height);
        for (const [at, image] of [first, ...others].entries()) {
            const left = middle + (at - 1) * plan.apart - plan.aside;
            context.save();
            context.beginPath();
            context.roundRect(left + 4, 7, plan.phone - 8, plan.height - 14, plan.corner);
            context.clip();
            context.drawImage(image, middle, 0, plan.phone, plan.height, left, 0, plan.phone, plan.height);
            context.restore();
        }
        return canvas.toDataURL('image/png');
    }, { taken: await pictures(session), plan: { ...size, apart, phone: phoneAndFrame, corner: 64, buttons: 72, aside: 24 } });
    return Buffer.from(url.slice(url.indexOf(',') + 1), 'base64');
}
