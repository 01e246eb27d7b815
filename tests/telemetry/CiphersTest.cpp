// What enciphered recordings give, held against published bytes of real ones where there are any.
#include "telemetry/families/CipheredStrings.h"
#include "telemetry/families/LigoCipher.h"
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

Mp4Plan planWith(const DriveSeconds& drive, std::string_view format, const ByteVector& sample) {
    Mp4Plan plan = making::planOf(drive);
    TrackPlan track;
    track.handler = "meta";
    track.format = format;
    track.samples.assign(drive.size(), {sample, 1000});
    plan.tracks.push_back(track);
    return plan;
}

} // namespace

TEST(Ciphers, a_published_place_of_a_real_block_becomes_degrees_and_minutes) {
    const auto place = decipherPlace("gNiiZ8JTtHca6tw=", "htuiZMJSsXUX7No=");
    ASSERT_TRUE(place.has_value());
    EXPECT_DOUBLE_EQ(place->latitude, 4342.726563);
    EXPECT_GT(place->longitude, 0);
    EXPECT_LT(place->longitude, 18000);
}

TEST(Ciphers, text_that_no_key_opens_is_no_place) {
    EXPECT_FALSE(decipherPlace("AAAAAAAAAAAAAAAA", "AAAAAAAAAAAAAAAA").has_value());
}

TEST(Ciphers, published_bytes_of_a_real_record_become_its_counter_and_date) {
    const ByteVector record = {0x23, 0x23, 0x23, 0x23, 0x12, 0,    0,    0,    0xc0,
                               0x22, 0x20, 0x20, 0x20, 0xf0, 0x12, 0x10, 0x12, 0x21,
                               0xe5, 0x0e, 0x10, 0x12, 0x2f, 0x90, 0x10, 0x13, 0x01};
    ByteVector whole = record;
    whole[4] = static_cast<std::uint8_t>(record.size() - 8);
    const auto plain = decipherLigo(Bytes(std::span<const std::uint8_t>(whole)));
    ASSERT_TRUE(plain.has_value());
    EXPECT_EQ(*plain, std::string("\2\0\0\0", 4) + "2021/06/03 1");
}

TEST(Ciphers, records_cut_off_or_steered_wrongly_are_no_text) {
    for (const ByteVector& record :
         {ByteVector{'#', '#', '#', '#', 5, 0, 0, 0, 0xc0, 0x22, 0x20, 0x20},
          ByteVector{'#', '#', '#', '#', 4, 0, 0, 0, 0x20, 0x22, 0x20, 0x20},
          ByteVector{'#', '#', '#', '#', 3, 0, 0, 0, 0x00, 0x22, 0x20}}) {
        EXPECT_FALSE(decipherLigo(Bytes(std::span<const std::uint8_t>(record))).has_value());
    }
}

TEST(Ciphers, shifted_places_come_with_a_word_of_warning) {
    const auto maker = std::find_if(familyMakers().begin(), familyMakers().end(),
                                    [](const auto& m) { return m.name == "ligo_shifted"; });
    const auto read = extractBytes(maker->make(Driver({}, 70, 5).drive(morning, 10)));
    ASSERT_TRUE(read);
    ASSERT_EQ(read.value().notices.size(), 1U);
    EXPECT_NE(read.value().notices[0].reason.find("may be wrong"), std::string::npos);
}

TEST(Ciphers, records_of_exchanged_letters_are_refused_with_the_reason) {
    ByteWriter text;
    text.text("LIGOGPSINFO").u8(0).u32be(1).u32le(1).text("####").u32le(0x40);
    text.text("3123/36/12 12512534 ").padTo(0x14 + 0x84);
    const auto drive = Driver({}, 70, 5).drive(morning, 10);
    Mp4Plan plan = making::planOf(drive);
    plan.topBoxes.push_back(box("skip", text.take()));
    const auto read = extractBytes(buildMp4(plan));
    ASSERT_FALSE(read);
    EXPECT_NE(read.error().reason.find("not known"), std::string::npos) << read.error().reason;
}

TEST(Ciphers, a_row_whose_place_has_no_known_rule_gives_clock_and_acceleration) {
    const auto drive = Driver({}, 70, 5).drive(morning, 10);
    ByteWriter row;
    row.i32le(10).i32le(30).i32le(45).i32le(2024).i32le(6).i32le(12).text("ANE1");
    row.f32le(4210.2).f32le(-8142.6).f32le(20).f32le(87.8).f32le(0.1).f32le(0.2).f32le(0.9);
    const auto read = extractBytes(buildMp4(planWith(drive, "gpmd", row.padTo(0x60).take())));
    ASSERT_TRUE(read) << describe(read.error());
    EXPECT_EQ(read.value().family, "records in gpmd");
    const Sample& first = read.value().samples.front();
    EXPECT_EQ(first.state, FixState::enciphered);
    EXPECT_EQ(first.timeRecorded, morning * 1000);
    EXPECT_NEAR(first.mean.z, 0.9, 1e-6);
    EXPECT_EQ(read.value().fixes(), 0U);
}

} // namespace velmorant::telemetry
