'use strict';
// With a provider of street tiles that answers, at least in part.
(function (suite) {
    const { test, check, equal, until, routes } = suite;
    const page = window.velmorantMap;

    function tiles() {
        return Object.values(page.tiles.layer._tiles).filter((tile) => tile.current);
    }

    test('street_tiles_cover_the_view_in_the_end', async () => {
        routes.look(121.5, 25.04, 14);
        await until(() => tiles().length > 0 &&
            tiles().every((tile) => tile.el.classList.contains('leaflet-tile-loaded')), 'all tiles have come', 20000);
    });

    test('the_attribution_is_shown_and_leads_outside', async () => {
        await until(() => page.tiles.shown(), 'tiles are shown');
        const link = document.querySelector('#source a');
        equal([link.textContent, link.target], ['© Loopback Street Map', '_blank'], 'link');
    });

    test('the_base_stays_beneath', () => {
        const order = ['base', 'tilePane', 'routes'].map((name) => Number(getComputedStyle(page.map.getPane(name)).zIndex));
        check(order[0] < order[1] && order[1] < order[2], `order ${order}`);
        check(page.baseLayers.ground.front.view !== null, 'no base');
    });

    test('tiles_can_be_switched_off', () => {
        page.tiles.show(false);
        equal(document.querySelectorAll('.leaflet-tile').length, 0, 'tiles');
        page.tiles.show(true);
    });
})(window.velmorantSuite);
