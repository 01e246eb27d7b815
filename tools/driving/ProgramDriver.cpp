#include "tools/driving/ProgramDriver.h"

#include <QTest>

namespace velmorant {

namespace {

constexpr int markColumn = 1;
constexpr int textColumn = 2;

} // namespace

ProgramDriver::ProgramDriver(Application& program)
    : m_program(program), m_map(program.panes().map.browser.view()) {}

bool ProgramDriver::waitUntil(const std::function<bool()>& condition, int limit) {
    return QTest::qWaitFor(condition, limit);
}

void ProgramDriver::click(SkinView& skin, const std::string& element) {
    QWidget* widget = skin.elementWidget(element);
    if (widget == nullptr)
        qFatal("The skin has no element %s", element.c_str());
    QTest::mouseClick(widget, Qt::LeftButton);
}

QPoint ProgramDriver::placeOf(int row, int column) {
    RecordingListView& view = *pane().list.view;
    const QModelIndex index = view.model()->index(row - 1, column);
    view.scrollTo(index);
    return view.visualRect(index).center();
}

void ProgramDriver::clickMark(int row) {
    QTest::mouseClick(pane().list.view->viewport(), Qt::LeftButton, {}, placeOf(row, markColumn));
}

void ProgramDriver::doubleClickRow(int row) {
    QWidget* target = pane().list.view->viewport();
    const QPoint place = placeOf(row, textColumn);
    QTest::mouseClick(target, Qt::LeftButton, {}, place);
    QTest::mouseDClick(target, Qt::LeftButton, {}, place);
}

bool ProgramDriver::windowShown() {
    return pane().frame.isVisible() && rooms().mediaCtrl->ready();
}

bool ProgramDriver::extracting() {
    return pane().extraction.window().isVisible();
}

int ProgramDriver::rowCount() {
    return rooms().rows->count();
}

int ProgramDriver::extractedRows() {
    int count = 0;
    for (int row = 1; row <= rowCount(); ++row)
        count += rooms().rows->row(row).track == TrackState::Read ? 1 : 0;
    return count;
}

int ProgramDriver::rowsWithPlaces() {
    int count = 0;
    for (int row = 1; row <= rowCount(); ++row) {
        const auto dots = track(row);
        bool places = false;
        for (int i = 1; dots && i <= dots->count() && !places; ++i)
            places = dots->dot(i).x != 0 || dots->dot(i).y != 0;
        count += places ? 1 : 0;
    }
    return count;
}

std::string ProgramDriver::path(int row) {
    return rooms().rows->row(row).path;
}

std::shared_ptr<clsDot> ProgramDriver::track(int row) {
    return rooms().state.loadedTracks.find(rooms().rows->row(row).serial);
}

long ProgramDriver::number(int row) {
    return rooms().rows->row(row).serial;
}

bool ProgramDriver::playing(int row) {
    const MpvPlayer& player = pane().picture.player;
    return player.playState() == PlayState::Playing && player.url() == path(row);
}

double ProgramDriver::position() {
    return pane().picture.player.currentPosition().value_or(-1);
}

} // namespace velmorant
