#pragma once

#include "desktop/gate/GatedListener.h"
#include "desktop/widgets/RecordingListDelegate.h"
#include "desktop/widgets/RecordingListModel.h"
#include "ports/ListControl.h"
#include "ports/Screen.h"
#include "recordings/RecordingListListener.h"
#include <QElapsedTimer>
#include <QTreeView>

namespace velmorant {

/// The control `LstMP4` in report view: three columns, which are the headers 1 to 3.
///
/// The view reports and shows; the selection alone follows the arrow keys by itself, since the
/// user must see it move, and is reported. Letters that it does not use go on to the window.
class RecordingListView : public QTreeView,
                          public ListControl,
                          public ListBackground,
                          public RecordingListListener {
    Q_OBJECT
  public:
    /// What the user does. Rows are 1-based, places are pixels of the control.
    struct Listeners {
        GatedListener<int, int> mouseDown;  ///< x, y
        GatedListener<int, int> mouseClick; ///< x, y; pressed and released on one row
        GatedListener<> doubleClick;
        GatedListener<int> select; ///< row; by the arrow keys, Home, End and page keys
        GatedListener<> toggle;    ///< space
        GatedListener<> activate;  ///< Enter
        GatedListener<> remove;    ///< Delete
        /// What has been typed so far, digits and ":"; a pause of one second starts over.
        GatedListener<std::string> type;
        GatedListener<int, QPoint> contextMenu; ///< row, 0 for none, and place on the screen
    };

    /// The screen must outlive the view.
    explicit RecordingListView(const Screen& screen, QWidget* parent = nullptr);
    void setListeners(Listeners listeners) { m_listeners = std::move(listeners); }
    /// Not owned; null: no rows.
    void setSource(const RowSource* source);
    void setPictures(RowPictures pictures);
    void setWords(RowWords words);
    /// Shown while the list is empty: how to add recordings.
    void setEmptyHint(const std::string& hint);

    void rowsAdded(int first, int count) override;
    void rowsRemoved(int first, int count) override;
    void rowsChanged(int first, int count) override;
    void selectionChanged(int index) override; ///< scrolls it into view
    int hitTest(int x, int y) const override;
    int columnLeft(int column) const override;
    void setColumnWidth(int column, int twips) override;
    void setFontSize(double points) override;
    int rowHeight() const override;

    void setBackColour(int colour) override;
    /// The picture behind the rows is a plain colour, at least as high as the control.
    void setHeight(int twips) override { m_backgroundHeight = twips; }
    void draw() override;
    int backgroundHeight() const { return m_backgroundHeight; }

    /// The selected row; 0 for none.
    int selectedRow() const;

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    // QTreeView's own slots of these names serve its model.
    using QTreeView::rowsRemoved;
    using QTreeView::selectionChanged;
    using QTreeView::setColumnWidth;

  private:
    void type(const QString& text);
    void moveByKey(QKeyEvent* event);
    void updateKindOffset();
    void followPlayingRow(int first, int count);
    void beginAtText();
    void tellCurrentRow(int first, int count);

    const Screen& m_screen;
    RecordingListModel* m_model;
    RecordingListDelegate* m_delegate;
    Listeners m_listeners;
    int m_pressedRow = 0;
    QString m_currentName; ///< of the current cell, as last announced to screen readers
    int m_playingRow = 0;  ///< 0: none is known
    QString m_typed;
    QElapsedTimer m_sinceTyped;
    QString m_emptyHint;
    int m_backgroundHeight = 0;
    int m_textColumnWidth = 0; ///< pixels, as the logic set it
};

} // namespace velmorant
