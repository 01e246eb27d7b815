#include "desktop/wiring/TitleMenu.h"

#include <QMenu>

namespace velmorant {

void TitleMenu::show(const QPoint& framePlace) {
    MainWindow& frame = m_panes.frame;
    if (!frame.skin().placeRect("place.drag").contains(framePlace))
        return;
    using Item = QtNativeWindow::MenuItem;
    QMenu menu(&frame);
    for (const Item item : frame.nativeWindow().systemMenu()) {
        // The frame has one size and is moved by its title area: the other items have no use here.
        if (item == Item::Minimize)
            menu.addAction(QString::fromStdString(m_texts.addition("title.menu.minimise")), &frame,
                           &QWidget::showMinimized);
        else if (item == Item::Close)
            menu.addAction(QString::fromStdString(m_texts.addition("title.menu.close")), &frame,
                           &QWidget::close);
        else if (item == Item::Separator)
            menu.addSeparator();
    }
    menu.addSeparator();
    menu.addAction(QString::fromStdString(m_texts.addition("title.menu.update")), &frame,
                   [this] { m_host.gate.runWhenFree(m_checkForUpdate); });
    HandlerGate::ModalScope open(m_host.gate);
    menu.exec(frame.mapToGlobal(framePlace));
}

} // namespace velmorant
