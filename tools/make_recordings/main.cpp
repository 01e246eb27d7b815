// make_recordings FOLDER [SECONDS [PICTURE]]: one recording of 90 or as many seconds for every
// layout that the extractor reads, each named after its layout. The middle third has no fix. With
// PICTURE, an MP4 file of that length as ffmpeg writes it, the MP4 recordings can be played.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "tools/recordings/FamilyMakers.h"
#include "tools/recordings/RealPicture.h"

namespace {

using namespace velmorant::recordings;

ByteVector contentOf(const char* path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

// A layout that is no MP4 keeps what it has.
std::optional<ByteVector> pictured(const FamilyMaker& maker, ByteVector recording,
                                   const ByteVector& picture) {
    return picture.empty() || maker.extension != ".MP4" ? std::optional(std::move(recording))
                                                        : withPicture(recording, picture);
}

} // namespace

int main(int count, char** values) {
    const int seconds = count >= 3 ? std::atoi(values[2]) : 90;
    const ByteVector picture = count == 4 ? contentOf(values[3]) : ByteVector{};
    if (count < 2 || count > 4 || seconds < 1 || seconds > 3600) {
        std::fputs("usage: make_recordings FOLDER [SECONDS [PICTURE]]\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = values[1];
    std::filesystem::create_directories(folder);
    std::int64_t time = 1718188245;
    Driver driver({}, 65, 7);
    for (const FamilyMaker& maker : familyMakers()) {
        auto drive = driver.drive(time, seconds);
        const auto third = static_cast<std::size_t>(seconds) / 3;
        if (third > 0) {
            loseFix(drive, third, 2 * third - 1);
        }
        time += seconds;
        const auto bytes = pictured(maker, maker.make(drive), picture);
        if (!bytes) {
            std::fprintf(stderr, "make_recordings: %s: no MP4 as ffmpeg writes it\n", values[3]);
            return 3;
        }
        const auto path = folder / (std::string(maker.name) + std::string(maker.extension));
        std::ofstream out(path, std::ios::binary);
        out.write(reinterpret_cast<const char*>(bytes->data()),
                  static_cast<std::streamsize>(bytes->size()));
        if (!out.flush()) {
            std::fprintf(stderr, "make_recordings: %s: cannot be written\n", path.c_str());
            return 3;
        }
        std::printf("%s\n", path.c_str());
    }
    return 0;
}
