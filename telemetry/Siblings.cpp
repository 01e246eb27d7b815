#include "telemetry/Siblings.h"

#include <algorithm>
#include <array>
#include <filesystem>

#include "telemetry/CameraNames.h"

namespace velmorant::telemetry {

namespace {

namespace fs = std::filesystem;

constexpr std::array trackExtensions = {".GPS", ".NMEA", ".3GF", ".SRT"};

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return text;
}

bool isCardTable(const std::string& capitals) {
    return capitals.starts_with("GPSDATA") && capitals.ends_with(".TXT");
}

// "..._NF" and "..._NR" without their last letter: both cameras share the files "..._N".
std::string withoutCamera(const std::string& stem) {
    const std::string end = upper(stem.substr(stem.size() - std::min<std::size_t>(stem.size(), 3)));
    const bool marked = end.size() == 3 && end[0] == '_' &&
                        std::string_view("NEPM").find(end[1]) != std::string_view::npos &&
                        (end[2] == 'F' || end[2] == 'R');
    return marked ? stem.substr(0, stem.size() - 1) : stem;
}

class FileSiblings final : public Siblings {
  public:
    explicit FileSiblings(fs::path recording) : recording_(std::move(recording)) {}

    std::unique_ptr<ByteSource> withExtension(const std::string& extension) override {
        const std::string whole = fs::path(recording_).replace_extension().string();
        for (const std::string& stem : {whole, withoutCamera(whole)}) {
            for (const std::string& spelling : {extension, upper(extension)}) {
                if (auto source = openFile(stem + spelling)) {
                    return std::move(source.value());
                }
            }
        }
        return nullptr;
    }

    std::vector<std::unique_ptr<ByteSource>> cardTables() override {
        constexpr std::size_t mostTables = 16;
        std::vector<std::unique_ptr<ByteSource>> tables;
        fs::path folder = recording_.parent_path();
        for (int level = 0; level < 3; ++level) {
            std::error_code error;
            for (fs::directory_iterator i(folder.empty() ? "." : folder, error), end;
                 !error && i != end && tables.size() < mostTables; i.increment(error)) {
                if (!isCardTable(upper(i->path().filename().string()))) {
                    continue;
                }
                if (auto source = openFile(i->path().string())) {
                    tables.push_back(std::move(source.value()));
                }
            }
            if (!folder.has_parent_path() || folder == folder.parent_path()) {
                break;
            }
            folder = folder.parent_path();
        }
        return tables;
    }

    std::vector<std::unique_ptr<ByteSource>> inFolder(const std::string& extension) override {
        constexpr std::size_t mostFiles = 64;
        const std::string wanted = upper(extension);
        const fs::path folder = recording_.parent_path();
        std::vector<std::string> found;
        std::error_code error;
        for (fs::directory_iterator i(folder.empty() ? "." : folder, error), end;
             !error && i != end && found.size() < mostFiles; i.increment(error)) {
            if (upper(i->path().extension().string()) == wanted) {
                found.push_back(i->path().string());
            }
        }
        std::sort(found.begin(), found.end());
        std::vector<std::unique_ptr<ByteSource>> files;
        for (const std::string& path : found) {
            if (auto source = openFile(path)) {
                files.push_back(std::move(source.value()));
            }
        }
        return files;
    }

    std::vector<std::string> frontRecordings() override {
        const std::string rear = recording_.string();
        const FrontPlaces places = frontPlacesOf(rear);
        std::vector<std::string> found;
        std::error_code error;
        for (const std::string& path : places.paths) {
            if (fs::is_regular_file(path, error)) {
                found.push_back(path);
            }
        }
        if (!found.empty()) {
            return found; // listing a folder of thousands for each of them would cost more
        }
        for (const std::string& folder : places.folders) {
            for (fs::directory_iterator i(folder.empty() ? "." : folder, error), end;
                 !error && i != end; i.increment(error)) {
                const std::string path = folder + i->path().filename().string();
                if (namesPair(rear, path)) {
                    found.push_back(path);
                }
            }
        }
        std::sort(found.begin(), found.end());
        return found;
    }

  private:
    fs::path recording_;
};

} // namespace

bool isTrackFileName(const std::string& path) {
    const std::string name = upper(fs::path(path).filename().string());
    return isCardTable(name) ||
           std::any_of(trackExtensions.begin(), trackExtensions.end(),
                       [&](const char* extension) { return name.ends_with(extension); });
}

std::unique_ptr<Siblings> siblingsOf(const std::string& recording) {
    return std::make_unique<FileSiblings>(recording);
}

} // namespace velmorant::telemetry
