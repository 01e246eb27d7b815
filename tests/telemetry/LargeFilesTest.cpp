// Recordings beyond 4 GB, without their bytes: a hole of 5 GiB lies at the start of the media data.
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

constexpr std::uint64_t hole = 5ULL << 30;

// The bytes before `at` stay, the others follow behind the hole, which reads as zeros.
class SourceWithHole final : public ByteSource {
  public:
    SourceWithHole(ByteVector bytes, std::size_t at) : bytes_(std::move(bytes)), at_(at) {}
    const std::string& name() const override { return name_; }
    std::uint64_t size() const override { return bytes_.size() + hole; }
    std::size_t readAt(std::uint64_t offset, std::span<std::uint8_t> into) override {
        std::size_t done = 0;
        for (; done < into.size() && offset + done < size(); ++done) {
            const std::uint64_t place = offset + done;
            into[done] = place < at_          ? bytes_[static_cast<std::size_t>(place)]
                         : place < at_ + hole ? std::uint8_t{0}
                                              : bytes_[static_cast<std::size_t>(place - hole)];
        }
        bytesRead_ += done;
        return done;
    }
    void announce(std::uint64_t, std::uint64_t) override {}
    std::uint64_t bytesRead() const { return bytesRead_; }

  private:
    ByteVector bytes_;
    std::size_t at_;
    std::string name_ = "large.MP4";
    std::uint64_t bytesRead_ = 0;
};

void add64(ByteVector& bytes, std::size_t at) {
    std::uint64_t value = Bytes(bytes).u64be(at) + hole;
    for (std::size_t i = 8; i-- > 0; value >>= 8) {
        bytes[at + i] = static_cast<std::uint8_t>(value);
    }
}

} // namespace

TEST(LargeFiles, are_read_through_64_bit_sizes_and_offsets) {
    const auto drive = Driver({}, 70, 5).drive(morning, 30);
    Mp4Plan plan = making::planOf(drive);
    plan.offsets = Mp4Plan::Offsets::wide;
    plan.mediaSize = Mp4Plan::MediaSize::wide;
    TrackPlan track;
    track.handler = "text";
    track.format = "text";
    for (const DriveSecond& second : drive) {
        const std::string text = making::rmc(second);
        track.samples.push_back({ByteWriter().u16be(text.size()).text(text).take(), 1000});
    }
    plan.tracks.push_back(track);
    ByteVector bytes = buildMp4(plan);
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    const std::size_t media = text.find("mdat");
    std::vector<std::size_t> tables;
    for (std::size_t at = text.find("co64"); at != std::string_view::npos;
         at = text.find("co64", at + 1)) {
        tables.push_back(at);
    }
    ASSERT_EQ(tables.size(), 2U);
    add64(bytes, media + 4);
    for (const std::size_t table : tables) {
        const std::uint32_t count = Bytes(bytes).u32be(table + 8);
        for (std::uint32_t i = 0; i < count; ++i) {
            add64(bytes, table + 12 + 8 * std::size_t{i});
        }
    }
    SourceWithHole source(bytes, media + 12);
    const auto read = extract(source);
    ASSERT_TRUE(read) << describe(read.error());
    EXPECT_EQ(read.value().family, "text track");
    expectTruth(read.value(), drive, {0.1, 0.1, 0.1, 0.01});
    EXPECT_TRUE(read.value().notices.empty());
    EXPECT_LT(source.bytesRead(), 1U << 20); // of more than 5 GB
}

} // namespace velmorant::telemetry
