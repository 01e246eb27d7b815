#include "resources/strings/AdditionTable.h"

namespace velmorant {

namespace {

struct Row {
    std::string_view name;
    AdditionTexts texts;
};

// One row per text, grouped by window. A new text of an addition is one more row.
// clang-format off
constexpr Row rows[] = {
    {"about.components", {"Components", "元件"}},
    {"about.licence", {"Licence", "授權條款"}},
    {"about.version", {"Version", "版本"}},
    {"chart.strongest", {"Strongest G:", "最大 G："}},
    {"configuration.notKept",
     {"The settings apply now, but they could not be kept for the next start:",
      "設定現在已生效，但無法保存供下次啟動使用："}},
    {"extraction.more", {"... and %1 more files", "……以及另外 %1 個檔案"}},
    {"extraction.title", {"Reading tracks", "正在讀取軌跡"}},
    {"list.fileMissing", {"Not played, the file is missing: %1", "未播放，檔案不存在：%1"}},
    {"list.notExtracted",
     {"Not played, its track has not been read: %1", "未播放，尚未讀取其軌跡：%1"}},
    {"list.notPlayable", {"Cannot be played: %1", "無法播放：%1"}},
    {"list.playing", {"The recording that is open cannot be removed from the list",
                      "已開啟的錄影無法從清單中移除"}},
    {"list.recordings", {"%1 recordings, %2 marked", "%1 個錄影，已標記 %2 個"}},
    {"program.notStarted", {"The program could not be started:", "無法啟動程式："}},
};
// clang-format on

} // namespace

std::optional<AdditionTexts> additionTexts(std::string_view name) {
    for (const Row& row : rows) {
        if (row.name == name)
            return row.texts;
    }
    return std::nullopt;
}

} // namespace velmorant
