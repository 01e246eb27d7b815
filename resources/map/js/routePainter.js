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
    const PATH_LENGTH = 400;
    const ARROW_SPACING = 90;
    const MARGIN = 12;

    // A run of pixels gathered for one stroke style; flushed piecewise.
    class Pen {
        constructor(context) {
            this.context = context;
            this.length = 0;
        }

        begin(style, width, dash) {
            this.context.strokeStyle = style;
            this.context.lineWidth = width;
            this.context.setLineDash(dash);
            this.context.beginPath();
            this.length = 0;
        }

        line(ax, ay, bx, by, joined) {
            if (!joined || this.length === 0) this.context.moveTo(ax, ay);
            this.context.lineTo(bx, by);
            this.length += 1;
            if (this.length >= PATH_LENGTH) this.flush();
        }

        flush() {
            if (this.length > 0) {
                this.context.stroke();
                this.context.beginPath();
            }
            this.length = 0;
        }
    }

    // Calls visit(ax, ay, bx, by, i, joined) for the pixel lines of a route that are in view, each
    // ending at place i; joined says that it goes on where the last one ended.
    function eachLine(route, view, from, shift, visit) {
        const { scale, top } = view;
        const right = view.width + MARGIN;
        const bottom = view.height + MARGIN;
        for (let c = Math.max(0, Math.floor((from - 1) / Route.CHUNK)); c < route.chunks.length; c += 1) {
            const chunk = route.chunks[c];
            if (chunk.left * scale + shift > right || chunk.right * scale + shift < -MARGIN ||
                chunk.top * scale + top > bottom || chunk.bottom * scale + top < -MARGIN) continue;
            const end = route.chunkEnd(chunk);
            const wide = (chunk.right - chunk.left) * scale;
            const high = (chunk.bottom - chunk.top) * scale;
            if (wide < 1 && high < 1 && end - 1 > chunk.first && chunk.first >= from) {
                const x = chunk.left * scale + shift;
                const y = chunk.top * scale + top;
                visit(x, y, x + wide, y + high, end - 1, false);
                continue;
            }
            let unwrapped = chunk.start;
            let ax = unwrapped * scale + shift;
            let ay = route.my[chunk.first] * scale + top;
            let joined = false;
            for (let i = chunk.first + 1; i < end; i += 1) {
                unwrapped += (route.mx[i] - route.mx[i - 1]) | 0;
                const bx = unwrapped * scale + shift;
                const by = route.my[i] * scale + top;
                const link = route.linkOf(i);
                const near = Math.abs(bx - ax) < 1 && Math.abs(by - ay) < 1;
                if (link === Route.Link.APART || i < from) {
                    ax = bx;
                    ay = by;
                    joined = false;
                } else if (!near || i === end - 1 || link === Route.Link.FIX_LOST) {
                    visit(ax, ay, bx, by, i, joined);
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
            this.painted = new Map();
        }

        paint(context, view) {
            this.painted.clear();
            context.lineCap = 'round';
            context.lineJoin = 'round';
            const { active } = this.table;
            for (const route of this.table.shown.values()) {
                if (route !== active) this.paintRoute(context, view, route, 0);
            }
            if (active !== null) this.paintRoute(context, view, active, 0);
        }

        // Adds what came since the last painting of the growing route to the painted canvas.
        paintGrowth(context, view) {
            const route = this.table.growing;
            if (route === null || view === null) return;
            context.lineCap = 'round';
            context.lineJoin = 'round';
            this.paintRoute(context, view, route, this.painted.get(route) || 0);
        }

        paintRoute(context, view, route, from) {
            this.painted.set(route, route.count);
            if (route.isEmpty()) return;
            const { bounds } = route;
            const active = route === this.table.active;
            for (const shift of BaseMap.copies(view, bounds.left, bounds.right)) {
                this.paintLines(context, view, route, from, shift, active);
                if (route.complete) this.paintSigns(context, view, route, shift, active);
            }
        }

        paintLines(context, view, route, from, shift, active) {
            const pen = new Pen(context);
            const width = active ? 4 : 3;
            const lost = [];
            pen.begin(CASING, width + 3, []);
            eachLine(route, view, from, shift, (ax, ay, bx, by, i, joined) => {
                if (route.linkOf(i) === Route.Link.FIX_LOST) lost.push([ax, ay, bx, by]);
                else pen.line(ax, ay, bx, by, joined);
            });
            pen.flush();
            this.paintColours(pen, view, route, from, shift, active ? ACTIVE : OTHER, width);
            pen.begin(FIX_LOST, 1.5, [3, 5]);
            for (const [ax, ay, bx, by] of lost) pen.line(ax, ay, bx, by, false);
            pen.flush();
            context.setLineDash([]);
        }

        paintColours(pen, view, route, from, shift, plain, width) {
            const coloured = this.speedColours.visible && route.data !== null;
            let colour = plain;
            pen.begin(colour, width, []);
            eachLine(route, view, from, shift, (ax, ay, bx, by, i, joined) => {
                if (route.linkOf(i) === Route.Link.FIX_LOST) return;
                const wanted = coloured ? this.speedColours.colourOf(route.speedClassOf(i)) || plain : plain;
                if (wanted !== colour) {
                    pen.flush();
                    colour = wanted;
                    pen.begin(colour, width, []);
                }
                pen.line(ax, ay, bx, by, joined);
            });
            pen.flush();
        }

        paintSigns(context, view, route, shift, active) {
            this.paintArrows(context, view, route, shift);
            const colour = active ? ACTIVE : OTHER;
            const ends = RoutePainter.ends(route);
            const at = ([x, y]) => [x * view.scale + shift, y * view.scale + view.top];
            const [sx, sy] = at(ends.start);
            const [ex, ey] = at(ends.end);
            this.paintMark(context, ex, ey, colour);
            context.fillRect(ex - 2, ey - 2, 4, 4);
            this.paintMark(context, sx, sy, colour);
            context.fillStyle = '#EAF0F6';
            context.beginPath();
            context.arc(sx, sy, 2, 0, 2 * Math.PI);
            context.fill();
        }

        paintMark(context, x, y, colour) {
            context.beginPath();
            context.arc(x, y, 5, 0, 2 * Math.PI);
            context.fillStyle = CASING;
            context.fill();
            context.lineWidth = 5;
            context.strokeStyle = CASING;
            context.stroke();
            context.lineWidth = 2;
            context.strokeStyle = colour;
            context.stroke();
            context.fillStyle = colour;
        }

        paintArrows(context, view, route, shift) {
            let travelled = ARROW_SPACING / 2;
            context.fillStyle = ARROW;
            context.strokeStyle = CASING;
            context.lineWidth = 1;
            eachLine(route, view, 0, shift, (ax, ay, bx, by, i, joined) => {
                const length = Math.hypot(bx - ax, by - ay);
                if (!joined) travelled = Math.min(travelled, ARROW_SPACING / 2);
                travelled += length;
                if (travelled < ARROW_SPACING || length < 1) return;
                travelled = 0;
                const dx = (bx - ax) / length;
                const dy = (by - ay) / length;
                const x = (ax + bx) / 2;
                const y = (ay + by) / 2;
                context.beginPath();
                context.moveTo(x + 5 * dx, y + 5 * dy);
                context.lineTo(x - 4 * dx - 4 * dy, y - 4 * dy + 4 * dx);
                context.lineTo(x - 2 * dx, y - 2 * dy);
                context.lineTo(x - 4 * dx + 4 * dy, y - 4 * dy - 4 * dx);
                context.closePath();
                context.fill();
                context.stroke();
            });
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
