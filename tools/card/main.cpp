// make_card FOLDER [--recordings N] [--seconds S] [--layout n1|n2] [--size WxH]
//     [--rate N] [--one-picture] [--whole-world]
#include <charconv>
#include <cstdio>
#include <cstring>

#include "tools/card/Card.h"

namespace {

using namespace velmorant::recordings;

const char usage[] =
    "usage: make_card FOLDER [options]\n"
    "Writes recordings as a car recorder leaves them on its memory card and prints their paths.\n"
    "  --recordings N   how many (default 8)\n"
    "  --seconds S      length of each, 3 to 3600 (default 60)\n"
    "  --layout n1|n2   telemetry blocks with or without acceleration (default n1)\n"
    "  --size WxH       of the picture (default 640x360)\n"
    "  --rate N         pictures a second, 1 to 120 (default 15)\n"
    "  --one-picture    encode one picture and use it for all: for hundreds of recordings\n"
    "  --whole-world    each recording in another part of the world (8 parts, then again)\n";

bool number(const char* text, int least, int most, int& value) {
    const char* end = text + std::strlen(text);
    const auto result = std::from_chars(text, end, value);
    return result.ec == std::errc() && result.ptr == end && value >= least && value <= most;
}

bool readOption(const char* option, const char* value, CardPlan& plan) {
    const auto is = [&](const char* name) { return std::strcmp(option, name) == 0; };
    if (value == nullptr) {
        return false;
    }
    if (is("--recordings")) {
        return number(value, 1, 100000, plan.recordings);
    }
    if (is("--seconds")) {
        return number(value, 3, 3600, plan.seconds);
    }
    if (is("--rate")) {
        return number(value, 1, 120, plan.pictureRate);
    }
    if (is("--size")) {
        plan.pictureSize = value;
        return true;
    }
    if (is("--layout")) {
        plan.layout = std::strcmp(value, "n2") == 0 ? FreeGpsLayout::withoutAcceleration
                                                    : FreeGpsLayout::withAcceleration;
        return std::strcmp(value, "n1") == 0 || std::strcmp(value, "n2") == 0;
    }
    return false;
}

} // namespace

int main(int count, char** values) {
    CardPlan plan;
    for (int i = 1; i < count; ++i) {
        if (std::strcmp(values[i], "--one-picture") == 0) {
            plan.pictures = PictureUse::oneForAll;
        } else if (std::strcmp(values[i], "--whole-world") == 0) {
            plan.places = DrivenPlaces::wholeWorld;
        } else if (std::strncmp(values[i], "--", 2) == 0) {
            if (!readOption(values[i], i + 1 < count ? values[i + 1] : nullptr, plan)) {
                std::fputs(usage, stderr);
                return 2;
            }
            ++i;
        } else if (plan.folder.empty()) {
            plan.folder = values[i];
        } else {
            std::fputs(usage, stderr);
            return 2;
        }
    }
    if (plan.folder.empty()) {
        std::fputs(usage, stderr);
        return 2;
    }
    if (const auto problem = writeCard(plan)) {
        std::fprintf(stderr, "make_card: %s\n", problem->c_str());
        return 1;
    }
    return 0;
}
