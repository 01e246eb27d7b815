'use strict';
// With the answers of the serving program.
(function (suite) {
    const { test, check, equal, frames, until, routes } = suite;
    const page = window.velmorantMap;
    const DRIVE = routes.line([121.5, 25.04], [0.0001, 0.00005], 180);

    function dataOf(number) {
        return page.table.shown.get(number).data;
    }

    function hoverAt(place) {
        const { map } = page;
        const at = map.latLngToContainerPoint([place[1], place[0]]);
        map.getContainer().dispatchEvent(new MouseEvent('mousemove', {
            bubbles: true, view: window, clientX: at.x, clientY: at.y,
        }));
    }

    test('the_data_of_a_recording_are_asked_for_by_number', async () => {
        routes.draw(7, DRIVE);
        routes.draw(12345, DRIVE);
        await until(() => dataOf(7) !== null && dataOf(12345) !== null, 'both recordings are told');
        equal([dataOf(7).name, dataOf(7).locked, dataOf(7).count], ['100007.MP4', true, 180], 'recording 7');
    });

    test('the_active_recording_is_asked_for_at_once', async () => {
        routes.draw(7, DRIVE);
        MoveCar('121.5|25.04|1|90');
        await until(() => dataOf(7) !== null, 'the recording is told', 350);
    });

    test('speed_colours_come_with_a_legend', async () => {
        routes.draw(7, DRIVE);
        const legend = document.getElementById('legend');
        check(legend.hidden, 'a legend without speeds');
        MoveCar('121.5|25.04|1|90');
        await until(() => !legend.hidden, 'the legend is shown');
        check(/km\/h/.test(legend.textContent), legend.textContent);
        const route = page.table.shown.get(7);
        equal([0, 40, 50].map((i) => route.speedClassOf(i)), [5, 2, 1], 'classes of 110, 30 and 10 km/h');
    });

    test('another_unit_changes_the_classes_and_the_legend', async () => {
        routes.draw(7, DRIVE);
        MoveCar('121.5|25.04|1|90');
        await until(() => dataOf(7) !== null, 'the recording is told');
        const before = JSON.parse(page.configuration.text);
        page.configuration.take({ ...before, unit: { factor: 0.6213712, label: 'mph' } });
        equal(page.speedColours.speedText(60), '37.3 mph', 'speed');
        equal(page.table.shown.get(7).speedClassOf(40), 2, 'class of 18.6 mph');
        check(/mph/.test(document.getElementById('legend').textContent), 'the legend shows another unit');
        page.configuration.take(before);
        equal(page.speedColours.speedText(60), '60.0 km/h', 'speed');
    });

    test('hovering_tells_recording_clock_time_and_speed', async () => {
        routes.draw(7, DRIVE);
        routes.look(DRIVE[60][0], DRIVE[60][1], 18);
        await frames(2);
        const box = document.getElementById('hover');
        await until(() => {
            hoverAt(DRIVE[60]);
            return !box.hidden && /MP4/.test(box.textContent);
        }, 'the recording is named');
        equal([...box.children].map((line) => line.textContent),
            [`100007.MP4 · ${page.texts.get('locked')}`, '2012/9/7 08:06:09 UTC (01:00)', '10.0 km/h'], 'lines');
        hoverAt([DRIVE[60][0], DRIVE[60][1] + 0.0006]);
        await until(() => box.hidden, 'the box is gone');
    });

    test('seconds_without_a_fix_show_no_car', async () => {
        const held = DRIVE.map((place, i) => (i >= 20 && i < 26 ? DRIVE[19] : place));
        routes.draw(7, held);
        MoveCar(`${held[10][0].toFixed(7)}|${held[10][1].toFixed(7)}|11|90`);
        await until(() => dataOf(7) !== null, 'the recording is told');
        const route = page.table.shown.get(7);
        equal([19, 20, 25, 26].map((i) => route.hasFix(i)), [true, false, false, true], 'fixes');
        equal(route.linkOf(26), page.Route.Link.FIX_LOST, 'link after the gap');
        MoveCar(`${held[22][0].toFixed(7)}|${held[22][1].toFixed(7)}|23|90`);
        check(document.querySelector('.car') === null, 'the car stands at a place carried over');
        check(!document.getElementById('no-fix').hidden, 'no notice');
        MoveCar(`${held[27][0].toFixed(7)}|${held[27][1].toFixed(7)}|28|90`);
        check(document.querySelector('.car') !== null, 'the car does not come back');
    });

    test('seconds_before_the_first_fix_show_no_car', () => {
        routes.draw(7, DRIVE.map((place, i) => (i < 5 ? DRIVE[5] : place)));
        const route = page.table.shown.get(7);
        page.data.take(route, {
            second: DRIVE.map((_, i) => i), speed: DRIVE.map(() => 50), fix: DRIVE.map((_, i) => (i < 5 ? 0 : 1)),
        });
        equal([0, 4, 5, 6].map((i) => route.hasFix(i)), [false, false, true, true], 'fixes');
        const [x, y] = DRIVE[5].map((value) => value.toFixed(7));
        MoveCar(`${x}|${y}|1|90`);
        check(document.querySelector('.car') === null, 'a car before the first fix');
        MoveCar(`${x}|${y}|6|90`);
        check(document.querySelector('.car') !== null, 'no car at the first fix');
    });

    test('a_recording_without_any_fix_keeps_its_drawing', () => {
        routes.draw(7, DRIVE);
        const route = page.table.shown.get(7);
        page.data.take(route, { second: DRIVE.map((_, i) => i), speed: DRIVE.map(() => 0), fix: DRIVE.map(() => 0) });
        check(!route.isEmpty(), 'the route is taken for empty');
    });

    test('the_clock_time_says_what_it_rests_on', () => {
        routes.draw(7, DRIVE);
        const route = page.table.shown.get(7);
        const answer = { utcStart: '2012-09-07T23:59:58Z', second: DRIVE.map((_, i) => i), speed: DRIVE.map(() => 50) };
        const whenOf = (timeBase) => {
            page.data.take(route, { ...answer, timeBase });
            return page.hover.lines(route, 3)[1];
        };
        equal(whenOf('camera'), `2012/9/8 00:00:01 ${page.texts.get('camera')} (00:03)`, 'camera');
        equal(whenOf(undefined), '2012/9/8 00:00:01 UTC (00:03)', 'UTC');
        equal(whenOf('none'), '00:03', 'none');
    });

    test('data_that_break_the_form_are_logged_and_left_out', () => {
        routes.draw(7, DRIVE);
        const route = page.table.shown.get(7);
        for (const answer of [[], {}, 'text', { second: [1], speed: [] }, { second: [1], speed: [1], fix: [] }]) {
            page.data.take(route, answer);
        }
        equal(route.data, null, 'data');
        equal(page.log.lines.length, 5, 'log lines');
        page.data.take(route, { second: [0, 1], speed: [1, 'x'] });
        equal(route.data.count, 2, 'seconds told');
    });

    test('the_whole_window_is_asked_of_the_program', async () => {
        await until(() => page.configuration.answers('whole-window'), 'the program offers it');
        const button = document.getElementById('wholeWindow');
        check(!button.hidden, 'no button');
        button.click();
        await until(() => button.getAttribute('aria-pressed') === 'true', 'the button is pressed');
        button.click();
        await until(() => button.getAttribute('aria-pressed') === 'false', 'the button is released');
    });

    test('what_the_program_changes_by_itself_is_taken_over', async () => {
        const before = JSON.parse(page.configuration.text);
        const readJson = page.readJson;
        const button = document.getElementById('wholeWindow');
        button.click();
        await until(() => button.getAttribute('aria-pressed') === 'true', 'the map is whole');
        // The program takes the window back, and its user chooses another unit.
        page.readJson = (file, done) => done({ ...before, wholeWindow: false, unit: { factor: 0.5399568, label: 'kn' } });
        page.readConfiguration();
        page.readJson = readJson;
        equal(button.getAttribute('aria-pressed'), 'false', 'the button');
        equal(page.speedColours.label, 'kn', 'unit');
        page.configuration.take(before);
        page.wholeWindow.ask(false);
    });

    test('the_bubble_goes_when_the_map_changes_its_size', async () => {
        routes.draw(7, DRIVE);
        routes.look(DRIVE[60][0], DRIVE[60][1], 18);
        await frames(2);
        const box = document.getElementById('hover');
        await until(() => {
            hoverAt(DRIVE[60]);
            return !box.hidden;
        }, 'the bubble is shown');
        page.map.fire('resize');
        check(box.hidden, 'the bubble stays');
    });

    test('a_locked_recording_is_called_as_in_the_list', () => {
        equal(page.Texts.TABLE.locked, ['locked', '保護'], 'word');
        equal(new page.SpeedColours(document.createElement('div'), true).label, 'km/h', 'unit');
    });

    test('a_program_without_a_provider_is_asked_for_no_tile', () => {
        equal(page.tiles.shown(), false, 'tiles');
        equal(document.getElementById('source').textContent, page.texts.get('baseOnly'), 'source');
    });

    test('the_language_follows_the_configuration', () => {
        const before = JSON.parse(page.configuration.text);
        page.configuration.take({ ...before, language: 'zh-TW' });
        equal(document.getElementById('zoomIn').getAttribute('aria-label'), '放大', 'button');
        equal(document.documentElement.lang, 'zh-Hant', 'language');
        page.configuration.take({ ...before, language: 'en' });
        equal(document.getElementById('zoomIn').getAttribute('aria-label'), 'Zoom in', 'button');
        page.configuration.take(before);
    });
})(window.velmorantSuite);
