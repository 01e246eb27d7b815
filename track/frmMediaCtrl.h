#pragma once

#include "ports/HostPaths.h"
#include "ports/MapPage.h"
#include "ports/MediaPlayer.h"
#include "ports/Skin.h"
#include "ports/StatusLine.h"
#include "ports/Texts.h"
#include "ports/Timer.h"
#include "ports/WebBrowser.h"
#include "recordings/ProgramState.h"
#include "recordings/RecordingList.h"
#include "recordings/RowStart.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace velmorant {

/// What the map pane works with; everything outlives it.
struct MediaCtrlNeeds {
    WebBrowser& htmlView;
    Timer& tGetMapLocal;
    Timer& tMapAnswer;    ///< how long a map server may keep silent
    Skin& backgroundSkin; ///< rightback.mp4
    Skin& controlSkin;    ///< ctl.MP4, with the band "mylist"
    HostPaths& paths;
    Texts& texts;
    StatusLine& status;
    ProgramState& state;
    const RecordingList& list;
    const PlayerControls& player;
    /// Base address of the page that the program holds itself: shown when the server has none.
    std::string builtInBase;
    /// Streams a loaded recording's route to the page once more.
    std::function<void(std::int32_t recordingNumber)> drawAgain;
    std::function<RowStart(int row)> startRow; ///< as the play queue starts a row
    /// Moves the play position of the open recording and has it followed.
    std::function<void(double seconds)> seek;
};

/// A place that the page left in its variable `varLocal`.
///
/// Grammar: one leading character, longitude, ",", latitude; both in decimal degrees. A further ","
/// and what follows it is ignored. Two characters or less: nothing was picked.
struct PickedPlace {
    std::int32_t x = 0; ///< degrees times 10,000,000
    std::int32_t y = 0;

    /// True when the page has left something.
    static bool isPending(std::string_view varLocal);
    /// Throws StepError for a text that is no place.
    static PickedPlace read(std::string_view varLocal);
};

/// The map pane: loads the map page, knows whether it is ready, runs the page's functions, and
/// polls it for a click on a route.
class frmMediaCtrl : public MapPage {
  public:
    explicit frmMediaCtrl(MediaCtrlNeeds needs);

    void Load();
    /// The browser has completed a document; frames within the page have addresses of their own.
    void DocumentComplete(const std::string& address);
    /// A page cannot be had from the server: says so and shows the built-in one. When that cannot
    /// be had either, says so and leaves it.
    void LoadFailed(const std::string& address);
    /// The page's process has ended: loads the page anew and then draws the routes of the rows
    /// that show theirs again. One that ends again and again before it has answered is left, and
    /// the status line says so.
    void PageLost();
    void RefreshMyList(); ///< draws the skin element "mylist" anew

    bool ready() const override { return m_tag == "1"; }
    bool takesWholeRoutes() const override { return m_takesWholeRoutes; }
    void getContentHis(const std::string& routeText) override;
    void MoveCar(const std::string& place) override;
    void clearHistroy(const std::string& number) override;

    /// Runs a script text of the caller's own making in the page.
    void runScript(const std::string& text);

    const std::string& tag() const { return m_tag; } ///< map-ready flag: "0" or "1"

  private:
    void navigate();
    void drawRoutesAgain();
    void askForWholeRoutes();
    void run(const std::string& function, const std::string& argument);
    void poll();
    void varLocalRead(std::string_view value);
    void pick(const PickedPlace& place);
    bool isOpen(const std::string& path) const;

    MediaCtrlNeeds m_needs;
    std::string m_tag = "0";
    std::string m_address;  ///< of the page that is wanted
    bool m_builtIn = false; ///< the server gave no page
    bool m_lost = false;    ///< a page that held routes has ended
    bool m_takesWholeRoutes = false;
    std::uint64_t m_pages = 0; ///< pages that were wanted so far; an answer of an older one is late
    int m_losses = 0;          ///< since a page last answered
    std::uint64_t m_question = 0; ///< number of the last read; an answer to an older one is late
    int m_ticksWithoutAnswer = 0;
    bool m_waitsForAnswer = false;
};

} // namespace velmorant
