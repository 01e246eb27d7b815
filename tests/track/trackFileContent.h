#pragma once

#include "tests/fakes/FakeXmlDocument.h"

#include <string>

namespace velmorant {

/// One sample's children as the extractor writes them, at hour:minute:second.
inline fakes::XmlContent::Record sampleRecord(int hour, int minute, int second) {
    return {{"utc_Year", "2012"},
            {"utc_Month", "9"},
            {"utc_Day", "7"},
            {"utc_Hour", std::to_string(hour)},
            {"utc_Minute", std::to_string(minute)},
            {"utc_Second", std::to_string(second)},
            {"Latitude", "+25.0412345"},
            {"Longitude", "+121.5012345"},
            {"Angle", "89.50"},
            {"Speed", "60.40"},
            {"G_sum", "1.0110"},
            {"G_x", "0.1250"},
            {"G_y", "-0.2000"},
            {"G_z", "0.9800"}};
}

inline void setChild(fakes::XmlContent::Record& record, const std::string& name,
                     const std::string& text) {
    for (auto& [child, value] : record)
        if (child == name) {
            value = text;
            return;
        }
    record.emplace_back(name, text);
}

inline void removeChild(fakes::XmlContent::Record& record, const std::string& name) {
    std::erase_if(record, [&](const auto& child) { return child.first == name; });
}

/// `count` samples, one per second from 08:05:09 on; sample i lies at longitude i, latitude -i.
inline fakes::XmlContent trackFileContent(int count) {
    fakes::XmlContent content;
    for (int i = 0; i < count; ++i) {
        const int time = 8 * 3600 + 5 * 60 + 9 + i;
        auto record = sampleRecord(time / 3600, time / 60 % 60, time % 60);
        setChild(record, "Longitude", "+" + std::to_string(i) + ".5");
        setChild(record, "Latitude", "-" + std::to_string(i) + ".25");
        content.records.emplace_back("gpsinfo", record);
    }
    return content;
}

} // namespace velmorant
