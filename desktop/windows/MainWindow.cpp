#include "desktop/windows/MainWindow.h"

#include "desktop/windows/FrameArea.h"
#include <QAbstractScrollArea>
#include <QApplication>
#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QKeySequence>
#include <QMouseEvent>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

namespace velmorant {
namespace {

/// Where a pane lies: the skin's place, or where it always was when the skin names none.
QRect placeIn(const SkinView& skin, const char* id, const QRect& otherwise) {
    const QRect place = skin.placeRect(id);
    return place.isEmpty() ? otherwise : place;
}

constexpr Qt::KeyboardModifiers otherModifiers =
    Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;

/// Gives the keys back to who had them.
class KeepsKeys {
  public:
    explicit KeepsKeys(const QWidget& window) : keys_(window.focusWidget()) {}
    ~KeepsKeys() {
        if (keys_)
            keys_->setFocus(Qt::OtherFocusReason);
    }
    KeepsKeys(const KeepsKeys&) = delete;
    KeepsKeys& operator=(const KeepsKeys&) = delete;

  private:
    QPointer<QWidget> keys_;
};

constexpr QRect pictureArea{10, 120, 656, 369};
constexpr QRect bandArea{10, 489, 656, 209};
constexpr QRect mapArea{676, 120, 338, 248};
constexpr QRect listArea{676, 378, 338, 320};
constexpr QRect titleArea{0, 0, MainWindow::frameWidth, 40};

} // namespace

MainWindow::MainWindow(HandlerGate& gate, const Screen& screen)
    : skin_(new SkinView),
      window_(*this, gate, screen),
      native_(*this),
      bands_(*skin_, screen),
      drag_(*this),
      drop_(new DropTarget(*this)) {
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinimizeButtonHint);
    skin_->setFixedSize(frameWidth, frameHeight);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new FrameArea(skin_));
    resize(frameWidth, frameHeight);
    layoutPanes();
    connect(skin_, &SkinView::loaded, this, &MainWindow::layoutPanes);
    connect(skin_, &SkinView::clicked, this, [this](const std::string& element) {
        if (element == "minimise")
            showMinimized();
        else if (element == "close")
            close();
        else
            command_(element);
    });
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& place) { contextMenu_(place); });
}

void MainWindow::layoutPanes() {
    using Edge = QtBandContainer::Edge;
    bands_.setArea("MediaControl", placeIn(*skin_, "place.band", bandArea), Edge::Bottom);
    bands_.setArea("ControlBand", placeIn(*skin_, "place.map", mapArea), Edge::Top);
    bands_.recalculateLayout();
    for (const auto& [pane, widget] : panes_)
        if (widget)
            widget->setGeometry(pane == Pane::Picture
                                    ? placeIn(*skin_, "place.picture", pictureArea)
                                    : placeIn(*skin_, "place.list", listArea));
}

void MainWindow::host(Pane pane, QWidget& widget) {
    widget.setParent(skin_);
    panes_[pane] = &widget;
    layoutPanes();
    widget.show();
    widget.raise();
}

void MainWindow::onKey(std::vector<std::string> keys, GatedListener<KeyPress> listener) {
    keys_ = std::move(keys);
    key_ = std::move(listener);
}

void MainWindow::enlarge(QWidget* widget) {
    if (widget == enlarged_)
        return;
    // A widget that is given to another parent loses the keys, and the next button would get them.
    const KeepsKeys keys(*this);
    if (enlarged_ && enlargedParent_) {
        enlarged_->setParent(enlargedParent_);
        enlarged_->setGeometry(enlargedPlace_);
        enlarged_->show();
    }
    enlarged_ = widget;
    if (!widget)
        return;
    enlargedParent_ = widget->parentWidget();
    enlargedPlace_ = widget->geometry();
    widget->setParent(skin_); // out of its pane, whose size does not change
    widget->setGeometry(1, titleArea.height(), frameWidth - 2,
                        frameHeight - titleArea.height() - 1);
    widget->show();
    widget->raise();
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
    const std::string name = QKeySequence(event->key()).toString().toStdString();
    if (event->key() == Qt::Key_F10 && event->modifiers() == Qt::ShiftModifier)
        openContextMenu();
    else if (!(event->modifiers() & otherModifiers) &&
             std::find(keys_.begin(), keys_.end(), name) != keys_.end())
        key_({name, event->modifiers().testFlag(Qt::ShiftModifier)});
    else
        event->ignore();
}

/// As the menu key of a keyboard does, which not every keyboard has.
void MainWindow::openContextMenu() {
    QWidget* target = qobject_cast<QAbstractScrollArea*>(focusWidget());
    if (target == nullptr) { // a button, which has no menu but the frame's
        contextMenu_(titleArea.center());
        return;
    }
    const QPoint place = target->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, place, target->mapToGlobal(place));
    QApplication::sendEvent(target, &event);
}

void MainWindow::mousePressEvent(QMouseEvent* event) {
    const QPoint place = skin_->mapFrom(this, event->position().toPoint());
    if (event->button() == Qt::LeftButton &&
        placeIn(*skin_, "place.drag", titleArea).contains(place))
        drag_.begin(*event);
}

void MainWindow::mouseMoveEvent(QMouseEvent* event) {
    drag_.move(*event);
}

void MainWindow::mouseReleaseEvent(QMouseEvent*) {
    drag_.end();
}

void MainWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    native_.askSizeLimits();
    // Else the first button would begin with the focus, and space would press it.
    if (!focusWidget())
        skin_->setFocus();
}

} // namespace velmorant
