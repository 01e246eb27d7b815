'use strict';
// Makers of routes and plain models of the program, shared by the suite's files.
(function (suite) {
    function sign(value) {
        return value < 0 ? '-' : '+';
    }

    function degrees(value, signed) {
        const text = Math.abs(value).toFixed(7);
        return signed ? sign(value) + text : (value < 0 ? '-' : '') + text;
    }

    // Groups of places, longitudes with their sign as the program writes them.
    function groups(places, signed = true) {
        return places.map(([longitude, latitude]) =>
            `${degrees(longitude, signed)}!${latitude.toFixed(7)}|`);
    }

    // The texts of a route as they are sent while it is read: number and one place, then ten each.
    function textsOfReading(number, places, signed = true) {
        const list = groups(places, signed);
        const texts = [String(number).padStart(3, '0') + (list[0] || '')];
        for (let i = 1; i < list.length; i += 10) texts.push(list.slice(i, i + 10).join(''));
        texts.push('Over');
        return texts;
    }

    // The texts of a route that is sent again: number and ten places, then ten each.
    function textsOfRedrawing(number, places, signed = true) {
        const list = groups(places, signed);
        const texts = [];
        for (let i = 0; i < list.length; i += 10) texts.push(list.slice(i, i + 10).join(''));
        texts[0] = String(number).padStart(3, '0') + (texts[0] || '');
        return [...texts, 'Over'];
    }

    function send(texts) {
        for (const text of texts) getContentHis(text);
    }

    function draw(number, places) {
        send(textsOfReading(number, places));
    }

    // count places from a start, each a step further.
    function line(start, step, count) {
        return Array.from({ length: count },
            (_, i) => [start[0] + i * step[0], start[1] + i * step[1]]);
    }

    // A drive of count seconds: a heading that wanders, 8 to 20 metres a second.
    function drive(start, count, random) {
        const places = [start];
        let heading = random() * 2 * Math.PI;
        while (places.length < count) {
            const [longitude, latitude] = places[places.length - 1];
            heading += (random() - 0.5) * 0.3;
            const way = (8 + 12 * random()) / 111320;
            const east = (way * Math.sin(heading)) / Math.cos((latitude * Math.PI) / 180);
            let next = longitude + east;
            if (next > 180) next -= 360;
            if (next < -180) next += 360;
            places.push([next, latitude + way * Math.cos(heading)]);
        }
        return places.map(([x, y]) => [Number(x.toFixed(7)), Number(y.toFixed(7))]);
    }

    // A generator of the same numbers in every run.
    function generator(seed) {
        let state = seed;
        return () => {
            state = (Math.imul(state, 1664525) + 1013904223) >>> 0;
            return state / 4294967296;
        };
    }

    // The program's hit test in its plainest form: the segment from 1, or 0.
    function plainHit(places, x, y) {
        const whole = (value) => Math.round(value * 1e7);
        const n = places.length;
        if (n === 1) return whole(places[0][0]) === x && whole(places[0][1]) === y ? 1 : 0;
        for (let i = 1; i <= n - 2; i += 1) {
            const [ax, ay] = places[i - 1].map(whole);
            const [bx, by] = places[i].map(whole);
            if (x >= Math.min(ax, bx) && x < Math.max(ax, bx) &&
                y >= Math.min(ay, by) && y < Math.max(ay, by)) return i;
        }
        return 0;
    }

    // What the program finds for the picked text among tracks [[number, places], ...] in their
    // order: {number, index}, or null.
    function plainAttribution(picked, tracks) {
        suite.check(/^.-?\d+\.\d+,-?\d+\.\d+$/.test(picked), `varLocal reads ${JSON.stringify(picked)}`);
        const [x, y] = picked.slice(1).split(',').map((text) => Math.round(Number(text) * 1e7));
        for (const [number, places] of tracks) {
            const index = plainHit(places, x, y);
            if (index > 0) return { number, index };
        }
        return null;
    }

    // Clicks the map where a place is shown; false when it lies outside or under a button.
    function click(longitude, latitude) {
        const { map } = velmorantMap;
        const copy = Math.round((map.getCenter().lng - longitude) / 360) * 360;
        const at = map.latLngToContainerPoint([latitude, longitude + copy]);
        const size = map.getSize();
        if (at.x < 1 || at.y < 1 || at.x > size.x - 1 || at.y > size.y - 1) return false;
        const target = document.elementFromPoint(at.x, at.y);
        if (target === null || !map.getContainer().contains(target)) return false;
        for (const type of ['mousedown', 'mouseup', 'click']) {
            target.dispatchEvent(new MouseEvent(type, {
                bubbles: true, cancelable: true, view: window, clientX: at.x, clientY: at.y,
            }));
        }
        return true;
    }

    function look(longitude, latitude, zoom) {
        velmorantMap.view.automatic = false;
        velmorantMap.map.setView([latitude, longitude], zoom, { animate: false });
    }

    suite.routes = {
        groups, textsOfReading, textsOfRedrawing, send, draw, line, drive, generator,
        plainAttribution, click, look,
    };
})(window.velmorantSuite);
