'use strict';
// The user's switches, remembered by the browser control where it can.
(function (velmorantMap) {
    const PREFIX = 'velmorant.map.';

    velmorantMap.preferences = {
        get(name, usual) {
            try {
                const kept = window.localStorage.getItem(PREFIX + name);
                return kept === null ? usual : kept === 'on';
            } catch (error) {
                return usual;
            }
        },

        set(name, on) {
            try {
                window.localStorage.setItem(PREFIX + name, on ? 'on' : 'off');
            } catch (error) {
                // Storage may be refused; the switch then holds for this page only.
            }
        },
    };
})(window.velmorantMap);
