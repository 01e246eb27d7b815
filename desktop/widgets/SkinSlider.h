#pragma once

#include "desktop/widgets/SkinDrawing.h"
#include <QAccessibleWidget>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>
#include <utility>

namespace velmorant {

/// When a drag of a slider counts as a change.
enum class SliderDrag {
    Live,     ///< with every move
    AtRelease ///< when the button is let go; the moves are previews
};

struct SliderOptions {
    double step = 1;  ///< arrow keys and one notch of the wheel
    double page = 10; ///< page keys
    SliderDrag drag = SliderDrag::Live;
    /// How many seconds 100 stands for, 0 while nothing is open; screen readers then get times.
    std::function<double()> seconds = {};
};

/// A slider of a skin, 0..100. The program may set values beyond the ends; the user cannot.
class SkinSlider : public QWidget {
    Q_OBJECT
  public:
    SkinSlider(std::shared_ptr<SkinDrawing> drawing, const SkinElement& element, QWidget* parent);
    void setOptions(SliderOptions options) { m_options = std::move(options); }
    const SliderOptions& options() const { return m_options; }
    /// Raises no signal. While the user drags, the knob stays under the pointer; the value shows
    /// when it is let go.
    void setValue(double value);
    double value() const { return m_value; }
    void setOn(bool on);
    /// The value at a place of the widget, clamped.
    double valueAt(double x) const;
    /// A change by the user: clamps, shows and reports it.
    void changeByUser(double value);

  signals:
    void changed(double value);   ///< by the user
    void previewed(double value); ///< while the user drags, before the change

  protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void dragTo(double x);
    void endDrag(double value);
    double shownValue() const { return m_dragged.value_or(m_value); }
    double positionOf(double value) const;
    QString thumbId() const;

    std::shared_ptr<SkinDrawing> m_drawing;
    QString m_id;
    QPointF m_origin; ///< of the widget in the drawing
    QRectF m_range;   ///< in the drawing
    SliderOptions m_options;
    double m_value = 0;
    std::optional<double> m_dragged;
    bool m_on = false;
};

/// Names and reads a slider to screen readers: in seconds where it stands for a time, else in its
/// own 0..100.
class SkinSliderAccessible : public QAccessibleWidget, public QAccessibleValueInterface {
  public:
    explicit SkinSliderAccessible(SkinSlider* slider);
    /// Makes the toolkit use this class; may be called repeatedly.
    static void install();

    void* interface_cast(QAccessible::InterfaceType type) override;
    QString text(QAccessible::Text text) const override;
    QVariant currentValue() const override;
    void setCurrentValue(const QVariant& value) override;
    QVariant maximumValue() const override { return whole(); }
    QVariant minimumValue() const override { return 0.0; }
    QVariant minimumStepSize() const override { return 1.0; }

  private:
    SkinSlider& slider() const;
    double whole() const; ///< what 100 stands for
};

} // namespace velmorant
