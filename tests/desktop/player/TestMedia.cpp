#include "tests/desktop/player/TestMedia.h"

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

namespace velmorant {

namespace {

const char* const grey = "geq=lum='20+2*mod(N,100)':cb=128:cr=128";
const char* const encoding = " -c:v libx264 -preset ultrafast -qp 4 -g 30 -bf 2 -pix_fmt yuv420p ";

std::string quoted(const std::string& path) {
    std::string text = "'";
    text += path;
    text += "'";
    return text;
}

std::string commandFor(TestMedium medium, const std::string& path) {
    const std::string output = quoted(path);
    const std::string start = "ffmpeg -nostdin -v error -y ";
    const std::string picture =
        std::string("-f lavfi -i \"color=s=320x180:r=30:d=10,format=yuv420p,") + grey + "\" ";
    const std::string sound = "-f lavfi -i sine=frequency=440:duration=10 ";
    switch (medium) {
    case TestMedium::TenSeconds:
        return start + picture + sound + encoding + "-c:a aac -f mp4 " + output;
    case TestMedium::Short:
        return start + picture + "-t 1" + encoding + "-f mp4 " + output;
    case TestMedium::SoundOnly:
        return start + sound + "-c:a aac -f mp4 " + output;
    case TestMedium::CutOff:
        return start + "-i " + quoted(testMedium(TestMedium::TenSeconds)) +
               " -c copy -movflags +faststart -f mp4 " + output;
    case TestMedium::NoMedia:
        return "echo no recording, but a text >" + output;
    }
    return {};
}

const char* nameOf(TestMedium medium) {
    switch (medium) {
    case TestMedium::TenSeconds:
        return "ten  seconds \xE8\xBD\xA6.MP4";
    case TestMedium::Short:
        return "short.MP4";
    case TestMedium::SoundOnly:
        return "sound.MP4";
    case TestMedium::CutOff:
        return "cut.MP4";
    case TestMedium::NoMedia:
        return "text.MP4";
    }
    return "";
}

} // namespace

std::string testMedium(TestMedium medium) {
    namespace fs = std::filesystem;
    const fs::path folder = fs::path(VELMORANT_TEST_OUTPUT);
    const fs::path path = folder / nameOf(medium);
    if (fs::exists(path))
        return path.string();
    fs::create_directories(folder);
    // Several test programs may make the same file at the same time.
    const fs::path beside = folder / (std::to_string(std::random_device{}()) + ".part");
    if (std::system(commandFor(medium, beside.string()).c_str()) != 0) {
        std::fprintf(stderr, "ffmpeg cannot make %s\n", path.c_str());
        std::exit(1);
    }
    if (medium == TestMedium::CutOff)
        fs::resize_file(beside, fs::file_size(beside) / 2);
    fs::rename(beside, path);
    return path.string();
}

int frameNumberOf(int greyValue) {
    const double luma = 16 + greyValue * 219.0 / 255.0;
    return static_cast<int>(std::lround((luma - 20) / 2));
}

} // namespace velmorant
