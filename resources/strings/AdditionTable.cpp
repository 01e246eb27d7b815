#include "resources/strings/AdditionTable.h"

#include <algorithm>
#include <iterator>

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
    {"button.cancel", {"Cancel", "取消"}},
    {"button.no", {"No", "否"}},
    {"button.ok", {"OK", "確定"}},
    {"button.yes", {"Yes", "是"}},
    {"chart.strongest", {"Strongest G:", "最大 G："}},
    {"configuration.notKept",
     {"The settings apply now, but they could not be kept for the next start:",
      "設定現在已生效，但無法保存供下次啟動使用："}},
    {"drawing.route", {"Route %1 of %2", "第 %1 條路線，共 %2 條"}},
    {"drawing.title", {"Drawing routes", "正在繪製路線"}},
    {"extraction.more", {"... and %1 more files", "……以及另外 %1 個檔案"}},
    {"extraction.minutesLeft", {", about %1 min left", "，大約還需 %1 分鐘"}},
    {"extraction.place", {"Reading %1, %2 of %3", "正在讀取 %1，第 %2 個，共 %3 個"}},
    {"extraction.read", {"Tracks read: %1", "已讀取軌跡：%1"}},
    {"extraction.readInPart", {"Tracks read: %1, not read: %2", "已讀取軌跡：%1，未讀取：%2"}},
    {"extraction.secondsLeft", {", about %1 s left", "，大約還需 %1 秒"}},
    {"extraction.title", {"Reading tracks", "正在讀取軌跡"}},
    {"files.file", {"%1 file", "%1 檔案"}},
    {"files.folder", {"Folder", "資料夾"}},
    {"frame.filter", {"JPEG picture|*.jpg|PNG picture|*.png", "JPEG 圖片|*.jpg|PNG 圖片|*.png"}},
    {"frame.title", {"Save frame", "儲存影格"}},
    {"list.empty", {"Drop recordings, folders or a memory card here, or press Open",
                    "將錄影檔、資料夾或記憶卡拖放到此處，或按「開啟」"}},
    {"list.fileMissing", {"Not played, the file is missing: %1", "未播放，檔案不存在：%1"}},
    {"list.menu.copy", {"Copy path", "複製路徑"}},
    {"list.menu.export", {"Export track", "匯出軌跡"}},
    {"list.menu.folder", {"Show in folder", "在資料夾中顯示"}},
    {"list.menu.map", {"Show on map", "在地圖上顯示"}},
    {"list.menu.mark", {"Mark or unmark", "標記或取消標記"}},
    {"list.menu.play", {"Play", "播放"}},
    {"list.menu.remove", {"Remove from list", "從清單移除"}},
    {"list.notExtracted",
     {"Not played, its track has not been read: %1", "未播放，尚未讀取其軌跡：%1"}},
    {"list.notPlayable", {"Cannot be played: %1", "無法播放：%1"}},
    {"list.playing", {"The recording that is open cannot be removed from the list",
                      "已開啟的錄影無法從清單中移除"}},
    {"list.recording", {"%1 recording, %2 marked", "%1 個錄影，已標記 %2 個"}},
    {"list.recordings", {"%1 recordings, %2 marked", "%1 個錄影，已標記 %2 個"}},
    {"map.noServer", {"The map server does not answer, the built-in map is shown: %1",
                      "地圖伺服器沒有回應，改用內建地圖：%1"}},
    {"map.notShown", {"The map cannot be shown: its process ended. Free memory or disk space, then "
                      "start the program again",
                      "無法顯示地圖：地圖程序已結束。請釋放記憶體或磁碟空間，再重新啟動程式"}},
    {"moment.cameraClock", {"camera clock", "攝影機時鐘"}},
    {"list.word.marked", {"marked", "已標記"}},
    {"list.word.notMarked", {"not marked", "未標記"}},
    {"list.word.notPlaying", {"not playing", "未播放"}},
    {"list.word.playing", {"playing", "播放中"}},
    {"list.word.recording", {"recording", "錄影"}},
    {"name.about", {"About this program", "關於本程式"}},
    {"name.adding", {"Recordings added", "已加入的錄影"}},
    {"name.chart", {"Speed or G-force of every second", "每一秒的車速或 G 值"}},
    {"name.close", {"Close", "關閉"}},
    {"name.list", {"Recordings", "錄影清單"}},
    {"name.map", {"Map", "地圖"}},
    {"name.mapBar", {"Below the map", "地圖下方"}},
    {"name.mylist", {"Go to the recordings", "前往錄影清單"}},
    {"name.picture", {"Picture", "影像"}},
    {"name.webstation", {"Web site of the program", "程式的網站"}},
    {"program.notStarted", {"The program could not be started:", "無法啟動程式："}},
    {"reason.besideTrack", {"The track is from another file beside the recording",
                            "軌跡取自錄影檔旁的另一個檔案"}},
    {"reason.cutOff",
     {"The recording is cut off: its end is missing", "錄影檔不完整：缺少結尾部分"}},
    {"reason.cutOffBySecond",
     {"The recording is cut off: the last second is missing", "錄影檔不完整：缺少最後 1 秒"}},
    {"reason.cutOffBySeconds",
     {"The recording is cut off: the last %1 s are missing", "錄影檔不完整：缺少最後 %1 秒"}},
    {"reason.damaged",
     {"The recording is damaged: its track cannot be read", "錄影檔已損壞：無法讀取軌跡"}},
    {"reason.damagedInPart",
     {"A part of the recording is damaged: its track may have gaps",
      "錄影檔有部分損壞：軌跡可能有缺漏"}},
    {"reason.diskFull", {"The disk is full: the track could not be stored",
                         "磁碟已滿：無法儲存軌跡"}},
    {"reason.empty", {"The file is empty", "檔案是空的"}},
    {"reason.forbidden", {"You are not permitted to read this file", "您沒有讀取此檔案的權限"}},
    {"reason.frontTrack", {"The track is that of the front camera's recording",
                           "軌跡取自前鏡頭的錄影檔"}},
    {"reason.missing", {"The file is not there any more", "檔案已不存在"}},
    {"reason.noTelemetry", {"The recording holds no positions that can be read",
                            "錄影檔中沒有可讀取的位置資料"}},
    {"reason.noTrack", {"The track of this recording could not be read", "無法讀取此錄影的軌跡"}},
    {"reason.notARecording", {"The file is no recording of a known kind",
                              "此檔案不是可辨識的錄影檔"}},
    {"reason.notWritten", {"The track could not be stored in the program's working folder",
                           "無法將軌跡儲存到程式的工作資料夾"}},
    {"reason.partOfTrack", {"Not everything in this recording could be read",
                            "此錄影有部分內容無法讀取"}},
    {"reason.sameFile", {"The track must not be written over its recording",
                         "不可將軌跡寫入其錄影檔"}},
    {"reason.timeUp", {"Reading took too long: the end of the track is missing",
                       "讀取時間過長：缺少軌跡的結尾部分"}},
    {"reason.trackFile", {"The track of this recording was read, but it cannot be used",
                          "已讀取此錄影的軌跡，但無法使用"}},
    {"reason.unfinished", {"The recording was never finished: its index is missing",
                           "錄影檔未完成：缺少索引"}},
    {"reason.unreadable", {"The file cannot be read: the card or the disk may be damaged",
                           "無法讀取檔案：記憶卡或磁碟可能已損壞"}},
    {"toolkit.language", {"en", "zh_TW"}},
    {"update.checking", {"Looking for a newer version", "正在檢查是否有新版本"}},
    {"update.close", {"Close", "關閉"}},
    {"update.failed", {"The update could not be made, nothing was damaged:",
                       "無法完成更新，程式並未受損："}},
    {"update.fetching", {"Fetching %1", "正在下載 %1"}},
    {"update.files", {"File %1 of %2", "第 %1 個檔案，共 %2 個"}},
    {"update.noServer", {"No update server is set up for this program.",
                         "此程式尚未設定更新伺服器。"}},
    {"update.packaged", {"This program was installed by the system's package manager, which also "
                         "updates it.",
                         "此程式由系統的套件管理員安裝，並由其負責更新。"}},
    {"update.running", {"Another update of this program is under way.",
                        "此程式的另一個更新正在進行。"}},
    {"update.title", {"Online update", "線上更新"}},
    {"update.upToDate", {"The program is up to date.", "程式已是最新版本。"}},
    {"update.whenClosed",
     {"The new program is fetched now. Close this one when you like: the new one then starts by "
      "itself.",
      "正在下載新程式。您可隨時關閉目前的程式，新程式隨後會自動啟動。"}},
    {"title.menu.close", {"Close", "關閉"}},
    {"title.menu.minimise", {"Minimise", "最小化"}},
    {"title.menu.update", {"Check for updates", "檢查更新"}},
};
// clang-format on

constexpr bool isWhole(const Row& row) {
    return std::none_of(row.texts.begin(), row.texts.end(),
                        [](std::string_view text) { return text.empty(); });
}

static_assert(std::all_of(std::begin(rows), std::end(rows), isWhole),
              "a row has no text in one of the languages");

} // namespace

std::optional<AdditionTexts> additionTexts(std::string_view name) {
    for (const Row& row : rows) {
        if (row.name == name)
            return row.texts;
    }
    return std::nullopt;
}

} // namespace velmorant
