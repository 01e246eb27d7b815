#pragma once

#include "ports/Texts.h"
#include "settings/UpdateProgress.h"
#include <QWidget>

class QLabel;
class QProgressBar;
class QPushButton;

namespace velmorant {

/// The window of the online update: what is under way, and the two progress bars. Its button and
/// its frame ask to be closed like any window of the program (QtWindow::onCloseRequest).
class UpdateWindow : public QWidget, public UpdateProgress {
    Q_OBJECT
  public:
    /// The texts must outlive the window; labels follow the language when it is shown.
    explicit UpdateWindow(const Texts& texts, QWidget* parent = nullptr);

    void showSum(int value, int maximum) override;
    void showSingle(std::int64_t value, std::int64_t maximum) override;
    void showStatus(const std::string& text) override;

  protected:
    void showEvent(QShowEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void showTexts();

    const Texts& texts_;
    QLabel* status_;
    QProgressBar* sum_;
    QProgressBar* single_;
    QPushButton* close_;
    int sumValue_ = 0;
    int sumMaximum_ = 0;
};

} // namespace velmorant
