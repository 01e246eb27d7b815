'use strict';
// The whole window for the map: by the serving program where it offers that, else by the browser's
// full screen.
(function (velmorantMap) {
    const COMMAND = 'whole-window';

    class WholeWindow {
        // shown(possible, on) is called when either changes.
        constructor(configuration, log, shown) {
            this.configuration = configuration;
            this.log = log;
            this.shown = shown;
            this.on = false;
            document.addEventListener('fullscreenchange', () => this.update());
        }

        byProgram() {
            return this.configuration.answers(COMMAND);
        }

        update() {
            if (this.byProgram()) this.on = this.configuration.values.wholeWindow === true;
            else this.on = document.fullscreenElement !== null;
            this.shown(this.byProgram() || document.fullscreenEnabled === true, this.on);
        }

        toggle() {
            if (this.byProgram()) {
                this.ask(!this.on);
            } else if (this.on) {
                document.exitFullscreen();
            } else {
                const refused = () => this.log.add('full screen refused');
                document.documentElement.requestFullscreen().catch(refused);
            }
        }

        ask(on) {
            velmorantMap.readJson(`command/${COMMAND}?on=${on ? 1 : 0}`, (answer) => {
                if (answer === null || typeof answer !== 'object') {
                    this.log.add(`command ${COMMAND} failed`);
                    return;
                }
                const on = answer.wholeWindow === true;
                this.configuration.take({ ...this.configuration.values, wholeWindow: on });
                this.on = on;
                this.shown(true, on);
            });
        }
    }

    velmorantMap.WholeWindow = WholeWindow;
})(window.velmorantMap);
