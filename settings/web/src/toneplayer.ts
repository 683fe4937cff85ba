// SPDX-License-Identifier: MIT
import { fetchFromPhone } from './door';

interface Playing { identifier: string; audio: HTMLAudioElement; address: string | null; fetching: AbortController }

/** Lets one tone sound at a time. What cannot be played is silent, and ends like a tone that has ended. */
export class TonePlayer {
    private current: Playing | null = null;

    /** `heard` is called once a tone does sound, `ended` when it has fallen silent by itself. */
    constructor(private readonly heard: (identifier: string) => void, private readonly ended: () => void) {}

    /** The tone that sounds, or is about to. */
    get playing(): string | null { return this.current?.identifier ?? null; }

    play(identifier: string): void {
        this.stop();
        const audio = new Audio();
        audio.dataset['tone'] = identifier;
        const current: Playing = { identifier, audio, address: null, fetching: new AbortController() };
        const end = (): void => {
            if (current !== this.current) return;
            this.stop();
            this.ended();
        };
        audio.addEventListener('playing', () => { if (current === this.current) this.heard(identifier); }, { once: true });
        // A headset's button pauses it as well.
        for (const event of ['ended', 'error', 'pause'] as const) audio.addEventListener(event, end);
        this.current = current;
        // The browser may refuse to make a sound; it says so here and nowhere else.
        this.begin(current).catch(end);
    }

    stop(): void {
        const { current } = this;
        this.current = null;
        if (!current) return;
        current.fetching.abort();
        current.audio.pause();
        // Without an address the browser forgets what it has of the sound.
        current.audio.removeAttribute('src');
        current.audio.load();
        if (current.address !== null) URL.revokeObjectURL(current.address);
    }

    private async begin(current: Playing): Promise<void> {
        const sound = await fetchFromPhone(`/sounds/${encodeURIComponent(current.identifier)}`, current.fetching.signal);
        if (current !== this.current) return;
        current.address = URL.createObjectURL(sound);
        current.audio.src = current.address;
        await current.audio.play();
    }
}
