#include "telemetry/Extract.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "telemetry/ClockEvidence.h"
#include "telemetry/SampleTable.h"
#include "telemetry/UtcTime.h"
#include "telemetry/families/TransportStream.h"

namespace velmorant::telemetry {

namespace {

bool mayOpenAFile(FourCharacterCode type) {
    constexpr std::array known = {code("ftyp"), code("moov"), code("mdat"), code("free"),
                                  code("skip"), code("wide"), code("uuid"), code("pnot"),
                                  code("styp"), code("GPS "), code("udta")};
    return std::find(known.begin(), known.end(), type) != known.end();
}

// Some recorders append a text behind the last box; its last 8 bytes are "&&&&" and its length, or
// "####" and its length, big-endian and perhaps without these bytes.
std::uint64_t endOfBoxes(Input& input) {
    if (input.size() < 8) {
        return input.size();
    }
    const Bytes end = input.peek(input.size() - 8, 8);
    const bool other = end.holds(0, "####");
    std::uint64_t length = other ? end.u32be(4) : end.u32le(4);
    if ((!other && !end.holds(0, "&&&&")) || length < 8 || length + 8 > input.size()) {
        return input.size();
    }
    if (other && !input.peek(input.size() - length, 4).holds(0, "****")) {
        length += 8;
        if (!input.peek(input.size() - length, 4).holds(0, "****")) {
            return input.size();
        }
    }
    return input.size() - length;
}

// How much of the picture lies behind the file's end, in whole seconds; 0 where nobody can tell.
std::int64_t secondsMissing(Input& input, const std::optional<Movie>& movie) {
    if (!movie) {
        return 0;
    }
    const auto picture =
        std::find_if(movie->tracks.begin(), movie->tracks.end(),
                     [](const MediaTrack& track) { return track.handler == code("vide"); });
    if (picture == movie->tracks.end()) {
        return 0;
    }
    // What this finds is told once, for the whole file.
    Input quiet(input.source(), input.options());
    auto table = SampleTable::open(quiet, *picture);
    if (!table) {
        return 0;
    }
    double end = 0;
    for (SampleLocation sample; table.value().next(sample);) {
        end = std::max(end, sample.time + sample.duration);
    }
    const double missing = std::ceil(movie->duration - end);
    constexpr double mostSeconds = 1e6;
    return missing > 0 && missing < mostSeconds ? static_cast<std::int64_t>(missing) : 0;
}

// Keeps the boxes and reads the movie header; what is wrong is noted with the input. An error for a
// file that is no recording at all.
std::optional<Error> readStructure(Recording& recording) {
    Input& input = recording.input;
    BoxWalker walker(input, 0, endOfBoxes(input), {});
    constexpr std::size_t mostBoxes = 65536;
    while (recording.boxes.size() < mostBoxes && !input.stopped()) {
        const auto box = walker.next();
        if (!box) {
            break;
        }
        if (recording.boxes.empty() && !mayOpenAFile(box->type)) {
            return input.error(codeText(box->type), 0, "the file is no MP4 recording",
                               ReasonCode::notARecording);
        }
        if (box->cut) {
            input.note(input.error(codeText(box->type), box->offset,
                                   "the box claims more bytes than the file has left: the file is "
                                   "cut off or the size is wrong",
                                   ReasonCode::cutOff, secondsMissing(input, recording.movie)));
        }
        if (box->type == code("moov") && !recording.movie) {
            auto movie = readMovie(input, *box);
            if (movie) {
                recording.movie = std::move(movie.value());
            } else {
                input.note(movie.error());
            }
        }
        recording.boxes.push_back(*box);
    }
    if (walker.error()) {
        input.note(*walker.error());
    }
    if (recording.boxes.empty()) {
        return input.error({}, 0, "the file is no MP4 recording", ReasonCode::notARecording);
    }
    return std::nullopt;
}

// A clock that the evidence takes for another than its format says is labelled so everywhere.
void labelClock(const Recording& recording, std::int64_t creation, bool standard,
                Telemetry& telemetry) {
    ClockWitnesses witnesses;
    witnesses.declared = telemetry.base;
    witnesses.standard = standard;
    witnesses.path = recording.input.name();
    witnesses.creation = creation;
    witnesses.duration = telemetry.duration;
    witnesses.setAtFirstFix = setAtFirstFix(telemetry.samples);
    witnesses.clock = telemetry.samples.empty() ? 0 : telemetry.samples.front().time;
    const auto fix =
        std::find_if(telemetry.samples.begin(), telemetry.samples.end(),
                     [](const Sample& sample) { return sample.state == FixState::good; });
    if (fix != telemetry.samples.end()) {
        witnesses.longitude = fix->longitude;
    }
    telemetry.clock = judgeClock(witnesses);
    telemetry.base = telemetry.clock.base;
    if (telemetry.base == TimeBase::camera) {
        for (Sample& sample : telemetry.samples) {
            if (sample.recordedBase == TimeBase::utc) {
                sample.recordedBase = TimeBase::camera;
            }
        }
    }
}

// Readings may reach beyond the length that the header tells, but one wrong time among them must
// not make hours of a clip.
void boundLength(const Recording& recording, Telemetry& telemetry) {
    constexpr double bytesPerSecond = 16;
    constexpr std::size_t secondsPerReading = 10;
    const auto read = static_cast<std::size_t>(
        std::count_if(telemetry.samples.begin(), telemetry.samples.end(), [](const Sample& sample) {
            return sample.state != FixState::noReading || sample.hasAcceleration;
        }));
    const auto told = static_cast<std::size_t>(std::max(1.0, std::round(telemetry.duration)));
    const auto held = static_cast<std::size_t>(
        recording.movie ? recording.movie->longest
                        : static_cast<double>(recording.input.size()) / bytesPerSecond);
    const std::size_t most = std::max(told, std::min(held, read * secondsPerReading));
    if (telemetry.samples.size() > most) {
        recording.input.note(
            recording.input.error({}, 0,
                                  "readings for " + std::to_string(telemetry.samples.size()) +
                                      " s, more than the recording can hold: what lies beyond " +
                                      std::to_string(most) + " s is left out"));
        telemetry.samples.resize(most);
    }
}

Telemetry finish(const Recording& recording, Collector& collector) {
    std::int64_t creation = 0;
    double duration = 0;
    if (recording.movie) {
        duration = recording.movie->duration;
        creation = static_cast<std::int64_t>(
                       std::min<std::uint64_t>(recording.movie->creation, UINT32_MAX)) -
                   secondsFrom1904To1970;
    }
    creation = std::max<std::int64_t>(creation, 0);
    const bool standard = collector.hasStandardTime();
    Telemetry telemetry = collector.finish(duration, creation);
    boundLength(recording, telemetry);
    labelClock(recording, creation, standard, telemetry);
    if (collector.followedClock()) {
        recording.input.note(recording.input.error(
            {}, 0,
            "the times of the samples disagree with the clock that each of them carries: the "
            "clock was followed"));
    }
    return telemetry;
}

// Why a sound recording gives no telemetry, by what was looked for.
std::string whatIsMissing(const Recording& recording) {
    std::string tracks;
    for (const MediaTrack& track : recording.movie->tracks) {
        if (track.handler != code("vide") && track.handler != code("soun")) {
            tracks += tracks.empty() ? "" : ", ";
            tracks += codeText(track.format);
        }
    }
    return (tracks.empty() ? "no telemetry track"
                           : "no telemetry that is known in the track " + tracks) +
           std::string(", no GPS block or box") +
           (recording.siblings == nullptr ? "" : ", no file beside the recording that fits it");
}

Result<Telemetry> withoutTelemetry(const Recording& recording) {
    Input& input = recording.input;
    if (!input.notes().empty()) {
        return input.notes().front();
    }
    if (recording.boxes.empty()) {
        return input.error({}, 0, "the transport stream holds no telemetry that is known",
                           ReasonCode::noTelemetry);
    }
    if (!recording.movie) {
        return input.error("moov", input.size(),
                           "the recording has no movie header: it was cut off",
                           ReasonCode::unfinished);
    }
    if (!(recording.movie->duration > 0)) {
        return input.error("moov/mvhd", recording.movie->box.offset,
                           "the recording holds no telemetry and does not tell its length",
                           ReasonCode::noTelemetry);
    }
    Collector none;
    Telemetry telemetry = finish(recording, none);
    telemetry.family = "none";
    telemetry.notices.push_back(
        input.error({}, 0, whatIsMissing(recording), ReasonCode::noTelemetry));
    return telemetry;
}

} // namespace

Result<Telemetry> extract(ByteSource& source, const ReadOptions& options, Siblings* siblings) {
    return extractWith(families(), source, options, siblings);
}

Result<Telemetry> extractWith(std::span<const Family> asked, ByteSource& source,
                              const ReadOptions& options, Siblings* siblings) {
    Input input(source, options);
    if (source.size() == 0) {
        return input.error({}, 0, "the file is empty", ReasonCode::empty);
    }
    Recording recording{input, siblings};
    if (!isTransportStream(input)) {
        if (auto error = readStructure(recording)) {
            return *error;
        }
    }
    // A source with positions beats one that has accelerations alone.
    std::optional<Telemetry> best;
    for (const Family& family : asked) {
        Collector collector;
        collector.expect(recording.movie ? recording.movie->duration : 0);
        if (!family.read(recording, collector) || collector.empty()) {
            continue;
        }
        const bool withFixes = collector.hasFixes();
        if (!best || withFixes) {
            best = finish(recording, collector);
            best->family = family.name;
        }
        if (withFixes) {
            break;
        }
    }
    if (!best || best->samples.empty()) {
        return withoutTelemetry(recording);
    }
    best->notices = input.notes();
    if (input.stopped()) {
        best->notices.push_back(
            input.error({}, 0, "the time allowed for reading ran out", ReasonCode::timeUp));
    }
    return std::move(*best);
}

bool beginsAsRecording(ByteSource& source) {
    Input input(source);
    if (isTransportStream(input)) {
        return true;
    }
    // Other files may have a box's name in that place, but hardly a size that fits.
    const auto first = BoxWalker(input, 0, input.size(), {}).next();
    return first && mayOpenAFile(first->type) && (!first->cut || first->type == code("ftyp"));
}

Result<Telemetry> extractFile(const std::string& path, const ReadOptions& options) {
    auto source = openFile(path);
    if (!source) {
        return source.error();
    }
    const auto siblings = siblingsOf(path);
    return extract(*source.value(), options, siblings.get());
}

} // namespace velmorant::telemetry
