#include "desktop/wiring/TitleMenu.h"

#include "desktop/widgets/GatedMenu.h"

namespace velmorant {

void TitleMenu::show(const QPoint& framePlace) {
    MainWindow& frame = m_panes.frame;
    if (!frame.skin().placeRect("place.drag").contains(framePlace))
        return;
    using Item = QtNativeWindow::MenuItem;
    GatedMenu menu(m_host.gate, frame);
    const auto add = [this, &menu](const char* text, std::function<void()> command) {
        menu.add(m_texts.addition(text), std::move(command));
    };
    for (const Item item : frame.nativeWindow().systemMenu()) {
        // The frame has one size and is moved by its title area: the other items have no use here.
        if (item == Item::Minimize)
            add("title.menu.minimise", [&frame] { frame.showMinimized(); });
        else if (item == Item::Close)
            add("title.menu.close", [&frame] { frame.close(); });
        else if (item == Item::Separator)
            menu.addSeparator();
    }
    menu.addSeparator();
    add("title.menu.update", m_checkForUpdate);
    menu.run(frame.mapToGlobal(framePlace));
}

} // namespace velmorant
