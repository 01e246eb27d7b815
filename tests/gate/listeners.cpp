// What the wiring does, once with listeners of the gate, and once each with a plain function (PLAIN
// names the place), which the compiler must refuse.
#include "desktop/gate/HandlerGate.h"
#include "desktop/player/MpvPlayer.h"
#include "desktop/widgets/RecordingListView.h"
#include "desktop/windows/MainWindow.h"

#include <vector>

namespace velmorant {

void connectAll(HandlerGate& gate, MainWindow& frame, RecordingListView::Listeners& list,
                MpvPlayer& player) {
    const auto click = [](const std::string&) {};
    const auto key = [](const KeyPress&) {};
    const auto drop = [](const std::vector<std::string>&) {};
    const auto menu = [](const QPoint&) {};
    const auto row = [](int) {};
    const auto state = [](PlayState) {};
    const auto close = [] {};
#if PLAIN == 0
    frame.skin().onClick(gate.listener(click));
    frame.onKey({}, gate.listener(key));
    frame.onDrop(gate.listener(drop));
    frame.onContextMenu(gate.listener(menu));
    frame.qtWindow().onCloseRequest(gate.listener(close));
    list.select = gate.listener(row);
    player.onPlayStateChange(gate.listener(state));
#elif PLAIN == 1
    frame.skin().onClick(click);
#elif PLAIN == 2
    frame.onKey({}, key);
#elif PLAIN == 3
    frame.onDrop(drop);
#elif PLAIN == 4
    frame.onContextMenu(menu);
#elif PLAIN == 5
    frame.qtWindow().onCloseRequest(close);
#elif PLAIN == 6
    list.select = row;
#elif PLAIN == 7
    player.onPlayStateChange(state);
#endif
}

} // namespace velmorant
