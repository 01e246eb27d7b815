'use strict';
// The car: an arrow that turns with its heading, glides along the route from one place to the next,
// and gives way to a notice where its place is not known.
(function (velmorantMap) {
    const { Route, mercator } = velmorantMap;
    const LONGEST_GLIDE_MS = 1000;
    const USUAL_GLIDE_MS = 800;
    const GLIDED_PLACES = 5;
    // Less cannot be seen, and every picture of the page costs as much as several of the video.
    const SEEN_PIXELS = 1;
    const SEEN_DEGREES = 4;
    const PICTURE_MS = 1000 / 60;
    const ARROW = '<svg viewBox="-15 -15 30 30" width="30" height="30" aria-hidden="true">' +
        '<circle r="14.5" fill="#FFFF00" fill-opacity=".2"/>' +
        '<path d="M0 -10.5L8.5 9.5 0 5.5 -8.5 9.5Z" fill="#FFFF00" stroke="#0B0F14" stroke-width="1.5"' +
        ' stroke-linejoin="round"/></svg>';

    function turn(from, to) {
        return ((((to - from) % 360) + 540) % 360) - 180;
    }

    // "longitude|latitude|index|angle", or null when a part is no number or out of range.
    function readCall(argument) {
        const parts = String(argument).split('|');
        if (parts.length !== 4 || parts.some((part) => part.trim() === '' || part.length > 32)) return null;
        const [longitude, latitude, index, angle] = parts.map(Number);
        const good = Math.abs(longitude) <= 180 && Math.abs(latitude) <= 90 &&
            Number.isInteger(index) && index >= 0 && Number.isFinite(angle);
        return good ? { longitude, latitude, index, angle } : null;
    }

    class Car {
        // onMove(latLng) is called whenever the shown place changes, onFix(whether) for every call.
        constructor(map, table, { onMove, onFix }) {
            this.map = map;
            this.table = table;
            this.onMove = onMove;
            this.onFix = onFix;
            this.gliding = true;
            this.reducedMotion = window.matchMedia('(prefers-reduced-motion: reduce)');
            this.at = null;
            this.angle = 0;
            this.frame = 0;
            this.pause = 0;
            const icon = L.divIcon({ className: 'car', html: ARROW, iconSize: [30, 30] });
            this.marker = L.marker([0, 0], { icon, interactive: false, keyboard: false, pane: 'car' });
        }

        move(call) {
            const route = this.table.find(call.index, call.longitude, call.latitude);
            if (route !== null) this.table.activate(route);
            const known = !(call.longitude === 0 && call.latitude === 0) &&
                (route === null || route.hasFix(call.index - 1));
            // Seconds of a route count from 1: a call without one says that nothing plays any more.
            const stopped = call.index === 0;
            this.onFix(known || stopped);
            if (!known) {
                this.hide();
                return;
            }
            const now = performance.now();
            const target = { ...call, route, time: now };
            const from = this.at;
            if (from !== null && from.longitude === call.longitude && from.latitude === call.latitude &&
                from.angle === call.angle && from.route === route && from.index === call.index) return;
            this.at = target;
            if (from !== null && this.canGlide(from, target)) this.glide(from, target);
            else this.jump(target);
        }

        hide() {
            this.stop();
            this.at = null;
            this.marker.remove();
        }

        stop() {
            cancelAnimationFrame(this.frame);
            clearTimeout(this.pause);
            this.frame = 0;
            this.pause = 0;
        }

        // Only along one route, a few places on, and never over a stretch that was not driven as drawn.
        canGlide(from, to) {
            if (!this.gliding || this.reducedMotion.matches || document.hidden) return false;
            if (to.route === null || to.route !== from.route || !this.marker._map) return false;
            const places = to.index - from.index;
            if (places < 1 || places > GLIDED_PLACES) return false;
            for (let i = from.index; i < to.index; i += 1) {
                if (!to.route.hasFix(i) || to.route.linkOf(i) !== Route.Link.JOINED) return false;
            }
            return true;
        }

        jump(target) {
            this.stop();
            this.place(mercator.x(target.longitude), mercator.y(target.latitude), target.angle);
            this.onMove(this.marker.getLatLng());
        }

        glide(from, to) {
            this.stop();
            const { route } = to;
            const first = from.index - 1;
            const places = to.index - from.index;
            const usual = Math.min(LONGEST_GLIDE_MS, to.time - from.time);
            const duration = usual < 100 ? USUAL_GLIDE_MS : usual;
            const start = this.angle;
            const turned = turn(start, to.angle);
            const pause = duration / this.picturesBetween(from, to, turned);
            const draw = () => { this.frame = requestAnimationFrame(step); };
            const step = (time) => {
                const done = Math.min(1, Math.max(0, (time - to.time) / duration));
                const along = Math.min(places * done, places - 1e-9);
                const i = first + Math.floor(along);
                const part = done === 1 ? 1 : along - Math.floor(along);
                const x = route.mx[i] + part * ((route.mx[i + 1] - route.mx[i]) | 0);
                const y = route.my[i] + part * (route.my[i + 1] - route.my[i]);
                this.place(x, y, start + turned * Math.min(1, 2 * done));
                this.frame = 0;
                if (done === 1) return;
                if (pause > 2 * PICTURE_MS) this.pause = setTimeout(draw, pause);
                else draw();
            };
            draw();
            this.onMove(L.latLng(to.latitude, to.longitude));
        }

        // How many pictures of a glide differ so much that it is seen.
        picturesBetween(from, to, turned) {
            const start = this.map.latLngToContainerPoint([from.latitude, from.longitude]);
            const end = this.map.latLngToContainerPoint([to.latitude, to.longitude]);
            return Math.max(1, start.distanceTo(end) / SEEN_PIXELS, Math.abs(turned) / SEEN_DEGREES);
        }

        // The copy of the world that the view shows is the one that gets the car.
        place(x, y, angle) {
            this.angle = angle;
            const centre = this.map.getCenter().lng;
            const longitude = mercator.longitude(x);
            const copy = Math.round((centre - longitude) / 360) * 360;
            this.marker.setLatLng([mercator.latitude(y), longitude + copy]);
            if (!this.marker._map) this.marker.addTo(this.map);
            this.marker.getElement().firstChild.style.transform = `rotate(${angle}deg)`;
        }
    }

    Car.readCall = readCall;
    velmorantMap.Car = Car;
})(window.velmorantMap);
