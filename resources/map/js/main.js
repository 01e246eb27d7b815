'use strict';
// Wiring: the page's parts are made and joined here, and nowhere else.
(function (velmorantMap) {
    const {
        PageLog, Texts, RouteTable, ViewCanvas, BaseMap, Graticule, RoutePainter, Car, ViewControl,
        Controls, Notices, preferences,
    } = velmorantMap;
    const TIDY_DELAY_MS = 300;

    function makeMap() {
        const map = L.map('map', {
            center: [20, 0], zoom: 1, minZoom: 0, maxZoom: 19, zoomSnap: 0.5, zoomControl: false,
            attributionControl: false, zoomAnimation: true, maxBoundsViscosity: 1,
            maxBounds: [[-85.06, -100000], [85.06, 100000]],
        });
        const pane = (name, order) => { map.createPane(name).style.zIndex = order; };
        pane('base', 150);
        pane('overlay', 300);
        pane('routes', 400);
        pane('car', 620);
        L.control.scale({ imperial: false, maxWidth: 90 }).addTo(map);
        return map;
    }

    function makeBase(map, texts, log) {
        const base = new BaseMap(texts);
        const graticule = new Graticule();
        const ground = new ViewCanvas((context, view) => base.paint(context, view), { pane: 'base' });
        const overlay = new ViewCanvas((context, view) => {
            const corner = map.containerPointToLayerPoint([0, 0]).subtract(overlay._bounds.min);
            const size = map.getSize();
            graticule.paint(context, view, {
                left: corner.x, top: corner.y, right: corner.x + size.x, bottom: corner.y + size.y,
            });
            base.paintNames(context, view);
        }, { pane: 'overlay' });
        ground.addTo(map);
        overlay.addTo(map);
        const load = () => velmorantMap.readWorld(log, (world) => {
            base.world = world;
            ground.refresh();
            overlay.refresh();
        });
        return { base, graticule, ground, overlay, load };
    }

    // Growth is added to the picture once per frame; when it pauses, the whole is painted again, so
    // that casings, signs and order are right.
    function makeRoutes(map, table, speedColours) {
        const painter = new RoutePainter(table, speedColours);
        const canvas = new ViewCanvas((context, view) => painter.paint(context, view), { pane: 'routes' });
        canvas.addTo(map);
        let frame = 0;
        let tidy = 0;
        const grow = () => {
            frame = 0;
            if (!map._animatingZoom) painter.paintGrowth(canvas.context, canvas.view);
        };
        const changed = (event) => {
            if (event === 'grown') {
                if (frame === 0) frame = requestAnimationFrame(grow);
            } else if (event === 'complete') {
                grow();
            } else {
                canvas.refresh();
                return;
            }
            clearTimeout(tidy);
            tidy = setTimeout(() => canvas.refresh(), TIDY_DELAY_MS);
        };
        table.listen(changed);
        return canvas;
    }

    const log = new PageLog();
    const texts = new Texts(navigator.language);
    const table = new RouteTable();
    const map = makeMap();
    const notices = new Notices(document.body);
    const baseLayers = makeBase(map, texts, log);
    const speedColours = { visible: false, colourOf: () => null };
    const routes = makeRoutes(map, table, speedColours);
    const view = new ViewControl(map, table, preferences.get('follow', true));
    const car = new Car(map, table, {
        onMove: (latLng) => view.keepInView(latLng),
        onFix: (known) => notices.showFix(known, texts.get('noFix')),
    });

    // Routes -> view
    table.listen((event) => {
        if (event === 'complete' || event === 'removed') view.routesChanged();
    });

    // Clicks -> program
    velmorantMap.listenToClicks(map, table, {
        picked: (point) => velmorantMap.reportPicked(point),
        refused: () => notices.say(texts.get('notReachable')),
    });

    // Buttons -> view
    const controls = new Controls(texts, document.body);
    const left = controls.group('left');
    controls.button(left, 'zoomIn', () => { view.userMoved(); map.zoomIn(); });
    controls.button(left, 'zoomOut', () => { view.userMoved(); map.zoomOut(); });
    const right = controls.group('right');
    controls.button(right, 'fitAll', () => view.fitAll());
    controls.button(right, 'fitActive', () => view.fitActive());
    const follow = controls.button(right, 'follow', () => {
        view.setFollow(!view.follow);
        preferences.set('follow', view.follow);
        Controls.press(follow, view.follow);
    });
    Controls.press(follow, view.follow);

    document.documentElement.lang = texts.language;
    document.title = texts.get('map');
    map.getContainer().setAttribute('aria-label', texts.get('map'));
    map.getContainer().setAttribute('role', 'application');
    notices.showSource(texts.get('baseOnly'), null);

    velmorantMap.installContract(table, car, log);
    Object.assign(velmorantMap, { log, texts, map, table, car, view, routes, notices, baseLayers });
    window.addEventListener('resize', () => map.invalidateSize({ animate: false }));
    requestAnimationFrame(() => setTimeout(baseLayers.load, 0));
})(window.velmorantMap);
