// SPDX-License-Identifier: MIT
// The secret that lets this tab in. The address that the application printed has it in its fragment, which a browser sends
// to nobody; from then on the tab remembers it, and nothing else of the browser does.

const memory = 'quietrix-settings-secret';
const fragment = /^#secret=([0-9a-f]+)$/;

let secret: string | null = null;
let open = false;

/** Takes the secret out of the address bar, or else out of the tab's memory; null when there is none. */
export function takeSecret(): string | null {
    const given = fragment.exec(location.hash)?.[1] ?? null;
    try {
        if (given !== null) {
            sessionStorage.setItem(memory, given);
            history.replaceState(null, '', location.pathname + location.search);
        }
        secret = given ?? sessionStorage.getItem(memory);
    } catch {
        // A browser that remembers nothing keeps it in the address bar: a reload finds it there.
        secret = given;
    }
    // Another address of this page opened in this tab changes the fragment only, and the browser loads nothing.
    window.addEventListener('hashchange', () => { if (fragment.test(location.hash)) location.reload(); });
    return secret;
}

/** Whether the application is there, so that the secret goes to it and to nobody who has taken its place. */
export function setDoorOpen(isOpen: boolean): void { open = isOpen; }
export const isDoorOpen = (): boolean => open && secret !== null;

/** What the application has at this path of its own; rejected when it has nothing there, or is not there itself. */
export async function fetchFromPhone(path: string, signal: AbortSignal | null = null): Promise<Blob> {
    if (!isDoorOpen()) throw new Error('the application is not there');
    const response = await fetch(path, { headers: { Authorization: `Bearer ${secret ?? ''}` }, signal });
    if (!response.ok) throw new Error(`${path}: ${response.status}`);
    return response.blob();
}

const hexadecimal = (bytes: ArrayBuffer): string => [...new Uint8Array(bytes)].map((byte) => byte.toString(16).padStart(2, '0')).join('');

/** Something that nobody has been asked before. */
export const newNonce = (): string => hexadecimal(crypto.getRandomValues(new Uint8Array(32)).buffer);

/** What only somebody who knows the secret can answer to a nonce. */
export async function proofOf(nonce: string): Promise<string> {
    const bytes = new TextEncoder();
    const key = await crypto.subtle.importKey('raw', bytes.encode(secret ?? ''), { name: 'HMAC', hash: 'SHA-256' }, false, ['sign']);
    return hexadecimal(await crypto.subtle.sign('HMAC', key, bytes.encode(nonce)));
}
