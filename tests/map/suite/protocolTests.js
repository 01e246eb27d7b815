'use strict';
(function (suite) {
    const { test, check, equal, routes } = suite;
    const page = window.velmorantMap;
    const TAIPEI = routes.line([121.5, 25.04], [0.0001, 0.00012], 25);

    function numbers() {
        return [...page.table.shown.keys()];
    }

    function placesOf(number) {
        const route = page.table.shown.get(number);
        check(route !== undefined, `route ${number} is not shown`);
        return Array.from({ length: route.count }, (_, i) => [route.x[i] / 1e7, route.y[i] / 1e7]);
    }

    function expectRoute(number, places) {
        const rounded = places.map((place) => place.map((value) => Math.round(value * 1e7) / 1e7));
        equal(placesOf(number), rounded, `places of route ${number}`);
        check(page.table.shown.get(number).complete, `route ${number} is not complete`);
    }

    test('a_reading_of_25_places_arrives_in_calls_of_1_10_10_and_4', () => {
        const texts = routes.textsOfReading(7, TAIPEI);
        equal(texts.map((text) => text.split('|').length - 1), [1, 10, 10, 4, 0], 'places per call');
        routes.send(texts);
        expectRoute(7, TAIPEI);
        equal(page.log.lines, [], 'log');
    });

    test('a_track_sent_again_begins_with_ten_places', () => {
        routes.send(routes.textsOfRedrawing(7, TAIPEI));
        expectRoute(7, TAIPEI);
    });

    for (const number of [7, 999, 1000, 12345]) {
        for (const longitude of [121.5, -121.5, 5.25, -0.75, 0.5, 12.125, 179.99, -179.99]) {
            for (const signed of [true, false]) {
                const kind = signed ? 'signed' : 'unsigned';
                test(`number_${number}_before_the_${kind}_longitude_${longitude}`, () => {
                    const places = routes.line([longitude, 25.04], [0.0001, 0.0001], 12);
                    routes.send(routes.textsOfReading(number, places, signed));
                    expectRoute(number, places);
                    routes.send(routes.textsOfRedrawing(number, places, signed));
                    expectRoute(number, places);
                    equal(numbers(), [number], 'numbers');
                });
            }
        }
    }

    test('a_route_is_not_complete_before_over', () => {
        routes.send(routes.textsOfReading(7, TAIPEI).slice(0, -1));
        check(!page.table.shown.get(7).complete, 'complete without "Over"');
        getContentHis('Over');
        expectRoute(7, TAIPEI);
    });

    test('over_without_a_route_changes_nothing', () => {
        getContentHis('Over');
        getContentHis('Over');
        equal(numbers(), [], 'numbers');
        equal(page.log.lines, [], 'log');
    });

    test('over_twice_changes_nothing', () => {
        routes.draw(7, TAIPEI);
        getContentHis('Over');
        expectRoute(7, TAIPEI);
    });

    test('a_number_without_places_is_an_empty_route', () => {
        getContentHis('007');
        getContentHis('Over');
        equal(placesOf(7), [], 'places');
    });

    test('the_number_may_come_alone_before_its_places', () => {
        routes.send(['007', routes.groups(TAIPEI).join(''), 'Over']);
        expectRoute(7, TAIPEI);
    });

    test('several_routes_are_kept_apart', () => {
        const hongKong = routes.line([114.16, 22.28], [0.0001, 0], 8);
        routes.draw(7, TAIPEI);
        routes.draw(12345, hongKong);
        expectRoute(7, TAIPEI);
        expectRoute(12345, hongKong);
    });

    test('the_same_number_again_replaces_its_route', () => {
        const other = routes.line([-70.5, -33.4], [0.0001, 0], 8);
        routes.draw(7, TAIPEI);
        routes.draw(8, TAIPEI);
        routes.draw(7, other);
        expectRoute(7, other);
        equal([...page.table.known.keys()], [7, 8], 'order of the program\'s table');
    });

    test('a_missing_over_before_the_next_number_is_healed', () => {
        for (const signed of [true, false]) {
            routes.send(routes.textsOfReading(7, TAIPEI, signed).slice(0, -1));
            routes.send(routes.textsOfReading(8, TAIPEI, signed));
            expectRoute(7, TAIPEI);
            expectRoute(8, TAIPEI);
            equal(page.log.lines.length, 1, 'log lines');
            suite.reset();
        }
    });

    test('half_a_group_is_joined_with_the_next_text', () => {
        routes.send(['007+121.5!25.04|+121.5', '001!25.04|+121.5002!25.0', '4|+121.5003!25.04|', 'Over']);
        expectRoute(7, [[121.5, 25.04], [121.5001, 25.04], [121.5002, 25.04], [121.5003, 25.04]]);
    });

    test('half_a_group_before_the_next_number_is_dropped', () => {
        routes.send(['007+121.5!25.04|+121.6!25', '008+121.7!25.04|', 'Over']);
        expectRoute(7, [[121.5, 25.04]]);
        expectRoute(8, [[121.7, 25.04]]);
        check(page.log.lines.length > 0, 'nothing in the log');
    });

    test('an_unreadable_group_keeps_its_place_in_the_count', () => {
        routes.send(['007+121.5!25.04|+121.5001|+121.5002!25.04|', 'Over']);
        const route = page.table.shown.get(7);
        equal(route.count, 3, 'places');
        check(route.isUnknown(1) && !route.isUnknown(2), 'the wrong place is unknown');
    });

    const DIGITS = '7'.repeat(5000);
    const BAD = {
        nothing: '', blanks: '   ', no_number: '+121.5!25.04|', short_number: '07', letters: 'abcdef',
        longitude_alone: '121.5!25.04|', bars: '||||||', marks: '!!!!', half_a_group: '007+121.5!',
        no_latitude: '007+121.5|', letters_for_places: '007+abc!def|', far_east: '007+181!25|',
        far_north: '007+121!91|', digits: DIGITS, digits_in_a_place: `007+${DIGITS}!25|`,
        digits_with_a_sign: `${DIGITS}+121.5!25.04|`, quotes: "007+121.5!25.04|'\"`", two_marks: '007+1!2!3|',
        markup: '007<img src=x onerror="window.velmorantHurt=1">!25|',
        script: '<script>window.velmorantHurt=1</' + 'script>', escape: '\\u0027);//', line_feeds: '\n\r\n',
        zero: '\0\0\0', chinese: '路線', not_a_number: '007+NaN!Infinity|', hexadecimal: '007+0x10!0x10|',
        long_tail: `007+121.5!25.04|${'x'.repeat(20000)}`, number_zero_padding: '0000000000000007+1!1|',
    };
    const VALUES = [undefined, null, 0, 12, NaN, true, {}, [], [1, 2], Object.create(null), Symbol('s'),
        { toString() { throw new Error('no text'); } }, () => 0];

    function stillWorks(what) {
        getContentHis('Over');
        routes.draw(8, TAIPEI);
        expectRoute(8, TAIPEI);
        const [x, y] = TAIPEI[3];
        MoveCar(`${x}|${y}|4|90`);
        check(document.querySelector('.car') !== null, `no car after ${what}`);
        check(window.velmorantHurt === undefined, `${what} was run as script`);
        check(document.querySelector('img[src="x"]') === null, `${what} became markup`);
    }

    for (const [name, text] of Object.entries(BAD)) {
        test(`bad_text_${name}_neither_throws_nor_stops_later_calls`, () => {
            for (const call of [getContentHis, MoveCar, clearHistroy]) call(text);
            stillWorks(name);
            suite.reset();
            getContentHis('007+121.5!25.04|');
            getContentHis(text);
            stillWorks(`${name} within a route`);
            check(page.log.lines.every((line) => line.length < 400), 'a log line is too long');
        });
    }

    test('values_that_are_no_texts_neither_throw_nor_stop_later_calls', () => {
        for (const value of VALUES) {
            for (const call of [getContentHis, MoveCar, clearHistroy]) call(value);
            stillWorks(typeof value);
            suite.reset();
        }
    });

    test('calls_return_nothing', () => {
        equal([getContentHis('007+1!1|'), getContentHis('Over'), MoveCar('1|1|1|0'), clearHistroy('007')]
            .map((value) => value === undefined), [true, true, true, true], 'undefined');
    });

    test('clearing_removes_one_route_and_only_that', () => {
        routes.draw(7, TAIPEI);
        routes.draw(1000, TAIPEI);
        clearHistroy('007');
        equal(numbers(), [1000], 'numbers');
        clearHistroy('1000');
        equal(numbers(), [], 'numbers');
    });

    test('clearing_a_route_that_is_not_there_is_logged', () => {
        clearHistroy('099');
        equal(page.log.lines.length, 1, 'log lines');
    });

    test('clearing_the_route_being_drawn_drops_the_rest_of_it', () => {
        const texts = routes.textsOfReading(7, TAIPEI);
        routes.send(texts.slice(0, 2));
        clearHistroy('007');
        routes.send(texts.slice(2));
        equal(numbers(), [], 'numbers');
    });
})(window.velmorantSuite);
