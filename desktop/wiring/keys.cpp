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

/// What a key does with the control bar.
struct BarKey {
    int key;
    void (*use)(frmCurve& bar, const QKeyEvent& event);
};

constexpr BarKey barKeys[] = {
    {Qt::Key_Space, [](frmCurve& bar, const QKeyEvent&) { bar.TogglePlay(); }},
    {Qt::Key_K, [](frmCurve& bar, const QKeyEvent&) { bar.TogglePlay(); }},
    {Qt::Key_Left, [](frmCurve& bar, const QKeyEvent& event) { bar.StepSeconds(-stepOf(event)); }},
    {Qt::Key_Right, [](frmCurve& bar, const QKeyEvent& event) { bar.StepSeconds(stepOf(event)); }},
    {Qt::Key_Comma, [](frmCurve& bar, const QKeyEvent&) { bar.StepFrame(StepDirection::Back); }},
    {Qt::Key_Period,
     [](frmCurve& bar, const QKeyEvent&) { bar.StepFrame(StepDirection::Forward); }},
    {Qt::Key_Up, [](frmCurve& bar, const QKeyEvent&) { bar.ChangeVolume(volumeStep); }},
    {Qt::Key_Down, [](frmCurve& bar, const QKeyEvent&) { bar.ChangeVolume(-volumeStep); }},
    {Qt::Key_M, [](frmCurve& bar, const QKeyEvent&) { bar.ButtonClicked("SPEAKER"); }},
    {Qt::Key_N, [](frmCurve& bar, const QKeyEvent&) { bar.ButtonClicked("END"); }},
    {Qt::Key_P, [](frmCurve& bar, const QKeyEvent&) { bar.ButtonClicked("HEAD"); }},
    {Qt::Key_S, [](frmCurve& bar, const QKeyEvent&) { bar.ButtonClicked("SAVEFRAME"); }},
};

bool useBarKey(const QKeyEvent& event, frmCurve& bar) {
    if (event.key() >= Qt::Key_1 && event.key() <= Qt::Key_5) {
        bar.ChooseRate(event.key() - Qt::Key_0);
        return true;
    }
    for (const BarKey& known : barKeys)
        if (known.key == event.key()) {
            known.use(bar, event);
            return true;
        }
    return false;
}

} // namespace

bool useKey(const QKeyEvent& event, Rooms& rooms, Panes& panes) {
    if ((event.modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier)) != 0)
        return false;
    VideoWidgetView& picture = panes.picture.view;
    switch (event.key()) {
    case Qt::Key_F:
        picture.setFullScreen(!picture.fullScreen());
        return true;
    case Qt::Key_Escape:
        picture.setFullScreen(false);
        return true;
    default:
        return useBarKey(event, *rooms.curve);
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
