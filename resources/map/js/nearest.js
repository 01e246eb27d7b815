'use strict';
// Which drawn segments lie near a point of the screen.
(function (velmorantMap) {
    const { Route, mercator } = velmorantMap;

    // Distance in units from point (px, py) to the way from a to b (relative to the point), with the
    // fraction of the way where it is nearest.
    function toSegment(ax, ay, bx, by) {
        const dx = bx - ax;
        const dy = by - ay;
        const square = dx * dx + dy * dy;
        const t = square === 0 ? 0 : Math.max(0, Math.min(1, -(ax * dx + ay * dy) / square));
        return { distance: Math.hypot(ax + t * dx, ay + t * dy), along: t };
    }

    // Copies of the world in which a route's bounds may hold the point: x shifted by whole worlds.
    function shiftsInto(bounds, x, reach) {
        const shifts = [];
        const first = Math.ceil((bounds.left - reach - x) / mercator.WORLD);
        const last = Math.floor((bounds.right + reach - x) / mercator.WORLD);
        for (let k = first; k <= last; k += 1) shifts.push(k * mercator.WORLD);
        return shifts;
    }

    function collect(route, px, py, reach, found) {
        for (const chunk of route.chunks) {
            if (px < chunk.left - reach || px > chunk.right + reach ||
                py < chunk.top - reach || py > chunk.bottom + reach) continue;
            const end = route.chunkEnd(chunk);
            let bx = chunk.start - px;
            for (let i = chunk.first + 1; i < end; i += 1) {
                const ax = bx;
                bx += (route.mx[i] - route.mx[i - 1]) | 0;
                if (route.linkOf(i) === Route.Link.APART || route.isUnknown(i)) continue;
                const near = toSegment(ax, route.my[i - 1] - py, bx, route.my[i] - py);
                if (near.distance <= reach) {
                    found.push({ route, i: i - 1, along: near.along, distance: near.distance });
                }
            }
        }
    }

    // Segments {route, i, along, pixels} of the shown routes within `pixels` of the place, nearest
    // first; a route of a single place counts as a segment of no length.
    velmorantMap.nearestSegments = function (table, x, y, zoom, pixels) {
        const scale = mercator.scale(zoom);
        const reach = pixels / scale;
        const found = [];
        for (const route of table.shown.values()) {
            const { bounds } = route;
            if (route.isEmpty() || y < bounds.top - reach || y > bounds.bottom + reach) continue;
            for (const shift of shiftsInto(bounds, x, reach)) {
                collect(route, x + shift, y, reach, found);
                const lone = route.lastKnown;
                if (route.count === 1) {
                    const distance = Math.hypot(route.mx[lone] - x - shift, route.my[lone] - y);
                    if (distance <= reach) found.push({ route, i: 0, along: 0, distance });
                }
            }
        }
        for (const segment of found) segment.pixels = segment.distance * scale;
        const isActive = (segment) => (segment.route === table.active ? 1 : 0);
        return found.sort((a, b) => a.distance - b.distance || isActive(b) - isActive(a));
    };
})(window.velmorantMap);
