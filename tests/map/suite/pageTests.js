'use strict';
(function (suite) {
    const { test, check, equal, frames, until, routes } = suite;
    const page = window.velmorantMap;
    const { Link } = page.Route;
    const EAST = routes.line([121.5, 25.04], [0.0002, 0.00001], 40);

    function links(number) {
        const route = page.table.shown.get(number);
        return Array.from({ length: route.count }, (_, i) => route.linkOf(i));
    }

    function notice(id) {
        const element = document.getElementById(id);
        return element.hidden ? '' : element.textContent;
    }

    // Whether a canvas of the page, usually the routes', has paint at a place of the map.
    function painted(longitude, latitude, canvas = page.routes) {
        const { context, view } = canvas.front;
        const x = Math.round(((longitude / 360) * view.world + view.world / 2 - view.originX) * view.ratio);
        const y = Math.round((page.mercator.y(latitude) * view.scale + view.top) * view.ratio);
        const data = context.getImageData(x - 2, y - 2, 5, 5).data;
        return data.some((value, i) => i % 4 === 3 && value > 0);
    }

    test('a_jump_no_car_can_make_is_not_joined', () => {
        routes.draw(7, [[121.5, 25.04], [121.5001, 25.04], [122.5, 25.04], [122.5001, 25.04]]);
        equal(links(7), [Link.APART, Link.JOINED, Link.APART, Link.JOINED], 'links');
    });

    test('places_repeated_in_a_tunnel_are_a_lost_fix', () => {
        const held = Array.from({ length: 10 }, () => [121.5001, 25.04]);
        routes.draw(7, [[121.5, 25.04], ...held, [121.503, 25.04], [121.5031, 25.04]]);
        equal(links(7).slice(-2), [Link.FIX_LOST, Link.JOINED], 'links after the tunnel');
    });

    test('places_repeated_while_parked_are_joined', () => {
        const held = Array.from({ length: 10 }, () => [121.5001, 25.04]);
        routes.draw(7, [[121.5, 25.04], ...held, [121.5002, 25.04]]);
        check(links(7).slice(1).every((link) => link === Link.JOINED), `links ${links(7)}`);
    });

    test('zero_zero_is_not_drawn', async () => {
        routes.draw(7, [[0, 0], [0, 0], [121.5, 25.04], [121.5001, 25.04], [0, 0], [121.5003, 25.04]]);
        const route = page.table.shown.get(7);
        equal([0, 1, 2, 3, 4, 5].map((i) => route.isUnknown(i)), [true, true, false, false, true, false], 'unknown');
        check(route.bounds.left > 1e9, 'bounds reach to 0, 0');
        routes.draw(8, [[0, 0], [0, 0], [0, 0]]);
        check(page.table.shown.get(8).isEmpty(), 'a route of 0, 0 alone has a place');
        routes.look(0, 0, 12);
        await frames(2);
        check(!painted(0, 0), 'something is painted at 0, 0');
    });

    test('a_route_is_painted_while_it_grows', async () => {
        routes.look(121.504, 25.0402, 15);
        await frames(2);
        routes.send(routes.textsOfReading(7, EAST).slice(0, -1));
        await until(() => painted(...EAST[20]), 'the route is painted before "Over"');
        getContentHis('Over');
        page.routes.paint();
        check(painted(...EAST[20]), 'nothing painted after "Over"');
        clearHistroy('007');
        await frames(3);
        check(!painted(...EAST[20]), 'still painted after the removal');
    });

    test('a_route_over_the_date_line_is_one_piece', async () => {
        const places = routes.line([179.995, -16.8], [0.0002, 0.0001], 60)
            .map(([x, y]) => [x > 180 ? x - 360 : x, y]);
        routes.draw(7, places);
        check(links(7).slice(1).every((link) => link === Link.JOINED), 'a link is apart');
        const { left, right } = page.table.shown.get(7).bounds;
        check(right - left < 4294967296 / 100, 'the bounds go around the world');
        page.view.fitAll();
        await frames(2);
        const width = page.map.getBounds().getEast() - page.map.getBounds().getWest();
        check(width < 1, `the view is ${width} degrees wide`);
        for (const [x, y] of [places[5], places[50]]) {
            const copy = Math.round((page.map.getCenter().lng - x) / 360) * 360;
            check(painted(x + copy, y), `nothing painted at ${x}, ${y}`);
        }
    });

    test('the_view_shows_all_routes_when_they_are_complete', async () => {
        routes.draw(7, EAST);
        routes.draw(8, routes.line([121.6, 25.1], [0.0002, 0], 40));
        const inside = () => page.map.getBounds().contains([25.04, 121.5]) &&
            page.map.getBounds().contains([25.1, 121.607]);
        await until(() => inside() && page.map.getZoom() > 9, 'the view fits both routes');
    });

    test('the_view_stays_where_the_user_put_it', async () => {
        page.map.getContainer().dispatchEvent(new WheelEvent('wheel', { deltaY: 0, bubbles: true }));
        routes.look(2.35, 48.85, 12);
        page.view.userMoved();
        routes.draw(7, EAST);
        await new Promise((done) => setTimeout(done, 400));
        check(page.map.getBounds().contains([48.85, 2.35]), 'the view moved away');
    });

    test('the_car_stands_at_its_place_with_its_heading', () => {
        routes.draw(7, EAST);
        MoveCar('121.5|25.04|1|90');
        const at = page.car.marker.getLatLng();
        check(Math.abs(at.lat - 25.04) < 1e-6, `latitude ${at.lat}`);
        check(Math.abs(at.lng - 121.5 - 360 * Math.round((at.lng - 121.5) / 360)) < 1e-6, `longitude ${at.lng}`);
        equal(document.querySelector('.car svg').style.transform, 'rotate(90deg)', 'heading');
        equal(page.table.active.number, 7, 'active route');
    });

    test('the_car_makes_the_recording_that_it_is_in_active', () => {
        routes.draw(7, EAST);
        routes.draw(8, routes.line([121.6, 25.1], [0.0002, 0.0001], 40));
        MoveCar('121.6|25.1|1|90');
        equal(page.table.active.number, 8, 'active route');
        MoveCar('121.5|25.04|1|90');
        equal(page.table.active.number, 7, 'active route');
    });

    test('a_car_without_a_route_is_shown_all_the_same', () => {
        MoveCar('121.5|25.04|12|90');
        check(document.querySelector('.car') !== null, 'no car');
        equal(page.table.active, null, 'active route');
    });

    test('a_car_at_zero_zero_is_no_fix_instead_of_a_place', () => {
        MoveCar('121.5|25.04|1|90');
        MoveCar('0|0|2|0');
        check(document.querySelector('.car') === null, 'the car stands at 0, 0');
        equal(notice('no-fix'), page.texts.get('noFix'), 'notice');
        MoveCar('121.5|25.04|3|90');
        check(document.querySelector('.car') !== null, 'the car does not come back');
        equal(notice('no-fix'), '', 'notice');
    });

    test('a_stop_takes_the_car_away_and_is_no_lost_fix', () => {
        MoveCar('121.5|25.04|1|90');
        MoveCar('0|0|0|0');
        check(document.querySelector('.car') === null, 'the car stands at 0, 0');
        equal(notice('no-fix'), '', 'notice');
        MoveCar('0|0|2|0');
        MoveCar('0|0|0|0');
        equal(notice('no-fix'), '', 'the notice outlives the stop');
    });

    test('bad_car_calls_leave_the_car_where_it_is', () => {
        MoveCar('121.5|25.04|1|90');
        for (const text of ['', '121.5', '121.5|25|1', 'a|b|c|d', '200|25|1|0', '1|95|1|0', '1|1|x|0', '1|1|1|',
            '1|1|1.5|0', '1|1|1|0|9', "1|1|1|0');alert('"]) MoveCar(text);
        const at = page.car.marker.getLatLng();
        check(Math.abs(at.lat - 25.04) < 1e-6, `latitude ${at.lat}`);
        equal(page.log.lines.length, 11, 'log lines');
    });

    test('the_car_glides_along_the_route_between_two_places', async () => {
        routes.draw(7, EAST);
        if (page.car.reducedMotion.matches) return;
        routes.look(EAST[5][0], EAST[5][1], 17);
        MoveCar(`${EAST[4][0].toFixed(7)}|${EAST[4][1].toFixed(7)}|5|90`);
        await new Promise((done) => setTimeout(done, 200));
        MoveCar(`${EAST[5][0].toFixed(7)}|${EAST[5][1].toFixed(7)}|6|90`);
        const seen = new Set();
        await until(() => {
            seen.add(page.car.marker.getLatLng().lng.toFixed(7));
            return Math.abs(page.car.marker.getLatLng().lng - EAST[5][0]) < 1e-7;
        }, 'the car has arrived');
        check(seen.size > 2, `the car was seen at ${seen.size} places`);
    });

    test('a_glide_too_short_to_be_seen_is_drawn_three_times_at_most', async () => {
        routes.draw(7, EAST);
        if (page.car.reducedMotion.matches) return;
        routes.look(EAST[5][0], EAST[5][1], 3);
        MoveCar(`${EAST[4][0].toFixed(7)}|${EAST[4][1].toFixed(7)}|5|90`);
        const place = page.car.place;
        let drawn = 0;
        page.car.place = function (...there) {
            drawn += 1;
            place.apply(this, there);
        };
        MoveCar(`${EAST[5][0].toFixed(7)}|${EAST[5][1].toFixed(7)}|6|90`);
        await until(() => Math.abs(page.car.marker.getLatLng().lng - EAST[5][0]) < 1e-7, 'the car has arrived');
        delete page.car.place;
        check(drawn <= 3, `drawn ${drawn} times`);
    });

    test('the_car_jumps_over_a_gap', () => {
        routes.draw(7, [[121.5, 25.04], [121.5001, 25.04], [122.5, 25.04], [122.5001, 25.04]]);
        MoveCar('121.5001|25.04|2|90');
        MoveCar('122.5|25.04|3|90');
        const at = page.car.marker.getLatLng();
        check(Math.abs(at.lng - 122.5) < 1e-6, `the car is at ${at.lng}`);
    });

    test('a_car_that_does_not_glide_jumps', () => {
        routes.draw(7, EAST);
        page.car.gliding = false;
        MoveCar(`${EAST[4][0].toFixed(7)}|${EAST[4][1].toFixed(7)}|5|90`);
        MoveCar(`${EAST[5][0].toFixed(7)}|${EAST[5][1].toFixed(7)}|6|90`);
        page.car.gliding = true;
        check(Math.abs(page.car.marker.getLatLng().lng - EAST[5][0]) < 1e-6, 'the car is on its way');
    });

    test('follow_keeps_the_car_in_view', async () => {
        routes.look(2.35, 48.85, 12);
        MoveCar('121.5|25.04|1|90');
        await until(() => page.map.getBounds().contains(page.car.marker.getLatLng()), 'the car is in view');
    });

    test('without_follow_the_view_stays', async () => {
        page.view.setFollow(false);
        routes.look(2.35, 48.85, 12);
        MoveCar('121.5|25.04|1|90');
        await frames(5);
        check(page.map.getBounds().contains([48.85, 2.35]), 'the view moved');
    });

    test('the_base_map_needs_no_network', async () => {
        await until(() => page.baseLayers.base.world !== null, 'the world is read');
        const { world } = page.baseLayers.base;
        check(world.land.length > 500 && world.names.length > 200 && world.cities.length > 350, 'the world is not whole');
        const foreign = performance.getEntriesByType('resource').map((entry) => entry.name)
            .filter((name) => !name.startsWith(document.baseURI.replace(/[^/]*$/, '')) && !name.startsWith('data:'));
        equal(foreign, [], 'addresses asked for outside the page\'s folder');
    });

    test('the_base_map_is_painted_at_every_zoom', async () => {
        await until(() => page.baseLayers.base.world !== null, 'the world is read');
        for (const zoom of [0, 3, 6, 10, 15, 19]) {
            routes.look(87.3, 33.1, zoom);
            await frames(2);
            check(painted(87.3, 33.1, page.baseLayers.ground), `no land at zoom ${zoom}`);
            check(zoom < 3 || zoom > 6 || !painted(80, -10, page.baseLayers.ground), `land in the sea at zoom ${zoom}`);
        }
    });

    test('every_control_has_a_name_and_can_be_focused', () => {
        const buttons = [...document.querySelectorAll('.controls button:not([hidden]):not(:disabled)')];
        check(buttons.length >= 4, `${buttons.length} buttons`);
        for (const button of buttons) {
            check(button.getAttribute('aria-label') !== '', `${button.id} has no name`);
            button.focus();
            check(document.activeElement === button, `${button.id} cannot be focused`);
        }
        for (const box of document.querySelectorAll('.controls input')) {
            check(box.labels.length === 1 && box.labels[0].textContent !== '', `${box.id} has no label`);
        }
        document.activeElement.blur();
    });

    test('every_text_exists_in_both_languages', () => {
        for (const [name, pair] of Object.entries(page.Texts.TABLE)) {
            equal(pair.length, 2, `texts of ${name}`);
            check(pair[0] !== '' && pair[1] !== '' && pair[0] !== pair[1], `texts of ${name}`);
        }
    });

    test('no_foreign_script_is_allowed', () => {
        const policy = document.querySelector('meta[http-equiv="Content-Security-Policy"]').content;
        check(/script-src 'self'(;|$)/.test(policy) && /default-src 'none'/.test(policy), policy);
        const script = document.createElement('script');
        script.textContent = 'window.velmorantHurt = 1';
        document.head.appendChild(script);
        script.remove();
        check(window.velmorantHurt === undefined, 'an inline script was run');
    });
})(window.velmorantSuite);
