// SPDX-License-Identifier: MIT
// The tests use the packages that the page's own lock file pins. A build that installs them elsewhere names the place.
import { createRequire } from 'node:module';
import { fileURLToPath } from 'node:url';

const pageFolder = fileURLToPath(new URL('../../settings/web/package.json', import.meta.url));
const installed = process.env.QUIETRIX_WEB_MODULES ? `${process.env.QUIETRIX_WEB_MODULES}/package.json` : pageFolder;

export const requireModule = createRequire(installed);
