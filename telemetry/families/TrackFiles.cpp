#include "telemetry/families/TrackFiles.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "telemetry/ClockEvidence.h"
#include "telemetry/UtcTime.h"
#include "telemetry/families/TrackFilePoints.h"

namespace velmorant::telemetry {

namespace {

using ForEachPoint = void (*)(ByteSource& source, const VisitPoint& visit);

// A time at which the recording may have started.
struct Start {
    double second = 0; // since 1970
    TimeBase base = TimeBase::utc;
    const char* by = "";
};

std::vector<Start> startsOf(const Recording& recording, double duration) {
    std::vector<Start> starts;
    const double since1904 = recording.movie ? static_cast<double>(recording.movie->creation) : 0;
    const double creation = since1904 - static_cast<double>(secondsFrom1904To1970);
    if (creation > 0) {
        for (const TimeBase base : {TimeBase::utc, TimeBase::camera}) {
            starts.push_back({creation, base, "placed by the creation time"});
            starts.push_back(
                {creation - duration, base, "placed by the creation time as that of the end"});
        }
    }
    if (const auto named = timeInName(recording.input.name())) {
        starts.push_back({static_cast<double>(*named), TimeBase::camera,
                          "placed by the time in the recording's name"});
    }
    return starts;
}

double secondsOf(const Fix& point) {
    return static_cast<double>(point.time) / 1000;
}

// How well a file's times fit a recording that starts at one of these times.
struct Fit {
    std::size_t seconds = 0; // of the recording that have a point
    double first = unknown, last = unknown;
    std::vector<bool> seen;

    void add(double place, double duration) {
        const auto second = static_cast<std::size_t>(std::max(0.0, std::floor(place)));
        if (!(place > -1 && place < duration + 1) || second >= Collector::mostSeconds) {
            return;
        }
        if (second >= seen.size()) {
            seen.resize(second + 1);
        }
        seconds += seen[second] ? 0 : 1;
        seen[second] = true;
        first = known(first) ? std::min(first, place) : place;
        last = known(last) ? std::max(last, place) : place;
    }
    bool half(double duration) const { return seconds > 1 && last - first >= duration / 2; }
};

class TrackFile {
  public:
    TrackFile(Recording& recording, Collector& collector)
        : input_(recording.input),
          collector_(collector),
          duration_(recording.movie ? recording.movie->duration : 0),
          starts_(startsOf(recording, duration_)) {}

    bool useful() const { return duration_ > 0; }

    // One of the recording's own name: its subtitles or times, and else its first point as the
    // recording's first second.
    bool readOwn(ByteSource& file, ForEachPoint points) {
        const Survey survey = surveyOf(file, points);
        if (survey.placed) {
            return take(file, points, nullptr, "placed by its subtitles");
        }
        if (const auto best = bestOf(survey); best < starts_.size()) {
            return take(file, points, &starts_[best], starts_[best].by);
        }
        const double length = survey.last - survey.first;
        if (!(length >= 0 && length <= duration_ + 2)) {
            return false;
        }
        const Start first{survey.first, survey.base, ""};
        return take(file, points, &first,
                    "placed by its first point; its times do not fit the recording's");
    }

    bool readOther(ByteSource& file, ForEachPoint points) {
        const Survey survey = surveyOf(file, points);
        const std::size_t best = bestOf(survey);
        if (best == starts_.size() || !survey.fits[best].half(duration_)) {
            return false;
        }
        return take(file, points, survey.placed ? nullptr : &starts_[best], starts_[best].by);
    }

  private:
    struct Survey {
        bool placed = false; // the points tell their place themselves
        double first = unknown, last = unknown;
        TimeBase base = TimeBase::none;
        std::vector<Fit> fits; // one for each start
    };

    Survey surveyOf(ByteSource& file, ForEachPoint points) {
        Survey survey;
        survey.fits.resize(starts_.size());
        points(file, [&](const Fix& point) {
            survey.placed = survey.placed || known(point.mediaTime);
            if (point.time == noTime) {
                return !input_.stopped();
            }
            if (!known(survey.first)) {
                survey.first = secondsOf(point);
                survey.base = point.base;
            }
            survey.last = secondsOf(point);
            for (std::size_t i = 0; i < starts_.size(); ++i) {
                if (starts_[i].base == point.base) {
                    survey.fits[i].add(secondsOf(point) - starts_[i].second, duration_);
                }
            }
            return !input_.stopped();
        });
        return survey;
    }

    // The number of the start that fits best, or of starts where none does.
    std::size_t bestOf(const Survey& survey) const {
        std::size_t best = starts_.size();
        for (std::size_t i = 0; i < starts_.size(); ++i) {
            if (survey.fits[i].seconds > (best == starts_.size() ? 0 : survey.fits[best].seconds)) {
                best = i;
            }
        }
        return best;
    }

    // Without a start the points' own places count.
    bool take(ByteSource& file, ForEachPoint points, const Start* start, const std::string& how) {
        Fit taken;
        points(file, [&](const Fix& point) {
            Fix fix = point;
            if (start != nullptr) {
                fix.mediaTime = point.time != noTime && point.base == start->base
                                    ? secondsOf(point) - start->second
                                    : unknown;
            }
            if (known(fix.mediaTime) && fix.mediaTime > -1 && fix.mediaTime < duration_ + 1) {
                fix.standardTime = fix.base == TimeBase::utc;
                collector_.add(fix);
                taken.add(fix.mediaTime, duration_);
            }
            return !input_.stopped();
        });
        if (collector_.empty()) {
            return false;
        }
        const auto seconds = static_cast<std::size_t>(std::max(1.0, std::round(duration_)));
        input_.note(input_.error({}, 0,
                                 "the recording holds no track of its own; this one is from " +
                                     file.name() + ", " + how + ": points for " +
                                     std::to_string(std::min(taken.seconds, seconds)) + " of " +
                                     std::to_string(seconds) + " seconds",
                                 ReasonCode::besideTrack));
        return true;
    }

    Input& input_;
    Collector& collector_;
    double duration_;
    std::vector<Start> starts_;
};

struct Kind {
    const char* extension;
    ForEachPoint points;
};

constexpr Kind kinds[] = {{".gpx", forEachGpxPoint}, {".srt", forEachSubtitlePoint}};

// Above this a file is none that a person keeps beside a recording.
constexpr std::uint64_t largestFile = 64 << 20;

} // namespace

bool readTrackFiles(Recording& recording, Collector& collector) {
    TrackFile reader(recording, collector);
    if (recording.siblings == nullptr || !reader.useful()) {
        return false;
    }
    for (const Kind& kind : kinds) {
        const auto own = recording.siblings->withExtension(kind.extension);
        if (own && own->size() <= largestFile && reader.readOwn(*own, kind.points)) {
            return true;
        }
    }
    for (const Kind& kind : kinds) {
        for (const auto& file : recording.siblings->inFolder(kind.extension)) {
            if (file->size() <= largestFile && reader.readOther(*file, kind.points)) {
                return true;
            }
        }
    }
    return false;
}

} // namespace velmorant::telemetry
