'use strict';
// What the page says in words: a passing notice, the standing "no fix", and the source of the map.
(function (velmorantMap) {
    const SHOWN_MS = 6000;

    class Notices {
        constructor(root) {
            this.passing = this.element(root, 'notice', 'status');
            this.fix = this.element(root, 'no-fix', 'status');
            this.source = this.element(root, 'source', 'note');
            this.timer = 0;
        }

        element(root, id, role) {
            const element = document.createElement('div');
            element.id = id;
            element.setAttribute('role', role);
            element.hidden = true;
            root.appendChild(element);
            return element;
        }

        say(text) {
            clearTimeout(this.timer);
            this.passing.textContent = text;
            this.passing.hidden = false;
            this.timer = setTimeout(() => { this.passing.hidden = true; }, SHOWN_MS);
        }

        showFix(known, text) {
            if (this.fix.hidden === known && (known || this.fix.textContent === text)) return;
            this.fix.textContent = text;
            this.fix.hidden = known;
        }

        // What the map is drawn from; address makes it a link.
        showSource(text, address) {
            this.source.hidden = false;
            this.source.textContent = '';
            if (address === null) {
                this.source.textContent = text;
                return;
            }
            const link = document.createElement('a');
            link.href = address;
            link.target = '_blank';
            link.rel = 'noopener noreferrer';
            link.textContent = text;
            this.source.appendChild(link);
        }
    }

    velmorantMap.Notices = Notices;
})(window.velmorantMap);
