#include "extractor/command/RecordingList.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "telemetry/Extract.h"
#include "telemetry/export/ExportText.h"

namespace velmorant::telemetry {

namespace {

namespace fs = std::filesystem;

bool isRecording(const fs::path& path) {
    std::string extension = path.extension().string();
    std::transform(extension.begin(), extension.end(), extension.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    });
    constexpr std::array known = {".mp4", ".m4v", ".mov", ".ts", ".mts", ".m2ts", ".360"};
    return std::find(known.begin(), known.end(), extension) != known.end();
}

template <class Iterator>
void collect(const fs::path& folder, std::vector<std::string>& into,
             std::vector<std::string>& problems) {
    std::error_code error;
    std::vector<std::string> found;
    for (Iterator i(folder, fs::directory_options::skip_permission_denied, error), end;
         !error && i != end; i.increment(error)) {
        std::error_code ignored;
        if (isRecording(i->path()) && i->is_regular_file(ignored)) {
            found.push_back(i->path().string());
        }
    }
    if (error) {
        problems.push_back(folder.string() + ": " + error.message());
    }
    std::sort(found.begin(), found.end());
    into.insert(into.end(), found.begin(), found.end());
}

std::string padded(std::string text, std::size_t width) {
    text.resize(std::max(width, text.size()), ' ');
    return text;
}

void appendJson(std::string& out, const TableRow& row) {
    const auto text = [&](const char* key, std::string_view value) {
        out += key;
        appendJsonText(out, value);
    };
    text("{\"recording\":", row.path);
    text(",\"family\":", row.family);
    out += ",\"samples\":" + std::to_string(row.samples);
    out += ",\"fixes\":" + std::to_string(row.fixes);
    text(",\"timeBase\":", row.timeBase);
    text(",\"start\":", row.start);
    out += ",\"problems\":[";
    for (std::size_t i = 0; i < row.problems.size(); ++i) {
        out += i == 0 ? "" : ",";
        appendJsonText(out, row.problems[i]);
    }
    out += "]}";
}

} // namespace

std::vector<std::string> recordingsNamed(const std::vector<std::string>& paths, Recursion recursion,
                                         std::vector<std::string>& problems) {
    std::vector<std::string> recordings;
    for (const std::string& path : paths) {
        std::error_code error;
        if (!fs::is_directory(path, error)) {
            recordings.push_back(path);
        } else if (recursion == Recursion::on) {
            collect<fs::recursive_directory_iterator>(path, recordings, problems);
        } else {
            collect<fs::directory_iterator>(path, recordings, problems);
        }
    }
    return recordings;
}

bool holdsRecording(const std::string& path) {
    if (isRecording(path)) {
        return true;
    }
    const auto source = openFile(path);
    return source && beginsAsRecording(*source.value());
}

TableRow rowOf(const std::string& path, const Result<Telemetry>& outcome) {
    TableRow row;
    row.path = path;
    if (!outcome) {
        row.problems.push_back(describe(outcome.error()));
        return row;
    }
    const Telemetry& telemetry = outcome.value();
    row.family = telemetry.family;
    row.samples = telemetry.samples.size();
    row.fixes = telemetry.fixes();
    row.timeBase = name(telemetry.base);
    if (!telemetry.samples.empty() && telemetry.base != TimeBase::none) {
        appendIsoTime(row.start, telemetry.samples.front().time * 1000,
                      telemetry.base == TimeBase::utc);
    }
    for (const Error& notice : telemetry.notices) {
        row.problems.push_back(describe(notice));
    }
    return row;
}

void RecordingTable::begin() {
    if (style_ == Style::json) {
        out_ << '[';
    } else {
        out_ << "family                        samples   fix  base      start                 "
                "recording\n";
    }
}

void RecordingTable::add(const TableRow& row) {
    std::string text;
    if (style_ == Style::json) {
        text = first_ ? "\n" : ",\n";
        first_ = false;
        appendJson(text, row);
        out_ << text;
        return;
    }
    const std::size_t share = row.samples == 0 ? 0 : row.fixes * 100 / row.samples;
    text += padded(row.family.empty() ? "unusable" : row.family, 30);
    text += padded(std::to_string(row.samples), 8);
    text += padded(std::to_string(share) + "%", 7);
    text += padded(row.timeBase.empty() ? "-" : row.timeBase, 10);
    text += padded(row.start.empty() ? "-" : row.start, 22);
    // A path may hold what would move a terminal's cursor.
    for (const char c : row.path) {
        text += static_cast<unsigned char>(c) < 0x20 || c == 0x7f ? '?' : c;
    }
    text += '\n';
    for (const std::string& problem : row.problems) {
        text += "    " + problem + '\n';
    }
    out_ << text;
}

void RecordingTable::end() {
    if (style_ == Style::json) {
        out_ << "\n]\n";
    }
}

} // namespace velmorant::telemetry
