// SPDX-License-Identifier: MIT
// Makes the gallery: node gallery.mjs DIRECTORY. For each appearance a sheet of all scenes (NAME.webp) and the records that the
// tests compare with (NAME.jsonl); the pictures of the workbench; and beside the directory that of the page, page.png. Prints its steps as build tools do.
import { mkdir, writeFile } from 'node:fs/promises';
import { join } from 'node:path';
import { write } from './gallery-references.mjs';
import { makeSheet } from './gallery-sheet.mjs';
import { picturePage } from './gallery-page.mjs';
import { scenesOfATour, takeTour, tours } from './gallery-tour.mjs';
import { pictureWorkbench, picturesOfTheWorkbench } from './gallery-workbench.mjs';
import { startBrowser } from './harness.mjs';
import { openDarkroom } from './pictures.mjs';

const [directory] = process.argv.slice(2);
if (!directory) {
    console.error('gallery.mjs: usage: node gallery.mjs DIRECTORY');
    process.exit(2);
}

const total = tours.reduce((sum, tour) => sum + tour.appearances.length * scenesOfATour, picturesOfTheWorkbench + 1);
let done = 0;
const session = await startBrowser();
try {
    await mkdir(directory, { recursive: true });
    const darkroom = await openDarkroom(session);
    for (const tour of tours) {
        const seen = async (appearance, scene) => console.log(`[${(done += 1)}/${total}] ${appearance}: ${scene}`);
        for (const appearance of await takeTour(session, tour, { seen })) {
            await writeFile(join(directory, `${appearance.name}.webp`), await makeSheet(darkroom, appearance.scenes, appearance.viewport));
            await writeFile(join(directory, `${appearance.name}.jsonl`), write(appearance));
        }
    }
    await pictureWorkbench(session, darkroom, async (name, picture) => {
        console.log(`[${(done += 1)}/${total}] workbench: ${name}`);
        await writeFile(join(directory, `workbench-${name}.webp`), picture);
    });
    console.log(`[${(done += 1)}/${total}] page`);
    await writeFile(join(directory, '..', 'page.png'), await picturePage(session, darkroom));
} finally {
    await session.close();
}
