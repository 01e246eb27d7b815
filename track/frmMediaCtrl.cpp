#include "track/frmMediaCtrl.h"

#include "common/StepError.h"
#include "common/fillIn.h"
#include "common/textRules.h"
#include "common/trapErrors.h"

#include <algorithm>
#include <chrono>
#include <memory>
#include <utility>
#include <vector>

namespace velmorant {

namespace {

constexpr std::chrono::milliseconds pollInterval{200};
constexpr std::chrono::milliseconds serverPatience{20'000};
/// A page that does not answer for this long has lost the question.
constexpr int ticksToWait = 25;
/// A page that dies so often without an answer in between (no memory is left, say) is given up.
constexpr int lossesToEnd = 4;
constexpr double unitsPerDegree = 10'000'000.0;

bool isPlainArgument(std::string_view text) {
    constexpr std::string_view marks = "+-.|!/ ";
    return std::all_of(text.begin(), text.end(), [&](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
               marks.find(c) != std::string_view::npos;
    });
}

} // namespace

bool PickedPlace::isPending(std::string_view varLocal) {
    return characterCount(varLocal) > 2;
}

PickedPlace PickedPlace::read(std::string_view varLocal) {
    const std::size_t lead = leftCharacters(varLocal, 1).size();
    const std::vector<std::string> parts = split(varLocal.substr(lead), ',');
    if (parts.size() < 2)
        throw StepError("Subscript out of range: the page's place has no latitude");
    return {toInt32(toDouble(parts[0]) * unitsPerDegree),
            toInt32(toDouble(parts[1]) * unitsPerDegree)};
}

frmMediaCtrl::frmMediaCtrl(MediaCtrlNeeds needs) : m_needs(std::move(needs)) {
    m_needs.tGetMapLocal.setInterval(pollInterval);
    m_needs.tGetMapLocal.onTick([this] { poll(); });
    m_needs.tMapAnswer.setInterval(serverPatience);
    m_needs.tMapAnswer.onTick([this] { LoadFailed(m_address); });
}

void frmMediaCtrl::Load() {
    trapErrors([this] {
        m_needs.backgroundSkin.load(m_needs.paths.programFile("skin/support/rightback.mp4"));
        m_needs.controlSkin.load(m_needs.paths.programFile("skin/media/ctl.MP4"));
    });
    trapErrors([this] { navigate(); });
    m_tag = "0";
}

void frmMediaCtrl::navigate() {
    const std::string base = m_builtIn ? m_needs.builtInBase : m_needs.texts.byId(1);
    m_address = base + "DeskMap.asp?LangID=1028";
    m_takesWholeRoutes = false;
    ++m_pages;
    m_needs.tMapAnswer.setEnabled(base != m_needs.builtInBase);
    m_needs.htmlView.navigate(m_address);
}

void frmMediaCtrl::LoadFailed(const std::string& address) {
    trapErrors([&] {
        // A frame's failure, or late news of a page that is no longer wanted.
        if (ready() || !equalsIgnoringCase(address, m_address))
            return;
        m_needs.tMapAnswer.setEnabled(false);
        if (m_address.starts_with(m_needs.builtInBase)) {
            m_needs.status.show(m_needs.texts.addition("map.notShown"));
            return;
        }
        m_needs.status.show(fillIn(m_needs.texts.addition("map.noServer"), "%1", m_address));
        m_builtIn = true;
        navigate();
    });
}

void frmMediaCtrl::DocumentComplete(const std::string& address) {
    trapErrors([&] {
        if (!equalsIgnoringCase(m_needs.htmlView.documentUrl(), address))
            return;
        m_tag = "1";
        m_needs.tMapAnswer.setEnabled(false);
        m_waitsForAnswer = false;
        m_needs.htmlView.attachToBackground();
        m_needs.tGetMapLocal.setEnabled(true);
        m_needs.htmlView.setBodyScroll("no");
        askForWholeRoutes();
    });
    if (ready() && std::exchange(m_lost, false))
        trapErrors([this] { drawRoutesAgain(); });
}

void frmMediaCtrl::askForWholeRoutes() {
    m_needs.htmlView.readWindowProperty("velmorantWholeRoutes",
                                        [this, page = m_pages](const std::string& value) {
                                            if (page == m_pages)
                                                m_takesWholeRoutes = value == "yes";
                                        });
}

void frmMediaCtrl::drawRoutesAgain() {
    // Drawing lets events run, which may change list and table.
    std::vector<std::pair<std::int32_t, std::shared_ptr<clsDot>>> routes;
    for (const LoadedTracks::Entry& entry : m_needs.state.loadedTracks) {
        const int row = m_needs.list.indexOf(entry.serial);
        if (row > 0 && m_needs.list.row(row).map == MapState::Shown)
            routes.emplace_back(entry.serial, entry.track);
    }
    for (const auto& [number, track] : routes) {
        // Streaming moves the track's cursor; what plays or is paused stays where it is.
        const std::int32_t cursor = track->lPlayLocal();
        m_needs.drawAgain(number);
        track->lPlayLocal(cursor);
    }
}

void frmMediaCtrl::PageLost() {
    m_tag = "0";
    m_lost = true;
    m_needs.tGetMapLocal.setEnabled(false);
    trapErrors([this] {
        if (++m_losses < lossesToEnd)
            navigate();
        else
            m_needs.status.show(m_needs.texts.addition("map.notShown"));
    });
}

void frmMediaCtrl::RefreshMyList() {
    trapErrors([this] { m_needs.controlSkin.refresh("mylist"); });
}

void frmMediaCtrl::getContentHis(const std::string& routeText) {
    run("getContentHis", routeText);
}

void frmMediaCtrl::MoveCar(const std::string& place) {
    run("MoveCar", place);
}

void frmMediaCtrl::clearHistroy(const std::string& number) {
    run("clearHistroy", number);
}

void frmMediaCtrl::run(const std::string& function, const std::string& argument) {
    // The argument goes unescaped into a script: what a file brought must not become one.
    if (!isPlainArgument(argument))
        throw StepError("not sent to the map page: \"" + leftCharacters(argument, 40) + "\"");
    runScript(function + "('" + argument + "')");
}

void frmMediaCtrl::runScript(const std::string& text) {
    m_needs.htmlView.execScript(text, "javascript");
}

void frmMediaCtrl::poll() {
    // The page answers later: while it owes an answer a second question would read the same click
    // twice.
    if (m_waitsForAnswer && ++m_ticksWithoutAnswer < ticksToWait)
        return;
    trapErrors([this] {
        m_ticksWithoutAnswer = 0;
        m_waitsForAnswer = true;
        m_needs.htmlView.readWindowProperty(
            "varLocal", [this, question = ++m_question](const std::string& value) {
                if (question != m_question)
                    return;
                m_waitsForAnswer = false;
                m_losses = 0;
                trapErrors([&] { varLocalRead(value); });
            });
    });
}

void frmMediaCtrl::varLocalRead(std::string_view value) {
    if (!PickedPlace::isPending(value))
        return;
    const std::string picked(value); // the browser may keep the value that is now cleared
    m_needs.htmlView.setWindowProperty("varLocal", "");
    pick(PickedPlace::read(picked));
}

void frmMediaCtrl::pick(const PickedPlace& place) {
    std::shared_ptr<clsDot> track;
    std::int32_t index = 0;
    for (const LoadedTracks::Entry& entry : m_needs.state.loadedTracks) {
        index = entry.track->lPtLocal(place.x, place.y);
        if (index > 0) {
            track = entry.track;
            break;
        }
    }
    if (track == nullptr)
        return;
    const int row = track->lSerial();
    if (row < 1 || row > m_needs.list.count())
        return;
    if (!isOpen(m_needs.list.row(row).path) && m_needs.startRow(row) != RowStart::Started)
        return;
    track->lPlayLocal(index);
    m_needs.seek(track->lSecond());
}

/// A stopped player still knows its file; a click then starts the recording anew.
bool frmMediaCtrl::isOpen(const std::string& path) const {
    const PlayState state = m_needs.player.playState();
    return (state == PlayState::Paused || state == PlayState::Playing) &&
           path == m_needs.player.url() && m_needs.state.currentTrack != nullptr;
}

} // namespace velmorant
