#include "desktop/wiring/keys.h"

#include <QKeyEvent>

namespace velmorant {

namespace {

constexpr double farStep = 5.0;
constexpr double nearStep = 1.0;
constexpr int volumeStep = 5;

double stepOf(const QKeyEvent& event) {
    return (event.modifiers() & Qt::ShiftModifier) != 0 ? nearStep : farStep;
}

} // namespace

bool useKey(const QKeyEvent& event, Rooms& rooms, Panes& panes) {
    if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0)
        return false;
    frmCurve& curve = *rooms.curve;
    switch (event.key()) {
    case Qt::Key_Space:
    case Qt::Key_K:
        curve.TogglePlay();
        return true;
    case Qt::Key_Left:
        curve.StepSeconds(-stepOf(event));
        return true;
    case Qt::Key_Right:
        curve.StepSeconds(stepOf(event));
        return true;
    case Qt::Key_Comma:
        curve.StepFrame(StepDirection::Back);
        return true;
    case Qt::Key_Period:
        curve.StepFrame(StepDirection::Forward);
        return true;
    case Qt::Key_Up:
        curve.ChangeVolume(volumeStep);
        return true;
    case Qt::Key_Down:
        curve.ChangeVolume(-volumeStep);
        return true;
    case Qt::Key_M:
        curve.ButtonClicked("SPEAKER");
        return true;
    case Qt::Key_N:
        curve.ButtonClicked("END");
        return true;
    case Qt::Key_P:
        curve.ButtonClicked("HEAD");
        return true;
    case Qt::Key_S:
        curve.ButtonClicked("SAVEFRAME");
        return true;
    case Qt::Key_1:
    case Qt::Key_2:
    case Qt::Key_3:
    case Qt::Key_4:
    case Qt::Key_5:
        curve.ChooseRate(event.key() - Qt::Key_0);
        return true;
    case Qt::Key_F:
        panes.picture.view.setFullScreen(!panes.picture.view.fullScreen());
        return true;
    case Qt::Key_Escape:
        panes.picture.view.setFullScreen(false);
        return true;
    default:
        return false;
    }
}

void nameKeys(SkinView& controlBar) {
    constexpr struct {
        const char* element;
        const char* keys;
    } keyed[] = {{"cmdplay", "K"},
                 {"pause", "K"},
                 {"head", "P"},
                 {"end", "N"},
                 {"speaker", "M"},
                 {"saveframe", "S"},
                 {"playspeed", "1 - 5"},
                 {"volume", "\u2191 \u2193"},
                 {"playprogress", "\u2190 \u2192"}};
    for (const auto& [element, keys] : keyed)
        if (QWidget* widget = controlBar.elementWidget(element))
            widget->setToolTip(widget->accessibleName() + " (" + QString::fromUtf8(keys) + ")");
}

} // namespace velmorant
