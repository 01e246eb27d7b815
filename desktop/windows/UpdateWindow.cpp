#include "desktop/windows/UpdateWindow.h"

#include "common/fillIn.h"
#include "common/trapErrors.h"
#include "desktop/system/shownText.h"
#include <QKeyEvent>
#include <QLabel>
#include <QLocale>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShowEvent>
#include <QVBoxLayout>
#include <algorithm>

namespace velmorant {
namespace {

// A bar counts in 32 bits, a file may be larger.
constexpr int singleSteps = 1000;

QString sizeText(std::int64_t bytes) {
    return QLocale().formattedDataSize(bytes);
}

} // namespace

UpdateWindow::UpdateWindow(const Texts& texts, QWidget* parent)
    : QWidget(parent, Qt::Window | Qt::WindowTitleHint | Qt::WindowCloseButtonHint),
      m_texts(texts),
      m_status(new QLabel),
      m_sum(new QProgressBar),
      m_single(new QProgressBar),
      m_close(new QPushButton) {
    setObjectName("frmUpdate");
    setAttribute(Qt::WA_StyledBackground);
    m_status->setObjectName("status");
    m_status->setTextFormat(Qt::PlainText);
    m_status->setWordWrap(true);
    m_status->setMinimumSize(420, 44);
    m_sum->setObjectName("prgSum");
    m_single->setObjectName("prgSingle");
    m_single->setRange(0, singleSteps);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(m_status);
    layout->addWidget(m_sum);
    layout->addWidget(m_single);
    layout->addWidget(m_close, 0, Qt::AlignRight);
    connect(m_close, &QPushButton::clicked, this, &QWidget::close);
}

void UpdateWindow::showSum(int value, int maximum) {
    m_sumValue = value;
    m_sumMaximum = maximum;
    // A range from 0 to 0 would show a bar that never stops.
    m_sum->setRange(0, std::max(maximum, 1));
    // A new value is painted at once, with the text of that moment.
    showTexts();
    m_sum->setValue(maximum == 0 ? 0 : value);
}

void UpdateWindow::showSingle(std::int64_t value, std::int64_t maximum) {
    const std::int64_t most = std::max<std::int64_t>(maximum, 1);
    const double share = static_cast<double>(value) / static_cast<double>(most);
    m_single->setFormat(sizeText(value) + " / " + sizeText(maximum));
    m_single->setValue(static_cast<int>(share * singleSteps));
}

void UpdateWindow::showStatus(const std::string& text) {
    m_status->setText(shownText(text));
}

void UpdateWindow::showEvent(QShowEvent* event) {
    showTexts();
    if (!event->spontaneous()) {
        adjustSize();
        move(screen()->availableGeometry().center() - rect().center());
    }
    QWidget::showEvent(event);
}

void UpdateWindow::keyPressEvent(QKeyEvent* event) {
    // As in every other window.
    if (event->key() == Qt::Key_Escape)
        close();
    else
        event->ignore();
}

void UpdateWindow::showTexts() {
    trapErrors([this] {
        const std::string title = m_texts.addition("update.title");
        const std::string files =
            fillIn(fillIn(m_texts.addition("update.files"), "%1", std::to_string(m_sumValue)), "%2",
                   std::to_string(m_sumMaximum));
        m_sum->setFormat(m_sumMaximum == 0 ? QString() : QString::fromStdString(files));
        m_sum->setAccessibleName(QString::fromStdString(title));
        m_single->setAccessibleName(m_status->text());
        m_close->setText(QString::fromStdString(m_texts.addition("update.close")));
    });
}

} // namespace velmorant
