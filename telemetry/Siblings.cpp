#include "telemetry/Siblings.h"

#include <algorithm>
#include <array>
#include <filesystem>

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

class FileSiblings final : public Siblings {
  public:
    explicit FileSiblings(fs::path recording) : recording_(std::move(recording)) {}

    std::unique_ptr<ByteSource> withExtension(const std::string& extension) override {
        fs::path path = recording_;
        for (const std::string& spelling : {extension, upper(extension)}) {
            path.replace_extension(spelling);
            if (auto source = openFile(path.string())) {
                return std::move(source.value());
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
