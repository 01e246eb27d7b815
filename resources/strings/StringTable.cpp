#include "resources/strings/StringTable.h"

#include <algorithm>
#include <iterator>

namespace velmorant {

namespace {

struct Row {
    int id;
    std::string_view text;
};

// Ordered by id. Texts stand exactly as they are shown, blanks at their ends included: the list's
// labels are padded for its column. The doubled parenthesis of 22016 and the two unreadable titles
// 23022 and 23023 are kept as they are known to users.
// clang-format off
constexpr Row rows[] = {
    // Independent of the language
    {1, VELMORANT_SERVER_ADDRESS},
    {1000, "2"},
    {1001, "English"},
    {1002, "繁體中文"},
    // English
    {11000, "3"},
    {11001, "Km/h"},
    {11002, "Miles/hour"},
    {11003, "Nautical miles/hour"},
    {11100, "Velmorant DVR Tools"},
    {11101, "Longitude"},
    {11102, "Latitude"},
    {12000, "25"},
    {12001, "UTC-12(West of International Date Line)|-12:00"},
    {12002, "UTC-11(Midway Island)|-11:00"},
    {12003, "UTC-10(Hawaii)|-10:00"},
    {12004, "UTC-09(Alaska)|-9:00"},
    {12005, "UTC-08(California,US)|-8:00"},
    {12006, "UTC-07(Arizona,US)|-7:00"},
    {12007, "UTC-06(Minnesota,US)|-6:00"},
    {12008, "UTC-05(North American Eastern)|-5:00"},
    {12009, "UTC-04(Atlantic)|-4:00"},
    {12010, "UTC-03(Argentina;Brazil)|-3:00"},
    {12011, "UTC-02(Brazil)|-2:00"},
    {12012, "UTC-01(Verde)|-1:00"},
    {12013, "UTC(London)|0:00"},
    {12014, "UTC+01(Paris)|1:00"},
    {12015, "UTC+02(Libya,Syria,Lebanon)|2:00"},
    {12016, "UTC+03(Baghdad)|3:00"},
    {12017, "UTC+04(Moscow)|4:00"},
    {12018, "UTC+05(Pakistan)|5:00"},
    {12019, "UTC+06(Bangladesh,Bhutan)|6:00"},
    {12020, "UTC+07(Kampuchea,Leo)|7:00"},
    {12021, "UTC+08(Beijing,Taipei)|8:00"},
    {12022, "UTC+09(Tokyo,Seoul)|9:00"},
    {12023, "UTC+10(Sydney)|10:00"},
    {12024, "UTC+11(Solomon)|11:00"},
    {12025, "UTC+12(Fiji)|12:00"},
    {13000, "Information prompted"},
    {13001, "You have not selected multimedia file from the disk"},
    {13002, "Please select from the list of files to be played"},
    {13003, "The system confirm message"},
    {13004, "Are you sure you want to delete all the files?"},
    {13005, "MP4 file|*.MP4"},
    {13006, "Open Media files"},
    {13007, "Map data is loading, please wait for a while !"},
    {13008, "Play or pause state, the system does not allow to delete the document!"},
    {13009, "Read Data Time Out. Action Canceled!"},
    {13010, "The project is playing, can not be marked as non-playing items!"},
    {13011, "The system warning information "},
    {13012, "System file is missing, please re-install the system"},
    {13013, "System performs a runtime exception"},
    {13014, "Database is missing, please contact the provider!"},
    {13019, "System does not connect to the server, make sure to connect your computer to access the Internet!"},
    {13020, "Language changes, you must restart the program to take effect!"},
    {13021, "Resource file is damaged, please reinstall the system!"},
    {13022, "Speed"},
    {13023, "Time"},
    {13024, "Really want to exit the system?"},
    {13025, "When the system initialization, the memory error, please restart the operating system!"},
    {13026, "The system asked the system"},
    {13027, "Open the file fails, there may be memory insufficient, please restart the system!"},
    {13028, "Select the file fails, may be memory insufficient, please restart the system!"},
    {13029, "Drawing the maps fails, make sure the computer is properly connected to the network"},
    {13030, "An error occurred after the system is loading, it may be caused by insufficient memory."},
    {13031, "The drawing curve happens system memory insufficient, please restart the system."},
    {13032, "The system operating environment is damaged, please reinstall the system"},
    {13033, "The system resolution is too low, the system can not display properly."},
    {13034, "Detection of abnormal playback, it may be virtual memory insufficient l!"},
    {13035, "The error happened after the system move the mediaplayer, it may be virtual memory insufficient."},
    {13036, "Failed to obtain the cursor position, please re-click."},
    {13037, "System file is missing, the camera doesn't work!"},
    {13038, "JPG format file|*.jpg"},
    {13039, "Setting the path of picture saved"},
    {13041, "Map data has not been successfully loaded, when open the video file, it can not trace the curve in the map. Are you sure you still load the document?"},
    {13042, "System is upgrading the main program, please be patient.\nWhether upgrade the system automaticly?"},
    {14121, "Normal"},
    {14122, "Lock"},
    {14151, "  Normal"},
    {14152, "  Lock"},
    // Traditional Chinese
    {21000, "3"},
    {21001, "公里/小時"},
    {21002, "英里/小時"},
    {21003, "海浬/小時"},
    {21100, "Velmorant DVR Tools"},
    {21101, "經度"},
    {21102, "緯度"},
    {22000, "25"},
    {22001, "UTC-12(國際換日線以西)|-12:00"},
    {22002, "UTC-11(中途島)|-11:00"},
    {22003, "UTC-10(夏威夷)|-10:00"},
    {22004, "UTC-09(阿拉斯加)|-9:00"},
    {22005, "UTC-08(美國加州)|-8:00"},
    {22006, "UTC-07(美國亞歷桑納州)|-7:00"},
    {22007, "UTC-06(美國明尼蘇達州)|-6:00"},
    {22008, "UTC-05(北美東部)|-5:00"},
    {22009, "UTC-04(大西洋)|-4:00"},
    {22010, "UTC-03(阿根廷;巴西)|-3:00"},
    {22011, "UTC-02(巴西)|-2:00"},
    {22012, "UTC-01(維德角)|-1:00"},
    {22013, "UTC(倫敦)|0:00"},
    {22014, "UTC+01(巴黎)|1:00"},
    {22015, "UTC+02(利比亞,敘利亞,黎巴嫩)|2:00"},
    {22016, "UTC+03((巴格達)|3:00"},
    {22017, "UTC+04(莫斯科)|4:00"},
    {22018, "UTC+05(巴基斯坦)|5:00"},
    {22019, "UTC+06(孟加拉,不丹)|6:00"},
    {22020, "UTC+07(柬埔寨,寮國)|7:00"},
    {22021, "UTC+08(北京,臺北)|8:00"},
    {22022, "UTC+09(東京,首爾)|9:00"},
    {22023, "UTC+10(雪梨)|10:00"},
    {22024, "UTC+11(索羅門)|11:00"},
    {22025, "UTC+12(斐濟,諾魯)|12:00"},
    {23000, "系統提示資訊"},
    {23001, "您尚未從磁盤中選擇多媒體檔"},
    {23002, "請先從列表中選擇將要播放的檔"},
    {23003, "系統確認信息"},
    {23004, "確定要刪除所有檔案嗎?"},
    {23005, "媒體文件|*.MP4"},
    {23006, "瀏覽資料夾"},
    {23007, "正在加載地圖數據，請稍等！"},
    {23008, "播放或者暫停狀態，系統不允許刪除文檔！"},
    {23009, "資料讀取逾時,動作已取消!"},
    {23010, "本項目正在播放，不能標記為非播放項！"},
    {23011, "系統警告資訊"},
    {23012, "系統檔案丟失，請重新安裝系統"},
    {23013, "系統執行運行庫異常"},
    {23014, "數據庫缺失，請與營運商聯系！"},
    {23019, "系統未連結到伺服器，請確保您電腦能夠連接上網路！"},
    {23020, "語言更改後，必須重新啟動程式才能生效！"},
    {23021, "資源檔案被破壞，請重新安裝系統！"},
    {23022, "\u7849\uE094"},
    {23023, "\uE1A0\u4E01"},
    {23024, "是否真的要退出系統？"},
    {23025, "系統初始化時，記憶體發生錯誤，請重新啟動操作系統！"},
    {23026, "系統詢問系統"},
    {23027, "打開檔案時失效，有可能是記憶體不足，請重新啟動系統再試！"},
    {23028, "選擇檔時失效，可能記憶體不足，請重啟系統再試。"},
    {23029, "繪制地圖資訊時失效，請確保電腦正確連上網路"},
    {23030, "加載系統時發生錯誤，可能記憶體不足造成的。"},
    {23031, "系統繪制曲線時發現記憶體不足，請重新啟動。"},
    {23032, "系統運行環境被破壞，請重新安裝系統。"},
    {23033, "系統解析度太低，系統無法正常顯示。"},
    {23034, "檢測播放進度時異常，可能是虛擬記憶體過小！"},
    {23035, "系統移動播放媒體時出錯，可能是虛擬記憶體過小。"},
    {23036, "獲取游標位置時失敗，請重新點擊"},
    {23037, "系統檔丟失，拍照功能將無法使用！"},
    {23038, "JPG格式檔|*.jpg"},
    {23039, "圖片保存路徑設置"},
    {23041, "地圖資料尚未成功載入時，現在打開視頻檔案播放，在地圖區域無法軌跡曲線。你確定仍然載入檔案嗎？"},
    {23042, "系統要升級主程序，請耐心等待。\n是否運行系統自動升級？"},
    {24121, "   一般"},
    {24122, "   保護"},
    {24151, "     一般"},
    {24152, "     保護"},
};
// clang-format on

constexpr bool ordered(const Row& left, const Row& right) {
    return left.id < right.id;
}
static_assert(std::is_sorted(std::begin(rows), std::end(rows), ordered));

} // namespace

std::optional<std::string_view> stringTableText(int id) {
    const auto row = std::lower_bound(std::begin(rows), std::end(rows), Row{id, {}}, ordered);
    if (row == std::end(rows) || row->id != id)
        return std::nullopt;
    return row->text;
}

} // namespace velmorant
