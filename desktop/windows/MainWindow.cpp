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
    explicit KeepsKeys(const QWidget& window) : m_keys(window.focusWidget()) {}
    ~KeepsKeys() {
        if (m_keys)
            m_keys->setFocus(Qt::OtherFocusReason);
    }
    KeepsKeys(const KeepsKeys&) = delete;
    KeepsKeys& operator=(const KeepsKeys&) = delete;

  private:
    QPointer<QWidget> m_keys;
};

constexpr QRect pictureArea{10, 120, 656, 369};
constexpr QRect bandArea{10, 489, 656, 209};
constexpr QRect mapArea{676, 120, 338, 248};
constexpr QRect listArea{676, 378, 338, 320};
constexpr QRect titleArea{0, 0, MainWindow::frameWidth, 40};

} // namespace

MainWindow::MainWindow(HandlerGate& gate, const Screen& screen)
    : m_skin(new SkinView),
      m_window(*this, gate, screen),
      m_native(*this),
      m_bands(*m_skin, screen),
      m_drag(*this),
      m_drop(new DropTarget(*this)) {
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinimizeButtonHint);
    m_skin->setFixedSize(frameWidth, frameHeight);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(new FrameArea(m_skin));
    resize(frameWidth, frameHeight);
    layoutPanes();
    connect(m_skin, &SkinView::loaded, this, &MainWindow::layoutPanes);
    connect(m_skin, &SkinView::clicked, this, [this](const std::string& element) {
        if (element == "minimise")
            showMinimized();
        else if (element == "close")
            close();
        else
            m_command(element);
    });
    setContextMenuPolicy(Qt::CustomContextMenu);
    connect(this, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& place) { m_contextMenu(place); });
}

void MainWindow::layoutPanes() {
    using Edge = QtBandContainer::Edge;
    m_bands.setArea("MediaControl", placeIn(*m_skin, "place.band", bandArea), Edge::Bottom);
    m_bands.setArea("ControlBand", placeIn(*m_skin, "place.map", mapArea), Edge::Top);
    m_bands.recalculateLayout();
    for (const auto& [pane, widget] : m_panes)
        if (widget)
            widget->setGeometry(pane == Pane::Picture
                                    ? placeIn(*m_skin, "place.picture", pictureArea)
                                    : placeIn(*m_skin, "place.list", listArea));
}

void MainWindow::host(Pane pane, QWidget& widget) {
    widget.setParent(m_skin);
    m_panes[pane] = &widget;
    layoutPanes();
    widget.show();
    widget.raise();
}

void MainWindow::onKey(std::vector<std::string> keys, GatedListener<KeyPress> listener) {
    m_keys = std::move(keys);
    m_key = std::move(listener);
}

void MainWindow::enlarge(QWidget* widget) {
    if (widget == m_enlarged)
        return;
    // A widget that is given to another parent loses the keys, and the next button would get them.
    const KeepsKeys keys(*this);
    if (m_enlarged && m_enlargedParent) {
        m_enlarged->setParent(m_enlargedParent);
        m_enlarged->setGeometry(m_enlargedPlace);
        m_enlarged->show();
    }
    m_enlarged = widget;
    if (!widget)
        return;
    m_enlargedParent = widget->parentWidget();
    m_enlargedPlace = widget->geometry();
    widget->setParent(m_skin); // out of its pane, whose size does not change
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
             std::find(m_keys.begin(), m_keys.end(), name) != m_keys.end())
        m_key({name, event->modifiers().testFlag(Qt::ShiftModifier)});
    else
        event->ignore();
}

/// As the menu key of a keyboard does, which not every keyboard has.
void MainWindow::openContextMenu() {
    QWidget* target = qobject_cast<QAbstractScrollArea*>(focusWidget());
    if (target == nullptr) { // a button, which has no menu but the frame's
        m_contextMenu(titleArea.center());
        return;
    }
    const QPoint place = target->rect().center();
    QContextMenuEvent event(QContextMenuEvent::Keyboard, place, target->mapToGlobal(place));
    QApplication::sendEvent(target, &event);
}

void MainWindow::mousePressEvent(QMouseEvent* event) {
    const QPoint place = m_skin->mapFrom(this, event->position().toPoint());
    if (event->button() == Qt::LeftButton &&
        placeIn(*m_skin, "place.drag", titleArea).contains(place))
        m_drag.begin(*event);
}

void MainWindow::mouseMoveEvent(QMouseEvent* event) {
    m_drag.move(*event);
}

void MainWindow::mouseReleaseEvent(QMouseEvent*) {
    m_drag.end();
}

void MainWindow::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    m_native.askSizeLimits();
    // Else the first button would begin with the focus, and space would press it.
    if (!focusWidget())
        m_skin->setFocus();
}

} // namespace velmorant
