#include "desktop/widgets/RecordingListView.h"

#include "desktop/widgets/Theme.h"
#include <QAccessible>
#include <QContextMenuEvent>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <utility>

namespace velmorant {
namespace {

constexpr qint64 typingPauseMilliseconds = 1000;
constexpr int signColumnPixels = 20;

} // namespace

RecordingListView::RecordingListView(const Screen& screen, QWidget* parent)
    : QTreeView(parent),
      m_screen(screen),
      m_model(new RecordingListModel(this)),
      m_delegate(new RecordingListDelegate(this)) {
    setModel(m_model);
    setItemDelegate(m_delegate);
    setRootIsDecorated(false);
    setUniformRowHeights(true);
    setHeaderHidden(true);
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setItemsExpandable(false);
    setIndentation(0);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAllColumnsShowFocus(false); // the delegate shows it
    header()->setMinimumSectionSize(1);
    header()->setStretchLastSection(true);
    header()->resizeSection(RecordingListModel::PlayingSign, signColumnPixels);
    header()->resizeSection(RecordingListModel::Mark, 20);
    setFontSize(11);
}

void RecordingListView::setSource(const RowSource* source) {
    m_model->setSource(source);
}

void RecordingListView::setPictures(RowPictures pictures) {
    m_delegate->setPictures(std::move(pictures));
    viewport()->update();
}

void RecordingListView::setWords(RowWords words) {
    m_model->setWords(std::move(words));
}

void RecordingListView::setEmptyHint(const std::string& hint) {
    m_emptyHint = QString::fromStdString(hint);
    setAccessibleDescription(m_emptyHint);
    viewport()->update();
}

void RecordingListView::paintEvent(QPaintEvent* event) {
    QTreeView::paintEvent(event);
    if (m_model->rowCount() != 0 || m_emptyHint.isEmpty())
        return;
    constexpr int margin = 24;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(margin, 0, -margin, 0),
                     Qt::AlignCenter | Qt::TextWordWrap, m_emptyHint);
}

void RecordingListView::rowsAdded(int first, int count) {
    m_model->rowsAdded(first, count);
}

void RecordingListView::rowsRemoved(int first, int count) {
    m_model->rowsRemoved(first, count);
}

void RecordingListView::rowsChanged(int first, int count) {
    m_model->rowsChanged(first, count);
    followPlayingRow(first, count);
    tellCurrentRow(first, count);
}

/// The toolkit tells screen readers of a cell that gets the focus, and of nothing that changes in
/// it, such as the mark by the space bar.
void RecordingListView::tellCurrentRow(int first, int count) {
    const QModelIndex current = currentIndex();
    const QString name = current.data(Qt::AccessibleTextRole).toString();
    if (current.row() + 1 < first || current.row() + 1 >= first + count || name == m_currentName)
        return;
    m_currentName = name;
    executeDelayedItemsLayout(); // else the toolkit finds no cell to tell of
    // As the toolkit counts: the header is the first row.
    const int child = (current.row() + 1) * m_model->columnCount() + current.column();
    QAccessible::State mark;
    mark.checked = true;
    QAccessibleStateChangeEvent state(this, mark);
    state.setChild(child);
    QAccessible::updateAccessibility(&state);
    QAccessibleEvent renamed(this, QAccessible::NameChanged);
    renamed.setChild(child);
    QAccessible::updateAccessibility(&renamed);
}

void RecordingListView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTreeView::currentChanged(current, previous);
    m_currentName = current.data(Qt::AccessibleTextRole).toString();
}

/// Among hundreds of rows the one that begins to play is easily out of sight. Who looks through the
/// list with the mouse at that moment is not disturbed.
void RecordingListView::followPlayingRow(int first, int count) {
    for (int row = first; row < first + count && row <= m_model->rowCount(); ++row) {
        const QModelIndex cell = m_model->index(row - 1, RecordingListModel::Text);
        const bool playing = cell.data(RecordingListModel::PlayingRole).toBool();
        if (playing && row != m_playingRow && !underMouse())
            scrollTo(cell);
        if (playing)
            m_playingRow = row;
        else if (row == m_playingRow)
            m_playingRow = 0;
    }
}

void RecordingListView::selectionChanged(int index) {
    if (index == selectedRow())
        return;
    if (index < 1 || index > m_model->rowCount()) {
        selectionModel()->clear();
        return;
    }
    const QModelIndex cell = m_model->index(index - 1, RecordingListModel::Text);
    selectionModel()->setCurrentIndex(cell, QItemSelectionModel::ClearAndSelect |
                                                QItemSelectionModel::Rows);
    scrollTo(cell);
}

int RecordingListView::selectedRow() const {
    const QModelIndexList rows = selectionModel()->selectedRows();
    return rows.isEmpty() ? 0 : rows.front().row() + 1;
}

int RecordingListView::hitTest(int x, int y) const {
    if (!viewport()->rect().contains(x, y))
        return 0;
    const QModelIndex index = indexAt({x, y});
    return index.isValid() ? index.row() + 1 : 0;
}

int RecordingListView::columnLeft(int column) const {
    return header()->sectionViewportPosition(column - 1) * m_screen.twipsPerPixelX();
}

void RecordingListView::setColumnWidth(int column, int twips) {
    const int pixels = static_cast<int>(std::lround(double(twips) / m_screen.twipsPerPixelX()));
    if (column < 1 || column > RecordingListModel::ColumnCount)
        return;
    header()->resizeSection(column - 1, pixels);
    if (column - 1 == RecordingListModel::Text)
        m_textColumnWidth = pixels;
    updateKindOffset();
}

void RecordingListView::setFontSize(double points) {
    QFont ownFont = font();
    ownFont.setPointSizeF(points);
    setFont(ownFont);
    updateKindOffset();
    doItemsLayout();
}

void RecordingListView::updateKindOffset() {
    QFont bold = font();
    bold.setBold(true);
    const int widest = QFontMetrics(bold).horizontalAdvance(QStringLiteral("0000/00/00  00:00:00"));
    m_delegate->setKindOffset(std::max(m_textColumnWidth, widest + 6) + 10);
}

int RecordingListView::rowHeight() const {
    return RecordingListDelegate::rowHeight(font()) * m_screen.twipsPerPixelY();
}

void RecordingListView::setBackColour(int colour) {
    QPalette colours = palette();
    colours.setColor(QPalette::Base,
                     QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF));
    setPalette(colours);
}

void RecordingListView::draw() {
    viewport()->update();
}

void RecordingListView::mousePressEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    const int row = hitTest(place.x(), place.y());
    m_listeners.mouseDown(place.x(), place.y());
    if (row > 0)
        selectionChanged(row);
    m_pressedRow = event->button() == Qt::LeftButton ? row : 0;
}

void RecordingListView::mouseReleaseEvent(QMouseEvent* event) {
    const QPoint place = event->position().toPoint();
    const int pressed = std::exchange(m_pressedRow, 0);
    if (event->button() == Qt::LeftButton && pressed > 0 &&
        pressed == hitTest(place.x(), place.y()))
        m_listeners.mouseClick(place.x(), place.y());
}

void RecordingListView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        m_listeners.doubleClick();
}

// The base class would select the rows that the pointer passes over.
void RecordingListView::mouseMoveEvent(QMouseEvent* event) {
    event->accept();
}

void RecordingListView::keyPressEvent(QKeyEvent* event) {
    const bool plain = !(event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
    const QString text = event->text();
    switch (event->key()) {
    case Qt::Key_Up:
    case Qt::Key_Down:
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
    case Qt::Key_Home:
    case Qt::Key_End:
        return moveByKey(event);
    case Qt::Key_Space:
        return m_listeners.toggle();
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return m_listeners.activate();
    case Qt::Key_Delete:
        return m_listeners.remove();
    default:
        break;
    }
    if (plain && text.size() == 1 && (text[0].isDigit() || text[0] == QLatin1Char(':')))
        return type(text);
    event->ignore();
}

/// Left to itself the toolkit begins in the first column, which says little.
void RecordingListView::beginAtText() {
    if (currentIndex().isValid() || m_model->rowCount() == 0)
        return;
    const int row = std::max(hitTest(0, 0), 1);
    selectionModel()->setCurrentIndex(m_model->index(row - 1, RecordingListModel::Text),
                                      QItemSelectionModel::NoUpdate);
}

void RecordingListView::moveByKey(QKeyEvent* event) {
    beginAtText();
    const int before = selectedRow();
    QTreeView::keyPressEvent(event);
    event->accept();
    if (selectedRow() != before)
        m_listeners.select(selectedRow());
}

void RecordingListView::type(const QString& text) {
    if (!m_sinceTyped.isValid() || m_sinceTyped.elapsed() > typingPauseMilliseconds)
        m_typed.clear();
    m_sinceTyped.start();
    m_typed += text;
    m_listeners.type(m_typed.toStdString());
}

void RecordingListView::contextMenuEvent(QContextMenuEvent* event) {
    const bool byKey = event->reason() == QContextMenuEvent::Keyboard;
    const int row = byKey ? selectedRow() : hitTest(event->pos().x(), event->pos().y());
    QPoint place = event->globalPos();
    if (byKey && row > 0)
        place = viewport()->mapToGlobal(
            visualRect(m_model->index(row - 1, RecordingListModel::Text)).center());
    m_listeners.contextMenu(row, place);
}

// The frame of the chosen row tells whether the list has the keys.
void RecordingListView::focusInEvent(QFocusEvent* event) {
    beginAtText();
    QTreeView::focusInEvent(event);
    viewport()->update();
}

void RecordingListView::focusOutEvent(QFocusEvent* event) {
    QTreeView::focusOutEvent(event);
    viewport()->update();
}

} // namespace velmorant
