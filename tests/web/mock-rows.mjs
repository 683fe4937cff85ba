// SPDX-License-Identifier: MIT
// Rows of made-up screens, shaped like those that the application sends.

let serial = 0;

/** A row without its place in the list; layOut() adds that. */
export function row(kind, name, more = {}) {
    serial += 1;
    return {
        key: `k${serial}`, kind, name, identifier: null, set: null, get: null, action: null, detail: null, cellClass: null, properties: {}, userInfo: null,
        value: null, text: kind === 0 ? null : name, detailText: null, detailTextColour: null, tint: null, onTint: null, background: null,
        accessory: kind === 1 ? 1 : 0, height: kind === 0 ? 0 : 44, editingStyle: 0, tappable: kind === 1 || kind === 13, labels: [], titleFrame: null, controlFrame: null, ...more,
    };
}

export const group = (name = null, footerText) => row(0, name, { properties: footerText ? { footerText } : {} });

/** Numbers rows and sections as the phone does. */
export function layOut(rows) {
    let section = -1;
    let place = 0;
    return rows.map((entry, index) => {
        const opens = entry.kind === 0;
        if (opens || section < 0) { section += 1; place = 0; }
        return { ...entry, index, section, row: opens ? null : place++ };
    });
}

export const pattern = { pattern: 'nav', alpha: 1 };

export const product = () => row(0, null, {
    properties: { headerCellClass: 'SampleHeaderCell', title: 'Sample Go', subTitle: 'Keeps your phone quiet when you are not.' },
    background: { pattern: 'nav', alpha: 0.85 },
});

export const toggle = (name, value, more = {}) => row(6, name, { value, set: 'set:', onTint: pattern, cellClass: 'SampleSwitchCell', ...more });

export const slider = (name, value) => row(5, name, {
    value, set: 'set:', height: 70, properties: { min: 0, max: 1, leftImage: 'SpeakerMute@2x', rightImage: 'SpeakerMax@2x' },
    titleFrame: [16, -4, 358, 44], controlFrame: [16, 28, 358, 44],
});

export const bar = (more = {}) => ({
    tint: '#ffffffff', barTint: pattern, statusBarStyle: 1, titleView: { image: 'Logo' }, titleFade: more.titleView === undefined ? 1 : 0, back: null, left: [],
    right: [{ title: null, image: null, system: 4, style: 0, action: 'add:' }, { title: null, image: 'twitter', system: null, style: 0, action: 'share:' }], ...more,
});

export const plainBar = (more = {}) => ({ tint: '#007affff', barTint: null, statusBarStyle: 0, titleView: null, titleFade: 0, back: null, left: [], right: [], ...more });
