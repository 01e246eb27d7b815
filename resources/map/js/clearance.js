'use strict';
// How much of each edge of the map the controls take, by their real sizes: what is to be seen keeps
// clear of them.
(function (velmorantMap) {
    // Room for a route's end mark or half the car.
    const GAP = 14;
    // The figures of the grid stand along the upper edge.
    const FIGURES = 14;
    // However small the map is, so much of it stays for what is shown.
    const LARGEST_SHARE = 0.6;

    function shown(selector) {
        return [...document.querySelectorAll(selector)]
            .map((element) => element.getBoundingClientRect()).filter((box) => box.height > 0);
    }

    function limited(a, b, size) {
        const share = Math.min(1, (LARGEST_SHARE * size) / (a + b));
        return [Math.round(a * share), Math.round(b * share)];
    }

    // {left, right, top, bottom} in pixels.
    velmorantMap.clearance = function (size) {
        const sides = (selector, edge) => shown(selector).map(edge);
        const below = shown('#legend, #source, .leaflet-control-scale').map((box) => box.top);
        const [left, right] = limited(
            Math.max(0, ...sides('.controls.left', (box) => box.right)) + GAP,
            size.x - Math.min(size.x, ...sides('.controls.right', (box) => box.left)) + GAP, size.x);
        const [top, bottom] = limited(FIGURES + GAP, size.y - Math.min(size.y, ...below) + GAP, size.y);
        return { left, right, top, bottom };
    };
})(window.velmorantMap);
