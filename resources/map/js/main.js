'use strict';
// Wiring: the page's parts are made and joined here, and nowhere else.
(function (velmorantMap) {
    const {
        PageLog, Texts, RouteTable, ViewCanvas, BaseMap, Graticule, RoutePainter, Car, ViewControl,
        Controls, Notices, LayersPanel, RecordingData, SpeedColours, Hover, Configuration, StreetTiles,
        WholeWindow, preferences,
    } = velmorantMap;
    const GROWTH_DELAY_MS = 250;
    const LONGEST_GROWTH_DELAY_MS = 1000;
    const TIDY_DELAY_MS = 400;

    function makeMap() {
        const map = L.map('map', {
            center: [20, 0], zoom: 1, minZoom: 0, maxZoom: 20, zoomSnap: 0.5, zoomControl: false,
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
        const graticule = new Graticule();
        const base = new BaseMap(texts, graticule.paintLines.bind(graticule));
        const ground = new ViewCanvas(base.paint.bind(base), { pane: 'base' });
        const overlay = new ViewCanvas(graticule.paint.bind(graticule), { pane: 'overlay', exact: true, padding: 0.1 });
        ground.addTo(map);
        overlay.addTo(map);
        const load = () => velmorantMap.readWorld(log, (world) => {
            base.world = world;
            ground.refresh();
        });
        return { base, graticule, ground, overlay, load };
    }

    // Growth is added to the picture a few times a second, because each time costs a new frame of the
    // whole map, and less and less often while it goes on, because hundreds of routes should come
    // soon rather than smoothly. When it pauses, all is painted again, so that casings, signs and
    // order are right.
    function makeRoutes(map, table, speedColours) {
        const painter = new RoutePainter(table, speedColours);
        const canvas = new ViewCanvas(painter.paint.bind(painter), { pane: 'routes' });
        canvas.addTo(map);
        const grown = new Set();
        let growth = 0;
        let delay = GROWTH_DELAY_MS;
        let tidy = 0;
        const tidyUp = () => {
            delay = GROWTH_DELAY_MS;
            canvas.refresh();
        };
        const tidyLater = () => {
            clearTimeout(tidy);
            tidy = setTimeout(tidyUp, Math.max(TIDY_DELAY_MS, delay + GROWTH_DELAY_MS));
        };
        const grow = () => {
            growth = 0;
            delay = Math.min(LONGEST_GROWTH_DELAY_MS, 1.5 * delay);
            for (const route of grown) {
                if (table.shown.get(route.number) === route) painter.paintGrowth(canvas.front, route);
            }
            grown.clear();
            tidyLater();
        };
        const changed = (event, route) => {
            if (event === 'grown' || event === 'complete') {
                grown.add(route);
                if (growth === 0) growth = setTimeout(grow, delay);
            } else if (event === 'active' || event === 'removed') {
                canvas.refresh();
            } else {
                tidyLater();
            }
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
    const speedColours = new SpeedColours(document.body, preferences.get('speedColours', true));
    const routes = makeRoutes(map, table, speedColours);
    const view = new ViewControl(map, table, preferences.get('follow', true), () => routes.duration);
    const data = new RecordingData(table, speedColours, log);
    const hover = new Hover(map, table, texts, speedColours, (route) => data.want(route));
    const car = new Car(map, table, {
        onMove: (latLng) => view.keepInView(latLng),
        onFix: (known) => notices.showFix(known, texts.get('noFix')),
    });
    const tiles = new StreetTiles(map, () => showSource());
    const controls = new Controls(texts, document.body);

    function showSource() {
        overTiles(tiles.shown() && tiles.coming && !tiles.failing);
        if (!tiles.shown()) notices.showSource(texts.get('baseOnly'), null);
        else if (tiles.failing) notices.showSource(texts.get('tilesFailing'), null);
        else if (!tiles.coming) notices.showSource(texts.get('tilesWaiting'), null);
        else notices.showSource(tiles.provider.attribution, tiles.provider.link);
    }

    function overTiles(on) {
        if (baseLayers.graticule.overTiles === on) return;
        baseLayers.graticule.overTiles = on;
        baseLayers.overlay.refresh();
    }

    function showLegend() {
        const before = speedColours.legend.hidden;
        const told = [...table.shown.values()].some((route) => route.data !== null);
        speedColours.showLegend(told, texts.get('speedLegend'));
        if (speedColours.legend.hidden !== before) view.routesChanged();
    }

    // Routes -> view, data, buttons
    table.listen((event, route) => {
        if (event === 'complete' || event === 'removed') view.routesChanged();
        if (event === 'complete') data.wantLater(route);
        if (event === 'removed') data.forget(route);
        if (event === 'active') data.want(route);
        if (event === 'data' || event === 'removed') showLegend();
        if (event !== 'grown') showButtons();
    });

    // Clicks -> program
    velmorantMap.listenToClicks(map, table, {
        picked: (point) => velmorantMap.reportPicked(point),
        refused: () => notices.say(texts.get('notReachable')),
    });

    // Buttons -> view and layers
    const left = controls.group('left');
    controls.button(left, 'zoomIn', () => { view.userMoved(); map.zoomIn(); });
    controls.button(left, 'zoomOut', () => { view.userMoved(); map.zoomOut(); });
    const right = controls.group('right');
    const fitAll = controls.button(right, 'fitAll', () => view.fitAll());
    const fitActive = controls.button(right, 'fitActive', () => view.fitActive());
    const follow = controls.button(right, 'follow', () => {
        view.setFollow(!view.follow);
        preferences.set('follow', view.follow);
        Controls.press(follow, view.follow);
    });
    Controls.press(follow, view.follow);

    // The program's list asks for one recording by its number; a number without a route does nothing.
    velmorantMap.showRecording = (number) => view.fitRecording(number);

    // The program tells that its settings are others, or that it took the whole window back.
    velmorantMap.readConfiguration = () => configuration.readNow();

    function showButtons() {
        fitAll.disabled = table.shown.size === 0;
        fitActive.disabled = table.active === null;
    }

    baseLayers.base.showNames = preferences.get('names', true);
    baseLayers.graticule.visible = preferences.get('grid', true);
    car.gliding = preferences.get('glide', true);
    tiles.visible = preferences.get('tiles', true);
    const panel = new LayersPanel(controls, right, [
        ['tiles', tiles.visible, (on) => { tiles.show(on); showSource(); }],
        ['speedColours', speedColours.visible, (on) => {
            speedColours.visible = on;
            showLegend();
            routes.refresh();
        }],
        ['names', baseLayers.base.showNames, (on) => {
            baseLayers.base.showNames = on;
            baseLayers.ground.refresh();
        }],
        ['grid', baseLayers.graticule.visible, (on) => {
            baseLayers.graticule.visible = on;
            baseLayers.ground.refresh();
            baseLayers.overlay.refresh();
        }],
        ['glide', car.gliding, (on) => { car.gliding = on; }],
    ]);

    // Configuration -> tiles, units, language, whole window
    const configuration = new Configuration(log, (values) => {
        if (typeof values.language === 'string') useLanguage(values.language);
        tiles.use(configuration.tiles());
        panel.offer('tiles', tiles.provider !== null);
        if (speedColours.use(values.unit)) judgeSpeeds();
        wholeWindow.update();
        showSource();
    });
    const enlarge = controls.button(right, 'wholeWindow', () => wholeWindow.toggle());
    const wholeWindow = new WholeWindow(configuration, log, (possible, on) => {
        enlarge.hidden = !possible;
        Controls.press(enlarge, on);
    });

    function judgeSpeeds() {
        const classOf = (speed) => speedColours.classOf(speed);
        for (const route of table.shown.values()) if (route.data !== null) route.adopt(route.data, classOf);
        showLegend();
        routes.refresh();
    }

    function useLanguage(language) {
        texts.use(language);
        document.documentElement.lang = texts.language;
        document.title = texts.get('map');
        map.getContainer().setAttribute('aria-label', texts.get('map'));
        controls.rename();
        showSource();
        showLegend();
        baseLayers.ground.refresh();
    }

    // Farther out the world would be lower than the map, with nothing above and below it.
    function fitWorld() {
        map.invalidateSize({ animate: false });
        map.setMinZoom(Math.max(0, Math.ceil(Math.log2(map.getSize().y / 256) * 2) / 2));
        configuration.read();
        view.routesChanged();
    }

    map.getContainer().setAttribute('role', 'application');
    useLanguage(texts.chinese ? 'zh-TW' : 'en');
    panel.offer('tiles', false);
    showButtons();
    wholeWindow.update();

    velmorantMap.installContract(table, car, log);
    Object.assign(velmorantMap, {
        log, texts, map, table, car, view, routes, notices, baseLayers, data, hover, speedColours,
        tiles, configuration, wholeWindow,
    });
    window.addEventListener('resize', fitWorld);
    map.getContainer().addEventListener('mouseenter', () => configuration.read());
    fitWorld();
    requestAnimationFrame(() => setTimeout(baseLayers.load, 0));
})(window.velmorantMap);
