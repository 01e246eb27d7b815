'use strict';
// The page's suite, injected into the loaded page. It needs nothing but the page itself, so that it
// runs alike in the program's browser control and in any other browser:
//
//   inject harness.js, then the other files of this folder, as text
//   run    velmorantSuite.start()        (returns nothing)
//   poll   window.velmorantSuiteResults  "" until done, then JSON: [{"name", "ok", "detail"}, ...]
window.velmorantSuite = (function () {
    const tests = [];

    function check(condition, message) {
        if (!condition) throw new Error(message);
    }

    function equal(actual, expected, what) {
        const a = JSON.stringify(actual);
        const b = JSON.stringify(expected);
        check(a === b, `${what}: ${a} instead of ${b}`);
    }

    function frames(count) {
        return new Promise((done) => {
            const step = (left) => (left === 0 ? done() : requestAnimationFrame(() => step(left - 1)));
            step(count);
        });
    }

    async function until(condition, what, limit = 10000) {
        const end = performance.now() + limit;
        while (!condition()) {
            check(performance.now() < end, `waited in vain until ${what}`);
            await new Promise((done) => setTimeout(done, 20));
        }
    }

    // The page as it was loaded: no routes, no car, nothing picked, its own view of the world.
    function reset() {
        const page = window.velmorantMap;
        getContentHis('Over');
        for (const number of [...page.table.shown.keys()]) clearHistroy(String(number).padStart(3, '0'));
        page.table.known.clear();
        page.car.hide();
        page.log.lines.length = 0;
        page.view.automatic = true;
        page.view.setFollow(true);
        window.varLocal = '';
    }

    function test(name, body) {
        tests.push({ name, body });
    }

    async function run() {
        const results = [];
        for (const { name, body } of tests) {
            let detail = '';
            try {
                reset();
                await body();
            } catch (error) {
                detail = error.message || String(error);
            }
            results.push({ name, ok: detail === '', detail });
        }
        reset();
        return results;
    }

    const start = () => { run().then((results) => { window.velmorantSuiteResults = JSON.stringify(results); }); };
    window.velmorantSuiteResults = '';
    return { tests, test, check, equal, frames, until, reset, start };
})();
