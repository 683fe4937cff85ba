// SPDX-License-Identifier: MIT
// Fingers, slow ways to the application, and motions that stand still, for tests of what the user does to the page.

/** A finger on the page: down(), move() and up() are told to the browser as a touch screen would. */
export async function finger(page) {
    const devtools = await page.context().newCDPSession(page);
    const send = (type, touchPoints) => devtools.send('Input.dispatchTouchEvent', { type, touchPoints });
    const at = (x, y) => [{ x, y }];
    return {
        down: (x, y) => send('touchStart', at(x, y)),
        move: (x, y) => send('touchMove', at(x, y)),
        up: () => send('touchEnd', []),
        cancel: () => send('touchCancel', []),
        /** From one place to another in so many steps, and up. */
        async swipe(from, to, steps = 10) {
            await send('touchStart', at(...from));
            for (let step = 1; step <= steps; step += 1) await send('touchMove', at(from[0] + (to[0] - from[0]) * step / steps, from[1] + (to[1] - from[1]) * step / steps));
            await send('touchEnd', []);
        },
        /** As fast as a finger goes in so many milliseconds, however fast the machine is. */
        async flick(from, to, milliseconds) {
            const start = Date.now() / 1000;
            const at = (type, touchPoints, part) => devtools.send('Input.dispatchTouchEvent', { type, touchPoints, timestamp: start + part * milliseconds / 1000 });
            await at('touchStart', [{ x: from[0], y: from[1] }], 0);
            for (let step = 1; step <= 5; step += 1) await at('touchMove', [{ x: from[0] + (to[0] - from[0]) * step / 5, y: from[1] + (to[1] - from[1]) * step / 5 }], step / 5);
            await at('touchEnd', [], 1);
        },
        async tap(x, y) {
            await send('touchStart', at(x, y));
            await send('touchEnd', []);
        },
    };
}

/** A script that makes every message take so many milliseconds to the application and as many back, in order; for openPage's `beforehand`. */
export const farAway = (milliseconds) => ({
    content: `{
        const { WebSocket: Near } = globalThis;
        globalThis.WebSocket = class extends Near {
            send(data) { setTimeout(() => { if (this.readyState === Near.OPEN) super.send(data); }, ${milliseconds}); }
            addEventListener(type, listener, ...rest) {
                super.addEventListener(type, type === 'message' ? (event) => setTimeout(() => listener.call(this, event), ${milliseconds}) : listener, ...rest);
            }
        };
    }`,
});

/** Lets every motion that begins from now on stand still at its start. */
export const freeze = (page) => page.evaluate(() => {
    const { animate } = Element.prototype;
    Element.prototype.animate = function (...args) {
        const animation = animate.apply(this, args);
        animation.pause();
        return animation;
    };
});

/** Brings the motions that stand still to a part of their time. */
export const advanceTo = (page, part) => page.evaluate((share) => {
    for (const animation of document.getAnimations()) if (animation.playState === 'paused') animation.currentTime = animation.effect.getTiming().duration * share;
}, part);

export const middle = async (locator) => {
    const box = await locator.boundingBox();
    return [box.x + box.width / 2, box.y + box.height / 2];
};

/** How an element is drawn: its left and top edge, and its opacity. */
export const drawn = (locator) => locator.evaluate((element) => {
    const { left, top } = element.getBoundingClientRect();
    return { left, top, opacity: Number(getComputedStyle(element).opacity) };
});
