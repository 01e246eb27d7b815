'use strict';
// The buttons over the map. Each is a real button with a name for screen readers, its state told by
// aria-pressed, reached with the tab key.
(function (velmorantMap) {
    const ICONS = {
        zoomIn: 'M5 12h14M12 5v14',
        zoomOut: 'M5 12h14',
        fitAll: 'M4 9V4h5M15 4h5v5M20 15v5h-5M9 20H4v-5M8 15c2-6 6 0 8-6',
        fitActive: 'M4 9V4h5M15 4h5v5M20 15v5h-5M9 20H4v-5M12 8l3.5 8-3.5-2-3.5 2z',
        follow: 'M12 3v4M12 17v4M3 12h4M17 12h4M12 7a5 5 0 1 0 0 10a5 5 0 1 0 0-10',
        layers: 'M12 4l8 4.500-8 4.500-8-4.500zM4 12.500l8 4.500 8-4.500M4 16.500l8 4.500 8-4.500',
        wholeWindow: 'M14 4h6v6M20 4l-7 7M10 20H4v-6M4 20l7-7',
    };
    const SVG = 'http://www.w3.org/2000/svg';

    function icon(name) {
        const svg = document.createElementNS(SVG, 'svg');
        svg.setAttribute('viewBox', '0 0 24 24');
        svg.setAttribute('aria-hidden', 'true');
        const path = document.createElementNS(SVG, 'path');
        path.setAttribute('d', ICONS[name]);
        svg.appendChild(path);
        return svg;
    }

    class Controls {
        // texts: the page's; root: the element that the groups are put into.
        constructor(texts, root) {
            this.texts = texts;
            this.root = root;
            this.named = [];
        }

        group(className) {
            const element = document.createElement('div');
            element.className = `controls ${className}`;
            this.root.appendChild(element);
            L.DomEvent.disableClickPropagation(element);
            L.DomEvent.disableScrollPropagation(element);
            return element;
        }

        button(group, name, action) {
            const button = document.createElement('button');
            button.type = 'button';
            button.id = name;
            button.appendChild(icon(name));
            button.addEventListener('click', action);
            group.appendChild(button);
            this.named.push([button, name]);
            this.name(button, name);
            return button;
        }

        checkBox(group, name, checked, action) {
            const label = document.createElement('label');
            const box = document.createElement('input');
            const text = document.createElement('span');
            box.type = 'checkbox';
            box.id = name;
            box.checked = checked;
            box.addEventListener('change', () => action(box.checked));
            label.append(box, text);
            group.appendChild(label);
            this.named.push([text, name]);
            this.name(text, name);
            return box;
        }

        name(element, name) {
            const text = this.texts.get(name);
            if (element instanceof HTMLButtonElement) {
                element.title = text;
                element.setAttribute('aria-label', text);
            } else {
                element.textContent = text;
            }
        }

        // After a change of language.
        rename() {
            for (const [element, name] of this.named) this.name(element, name);
        }

        static press(button, pressed) {
            button.setAttribute('aria-pressed', String(pressed));
        }
    }

    velmorantMap.Controls = Controls;
})(window.velmorantMap);
