// Files that lie, end early or are something else: a reason for each, never a crash or a long wait.
#include <functional>

#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FamilyMakers.h"
#include "tools/recordings/FreeGpsBlocks.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

using Bytes8 = std::vector<std::uint8_t>;

Bytes8 plain(double seconds = 12) {
    Mp4Plan plan;
    plan.seconds = seconds;
    return buildMp4(plan);
}

std::size_t place(const Bytes8& bytes, std::string_view marker) {
    const auto found = std::search(bytes.begin(), bytes.end(), marker.begin(), marker.end());
    EXPECT_NE(found, bytes.end()) << marker;
    return static_cast<std::size_t>(found - bytes.begin());
}

// The 32-bit number that lies `after` bytes behind the start of the marker.
Bytes8 patched(Bytes8 bytes, std::string_view marker, int after, std::uint32_t value) {
    const std::size_t at = place(bytes, marker) + static_cast<std::size_t>(after);
    for (std::size_t i = 0; i < 4; ++i) {
        bytes[at + i] = static_cast<std::uint8_t>(value >> (24 - 8 * i));
    }
    return bytes;
}

Bytes8 metadataTrack(std::uint32_t firstChunk) {
    Mp4Plan plan;
    plan.seconds = 12;
    TrackPlan track;
    track.handler = "meta";
    track.format = "gpmd";
    track.samples.assign(12, {Bytes8(64, 0), 1000});
    plan.tracks.push_back(track);
    Bytes8 bytes = buildMp4(plan);
    const std::size_t first = place(bytes, "stco");
    const auto second = std::search(bytes.begin() + static_cast<std::ptrdiff_t>(first) + 4,
                                    bytes.end(), bytes.begin() + static_cast<std::ptrdiff_t>(first),
                                    bytes.begin() + static_cast<std::ptrdiff_t>(first) + 4);
    for (std::ptrdiff_t i = 0; i < 4; ++i) {
        *(second + 12 + i) = static_cast<std::uint8_t>(firstChunk >> (24 - 8 * i));
    }
    return bytes;
}

struct Broken {
    const char* name;
    std::function<Bytes8()> make;
    const char* box;
    const char* reason;
};

class BrokenRecording : public testing::TestWithParam<Broken> {};

Bytes8 text(std::string_view content) {
    return {content.begin(), content.end()};
}

} // namespace

TEST_P(BrokenRecording, is_refused_with_the_place_and_the_reason) {
    const auto read = extractBytes(GetParam().make(), "card/broken.mp4");
    ASSERT_FALSE(read);
    EXPECT_EQ(read.error().file, "card/broken.mp4");
    EXPECT_EQ(read.error().kind, ErrorKind::damaged);
    EXPECT_EQ(read.error().box, GetParam().box);
    EXPECT_NE(read.error().reason.find(GetParam().reason), std::string::npos)
        << read.error().reason;
    EXPECT_EQ(describe(read.error()).find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    inputs, BrokenRecording,
    testing::Values(
        Broken{"empty", [] { return Bytes8{}; }, "", "empty"},
        Broken{"text", [] { return text("No recording, a shopping list instead."); }, "ecor",
               "no MP4"},
        Broken{"seven_bytes", [] { return text("1234567"); }, "", "no MP4"},
        Broken{"zeros", [] { return Bytes8(4096, 0); }, "....", "no MP4"},
        Broken{"type_alone", [] { return box("ftyp", {}); }, "moov", "no movie header"},
        Broken{"cut_off",
               [] {
                   Bytes8 bytes = plain();
                   bytes.resize(bytes.size() / 3);
                   return bytes;
               },
               "mdat", "cut off"},
        Broken{"media_size_lies", [] { return patched(plain(), "mdat", -4, 0x7fffffff); }, "mdat",
               "more bytes than the file"},
        Broken{"movie_size_lies", [] { return patched(plain(), "moov", -4, 0x7fffffff); }, "moov",
               "more bytes than the file"},
        Broken{"size_below_header", [] { return patched(plain(), "moov", -4, 7); }, "moov",
               "less than its own header"},
        Broken{"track_size_lies", [] { return patched(plain(), "trak", -4, 0x7fffffff); },
               "moov/trak", "more bytes than the box around it"},
        Broken{"no_track", [] { return patched(plain(), "trak", 0, 0x66726565); }, "moov",
               "no track"},
        Broken{"no_length",
               [] {
                   Bytes8 bytes = patched(plain(), "mvhd", 20, 0);
                   return patched(bytes, "mdhd", 20, 0);
               },
               "moov/mvhd", "does not tell its length"},
        Broken{"samples_beyond_the_end", [] { return metadataTrack(0xf0000000); }, "moov/trak[2]",
               "beyond the file's end"}),
    [](const auto& row) { return row.param.name; });

TEST(BrokenRecordings, a_table_of_billions_is_refused_by_arithmetic) {
    Mp4Plan plan;
    plan.seconds = 12;
    TrackPlan track;
    track.handler = "meta";
    track.format = "gpmd";
    track.samples.assign(12, {Bytes8(64, 0), 1000});
    plan.tracks.push_back(track);
    for (const char* table : {"stsz", "stco", "stsc", "stts"}) {
        SCOPED_TRACE(table);
        Bytes8 bytes = buildMp4(plan);
        const std::size_t first = place(bytes, table);
        const std::string_view marker(table);
        const auto second = std::search(bytes.begin() + static_cast<std::ptrdiff_t>(first) + 4,
                                        bytes.end(), marker.begin(), marker.end());
        ASSERT_NE(second, bytes.end());
        const std::ptrdiff_t count = marker == "stsz" ? 12 : 8;
        std::fill(second + count, second + count + 4, std::uint8_t{0xff});
        const auto read = extractBytes(bytes);
        ASSERT_FALSE(read);
        EXPECT_NE(read.error().reason.find("4294967295"), std::string::npos) << read.error().reason;
        EXPECT_EQ(read.error().box, std::string("moov/trak[2]/mdia/minf/stbl/") + table);
    }
}

// A number behind the marker's occurrence of this number, the first being 1.
Bytes8 patchedAt(Bytes8 bytes, std::string_view marker, int occurrence, int after,
                 std::uint32_t value) {
    auto at = bytes.begin();
    for (int i = 0; i < occurrence; ++i) {
        at = std::search(at + (i == 0 ? 0 : 1), bytes.end(), marker.begin(), marker.end());
        EXPECT_NE(at, bytes.end()) << marker;
    }
    for (int i = 0; i < 4; ++i) {
        *(at + after + i) = static_cast<std::uint8_t>(value >> (24 - 8 * i));
    }
    return bytes;
}

TEST(BrokenRecordings, a_broken_length_or_time_makes_no_hours_of_a_clip) {
    const auto drive = Driver({}, 70, 5).drive(morning, 30);
    for (const char* layout : {"gpmf_gps5", "camm", "text_sentences_sbtl", "freegps_letters_28"}) {
        const auto maker = std::find_if(familyMakers().begin(), familyMakers().end(),
                                        [&](const auto& m) { return m.name == layout; });
        ASSERT_NE(maker, familyMakers().end()) << layout;
        const Bytes8 good = maker->make(drive);
        const bool track = std::string_view(layout) != "freegps_letters_28";
        std::vector<Bytes8> broken = {
            patchedAt(good, "mdhd", 1, 20, 0x7fffffff),
            patchedAt(good, "mdhd", 1, 16, 1), // one unit a second
            patchedAt(patchedAt(good, "mdhd", 1, 20, 0x7fffffff), "mvhd", 1, 20, 0x7fffffff),
        };
        if (track) {
            broken.push_back(patchedAt(good, "stts", 2, 16, 0x00ffffff));
            broken.push_back(patchedAt(good, "mdhd", 2, 20, 0x7fffffff));
            broken.push_back(patchedAt(good, "mdhd", 2, 16, 1));
        }
        for (std::size_t i = 0; i < broken.size(); ++i) {
            const auto read = extractBytes(broken[i]);
            if (read) {
                EXPECT_LE(read.value().samples.size(), 400U) << layout << ' ' << i;
            }
        }
    }
}

TEST(BrokenRecordings, a_length_that_cannot_be_is_told_and_another_taken) {
    const auto maker = std::find_if(familyMakers().begin(), familyMakers().end(),
                                    [](const auto& m) { return m.name == "gps_box"; });
    const auto drive = Driver({}, 70, 5).drive(morning, 30);
    const auto read = extractBytes(patchedAt(maker->make(drive), "mdhd", 1, 20, 0x7fffffff));
    ASSERT_TRUE(read);
    EXPECT_EQ(read.value().samples.size(), 30U);
    ASSERT_FALSE(read.value().notices.empty());
    EXPECT_NE(read.value().notices[0].reason.find("more than the samples and the file's size"),
              std::string::npos);
}

TEST(BrokenRecordings, a_missing_file_and_a_folder_cannot_be_read) {
    for (const char* path : {"/does/not/exist.mp4", "/tmp"}) {
        const auto read = extractFile(path);
        ASSERT_FALSE(read);
        EXPECT_EQ(read.error().kind, ErrorKind::unreadable);
        EXPECT_EQ(read.error().file, path);
    }
}

TEST(PlainRecording, without_telemetry_gives_a_sample_for_every_second) {
    const auto read = extractBytes(plain(12.4));
    ASSERT_TRUE(read) << read.error().reason;
    EXPECT_EQ(read.value().family, "none");
    ASSERT_EQ(read.value().notices.size(), 1U);
    EXPECT_EQ(read.value().notices[0].reason, "no telemetry track, no GPS block or box");
    EXPECT_EQ(read.value().base, TimeBase::creation);
    ASSERT_EQ(read.value().samples.size(), 12U);
    for (std::size_t i = 0; i < 12; ++i) {
        EXPECT_EQ(read.value().samples[i].time, morning + static_cast<std::int64_t>(i));
        EXPECT_EQ(read.value().samples[i].latitude, 0);
        EXPECT_EQ(read.value().samples[i].longitude, 0);
        EXPECT_EQ(read.value().samples[i].state, FixState::noReading);
    }
}

TEST(PlainRecording, shorter_than_a_second_still_gives_one_sample) {
    const auto read = extractBytes(plain(0.2));
    ASSERT_TRUE(read);
    EXPECT_EQ(read.value().samples.size(), 1U);
}

} // namespace velmorant::telemetry
