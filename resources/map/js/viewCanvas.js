'use strict';
// A canvas under the map's control: it reaches half a view beyond each edge, moves and grows with
// the map as long as that suffices, and is painted again once per animation frame at most.
(function (velmorantMap) {
    const { mercator } = velmorantMap;

    // painter(context, view) paints on a cleared canvas. view turns mercator units into pixels:
    //   px = x * scale + left (+ any multiple of world), py = y * scale + top
    // with width and height of the canvas, and latitude/longitude bounds are the painter's concern.
    const ViewCanvas = L.Renderer.extend({
        options: { padding: 0.5 },

        initialize(painter, options) {
            this.painter = painter;
            this.view = null;
            L.Renderer.prototype.initialize.call(this, options);
        },

        getEvents() {
            const events = L.Renderer.prototype.getEvents.call(this);
            events.move = this.onMove;
            return events;
        },

        _initContainer() {
            this._container = document.createElement('canvas');
            this._container.setAttribute('aria-hidden', 'true');
            this.context = this._container.getContext('2d');
        },

        _destroyContainer() {
            cancelAnimationFrame(this.frame);
            this.frame = 0;
            this._container.remove();
            delete this._container;
            this.context = null;
        },

        _updatePaths() {},

        _update() {
            if (this._map._animatingZoom && this._bounds) return;
            L.Renderer.prototype._update.call(this);
            const size = this._bounds.getSize();
            const ratio = window.devicePixelRatio || 1;
            const width = Math.round(size.x * ratio);
            const height = Math.round(size.y * ratio);
            if (this._container.width !== width || this._container.height !== height) {
                this._container.width = width;
                this._container.height = height;
                this._container.style.width = `${size.x}px`;
                this._container.style.height = `${size.y}px`;
            }
            L.DomUtil.setPosition(this._container, this._bounds.min);
            const zoom = this._map.getZoom();
            const origin = this._map.getPixelOrigin().add(this._bounds.min);
            const half = 128 * Math.pow(2, zoom);
            this.view = {
                zoom, width: size.x, height: size.y, ratio,
                scale: mercator.scale(zoom), left: half - origin.x, top: half - origin.y,
                world: 2 * half,
            };
            this.paint();
        },

        paint() {
            const { context, view } = this;
            if (context === null || view === null) return;
            cancelAnimationFrame(this.frame);
            this.frame = 0;
            context.setTransform(view.ratio, 0, 0, view.ratio, 0, 0);
            context.clearRect(0, 0, view.width, view.height);
            this.painter(context, view);
        },

        // Paints in the next animation frame, however often it is asked for.
        refresh() {
            if (this.frame || this.context === null || this.view === null) return;
            this.frame = requestAnimationFrame(() => {
                this.frame = 0;
                if (this.context !== null && !this._map._animatingZoom) this.paint();
            });
        },

        onMove() {
            if (!this._bounds || this._map._animatingZoom || this.moveFrame) return;
            const { min } = this._map.getPixelBounds();
            const corner = min.subtract(this._map.getPixelOrigin());
            const view = L.bounds(corner, corner.add(this._map.getSize()));
            if (this._bounds.contains(view)) return;
            this.moveFrame = requestAnimationFrame(() => {
                this.moveFrame = 0;
                if (this.context !== null) this._update();
            });
        },
    });

    velmorantMap.ViewCanvas = ViewCanvas;
})(window.velmorantMap);
