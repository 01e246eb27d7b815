'use strict';
// What the program makes of a clicked point, and the choice of a point that it understands.
//
// The program looks through its tracks in order. In each it takes the first of the segments
// 1 .. count-2 whose rectangle between the two places holds the point, the right and bottom edges
// outside (bottom being the larger latitude). A segment that runs exactly north-south or east-west
// has no inside; a track of one place is hit at exactly that place.
(function (velmorantMap) {
    const { Route } = velmorantMap;
    const STEPS_ALONG = 32;
    const STEPS_ACROSS = 8;
    const NEIGHBOURS = 3;
    // Where hundreds of routes lie over each other a click must still be answered at once.
    const PATIENCE_MS = 150;

    // The segment of one route that holds the point, numbered from 1, or 0.
    function segmentAt(route, x, y) {
        if (route.count === 1) return route.x[0] === x && route.y[0] === y ? 1 : 0;
        const last = route.count - 3;
        const within = (b) => x >= b.minX && x < b.maxX && y >= b.minY && y < b.maxY;
        if (last < 0 || !within(route.bounds)) return 0;
        for (const chunk of route.chunks) {
            if (!within(chunk)) continue;
            const end = Math.min(chunk.first + Route.CHUNK - 1, last);
            for (let i = chunk.first; i <= end; i += 1) {
                const xa = route.x[i];
                const xb = route.x[i + 1];
                if (xa < xb ? x < xa || x >= xb : x < xb || x >= xa) continue;
                const ya = route.y[i];
                const yb = route.y[i + 1];
                if (ya < yb ? y >= ya && y < yb : y >= yb && y < ya) return i + 1;
            }
        }
        return 0;
    }

    class HitTest {
        constructor(table) {
            this.table = table;
        }

        // {route, index} that the program finds at the point, or null.
        attribute(x, y) {
            for (const route of this.table.known.values()) {
                const index = segmentAt(route, x, y);
                if (index > 0) return { route, index };
            }
            return null;
        }

        means(x, y, route, index) {
            const found = this.attribute(x, y);
            return found !== null && found.route === route && found.index === index;
        }

        // A point that the program attributes to the segment behind place i (from 0), as near as
        // possible to the fraction `along` of it; null when there is none.
        pointOn(route, i, along) {
            if (route.count === 1) {
                return this.means(route.x[0], route.y[0], route, 1)
                    ? { x: route.x[0], y: route.y[0], route, index: 1 } : null;
            }
            const width = route.x[i + 1] - route.x[i];
            const height = route.y[i + 1] - route.y[i];
            if (i < 0 || i > route.count - 3 || width === 0 || height === 0) return null;
            const attempt = (u, v) => {
                const x = Math.round(route.x[i] + u * width);
                const y = Math.round(route.y[i] + v * height);
                return this.means(x, y, route, i + 1) ? { x, y, route, index: i + 1 } : null;
            };
            const nearest = (a, b) => Math.abs(a - along) - Math.abs(b - along);
            const steps = (n) => Array.from({ length: n + 1 }, (_, k) => k / n).sort(nearest);
            for (const t of [along, ...steps(STEPS_ALONG)]) {
                const point = attempt(t, t);
                if (point !== null) return point;
            }
            for (const u of steps(STEPS_ACROSS)) {
                for (const v of steps(STEPS_ACROSS)) {
                    const point = attempt(u, v);
                    if (point !== null) return point;
                }
            }
            return null;
        }

        // The point to report for segments near a click, nearest first, each
        // {route, i, along, pixels}: one of those under the pointer, else a neighbour of the nearest.
        choose(segments, slackPixels) {
            if (segments.length === 0) return null;
            const nearest = segments[0];
            const end = performance.now() + PATIENCE_MS;
            for (const segment of segments) {
                if (segment.pixels > nearest.pixels + slackPixels || performance.now() > end) break;
                const point = this.pointOn(segment.route, segment.i, segment.along);
                if (point !== null) return point;
            }
            const { route, i } = nearest;
            for (let away = 1; away <= NEIGHBOURS; away += 1) {
                const point = (i - away >= 0 ? this.pointOn(route, i - away, 1) : null) ||
                    (i + away < route.count - 1 ? this.pointOn(route, i + away, 0) : null);
                if (point !== null) return point;
            }
            return null;
        }
    }

    HitTest.segmentAt = segmentAt;
    velmorantMap.HitTest = HitTest;
})(window.velmorantMap);
