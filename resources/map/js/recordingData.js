'use strict';
// What the serving program tells of a recording, asked for by number, one request at a time: the
// recording that matters now first, the others while nothing else goes on. On a web server, where
// nothing answers, the asking ends after a few attempts.
(function (velmorantMap) {
    const ATTEMPTS_WITHOUT_ANSWER = 3;
    const IDLE_MS = 400;
    const TIME_BASES = ['utc', 'camera', 'creation', 'none'];

    function typed(ArrayType, values, usual) {
        return ArrayType.from(values, (value) => (Number.isFinite(value) ? value : usual));
    }

    // The answer in the page's form, or an Error that says what is wrong with it:
    // {name, locked, start (milliseconds or NaN), timeBase, second, speed, fix or null, count}.
    function read(answer) {
        if (answer === null || typeof answer !== 'object') throw new Error('not an object');
        const { second, speed, fix } = answer;
        if (!Array.isArray(second) || !Array.isArray(speed)) throw new Error('no seconds or speeds');
        if (speed.length !== second.length) throw new Error('seconds and speeds differ in number');
        if (fix !== undefined && (!Array.isArray(fix) || fix.length !== second.length)) {
            throw new Error('seconds and fixes differ in number');
        }
        return {
            name: typeof answer.name === 'string' ? answer.name : '',
            locked: answer.kind === 'locked',
            start: Date.parse(answer.utcStart),
            timeBase: TIME_BASES.includes(answer.timeBase) ? answer.timeBase : 'utc',
            second: typed(Int32Array, second, 0),
            speed: typed(Float32Array, speed, 0),
            fix: fix === undefined ? null : typed(Uint8Array, fix, 1),
            count: second.length,
        };
    }

    class RecordingData {
        constructor(table, speedColours, log) {
            this.table = table;
            this.speedColours = speedColours;
            this.log = log;
            this.waiting = [];
            this.asked = new WeakSet();
            this.busy = false;
            this.failures = 0;
            this.answered = false;
            this.timer = 0;
        }

        given() {
            return !this.answered && this.failures >= ATTEMPTS_WITHOUT_ANSWER;
        }

        // Asks before all others; nothing happens for a recording that was asked for already.
        want(route) {
            if (this.given() || !route.complete || this.asked.has(route)) return;
            this.waiting = this.waiting.filter((other) => other !== route);
            this.waiting.unshift(route);
            this.next();
        }

        // Asks when the program has sent nothing for a while.
        wantLater(route) {
            if (this.given()) return;
            this.waiting.push(route);
            clearTimeout(this.timer);
            this.timer = setTimeout(() => this.next(), IDLE_MS);
        }

        forget(route) {
            this.waiting = this.waiting.filter((other) => other !== route);
        }

        next() {
            if (this.busy || this.given()) return;
            const route = this.waiting.shift();
            if (route === undefined) return;
            if (this.asked.has(route)) {
                this.next();
                return;
            }
            this.asked.add(route);
            this.busy = true;
            velmorantMap.readJson(`track/${route.number}.json`, (answer) => {
                this.busy = false;
                if (answer === null) this.failures += 1;
                else this.take(route, answer);
                setTimeout(() => this.next(), 0);
            });
        }

        take(route, answer) {
            try {
                const data = read(answer);
                this.answered = true;
                if (data.count !== route.count) {
                    this.log.add(`track ${route.number}: ${data.count} seconds for ${route.count} places`);
                }
                route.adopt(data, (speed) => this.speedColours.classOf(speed));
                this.table.tell('data', route);
            } catch (error) {
                this.failures += 1;
                this.log.add(`track ${route.number} cannot be read: ${error.message}`);
            }
        }
    }

    RecordingData.read = read;
    velmorantMap.RecordingData = RecordingData;
})(window.velmorantMap);
