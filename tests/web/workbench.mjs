// SPDX-License-Identifier: MIT
// The workbench beside the phone, for its tests.
import { deskSize, openPage, settled } from './harness.mjs';

/** Opens the page with the workbench on a tab; the options are those of openPage. */
export async function openWorkbench(session, tab, options = {}) {
    const ui = await openPage(session, { viewport: deskSize, url: (server) => `${server.address}?workbench=${tab}#secret=${server.secret}`, ...options });
    const pane = ui.page.getByRole('complementary', { name: 'Workbench' });
    await pane.waitFor();
    await settled(ui.page);
    return { ...ui, pane, panel: pane.getByRole('tabpanel') };
}

/** A line of a list of the workbench, by a text in one of its cells. */
export const line = (pane, text) => pane.locator('.wb-list-body [role="row"]', { has: pane.page().locator(`.wb-cell :text-is("${text}")`) });

/** A cell of a line, by its column. */
export const cell = (found, column) => found.locator(`.wb-column-${column}`);
