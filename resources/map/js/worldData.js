'use strict';
// The packaged world: outlines in mercator units, names and cities. Reading it takes a moment, so
// the page asks for it after its first paint and draws without it until then.
(function (velmorantMap) {
    const { mercator } = velmorantMap;
    const WORLD_FILE = 'vendor/world-atlas/countries-50m.json';
    const PLACES_FILE = 'data/places.json';
    const POLE_EDGE = 2147000000;

    // XMLHttpRequest, because fetch() is refused on the program's own scheme.
    // done(value) gets null where nothing answers.
    function readJson(address, done) {
        const request = new XMLHttpRequest();
        request.open('GET', address);
        request.responseType = 'json';
        request.onload = () => {
            const good = request.status === 200 || request.status === 0;
            done(good ? request.response : null);
        };
        request.onerror = () => done(null);
        request.ontimeout = () => done(null);
        try {
            request.send();
        } catch (error) {
            done(null);
        }
    }

    // A run of [longitude, latitude] as {x, y, left, right, top, bottom}. It runs on past the date
    // line; a ring around the pole then ends a world away from its beginning, and is closed along
    // the map's lower edge.
    function outline(coordinates) {
        const n = coordinates.length;
        const line = {
            x: new Float64Array(n), y: new Float64Array(n),
            left: Infinity, right: -Infinity, top: Infinity, bottom: -Infinity,
        };
        for (let i = 0; i < n; i += 1) {
            let x = (coordinates[i][0] / 360) * mercator.WORLD;
            if (i > 0) x -= Math.round((x - line.x[i - 1]) / mercator.WORLD) * mercator.WORLD;
            const y = mercator.y(coordinates[i][1]);
            line.x[i] = x;
            line.y[i] = y;
            if (x < line.left) line.left = x;
            if (x > line.right) line.right = x;
            if (y < line.top) line.top = y;
            if (y > line.bottom) line.bottom = y;
        }
        return line;
    }

    function rings(geometry) {
        const list = [];
        const add = (polygon) => polygon.forEach((ring) => list.push(outline(ring)));
        if (geometry.type === 'Polygon') add(geometry.coordinates);
        if (geometry.type === 'MultiPolygon') geometry.coordinates.forEach(add);
        return list;
    }

    // Coast lines without the pieces that only close a polygon along the date line or the pole.
    function openCoast(coordinates) {
        const lines = [];
        let run = [];
        for (let i = 0; i < coordinates.length; i += 1) {
            const [longitude, latitude] = coordinates[i];
            const edge = Math.abs(longitude) > 179.99 || latitude < -89.9;
            if (!edge) run.push(coordinates[i]);
            if ((edge || i === coordinates.length - 1) && run.length > 1) lines.push(outline(run));
            if (edge) run = [];
        }
        return lines;
    }

    // Where a country's name stands: the centre of gravity of its largest ring.
    function nameOf(feature) {
        let best = null;
        for (const ring of rings(feature.geometry)) {
            let area = 0;
            let cx = 0;
            let cy = 0;
            const x0 = ring.x[0];
            const y0 = ring.y[0];
            for (let i = 0; i + 1 < ring.x.length; i += 1) {
                const ax = ring.x[i] - x0;
                const ay = ring.y[i] - y0;
                const bx = ring.x[i + 1] - x0;
                const by = ring.y[i + 1] - y0;
                const cross = ax * by - bx * ay;
                area += cross;
                cx += (ax + bx) * cross;
                cy += (ay + by) * cross;
            }
            const size = Math.abs(area) / 2;
            if (area !== 0 && ring.bottom < POLE_EDGE && (best === null || size > best.size)) {
                best = { size, x: x0 + cx / (3 * area), y: y0 + cy / (3 * area) };
                best.width = ring.right - ring.left;
            }
        }
        if (best === null) return null;
        best.id = feature.id;
        best.name = feature.properties.name;
        return best;
    }

    function prepareOutlines(topology) {
        const { countries, land } = topology.objects;
        const feature = topojson.feature(topology, land);
        const shapes = feature.type === 'FeatureCollection' ? feature.features : [feature];
        const coast = topojson.mesh(topology, countries, (a, b) => a === b).coordinates;
        const borders = topojson.mesh(topology, countries, (a, b) => a !== b).coordinates;
        return {
            land: shapes.flatMap((shape) => rings(shape.geometry)),
            coast: coast.flatMap(openCoast),
            borders: borders.map(outline),
            names: topojson.feature(topology, countries).features
                .map(nameOf).filter((name) => name !== null).sort((a, b) => b.size - a.size),
        };
    }

    function prepareCities(places) {
        return places.cities.map(([english, chinese, longitude, latitude]) => ({
            english, chinese, x: (longitude / 360) * mercator.WORLD, y: mercator.y(latitude),
        }));
    }

    // done({land, coast, borders, names, cities, countries}): rings and lines of {x, y, left, right,
    // top, bottom}; names of {id, name, x, y, size, width}, the largest first; cities of {english,
    // chinese, x, y}; countries: Chinese names by id. Parts that cannot be read are left out.
    velmorantMap.readWorld = function (log, done) {
        const world = { land: [], coast: [], borders: [], names: [], cities: [], countries: {} };
        let waiting = 2;
        const part = (file, take) => readJson(file, (value) => {
            try {
                if (value === null) throw new Error('no answer');
                take(value);
            } catch (error) {
                log.add(`${file} cannot be read: ${error.message}`);
            }
            waiting -= 1;
            if (waiting === 0) done(world);
        });
        part(WORLD_FILE, (topology) => Object.assign(world, prepareOutlines(topology)));
        part(PLACES_FILE, (places) => {
            world.cities = prepareCities(places);
            world.countries = places.countries;
        });
    };
    velmorantMap.readJson = readJson;
})(window.velmorantMap);
