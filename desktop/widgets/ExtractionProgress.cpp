#include "desktop/widgets/ExtractionProgress.h"

#include <QApplication>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

namespace velmorant {
namespace {

/// A dialog that its user cannot close: every way to close it asks instead.
class AskingDialog : public QDialog {
  public:
    explicit AskingDialog(std::function<void()> asked) : asked_(std::move(asked)) {}

    void reject() override { asked_(); }

  private:
    std::function<void()> asked_;
};

} // namespace

ExtractionProgress::ExtractionProgress(HandlerGate& gate, QtWaits& waits, ButtonText cancelText)
    : gate_(gate),
      waits_(waits),
      cancelText_(std::move(cancelText)),
      window_(std::make_unique<AskingDialog>([this] { button_->click(); })),
      text_(new QLabel),
      bar_(new QProgressBar),
      button_(new QPushButton) {
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setMinimumSize(380, 40);
    bar_->setRange(0, 100);
    auto* layout = new QVBoxLayout(window_.get());
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(text_);
    layout->addWidget(bar_);
    layout->addWidget(button_, 0, Qt::AlignRight);
    // Straight to the listener, past the gate: it only notes the wish, while the run's handler
    // waits.
    connect(button_, &QPushButton::clicked, this, [this] {
        button_->setEnabled(false);
        if (cancel_)
            cancel_();
        waits_.endSleep();
    });
}

ExtractionProgress::~ExtractionProgress() {
    close();
}

void ExtractionProgress::showModal(const std::string& title) {
    window_->setWindowTitle(QString::fromStdString(title));
    button_->setText(QString::fromStdString(cancelText_()));
    button_->setEnabled(true);
    button_->setFocus();
    bar_->setValue(0);
    bar_->setAccessibleName(QString::fromStdString(title));
    window_->setWindowModality(Qt::ApplicationModal);
    window_->adjustSize();
    if (const QWidget* active = QApplication::activeWindow())
        window_->move(active->frameGeometry().center() - window_->rect().center());
    window_->show();
    waits_.setAnsweringWindow(window_.get());
    const HandlerGate::ModalScope modal(gate_);
    loop_.exec(QEventLoop::DialogExec);
}

void ExtractionProgress::setText(const std::string& text) {
    text_->setText(QString::fromStdString(text));
}

void ExtractionProgress::setValue(int percent) {
    bar_->setValue(percent);
}

void ExtractionProgress::close() {
    if (waits_.answeringWindow() == window_.get())
        waits_.setAnsweringWindow(nullptr);
    window_->hide();
    loop_.quit();
}

} // namespace velmorant
