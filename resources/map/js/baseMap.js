'use strict';
// Paints the packaged world: land, coasts, borders, grid and names, sharp at every zoom level.
(function (velmorantMap) {
    const { mercator } = velmorantMap;
    const LAND = '#18212B';
    const COAST = '#4A5A6B';
    const BORDER = '#3A4857';
    const COUNTRY_NAME = '#A8B5C3';
    const CITY_NAME = '#C3CDD8';
    const HALO = '#10171F';
    const FONT = '11px "DejaVu Sans", "WenQuanYi Micro Hei", sans-serif';
    const CITY_ZOOM = 4;
    const CITY_ZOOM_ALL = 6;
    const FINEST_OUTLINE_ZOOM = 14;

    // World copies whose stretch [left, right] shows in the view, as pixel shifts.
    function copies(view, left, right) {
        const shifts = [];
        const first = Math.ceil((-view.left - right * view.scale) / view.world);
        const last = Math.floor((view.width - view.left - left * view.scale) / view.world);
        for (let k = first; k <= last; k += 1) shifts.push(view.left + k * view.world);
        return shifts;
    }

    function inHeight(view, shape) {
        return shape.bottom * view.scale + view.top >= 0 &&
            shape.top * view.scale + view.top <= view.height;
    }

    // Which sides of the view a pixel lies beyond, with some room for the line's width.
    function sides(view, x, y) {
        return (x < -8 ? 1 : x > view.width + 8 ? 2 : 0) |
            (y < -8 ? 4 : y > view.height + 8 ? 8 : 0);
    }

    // Adds an outline to the path and returns the number of its lines. Places nearer than a pixel to
    // the last one are left out, and of a run beyond one side of the view only the ends are kept.
    function trace(context, view, line, shift) {
        const { scale, top } = view;
        let lastX = line.x[0] * scale + shift;
        let lastY = line.y[0] * scale + top;
        let lastSides = sides(view, lastX, lastY);
        let skipped = false;
        let heldX = 0;
        let heldY = 0;
        let count = 0;
        context.moveTo(lastX, lastY);
        for (let i = 1; i < line.x.length; i += 1) {
            const x = line.x[i] * scale + shift;
            const y = line.y[i] * scale + top;
            const beyond = sides(view, x, y);
            const near = Math.abs(x - lastX) < 1 && Math.abs(y - lastY) < 1;
            if ((beyond & lastSides) !== 0 || (near && i + 1 < line.x.length)) {
                skipped = true;
                heldX = x;
                heldY = y;
                if ((beyond & lastSides) !== 0) lastSides &= beyond;
                continue;
            }
            if (skipped) context.lineTo(heldX, heldY);
            context.lineTo(x, y);
            count += 1;
            skipped = false;
            lastX = x;
            lastY = y;
            lastSides = beyond;
        }
        if (skipped) context.lineTo(heldX, heldY);
        return count;
    }

    function traceAll(context, view, lines) {
        let count = 0;
        context.beginPath();
        for (const line of lines) {
            if (!inHeight(view, line)) continue;
            for (const shift of copies(view, line.left, line.right)) {
                count += trace(context, view, line, shift);
            }
        }
        return count;
    }

    class BaseMap {
        // underNames(context, view) paints between the land and its names.
        constructor(texts, underNames) {
            this.texts = texts;
            this.underNames = underNames;
            this.world = null;
            this.showNames = true;
        }

        // A generator for a ViewCanvas.
        * paint(context, view) {
            if (this.world === null) {
                this.underNames(context, view);
                return;
            }
            context.lineJoin = 'bevel';
            yield traceAll(context, view, this.world.land);
            context.fillStyle = LAND;
            context.fill();
            if (view.zoom <= FINEST_OUTLINE_ZOOM) {
                context.lineWidth = 1;
                context.strokeStyle = BORDER;
                yield traceAll(context, view, this.world.borders);
                context.stroke();
                context.strokeStyle = COAST;
                yield traceAll(context, view, this.world.coast);
                context.stroke();
            }
            this.underNames(context, view);
            this.paintNames(context, view);
        }

        // Names, larger countries first, none over another.
        paintNames(context, view) {
            if (this.world === null || !this.showNames) return;
            context.font = FONT;
            context.textBaseline = 'middle';
            context.lineJoin = 'round';
            context.lineWidth = 3;
            context.strokeStyle = HALO;
            const taken = [];
            if (view.zoom >= CITY_ZOOM) this.paintCities(context, view, taken);
            context.fillStyle = COUNTRY_NAME;
            context.textAlign = 'center';
            for (const country of this.world.names) {
                const text = this.countryName(country);
                const width = context.measureText(text).width;
                if (country.width * view.scale < width * 0.8) continue;
                for (const shift of copies(view, country.x, country.x)) {
                    const x = country.x * view.scale + shift;
                    const y = country.y * view.scale + view.top;
                    if (this.claim(taken, x - width / 2, y - 8, width, 16)) {
                        context.strokeText(text, x, y);
                        context.fillText(text, x, y);
                    }
                }
            }
        }

        paintCities(context, view, taken) {
            context.textAlign = 'left';
            context.fillStyle = CITY_NAME;
            for (const city of this.world.cities) {
                const y = city.y * view.scale + view.top;
                if (y < 0 || y > view.height) continue;
                const text = this.texts.chinese && city.chinese ? city.chinese : city.english;
                for (const shift of copies(view, city.x, city.x)) {
                    const x = city.x * view.scale + shift;
                    const width = context.measureText(text).width;
                    const room = view.zoom < CITY_ZOOM_ALL ? 12 : 2;
                    if (!this.claim(taken, x - 3, y - 7, width + 10, 14, room)) continue;
                    context.strokeText(text, x + 6, y);
                    context.fillText(text, x + 6, y);
                    context.beginPath();
                    context.arc(x, y, 2, 0, 2 * Math.PI);
                    context.fill();
                }
            }
        }

        countryName(country) {
            return (this.texts.chinese && this.world.countries[country.id]) || country.name;
        }

        // Takes a rectangle of the view unless another name has some of it or of the room around.
        claim(taken, x, y, width, height, room = 2) {
            for (const other of taken) {
                if (x - room < other.right && x + width + room > other.left &&
                    y - room < other.bottom && y + height + room > other.top) return false;
            }
            taken.push({ left: x, right: x + width, top: y, bottom: y + height });
            return true;
        }
    }

    BaseMap.copies = copies;
    velmorantMap.BaseMap = BaseMap;
})(window.velmorantMap);
