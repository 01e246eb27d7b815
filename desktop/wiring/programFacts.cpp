#include "desktop/wiring/programFacts.h"

#include "desktop/chart/ChartWidget.h"

#include <QtGlobal>
#include <mpv/client.h>

namespace velmorant {

ProgramFacts programFacts() {
    const unsigned long mpv = mpv_client_api_version();
    ProgramFacts facts;
    facts.version = VELMORANT_VERSION;
    facts.licence = "GPL-3.0-or-later";
    facts.components =
        std::string("Qt ") + qVersion() + ", Qt WebEngine (LGPL-3.0)\n" + "libmpv " +
        std::to_string(mpv >> 16) + "." + std::to_string(mpv & 0xffff) + ", FFmpeg (GPL-2.0+)\n" +
        "QCustomPlot " + ChartWidget::libraryVersion() + " (GPL-3.0+), Exiv2 (GPL-2.0+)\n" +
        "libcurl (curl), OpenSSL (Apache-2.0), Expat (MIT)\n" + "Leaflet 1.9.4 (BSD-2-Clause)\n" +
        "TopoJSON, World Atlas (ISC), CLDR (Unicode-3.0)";
    facts.webSite = "https://velmorant.example/dvr-tools";
    return facts;
}

} // namespace velmorant
