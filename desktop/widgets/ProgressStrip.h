#pragma once

#include <QProgressBar>

namespace velmorant {

/// A thin line that fills while something long is done, and is hidden otherwise.
class ProgressStrip : public QProgressBar {
  public:
    explicit ProgressStrip(QWidget* parent = nullptr);
    void begin(int total);
    void setDone(int done);
    void end();
};

} // namespace velmorant
