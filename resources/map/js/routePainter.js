'use strict';
// Paints routes: only the chunks in view, places nearer than a pixel to the last one left out, and
// of a route that still grows only what is new. Strokes are cut into short pieces, because the cost
// of one path grows faster than its length.
(function (velmorantMap) {
    const { Route, BaseMap } = velmorantMap;
    const CASING = '#0B0F14';
    const ACTIVE = '#45C9D6';
    const OTHER = '#2C9FAB';
    const ARROW = '#EAF0F6';
    const FIX_LOST = '#A8B5C3';
    const STROKE_LENGTH = 400;
    const ARROW_SPACING = 90;
    const MARGIN = 12;
    // With more lines than this in view their joints are cut plainly and their casings left out.
    const MANY_LINES = 30000;
    const SIGN_UNITS = 60;
    // With more routes than this their signs would hide them: ends are plain dots then, and only the
    // active one keeps its arrows.
    const MANY_ROUTES = 24;

    // The pixel lines of one route in one view: from a to b, ending at place `at`.
    class Lines {
        constructor() {
            this.count = 0;
            this.at = new Int32Array(1024);
            this.joined = new Uint8Array(1024);
            for (const name of ['ax', 'ay', 'bx', 'by']) this[name] = new Float32Array(1024);
        }

        add(ax, ay, bx, by, at, joined) {
            const n = this.count;
            if (n === this.at.length) this.grow();
            this.ax[n] = ax;
            this.ay[n] = ay;
            this.bx[n] = bx;
            this.by[n] = by;
            this.at[n] = at;
            this.joined[n] = joined ? 1 : 0;
            this.count = n + 1;
        }

        grow() {
            for (const name of ['at', 'joined', 'ax', 'ay', 'bx', 'by']) {
                const larger = new this[name].constructor(2 * this.count);
                larger.set(this[name]);
                this[name] = larger;
            }
        }

        gather(route, view, from, shift, finest) {
            this.count = 0;
            const { scale, top } = view;
            const right = view.width + MARGIN;
            const bottom = view.height + MARGIN;
            const first = Math.max(0, Math.floor((from - 1) / Route.CHUNK));
            for (let c = first; c < route.chunks.length; c += 1) {
                const chunk = route.chunks[c];
                if (chunk.left * scale + shift > right || chunk.right * scale + shift < -MARGIN ||
                    chunk.top * scale + top > bottom || chunk.bottom * scale + top < -MARGIN) continue;
                const wide = (chunk.right - chunk.left) * scale;
                const high = (chunk.bottom - chunk.top) * scale;
                const end = route.chunkEnd(chunk);
                if (wide < finest && high < finest && end - 1 > chunk.first && chunk.first >= from) {
                    const x = chunk.left * scale + shift;
                    const y = chunk.top * scale + top;
                    this.add(x, y, x + wide, y + high, end - 1, false);
                } else {
                    this.gatherChunk(route, view, from, shift, finest, chunk);
                }
            }
        }

        gatherChunk(route, view, from, shift, finest, chunk) {
            const { scale, top } = view;
            const { mx, my } = route;
            const end = route.chunkEnd(chunk);
            let unwrapped = chunk.start;
            let ax = unwrapped * scale + shift;
            let ay = my[chunk.first] * scale + top;
            let joined = false;
            for (let i = chunk.first + 1; i < end; i += 1) {
                unwrapped += (mx[i] - mx[i - 1]) | 0;
                const bx = unwrapped * scale + shift;
                const by = my[i] * scale + top;
                const link = route.linkOf(i);
                if (link === Route.Link.APART || i < from) {
                    ax = bx;
                    ay = by;
                    joined = false;
                } else if (Math.abs(bx - ax) >= finest || Math.abs(by - ay) >= finest || i === end - 1 ||
                    link === Route.Link.FIX_LOST) {
                    this.add(ax, ay, bx, by, i, joined);
                    ax = bx;
                    ay = by;
                    joined = true;
                }
            }
        }
    }

    class RoutePainter {
        // speedColours: {visible, colourOf(class)}.
        constructor(table, speedColours) {
            this.table = table;
            this.speedColours = speedColours;
            this.lines = new Lines();
            this.linesBefore = 0;
        }

        // A generator for a ViewCanvas; painted keeps how far each route was painted.
        * paint(context, view, painted) {
            const { active } = this.table;
            const many = this.linesBefore > MANY_LINES;
            let total = 0;
            let spent = 0;
            for (const route of this.table.shown.values()) {
                if (route === active) continue;
                const lines = this.paintRoute(context, view, painted, route, 0, many);
                total += lines;
                spent += (many ? 1 : 2) * lines + SIGN_UNITS;
                if (spent > 500) {
                    yield spent;
                    spent = 0;
                }
            }
            if (active !== null) total += this.paintRoute(context, view, painted, active, 0, false);
            this.linesBefore = total;
        }

        // Adds to a shown picture what a route has got since it was painted.
        paintGrowth(buffer, route) {
            if (buffer.view === null) return;
            const many = this.linesBefore > MANY_LINES;
            this.paintRoute(buffer.context, buffer.view, buffer.painted, route, buffer.painted.get(route) || 0, many);
        }

        // The number of lines painted.
        paintRoute(context, view, painted, route, from, many) {
            painted.set(route, route.count);
            if (route.isEmpty()) return 0;
            const { bounds } = route;
            if (bounds.bottom * view.scale + view.top < -MARGIN ||
                bounds.top * view.scale + view.top > view.height + MARGIN) return 0;
            const active = route === this.table.active;
            let count = 0;
            for (const shift of BaseMap.copies(view, bounds.left, bounds.right)) {
                this.lines.gather(route, view, from, shift, many ? 1.5 : 1);
                count += this.lines.count;
                this.strokeLines(context, route, active, many);
                if (route.complete) this.paintSigns(context, view, route, shift, active);
            }
            return count;
        }

        strokeLines(context, route, active, many) {
            const width = active ? 4 : 3;
            const plain = active ? ACTIVE : OTHER;
            context.lineCap = many ? 'butt' : 'round';
            context.lineJoin = many ? 'bevel' : 'round';
            const lost = (at) => route.linkOf(at) === Route.Link.FIX_LOST;
            if (!many) this.stroke(context, CASING, width + 3, (at) => !lost(at));
            if (this.speedColours.visible && route.data !== null) {
                const present = new Set();
                for (let n = 0; n < this.lines.count; n += 1) present.add(route.speedClassOf(this.lines.at[n]));
                for (const speedClass of present) {
                    this.stroke(context, this.speedColours.colourOf(speedClass) || plain, width,
                        (at) => route.speedClassOf(at) === speedClass && !lost(at));
                }
            } else {
                this.stroke(context, plain, width, (at) => !lost(at));
            }
            context.setLineDash([3, 5]);
            this.stroke(context, FIX_LOST, 1.5, lost);
            context.setLineDash([]);
        }

        stroke(context, style, width, wanted) {
            const { ax, ay, bx, by, at, joined, count } = this.lines;
            context.strokeStyle = style;
            context.lineWidth = width;
            let length = 0;
            let last = -1;
            for (let n = 0; n < count; n += 1) {
                if (!wanted(at[n])) continue;
                if (length === 0) context.beginPath();
                if (length === 0 || joined[n] === 0 || last !== n - 1) context.moveTo(ax[n], ay[n]);
                context.lineTo(bx[n], by[n]);
                last = n;
                length += 1;
                if (length === STROKE_LENGTH) {
                    context.stroke();
                    length = 0;
                }
            }
            if (length > 0) context.stroke();
        }

        paintSigns(context, view, route, shift, active) {
            const colour = active ? ACTIVE : OTHER;
            const plain = !active && this.table.shown.size > MANY_ROUTES;
            if (!plain) this.paintArrows(context);
            const ends = RoutePainter.ends(route);
            const at = ([x, y]) => [x * view.scale + shift, y * view.scale + view.top];
            const [sx, sy] = at(ends.start);
            const [ex, ey] = at(ends.end);
            this.paintMark(context, ex, ey, colour, plain ? 2 : 5);
            if (!plain) context.fillRect(ex - 2, ey - 2, 4, 4);
            this.paintMark(context, sx, sy, plain ? ARROW : colour, plain ? 2 : 5);
            if (plain) return;
            context.fillStyle = ARROW;
            context.beginPath();
            context.arc(sx, sy, 2, 0, 2 * Math.PI);
            context.fill();
        }

        paintMark(context, x, y, colour, radius) {
            context.beginPath();
            context.arc(x, y, radius, 0, 2 * Math.PI);
            context.fillStyle = CASING;
            context.fill();
            context.lineWidth = radius;
            context.strokeStyle = CASING;
            context.stroke();
            context.lineWidth = 2;
            context.strokeStyle = colour;
            context.stroke();
            context.fillStyle = colour;
        }

        paintArrows(context) {
            const { ax, ay, bx, by, joined, count } = this.lines;
            let travelled = ARROW_SPACING / 2;
            context.fillStyle = ARROW;
            context.strokeStyle = CASING;
            context.lineWidth = 1;
            for (let n = 0; n < count; n += 1) {
                const length = Math.hypot(bx[n] - ax[n], by[n] - ay[n]);
                if (joined[n] === 0) travelled = Math.min(travelled, ARROW_SPACING / 2);
                travelled += length;
                if (travelled < ARROW_SPACING || length < 1) continue;
                travelled = 0;
                const dx = (bx[n] - ax[n]) / length;
                const dy = (by[n] - ay[n]) / length;
                const x = (ax[n] + bx[n]) / 2;
                const y = (ay[n] + by[n]) / 2;
                context.beginPath();
                context.moveTo(x + 5 * dx, y + 5 * dy);
                context.lineTo(x - 4 * dx - 4 * dy, y - 4 * dy + 4 * dx);
                context.lineTo(x - 2 * dx, y - 2 * dy);
                context.lineTo(x - 4 * dx + 4 * dy, y - 4 * dy - 4 * dx);
                context.closePath();
                context.fill();
                context.stroke();
            }
        }

        // First and last known place in units, the last one run on past the date line.
        static ends(route) {
            const first = route.flags.findIndex((flags, i) => i < route.count && !route.isUnknown(i));
            const startChunk = route.chunks[Math.floor(first / Route.CHUNK)];
            let x = startChunk.start;
            for (let i = startChunk.first + 1; i <= first; i += 1) x += (route.mx[i] - route.mx[i - 1]) | 0;
            return { start: [x, route.my[first]], end: [route.unwrapped, route.my[route.count - 1]] };
        }
    }

    velmorantMap.RoutePainter = RoutePainter;
})(window.velmorantMap);
