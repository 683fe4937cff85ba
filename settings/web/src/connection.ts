// SPDX-License-Identifier: MIT
import { parseMessage, type Command, type Message } from './protocol';

export type Status = 'connecting' | 'open' | 'lost';

export interface ConnectionEvents {
    opened(): void;
    statusChanged(status: Status): void;
    received(message: Message): void;
}

const firstPause = 500;
const longestPause = 15_000;

/** The WebSocket to the application. Reconnects by itself, each pause twice the last. */
export class Connection {
    private socket: WebSocket | null = null;
    private timer = 0;
    private pause = firstPause;
    private lastId = 0;

    constructor(private readonly url: string, private readonly events: ConnectionEvents) {
        // Somebody who comes back to the page should not wait out a long pause.
        window.addEventListener('online', () => this.retryNow());
        document.addEventListener('visibilitychange', () => { if (!document.hidden) this.retryNow(); });
    }

    open(): void {
        window.clearTimeout(this.timer);
        this.timer = 0;
        let socket: WebSocket;
        try {
            socket = new WebSocket(this.url);
        } catch {
            this.lost();
            return;
        }
        this.socket = socket;
        socket.addEventListener('open', () => {
            this.pause = firstPause;
            this.events.statusChanged('open');
            this.events.opened();
        });
        socket.addEventListener('message', (event: MessageEvent<unknown>) => {
            if (socket !== this.socket) return;
            const message = parseMessage(event.data);
            if (message) this.events.received(message);
        });
        socket.addEventListener('close', () => { if (socket === this.socket) this.lost(); });
    }

    /** Starts the next attempt at once if one is being waited for, and soon after the one that is under way. */
    retryNow(): void {
        this.pause = firstPause;
        if (this.timer !== 0) this.open();
    }

    /** The id that the answer will carry, or null when there is no connection to carry the command. */
    send(command: Command): number | null {
        if (this.socket?.readyState !== WebSocket.OPEN) return null;
        this.lastId += 1;
        this.socket.send(JSON.stringify({ ...command, id: this.lastId }));
        return this.lastId;
    }

    private lost(): void {
        this.socket = null;
        this.events.statusChanged('lost');
        this.timer = window.setTimeout(() => this.open(), this.pause);
        this.pause = Math.min(longestPause, this.pause * 2);
    }
}
