'use strict';
// A picture of the map that reaches beyond the view and moves and grows with it. It is painted on a
// second canvas in slices, one per animation frame, and shown when it is complete: however much
// there is to paint, the map answers the user, and never shows half a picture.
(function (velmorantMap) {
    const { mercator } = velmorantMap;
    // Of the view's size, beyond each edge.
    const PADDING = 0.25;
    // Units of a slice: a unit is one line of a stroke, which costs a little less than a microsecond.
    const UNITS_PER_FRAME = 6000;
    const UNITS_AT_ONCE = 12000;

    class Buffer {
        constructor() {
            this.canvas = document.createElement('canvas');
            this.canvas.className = 'leaflet-zoom-animated leaflet-layer';
            this.canvas.setAttribute('aria-hidden', 'true');
            this.context = this.canvas.getContext('2d');
            this.view = null;
            this.painted = new Map();
        }

        // view turns mercator units into pixels of the canvas:
        //   px = x * scale + left (+ any multiple of world), py = y * scale + top
        // originX, originY: the canvas's corner in the world's pixels at that zoom.
        prepare(map, padding) {
            const size = map.getSize();
            const margin = size.multiplyBy(padding).round();
            const zoom = map.getZoom();
            const origin = map.getPixelBounds().min.round().subtract(margin);
            const half = 128 * Math.pow(2, zoom);
            const ratio = window.devicePixelRatio || 1;
            const width = size.x + 2 * margin.x;
            const height = size.y + 2 * margin.y;
            this.view = {
                zoom, width, height, ratio, originX: origin.x, originY: origin.y,
                scale: mercator.scale(zoom), left: half - origin.x, top: half - origin.y, world: 2 * half,
                frame: { left: margin.x, top: margin.y, right: margin.x + size.x, bottom: margin.y + size.y },
            };
            if (this.canvas.width !== Math.round(width * ratio) || this.canvas.height !== Math.round(height * ratio)) {
                this.canvas.width = Math.round(width * ratio);
                this.canvas.height = Math.round(height * ratio);
                this.canvas.style.width = `${width}px`;
                this.canvas.style.height = `${height}px`;
            }
            this.context.setTransform(ratio, 0, 0, ratio, 0, 0);
            this.context.clearRect(0, 0, width, height);
            this.painted.clear();
        }

        // Whether the map's view lies within the picture, by a share of its margin.
        covers(map, share) {
            if (this.view === null || this.view.zoom !== map.getZoom()) return false;
            const { view } = this;
            const corner = map.getPixelBounds().min;
            const x = corner.x - view.originX;
            const y = corner.y - view.originY;
            const spareX = view.frame.left * share;
            const spareY = view.frame.top * share;
            const size = map.getSize();
            return x >= spareX && y >= spareY && x + size.x <= view.width - spareX &&
                y + size.y <= view.height - spareY;
        }

        place(zoom, pixelOrigin) {
            if (this.view === null) return;
            const scale = Math.pow(2, zoom - this.view.zoom);
            const corner = L.point(this.view.originX, this.view.originY).multiplyBy(scale);
            L.DomUtil.setTransform(this.canvas, corner.subtract(pixelOrigin), scale);
        }
    }

    // painter(context, view, painted): a generator that paints on a cleared canvas and yields the
    // units that it has spent. painted is a map of its own for each picture. With the option "exact"
    // every new view gets its own picture.
    const ViewCanvas = L.Layer.extend({
        options: { padding: PADDING, exact: false },

        initialize(painter, options) {
            this.painter = painter;
            L.setOptions(this, options);
            this.front = new Buffer();
            this.back = new Buffer();
            this.work = null;
            this.stale = false;
            this.frameRequest = 0;
            this.begun = 0;
            // How long the last picture took from its first slice to its last, in milliseconds.
            this.duration = 0;
        },

        getEvents() {
            return {
                viewreset: this.settle, moveend: this.settle, zoomend: this.settle, resize: this.settle,
                move: this.follow, zoom: this.position, zoomanim: this.animate,
            };
        },

        onAdd() {
            this.getPane().appendChild(this.front.canvas);
            this.settle();
        },

        onRemove() {
            cancelAnimationFrame(this.frameRequest);
            this.frameRequest = 0;
            this.work = null;
            this.front.canvas.remove();
        },

        // Asks for a new picture, in the next frame.
        refresh() {
            this.stale = true;
            this.schedule();
        },

        // Paints the whole picture at once.
        paint() {
            this.start();
            this.advance(Infinity);
        },

        position() {
            this.front.place(this._map.getZoom(), this._map.getPixelOrigin());
        },

        animate(event) {
            this.front.place(event.zoom, this._map._getNewPixelOrigin(event.center, event.zoom));
        },

        follow() {
            if (!this._map._animatingZoom && !this.front.covers(this._map, 0)) this.want();
        },

        settle() {
            if (this._map._animatingZoom) return;
            this.position();
            if (this.options.exact || !this.front.covers(this._map, 0.5)) this.want();
        },

        // A picture under way is finished first unless it is of another zoom: while the view keeps
        // moving, late pictures are better than none.
        want() {
            if (this.work !== null && this.back.view.zoom === this._map.getZoom()) {
                this.stale = this.stale || !this.back.covers(this._map, 0);
                return;
            }
            this.start();
            this.advance(UNITS_AT_ONCE);
        },

        start() {
            this.stale = false;
            this.begun = performance.now();
            this.back.prepare(this._map, this.options.padding);
            this.work = this.painter(this.back.context, this.back.view, this.back.painted);
        },

        advance(units) {
            let spent = 0;
            while (spent < units) {
                const step = this.work.next();
                if (step.done) {
                    this.show();
                    break;
                }
                spent += step.value;
            }
            if (this.work !== null || this.stale) this.schedule();
        },

        schedule() {
            if (this.frameRequest !== 0 || !this._map) return;
            this.frameRequest = requestAnimationFrame(() => {
                this.frameRequest = 0;
                if (!this._map) return;
                if (this._map._animatingZoom) {
                    this.schedule();
                } else if (this.work !== null) {
                    this.advance(UNITS_PER_FRAME);
                } else if (this.stale) {
                    this.start();
                    this.advance(UNITS_PER_FRAME);
                }
            });
        },

        show() {
            this.work = null;
            this.duration = performance.now() - this.begun;
            const old = this.front;
            this.front = this.back;
            this.back = old;
            this.position();
            old.canvas.replaceWith(this.front.canvas);
            if (!this.front.covers(this._map, 0)) this.stale = true;
        },
    });

    velmorantMap.ViewCanvas = ViewCanvas;
})(window.velmorantMap);
