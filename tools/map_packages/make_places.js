'use strict';
// Writes the names that the base map shows:
//   make_places.js ZONE_TABLE OUTPUT
// ZONE_TABLE is the time-zone table of tzdata (public domain): each zone is named after its largest
// city and carries that city's place. The Chinese names come from the Unicode locale data.
//
// OUTPUT is JSON: {"countries": {"158": "台灣", ...}, "cities": [["Taipei", "台北", 121.5, 25.05], ...]}
// with countries by their ISO 3166 number and cities as English name, Chinese name or null,
// longitude, latitude.
const fs = require('fs');
const path = require('path');

const packages = path.join(__dirname, 'node_modules');
const read = (...parts) => JSON.parse(fs.readFileSync(path.join(packages, ...parts), 'utf8'));

function degrees(text) {
    const sign = text[0] === '-' ? -1 : 1;
    const digits = text.slice(1);
    const wide = digits.length === 5 || digits.length === 7 ? 3 : 2;
    const part = (from, to) => Number(digits.slice(from, to) || 0);
    const value = part(0, wide) + part(wide, wide + 2) / 60 + part(wide + 2, wide + 4) / 3600;
    return Math.round(sign * value * 1000) / 1000;
}

function exemplarCity(names, zone) {
    const entry = zone.split('/').reduce((node, key) => (node ? node[key] : undefined), names);
    return entry && typeof entry.exemplarCity === 'string' ? entry.exemplarCity : null;
}

function cities(zoneTable) {
    const zoneNames = (locale) =>
        read('cldr-dates-full', 'main', locale, 'timeZoneNames.json').main[locale].dates.timeZoneNames.zone;
    const english = zoneNames('en');
    const chinese = zoneNames('zh-Hant');
    const list = [];
    for (const line of fs.readFileSync(zoneTable, 'utf8').split('\n')) {
        if (!line || line[0] === '#') continue;
        const [, place, zone] = line.split('\t');
        const [, latitude, longitude] = /^([+-]\d+)([+-]\d+)$/.exec(place);
        const name = exemplarCity(english, zone) || zone.split('/').pop().replace(/_/g, ' ');
        list.push([name, exemplarCity(chinese, zone), degrees(longitude), degrees(latitude)]);
    }
    return list.sort((a, b) => (a[0] < b[0] ? -1 : 1));
}

function countries() {
    const codes = read('cldr-core', 'supplemental', 'codeMappings.json').supplemental.codeMappings;
    const names = read('cldr-localenames-full', 'main', 'zh-Hant', 'territories.json')
        .main['zh-Hant'].localeDisplayNames.territories;
    const table = {};
    for (const [code, mapping] of Object.entries(codes)) {
        if (/^[A-Z]{2}$/.test(code) && mapping._numeric && names[code]) {
            table[mapping._numeric] = names[`${code}-alt-short`] || names[code];
        }
    }
    return table;
}

const [zoneTable, output] = process.argv.slice(2);
const lines = cities(zoneTable).map((city) => JSON.stringify(city));
const text = `{"countries":${JSON.stringify(countries())},\n"cities":[\n${lines.join(',\n')}\n]}\n`;
fs.writeFileSync(`${output}.part`, text);
fs.renameSync(`${output}.part`, output);
