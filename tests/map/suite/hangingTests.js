'use strict';
// With a provider whose tiles never come.
(function (suite) {
    const { test, check, equal, until, routes } = suite;
    const page = window.velmorantMap;

    test('hanging_tiles_leave_the_base_in_sight_and_are_told', async () => {
        routes.look(121.5, 25.04, 14);
        await until(() => document.getElementById('source').textContent === page.texts.get('tilesFailing'),
            'the page says that the tiles do not come', 15000);
        for (const tile of document.querySelectorAll('.leaflet-tile')) {
            equal(getComputedStyle(tile).visibility, 'hidden', 'a tile without a picture');
        }
        check(page.baseLayers.ground.front.view !== null, 'no base');
    });
})(window.velmorantSuite);
