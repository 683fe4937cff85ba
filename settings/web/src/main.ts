// SPDX-License-Identifier: MIT
import { App } from './app';
import { takeSecret } from './door';

const scheme = location.protocol === 'https:' ? 'wss' : 'ws';
new App(document.body, `${scheme}://${location.host}/ws`, takeSecret());
