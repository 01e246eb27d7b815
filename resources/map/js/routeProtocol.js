'use strict';
// Reader of the route protocol. A route arrives as texts whose concatenation is
//
//   route  = number group*            then the text "Over"
//   number = digit digit digit digit* (the recording's number, at least three digits)
//   group  = longitude "!" latitude "|"
//
// in decimal degrees. Texts are cut between groups, and the first one begins with the number.
//
// Number and longitude stand side by side: a longitude with its sign ends the number. Without one,
// a number below 1000 has exactly three digits, and longer digit runs are divided so that the first
// longitude lies nearest to the second group's.
//
// Texts that break the grammar are healed or ignored, never thrown at the caller: each bad group
// still takes its place in the route (places are counted), and one line of the log names it.
(function (velmorantMap) {
    const { PageLog } = velmorantMap;
    const COORDINATE = /^[+-]?\d{1,3}(?:\.\d*)?(?:[eE][+-]?\d{1,2})?$/;
    const COORDINATE_LENGTH = 32;
    const NUMBER_LENGTH = 9;
    const SHORTEST_NUMBER = 3;
    const MIDDLE = 33; // !
    const END = 124; // |

    function isDigit(code) {
        return code >= 48 && code <= 57;
    }

    // Degrees, or NaN when the text is no coordinate or lies outside [-limit, limit].
    function readCoordinate(text, limit) {
        if (text.length > COORDINATE_LENGTH || !COORDINATE.test(text)) {
            const bare = text.length <= COORDINATE_LENGTH ? text.trim() : text;
            if (bare === text || !COORDINATE.test(bare)) return NaN;
        }
        const value = Number(text);
        return value >= -limit && value <= limit ? value : NaN;
    }

    // The usual form of a coordinate (sign, digits, point, digits) is read character by character,
    // because routes come by the million: a whole number below 2^53 divided by a power of ten is
    // the same number that the text's own conversion gives.
    // Returns the value and leaves the position behind it in `scanned`; NaN for any other form.
    const POWERS = Array.from({ length: 16 }, (_, i) => Math.pow(10, i));
    let scanned = 0;

    function scanCoordinate(text, position, end) {
        let i = position;
        let code = text.charCodeAt(i);
        const negative = code === 45;
        if (negative || code === 43) i += 1;
        const whole = i;
        let digits = 0;
        while (i < end && isDigit(code = text.charCodeAt(i))) {
            digits = digits * 10 + code - 48;
            i += 1;
        }
        scanned = i;
        if (i === whole || i - whole > 3) return NaN;
        if (code !== 46 || i >= end) return negative ? -digits : digits;
        const point = i;
        i += 1;
        while (i < end && isDigit(code = text.charCodeAt(i))) {
            digits = digits * 10 + code - 48;
            i += 1;
        }
        scanned = i;
        const decimals = i - point - 1;
        if (decimals > 12) return NaN;
        const value = digits / POWERS[decimals];
        return negative ? -value : value;
    }

    function angularDistance(a, b) {
        const difference = Math.abs(a - b) % 360;
        return Math.min(difference, 360 - difference);
    }

    // The ways to divide a digit run into number and whole degrees, the shortest number first.
    function divisions(digits) {
        const found = [];
        for (let length = SHORTEST_NUMBER; length < digits.length; length += 1) {
            const degrees = digits.slice(length);
            const padded = degrees.length > 1 && degrees[0] === '0';
            const overlong = length > SHORTEST_NUMBER && digits[0] === '0';
            if (degrees.length <= 3 && !padded && !overlong && Number(degrees) <= 180) {
                found.push(length);
            }
        }
        return found;
    }

    // What a text begins with: {digits, next} where next is the character behind the digit run.
    function leadingDigits(text) {
        const run = /^\d*/.exec(text)[0];
        return { digits: run, next: text.charAt(run.length) };
    }

    // The last character is looked at first, because nearly all texts end in a bar.
    function endsInOver(text) {
        const last = text.charCodeAt(text.length - 1);
        return (last === 114 || last === 82) && /over$/i.test(text.slice(-4));
    }

    // A longitude has neither four whole digits nor a digit before its sign, so such a text can
    // only be the beginning of a route.
    function beginsRoute(text) {
        if (!isDigit(text.charCodeAt(0))) return false;
        const { digits, next } = leadingDigits(text);
        if (digits.length === 0) return false;
        if (next === '+' || next === '-') return true;
        if (next === '') return digits.length >= SHORTEST_NUMBER;
        return digits.length > SHORTEST_NUMBER && (next === '.' || next === '!');
    }

    // sink: begin(number), point(longitude, latitude) with NaN for an unreadable place, end().
    class RouteProtocol {
        constructor(sink, log) {
            this.sink = sink;
            this.log = log;
            this.open = false;
            this.ignoring = false;
            this.held = '';
            this.tail = '';
        }

        receive(argument) {
            const text = String(argument).trim();
            if (endsInOver(text)) {
                if (text.length > 4) this.receiveText(text.slice(0, -4));
                this.finish();
            } else if (text !== '') {
                this.receiveText(text);
            }
        }

        receiveText(text) {
            const waiting = this.open || this.held !== '' || this.ignoring;
            if (waiting && !this.completesTail(text) && beginsRoute(text)) {
                if (!this.ignoring) this.log.add(`no "Over" before ${PageLog.excerpt(text)}`);
                this.finish();
            }
            if (this.open) {
                this.readGroups(this.tail + text);
            } else if (!this.ignoring) {
                this.readHeader(this.held + text, false);
            }
        }

        // A text that breaks off inside a group is joined with the next one when that makes a group.
        completesTail(text) {
            if (this.tail === '') return false;
            const joined = this.tail + text;
            const end = joined.indexOf('|');
            const middle = joined.indexOf('!');
            return end > middle && middle > 0 &&
                !Number.isNaN(readCoordinate(joined.slice(0, middle), 180)) &&
                !Number.isNaN(readCoordinate(joined.slice(middle + 1, end), 90));
        }

        readHeader(text, last) {
            this.held = '';
            const { digits, next } = leadingDigits(text.slice(0, 64));
            let length = digits.length;
            if (next !== '+' && next !== '-' && text.length > digits.length) {
                const ways = next === '.' || next === '!' ? divisions(digits) : [];
                if (ways.length > 1 && !last && text.indexOf('!', text.indexOf('|')) < 0) {
                    this.held = text;
                    return;
                }
                length = ways.length > 0 ? RouteProtocol.likeliest(text, ways) : 0;
            } else if (text.length === digits.length && !last && length >= SHORTEST_NUMBER) {
                this.held = text;
                return;
            }
            if (length === 0 || length > NUMBER_LENGTH) {
                this.ignoring = true;
                this.log.add(`route without a number ignored: ${PageLog.excerpt(text)}`);
                return;
            }
            this.open = true;
            this.sink.begin(Number(digits.slice(0, length)));
            this.readGroups(text.slice(length));
        }

        // The division whose first longitude is nearest to the second group's.
        static likeliest(text, ways) {
            const second = text.indexOf('|') + 1;
            const neighbour = readCoordinate(text.slice(second, text.indexOf('!', second)), 180);
            if (second === 0 || Number.isNaN(neighbour)) return ways[0];
            const first = text.slice(0, text.indexOf('!'));
            const distance = (length) => angularDistance(Number(first.slice(length)), neighbour);
            return ways.reduce((best, way) => (distance(way) < distance(best) ? way : best));
        }

        readGroups(text) {
            const { length } = text;
            let bad = 0;
            let position = 0;
            while (position < length) {
                const longitude = scanCoordinate(text, position, length);
                const middle = scanned;
                const latitude = scanCoordinate(text, middle + 1, length);
                if (longitude >= -180 && longitude <= 180 && latitude >= -90 && latitude <= 90 &&
                    text.charCodeAt(middle) === MIDDLE && text.charCodeAt(scanned) === END) {
                    this.sink.point(longitude, latitude);
                    position = scanned + 1;
                } else {
                    const end = text.indexOf('|', position);
                    if (end < 0) break;
                    if (end > position && !this.readGroup(text.slice(position, end))) bad += 1;
                    position = end + 1;
                }
            }
            this.tail = text.slice(position);
            if (this.tail.length > 2 * COORDINATE_LENGTH) {
                this.log.add(`text without a group's end ignored: ${PageLog.excerpt(this.tail)}`);
                this.tail = '';
            }
            if (bad > 0) this.log.add(`${bad} unreadable place(s) in ${PageLog.excerpt(text)}`);
        }

        // A group of another form than the usual one, without its bar; false when it is no place.
        readGroup(group) {
            const middle = group.indexOf('!');
            const longitude = middle < 0 ? NaN : readCoordinate(group.slice(0, middle), 180);
            const latitude = middle < 0 ? NaN : readCoordinate(group.slice(middle + 1), 90);
            const good = !Number.isNaN(longitude) && !Number.isNaN(latitude);
            this.sink.point(good ? longitude : NaN, good ? latitude : NaN);
            return good;
        }

        finish() {
            if (this.held !== '') this.readHeader(this.held, true);
            if (this.tail !== '') {
                this.log.add(`half a group dropped: ${PageLog.excerpt(this.tail)}`);
                this.tail = '';
            }
            const complete = this.open;
            this.open = false;
            this.ignoring = false;
            if (complete) this.sink.end();
        }
    }

    velmorantMap.RouteProtocol = RouteProtocol;
})(window.velmorantMap);
