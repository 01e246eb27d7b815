#include "desktop/widgets/DropTarget.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace velmorant {
namespace {

std::vector<std::string> localPaths(const QMimeData& data) {
    std::vector<std::string> paths;
    for (const QUrl& url : data.urls())
        if (url.isLocalFile())
            paths.push_back(url.toLocalFile().toStdString());
    return paths;
}

} // namespace

DropTarget::DropTarget(QWidget& widget) : QObject(&widget) {
    widget.setAcceptDrops(true);
    widget.installEventFilter(this);
}

bool DropTarget::eventFilter(QObject*, QEvent* event) {
    const auto type = event->type();
    if (type != QEvent::DragEnter && type != QEvent::DragMove && type != QEvent::Drop)
        return false;
    auto* drop = static_cast<QDropEvent*>(event);
    const std::vector<std::string> paths = localPaths(*drop->mimeData());
    if (paths.empty()) {
        event->ignore();
        return true;
    }
    drop->setDropAction(Qt::CopyAction);
    drop->accept();
    if (type == QEvent::Drop)
        QMetaObject::invokeMethod(
            this, [this, paths] { m_listener(paths); }, Qt::QueuedConnection);
    return true;
}

} // namespace velmorant
