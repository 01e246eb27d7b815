#pragma once

#include <QKeyEvent>
#include <QScrollArea>

namespace velmorant {

/// Holds the contents of a frameless window, which scroll where the screen is smaller than they
/// are. The keys go on to the window: what has the focus is scrolled into sight anyway.
class FrameArea : public QScrollArea {
  public:
    explicit FrameArea(QWidget* contents) {
        setFrameShape(QFrame::NoFrame);
        setFocusPolicy(Qt::NoFocus);
        setWidget(contents);
    }

  protected:
    void keyPressEvent(QKeyEvent* event) override { event->ignore(); }
};

} // namespace velmorant
