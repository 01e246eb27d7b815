'use strict';
// The routes by recording number, in the order in which their numbers first arrived: the order of
// the program's own table, in which its hit test looks. A removed route is no longer shown, but it
// is still in the program's table, so its places stay here for choosing points that it does not take.
(function (velmorantMap) {
    const { Route } = velmorantMap;

    class RouteTable {
        constructor() {
            this.known = new Map();
            this.shown = new Map();
            this.active = null;
            this.growing = null;
            this.growth = new Route.Growth();
            this.listeners = [];
        }

        // listener(event, route): "begun", "grown", "complete", "removed", "active", "data".
        listen(listener) {
            this.listeners.push(listener);
        }

        tell(event, route) {
            for (const listener of this.listeners) listener(event, route);
        }

        begin(number) {
            if (this.shown.has(number)) this.remove(number);
            if (this.growing !== null) this.growing.settle();
            const route = new Route(number, this.growth);
            this.known.set(number, route);
            this.shown.set(number, route);
            this.growing = route;
            this.tell('begun', route);
        }

        add(longitude, latitude) {
            this.growing.add(longitude, latitude);
        }

        grown() {
            if (this.growing !== null) this.tell('grown', this.growing);
        }

        end() {
            const route = this.growing;
            if (route === null) return;
            this.growing = null;
            route.finish();
            this.tell('complete', route);
        }

        // False when no such route is shown.
        remove(number) {
            const route = this.shown.get(number);
            if (route === undefined) return false;
            this.shown.delete(number);
            if (this.growing === route) {
                route.settle();
                this.growing = null;
            }
            if (this.active === route) this.active = null;
            this.tell('removed', route);
            return true;
        }

        activate(route) {
            if (this.active === route) return;
            this.active = route;
            this.tell('active', route);
        }

        // The shown route whose place number index (from 1) is this one, the active one preferred.
        find(index, longitude, latitude) {
            const x = Math.round(longitude * 1e7);
            const y = Math.round(latitude * 1e7);
            const fits = (route) => index >= 1 && index <= route.count &&
                route.x[index - 1] === x && route.y[index - 1] === y;
            if (this.active !== null && fits(this.active)) return this.active;
            for (const route of this.shown.values()) if (fits(route)) return route;
            return null;
        }
    }

    velmorantMap.RouteTable = RouteTable;
})(window.velmorantMap);
