#pragma once

#include "desktop/widgets/SkinDrawing.h"
#include <QAbstractButton>
#include <memory>

namespace velmorant {

/// A button of a skin. It takes the focus by the Tab key alone: a click leaves the keys to the
/// window, where space plays and pauses.
class SkinButton : public QAbstractButton {
    Q_OBJECT
  public:
    SkinButton(std::shared_ptr<SkinDrawing> drawing, const SkinElement& element, QWidget* parent);
    void setOn(bool on);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void nextCheckState() override {} // the program alone switches it on and off

  private:
    QString stateId() const;

    std::shared_ptr<SkinDrawing> drawing_;
    QString id_;
    bool switching_ = false; ///< the program does it
};

} // namespace velmorant
