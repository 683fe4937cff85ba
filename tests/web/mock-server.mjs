// SPDX-License-Identifier: MIT
// Serves the built page over loopback with a made-up application behind it.
// For looking at the page by hand: node mock-server.mjs DIST [PORT]
import { createHmac, randomBytes } from 'node:crypto';
import { readFile } from 'node:fs/promises';
import { createServer } from 'node:http';
import { extname, join, normalize } from 'node:path';
import { fileURLToPath } from 'node:url';
import { MockPhone } from './mock-phone.mjs';
import { requireModule } from './modules.mjs';

const { WebSocketServer } = requireModule('ws');

const types = { '.html': 'text/html; charset=utf-8', '.js': 'text/javascript; charset=utf-8', '.css': 'text/css; charset=utf-8', '.woff2': 'font/woff2', '.svg': 'image/svg+xml' };
const policy = "default-src 'none'; script-src 'self'; style-src 'self'; img-src 'self' blob:; font-src 'self'; connect-src 'self'; media-src blob:; base-uri 'none'; form-action 'none'; frame-ancestors 'none'";

/** A sound of so many seconds, all of it silence. */
export function silence(seconds) {
    const samples = Math.round(seconds * 8000);
    const head = Buffer.alloc(44);
    head.write('RIFF', 0);
    head.writeUInt32LE(36 + samples, 4);
    head.write('WAVEfmt ', 8);
    for (const [value, at, size] of [[16, 16, 4], [1, 20, 2], [1, 22, 2], [8000, 24, 4], [8000, 28, 4], [1, 32, 2], [8, 34, 2]]) head.writeUIntLE(value, at, size);
    head.write('data', 36);
    head.writeUInt32LE(samples, 40);
    return Buffer.concat([head, Buffer.alloc(samples, 128)]);
}

const picture = (width, height, body) => `<svg xmlns="http://www.w3.org/2000/svg" width="${width}" height="${height}" viewBox="0 0 ${width} ${height}">${body}</svg>`;
const glyph = (body) => picture(48, 48, `<g fill="none" stroke="#000" stroke-width="4" stroke-linecap="round" stroke-linejoin="round">${body}</g>`);
const tile = (colour, body) => picture(58, 58, `<rect width="58" height="58" fill="${colour}"/><g fill="none" stroke="#fff" stroke-width="4" stroke-linecap="round">${body}</g>`);

export const images = {
    nav: picture(24, 24, '<rect width="24" height="24" fill="#3a6ea5"/><path d="M-6 6L6-6M-6 30L30-6M18 30L30 18" stroke="#d5e6ff" stroke-width="6"/>'),
    Logo: picture(240, 56, '<text x="120" y="42" font-family="sans-serif" font-weight="700" font-size="42" text-anchor="middle" fill="#fff">Sample</text>'),
    twitter: glyph('<path d="M22 4l12 12H26v14h-8V16h-8zM6 34h32v6H6z"/>'),
    Misc: tile('#7a7a80', '<path d="M16 20h26M16 29h26M16 38h26"/>'),
    StatusBar: tile('#3a6ea5', '<path d="M14 20h30v18H14z"/>'),
    email: tile('#2b7de9', '<path d="M14 20h30v18H14zl15 12 15-12"/>'),
    'SpeakerMute@2x': glyph('<path d="M10 19v10h7l9 8V11l-9 8z"/>'),
    'SpeakerMax@2x': glyph('<path d="M6 19v10h7l9 8V11l-9 8zM29 18q5 6 0 12M35 13q9 11 0 22"/>'),
};

/** Starts the server; url is where the page is, push() sends the state to every page, dropAll() closes every socket. */
export async function startMockServer({ dist, port = 0, phone = new MockPhone() }) {
    const server = createServer(async (request, response) => {
        const { pathname } = new URL(request.url, 'http://localhost');
        response.setHeader('Content-Security-Policy', policy);
        response.setHeader('X-Content-Type-Options', 'nosniff');
        const ofThePhone = pathname.startsWith('/image/') || pathname.startsWith('/sounds/');
        if (ofThePhone && request.headers.authorization !== `Bearer ${api.secret}`) {
            response.writeHead(401, { 'WWW-Authenticate': 'Bearer' }).end();
            return;
        }
        if (pathname.startsWith('/image/')) {
            const image = images[decodeURIComponent(pathname.slice('/image/'.length))];
            response.writeHead(image ? 200 : 404, { 'Content-Type': 'image/svg+xml' });
            response.end(image ?? '');
            return;
        }
        if (pathname.startsWith('/sounds/')) {
            const sound = api.sounds[decodeURIComponent(pathname.slice('/sounds/'.length))];
            response.writeHead(sound ? 200 : 404, { 'Content-Type': sound ? 'audio/wav' : 'text/plain' });
            response.end(sound ?? 'There is no such tone.\n');
            return;
        }
        const path = normalize(join(dist, pathname === '/' ? 'index.html' : pathname));
        try {
            if (!path.startsWith(normalize(dist))) throw new Error('outside');
            const body = await readFile(path);
            response.writeHead(200, { 'Content-Type': types[extname(path)] ?? 'application/octet-stream' });
            response.end(body);
        } catch {
            response.writeHead(404).end();
        }
    });
    const sockets = new WebSocketServer({ server, path: '/ws' });
    const windows = new Map();
    /** Which events each socket wants, and how many it has been told. */
    const ears = new Map();
    let connections = 0;
    const causeOf = (socket, command) => {
        const ear = ears.get(socket);
        return { command: ear.commands += 1, id: command.id, connection: ear.number };
    };
    /** Of one's own commands the connection goes without saying. */
    const causeFor = (cause, ear) => {
        if (cause?.connection !== ear.number) return cause ?? null;
        const { connection, ...own } = cause;
        return own;
    };
    const stateFor = (socket, window) => {
        const ear = ears.get(socket);
        const events = phone.events.slice(ear.told).map((event) => ({ ...event, cause: causeFor(event.cause, ear) })).filter((event) => ear.wants === 'all' || (ear.wants && event.event !== 'call'));
        ear.told = phone.events.length;
        return { ...phone.state(window), events };
    };
    sockets.on('connection', (socket) => {
        if (api.away) {
            socket.terminate();
            return;
        }
        let letIn = false;
        socket.on('close', () => { windows.delete(socket); ears.delete(socket); });
        socket.on('message', (data) => {
            const command = JSON.parse(String(data));
            if (!letIn) {
                // Some of what was sent before the page has learned of it.
                if (socket.readyState !== socket.OPEN) return;
                api.firstMessages.push(command);
                if (command.prove !== undefined) {
                    socket.send(JSON.stringify({ proof: createHmac('sha256', api.provenSecret).update(command.prove).digest('hex') }));
                } else if (command.secret === api.secret) {
                    letIn = true;
                    windows.set(socket, {});
                    ears.set(socket, { told: 0, wants: true, commands: 0, number: connections += 1 });
                } else {
                    socket.close(4401);
                }
                return;
            }
            if (command.events !== undefined) ears.get(socket).wants = command.events;
            if (command.from !== undefined) windows.set(socket, { from: command.from, count: command.count });
            const { screen, revision } = phone;
            phone.cause = causeOf(socket, command);
            const ok = phone.perform(command);
            phone.cause = null;
            if (command.elsewhere && phone.screen !== screen) windows.set(socket, command.elsewhere);
            const answer = { ok, id: command.id, state: stateFor(socket, windows.get(socket)) };
            if (ok) Object.assign(answer, phone.extra);
            if (ok && command.do === 'find') answer.found = phone.found(command.text);
            if (!ok) answer.error = `cannot do ${command.do}`;
            if (phone.stale) answer.stale = true;
            if (phone.revision !== revision) for (const [other, window] of windows) if (other !== socket) other.send(JSON.stringify({ state: stateFor(other, window) }));
            if (api.hold) api.held.push(() => socket.send(JSON.stringify(answer)));
            else socket.send(JSON.stringify(answer));
        });
    });
    await new Promise((resolve, reject) => server.once('error', reject).listen(port, '127.0.0.1', resolve));
    const secret = randomBytes(32).toString('hex');
    const api = {
        phone,
        /** Where the page is, and the same with the secret that lets it in. */
        address: `http://127.0.0.1:${server.address().port}/`,
        get url() { return `${api.address}#secret=${api.secret}`; },
        /** What lets a page in, and what the server says that it knows. */
        secret,
        provenSecret: secret,
        /** What came on sockets before they were let in. */
        firstMessages: [],
        /** By the tone's identifier. */
        sounds: { 'texttone:Chord': silence(60), 'texttone:Bell': silence(60), 'texttone:Blip': silence(0.05) },
        /** While set, nobody answers: sockets are closed as soon as they are opened. */
        away: false,
        /** Ends all connections, and lets none be made until back(). */
        leave() { api.away = true; api.dropAll(); },
        /** While set, answers wait in `held`. */
        hold: false,
        held: [],
        /** Sends what waits, and holds nothing any more. */
        letGo() { api.hold = false; for (const send of api.held.splice(0)) send(); },
        push() { for (const [socket, window] of windows) socket.send(JSON.stringify({ state: stateFor(socket, window) })); },
        raw(text) { for (const socket of windows.keys()) socket.send(text); },
        /** Sends all away, to be back at once. */
        sendBack({ andLeave = false } = {}) { api.away = andLeave; for (const socket of windows.keys()) socket.close(1012); },
        dropAll() { for (const socket of windows.keys()) socket.terminate(); },
        async close() {
            for (const socket of sockets.clients) socket.terminate();
            sockets.close();
            server.closeAllConnections();
            await new Promise((resolve) => server.close(resolve));
        },
    };
    return api;
}

if (process.argv[1] === fileURLToPath(import.meta.url)) {
    const [dist, port] = process.argv.slice(2);
    if (!dist) {
        console.error('mock-server.mjs: usage: node mock-server.mjs DIST [PORT]');
        process.exit(2);
    }
    const { url } = await startMockServer({ dist, port: Number(port ?? 0) });
    console.log(url);
}
