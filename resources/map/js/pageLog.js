'use strict';
// The page's log: what was ignored or healed, for whoever looks into a map that shows less than was
// sent. Lines also go to the browser's console, from where the program can take them.
window.velmorantMap = window.velmorantMap || {};

(function (velmorantMap) {
    const LINES_KEPT = 200;
    const EXCERPT_LENGTH = 60;

    class PageLog {
        constructor() {
            this.lines = [];
            this.dropped = 0;
        }

        add(line) {
            this.lines.push(line);
            if (this.lines.length > LINES_KEPT) {
                this.lines.shift();
                this.dropped += 1;
            }
            console.info(`map: ${line}`);
        }

        // What a caller sent, quoted and cut, so that a log line stays one readable line.
        static excerpt(value) {
            let text = '';
            try {
                text = String(value);
            } catch (error) {
                text = typeof value;
            }
            return JSON.stringify(
                text.length > EXCERPT_LENGTH ? `${text.slice(0, EXCERPT_LENGTH)}...` : text);
        }
    }

    velmorantMap.PageLog = PageLog;
})(window.velmorantMap);
