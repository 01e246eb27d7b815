// A memory card as a recorder leaves it: dated folders with one recording per minute in them.
#pragma once

#include <optional>
#include <string>

#include "tools/recordings/FreeGpsBlocks.h"

namespace velmorant::recordings {

enum class PictureUse { ownForEach, oneForAll };

// oneTown: one drive, cut into recordings. wholeWorld: each recording on another street of the
// world, so that no two routes touch: both hemispheres, over the date line both ways, through a
// tunnel, and on streets that run exactly north-south and east-west.
enum class DrivenPlaces { oneTown, wholeWorld };

struct CardPlan {
    std::string folder;
    int recordings = 8;
    int seconds = 60;
    std::string pictureSize = "640x360";
    int pictureRate = 15; // pictures a second
    FreeGpsLayout layout = FreeGpsLayout::withAcceleration;
    PictureUse pictures = PictureUse::ownForEach;
    DrivenPlaces places = DrivenPlaces::oneTown;
};

// Writes the card and prints the paths, one a line, in the order of recording. From six recordings
// in one town on there is one without a fix in its first 20 seconds (a third of shorter ones), one
// without any GPS, one that a power loss cut off and, last, one that crosses midnight UTC. Returns
// what went wrong.
std::optional<std::string> writeCard(const CardPlan& plan);

} // namespace velmorant::recordings
