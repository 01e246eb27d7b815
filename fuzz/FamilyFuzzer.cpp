// One family of formats alone: --family=N chooses it by its number in the table, from 0;
// --families prints how many there are. Files beside the recording hold the same bytes as the
// recording: a text in one of its boxes is what they are read for.
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "telemetry/Extract.h"

using namespace velmorant::telemetry;

namespace {

class SameBytes final : public Siblings {
  public:
    explicit SameBytes(std::vector<std::uint8_t> bytes) : bytes_(std::move(bytes)) {}
    std::unique_ptr<ByteSource> withExtension(const std::string& extension) override {
        return std::make_unique<MemorySource>("fuzz" + extension, bytes_);
    }
    std::vector<std::unique_ptr<ByteSource>> cardTables() override {
        std::vector<std::unique_ptr<ByteSource>> tables;
        std::vector<std::uint8_t> rows = {'$', 'V', '0', '2', '\n'};
        rows.insert(rows.end(), bytes_.begin(), bytes_.end());
        tables.push_back(std::make_unique<MemorySource>("GPSData1.txt", std::move(rows)));
        return tables;
    }

    std::vector<std::unique_ptr<ByteSource>> inFolder(const std::string& extension) override {
        std::vector<std::unique_ptr<ByteSource>> files;
        files.push_back(std::make_unique<MemorySource>("other" + extension, bytes_));
        return files;
    }
    // A front recording is read as any other, which the other families' fuzzing covers.
    std::vector<std::string> frontRecordings() override { return {}; }

  private:
    std::vector<std::uint8_t> bytes_;
};

std::span<const Family> chosen;

} // namespace

extern "C" int LLVMFuzzerInitialize(int* count, char*** values) {
    constexpr std::string_view option = "--family=";
    for (int i = 1; i < *count; ++i) {
        const std::string_view argument = (*values)[i];
        if (argument == "--families") {
            std::printf("%zu\n", families().size());
            std::exit(0);
        }
        if (argument.starts_with(option)) {
            const auto number = static_cast<std::size_t>(std::atoi((*values)[i] + option.size()));
            chosen = families().subspan(std::min(number, families().size()));
            chosen = chosen.first(std::min<std::size_t>(chosen.size(), 1));
        }
    }
    if (chosen.empty()) {
        std::fputs("FamilyFuzzer: --family=N with N below the number of families\n", stderr);
        std::exit(2);
    }
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> bytes(data, data + size);
    MemorySource source("fuzz.MP4", bytes);
    SameBytes siblings(bytes);
    const auto read = extractWith(chosen, source, {}, &siblings);
    if (read && read.value().samples.empty()) {
        std::abort();
    }
    return 0;
}
