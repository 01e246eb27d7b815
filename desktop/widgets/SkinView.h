#pragma once

#include "desktop/gate/GatedListener.h"
#include "desktop/widgets/SkinDrawing.h"
#include "desktop/widgets/SkinSlider.h"
#include "ports/Skin.h"
#include <QPointer>
#include <QWidget>
#include <functional>
#include <map>
#include <memory>
#include <set>
#include <vector>

namespace velmorant {

class SkinDigits;

/// A skin as a widget: the drawing as its ground, a child widget for each element, in reading order
/// for the Tab key. What is set for an element stays when another drawing is loaded.
///
/// An element that the drawing lacks is named once on the error output.
class SkinView : public QWidget, public Skin {
    Q_OBJECT
  public:
    using ElementText = std::function<std::string(const std::string& element)>;

    explicit SkinView(QWidget* parent = nullptr);

    bool load(const std::string& path) override;
    void setOn(const std::string& element, bool on) override;
    bool isOn(const std::string& element) const override;
    void setEnabled(const std::string& element, bool enabled) override;
    void setValue(const std::string& element, double value) override;
    double value(const std::string& element) const override;
    void setDigit(const std::string& element, int digit) override;
    void refresh(const std::string& element) override;
    /// Of the place of the list, else of `ground`, else black.
    std::int32_t backColour() const override;
    void setText(const std::string& element, const std::string& text) override;
    using QWidget::setEnabled;

    /// Name for screen readers and tool tip of an element; where it yields none, the drawing's
    /// <title> is used. Called on load.
    void setElementTexts(ElementText name, ElementText toolTip);
    void setSliderOptions(const std::string& element, const SliderOptions& options);
    /// Buttons whose state `on` says that they are ready, from the next load on; of all others it
    /// says that they are chosen.
    void setReadyElements(const std::vector<std::string>& elements);
    /// Elements that the window relies on: load() reports those that are missing.
    void setExpectedElements(std::vector<std::string> elements);

    /// Listeners get the id as the drawing writes it.
    void onClick(GatedListener<std::string> listener);
    void onSlider(GatedListener<std::string, double> listener);
    /// While the user drags a slider with SliderDrag::AtRelease; where it stands now.
    void onSliderPreview(GatedListener<std::string, double> listener);

    /// A place, or any other id, in pixels of this widget; empty when the drawing lacks it.
    QRect placeRect(const std::string& id) const;
    /// Something drawn (a mark, a sign) as a picture of its own; null when the drawing lacks it.
    QPixmap picture(const std::string& id, const QSize& size) const;
    /// The widget of an element; null for none.
    QWidget* elementWidget(const std::string& element) const;

  signals:
    void loaded(); ///< another drawing is shown
    /// For the window that holds the skin and serves some of its elements itself.
    void clicked(const std::string& element);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    struct State {
        bool on = false;
        bool enabled = true;
        double value = 0;
        int digit = 0;
        QString text;
    };

    void buildElements();
    QWidget* buildDigit(const SkinElement& element);
    QWidget* buildElement(const SkinElement& element);
    void applyState(const SkinElement& element);
    void nameElement(const SkinElement& element, QWidget& widget) const;
    void orderTabs();
    /// Null, after reporting it, when the drawing lacks it.
    const SkinElement* known(const std::string& element) const;
    template <typename Change>
    void change(const std::string& element, Change change);

    std::shared_ptr<SkinDrawing> m_drawing;
    QString m_path;
    QPointer<SkinDigits> m_digits;
    std::map<QString, QWidget*> m_widgets; ///< by lower-case id; owned by this widget
    std::map<QString, State> m_states;     ///< by lower-case id
    std::map<QString, SliderOptions> m_sliderOptions;
    std::vector<std::string> m_expected;
    std::set<QString> m_ready; ///< lower-case ids
    mutable std::map<QString, bool> m_reported;
    ElementText m_name;
    ElementText m_toolTip;
    GatedListener<std::string> m_click;
    GatedListener<std::string, double> m_slider;
    GatedListener<std::string, double> m_preview;
};

} // namespace velmorant
