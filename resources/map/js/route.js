'use strict';
// One recording's route: its places in order, with the links between them and a coarse index.
//
// Arrays, one element per place:
//   x, y    longitude and latitude times 10^7, the whole numbers that the program's hit test uses
//   mx, my  web Mercator units (mercator.js); a place that is not known holds its predecessor's
//   flags   UNKNOWN: no place (0, 0 or unreadable); HELD: no fix, the last place repeated;
//           link to the predecessor; speed class
// While a route grows they are those of Growth, longer than the route; afterwards its own.
// chunks: runs of CHUNK links with their bounds, in both systems; drawing bounds run on past the
// date line (mx as a sum of shortest ways), so that a route is one piece wherever it lies.
(function (velmorantMap) {
    const { mercator } = velmorantMap;
    const CHUNK = 64;
    const UNKNOWN = 1;
    const HELD = 2;
    const LINK_SHIFT = 2;
    const LINK_MASK = 3 << LINK_SHIFT;
    const SPEED_SHIFT = 4;
    const Link = Object.freeze({ JOINED: 0, APART: 1, FIX_LOST: 2 });

    // Faster than any car: a longer way between two seconds is a false place.
    const CAR_METRES_PER_SECOND = 100;
    // A place repeated while parked and one repeated in a tunnel differ by the way to the next one.
    const TUNNEL_METRES = 60;

    // So few units are less than that way everywhere on the map, whatever the latitude.
    const CERTAINLY_JOINED = CAR_METRES_PER_SECOND / mercator.METRES_PER_UNIT;

    function emptyBounds() {
        return {
            minX: Infinity, maxX: -Infinity, minY: Infinity, maxY: -Infinity,
            left: Infinity, right: -Infinity, top: Infinity, bottom: -Infinity,
        };
    }

    const ARRAYS = ['x', 'y', 'mx', 'my', 'flags'];
    const BYTES_PER_PLACE = 17;

    // The arrays of the one route that grows, used again for the next: routes by the hundred, each
    // allocating as it grows, would keep the browser busy with collecting what they leave.
    class Growth {
        constructor() {
            this.allocate(4096);
        }

        allocate(size) {
            this.size = size;
            for (const name of ARRAYS) this[name] = name === 'flags' ? new Uint8Array(size) : new Int32Array(size);
        }

        enlarge() {
            const old = ARRAYS.map((name) => this[name]);
            this.allocate(2 * this.size);
            ARRAYS.forEach((name, n) => this[name].set(old[n]));
        }
    }

    class Route {
        // growth: in which no other route grows until this one has finished.
        constructor(number, growth) {
            this.number = number;
            this.growth = growth;
            this.count = 0;
            this.complete = false;
            this.data = null;
            this.chunks = [];
            this.bounds = emptyBounds();
            for (const name of ARRAYS) this[name] = growth[name];
            this.lastKnown = -1;
            this.repeated = 0;
            this.unwrapped = 0;
        }

        add(longitude, latitude) {
            const i = this.count;
            if (i === this.x.length) this.enlarge();
            const known = longitude === longitude && !(longitude === 0 && latitude === 0);
            this.x[i] = known ? Math.round(longitude * 1e7) : 0;
            this.y[i] = known ? Math.round(latitude * 1e7) : 0;
            if (known) {
                this.mx[i] = mercator.x(longitude);
                this.my[i] = mercator.y(latitude);
                if (this.lastKnown < 0) this.placeUnknownBeginning(i);
            } else if (i > 0) {
                this.mx[i] = this.mx[i - 1];
                this.my[i] = this.my[i - 1];
            }
            this.count = i + 1;
            this.flags[i] = known ? this.link(i, i - this.lastKnown) << LINK_SHIFT : UNKNOWN;
            if (known) this.lastKnown = i;
            this.index(i);
        }

        placeUnknownBeginning(first) {
            this.mx.fill(this.mx[first], 0, first);
            this.my.fill(this.my[first], 0, first);
            this.unwrapped = this.mx[first];
            this.chunks.forEach((chunk) => { chunk.start = this.unwrapped; });
        }

        // How place i follows the last known one, `seconds` before it.
        link(i, seconds) {
            if (this.lastKnown < 0) return Link.APART;
            if (seconds === 1 && this.repeated === 0) {
                const dx = (this.mx[i] - this.mx[i - 1]) | 0;
                const dy = this.my[i] - this.my[i - 1];
                if ((dx !== 0 || dy !== 0) && Math.abs(dx) + Math.abs(dy) < CERTAINLY_JOINED) return Link.JOINED;
            }
            const metres = this.metresBetween(i - 1, i);
            if (metres === 0) {
                this.repeated += 1;
                return Link.JOINED;
            }
            const elapsed = seconds + this.repeated;
            this.repeated = 0;
            if (metres > CAR_METRES_PER_SECOND * elapsed) return Link.APART;
            if (seconds > 1) return Link.FIX_LOST;
            return elapsed > 1 && metres > TUNNEL_METRES ? Link.FIX_LOST : Link.JOINED;
        }

        metresBetween(i, j) {
            const dx = (this.mx[j] - this.mx[i]) | 0;
            const dy = this.my[j] - this.my[i];
            if (dx === 0 && dy === 0) return 0;
            const narrowing = Math.cos((this.y[j] * Math.PI) / 1.8e9);
            return Math.hypot(dx, dy) * narrowing * mercator.METRES_PER_UNIT;
        }

        // Bounds of the chunks that place i belongs to: the last place of a chunk is the first of
        // the next, so that every link lies in exactly one.
        index(i) {
            const last = i % CHUNK === 0;
            if (i > 0) this.unwrapped += (this.mx[i] - this.mx[i - 1]) | 0;
            if (last) {
                if (i > 0) this.widen(this.chunks[this.chunks.length - 1], i);
                this.chunks.push(Object.assign(emptyBounds(), { first: i, start: this.unwrapped }));
            }
            this.widen(this.chunks[this.chunks.length - 1], i);
            this.widen(this.bounds, i);
        }

        widen(bounds, i) {
            const x = this.x[i];
            const y = this.y[i];
            if (x < bounds.minX) bounds.minX = x;
            if (x > bounds.maxX) bounds.maxX = x;
            if (y < bounds.minY) bounds.minY = y;
            if (y > bounds.maxY) bounds.maxY = y;
            if (this.flags[i] & UNKNOWN) return;
            const my = this.my[i];
            if (this.unwrapped < bounds.left) bounds.left = this.unwrapped;
            if (this.unwrapped > bounds.right) bounds.right = this.unwrapped;
            if (my < bounds.top) bounds.top = my;
            if (my > bounds.bottom) bounds.bottom = my;
        }

        enlarge() {
            this.growth.enlarge();
            for (const name of ARRAYS) this[name] = this.growth[name];
        }

        finish() {
            this.complete = true;
            this.settle();
        }

        // Arrays of its own, in one piece of memory; the route grows no more.
        settle() {
            const { count } = this;
            const memory = new ArrayBuffer(BYTES_PER_PLACE * count);
            ARRAYS.forEach((name, n) => {
                const ArrayType = this[name].constructor;
                const own = new ArrayType(memory, 4 * n * count, count);
                own.set(this[name].subarray(0, count));
                this[name] = own;
            });
            this.growth = null;
        }

        // One past the chunk's last place; that place is shared with the next chunk.
        chunkEnd(chunk) {
            return Math.min(chunk.first + CHUNK + 1, this.count);
        }

        isUnknown(i) {
            return (this.flags[i] & UNKNOWN) !== 0;
        }

        // Whether place i is where the car was, rather than missing or carried over.
        hasFix(i) {
            return (this.flags[i] & (UNKNOWN | HELD)) === 0;
        }

        linkOf(i) {
            return (this.flags[i] & LINK_MASK) >> LINK_SHIFT;
        }

        speedClassOf(i) {
            return this.flags[i] >> SPEED_SHIFT;
        }

        isEmpty() {
            return this.lastKnown < 0;
        }

        // Once the program has told seconds, fixes and speeds, the links are judged again by them.
        // speedClass(km/h) is a number from 1 to 15.
        adopt(data, speedClass) {
            this.data = data;
            this.repeated = 0;
            this.lastKnown = -1;
            const told = Math.min(this.count, data.count);
            for (let i = 0; i < told; i += 1) {
                if (this.isUnknown(i)) continue;
                const held = data.fix !== null && data.fix[i] === 0;
                const seconds = this.lastKnown < 0 ? 0
                    : Math.max(1, Math.abs(data.second[i] - data.second[this.lastKnown]));
                const link = held && this.lastKnown >= 0 ? Link.JOINED : this.link(i, seconds);
                if (!held) this.lastKnown = i;
                this.flags[i] = (held ? HELD : 0) | (link << LINK_SHIFT) |
                    (speedClass(data.speed[i]) << SPEED_SHIFT);
            }
            // Without any fix the places are still what was sent, and are drawn.
            for (let i = this.count - 1; this.lastKnown < 0 && i >= 0; i -= 1) {
                if (!this.isUnknown(i)) this.lastKnown = i;
            }
        }
    }

    Route.CHUNK = CHUNK;
    Route.Growth = Growth;
    Route.Link = Link;
    velmorantMap.Route = Route;
})(window.velmorantMap);
