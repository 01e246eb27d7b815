#include "telemetry/families/Gpmf.h"

#include <algorithm>
#include <array>

#include "telemetry/Geometry.h"
#include "telemetry/SampleTable.h"
#include "telemetry/UtcTime.h"
#include "telemetry/families/GpmfAcceleration.h"
#include "telemetry/families/GpmfRecord.h"

namespace velmorant::telemetry {

namespace {

constexpr std::size_t longestPayload = 1 << 20;

// What the records of one STRM say about the data that ends it; a view of the payload's bytes.
struct Stream {
    GpmfRow scale;
    GpmfRecord type;
    std::string_view axes;
    std::int64_t utc = noTime;
    bool fixed = true;
    GpmfRecord data;
};

// Two digits, or -1.
int twoDigits(std::string_view text, std::size_t at) {
    if (at + 2 > text.size() || text[at] < '0' || text[at] > '9' || text[at + 1] < '0' ||
        text[at + 1] > '9') {
        return -1;
    }
    return (text[at] - '0') * 10 + (text[at + 1] - '0');
}

// "yymmddhhmmss.sss"
std::int64_t parseUtc(std::string_view text) {
    CivilTime time;
    time.year = 2000 + twoDigits(text, 0);
    time.month = twoDigits(text, 2);
    time.day = twoDigits(text, 4);
    time.hour = twoDigits(text, 6);
    time.minute = twoDigits(text, 8);
    time.second = twoDigits(text, 10);
    if (text.size() >= 16 && text[12] == '.') {
        const int tenths = twoDigits(text, 13);
        const int last = text[15] - '0';
        time.second += tenths < 0 || last < 0 || last > 9 ? 0 : (tenths * 10 + last) / 1000.0;
    }
    return toMilliseconds(time).value_or(noTime);
}

GpmfRecord asOneRow(GpmfRecord record) {
    record.structSize *= record.repeat;
    record.repeat = 1;
    return record;
}

Stream readStream(Bytes bytes) {
    Stream stream;
    GpmfWalker walker(bytes);
    GpmfRecord record;
    while (walker.next(record)) {
        switch (record.key) {
        case code("SCAL"):
            stream.scale = gpmfRow(asOneRow(record), 0, {}, {});
            break;
        case code("TYPE"):
            stream.type = record;
            break;
        case code("ORIN"):
            stream.axes = record.data.text(0, 3);
            break;
        case code("GPSU"):
            stream.utc = parseUtc(record.data.text(0));
            break;
        case code("GPSF"):
            stream.fixed = record.data.u32be(0) >= 2;
            break;
        case code("GPS5"):
        case code("GPS9"):
        case code("GPRI"):
        case code("GLPI"):
        case code("SYST"):
        case code("ACCL"):
            stream.data = record;
            break;
        default:
            break;
        }
    }
    return stream;
}

class PayloadReader {
  public:
    PayloadReader(Collector& collector, const SampleLocation& sample)
        : collector_(collector), sample_(sample) {}

    // False where the payload ends before its records do.
    bool read(Bytes payload) {
        GpmfWalker devices(payload);
        GpmfRecord device;
        while (devices.next(device)) {
            if (device.key == code("DEVC")) {
                readDevice(device.data);
            }
        }
        readPositions();
        return !devices.cut();
    }

  private:
    void readDevice(Bytes bytes) {
        GpmfWalker walker(bytes);
        GpmfRecord record;
        std::string_view deviceName;
        while (walker.next(record)) {
            if (record.key == code("DVNM")) {
                deviceName = record.data.text(0);
            } else if (record.key == code("STRM")) {
                const Stream stream = readStream(record.data);
                if (stream.data.key == code("ACCL")) {
                    readAccelerations(stream, deviceName);
                } else if (stream.data.key == code("SYST")) {
                    const auto row = gpmfRow(stream.data, 0, gpmfFields(stream.type), stream.scale);
                    if (row.size() >= 2) {
                        deviceToUtc_ = row[1] - row[0];
                    }
                } else if (preference(stream.data.key) > preference(positions_.data.key)) {
                    positions_ = stream;
                }
            }
        }
    }

    // A payload may carry the same places twice, raw and filtered or in an old and a new record.
    static int preference(FourCharacterCode key) {
        switch (key) {
        case code("GPS9"):
            return 4;
        case code("GPS5"):
            return 3;
        case code("GLPI"):
            return 2;
        case code("GPRI"):
            return 1;
        default:
            return 0;
        }
    }

    double timeOf(std::size_t row, std::size_t rows) const {
        return sample_.time +
               sample_.duration * static_cast<double>(row) / static_cast<double>(rows);
    }

    void readAccelerations(const Stream& stream, std::string_view deviceName) {
        const AccelerationAxes axes(stream.axes.size() == 3 ? stream.axes : axesOfModel(deviceName),
                                    stream.scale);
        const std::size_t rows = stream.data.repeat;
        const std::string fields = gpmfFields(stream.type);
        const bool triples = stream.data.type == 's' && stream.data.structSize == 6;
        for (std::size_t row = 0; row < rows;) {
            const auto second = Collector::secondOf(timeOf(row, rows));
            const std::size_t end = triples ? endOfSecond(row, rows, second) : row + 1;
            if (second && triples) {
                collector_.add(*second, axes.sumOf(stream.data.data, row, end));
            } else if (second) {
                const auto values = gpmfRow(stream.data, row, fields, {});
                if (values.size() >= 3) {
                    collector_.add(*second, axes.one(values));
                }
            }
            row = end;
        }
    }

    // The first row behind `row` that belongs to another second.
    std::size_t endOfSecond(std::size_t row, std::size_t rows,
                            std::optional<std::size_t> second) const {
        if (!second || !(sample_.duration > 0)) {
            return second ? rows : row + 1;
        }
        const double share = (static_cast<double>(*second + 1) - sample_.time) / sample_.duration;
        std::size_t end = row + 1;
        if (share * static_cast<double>(rows) > static_cast<double>(end)) {
            end = static_cast<std::size_t>(std::min(share, 1.0) * static_cast<double>(rows));
        }
        end = std::clamp(end, row + 1, rows);
        while (end > row + 1 && Collector::secondOf(timeOf(end - 1, rows)) != second) {
            --end;
        }
        while (end < rows && Collector::secondOf(timeOf(end, rows)) == second) {
            ++end;
        }
        return end;
    }

    void readPositions() {
        const std::size_t rows = positions_.data.repeat;
        const std::string fields = gpmfFields(positions_.type);
        for (std::size_t row = 0; row < rows && preference(positions_.data.key) > 0; ++row) {
            const auto values = gpmfRow(positions_.data, row, fields, positions_.scale);
            Fix fix;
            fix.mediaTime = timeOf(row, rows);
            fix.base = TimeBase::utc;
            fix.standardTime = true;
            if (!readRow(values, row, fix)) {
                return;
            }
            if (fix.time == noTime) {
                fix.base = TimeBase::none;
            }
            collector_.add(fix);
        }
    }

    bool readRow(const GpmfRow& values, std::size_t row, Fix& fix) const {
        const FourCharacterCode key = positions_.data.key;
        const bool direct = key == code("GPS5") || key == code("GPS9");
        if (values.size() < (key == code("GPS5") ? 5U : 9U)) {
            return false;
        }
        const std::size_t first = direct ? 0 : 1;
        fix.latitude = values[first];
        fix.longitude = values[first + 1];
        fix.altitude = values[first + 2];
        if (direct) {
            fix.speed = values[3] * kmhPerMetrePerSecond;
        }
        if (key == code("GPS5")) {
            fix.state = positions_.fixed ? FixState::good : FixState::noFix;
            fix.time = row == 0 ? positions_.utc : noTime;
        } else if (key == code("GPS9")) {
            fix.state = values[8] >= 2 ? FixState::good : FixState::noFix;
            fix.time = daysAndSeconds(values[5], values[6]);
        } else {
            fix.time = fromDeviceClock(values[0]);
            if (key == code("GLPI")) {
                fix.speed = std::hypot(values[5], values[6]) * kmhPerMetrePerSecond;
                fix.heading = values[8];
            } else {
                fix.speed = values[6] * kmhPerMetrePerSecond;
                fix.heading = values[7];
                fix.state = values[8] >= 2 ? FixState::good : FixState::noFix;
            }
        }
        return true;
    }

    static std::int64_t daysAndSeconds(double days, double seconds) {
        if (!(days >= 0 && days < 36525 && seconds >= 0 && seconds < 86401)) {
            return noTime;
        }
        constexpr std::int64_t daysTo2000 = 10957;
        return (daysTo2000 + static_cast<std::int64_t>(days)) * 86400000 +
               static_cast<std::int64_t>(std::llround(seconds * 1000));
    }

    std::int64_t fromDeviceClock(double seconds) const {
        const double utc = seconds + deviceToUtc_;
        // NaN, before 1980 or after 2099: the device's clock was never set.
        return utc > 315532800 && utc < 4102444800 ? std::llround(utc * 1000) : noTime;
    }

    Collector& collector_;
    const SampleLocation& sample_;
    Stream positions_;
    double deviceToUtc_ = unknown;
};

bool readTrack(Input& input, const MediaTrack& track, Collector& collector) {
    auto table = SampleTable::open(input, track);
    if (!table) {
        input.note(table.error());
        return false;
    }
    SampleLocation sample;
    std::size_t read = 0;
    std::size_t damaged = 0;
    std::uint64_t damagedAt = 0;
    std::vector<std::uint8_t> buffer;
    while (table.value().next(sample)) {
        bool whole = false;
        if (sample.size >= 8 && sample.size <= longestPayload) {
            buffer.resize(sample.size);
            const std::size_t got = input.source().readAt(sample.offset, buffer);
            const Bytes payload(std::span<const std::uint8_t>(buffer.data(), got));
            if (payload.holds(0, "DEVC")) {
                ++read;
                whole = PayloadReader(collector, sample).read(payload);
            }
        }
        if (!whole && damaged++ == 0) {
            damagedAt = sample.offset;
        }
    }
    if (read > 0 && damaged > 0) {
        input.note(input.error(track.path, damagedAt,
                               std::to_string(damaged) + " samples hold no whole GPMF record"));
    }
    return read > 0;
}

} // namespace

bool readGpmf(Recording& recording, Collector& collector) {
    bool found = false;
    if (recording.movie) {
        for (const MediaTrack& track : recording.movie->tracks) {
            if (track.format == code("gpmd")) {
                found = readTrack(recording.input, track, collector) || found;
            }
        }
    }
    return found;
}

} // namespace velmorant::telemetry
