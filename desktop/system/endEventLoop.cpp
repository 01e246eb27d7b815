#include "desktop/system/endEventLoop.h"

#include <QCoreApplication>

namespace velmorant {

void endEventLoop() {
    // Queued: the handler that ends the program still runs, and the event loop may not yet.
    // Not quit(): that would ask every window to close, and the frame would ask the user.
    QMetaObject::invokeMethod(
        qApp, [] { QCoreApplication::exit(0); }, Qt::QueuedConnection);
}

} // namespace velmorant
