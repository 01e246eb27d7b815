'use strict';
// Under the pointer: which recording, when, how fast.
(function (velmorantMap) {
    const { mercator } = velmorantMap;
    const REACH_PIXELS = 10;
    // The buttons at the right edge stay free.
    const BUTTONS = 46;

    function two(value) {
        return String(value).padStart(2, '0');
    }

    // The moment as the program writes it: year/month/day, then the time of day.
    function clockText(milliseconds) {
        const time = new Date(milliseconds);
        const date = `${time.getUTCFullYear()}/${time.getUTCMonth() + 1}/${time.getUTCDate()}`;
        const clock = [time.getUTCHours(), time.getUTCMinutes(), time.getUTCSeconds()].map(two).join(':');
        return `${date} ${clock}`;
    }

    class Hover {
        // wanted(route) is called for a route whose data are not known yet.
        constructor(map, table, texts, speedColours, wanted) {
            Object.assign(this, { map, table, texts, speedColours, wanted });
            this.frame = 0;
            this.event = null;
            this.box = document.createElement('div');
            this.box.id = 'hover';
            this.box.hidden = true;
            this.dot = document.createElement('div');
            this.dot.id = 'hover-dot';
            this.dot.hidden = true;
            map.getContainer().append(this.dot, this.box);
            map.on('mousemove', (event) => this.moved(event));
            map.on('mouseout dragstart zoomstart movestart resize', () => this.hide());
        }

        moved(event) {
            this.event = event;
            if (this.frame === 0) this.frame = requestAnimationFrame(() => this.look());
        }

        hide() {
            cancelAnimationFrame(this.frame);
            this.frame = 0;
            this.box.hidden = true;
            this.dot.hidden = true;
            this.map.getContainer().classList.remove('over-route');
        }

        look() {
            this.frame = 0;
            const { lat, lng } = this.event.latlng;
            const x = (lng / 360) * mercator.WORLD;
            const [near] = velmorantMap.nearestSegments(
                this.table, x, mercator.y(lat), this.map.getZoom(), REACH_PIXELS);
            if (near === undefined) {
                this.hide();
                return;
            }
            const { route } = near;
            const i = near.along > 0.5 ? near.i + 1 : near.i;
            if (route.data === null) this.wanted(route);
            this.show(route, i, this.event.containerPoint, lng);
        }

        lines(route, i) {
            const { data } = route;
            if (data === null || i >= data.count) {
                return [`${this.texts.get('recording')} ${route.number}`];
            }
            const kind = this.texts.get(data.locked ? 'locked' : 'normal');
            const name = data.name || `${this.texts.get('recording')} ${route.number}`;
            const seconds = data.second[i];
            const into = `${two(Math.floor(seconds / 60))}:${two(((seconds % 60) + 60) % 60)}`;
            const clock = clockText(data.start + 1000 * seconds);
            const when = Number.isNaN(data.start) || data.timeBase === 'none' ? into
                : `${clock} ${this.texts.get(data.timeBase)} (${into})`;
            const speed = route.hasFix(i) ? this.speedColours.speedText(data.speed[i])
                : this.texts.get('fixLost');
            return [`${name} · ${kind}`, when, speed];
        }

        show(route, i, pointer, longitude) {
            this.box.textContent = '';
            for (const line of this.lines(route, i)) {
                const element = document.createElement('div');
                element.textContent = line;
                this.box.appendChild(element);
            }
            this.box.hidden = false;
            this.dot.hidden = false;
            const place = mercator.longitude(route.mx[i]);
            const copy = Math.round((longitude - place) / 360) * 360;
            const at = this.map.latLngToContainerPoint([mercator.latitude(route.my[i]), place + copy]);
            this.dot.style.transform = `translate(${at.x - 6}px, ${at.y - 6}px)`;
            const size = this.map.getSize();
            const { offsetWidth: width, offsetHeight: height } = this.box;
            const left = Math.max(4, Math.min(pointer.x + 14, size.x - width - BUTTONS));
            const above = pointer.y - height - 12;
            const top = above >= 4 ? above : Math.min(pointer.y + 18, size.y - height - 4);
            this.box.style.transform = `translate(${Math.round(left)}px, ${Math.round(top)}px)`;
            this.map.getContainer().classList.add('over-route');
        }
    }

    Hover.clockText = clockText;
    velmorantMap.Hover = Hover;
})(window.velmorantMap);
