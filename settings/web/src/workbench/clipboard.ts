// SPDX-License-Identifier: MIT

/** Puts a text on the clipboard, which the browser may refuse; what came of it, in words. */
export async function copyText(text: string, what: string): Promise<string> {
    try {
        await navigator.clipboard.writeText(text);
        return `Copied ${what}.`;
    } catch {
        return 'The browser does not let this page copy.';
    }
}

/** Has the browser save a text as a file. */
export function saveText(text: string, name: string, type = 'application/x-ndjson'): void {
    const address = URL.createObjectURL(new Blob([text], { type }));
    const link = document.createElement('a');
    link.href = address;
    link.download = name;
    link.click();
    // The browser has taken hold of it by the time of the next task.
    setTimeout(() => URL.revokeObjectURL(address), 0);
}
