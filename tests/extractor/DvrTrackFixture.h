// A folder with three recordings of a day, and the command on it.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include "extractor/command/DvrTrackCommand.h"
#include "tools/recordings/FamilyMakers.h"

namespace velmorant::telemetry {

inline const recordings::FamilyMaker& maker(std::string_view name) {
    return *std::find_if(recordings::familyMakers().begin(), recordings::familyMakers().end(),
                         [&](const recordings::FamilyMaker& m) { return m.name == name; });
}

class DvrTrack : public testing::Test {
  protected:
    void SetUp() override {
        folder_ = std::filesystem::temp_directory_path() /
                  (std::string("dvr-track-") +
                   ::testing::UnitTest::GetInstance()->current_test_info()->name() + "-" +
                   std::to_string(::getpid()));
        std::filesystem::remove_all(folder_);
        std::filesystem::create_directories(folder_ / "day");
        recordings::Driver driver({}, 70, 5);
        write("day/103045.MP4", maker("freegps_letters_28").make(driver.drive(start_, 30)));
        write("day/103115.MP4", maker("gpmf_gps5").make(driver.drive(start_ + 30, 30)));
        write("day/120000.MP4", maker("gps_box").make(driver.drive(start_ + 5400, 30)));
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    void write(const std::string& name, const recordings::ByteVector& bytes) {
        std::ofstream(folder_ / name, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }
    int run(std::vector<std::string> arguments) {
        out_.str({});
        errors_.str({});
        return runDvrTrack(arguments, out_, errors_, Terminal::no, unfinished_);
    }
    std::string contentOf(const std::filesystem::path& path) const {
        std::ifstream in(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    }
    static std::size_t countOf(const std::string& text, const std::string& part) {
        std::size_t count = 0;
        for (std::size_t at = text.find(part); at != std::string::npos;
             at = text.find(part, at + 1)) {
            ++count;
        }
        return count;
    }

    static constexpr std::int64_t start_ = 1718188245;
    std::filesystem::path folder_;
    std::ostringstream out_, errors_;
    UnfinishedFiles unfinished_;
};

} // namespace velmorant::telemetry
