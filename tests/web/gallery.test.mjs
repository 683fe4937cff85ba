// SPDX-License-Identifier: MIT
// What every screen draws, compared with the references in docs/gallery: boxes, colours and texts exactly, with any browser; the
// pictures with some tolerance, where the browser is the one that has made the references. `./gallery` makes them anew.
import assert from 'node:assert/strict';
import { readFile } from 'node:fs/promises';
import { fileURLToPath } from 'node:url';
import { after, before, test } from 'node:test';
import { drawnIn } from './gallery-drawn.mjs';
import { differences, read, write } from './gallery-references.mjs';
import { differingTiles, layOut, makeSheet } from './gallery-sheet.mjs';
import { takeTour, tours } from './gallery-tour.mjs';
import { settled, startBrowser } from './harness.mjs';
import { openDarkroom } from './pictures.mjs';

let session;
let darkroom;
before(async () => {
    session = await startBrowser();
    darkroom = await openDarkroom(session);
});
after(async () => { await session.close(); });

const reference = (name, type) => readFile(fileURLToPath(new URL(`../../docs/gallery/${name}.${type}`, import.meta.url)));
const records = async (name) => read(await reference(name, 'jsonl').then(String));
const advice = 'If the change is meant, ./gallery makes the references anew.';

for (const tour of tours) {
    const names = tour.appearances.map(({ name }) => name);
    test(`Gallery_${names.join('_')}_isDrawnAsItsReferenceSays`, async () => {
        const wanted = Object.fromEntries(await Promise.all(names.map(async (name) => [name, await records(name)])));
        const pictures = names.some((name) => wanted[name].browser === session.browser.version());
        for (const found of await takeTour(session, tour, { pictures })) {
            const lines = differences(wanted[found.name], found);
            assert.equal(lines.length, 0, `${found.name}: ${lines.length} differences. ${advice}\n${lines.slice(0, 40).join('\n')}`);
            if (wanted[found.name].browser !== session.browser.version()) continue;
            const sheet = await makeSheet(darkroom, found.scenes, found.viewport);
            const others = await differingTiles(darkroom, await reference(found.name, 'webp'), sheet, found.scenes.map((scene) => scene.name), found.viewport);
            assert.deepEqual(others, [], `${found.name}: these scenes look otherwise. ${advice}`);
        }
    });
}

/** Runs in the page: changes the page's style sheet, without a trace of it in the document. */
function restyle(rules) {
    const sheet = new CSSStyleSheet();
    sheet.replaceSync(rules);
    document.adoptedStyleSheets = [sheet];
}

test('Gallery_colourSpacingOrTextChanged_isNotAsItsReference', async () => {
    const [tour] = tours;
    const one = { ...tour, appearances: tour.appearances.slice(0, 1) };
    const [scene] = (await records('light')).scenes;
    const compared = [];
    const [found] = await takeTour(session, one, {
        last: 'profiles',
        seen: async (_appearance, _scene, page) => {
            const compare = async (change, ...given) => {
                await page.evaluate(change, ...given);
                await settled(page);
                compared.push({ records: await drawnIn(page), picture: await page.screenshot() });
            };
            await compare(restyle, ':root { --secondary: #66666c; }');
            await compare(restyle, '.head { padding-bottom: 9px; }');
            await compare(restyle, '.row:nth-child(2) > .cell { padding-inline-start: 17px; }');
            await compare(() => { document.querySelector('.header').firstChild.nextSibling.data = 'Active profiles'; document.adoptedStyleSheets = []; });
            await compare(restyle, ':root { --row: #ffb0b0; }');
        },
    });
    const wanted = { ...await records('light'), scenes: [scene] };
    const told = (each) => differences(wanted, { fonts: found.fonts, scenes: [{ name: 'profiles', records: each.records }] });
    assert.deepEqual(told(found.scenes[0]), []);
    const [colour, spacing, indent, text, ground] = compared.map(told);
    assert.ok(colour.length > 0 && colour.every((line) => /(colour|ink) is "(none )?#66666c" instead of "(none )?#66666b"/.test(line)), colour.join('\n'));
    assert.ok(spacing.some((line) => /: box is /.test(line)) && spacing.every((line) => /: box is /.test(line)), spacing.join('\n'));
    assert.ok(indent.some((line) => /"Cinema": box is /.test(line)), indent.join('\n'));
    assert.deepEqual(text.map((line) => line.replace(/box is .*/, 'box')), ['profiles: h2.header "Active Profiles": text is "Active profiles" instead of "Active Profiles"']);
    assert.ok(ground.some((line) => /ground is "#ffb0b0" instead of "#ffffff"/.test(line)), ground.join('\n'));

    const size = found.viewport;
    const sheets = await Promise.all([found.scenes[0], found.scenes[0], compared[4]].map(({ picture }) => makeSheet(darkroom, [{ name: 'profiles', picture }], size)));
    assert.deepEqual(await differingTiles(darkroom, sheets[0], sheets[1], ['profiles'], size), []);
    assert.deepEqual(await differingTiles(darkroom, sheets[0], sheets[2], ['profiles'], size), ['profiles']);
});

const fonts = { arabic: 400, signs: 125, fixed: 180 };
const appearance = (drawn, more = {}) => ({ browser: '1', fonts, scenes: [{ name: 'one', records: drawn }], ...more });
const label = (text, box = [0, 0, 10, 10]) => ({ element: 'span.title', box, text, colour: '#000000' });

test('Differences_ofWhatIsDrawn_areToldByElement', () => {
    const wanted = appearance([label('A'), label('B'), label('C')]);
    assert.deepEqual(differences(wanted, read(write(wanted))), []);
    assert.deepEqual(differences(wanted, appearance([label('A'), label('C')])), ['one: span.title "B" is missing']);
    assert.deepEqual(differences(wanted, appearance([label('A'), label('B'), label('X'), label('C')])), ['one: span.title "X" is new']);
    assert.deepEqual(differences(wanted, appearance([label('A'), { ...label('B'), colour: '#000001' }, label('C')])), ['one: span.title "B": colour is "#000001" instead of "#000000"']);
    assert.deepEqual(differences(wanted, appearance([label('A'), label('B', [0, 1, 10, 10]), label('C')])), ['one: span.title "B": box is [0,1,10,10] instead of [0,0,10,10]']);
    assert.deepEqual(differences(wanted, appearance([label('A'), label('B', [0, 0, 10.3, 10]), label('C')])), []);
    assert.match(differences(wanted, { ...wanted, scenes: [] }).join(), /the scenes are/);
});

test('Differences_whereTheMachineHasAnotherFont_areNotThoseOfBoxes', () => {
    const arabic = appearance([label('العنوان'), label('A')]);
    const moved = [label('العنوان', [0, 0, 12, 10]), label('A', [0, 20, 10, 10])];
    assert.equal(differences(arabic, appearance(moved)).length, 2);
    assert.deepEqual(differences(arabic, appearance(moved, { fonts: { ...fonts, arabic: 410 } })), []);
    assert.equal(differences(arabic, appearance(moved, { fonts: { ...fonts, signs: 110 } })).length, 2);
    assert.equal(differences(arabic, appearance([label('العنون'), label('A')], { fonts: { ...fonts, arabic: 410 } })).length, 1);
    const latin = appearance([label('A')]);
    assert.equal(differences(latin, appearance([label('A', [0, 0, 12, 10])], { fonts: { arabic: 1, signs: 1, fixed: 1 } })).length, 1);
});

test('Sheet_tiles_lieApartAndWithinIt', () => {
    for (const size of [{ width: 390, height: 844 }, { width: 844, height: 390 }, { width: 820, height: 1180 }]) {
        const { tiles, width, height } = layOut(25, size);
        for (const [at, tile] of tiles.entries()) {
            assert.ok(tile.x >= 0 && tile.y >= 20 && tile.x + tile.width <= width && tile.y + tile.height <= height);
            for (const other of tiles.slice(0, at)) assert.ok(other.x + other.width < tile.x || tile.x + tile.width < other.x || other.y + other.height < tile.y);
        }
    }
});
