// SPDX-License-Identifier: MIT
import { newNonce, proofOf } from './door';
import { parseMessage, speaksOtherVersion, type Command, type Message } from './protocol';

/**
 * "silent" is an open connection on which an answer is long in coming, "renewing" one that the application has closed to be started
 * anew at once. The last three are ends: "refused" by an application that has another secret, "uninvited" without any,
 * "foreign" when what it says is of another version of the protocol.
 */
export type Status = 'connecting' | 'open' | 'silent' | 'renewing' | 'lost' | 'refused' | 'uninvited' | 'foreign';

export interface ConnectionEvents {
    opened(): void;
    statusChanged(status: Status): void;
    received(message: Message): void;
}

const firstPause = 500;
const longestPause = 15_000;
/** After this time without an answer the user is told what is being waited for. */
const longSilence = 1000;
/** The code with which an application closes a socket that takes its place on the same address at once. */
const serviceRestart = 1012;
/** In this time it is there again, and nobody need know. */
const renewalTime = 2000;
const renewalPause = 50;
/** The code with which a socket is closed whose secret is not the application's. */
const wrongSecret = 4401;

function proofIn(answer: unknown): unknown {
    try {
        return (JSON.parse(String(answer)) as { proof?: unknown } | null)?.proof;
    } catch {
        return undefined;
    }
}

/**
 * The WebSocket to the application. Reconnects by itself, each pause twice the last. Whoever listens at the address has to
 * prove first that they know the secret: after the application has ended, that may be anybody.
 */
export class Connection {
    private socket: WebSocket | null = null;
    /** Whether the socket has been given the secret. */
    private letIn = false;
    private ended = false;
    private readonly shut = new AbortController();
    private timer = 0;
    private pause = firstPause;
    private lastId = 0;
    /** The commands that have not been answered yet, and the timer that tells so. */
    private readonly unanswered = new Set<number>();
    private silence = 0;
    private isSilent = false;
    /** Runs while a renewal may take. */
    private renewal = 0;
    /** What statusChanged() has told last. */
    status: Status = 'connecting';

    constructor(private readonly url: string, private readonly secret: string | null, private readonly events: ConnectionEvents) {
        // Somebody who comes back to the page should not wait out a long pause.
        window.addEventListener('online', () => this.retryNow(), { signal: this.shut.signal });
        document.addEventListener('visibilitychange', () => { if (!document.hidden) this.retryNow(); }, { signal: this.shut.signal });
    }

    open(): void {
        window.clearTimeout(this.timer);
        this.timer = 0;
        if (this.secret === null) {
            this.end('uninvited');
            return;
        }
        let socket: WebSocket;
        try {
            socket = new WebSocket(this.url);
        } catch {
            this.lost();
            return;
        }
        this.socket = socket;
        this.letIn = false;
        const nonce = newNonce();
        let heard = false;
        socket.addEventListener('open', () => socket.send(JSON.stringify({ prove: nonce })));
        socket.addEventListener('message', (event: MessageEvent<unknown>) => {
            if (socket !== this.socket) return;
            if (!this.letIn) {
                void this.enter(socket, nonce, event.data);
                return;
            }
            if (!heard) {
                heard = true;
                this.pause = firstPause;
                this.endRenewal();
                this.tell('open');
            }
            const message = parseMessage(event.data);
            if (message && speaksOtherVersion(message)) {
                socket.close();
                this.end('foreign');
                return;
            }
            this.hear(message?.id ?? null);
            if (message) this.events.received(message);
        });
        socket.addEventListener('close', (event) => {
            if (socket !== this.socket) return;
            if (event.code === wrongSecret) this.end('refused');
            else if (event.code === serviceRestart) this.renew();
            else this.lost();
        });
    }

    /** Ends the connection for good, without a word to who listens. */
    close(): void {
        this.shut.abort();
        window.clearTimeout(this.timer);
        this.timer = 0;
        this.ended = true;
        this.letIn = false;
        this.endRenewal();
        this.forgetCommands();
        const { socket } = this;
        this.socket = null;
        socket?.close();
    }

    /** Starts the next attempt at once if one is being waited for, and soon after the one that is under way. */
    retryNow(): void {
        this.pause = firstPause;
        if (this.timer !== 0) this.open();
    }

    /** The id that the answer will carry, or null when there is no connection to carry the command. */
    send(command: Command): number | null {
        if (!this.letIn || this.socket?.readyState !== WebSocket.OPEN) return null;
        this.lastId += 1;
        this.socket.send(JSON.stringify({ ...command, id: this.lastId }));
        this.unanswered.add(this.lastId);
        if (this.silence === 0) this.listen();
        return this.lastId;
    }

    private listen(): void {
        this.silence = window.setTimeout(() => {
            this.isSilent = true;
            this.tell('silent');
        }, longSilence);
    }

    private hear(answered: number | null): void {
        if (answered !== null) this.unanswered.delete(answered);
        this.stopListening();
        if (this.unanswered.size > 0) this.listen();
        if (!this.isSilent) return;
        this.isSilent = false;
        this.tell('open');
    }

    private stopListening(): void {
        window.clearTimeout(this.silence);
        this.silence = 0;
    }

    private forgetCommands(): void {
        this.unanswered.clear();
        this.stopListening();
        this.isSilent = false;
    }

    /** Gives the secret to whoever has answered the nonce as only the application can. */
    private async enter(socket: WebSocket, nonce: string, answer: unknown): Promise<void> {
        const proof = await proofOf(nonce);
        if (socket !== this.socket || this.letIn) return;
        if (proofIn(answer) !== proof) {
            socket.close();
            this.end('refused');
            return;
        }
        socket.send(JSON.stringify({ secret: this.secret }));
        this.letIn = true;
        this.events.opened();
    }

    private tell(status: Status): void {
        this.status = status;
        this.events.statusChanged(status);
    }

    /** Comes back at once, and says that the connection is lost only when that takes long. */
    private renew(): void {
        this.endRenewal();
        this.renewal = window.setTimeout(() => {
            this.renewal = 0;
            this.tell('lost');
        }, renewalTime);
        this.socket = null;
        this.letIn = false;
        this.forgetCommands();
        this.tell('renewing');
        this.open();
    }

    private endRenewal(): void {
        window.clearTimeout(this.renewal);
        this.renewal = 0;
    }

    private end(status: Status): void {
        this.endRenewal();
        this.ended = true;
        this.socket = null;
        this.letIn = false;
        this.forgetCommands();
        this.tell(status);
    }

    private lost(): void {
        if (this.ended) return;
        this.socket = null;
        this.letIn = false;
        this.forgetCommands();
        if (this.renewal !== 0) {
            this.timer = window.setTimeout(() => this.open(), renewalPause);
            return;
        }
        this.tell('lost');
        this.timer = window.setTimeout(() => this.open(), this.pause);
        this.pause = Math.min(longestPause, this.pause * 2);
    }
}
