// SPDX-License-Identifier: MIT
// What every browser test needs: the built page, a server behind it, a browser in front of it.
import { spawnSync } from 'node:child_process';
import { existsSync } from 'node:fs';
import { mkdtemp, rm } from 'node:fs/promises';
import { tmpdir } from 'node:os';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';
import { MockPhone } from './mock-phone.mjs';
import { startMockServer } from './mock-server.mjs';
import { requireModule } from './modules.mjs';

const { chromium, firefox } = requireModule('playwright-core');
const axe = requireModule('axe-core');

const flags = [
    '--no-sandbox', '--disable-gpu', '--disable-quic', '--no-first-run', '--disable-background-networking', '--disable-component-update', '--disable-sync',
    '--force-color-profile=srgb', '--font-render-hinting=none',
];

export const phoneSize = { width: 390, height: 844 };
export const deskSize = { width: 1280, height: 900 };

/** How long a test waits for what has to happen, in milliseconds: only what hangs takes longer, on a slow machine too. */
export const patience = 60_000;

let dist = null;

/** The built page: QUIETRIX_WEB_DIST, or else built once for this test file. */
async function builtPage() {
    if (process.env.QUIETRIX_WEB_DIST) return { path: process.env.QUIETRIX_WEB_DIST, temporary: false };
    const path = await mkdtemp(join(tmpdir(), 'quietrix-page-'));
    const script = fileURLToPath(new URL('../../settings/web/build.mjs', import.meta.url));
    const modules = process.env.QUIETRIX_WEB_MODULES ? [`--modules=${process.env.QUIETRIX_WEB_MODULES}`] : [];
    const built = spawnSync(process.execPath, [script, `--outdir=${path}`, ...modules], { encoding: 'utf8' });
    if (built.status !== 0) throw new Error(`the page cannot be built: ${built.stderr}`);
    return { path, temporary: true };
}

/** Where Debian puts its Firefox; null where there is none. */
const firefoxPath = [process.env.QUIETRIX_FIREFOX, '/usr/bin/firefox-esr', '/usr/bin/firefox'].find((path) => path && existsSync(path)) ?? null;
/** The first one whose remote protocol has all that the driver asks for. */
const oldestFirefox = 143;

/** Why no test can run in Firefox here; null where one can. */
export function whyNoFirefox() {
    const skipped = 'no test can run in Firefox on this machine';
    if (firefoxPath === null) return `${skipped}: there is none; install firefox-esr`;
    const version = /\d+/.exec(spawnSync(firefoxPath, ['--version'], { encoding: 'utf8' }).stdout)?.[0] ?? 'without a version';
    return Number(version) >= oldestFirefox ? null : `${skipped}: ${firefoxPath} is ${version}, and ${oldestFirefox} is needed`;
}

/** Scroll bars that take no room, as those of a Chromium without a head, and the reduced motion that its remote protocol has no word for. */
const likeAPhone = { 'widget.gtk.overlay-scrollbars.enabled': true, 'ui.useOverlayScrollbars': 1, 'ui.prefersReducedMotion': 1 };

/**
 * How each browser is started: Debian's, as it is. The shell of Chromium is its engine without the windows of a desktop, which take
 * half of a test's time. Firefox is spoken to over its own remote protocol.
 */
const launchers = {
    chromium: (env) => chromium.launch({ executablePath: process.env.QUIETRIX_CHROMIUM ?? '/usr/bin/chromium-headless-shell', headless: true, args: flags, timeout: patience, env }),
    firefox: (env) => firefox.launch({ channel: 'moz-firefox', executablePath: firefoxPath, headless: true, timeout: patience, env, firefoxUserPrefs: likeAPhone }),
};

/** A browser for the tests of one file; close() ends it and removes what it left. */
export async function startBrowser({ name = 'chromium' } = {}) {
    dist = await builtPage();
    const profile = await mkdtemp(join(tmpdir(), 'quietrix-browser-'));
    const browser = await launchers[name]({ ...process.env, HOME: profile });
    const servers = new Set();
    return {
        browser,
        servers,
        async close() {
            await browser.close();
            // A test that failed has not closed its own.
            for (const server of servers) await server.close();
            await rm(profile, { recursive: true, force: true });
            if (dist.temporary) await rm(dist.path, { recursive: true, force: true });
        },
    };
}

/**
 * Opens the page. Without an address in `url`, on a made-up application of its own (`phone`) that `arrange` may prepare; `url` may also be a function that makes an address of that one's server. `beforehand` runs in the page before its own code, and `between` gets the page before it is opened. The page is opened once `ready` is there.
 * Under reduced motion screens change at once unless `fades`: what is not about them need not wait for them.
 * The result's close() fails the test if the page has logged an error (but for what `tolerate` matches) or broken its content-security policy.
 */
export async function openPage(session, { phone = new MockPhone(), arrange = () => {}, url = null, viewport = phoneSize, reducedMotion = 'reduce', fades = false, colorScheme = 'light', touch = false, scale = 1, tolerate = null, beforehand = null, between = null, ready = '.navigator .page' } = {}) {
    arrange(phone);
    const server = typeof url === 'string' ? null : await startMockServer({ dist: dist.path, phone });
    if (server) session.servers.add(server);
    const context = await session.browser.newContext({ viewport, reducedMotion, colorScheme, hasTouch: touch, deviceScaleFactor: scale, locale: 'en-US' });
    const page = await context.newPage();
    page.setDefaultTimeout(patience);
    if (beforehand) await page.addInitScript(beforehand);
    if (!fades) await page.addInitScript(endFades);
    if (between) await between(page);
    const problems = [];
    page.on('pageerror', (error) => problems.push(String(error)));
    page.on('console', (message) => {
        // A lost connection is reported by the browser itself; some tests cut it on purpose.
        if (message.type() === 'error' && !/WebSocket connection|ERR_CONNECTION_REFUSED/.test(message.text()) && !tolerate?.test(message.text())) problems.push(message.text());
    });
    await page.goto(typeof url === 'function' ? url(server) : url ?? server.url);
    await page.locator(ready).first().waitFor();
    await page.waitForFunction(fontsLoaded);
    return {
        page, phone, server,
        async close() {
            await context.close();
            await server?.close();
            session.servers.delete(server);
            if (problems.length > 0) throw new Error(`the page reported: ${problems.join(' | ')}`);
        },
    };
}

/** Runs in the page before its own code: takes the time out of its cross-fades. */
const endFades = () => document.addEventListener('readystatechange', () => document.documentElement.style.setProperty('--fade-time', '0ms'), { once: true });

/** Violations of WCAG 2 A and AA, as lines to be read in a failing test. */
export async function accessibilityProblems(page) {
    // Evaluated, not added as an element: the page's policy would rightly refuse that.
    await page.evaluate(axe.source);
    await settled(page);
    // The values above and below the wheel's middle fade towards its edges; each can be read once it is in the middle.
    const { violations } = await page.evaluate(() => globalThis.axe.run({ include: [document], exclude: ['.wheel-value[aria-hidden="true"]'] }, { runOnly: ['wcag2a', 'wcag2aa', 'wcag21a', 'wcag21aa'] }));
    return violations.map((violation) => `${violation.id}: ${violation.nodes.map((node) => `${node.target} ${node.any[0]?.message ?? ''}`).join('; ')}`);
}

/** Runs in the page: whether its text has the fonts that it asks for. Until then it may be wider, and take more lines. */
const fontsLoaded = () => document.body.offsetHeight > 0 && document.fonts.status === 'loaded';

/** Resolves when the fonts are there, no animation runs any more, and what the page does at the end of one is done. */
export async function settled(page) {
    await page.waitForFunction(fontsLoaded);
    await page.waitForFunction(() => document.getAnimations().every((animation) => animation.playState !== 'running' || animation.effect?.getTiming().iterations === Infinity));
    // An animation's end is told to the page with the frame after it, before that frame's own callbacks.
    await page.evaluate(() => new Promise((resolve) => { requestAnimationFrame(() => requestAnimationFrame(resolve)); }));
}

/** Gives the window another size; resolves when the page has taken it. */
export async function resize(page, size) {
    await page.setViewportSize(size);
    await page.waitForFunction(({ width, height }) => innerWidth === width && innerHeight === height, size);
    // Whatever follows the window is told with the next frame.
    await settled(page);
}

/** Has the page try at once to connect again, as when the machine is back on its network; it may have done so by itself. */
export const tryAgain = (page) => page.evaluate(() => { window.dispatchEvent(new Event('online')); });

/** Ends at once the animations that run; resolves when what the page does at their end is done. */
export async function finishAnimations(page) {
    await page.evaluate(() => { for (const animation of document.getAnimations()) if (animation.effect?.getTiming().iterations !== Infinity) animation.finish(); });
    await settled(page);
}

/** Resolves when a condition on this side of the browser holds; fails after its time limit. */
export async function until(condition, what) {
    const end = Date.now() + patience;
    while (!condition()) {
        if (Date.now() > end) throw new Error(`never happened: ${what}`);
        await new Promise((resolve) => setImmediate(resolve));
    }
}

export const lastCommand = (phone, name) => phone.commands.filter((command) => command.do === name).at(-1);
