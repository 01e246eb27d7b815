#include "telemetry/families/TextTracks.h"

#include "telemetry/Geometry.h"
#include "telemetry/MetadataTrack.h"
#include "telemetry/Nmea.h"
#include "telemetry/families/EncipheredText.h"

namespace velmorant::telemetry {

namespace {

constexpr std::size_t longestText = 65536;

bool readPndm(Bytes sample, double time, Collector& collector) {
    const std::size_t start = sample.holds(0, "PNDM") ? 0 : sample.holds(4, "PNDM") ? 4 : 2;
    if (!sample.holds(start, "PNDM") || !sample.has(start, 20)) {
        return false;
    }
    constexpr double degreesPerStep = 180.0 / 2147483648.0;
    Fix fix;
    fix.mediaTime = time;
    fix.speed = sample.u16be(start + 8) * kmhPerMile;
    fix.latitude = sample.i32be(start + 12) * degreesPerStep;
    fix.longitude = sample.i32be(start + 16) * degreesPerStep;
    collector.add(fix);
    return true;
}

bool readEnciphered(Bytes sample, double time, double duration, Collector& collector) {
    const bool marked =
        sample.u16be(0) == 0 && (sample.u32be(2) == 0xf2e1f0ee || sample.u16be(4) == 0xaaaa);
    if (!marked) {
        return false;
    }
    const auto reading = readEncipheredText(sample);
    if (!reading) {
        return false;
    }
    Fix fix = reading->fix;
    fix.mediaTime = time;
    collector.add(fix);
    const auto count = static_cast<double>(reading->accelerations.size());
    for (std::size_t i = 0; i < reading->accelerations.size(); ++i) {
        collector.add(time + duration * static_cast<double>(i) / count, reading->accelerations[i]);
    }
    return true;
}

bool readGsensori(std::string_view text, double time, Collector& collector) {
    constexpr std::string_view name = "gsensori,";
    bool found = false;
    for (std::size_t at = text.find(name); at != std::string_view::npos;
         at = text.find(name, at + 1)) {
        constexpr std::size_t longestEntry = 256;
        std::string_view fields = text.substr(at, longestEntry);
        fields = fields.substr(0, fields.find(';'));
        const double perCount = decimal(field(fields, 1)) / decimal(field(fields, 2));
        const Acceleration acceleration{decimal(field(fields, 3)) * perCount,
                                        decimal(field(fields, 4)) * perCount,
                                        decimal(field(fields, 5)) * perCount};
        if (std::isfinite(acceleration.x + acceleration.y + acceleration.z)) {
            collector.add(time, acceleration);
            found = true;
        }
    }
    return found;
}

// A sentence's own instant lies at its sample; several in one sample are spread over it.
bool readSentencesAt(std::string_view text, double time, double duration, Collector& collector) {
    std::size_t count = 0;
    readSentences(text, [&](const Fix&) { ++count; });
    std::size_t i = 0;
    readSentences(text, [&](Fix fix) {
        fix.mediaTime = time + duration * static_cast<double>(i++) / static_cast<double>(count);
        collector.add(fix);
    });
    return count > 0;
}

// Reads the samples of a track; where some hold telemetry, those that hold none are noted, and
// where some begin with their own length, those whose length is another.
template <class ReadOne>
bool readTrack(Input& input, const MediaTrack& track, ReadOne readOne) {
    std::size_t good = 0;
    std::size_t empty = 0;
    std::size_t fitting = 0;
    std::size_t misfitting = 0;
    readSamples(input, track, longestText, [&](const SampleLocation& where, Bytes sample) {
        ++(readOne(where, sample) ? good : empty);
        ++(std::size_t{sample.u16be(0)} + 2 == sample.size() ? fitting : misfitting);
    });
    if (good > 0 && empty > 0) {
        input.note(
            input.error(track.path, 0, std::to_string(empty) + " samples hold no telemetry"));
    }
    if (good > 0 && fitting > 0 && misfitting > 0) {
        input.note(input.error(track.path, 0,
                               std::to_string(misfitting) +
                                   " samples are not as long as they say themselves"));
    }
    return good > 0;
}

bool textTrack(const MediaTrack& track) {
    return track.handler == code("text") || track.handler == code("sbtl") ||
           track.handler == code("subt") || track.format == code("tx3g") ||
           track.format == code("text");
}

} // namespace

bool readTelemetryText(Bytes text, double time, double duration, Collector& collector) {
    if (readPndm(text, time, collector) || readEnciphered(text, time, duration, collector)) {
        return true;
    }
    const bool accelerated = readGsensori(text.text(0), time, collector);
    return readSentencesAt(text.text(0), time, duration, collector) || accelerated;
}

bool readTextTracks(Recording& recording, Collector& collector) {
    bool found = false;
    for (const MediaTrack& track :
         recording.movie ? recording.movie->tracks : std::vector<MediaTrack>{}) {
        if (textTrack(track)) {
            found = readTrack(recording.input, track,
                              [&](const SampleLocation& where, Bytes sample) {
                                  return readTelemetryText(sample, where.time, where.duration,
                                                           collector);
                              }) ||
                    found;
        }
    }
    return found;
}

bool readSentenceTracks(Recording& recording, Collector& collector) {
    bool found = false;
    for (const MediaTrack& track :
         recording.movie ? recording.movie->tracks : std::vector<MediaTrack>{}) {
        if (track.format == code("nbmt")) {
            found = readTrack(recording.input, track,
                              [&](const SampleLocation& where, Bytes sample) {
                                  return readSentencesAt(sample.text(0), where.time, where.duration,
                                                         collector);
                              }) ||
                    found;
        }
    }
    return found;
}

} // namespace velmorant::telemetry
