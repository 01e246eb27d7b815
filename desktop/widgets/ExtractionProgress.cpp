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
    explicit AskingDialog(std::function<void()> asked) : m_asked(std::move(asked)) {}

    void reject() override { m_asked(); }

  protected:
    // Anything but the button moves the window, as its title would.
    void mousePressEvent(QMouseEvent* event) override {
        if (event->button() == Qt::LeftButton && windowHandle() != nullptr)
            windowHandle()->startSystemMove();
    }

  private:
    std::function<void()> m_asked;
};

} // namespace

ExtractionProgress::ExtractionProgress(HandlerGate& gate, QtWaits& waits, ButtonText cancelText)
    : m_gate(gate),
      m_waits(waits),
      m_cancelText(std::move(cancelText)),
      m_window(std::make_unique<AskingDialog>([this] { m_button->click(); })),
      m_title(new QLabel),
      m_text(new QLabel),
      m_bar(new QProgressBar),
      m_button(new QPushButton) {
    // A frame of its own, as the program's other windows have: not every desktop draws one.
    m_window->setWindowFlags(Qt::Dialog | Qt::FramelessWindowHint);
    m_title->setTextFormat(Qt::PlainText);
    QFont heading = m_title->font();
    heading.setBold(true);
    m_title->setFont(heading);
    m_title->setObjectName("title");
    m_text->setObjectName("text");
    m_text->setTextFormat(Qt::PlainText);
    m_text->setWordWrap(true);
    m_text->setMinimumSize(380, 40);
    m_bar->setRange(0, 100);
    auto* frame = new QFrame;
    frame->setObjectName("frmSendData");
    frame->setStyleSheet("#frmSendData { background: #121821; border: 1px solid #75869A; }");
    auto* outside = new QVBoxLayout(m_window.get());
    outside->setContentsMargins(0, 0, 0, 0);
    outside->addWidget(frame);
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(m_title);
    layout->addWidget(m_text);
    layout->addWidget(m_bar);
    layout->addWidget(m_button, 0, Qt::AlignRight);
    // Straight to the listener, past the gate: it only notes the wish, while the run's handler
    // waits.
    connect(m_button, &QPushButton::clicked, this, [this] {
        m_button->setEnabled(false);
        if (m_cancel)
            m_cancel();
        m_waits.endSleep();
    });
}

ExtractionProgress::~ExtractionProgress() {
    close();
}

void ExtractionProgress::open(const std::string& title) {
    m_window->setWindowTitle(QString::fromStdString(title));
    m_title->setText(QString::fromStdString(title));
    m_button->setText(QString::fromStdString(m_cancelText()));
    m_button->setEnabled(true);
    m_button->setFocus();
    m_bar->setValue(0);
    m_bar->setAccessibleName(QString::fromStdString(title));
    m_window->setWindowModality(Qt::ApplicationModal);
    m_window->adjustSize();
    if (const QWidget* active = QApplication::activeWindow())
        m_window->move(active->frameGeometry().center() - m_window->rect().center());
    m_window->show();
    m_waits.setAnsweringWindow(m_window.get());
}

void ExtractionProgress::showModal(const std::string& title) {
    open(title);
    const HandlerGate::ModalScope modal(m_gate);
    m_loop.exec(QEventLoop::DialogExec);
}

void ExtractionProgress::showWhile(const std::string& title, const std::function<void()>& work) {
    open(title);
    const auto closing = qScopeGuard([this] { close(); });
    work();
}

void ExtractionProgress::setText(const std::string& text) {
    m_text->setText(shownText(text));
}

void ExtractionProgress::setValue(int percent) {
    m_bar->setValue(percent);
}

void ExtractionProgress::close() {
    if (m_waits.answeringWindow() == m_window.get())
        m_waits.setAnsweringWindow(nullptr);
    m_window->hide();
    m_loop.quit();
}

} // namespace velmorant
