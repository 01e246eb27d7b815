#!/usr/bin/env python3
"""Holds what dvr-track writes of every layout against the rules of the formats.

usage: export_validity.py DVR_TRACK MAKE_RECORDINGS GRAMMARS

GPX and KML are held against the grammars, GeoJSON against RFC 7946. First each check has to refuse
what breaks a rule.
"""
import copy
import json
import pathlib
import subprocess
import sys
import tempfile

dvr_track, make_recordings, grammars = sys.argv[1:4]
failed = []


def grammar_complaint(grammar, text):
    """What the grammar has against the text; empty where it is valid."""
    run = subprocess.run(
        ["xmllint", "--noout", "--huge", "--relaxng", str(pathlib.Path(grammars, grammar)), "-"],
        input=text.encode(), stderr=subprocess.PIPE, check=False)
    return "" if run.returncode == 0 else run.stderr.decode()[:500] or "invalid"


def position_complaint(position):
    if not 2 <= len(position) <= 3 or not all(isinstance(n, (int, float)) for n in position):
        return f"a position of {position}"
    if not -180 <= position[0] <= 180 or not -90 <= position[1] <= 90:
        return f"a position beyond the earth: {position}"
    return ""


def geojson_complaint(text):
    """RFC 7946: the members that each object must have, and what a line is."""
    try:
        collection = json.loads(text)
    except ValueError as error:
        return str(error)
    if collection.get("type") != "FeatureCollection" or not isinstance(
            collection.get("features"), list):
        return "no collection of features"
    for feature in collection["features"]:
        if feature.get("type") != "Feature" or not {"geometry", "properties"} <= feature.keys():
            return "a feature without its members"
        geometry = feature["geometry"]
        if geometry is None:
            continue
        if geometry.get("type") != "MultiLineString":
            return "a geometry of an unknown type"
        for line in geometry["coordinates"]:
            if len(line) < 2:
                return "a line of one position"
            for position in line:
                if position_complaint(position):
                    return position_complaint(position)
            for before, after in zip(line, line[1:]):
                if abs(after[0] - before[0]) > 180:
                    return "a line across the 180th meridian"
        shape = [len(line) for line in geometry["coordinates"]]
        for name, values in feature["properties"].items():
            if isinstance(values, list) and [len(part) for part in values] != shape:
                return f"{name} has another shape than the places"
    return ""


def expect(valid, complaint, what):
    if valid and complaint:
        failed.append(f"{what}: {complaint}")
    if not valid and not complaint:
        failed.append(f"{what}: the check did not notice")


def check_the_checks(gpx, kml, geojson):
    """Each check must see what is broken on purpose."""
    def gpx_with(old, new):
        assert old in gpx, old
        expect(False, grammar_complaint("gpx-1.1.rng", gpx.replace(old, new, 1)),
               f"GPX with {new} for {old}")
    gpx_with("<time>20", "<time>noon 20")
    gpx_with('lon="', 'lon="1')
    gpx_with("<trkseg>", "<segment>")
    gpx_with("<src>", "<link>no address</link><src>")
    gpx_with("</cmt>\n<src>", "</cmt>\n<name>late</name><src>")
    gpx_with('version="1.1"', 'version="1.0"')

    def kml_with(old, new):
        assert old in kml, old
        expect(False, grammar_complaint("kml-2.2.rng", kml.replace(old, new, 1)),
               f"KML with {new} for {old}")
    kml_with("<when>20", "<when>noon 20")
    kml_with("<gx:coord>", "<gx:coord>1,")
    kml_with("</Placemark>", "<name>late</name></Placemark>")

    collection = json.loads(geojson)
    line = next(f for f in collection["features"] if f["geometry"])
    for change in (lambda f: f.pop("properties"),
                   lambda f: f["geometry"]["coordinates"].append([[1, 2]]),
                   lambda f: f["geometry"]["coordinates"][0].insert(0, [25.0, 121.5]),
                   lambda f: f["geometry"]["coordinates"][0].insert(0, [-121.5, 25.0]),
                   lambda f: f["properties"]["speedsKmh"][0].pop()):
        broken = copy.deepcopy(line)
        change(broken)
        text = json.dumps({"type": "FeatureCollection", "features": [broken]})
        expect(False, geojson_complaint(text), "broken GeoJSON")


with tempfile.TemporaryDirectory() as folder:
    subprocess.run([make_recordings, folder, "30"], check=True,
                   stdout=subprocess.DEVNULL)
    recordings = len(list(pathlib.Path(folder).iterdir()))

    def exported(form, *options):
        return subprocess.run(
            [dvr_track, "-f", form, *options, folder],
            stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=False).stdout.decode()

    check_the_checks(exported("gpx"), exported("kml"), exported("geojson"))
    for options in ((), ("--raw",), ("--join=86400",)):
        what = " ".join(options)
        gpx, kml, geojson = (exported(form, *options) for form in ("gpx", "kml", "geojson"))
        expect(True, grammar_complaint("gpx-1.1.rng", gpx), f"GPX {what}")
        expect(True, grammar_complaint("kml-2.2.rng", kml), f"KML {what}")
        expect(True, geojson_complaint(geojson), f"GeoJSON {what}")
    tracks = exported("gpx").count("<trk>")
    if tracks < recordings - 2:
        failed.append(f"only {tracks} tracks of {recordings} recordings")

for complaint in failed:
    print(complaint)
print(f"{recordings} recordings: {'FAILED' if failed else 'all valid'}")
sys.exit(1 if failed else 0)
