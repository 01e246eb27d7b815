// make_recordings FOLDER: one recording of 90 seconds for every layout that the extractor reads,
// each named after its layout.
#include <cstdio>
#include <filesystem>
#include <fstream>

#include "tools/recordings/FamilyMakers.h"

int main(int count, char** values) {
    using namespace velmorant::recordings;
    if (count != 2) {
        std::fputs("usage: make_recordings FOLDER\n", stderr);
        return 2;
    }
    const std::filesystem::path folder = values[1];
    std::filesystem::create_directories(folder);
    std::int64_t time = 1718188245;
    Driver driver({}, 65, 7);
    for (const FamilyMaker& maker : familyMakers()) {
        auto drive = driver.drive(time, 90);
        loseFix(drive, 30, 39);
        time += 90;
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
