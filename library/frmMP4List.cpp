#include "library/frmMP4List.h"

#include "common/textRules.h"
#include "common/trapErrors.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <utility>

namespace velmorant {

namespace {

constexpr int informationTitle = 3000;
constexpr int confirmationTitle = 3003;
constexpr int deleteAllQuestion = 3004;
constexpr int recordingsFilter = 3005;
constexpr int openFilesTitle = 3006;
constexpr int deletionRefused = 3008;
constexpr int mapNotLoadedQuestion = 3041;

constexpr int markColumn = 2;
constexpr int displayColumn = 3;
constexpr int emptyListHeight = 255; // twips
constexpr int filesBetweenPaints = 200;

std::vector<std::string> piecesOf(const std::string& dialogResult) {
    std::vector<std::string> pieces = split(dialogResult, '\0');
    std::erase_if(pieces, [](const std::string& piece) { return piece.empty(); });
    return pieces;
}

std::string digitsOf(std::string_view text) {
    std::string digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits),
                 [](char letter) { return letter >= '0' && letter <= '9'; });
    return digits;
}

} // namespace

frmMP4List::frmMP4List(const frmMP4ListNeeds& needs)
    : m_needs(needs),
      m_view(needs.texts, needs.screen),
      m_maker(m_view, needs.paths),
      m_queue({.list = needs.list,
               .state = needs.state,
               .files = needs.files,
               .paths = needs.paths,
               .texts = needs.texts,
               .status = needs.status,
               .waits = needs.waits,
               .tContinue = needs.tContinue,
               .drawChart = needs.drawChart,
               .playRecording = needs.playRecording}),
      m_marks({.list = needs.list,
               .state = needs.state,
               .texts = needs.texts,
               .messageBox = needs.messageBox,
               .page = needs.page,
               .player = needs.player,
               .tracks = needs.tracks}),
      m_removal(needs.list, needs.state, m_queue, needs.page),
      m_file(needs.document, needs.files, needs.paths),
      m_search(needs.folders, needs.files, needs.paths),
      m_count(needs.list, needs.skin, needs.texts) {}

SkinLoad frmMP4List::Load() {
    const std::string skin =
        "skin/media/ls" + std::to_string(m_needs.state.settings.languageIndex) + ".MP4";
    SkinLoad result = SkinLoad::Missing;
    trapErrors([&] {
        result = loadSkin(m_needs.skin, m_needs.paths.programFile(skin), m_needs.files,
                          m_needs.texts, m_needs.messageBox);
    });
    if (result == SkinLoad::Missing)
        return result;
    trapErrors([&] { m_needs.bands.setChild("QVBar", "LstMP4"); });
    m_maker.resetCounter();
    adaptToDensity();
    m_needs.background.setBackColour(m_needs.skin.backColour());
    LoadRecordingList();
    RedrawListBackground();
    m_count.show();
    return result;
}

void frmMP4List::adaptToDensity() {
    struct Sizes {
        int twipsPerPixel;
        double fontSize;
        int markWidth;
        int displayWidth;
    };
    constexpr Sizes table[] = {{15, 11.0, 300, 2740}, {12, 8.7, 260, 2120}};
    for (const Sizes& sizes : table) {
        if (sizes.twipsPerPixel != m_needs.screen.twipsPerPixelY())
            continue;
        m_needs.control.setFontSize(sizes.fontSize);
        m_needs.control.setColumnWidth(markColumn, sizes.markWidth);
        m_needs.control.setColumnWidth(displayColumn, sizes.displayWidth);
    }
}

void frmMP4List::LoadRecordingList() {
    std::vector<RecordingEntry> rows;
    for (const RecordingListFile::Entry& entry : m_file.read())
        rows.push_back(m_maker.fromHandOver(entry.dateAndTime, entry.path));
    if (rows.empty())
        return;
    m_needs.list.append(std::move(rows));
    RefreshListMarks(0);
    m_file.remove();
}

bool frmMP4List::mayAdd() {
    if (m_needs.page.ready())
        return true;
    MessageAnswer answer = MessageAnswer::Yes;
    trapErrors([&] {
        answer = m_needs.messageBox.show(m_needs.texts.byOffset(mapNotLoadedQuestion),
                                         m_needs.texts.byOffset(informationTitle),
                                         MessageStyle::InformationChoice);
    });
    return answer == MessageAnswer::Yes;
}

/// The first piece is the folder of the names that follow; a name with a folder of its own lies
/// there, and is dated by it.
std::vector<FolderSelection>
frmMP4List::selectionsOf(const std::vector<std::string>& pieces) const {
    std::vector<FolderSelection> selections;
    for (std::size_t i = 1; i < pieces.size(); ++i) {
        const std::string ownFolder = folderOf(m_needs.paths, pieces[i]);
        const std::string& folder = ownFolder.empty() ? pieces.front() : ownFolder;
        if (selections.empty() || selections.back().folder != folder)
            selections.push_back({folder, {}});
        selections.back().names.push_back(fileNameOf(m_needs.paths, pieces[i]));
    }
    return selections;
}

void frmMP4List::AddRecordings() {
    trapErrors([&] {
        if (!mayAdd())
            return;
        OpenFilesRequest request;
        request.title = m_needs.texts.byOffset(openFilesTitle);
        request.filter = m_needs.texts.byOffset(recordingsFilter);
        std::vector<std::string> pieces = piecesOf(m_needs.dialogs.openFiles(request));
        if (pieces.empty())
            return;
        if (pieces.size() > 1) {
            addSelections(selectionsOf(pieces), static_cast<int>(pieces.size()) - 1);
            return;
        }
        const std::string& path = pieces.front();
        std::vector<RecordingEntry> rows =
            m_maker.fromFiles(folderOf(m_needs.paths, path), {fileNameOf(m_needs.paths, path)},
                              BaseNameRule::WithoutExtension);
        rows.front().path = path;
        m_needs.list.append(std::move(rows));
        afterAdding();
    });
}

void frmMP4List::AddPaths(const std::vector<std::string>& paths) {
    trapErrors([&] {
        const std::vector<FolderSelection> selections = m_search.find(paths);
        std::size_t files = 0;
        for (const FolderSelection& selection : selections)
            files += selection.names.size();
        if (files == 0 || !mayAdd())
            return;
        addSelections(selections, static_cast<int>(files));
    });
}

void frmMP4List::addSelections(const std::vector<FolderSelection>& selections, int files) {
    const bool shown = files > filesBetweenPaints;
    int added = 0;
    if (shown)
        m_needs.adding.begin(files);
    for (const FolderSelection& selection : selections) {
        auto next = selection.names.begin();
        while (next != selection.names.end()) {
            const auto rest = selection.names.end() - next;
            const auto end = next + std::min<std::ptrdiff_t>(rest, filesBetweenPaints);
            m_needs.list.append(m_maker.fromFiles(selection.folder, {next, end},
                                                  BaseNameRule::WithoutFourCharacters));
            added += static_cast<int>(end - next);
            next = end;
            if (shown) {
                m_needs.adding.step(added);
                m_needs.waits.letEventsRun();
            }
        }
    }
    if (shown)
        m_needs.adding.end();
    afterAdding();
}

void frmMP4List::AddFiles(const std::string& folder, const std::vector<std::string>& names) {
    trapErrors([&] { addSelections({{folder, names}}, static_cast<int>(names.size())); });
}

void frmMP4List::afterAdding() {
    if (m_needs.list.count() == 0)
        return;
    RedrawListBackground();
    RefreshListMarks(0);
}

void frmMP4List::MouseDown(int x, int y) {
    trapErrors([&] {
        const int index = m_needs.control.hitTest(x, y);
        if (index > 0 && index != m_needs.list.selected())
            m_needs.list.select(index);
    });
}

void frmMP4List::MouseClick(int x, int y) {
    trapErrors([&] {
        const int index = m_needs.control.hitTest(x, y);
        const int twips = x * m_needs.screen.twipsPerPixelX();
        if (index > 0 && twips >= m_needs.control.columnLeft(markColumn) &&
            twips < m_needs.control.columnLeft(displayColumn))
            ToggleMark(index);
    });
}

void frmMP4List::PlaySelected() {
    trapErrors([&] {
        const int index = m_needs.list.selected();
        if (index > 0 && m_needs.list.marked(index))
            static_cast<void>(m_queue.PlayEntry(index)); // the queue says what keeps it
    });
    trapErrors([&] { m_needs.refreshMyList(); });
}

void frmMP4List::ToggleSelected() {
    if (m_needs.list.selected() > 0)
        ToggleMark(m_needs.list.selected());
}

bool frmMP4List::SelectByTime(std::string_view typed) {
    constexpr std::size_t dateWidth = 12; // with the two blanks behind it
    constexpr std::size_t timeWidth = 8;
    const std::string wanted = digitsOf(typed);
    const int count = m_needs.list.count();
    if (wanted.empty() || count == 0)
        return false;
    const int first = m_needs.list.selected() + (wanted.size() > 1 ? 0 : 1);
    for (int step = 0; step < count; ++step) {
        const int index = (std::max(first, 1) - 1 + step) % count + 1;
        const std::string text = RowView::displayText(m_needs.list.row(index));
        const std::string time = leftCharacters(text, dateWidth + timeWidth)
                                     .substr(leftCharacters(text, dateWidth).size());
        if (digitsOf(time).starts_with(wanted)) {
            m_needs.list.select(index);
            return true;
        }
    }
    return false;
}

void frmMP4List::ToggleMark(int index) {
    trapErrors([&] { m_marks.toggle(index); });
}

void frmMP4List::MarkCommand(const std::string& name) {
    trapErrors([&] {
        if (equalsIgnoringCase(name, "ALL"))
            m_marks.markAll();
        else if (equalsIgnoringCase(name, "NORMAL"))
            m_marks.markKind(RecordingKind::Normal);
        else if (equalsIgnoringCase(name, "LOCK"))
            m_marks.markKind(RecordingKind::Locked);
        else if (equalsIgnoringCase(name, "NONE"))
            m_marks.unmarkAllButPlaying();
    });
}

void frmMP4List::DeleteAll() {
    trapErrors([&] {
        const PlayState state = m_needs.player.playState();
        if (state == PlayState::Paused || state == PlayState::Playing) {
            m_needs.messageBox.show(m_needs.texts.byOffset(deletionRefused),
                                    m_needs.texts.byOffset(informationTitle),
                                    MessageStyle::Information);
            return;
        }
        if (m_needs.list.count() == 0) {
            m_needs.clearChart();
            return;
        }
        const MessageAnswer answer = m_needs.messageBox.show(
            m_needs.texts.byOffset(deleteAllQuestion), m_needs.texts.byOffset(confirmationTitle),
            MessageStyle::Question);
        if (answer == MessageAnswer::Yes) {
            m_removal.removeAll();
            if (m_needs.player.playState() == PlayState::Stopped)
                trapErrors([&] { m_needs.clearChart(); });
        }
        RedrawListBackground();
    });
}

void frmMP4List::DeleteSelected() {
    trapErrors([&] {
        RecordingList& list = m_needs.list;
        const int index = list.selected();
        if (index == 0)
            return;
        if (m_marks.isOpenInPlayer(index)) {
            m_needs.status.show(m_needs.texts.addition("list.playing"));
            return;
        }
        const RecordingEntry* selected = &list.row(index);
        m_removal.removeIf([&](const RecordingEntry& entry) { return &entry == selected; });
        list.select(std::min(index, list.count()));
        RedrawListBackground();
    });
}

void frmMP4List::RemoveMissing() {
    trapErrors([&] {
        const int removed = m_removal.removeIf(
            [](const RecordingEntry& entry) { return entry.file == FileState::Missing; });
        if (removed > 0)
            RedrawListBackground();
    });
}

void frmMP4List::RefreshListMarks(int playingIndex) {
    m_needs.list.highlight(playingIndex);
}

void frmMP4List::RedrawListBackground() {
    trapErrors([&] {
        const int rows = m_needs.list.count();
        m_needs.background.setHeight(rows == 0 ? emptyListHeight
                                               : rows * m_needs.control.rowHeight());
        m_needs.background.draw();
    });
}

} // namespace velmorant
