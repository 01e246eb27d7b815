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

/// The small window of an extraction run. Its "Cancel", Escape and the close button respond during
/// waits too, but end nothing by themselves: the window closes when the run calls close().
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
    void onCancel(std::function<void()> listener) override { m_cancel = std::move(listener); }

    QDialog& window() { return *m_window; }

  private:
    void open(const std::string& title);

    HandlerGate& m_gate;
    QtWaits& m_waits;
    ButtonText m_cancelText;
    std::unique_ptr<QDialog> m_window;
    QLabel* m_title;
    QLabel* m_text;
    QProgressBar* m_bar;
    QPushButton* m_button;
    QEventLoop m_loop;
    std::function<void()> m_cancel;
};

} // namespace velmorant
