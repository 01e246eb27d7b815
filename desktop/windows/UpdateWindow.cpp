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
      texts_(texts),
      status_(new QLabel),
      sum_(new QProgressBar),
      single_(new QProgressBar),
      close_(new QPushButton) {
    setObjectName("frmUpdate");
    setAttribute(Qt::WA_StyledBackground);
    status_->setObjectName("status");
    status_->setTextFormat(Qt::PlainText);
    status_->setWordWrap(true);
    status_->setMinimumSize(420, 44);
    sum_->setObjectName("prgSum");
    single_->setObjectName("prgSingle");
    single_->setRange(0, singleSteps);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 20, 24, 20);
    layout->setSpacing(14);
    layout->addWidget(status_);
    layout->addWidget(sum_);
    layout->addWidget(single_);
    layout->addWidget(close_, 0, Qt::AlignRight);
    connect(close_, &QPushButton::clicked, this, &QWidget::close);
}

void UpdateWindow::showSum(int value, int maximum) {
    sumValue_ = value;
    sumMaximum_ = maximum;
    // A range from 0 to 0 would show a bar that never stops.
    sum_->setRange(0, std::max(maximum, 1));
    // A new value is painted at once, with the text of that moment.
    showTexts();
    sum_->setValue(maximum == 0 ? 0 : value);
}

void UpdateWindow::showSingle(std::int64_t value, std::int64_t maximum) {
    const std::int64_t most = std::max<std::int64_t>(maximum, 1);
    const double share = static_cast<double>(value) / static_cast<double>(most);
    single_->setFormat(sizeText(value) + " / " + sizeText(maximum));
    single_->setValue(static_cast<int>(share * singleSteps));
}

void UpdateWindow::showStatus(const std::string& text) {
    status_->setText(shownText(text));
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
        const std::string title = texts_.addition("update.title");
        const std::string files =
            fillIn(fillIn(texts_.addition("update.files"), "%1", std::to_string(sumValue_)), "%2",
                   std::to_string(sumMaximum_));
        sum_->setFormat(sumMaximum_ == 0 ? QString() : QString::fromStdString(files));
        sum_->setAccessibleName(QString::fromStdString(title));
        single_->setAccessibleName(status_->text());
        close_->setText(QString::fromStdString(texts_.addition("update.close")));
    });
}

} // namespace velmorant
