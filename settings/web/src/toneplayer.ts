// SPDX-License-Identifier: MIT

/** Lets one tone sound at a time. What cannot be played is silent, and ends like a tone that has ended. */
export class TonePlayer {
    private audio: HTMLAudioElement | null = null;
    private identifier: string | null = null;

    /** `heard` is called once a tone does sound, `ended` when it has fallen silent by itself. */
    constructor(private readonly heard: (identifier: string) => void, private readonly ended: () => void) {}

    /** The tone that sounds, or is about to. */
    get playing(): string | null { return this.identifier; }

    play(identifier: string): void {
        this.stop();
        const audio = new Audio(`/sounds/${encodeURIComponent(identifier)}`);
        const end = (): void => {
            if (audio !== this.audio) return;
            this.stop();
            this.ended();
        };
        audio.addEventListener('playing', () => { if (audio === this.audio) this.heard(identifier); }, { once: true });
        // A headset's button pauses it as well.
        for (const event of ['ended', 'error', 'pause'] as const) audio.addEventListener(event, end);
        this.audio = audio;
        this.identifier = identifier;
        // The browser may refuse to make a sound; it says so here and nowhere else.
        audio.play().catch(end);
    }

    stop(): void {
        const { audio } = this;
        this.audio = this.identifier = null;
        if (!audio) return;
        audio.pause();
        // Without an address nothing more is fetched.
        audio.removeAttribute('src');
        audio.load();
    }
}
