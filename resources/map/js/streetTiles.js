'use strict';
// Street tiles over the base map. They are asked of the serving side, which knows the provider; a
// tile that fails leaves the base in sight and is asked for again, at growing intervals.
(function (velmorantMap) {
    const ADDRESS = 'tile/{z}/{x}/{y}';
    const FIRST_PAUSE_MS = 4000;
    const LONGEST_PAUSE_MS = 60000;
    const SILENCE_MS = 5000;

    const RetryingTiles = L.TileLayer.extend({
        createTile(coords, done) {
            const tile = L.TileLayer.prototype.createTile.call(this, coords, done);
            tile.failures = 0;
            tile.retry = 0;
            tile.removeAttribute('alt');
            tile.setAttribute('role', 'presentation');
            return tile;
        },

        _tileOnError(done, tile, error) {
            tile.failures += 1;
            const pause = Math.min(LONGEST_PAUSE_MS, FIRST_PAUSE_MS * Math.pow(2, tile.failures - 1));
            clearTimeout(tile.retry);
            tile.retry = setTimeout(() => this.askAgain(tile), pause);
            done(error, tile);
        },

        askAgain(tile) {
            clearTimeout(tile.retry);
            tile.retry = 0;
            const wanted = Object.values(this._tiles).some((other) => other.el === tile);
            if (!wanted || !this._map) return;
            tile.src = `${tile.src.replace(/\?again=\d+$/, '')}?again=${tile.failures}`;
        },

        // When the network is there again, nobody wants to wait for the end of a pause.
        askForAll() {
            for (const { el } of Object.values(this._tiles)) if (el.retry) this.askAgain(el);
        },
    });

    class StreetTiles {
        // changed() is called when the tiles begin to come, to fail, or to come again.
        constructor(map, changed) {
            this.map = map;
            this.changed = changed;
            this.layer = null;
            this.provider = null;
            this.visible = true;
            this.failing = false;
            this.coming = false;
            this.lastLoad = -Infinity;
            this.timer = 0;
            window.addEventListener('online', () => {
                if (this.layer !== null) this.layer.askForAll();
            });
        }

        use(provider) {
            if (JSON.stringify(provider) === JSON.stringify(this.provider)) return;
            this.provider = provider;
            this.drop();
            this.apply();
        }

        show(visible) {
            this.visible = visible;
            this.drop();
            this.apply();
        }

        shown() {
            return this.layer !== null;
        }

        drop() {
            clearTimeout(this.timer);
            if (this.layer !== null) this.layer.remove();
            this.layer = null;
            this.failing = false;
            this.coming = false;
        }

        apply() {
            if (this.provider === null || !this.visible) return;
            this.layer = new RetryingTiles(ADDRESS, {
                maxNativeZoom: this.provider.maxZoom, maxZoom: 22, pane: 'tilePane', keepBuffer: 2,
            });
            this.layer.on('tileload', () => {
                this.lastLoad = performance.now();
                this.judge(false);
            });
            this.layer.on('tileerror', () => this.judge(true));
            this.layer.on('loading', () => {
                clearTimeout(this.timer);
                this.timer = setTimeout(() => this.judge(true), SILENCE_MS);
            });
            this.layer.on('load', () => clearTimeout(this.timer));
            this.layer.addTo(this.map);
        }

        // One tile among many may fail; they fail as a whole when none has come for a while.
        judge(bad) {
            const failing = bad && performance.now() - this.lastLoad > SILENCE_MS;
            if (bad && !failing) return;
            if (failing === this.failing && this.coming === !bad) return;
            this.failing = failing;
            this.coming = !bad;
            this.changed();
        }
    }

    velmorantMap.StreetTiles = StreetTiles;
})(window.velmorantMap);
