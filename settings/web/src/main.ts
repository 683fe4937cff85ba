// SPDX-License-Identifier: MIT
import { App } from './app';
import { takeSecret } from './door';
import { enableWorkbench } from './launcher';

const scheme = location.protocol === 'https:' ? 'wss' : 'ws';
enableWorkbench(new App(document.body, `${scheme}://${location.host}/ws`, takeSecret()));
