'use strict';
// Web Mercator in whole numbers: the world is 2^32 units wide and high, 0 at its centre, x to the
// east and y to the south. As 32-bit integers a place is exact to a centimetre, and the difference
// of two x, cut to 32 bits, is the shorter way round, so the date line needs no case of its own.
(function (velmorantMap) {
    const UNITS_PER_DEGREE = 4294967296 / 360;
    const UNITS_PER_RADIAN = 4294967296 / (2 * Math.PI);
    const FARTHEST_Y = 2147483647;
    const FARTHEST_LATITUDE = 85.0511287;
    const EQUATOR_METRES = 40075016.686;

    velmorantMap.mercator = {
        WORLD: 4294967296,
        METRES_PER_UNIT: EQUATOR_METRES / 4294967296,

        x(longitude) {
            return (longitude * UNITS_PER_DEGREE) | 0;
        },

        y(latitude) {
            if (latitude >= FARTHEST_LATITUDE) return -FARTHEST_Y;
            if (latitude <= -FARTHEST_LATITUDE) return FARTHEST_Y;
            const sine = Math.sin((latitude * Math.PI) / 180);
            return Math.round(-0.5 * Math.log((1 + sine) / (1 - sine)) * UNITS_PER_RADIAN);
        },

        longitude(x) {
            return x / UNITS_PER_DEGREE;
        },

        latitude(y) {
            return (Math.atan(Math.sinh(-y / UNITS_PER_RADIAN)) * 180) / Math.PI;
        },

        // Pixels of a unit at a zoom level: the world is 256 * 2^zoom pixels wide.
        scale(zoom) {
            return Math.pow(2, zoom - 24);
        },
    };
})(window.velmorantMap);
