'use strict';
// The script interface: getContentHis, MoveCar, clearHistroy and varLocal as members of the window.
// No call throws, whatever it is given: a caller that sees an error may stop calling.

// The picked place: one leading character, then longitude "," latitude in decimal degrees; "" when
// nothing is pending. The program empties it when it has read it.
var varLocal = '';

// Read by the program once the page stands: routes may come in one go, without the pauses that a page
// needs which draws at every call.
var velmorantWholeRoutes = 'yes';

(function (velmorantMap) {
    const { PageLog, RouteProtocol, Car } = velmorantMap;
    const PICKED = 'P';

    // 10^-7 degrees as decimal text, exactly.
    function degreesText(value) {
        const digits = String(Math.abs(value)).padStart(8, '0');
        return `${value < 0 ? '-' : ''}${digits.slice(0, -7)}.${digits.slice(-7)}`;
    }

    function guarded(name, log, work) {
        return function (argument) {
            try {
                work(argument);
            } catch (error) {
                log.add(`${name}(${PageLog.excerpt(argument)}): ${error.message}`);
            }
        };
    }

    function clear(table, log, argument) {
        const text = String(argument).trim();
        const known = /^\d{1,9}$/.test(text) && table.remove(Number(text));
        if (!known) log.add(`no route to remove: ${PageLog.excerpt(text)}`);
    }

    velmorantMap.installContract = function (table, car, log) {
        const protocol = new RouteProtocol({
            begin: (number) => table.begin(number),
            point: (longitude, latitude) => {
                if (table.growing !== null) table.add(longitude, latitude);
            },
            end: () => table.end(),
        }, log);
        window.getContentHis = guarded('getContentHis', log, (argument) => {
            protocol.receive(argument);
            table.grown();
        });
        window.MoveCar = guarded('MoveCar', log, (argument) => {
            const call = Car.readCall(argument);
            if (call === null) log.add(`MoveCar ignored: ${PageLog.excerpt(argument)}`);
            else car.move(call);
        });
        window.clearHistroy = guarded('clearHistroy', log, (argument) => clear(table, log, argument));
    };

    velmorantMap.reportPicked = function (point) {
        window.varLocal = `${PICKED}${degreesText(point.x)},${degreesText(point.y)}`;
    };
    velmorantMap.degreesText = degreesText;
})(window.velmorantMap);
