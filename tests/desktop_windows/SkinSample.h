#pragma once

#include "tests/desktop_windows/TemporaryFolder.h"
#include <string>

namespace velmorant {

/// A small skin with one element of every kind. Each state has a colour of its own.
inline const char* const sampleSkin = R"(<?xml version="1.0" encoding="UTF-8"?>
<svg xmlns="http://www.w3.org/2000/svg" xmlns:xlink="http://www.w3.org/1999/xlink"
     width="300" height="120" viewBox="0 0 300 120">
<defs>
<g id="face-on"><rect width="40" height="20" fill="#112233"/></g>
<g id="face-on.focus"><rect width="40" height="20" fill="#112233"/></g>
<g id="states">
<g id="Play.normal"><rect x="10" y="10" width="40" height="20" fill="#101010"/></g>
<g id="Play.hover"><rect x="10" y="10" width="40" height="20" fill="#202020"/></g>
<g id="Play.pressed"><rect x="10" y="10" width="40" height="20" fill="#303030"/></g>
<g id="Play.focus"><rect x="10" y="10" width="40" height="20" fill="#404040"/></g>
<g id="Play.on"><rect x="10" y="10" width="40" height="20" fill="#505050"/></g>
<g id="Play.on.focus"><rect x="10" y="10" width="40" height="20" fill="#585858"/></g>
<g id="Play.disabled"><rect x="10" y="10" width="40" height="20" fill="#606060"/></g>
<g id="stop.normal"><rect x="60" y="10" width="40" height="20" fill="#707070"/></g>
<g id="stop.pressed"><rect x="60" y="10" width="40" height="20" fill="#808080"/></g>
<g id="below.hover"><rect x="5" y="90" width="40" height="20" fill="#707070"/></g>
<g id="volume.fill"><rect x="110" y="58" width="100" height="4" fill="#00FF00"/></g>
<g id="volume.thumb"><rect x="100" y="50" width="20" height="20" fill="#FF0000"/></g>
<g id="datum"><title>Speed</title><rect width="250" height="30" fill="#000000"/><rect x="75" width="25" height="30" fill="#0000FF"/></g>
</g>
</defs>
<rect id="ground" width="300" height="120" fill="#123456"/>
<g id="Play"><title>Play it</title><use xlink:href="#Play.normal"/></g>
<g id="stop"><use xlink:href="#stop.normal"/></g>
<g id="below"><rect x="5" y="90" width="40" height="20" fill="#909090"/></g>
<g id="volume"><title>Volume</title><rect id="volume.range" x="110" y="48" width="100" height="24" fill="none"/><g id="volume.track"><rect x="110" y="58" width="100" height="4" fill="#FFFFFF"/></g></g>
<rect id="A1" x="225" y="10" width="25" height="30" fill="none"/>
<rect id="A2" x="250" y="10" width="25" height="30" fill="none"/>
<rect id="place.status" x="60" y="90" width="100" height="20" fill="none" color="#FFFF00" font-size="12"/>
<rect id="place.notice" x="160" y="82" width="60" height="32" fill="none" color="#FFFF00" font-size="12"/>
<rect id="place.chart" x="220" y="50" width="70" height="60" fill="#654321"/>
</svg>
)";

inline std::string writeSampleSkin(const TemporaryFolder& folder) {
    return folder.write("sample skin.mp4", sampleSkin);
}

} // namespace velmorant
