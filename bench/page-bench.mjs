// SPDX-License-Identifier: MIT
// How fast the page is: node page-bench.mjs, or the target page-bench; of the workbench alone, node page-bench.mjs timeline. The real program with 10 and with 10,000 profiles, the
// real page in a browser. What the program takes for its answer is told apart from what the page takes, and how even the
// machine was meanwhile is told beside the figures: on a busy one they mean little.
import { readFile, readdir } from 'node:fs/promises';
import { loadavg } from 'node:os';
import { join } from 'node:path';
import { gzipSync } from 'node:zlib';
import { settled, startBrowser } from '../tests/web/harness.mjs';
import { WorkbenchPhone } from '../tests/web/mock-workbench.mjs';
import { openPhone, profile } from '../tests/web/real-phone.mjs';
import { openWorkbench } from '../tests/web/workbench.mjs';

const times = Number(process.env.QUIETRIX_BENCH_TIMES ?? 50);
const dist = process.env.QUIETRIX_WEB_DIST;

const at = (values, share) => [...values].sort((one, other) => one - other)[Math.min(values.length - 1, Math.floor(values.length * share))] ?? Number.NaN;
const median = (values) => at(values, 0.5);
const ms = (value) => `${value.toFixed(1)} ms`;

/** Runs in the page ahead of its own code: notes when something is pressed, sent, answered, drawn and painted. */
function instrument() {
    const notes = { pressed: 0, sent: 0, answers: [], painted: 0 };
    globalThis.notes = notes;
    const painted = (then) => requestAnimationFrame(() => {
        const { port1, port2 } = new MessageChannel();
        port1.onmessage = () => then(performance.now());
        port2.postMessage(null);
    });
    addEventListener('pointerup', (event) => {
        Object.assign(notes, { pressed: event.timeStamp, sent: 0, answers: [], painted: 0, pressPainted: 0 });
        painted((now) => { notes.pressPainted = now; });
    }, { capture: true });
    const { send, addEventListener: listen } = WebSocket.prototype;
    WebSocket.prototype.send = function (data) {
        if (notes.sent === 0) notes.sent = performance.now();
        return send.call(this, data);
    };
    WebSocket.prototype.addEventListener = function (type, listener, ...rest) {
        if (type !== 'message') return listen.call(this, type, listener, ...rest);
        return listen.call(this, type, (event) => {
            const begun = performance.now();
            listener(event);
            notes.answers.push({ begun, drawn: performance.now() });
            painted((now) => { notes.painted = now; });
        }, ...rest);
    };
}

/** The processor time that the page's own thread has used so far, in milliseconds: no other program is in it. */
async function worked(devtools) {
    const { metrics } = await devtools.send('Performance.getMetrics');
    const used = (name) => metrics.find((metric) => metric.name === name)?.value ?? 0;
    return (used('ScriptDuration') + used('LayoutDuration') + used('RecalcStyleDuration')) * 1000;
}

/** Presses something and tells what came of it, once `shown` holds. */
async function press(page, devtools, target, shown) {
    const box = await target.boundingBox();
    const before = await worked(devtools);
    await page.mouse.click(box.x + Math.min(60, box.width / 2), box.y + box.height / 2);
    await page.waitForFunction(shown.check, shown.argument);
    await page.waitForFunction(() => globalThis.notes.painted > 0);
    const notes = await page.evaluate(() => globalThis.notes);
    const work = await worked(devtools) - before;
    await settled(page);
    const last = notes.answers.at(-1);
    const program = last.begun - notes.sent;
    return { program, patch: last.drawn - notes.pressed - program, frame: notes.painted - notes.pressed - program, trips: notes.answers.length, work };
}

const headingIs = (argument) => ({ argument, check: (text) => [...document.querySelectorAll('.bars .bar:not([inert]) h1')].some((each) => (each.querySelector('img')?.alt ?? each.textContent.trim()) === text) });

function report(what, samples, limit) {
    const beyond = samples.map((sample) => sample.patch);
    console.log(`  ${what.padEnd(18)} processor ${ms(median(samples.map((sample) => sample.work)))}; patch ${ms(median(beyond))} beyond the answer (limit ${limit}), 95 % ${ms(at(beyond, 0.95))}; painted ${ms(median(samples.map((sample) => sample.frame)))}; the program ${ms(median(samples.map((sample) => sample.program)))}; ${median(samples.map((sample) => sample.trips))} answer(s)`);
}

/** How even the machine is: one and the same work, again and again. */
const evenness = (page) => page.evaluate(() => Array.from({ length: 60 }, () => {
    const begun = performance.now();
    let sum = 0;
    for (let turn = 0; turn < 2_000_000; turn += 1) sum += turn % 7;
    return performance.now() - begun + (sum < 0 ? 1 : 0);
}));

async function presses(session, count) {
    const profiles = Array.from({ length: count }, (_unused, number) => profile(`Profile ${number}`));
    const ui = await openPhone(session, { profiles }, { beforehand: instrument, reducedMotion: 'no-preference' });
    const { page } = ui;
    await settled(page);
    const devtools = await page.context().newCDPSession(page);
    await devtools.send('Performance.enable', { timeDomain: 'threadTicks' });
    console.log(`${count} profiles:`);
    const opened = [];
    const left = [];
    const moved = [];
    const root = await page.evaluate(() => { const title = document.querySelector('.bar h1'); return title.querySelector('img')?.alt ?? title.textContent.trim(); });
    for (let turn = -3; turn < times; turn += 1) {
        const row = page.locator('.list .row button.cell', { hasText: /^\s*Profile [3-6](?!\d)/ }).nth(turn & 3);
        const name = (await row.locator('.title').textContent()).trim();
        const opening = await press(page, devtools, row, headingIs(name));
        const control = page.getByRole('switch', { name: 'Vibrate', exact: true });
        const on = await control.isChecked();
        const box = await control.boundingBox();
        await page.mouse.click(box.x + box.width / 2, box.y + box.height / 2);
        await page.waitForFunction(() => globalThis.notes.painted > 0 && globalThis.notes.pressPainted > 0);
        const notes = await page.evaluate(() => globalThis.notes);
        if (await control.isChecked() === on) throw new Error('the switch did not move');
        const leaving = await press(page, devtools, page.locator('.bars .bar:not([inert]) .bar-button.back'), headingIs(root));
        if (turn < 0) continue;
        opened.push(opening);
        left.push(leaving);
        moved.push(notes.pressPainted - notes.pressed);
    }
    report('opening', opened, '16 ms');
    report('back', left, '16 ms');
    console.log(`  switch             painted ${ms(median(moved))} after the press, 95 % ${ms(at(moved, 0.95))}, whatever the answer takes`);
    if (count > 1000) await scrolling(page);
    const even = await evenness(page);
    console.log(`  noise              the same work takes ${ms(median(even))}, 95 % ${ms(at(even, 0.95))}; load ${loadavg()[0].toFixed(1)}`);
    await ui.close();
}

async function scrolling(page) {
    const devtools = await page.context().newCDPSession(page);
    for (const [what, speed, distance] of [['reading speed', 800, 6000], ['fast', 4000, 40_000]]) {
        await page.evaluate(() => {
            const frames = { times: [], blank: 0, waiting: 0, running: true };
            globalThis.frames = frames;
            const view = document.querySelector('.bodies .page').getBoundingClientRect();
            const look = (now) => {
                if (!frames.running) return;
                frames.times.push(now);
                for (const share of [0.1, 0.5, 0.9]) {
                    const there = document.elementFromPoint(view.left + view.width / 2, view.top + view.height * share);
                    if (there?.classList.contains('page') || there?.classList.contains('list') || there?.classList.contains('page-inner')) frames.blank += 1;
                    if (there?.closest('[aria-busy]')) frames.waiting += 1;
                }
                requestAnimationFrame(look);
            };
            requestAnimationFrame(look);
        });
        await devtools.send('Input.synthesizeScrollGesture', { x: 195, y: 500, yDistance: -distance, speed, gestureSourceType: 'touch', preventFling: true });
        const frames = await page.evaluate(() => { globalThis.frames.running = false; return globalThis.frames; });
        const gaps = frames.times.slice(1).map((time, index) => time - frames.times[index]);
        const swift = gaps.filter((gap) => gap < 20).length / gaps.length;
        console.log(`  scrolling, ${what}: ${(swift * 100).toFixed(1)} % of ${gaps.length} frames under 20 ms (limit 95 %), median ${ms(median(gaps))}, longest ${ms(Math.max(...gaps))}; blank spots ${frames.blank}, waiting spots ${frames.waiting}`);
    }
}

/** Frames of the page while `act` goes on: how far they are apart, and how long the page's own thread works. */
async function framesWhile(page, devtools, act) {
    await page.evaluate(() => {
        globalThis.frames = { times: [], running: true };
        const look = (now) => {
            globalThis.frames.times.push(now);
            if (globalThis.frames.running) requestAnimationFrame(look);
        };
        requestAnimationFrame(look);
    });
    const before = await worked(devtools);
    await act();
    const times = await page.evaluate(() => { globalThis.frames.running = false; return globalThis.frames.times; });
    const work = (await worked(devtools) - before) / times.length;
    const gaps = times.slice(1).map((time, index) => time - times[index]);
    return { swift: gaps.filter((gap) => gap < 20).length / gaps.length, longest: Math.max(...gaps), work };
}

/** The workbench's timeline with 10,000 entries, of which one in ten has the others beneath it. */
async function timeline(session) {
    const rounds = 5;
    const ui = await openWorkbench(session, 'timeline', { phone: new WorkbenchPhone() });
    const { page, phone, server } = ui;
    const entries = (count) => {
        for (let number = 0; number < count; number += 10) {
            const store = phone.tell({ event: 'store', call: 'update', identifier: `ID-${number}`, ok: true }, null);
            for (let each = 1; each < 10; each += 1) phone.tell({ event: 'log', text: `line ${number}-${each}` }, store);
        }
        server.push();
    };
    entries(10_000);
    await page.waitForFunction(() => document.querySelector('[role="treegrid"]').ariaRowCount === '10001');
    const devtools = await page.context().newCDPSession(page);
    await devtools.send('Performance.enable', { timeDomain: 'threadTicks' });
    const list = await ui.panel.locator('.wb-list').boundingBox();
    const scroll = (distance) => devtools.send('Input.synthesizeScrollGesture', { x: list.x + 100, y: list.y + list.height / 2, yDistance: distance, speed: 4000, gestureSourceType: 'mouse', preventFling: true });
    const told = (what, samples) => {
        const of = (name) => median(samples.map((sample) => sample[name]));
        console.log(`  ${what.padEnd(18)} ${(of('swift') * 100).toFixed(1)} % of the frames under 20 ms (limit 95 %), longest ${ms(of('longest'))}; processor ${ms(of('work'))} a frame`);
    };
    console.log('timeline of 10,000 entries:');
    const scrolled = [];
    for (let round = 0; round < rounds; round += 1) scrolled.push(await framesWhile(page, devtools, () => scroll(round % 2 === 0 ? 20_000 : -20_000)));
    told('scrolling', scrolled);
    await ui.panel.locator('.wb-list').evaluate((element) => { element.scrollTop = element.scrollHeight; });
    const arriving = [];
    for (let round = 0; round < rounds; round += 1) {
        arriving.push(await framesWhile(page, devtools, async () => {
            for (let push = 0; push < 40; push += 1) {
                entries(20);
                await page.waitForTimeout(50);
            }
        }));
    }
    told('entries arriving', arriving);
    const even = await evenness(page);
    console.log(`  noise              the same work takes ${ms(median(even))}, 95 % ${ms(at(even, 0.95))}; load ${loadavg()[0].toFixed(1)}`);
    await ui.close();
}

async function firstPaint(session) {
    const ui = await openPhone(session, { profiles: Array.from({ length: 10 }, (_unused, number) => profile(`Profile ${number}`)) });
    const paints = [];
    for (let turn = 0; turn < 11; turn += 1) {
        await ui.page.reload();
        await ui.page.locator('.navigator .page').first().waitFor();
        paints.push(await ui.page.evaluate(() => new Promise((resolve) => {
            new PerformanceObserver((list) => resolve(list.getEntriesByName('first-contentful-paint')[0].startTime)).observe({ type: 'paint', buffered: true });
        })));
    }
    console.log(`first paint: ${ms(median(paints))} after the request (limit 250 ms), 95 % ${ms(at(paints, 0.95))}`);
    await ui.close();
}

if (!dist || !process.env.QUIETRIX_PROGRAM) {
    console.error('page-bench.mjs: QUIETRIX_WEB_DIST and QUIETRIX_PROGRAM name the built page and the program');
    process.exit(2);
}
// A reader's page loads the words of one language beside those that are always there; the largest count.
const compressed = async (name) => gzipSync(await readFile(join(dist, name)), { level: 9 }).length;
const words = Math.max(...await Promise.all((await readdir(join(dist, 'words'))).map((name) => compressed(join('words', name)))));
const sizes = [...await Promise.all(['index.html', 'app.js', 'app.css'].map(async (name) => [name, await compressed(name)])), ['words', words]];
console.log(`code: ${(sizes.reduce((sum, [, size]) => sum + size, 0) / 1000).toFixed(1)} kB compressed (limit 60 kB): ${sizes.map(([name, size]) => `${name} ${(size / 1000).toFixed(1)}`).join(', ')}`);
const session = await startBrowser();
try {
    if (process.argv[2] !== 'timeline') {
        await firstPaint(session);
        for (const count of [10, 10_000]) await presses(session, count);
    }
    await timeline(session);
} finally {
    await session.close();
}
