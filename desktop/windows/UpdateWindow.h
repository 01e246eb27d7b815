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

    const Texts& m_texts;
    QLabel* m_status;
    QProgressBar* m_sum;
    QProgressBar* m_single;
    QPushButton* m_close;
    int m_sumValue = 0;
    int m_sumMaximum = 0;
};

} // namespace velmorant
