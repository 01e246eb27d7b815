'use strict';
// Lines of latitude and longitude at round degrees, with their figures at the view's edges: at
// street zoom the base has nothing else to show where one is. The lines lie in the base, under its
// names; over street tiles, which hide the base, faint ones are drawn with the figures.
(function (velmorantMap) {
    const { mercator } = velmorantMap;
    const LINE = '#2A3643';
    const LINE_OVER_TILES = 'rgba(42, 54, 67, .3)';
    const FIGURE = '#8E9BAA';
    const FIGURE_OVER_TILES = '#EAF0F6';
    const HALO = '#10171F';
    const FONT = '10px "DejaVu Sans", sans-serif';
    const SPACING_PIXELS = 96;
    const STEPS = [30, 20, 10, 5, 2, 1, 0.5, 0.2, 0.1, 0.05, 0.02, 0.01,
        0.005, 0.002, 0.001, 0.0005, 0.0002, 0.0001];

    function stepFor(zoom) {
        const pixelsPerDegree = (256 * Math.pow(2, zoom)) / 360;
        return STEPS.filter((step) => step * pixelsPerDegree >= SPACING_PIXELS).pop() || STEPS[0];
    }

    function decimals(step) {
        return Math.max(0, Math.ceil(-Math.log10(step) - 1e-9));
    }

    function degreesText(value, step, positive, negative) {
        const digits = Math.abs(value).toFixed(decimals(step));
        const letter = Number(digits) % 180 === 0 ? '' : value > 0 ? positive : negative;
        return `${digits}°${letter}`;
    }

    class Graticule {
        constructor() {
            this.visible = true;
            this.overTiles = false;
        }

        // Into the base, beneath what comes after.
        paintLines(context, view) {
            if (!this.visible) return;
            context.beginPath();
            this.lines(context, view, []);
            context.lineWidth = 1;
            context.strokeStyle = LINE;
            context.stroke();
        }

        lines(context, view, figures) {
            const step = stepFor(view.zoom);
            this.meridians(context, view, view.frame, step, figures);
            this.parallels(context, view, view.frame, step, figures);
        }

        // A generator for a ViewCanvas; the figures stand at the edges of what is in sight.
        * paint(context, view) {
            if (!this.visible) return;
            const figures = [];
            context.beginPath();
            this.lines(context, view, figures);
            if (this.overTiles) {
                context.lineWidth = 1;
                context.strokeStyle = LINE_OVER_TILES;
                context.stroke();
            }
            yield figures.length;
            this.paintFigures(context, figures);
        }

        meridians(context, view, frame, step, figures) {
            const degree = view.world / 360;
            const zero = view.left;
            const first = Math.ceil(-zero / degree / step);
            const last = Math.floor((view.width - zero) / degree / step);
            for (let k = first; k <= last; k += 1) {
                const x = Math.round(zero + k * step * degree) + 0.5;
                context.moveTo(x, 0);
                context.lineTo(x, view.height);
                const longitude = ((((k * step + 180) % 360) + 360) % 360) - 180;
                if (x > frame.left + 76 && x < frame.right - 76) {
                    figures.push([degreesText(longitude, step, 'E', 'W'), x, frame.top + 8, 'center']);
                }
            }
        }

        parallels(context, view, frame, step, figures) {
            const latitudeAt = (pixel) => mercator.latitude((pixel - view.top) / view.scale);
            const highest = Math.min(85, latitudeAt(0));
            const lowest = Math.max(-85, latitudeAt(view.height));
            for (let k = Math.ceil(lowest / step); k * step <= highest; k += 1) {
                const y = Math.round(mercator.y(k * step) * view.scale + view.top) + 0.5;
                context.moveTo(0, y);
                context.lineTo(view.width, y);
                if (y > frame.top + 84 && y < frame.bottom - 60) {
                    figures.push([degreesText(k * step, step, 'N', 'S'), frame.left + 4, y, 'left']);
                }
            }
        }

        paintFigures(context, figures) {
            context.font = FONT;
            context.textBaseline = 'middle';
            context.lineJoin = 'round';
            context.lineWidth = 3;
            context.strokeStyle = HALO;
            context.fillStyle = this.overTiles ? FIGURE_OVER_TILES : FIGURE;
            for (const [text, x, y, align] of figures) {
                context.textAlign = align;
                context.strokeText(text, x, y);
                context.fillText(text, x, y);
            }
        }
    }

    velmorantMap.Graticule = Graticule;
})(window.velmorantMap);
