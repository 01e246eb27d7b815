'use strict';
// The panel of switches for what the map shows; each is remembered.
(function (velmorantMap) {
    const { Controls, preferences } = velmorantMap;

    class LayersPanel {
        // group: where the button stands; switches: [name, initial, action(on)].
        constructor(controls, group, switches) {
            this.panel = controls.group('panel');
            this.panel.id = 'layers-panel';
            this.panel.hidden = true;
            this.boxes = new Map();
            this.button = controls.button(group, 'layers', () => this.open(this.panel.hidden));
            this.button.setAttribute('aria-controls', this.panel.id);
            this.open(false);
            for (const [name, initial, action] of switches) {
                this.boxes.set(name, controls.checkBox(this.panel, name, initial, (on) => {
                    preferences.set(name, on);
                    action(on);
                }));
            }
            this.panel.addEventListener('keydown', (event) => {
                if (event.key !== 'Escape') return;
                this.open(false);
                this.button.focus();
            });
        }

        open(on) {
            this.panel.hidden = !on;
            this.button.setAttribute('aria-expanded', String(on));
            Controls.press(this.button, on);
        }

        offer(name, possible) {
            this.boxes.get(name).parentElement.hidden = !possible;
        }
    }

    velmorantMap.LayersPanel = LayersPanel;
})(window.velmorantMap);
