#pragma once

#include "desktop/gate/HandlerGate.h"
#include "desktop/system/QtWaits.h"
#include "ports/ProgressWindow.h"
#include <QDialog>
#include <QEventLoop>

class QLabel;
class QProgressBar;
class QPushButton;

namespace velmorant {

/// The small window of an extraction run. Its "Cancel", Escape and the close button answer during
/// waits too and end nothing by themselves: the window closes when the run calls close().
class ExtractionProgress : public QObject, public ProgressWindow {
    Q_OBJECT
  public:
    using ButtonText = std::function<std::string()>;

    /// `cancelText` gives the label in the present language. Gate and waits must outlive this.
    ExtractionProgress(HandlerGate& gate, QtWaits& waits, ButtonText cancelText);
    ~ExtractionProgress() override;
    void showModal(const std::string& title) override;
    void showWhile(const std::string& title, const std::function<void()>& work) override;
    void setText(const std::string& text) override;
    void setValue(int percent) override;
    void close() override;
    void onCancel(std::function<void()> listener) override { cancel_ = std::move(listener); }

    QDialog& window() { return *window_; }

  private:
    void open(const std::string& title);

    HandlerGate& gate_;
    QtWaits& waits_;
    ButtonText cancelText_;
    std::unique_ptr<QDialog> window_;
    QLabel* title_;
    QLabel* text_;
    QProgressBar* bar_;
    QPushButton* button_;
    QEventLoop loop_;
    std::function<void()> cancel_;
};

} // namespace velmorant
