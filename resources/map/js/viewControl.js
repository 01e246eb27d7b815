'use strict';
// Where the map looks: it shows all routes as they come until the user looks elsewhere, and keeps
// the car in view while "follow" is on.
(function (velmorantMap) {
    const { mercator } = velmorantMap;
    const FIT_DELAY_MS = 250;
    // Of the time while routes stream in, a fiftieth may go into looking at them from a new place.
    const COST_SHARE = 50;
    const FIT_ZOOM = 17;
    const USER_PAUSE_MS = 8000;
    // The car is kept a little less far from the edges than routes are shown, so that following does
    // not undo the fit.
    const CAR_SLACK = 8;

    class ViewControl {
        // pictureCost() tells how long a new picture of the routes takes, in milliseconds.
        constructor(map, table, follow, pictureCost) {
            this.map = map;
            this.table = table;
            this.follow = follow;
            this.pictureCost = pictureCost;
            this.automatic = true;
            this.timer = 0;
            this.touched = -Infinity;
            this.moving = false;
            map.on('dragstart', () => this.userMoved());
            const container = map.getContainer();
            container.addEventListener('wheel', () => this.userMoved(), { passive: true });
            container.addEventListener('keydown', (event) => {
                if (/^(Arrow|[-+=]$)/.test(event.key)) this.userMoved();
            });
            container.addEventListener('dblclick', () => this.userMoved());
            map.on('moveend', () => { this.moving = false; });
        }

        userMoved() {
            this.automatic = false;
            this.touched = performance.now();
        }

        routesChanged() {
            if (this.table.shown.size === 0) this.automatic = true;
            if (!this.automatic || this.timer !== 0) return;
            this.timer = setTimeout(() => {
                this.timer = 0;
                if (this.automatic) this.fit([...this.table.shown.values()]);
            }, Math.max(FIT_DELAY_MS, COST_SHARE * this.pictureCost()));
        }

        fitAll() {
            this.automatic = true;
            this.fit([...this.table.shown.values()]);
        }

        fitActive() {
            this.automatic = false;
            if (this.table.active !== null) this.fit([this.table.active]);
        }

        fitRecording(number) {
            const route = [...this.table.shown.values()].find((one) => Number(one.number) === number);
            if (route === undefined) return;
            this.automatic = false;
            this.fit([route]);
        }

        fit(routes) {
            const placed = routes.filter((route) => !route.isEmpty());
            if (placed.length === 0) return;
            const box = { left: Infinity, right: -Infinity, top: Infinity, bottom: -Infinity };
            const first = placed[0].bounds;
            for (const { bounds } of placed) {
                // The copy of the world nearest to the first route, for routes at the date line.
                const shift = Math.round((first.left - bounds.left) / mercator.WORLD) * mercator.WORLD;
                box.left = Math.min(box.left, bounds.left + shift);
                box.right = Math.max(box.right, bounds.right + shift);
                box.top = Math.min(box.top, bounds.top);
                box.bottom = Math.max(box.bottom, bounds.bottom);
            }
            const corner = (x, y) => [mercator.latitude(y), mercator.longitude(x)];
            const bounds = L.latLngBounds(corner(box.left, box.bottom), corner(box.right, box.top));
            const { left, right, top, bottom } = velmorantMap.clearance(this.map.getSize());
            this.map.fitBounds(bounds, {
                paddingTopLeft: [left, top], paddingBottomRight: [right, bottom],
                maxZoom: FIT_ZOOM, animate: false,
            });
        }

        setFollow(on) {
            this.follow = on;
            this.touched = -Infinity;
        }

        // Pans only when the car nears the edge, so that the picture stands still most of the time; a
        // pan under way is left to its end, because one begun anew with every step of the car stutters.
        keepInView(latLng) {
            if (!this.follow || this.moving || performance.now() - this.touched < USER_PAUSE_MS) return;
            const size = this.map.getSize();
            const copy = Math.round((this.map.getCenter().lng - latLng.lng) / 360) * 360;
            const place = [latLng.lat, latLng.lng + copy];
            const point = this.map.latLngToContainerPoint(place);
            const { left, right, top, bottom } = velmorantMap.clearance(size);
            if (point.x > left - CAR_SLACK && point.x < size.x - right + CAR_SLACK &&
                point.y > top - CAR_SLACK && point.y < size.y - bottom + CAR_SLACK) return;
            const animate = size.contains(point);
            this.moving = animate;
            this.map.panTo(place, { animate, duration: 0.4 });
        }
    }

    velmorantMap.ViewControl = ViewControl;
})(window.velmorantMap);
