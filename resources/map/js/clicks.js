'use strict';
// A click near a route leaves the place for the program; where the program could not tell the place,
// the page says so.
(function (velmorantMap) {
    const { HitTest, mercator } = velmorantMap;
    const REACH_PIXELS = 12;
    const SLACK_PIXELS = 2;

    velmorantMap.listenToClicks = function (map, table, { picked, refused }) {
        const hitTest = new HitTest(table);
        map.on('click', (event) => {
            const { lat, lng } = event.latlng;
            const x = (lng / 360) * mercator.WORLD;
            const zoom = map.getZoom();
            const near = velmorantMap.nearestSegments(table, x, mercator.y(lat), zoom, REACH_PIXELS);
            if (near.length === 0) return;
            const point = hitTest.choose(near, SLACK_PIXELS);
            if (point === null) refused(near[0].route);
            else picked(point);
        });
    };
})(window.velmorantMap);
