#include "desktop/widgets/ExtractionProgress.h"

#include "desktop/system/shownText.h"
#include <QApplication>
#include <QLabel>
#include <QMouseEvent>
#include <QProgressBar>
#include <QPushButton>
#include <QScopeGuard>
#include <QVBoxLayout>
#include <QWindow>
#include <utility>

namespace velmorant {
namespace {

/// A dialog that its user cannot close: every way to close it asks instead.
class AskingDialog : public QDialog {
  public:
    explicit AskingDialog(std::function<void()> asked) : asked_(std::move(asked)) {}

    void reject() override { asked_(); }

  protected:
    // Anything but the button moves the window, as its title would.
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton && windowHandle() != nullptr)
            windowHandle()->startSystemMove();
    }

  private:
    std::function<void()> asked_;
};

} // namespace

ExtractionProgress::ExtractionProgress(HandlerGate& gate, QtWaits& waits, ButtonText cancelText)
    : gate_(gate),
      waits_(waits),
      cancelText_(std::move(cancelText)),
      window_(std::make_unique<AskingDialog>([this] { button_->click(); })),
      title_(new QLabel),
      text_(new QLabel),
      bar_(new QProgressBar),
      button_(new QPushButton) {
    // A frame of its own, as the program's other windows have: not every desktop draws one.
    window_->setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    title_->setTextFormat(Qt::PlainText);
    QFont heading = title_->font();
    heading.setBold(true);
    title_->setFont(heading);
    title_->setObjectName("title");
    text_->setObjectName("text");
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setMinimumSize(380, 40);
    bar_->setRange(0, 100);
    auto* frame = new QFrame;
    frame->setObjectName("frmSendData");
    frame->setStyleSheet("#frmSendData { background: #121821; border: 1px solid #75869A; }");
    auto* outside = new QVBoxLayout(window_.get());
    outside->setContentsMargins(0, 0, 0, 0);
    outside->addWidget(frame);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(title_);
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

void ExtractionProgress::open(const std::string& title) {
    window_->setWindowTitle(QString::fromStdString(title));
    title_->setText(QString::fromStdString(title));
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
}

void ExtractionProgress::showModal(const std::string& title) {
    open(title);
    const HandlerGate::ModalScope modal(gate_);
    loop_.exec(QEventLoop::DialogExec);
}

void ExtractionProgress::showWhile(const std::string& title, const std::function<void()>& work) {
    open(title);
    const auto closing = qScopeGuard([this] { close(); });
    work();
}

void ExtractionProgress::setText(const std::string& text) {
    text_->setText(shownText(text));
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
