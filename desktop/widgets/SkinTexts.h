#pragma once

#include "desktop/widgets/SkinDrawing.h"
#include <QLabel>
#include <memory>

namespace velmorant {

/// A text place of a skin. A text that is too long ends in an ellipsis and shows whole as a tool
/// tip; a place of several lines wraps.
class SkinLabel : public QLabel {
  public:
    SkinLabel(const SkinElement& element, QWidget* parent);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

/// One digit of the strip `datum`.
class SkinDigit : public QLabel {
  public:
    SkinDigit(std::shared_ptr<SkinDrawing> drawing, const SkinElement& element, QWidget* parent);
    void setDigit(int digit);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::shared_ptr<SkinDrawing> drawing_;
    int digit_ = 0;
};

} // namespace velmorant
