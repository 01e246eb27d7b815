#pragma once

#include "desktop/widgets/SkinDrawing.h"
#include <QAbstractButton>
#include <memory>

namespace velmorant {

/// What the state `on` of a button means.
enum class SkinOn {
    Chosen, ///< it can be switched off again, as a check box can
    Ready   ///< the command can be used; it is a plain button all the same
};

/// A button of a skin. It takes the focus by the Tab key alone: a click leaves the keys to the
/// window, where space plays and pauses.
class SkinButton : public QAbstractButton {
    Q_OBJECT
  public:
    SkinButton(std::shared_ptr<SkinDrawing> drawing, const SkinElement& element, SkinOn meaning,
               QWidget* parent);
    void setOn(bool on);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void nextCheckState() override {} // the program alone switches it on and off

  private:
    QString stateId() const;

    std::shared_ptr<SkinDrawing> m_drawing;
    QString m_id;
    bool m_on = false;
    bool m_switching = false; ///< the program does it
};

} // namespace velmorant
