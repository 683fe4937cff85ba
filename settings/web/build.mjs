// SPDX-License-Identifier: MIT
// Builds the page: build.mjs --outdir=DIR [--modules=DIR] [--licences=FILE]. Nothing is written but below the output
// directory, and the file, which tells what is bundled into the page under which terms.
import { copyFile, mkdir, readFile, readdir, writeFile } from 'node:fs/promises';
import { createRequire } from 'node:module';
import { dirname, join, relative, resolve } from 'node:path';
import { fileURLToPath } from 'node:url';
import { parseArgs } from 'node:util';

const here = dirname(fileURLToPath(import.meta.url));

let values;
try {
    ({ values } = parseArgs({ options: { outdir: { type: 'string' }, modules: { type: 'string' }, licences: { type: 'string' } } }));
} catch (error) {
    console.error(`build.mjs: ${error.message}`);
    process.exit(2);
}
if (!values.outdir) {
    console.error('build.mjs: --outdir=DIR is missing');
    process.exit(2);
}

const outdir = resolve(values.outdir);
const modules = resolve(values.modules ?? join(here, 'node_modules'));
const esbuild = createRequire(join(modules, 'package.json'))('esbuild');

// English is a part of the page; what is loaded on demand has names of its own.
const languages = (await readdir(join(here, 'src/words'))).map((file) => file.replace(/\.ts$/, '')).filter((name) => name !== 'en');

await mkdir(outdir, { recursive: true });
let built;
try {
    built = await esbuild.build({
        entryPoints: [
            { in: join(here, 'src/main.ts'), out: 'app' },
            { in: join(here, 'styles/page.css'), out: 'app' },
            { in: join(here, 'src/workbench/workbench.ts'), out: 'workbench' },
            { in: join(here, 'styles/workbench.css'), out: 'workbench' },
            ...languages.map((name) => ({ in: join(here, `src/words/${name}.ts`), out: `words/${name}` })),
        ],
        absWorkingDir: here,
        nodePaths: [modules],
        bundle: true,
        minify: true,
        format: 'esm',
        splitting: true,
        chunkNames: 'parts/[name]-[hash]',
        target: ['chrome114', 'firefox115', 'safari16.4'],
        outdir,
        assetNames: 'fonts/[name]',
        publicPath: '/',
        loader: { '.woff2': 'file' },
        legalComments: 'none',
        charset: 'utf8',
        logLevel: 'warning',
        metafile: true,
    });
} catch {
    // esbuild has printed what is wrong and where.
    process.exit(1);
}
await copyFile(join(here, 'src/icon.svg'), join(outdir, 'icon.svg'));

// What the page shares with what is loaded on demand comes together with it, and not after it.
const pathOf = (output) => relative(outdir, resolve(here, output));
const [, page] = Object.entries(built.metafile.outputs).find(([output]) => pathOf(output) === 'app.js');
const shared = page.imports.filter(({ kind }) => kind === 'import-statement').map(({ path }) => `<link rel="modulepreload" href="/${pathOf(path)}">\n`);
const document = await readFile(join(here, 'src/index.html'), 'utf8');
await writeFile(join(outdir, 'index.html'), document.replace('<script type="module"', `${shared.join('')}$&`));

// The packages that something of the page comes from, and no others, are what is given on with it.
if (values.licences) {
    const names = Object.entries(built.metafile.outputs).flatMap(([, { inputs }]) => Object.keys(inputs));
    const files = names.map((name) => relative(modules, resolve(here, name))).filter((name) => !name.startsWith('..'));
    const packages = new Set(files.map((name) => name.match(/^(@[^/]+\/)?[^/]+/)[0]));
    const texts = [];
    for (const name of [...packages].sort()) {
        const directory = join(modules, name);
        const { version, license } = JSON.parse(await readFile(join(directory, 'package.json'), 'utf8'));
        const file = (await readdir(directory)).find((entry) => /^licen[cs]e(\.(md|txt))?$/i.test(entry));
        if (!file) {
            console.error(`build.mjs: ${directory} has no licence`);
            process.exit(1);
        }
        texts.push(`The page holds ${name} ${version} (${license}):\n\n${(await readFile(join(directory, file), 'utf8')).trim()}\n`);
    }
    await writeFile(resolve(values.licences), `\n${texts.join('\n')}`);
}
