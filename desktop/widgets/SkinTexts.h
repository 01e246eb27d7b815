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

/// The display items of a skin, announced to screen readers as one number with the title of the
/// strip `datum`.
class SkinDigits : public QWidget {
    Q_OBJECT
  public:
    /// Covers all of them.
    SkinDigits(const SkinDrawing& drawing, QWidget* parent);
    /// Of the digits from left to right.
    int number() const;

  private:
    friend class SkinDigit;
    void digitChanged();

    bool m_telling = false; ///< the digits of a number are set one by one
};

/// One digit of the strip `datum`.
class SkinDigit : public QWidget {
  public:
    SkinDigit(std::shared_ptr<SkinDrawing> drawing, const SkinElement& element, SkinDigits& digits);
    void setDigit(int digit);
    int digit() const { return m_digit; }

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    std::shared_ptr<SkinDrawing> m_drawing;
    SkinDigits& m_digits;
    int m_digit = 0;
};

} // namespace velmorant
