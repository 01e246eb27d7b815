// make_recordings FOLDER [SECONDS]: one recording of 90 or as many seconds for every layout that
// the extractor reads, each named after its layout. The middle third has no fix.
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "tools/recordings/FamilyMakers.h"

int main(int count, char** values) {
    using namespace velmorant::recordings;
    const int seconds = count == 3 ? std::atoi(values[2]) : 90;
    if (count < 2 || count > 3 || seconds < 1 || seconds > 3600) {
        std::fputs("usage: make_recordings FOLDER [SECONDS]\n", stderr);
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
        const ByteVector bytes = maker.make(drive);
        const auto path = folder / (std::string(maker.name) + std::string(maker.extension));
        std::ofstream out(path, std::ios::binary);
        out.write(reinterpret_cast<const char*>(bytes.data()),
                  static_cast<std::streamsize>(bytes.size()));
        if (!out.flush()) {
            std::fprintf(stderr, "make_recordings: %s: cannot be written\n", path.c_str());
            return 3;
        }
        std::printf("%s\n", path.c_str());
    }
    return 0;
}
