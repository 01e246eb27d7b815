#include "telemetry/Siblings.h"

#include <algorithm>
#include <filesystem>

namespace velmorant::telemetry {

namespace {

namespace fs = std::filesystem;

std::string upper(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(), [](char c) {
        return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
    });
    return text;
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
                const std::string name = upper(i->path().filename().string());
                if (!name.starts_with("GPSDATA") || !name.ends_with(".TXT")) {
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

std::unique_ptr<Siblings> siblingsOf(const std::string& recording) {
    return std::make_unique<FileSiblings>(recording);
}

} // namespace velmorant::telemetry
