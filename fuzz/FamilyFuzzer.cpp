// One family of formats alone: built once for each row of the table, FAMILY is its number. Files
// beside the recording hold the same bytes as the recording.
#include <cstdlib>

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
        tables.push_back(std::make_unique<MemorySource>("GPSData1.txt", bytes_));
        return tables;
    }

  private:
    std::vector<std::uint8_t> bytes_;
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::vector<std::uint8_t> bytes(data, data + size);
    MemorySource source("fuzz.MP4", bytes);
    SameBytes siblings(bytes);
    const auto read = extractWith(families().subspan(FAMILY, 1), source, {}, &siblings);
    if (read && read.value().samples.empty()) {
        std::abort();
    }
    return 0;
}
