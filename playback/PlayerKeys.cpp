#include "playback/PlayerKeys.h"

namespace velmorant {

namespace {

constexpr double farStep = 5.0;
constexpr double nearStep = 1.0;
constexpr int volumeStep = 5;

double stepOf(const KeyPress& press) {
    return press.shift ? nearStep : farStep;
}

struct Key {
    const char* name;
    void (*use)(frmCurve& bar, PlayerView& picture, const KeyPress& press);
};

using Press = const KeyPress&;

void chooseRate(frmCurve& bar, PlayerView&, Press press) {
    bar.ChooseRate(press.key[0] - '0');
}

constexpr Key table[] = {
    {"Space", [](frmCurve& bar, PlayerView&, Press) { bar.TogglePlay(); }},
    {"K", [](frmCurve& bar, PlayerView&, Press) { bar.TogglePlay(); }},
    {"Left", [](frmCurve& bar, PlayerView&, Press press) { bar.StepSeconds(-stepOf(press)); }},
    {"Right", [](frmCurve& bar, PlayerView&, Press press) { bar.StepSeconds(stepOf(press)); }},
    {",", [](frmCurve& bar, PlayerView&, Press) { bar.StepFrame(StepDirection::Back); }},
    {".", [](frmCurve& bar, PlayerView&, Press) { bar.StepFrame(StepDirection::Forward); }},
    {"Up", [](frmCurve& bar, PlayerView&, Press) { bar.ChangeVolume(volumeStep); }},
    {"Down", [](frmCurve& bar, PlayerView&, Press) { bar.ChangeVolume(-volumeStep); }},
    {"M", [](frmCurve& bar, PlayerView&, Press) { bar.ButtonClicked("SPEAKER"); }},
    {"N", [](frmCurve& bar, PlayerView&, Press) { bar.ButtonClicked("END"); }},
    {"P", [](frmCurve& bar, PlayerView&, Press) { bar.ButtonClicked("HEAD"); }},
    {"S", [](frmCurve& bar, PlayerView&, Press) { bar.ButtonClicked("SAVEFRAME"); }},
    {"1", chooseRate},
    {"2", chooseRate},
    {"3", chooseRate},
    {"4", chooseRate},
    {"5", chooseRate},
    {"F",
     [](frmCurve&, PlayerView& picture, Press) { picture.setFullScreen(!picture.fullScreen()); }},
    {"Esc", [](frmCurve&, PlayerView& picture, Press) { picture.setFullScreen(false); }},
};

} // namespace

std::vector<std::string> PlayerKeys::keys() {
    std::vector<std::string> names;
    for (const Key& key : table)
        names.emplace_back(key.name);
    return names;
}

void PlayerKeys::use(const KeyPress& press) {
    for (const Key& key : table)
        if (press.key == key.name)
            return key.use(m_bar, m_picture, press);
}

std::vector<PlayerKeys::ElementKeys> PlayerKeys::elementKeys() {
    return {{"cmdplay", "K"},
            {"pause", "K"},
            {"head", "P"},
            {"end", "N"},
            {"speaker", "M"},
            {"saveframe", "S"},
            {"playspeed", "1 - 5"},
            {"volume", "\u2191 \u2193"},
            {"playprogress", "\u2190 \u2192"}};
}

} // namespace velmorant
