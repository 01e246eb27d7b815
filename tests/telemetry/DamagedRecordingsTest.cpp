// Recordings cut at every 4 KiB and with every single byte of their headers overwritten.
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

const FamilyMaker& maker(std::string_view name) {
    return *std::find_if(familyMakers().begin(), familyMakers().end(),
                         [&](const FamilyMaker& m) { return m.name == name; });
}

std::vector<std::size_t> placesOf(const ByteVector& bytes, std::string_view marker) {
    const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    std::vector<std::size_t> places;
    for (std::size_t at = text.find(marker); at != std::string_view::npos;
         at = text.find(marker, at + 1)) {
        places.push_back(at);
    }
    return places;
}

} // namespace

TEST(DamagedRecordings, cut_at_every_4_kib_give_all_that_lies_before) {
    const auto drive = Driver({}, 70, 5).drive(morning, 24);
    const ByteVector whole = maker("freegps_letters_28").make(drive);
    const auto blocks = placesOf(whole, "freeGPS ");
    ASSERT_EQ(blocks.size(), 24U);
    std::size_t recovered = 0;
    for (std::size_t length = 0; length < whole.size(); length += 4096) {
        SCOPED_TRACE(length);
        const auto read = extractBytes({whole.begin(), whole.begin() + static_cast<long>(length)});
        const auto intact = static_cast<std::size_t>(
            std::count_if(blocks.begin(), blocks.end(),
                          [&](std::size_t block) { return block + 0x44 <= length; }));
        if (intact == 0) {
            ASSERT_FALSE(read);
            EXPECT_FALSE(read.error().reason.empty());
            continue;
        }
        ASSERT_TRUE(read) << describe(read.error());
        EXPECT_EQ(read.value().fixes(), intact);
        EXPECT_FALSE(read.value().notices.empty());
        recovered += intact;
        for (std::size_t i = 0; i < intact; ++i) {
            EXPECT_EQ(read.value().samples[i].time, drive[i].time);
            EXPECT_NEAR(read.value().samples[i].latitude, drive[i].latitude, 1e-5);
        }
    }
    EXPECT_GT(recovered, 1000U);
}

TEST(DamagedRecordings, cut_in_the_media_behind_the_movie_give_all_that_lies_before) {
    const auto drive = Driver({}, 70, 5).drive(morning, 24);
    Mp4Plan plan;
    plan.seconds = 24;
    plan.order = Mp4Plan::Order::movieFirst;
    plan.pictureBytes = 8192;
    TrackPlan track;
    track.handler = "text";
    track.format = "text";
    for (const DriveSecond& second : drive) {
        const std::string text = making::rmc(second);
        track.samples.push_back({ByteWriter().u16be(text.size()).text(text).take(), 1000});
    }
    plan.tracks.push_back(track);
    const ByteVector whole = buildMp4(plan);
    const auto sentences = placesOf(whole, "$GPRMC");
    ASSERT_EQ(sentences.size(), 24U);
    for (std::size_t length = sentences[0]; length < whole.size(); length += 4096) {
        SCOPED_TRACE(length);
        const auto read = extractBytes({whole.begin(), whole.begin() + static_cast<long>(length)});
        const auto intact = static_cast<std::size_t>(
            std::count_if(sentences.begin(), sentences.end(), [&](std::size_t sentence) {
                return sentence + making::rmc(drive[0]).size() + 4 <= length;
            }));
        if (intact == 0) {
            EXPECT_FALSE(read);
            continue;
        }
        ASSERT_TRUE(read) << describe(read.error());
        EXPECT_GE(read.value().fixes(), intact);
        EXPECT_LE(read.value().fixes(), intact + 1);
    }
}

TEST(DamagedRecordings, with_one_wrong_byte_in_a_header_say_what_they_lost) {
    const auto drive = Driver({}, 70, 5).drive(morning, 12);
    std::size_t complete = 0, partly = 0, refused = 0, silent = 0;
    for (const char* name : {"freegps_letters_28", "gpmf_gps5", "text_gsensori"}) {
        const ByteVector whole = maker(name).make(drive);
        const std::size_t movie = placesOf(whole, "moov").back() - 4;
        for (std::size_t at = 0; at < whole.size(); at = at == 48 ? movie : at + 1) {
            for (const std::uint8_t value : {std::uint8_t{0x00}, std::uint8_t{0xff}}) {
                ByteVector bytes = whole;
                bytes[at] = value;
                const auto read = extractBytes(bytes);
                if (!read) {
                    EXPECT_FALSE(read.error().reason.empty());
                    ++refused;
                } else if (read.value().fixes() == drive.size()) {
                    ++complete;
                } else if (!read.value().notices.empty()) {
                    ++partly;
                } else {
                    ++silent;
                    ADD_FAILURE() << name << ": byte " << at << " = " << int{value} << ": "
                                  << read.value().fixes() << " fixes, family "
                                  << read.value().family << ", no reason";
                }
            }
        }
    }
    EXPECT_EQ(silent, 0U);
    EXPECT_GT(complete, 3 * (partly + refused));
    RecordProperty("complete", static_cast<int>(complete));
    RecordProperty("partly", static_cast<int>(partly));
    RecordProperty("refused", static_cast<int>(refused));
    std::printf("one wrong byte: %zu complete, %zu partly with a reason, %zu refused\n", complete,
                partly, refused);
}

} // namespace velmorant::telemetry
