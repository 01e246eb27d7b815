// The same drive in every shape that the boxes allow.
#include "tests/telemetry/Extraction.h"
#include "tools/recordings/FreeGpsBlocks.h"

namespace velmorant::telemetry {

using namespace recordings;

namespace {

struct Shape {
    Mp4Plan::Order order;
    Mp4Plan::Offsets offsets;
    Mp4Plan::Sizes sizes;
    Mp4Plan::MediaSize mediaSize;
};

std::vector<Shape> allShapes() {
    std::vector<Shape> shapes;
    for (const auto order : {Mp4Plan::Order::mediaFirst, Mp4Plan::Order::movieFirst}) {
        for (const auto offsets : {Mp4Plan::Offsets::narrow, Mp4Plan::Offsets::wide}) {
            for (const auto sizes : {Mp4Plan::Sizes::full, Mp4Plan::Sizes::compact}) {
                for (const auto media : {Mp4Plan::MediaSize::narrow, Mp4Plan::MediaSize::wide,
                                         Mp4Plan::MediaSize::toTheEnd}) {
                    shapes.push_back({order, offsets, sizes, media});
                }
            }
        }
    }
    return shapes;
}

// A GPMF payload with one position row: small, so that the tables are what is tested.
ByteVector payload(const DriveSecond& second) {
    ByteWriter scale;
    scale.text("SCAL").text("l").u8(4).u16be(5);
    scale.i32be(10000000).i32be(10000000).i32be(1000).i32be(1000).i32be(100);
    ByteWriter row;
    row.text("GPS5").text("l").u8(20).u16be(1);
    row.i32be(std::lround(second.latitude * 1e7)).i32be(std::lround(second.longitude * 1e7));
    row.i32be(0).i32be(std::lround(second.speed / 3.6 * 1000)).i32be(0);
    ByteWriter stream;
    stream.text("STRM").u8(0).u8(1).u16be(scale.size() + row.size());
    stream.append(scale.bytes()).append(row.bytes());
    ByteWriter device;
    device.text("DEVC").u8(0).u8(1).u16be(stream.size()).append(stream.bytes());
    return device.take();
}

} // namespace

TEST(BoxShapes, every_table_and_order_gives_the_same_drive) {
    const auto drive = Driver({}, 70, 5).drive(morning, 31);
    for (const Shape& shape : allShapes()) {
        for (const int perChunk : {1, 4}) {
            Mp4Plan plan;
            plan.seconds = 31;
            plan.creation = morning;
            plan.order = shape.order;
            plan.offsets = shape.offsets;
            plan.sizes = shape.sizes;
            plan.mediaSize = shape.mediaSize;
            TrackPlan track;
            track.handler = "meta";
            track.format = "gpmd";
            track.samplesPerChunk = perChunk;
            for (const DriveSecond& second : drive) {
                track.samples.push_back({payload(second), 1000});
            }
            plan.tracks.push_back(track);
            const auto read = extractBytes(buildMp4(plan));
            ASSERT_TRUE(read) << read.error().reason;
            ASSERT_EQ(read.value().samples.size(), drive.size());
            for (std::size_t i = 0; i < drive.size(); ++i) {
                EXPECT_NEAR(read.value().samples[i].latitude, drive[i].latitude, 1e-7);
                EXPECT_NEAR(read.value().samples[i].longitude, drive[i].longitude, 1e-7);
                EXPECT_NEAR(read.value().samples[i].speed, drive[i].speed, 0.01);
            }
        }
    }
}

TEST(BoxShapes, a_truncated_recording_gives_the_samples_before_its_end) {
    const auto drive = Driver({}, 70, 5).drive(morning, 31);
    Mp4Plan plan;
    plan.seconds = 31;
    plan.order = Mp4Plan::Order::movieFirst;
    TrackPlan track;
    track.handler = "meta";
    track.format = "gpmd";
    for (const DriveSecond& second : drive) {
        track.samples.push_back({payload(second), 1000});
    }
    plan.tracks.push_back(track);
    auto bytes = buildMp4(plan);
    bytes.resize(bytes.size() - 10 * (64 + track.samples[0].bytes.size()) - 1);
    const auto read = extractBytes(bytes);
    ASSERT_TRUE(read);
    EXPECT_EQ(read.value().fixes(), 20U);
    EXPECT_EQ(read.value().samples.size(), 31U);
    EXPECT_EQ(read.value().samples[20].state, FixState::noReading);
    EXPECT_EQ(read.value().notices.size(), 2U); // the media's size and the first missing sample
}

} // namespace velmorant::telemetry
