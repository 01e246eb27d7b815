#include "desktop/widgets/ProgressStrip.h"

#include <algorithm>

namespace velmorant {

ProgressStrip::ProgressStrip(QWidget* parent) : QProgressBar(parent) {
    setTextVisible(false);
    setStyleSheet(QStringLiteral(
        "QProgressBar { background: #26313D; border: none; border-radius: 0; min-height: 1px; }"
        "QProgressBar::chunk { background: #45C9D6; border-radius: 0; }"));
    hide();
}

void ProgressStrip::begin(int total) {
    setRange(0, std::max(1, total));
    setValue(0);
    show();
    raise();
}

void ProgressStrip::setDone(int done) {
    setValue(done);
}

void ProgressStrip::end() {
    hide();
}

} // namespace velmorant
