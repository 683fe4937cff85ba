// SPDX-License-Identifier: MIT
// A real Settings application for browser tests, on a root of its own: started, asked for its address, and ended by its
// process id. QUIETRIX_PROGRAM names the program.
import { spawn, spawnSync } from 'node:child_process';
import { readFileSync } from 'node:fs';
import { cp, mkdir, mkdtemp, readdir, readFile, rename, rm, writeFile } from 'node:fs/promises';
import { createServer } from 'node:net';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { createInterface } from 'node:readline';
import { fileURLToPath } from 'node:url';
import { openPage } from './harness.mjs';

const program = process.env.QUIETRIX_PROGRAM;
const preferences = 'var/mobile/Library/Preferences';
// Without a display: what is opened outside the phone is then printed, and no program of the desktop is started.
const { DISPLAY, WAYLAND_DISPLAY, ...environment } = process.env;

/** The product's version, as its own property list has it. */
export const version = /<string>([\d.]+)<\/string>/.exec(readFileSync(new URL('../../resources/Quietrix.plist', import.meta.url), 'utf8'))[1];

/** Property lists are written as XML text here; the application reads both forms. */
function xml(value) {
    if (typeof value === 'boolean') return value ? '<true/>' : '<false/>';
    if (typeof value === 'number') return Number.isInteger(value) ? `<integer>${value}</integer>` : `<real>${value}</real>`;
    if (typeof value === 'string') return `<string>${value.replace(/&/g, '&amp;').replace(/</g, '&lt;')}</string>`;
    if (Array.isArray(value)) return `<array>${value.map(xml).join('')}</array>`;
    return `<dict>${Object.entries(value).map(([key, entry]) => `<key>${key}</key>${xml(entry)}`).join('')}</dict>`;
}

export const profile = (title, values = {}) => ({ identifier: `ID-${title}`, title, enabled: true, ...values });

/** A port that nobody listens on now, and that nobody else is given for "any free one". */
export async function freePort() {
    for (;;) {
        const port = 20_000 + Math.floor(Math.random() * 12_000);
        const probe = createServer();
        const free = await new Promise((resolve) => { probe.once('error', () => resolve(false)).listen(port, '127.0.0.1', () => resolve(true)); });
        await new Promise((resolve) => { probe.close(resolve); });
        if (free) return port;
    }
}

/** The row of a list that has these words, as whole words. */
export const row = (page, words) => page.locator('.list .row', { hasText: new RegExp(`(?<!\\p{L})${words}(?!\\p{L})`, 'u') });

/** Opens the page on a recording; close() ends both. The file is one of the stories, or a path. */
export async function openRecording(session, file, pageOptions = {}) {
    const child = spawn(program, ['view', fileURLToPath(new URL(file, new URL('../stories/', import.meta.url)))], { env: environment, stdio: ['ignore', 'pipe', 'inherit'] });
    const ended = new Promise((resolve) => { child.on('exit', resolve); });
    const server = {
        async close() {
            child.kill('SIGTERM');
            const status = await ended;
            if (status !== 0) throw new Error(`the program ended with ${status}`);
        },
    };
    session.servers.add(server);
    const url = await new Promise((resolve, reject) => {
        createInterface({ input: child.stdout }).on('line', (line) => resolve(/http:\/\/\S+/.exec(line)[0]));
        child.on('exit', (status) => reject(new Error(`the program ended with ${status}`)));
    });
    const ui = await openPage(session, { ...pageOptions, url });
    return {
        page: ui.page, url,
        async close() {
            session.servers.delete(server);
            try { await ui.close(); } finally { await server.close(); }
        },
    };
}

/** Opens the page on a real phone; close() ends both, and so does the session's for a test that failed. */
export async function openPhone(session, options = {}, pageOptions = {}) {
    const phone = await startPhone(options);
    session.servers.add(phone);
    const ui = await openPage(session, { ...pageOptions, url: phone.url });
    return {
        phone,
        page: ui.page,
        async close() {
            session.servers.delete(phone);
            try { await ui.close(); } finally { await phone.close(); }
        },
    };
}

/**
 * Starts the application; `device` are its device settings, `profiles` and `enabled` what its files hold. With a `port` it
 * listens there, and its secret is kept for restart(). `watch` has it started anew when its own copy of the bundle changes.
 */
export async function startPhone({ device = {}, profiles = [], enabled = true, port = null, watch = false } = {}) {
    const directory = await mkdtemp(join(tmpdir(), 'quietrix-phone-'));
    const root = join(directory, 'phone');
    const bundle = join(directory, 'QuietrixPreferences.bundle');
    if (watch) await cp(join(dirname(program), '../share/QuietrixPreferences.bundle'), bundle, { recursive: true });
    const path = (name) => join(root, preferences, name);
    const write = async (name, value) => {
        await writeFile(`${path(name)}.new`, `<plist version="1.0">${xml(value)}</plist>`);
        await rename(`${path(name)}.new`, path(name));
    };
    const options = ['--root', root, ...Object.entries(device).flatMap(([key, value]) => ['--device', `${key}=${value}`])];
    // A first start fills the root.
    const filled = spawnSync(program, ['drive', ...options], { input: '', encoding: 'utf8' });
    if (filled.status !== 0) throw new Error(`the root was not filled: ${filled.stderr}`);
    const phone = {
        writeProfiles: (list) => write('com.velmora.quietrix.profiles.plist', { format: 1, profiles: list }),
        /** Posts a Darwin notification from another process. */
        post: (name) => spawnSync(program, ['drive', ...options], { input: `${JSON.stringify({ do: 'post', name })}\n`, encoding: 'utf8' }),
        /** The settings file, by way of another process that shows the switch. */
        switchIsOn() {
            const answer = spawnSync(program, ['drive', ...options], { input: '{"do":"state"}\n', encoding: 'utf8' });
            return JSON.parse(answer.stdout).state.screen.rows[1].value;
        },
        /** The profiles of the file, parsed by another reader than the application's own. */
        storedProfiles() {
            const script = 'import json,plistlib,sys; print(json.dumps(plistlib.load(open(sys.argv[1],"rb"))["profiles"]))';
            const read = spawnSync('python3', ['-B', '-c', script, path('com.velmora.quietrix.profiles.plist')], { encoding: 'utf8' });
            if (read.status !== 0) throw new Error(`the profiles file cannot be read: ${read.stderr}`);
            return JSON.parse(read.stdout);
        },
        /** Makes the profiles file one that cannot be read. */
        breakProfiles: () => writeFile(path('com.velmora.quietrix.profiles.plist'), 'no property list'),
        /** The bytes of a file of the phone, or null while there is none. */
        readPhoneFile: (phonePath) => readFile(join(root, phonePath), 'utf8').catch(() => null),
        writePhoneFile: (phonePath, text) => writeFile(join(root, phonePath), text),
        /** The names of the files in a directory of the phone. */
        listPhoneFiles: (phonePath) => readdir(join(root, phonePath)).catch(() => []),
        /** What the application has written to standard error. */
        errors: () => errors,
        /** Changes a file of the bundle of a phone that is watched, in place of a compiler. */
        async changeBundle(name, change) {
            const file = join(bundle, name);
            await writeFile(`${file}.new`, change(await readFile(file, 'utf8')));
            await rename(`${file}.new`, file);
        },
        readProfiles: () => readFile(path('com.velmora.quietrix.profiles.plist')),
    };
    await phone.writeProfiles(profiles);
    await write('com.velmora.quietrix.plist', { 'com.velmora.quietrix.enabled': enabled });

    let errors = '';
    let child = null;
    let ended = null;
    const runtime = join(directory, 'runtime');
    await mkdir(runtime, { mode: 0o700 });
    const start = async (more = []) => {
        const listening = [...(port === null ? [] : ['--port', `${port}`]), ...(watch ? ['--watch', '--bundle', bundle] : [])];
        child = spawn(program, ['serve', ...options, ...listening, ...more], { env: { ...environment, XDG_RUNTIME_DIR: runtime }, stdio: ['ignore', 'pipe', 'pipe'] });
        child.stderr.on('data', (data) => { errors += data; });
        ended = new Promise((resolve) => child.on('exit', resolve));
        phone.url = await new Promise((resolve, reject) => {
            createInterface({ input: child.stdout }).on('line', (line) => {
                const address = /http:\/\/\S+/.exec(line);
                if (address) resolve(address[0]);
            });
            child.on('error', reject);
            child.on('exit', (status) => reject(new Error(`the application ended with ${status}: ${errors}`)));
        });
    };
    await start();
    const end = async () => {
        child.kill('SIGTERM');
        const status = await ended;
        if (status !== 0) throw new Error(`the application ended with ${status}: ${errors}`);
    };
    /** Ends the application as nothing lets it end itself; started again with startAgain(). */
    phone.kill = async () => {
        child.kill('SIGKILL');
        await ended;
    };
    phone.startAgain = () => start();
    phone.restart = async (...more) => {
        await end();
        await start(more);
    };
    phone.close = async () => {
        try { await end(); } finally { await rm(directory, { recursive: true, force: true }); }
    };
    return phone;
}
