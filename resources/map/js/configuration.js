'use strict';
// What the serving program or the operator sets for the page: config.json, read at load and again
// at moments when it may have changed, as long as the first reading found it.
(function (velmorantMap) {
    const FILE = 'config.json';
    const SELDOM_MS = 2000;
    const NOTHING = Object.freeze({});

    class Configuration {
        // changed(values) is called with every reading that differs from the last.
        constructor(log, changed) {
            this.log = log;
            this.changed = changed;
            this.text = '';
            this.values = NOTHING;
            this.absent = false;
            this.lastRead = -Infinity;
        }

        read() {
            const now = performance.now();
            if (this.absent || now - this.lastRead < SELDOM_MS) return;
            this.lastRead = now;
            velmorantMap.readJson(FILE, (answer) => this.take(answer));
        }

        // After a change of which the program tells.
        readNow() {
            this.lastRead = -Infinity;
            this.read();
        }

        take(answer) {
            const good = answer !== null && typeof answer === 'object' && !Array.isArray(answer);
            if (!good) {
                if (this.text === '') this.absent = true;
                if (answer !== null) this.log.add(`${FILE} is no object`);
                return;
            }
            const text = JSON.stringify(answer);
            if (text === this.text) return;
            this.text = text;
            this.values = answer;
            this.changed(answer);
        }

        answers(command) {
            const { commands } = this.values;
            return Array.isArray(commands) && commands.includes(command);
        }

        // The provider of street tiles in a safe form, or null: {maxZoom, attribution, link or null}.
        tiles() {
            const { tiles } = this.values;
            if (tiles === null || typeof tiles !== 'object') return null;
            const zoom = Number.isInteger(tiles.maxZoom) ? Math.max(1, Math.min(22, tiles.maxZoom)) : 19;
            const link = typeof tiles.link === 'string' && /^https?:\/\//i.test(tiles.link) ? tiles.link : null;
            const attribution = typeof tiles.attribution === 'string' ? tiles.attribution : '';
            return { maxZoom: zoom, attribution, link };
        }
    }

    velmorantMap.Configuration = Configuration;
})(window.velmorantMap);
