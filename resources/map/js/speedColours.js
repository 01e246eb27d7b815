'use strict';
// Speeds as colours that grow lighter with the speed, so that they differ without colour sight too;
// yellow is left to the car. The steps are round numbers of the unit shown.
(function (velmorantMap) {
    const COLOURS = ['#7F86FF', '#3FA3F5', '#2CC4AE', '#93DD77', '#F6F1CF'];
    const STEPS_KILOMETRES = [20, 40, 60, 90];
    const STEPS_OTHER = [10, 25, 40, 55];

    class SpeedColours {
        constructor(root, visible) {
            this.visible = visible;
            this.factor = 1;
            this.label = 'km/h';
            this.legend = document.createElement('div');
            this.legend.id = 'legend';
            this.legend.setAttribute('role', 'img');
            this.legend.hidden = true;
            root.appendChild(this.legend);
        }

        // True when the unit is another one, and routes have to be judged again.
        use(unit) {
            const good = unit && Number.isFinite(unit.factor) && unit.factor > 0;
            const factor = good ? unit.factor : 1;
            const label = good && typeof unit.label === 'string' ? unit.label : 'km/h';
            const other = factor !== this.factor || label !== this.label;
            this.factor = factor;
            this.label = label;
            return other;
        }

        steps() {
            return this.factor === 1 ? STEPS_KILOMETRES : STEPS_OTHER;
        }

        // 1 (slow) to 5 (fast).
        classOf(kilometres) {
            const speed = kilometres * this.factor;
            return 1 + this.steps().filter((step) => speed >= step).length;
        }

        colourOf(speedClass) {
            return COLOURS[speedClass - 1];
        }

        speedText(kilometres) {
            return `${(kilometres * this.factor).toFixed(1)} ${this.label}`;
        }

        // shown: whether a route with speeds is on the map.
        showLegend(shown, title) {
            this.legend.hidden = !(shown && this.visible);
            const bounds = [`<${this.steps()[0]}`, ...this.steps().map((step) => `${step}+`)];
            this.legend.setAttribute('aria-label', `${title}, ${this.label}: ${bounds.join(', ')}`);
            this.legend.textContent = '';
            bounds.forEach((bound, i) => {
                const item = document.createElement('span');
                const swatch = document.createElement('i');
                swatch.style.background = COLOURS[i];
                item.append(swatch, bound);
                this.legend.appendChild(item);
            });
            this.legend.append(this.label);
        }
    }

    velmorantMap.SpeedColours = SpeedColours;
})(window.velmorantMap);
