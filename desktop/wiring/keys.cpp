#include "desktop/wiring/keys.h"

namespace velmorant {

namespace {

constexpr double farStep = 5.0;
constexpr double nearStep = 1.0;
constexpr int volumeStep = 5;

double stepOf(const KeyPress& press) {
    return press.shift ? nearStep : farStep;
}

/// What a key does with the control bar.
struct BarKey {
    int key;
    void (*use)(frmCurve& bar, const KeyPress& press);
};

constexpr BarKey barKeys[] = {
    {Qt::Key_Space, [](frmCurve& bar, const KeyPress&) { bar.TogglePlay(); }},
    {Qt::Key_K, [](frmCurve& bar, const KeyPress&) { bar.TogglePlay(); }},
    {Qt::Key_Left, [](frmCurve& bar, const KeyPress& press) { bar.StepSeconds(-stepOf(press)); }},
    {Qt::Key_Right, [](frmCurve& bar, const KeyPress& press) { bar.StepSeconds(stepOf(press)); }},
    {Qt::Key_Comma, [](frmCurve& bar, const KeyPress&) { bar.StepFrame(StepDirection::Back); }},
    {Qt::Key_Period, [](frmCurve& bar, const KeyPress&) { bar.StepFrame(StepDirection::Forward); }},
    {Qt::Key_Up, [](frmCurve& bar, const KeyPress&) { bar.ChangeVolume(volumeStep); }},
    {Qt::Key_Down, [](frmCurve& bar, const KeyPress&) { bar.ChangeVolume(-volumeStep); }},
    {Qt::Key_M, [](frmCurve& bar, const KeyPress&) { bar.ButtonClicked("SPEAKER"); }},
    {Qt::Key_N, [](frmCurve& bar, const KeyPress&) { bar.ButtonClicked("END"); }},
    {Qt::Key_P, [](frmCurve& bar, const KeyPress&) { bar.ButtonClicked("HEAD"); }},
    {Qt::Key_S, [](frmCurve& bar, const KeyPress&) { bar.ButtonClicked("SAVEFRAME"); }},
};

void useBarKey(const KeyPress& press, frmCurve& bar) {
    if (press.key >= Qt::Key_1 && press.key <= Qt::Key_5)
        return bar.ChooseRate(press.key - Qt::Key_0);
    for (const BarKey& known : barKeys)
        if (known.key == press.key)
            return known.use(bar, press);
}

} // namespace

std::vector<int> playerKeys() {
    std::vector<int> keys = {Qt::Key_F, Qt::Key_Escape};
    for (int rate = Qt::Key_1; rate <= Qt::Key_5; ++rate)
        keys.push_back(rate);
    for (const BarKey& known : barKeys)
        keys.push_back(known.key);
    return keys;
}

void useKey(const KeyPress& press, Rooms& rooms, Panes& panes) {
    VideoWidgetView& picture = panes.picture.view;
    if (press.key == Qt::Key_F)
        picture.setFullScreen(!picture.fullScreen());
    else if (press.key == Qt::Key_Escape)
        picture.setFullScreen(false);
    else
        useBarKey(press, *rooms.curve);
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
