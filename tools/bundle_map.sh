#!/bin/sh
# Refreshes the packages that are bundled with the map page (resources/map/vendor) and the names on
# its base map (resources/map/data/places.json). Needs npm, a network and tzdata; the results are
# committed, so that building the program needs none of them.
set -eu
here=$(cd "$(dirname "$0")" && pwd)
packages=$(mktemp -d)
trap 'rm -rf "$packages"' EXIT
map=$here/../resources/map
zones=/usr/share/zoneinfo/zone.tab

[ -r "$zones" ] || { echo "bundle_map: $zones is missing (package tzdata)" >&2; exit 1; }
cp "$here/map_packages/"* "$packages/"
(cd "$packages" && npm ci --ignore-scripts --no-fund --no-audit)

vendor=$map/vendor
rm -rf "$vendor.part"
mkdir -p "$vendor.part/leaflet" "$vendor.part/topojson-client" "$vendor.part/world-atlas"
modules=$packages/node_modules
cp "$modules/leaflet/LICENSE" "$modules/leaflet/dist/leaflet.css" "$vendor.part/leaflet/"
# The source map is not shipped, so the line that names it goes too.
grep -v '^//# sourceMappingURL=' "$modules/leaflet/dist/leaflet.js" > "$vendor.part/leaflet/leaflet.js"
cp "$modules/topojson-client/LICENSE" "$modules/topojson-client/dist/topojson-client.min.js" \
    "$vendor.part/topojson-client/"
cp "$modules/world-atlas/LICENSE" "$modules/world-atlas/countries-50m.json" "$vendor.part/world-atlas/"
cp "$modules/cldr-core/LICENSE" "$vendor.part/LICENSE.unicode-locale-data"
for name in leaflet topojson-client world-atlas; do
    node -p "const p = require('$modules/$name/package.json'); p.name + ' ' + p.version + ', ' + p.license" \
        > "$vendor.part/$name/VERSION"
done
rm -rf "$vendor"
mv "$vendor.part" "$vendor"

mkdir -p "$map/data"
node "$packages/make_places.js" "$zones" "$map/data/places.json"
echo "bundle_map: $(cat "$vendor"/*/VERSION | tr '\n' ';')"
