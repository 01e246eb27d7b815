'use strict';
(function (suite) {
    const { test, check, equal, frames, routes } = suite;
    const page = window.velmorantMap;

    function pickedAt(place, zoom) {
        window.varLocal = '';
        routes.look(place[0], place[1], zoom);
        check(routes.click(place[0], place[1]), `the click at ${place} was outside the map`);
        return window.varLocal;
    }

    function notice() {
        const element = document.getElementById('notice');
        return element.hidden ? '' : element.textContent;
    }

    test('a_click_leaves_a_place_in_the_form_that_the_program_reads', () => {
        const places = routes.line([121.5, 25.04], [0.0002, 0.0001], 40);
        routes.draw(7, places);
        const picked = pickedAt([121.5021, 25.04105], 16);
        check(/^P121\.\d{7},25\.\d{7}$/.test(picked), `varLocal reads ${picked}`);
        equal(routes.plainAttribution(picked, [[7, places]]), { number: 7, index: 11 }, 'program');
    });

    test('a_click_far_from_any_route_picks_nothing', () => {
        routes.draw(7, routes.line([121.5, 25.04], [0.0002, 0.0001], 40));
        equal(pickedAt([121.5, 25.06], 16), '', 'varLocal');
    });

    test('a_click_beside_a_route_snaps_to_it', () => {
        const places = routes.line([121.5, 25.04], [0.0002, 0.0001], 40);
        routes.draw(7, places);
        const beside = [121.5021 + 0.00004, 25.04105 - 0.00004];
        equal(routes.plainAttribution(pickedAt(beside, 16), [[7, places]]), { number: 7, index: 11 }, 'program');
    });

    // Starts of drives all over the world, far apart.
    const STARTS = [[121.5, 25.04], [-70.6, -33.4], [-0.12, 51.5], [18.42, -33.92], [139.7, 35.7],
        [-157.85, 21.3], [179.9995, -16.8], [-179.9995, 65], [0.0005, 0.0005], [-58.4, -34.6]];

    test('200_random_clicks_are_attributed_to_their_recording_and_second', async () => {
        const random = routes.generator(20120907);
        const tracks = STARTS.map((start, i) => [i + 7, routes.drive(start, 180, random)]);
        for (const [number, places] of tracks) routes.draw(number, places);
        await frames(2);
        const wrong = [];
        for (let n = 0; n < 200; n += 1) {
            const [number, places] = tracks[Math.floor(random() * tracks.length)];
            const i = Math.floor(random() * (places.length - 3));
            const t = 0.2 + 0.6 * random();
            let dx = places[i + 1][0] - places[i][0];
            dx -= Math.round(dx / 360) * 360;
            const place = [places[i][0] + t * dx, places[i][1] + t * (places[i + 1][1] - places[i][1])];
            const found = routes.plainAttribution(pickedAt(place, 18), tracks);
            if (found === null || found.number !== number || found.index !== i + 1) wrong.push([number, i + 1, found]);
        }
        equal(wrong, [], 'clicks attributed elsewhere');
    });

    test('exactly_north_south_segments_are_hit_through_a_neighbour', () => {
        const places = [[121.5, 25.04], [121.5001, 25.0401], [121.5001, 25.0402], [121.5001, 25.0403],
            [121.5002, 25.0404], [121.5003, 25.0405], [121.5004, 25.0406]];
        routes.draw(7, places);
        const found = routes.plainAttribution(pickedAt([121.5001, 25.04015], 19), [[7, places]]);
        equal(found, { number: 7, index: 1 }, 'nearest segment with an inside');
    });

    test('exactly_east_west_segments_are_hit_through_a_neighbour', () => {
        const places = [[-70.5, -33.4], [-70.5001, -33.4001], [-70.5002, -33.4001], [-70.5003, -33.4002],
            [-70.5004, -33.4003], [-70.5005, -33.4004]];
        routes.draw(7, places);
        const found = routes.plainAttribution(pickedAt([-70.50015, -33.4001], 19), [[7, places]]);
        check(found !== null && [1, 3].includes(found.index), `program finds ${JSON.stringify(found)}`);
    });

    test('a_street_without_any_segment_to_hit_is_refused_in_words', () => {
        routes.draw(7, routes.line([121.5, 25.04], [0, 0.0001], 40));
        equal(pickedAt([121.5, 25.042], 17), '', 'varLocal');
        equal(notice(), page.texts.get('notReachable'), 'notice');
    });

    test('the_last_segment_which_the_hit_test_leaves_out_is_hit_through_the_one_before', () => {
        const places = routes.line([121.5, 25.04], [0.0002, 0.0001], 10);
        routes.draw(7, places);
        const found = routes.plainAttribution(pickedAt([121.5017, 25.04085], 18), [[7, places]]);
        equal(found, { number: 7, index: 8 }, 'program');
    });

    test('a_track_of_one_place_is_hit_at_that_place', () => {
        routes.draw(7, [[121.5, 25.04]]);
        equal(routes.plainAttribution(pickedAt([121.5, 25.04], 16), [[7, [[121.5, 25.04]]]]),
            { number: 7, index: 1 }, 'program');
    });

    test('an_earlier_track_over_the_same_street_is_told_apart_where_that_is_possible', () => {
        const first = routes.line([121.5, 25.04], [0.0002, 0.0001], 40);
        const second = routes.line([121.5, 25.0402], [0.0002, 0.0001], 40);
        routes.draw(7, first);
        routes.draw(8, second);
        const tracks = [[7, first], [8, second]];
        for (const [number, places] of tracks) {
            const [x, y] = places[20];
            const found = routes.plainAttribution(pickedAt([x + 0.0001, y + 0.00005], 19), tracks);
            equal(found, { number, index: 21 }, 'program');
        }
    });

    test('a_hidden_route_does_not_take_the_click_of_a_shown_one', () => {
        const first = routes.line([121.5, 25.04], [0.0002, 0.0001], 40);
        const second = routes.line([121.5, 25.04003], [0.0002, 0.0001], 40);
        routes.draw(7, first);
        routes.draw(8, second);
        clearHistroy('007');
        const [x, y] = second[20];
        const found = routes.plainAttribution(pickedAt([x + 0.0001, y + 0.00005], 19), [[7, first], [8, second]]);
        equal(found, { number: 8, index: 21 }, 'program');
    });

    test('places_keep_seven_decimals_near_zero', () => {
        equal([5, -5, 0, 1215000000, -700000001].map(page.degreesText),
            ['0.0000005', '-0.0000005', '0.0000000', '121.5000000', '-70.0000001'], 'texts');
    });
})(window.velmorantSuite);
