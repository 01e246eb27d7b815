#include "desktop/widgets/SkinView.h"

#include "desktop/system/shownText.h"
#include "desktop/widgets/SkinButton.h"
#include "desktop/widgets/SkinTexts.h"
#include <QPainter>
#include <algorithm>
#include <iostream>
#include <utility>

namespace velmorant {
namespace {

QString keyOf(const std::string& element) {
    return QString::fromStdString(element).toLower();
}

std::string stdId(const SkinElement& element) {
    return element.id.toStdString();
}

/// Rows from the top, each from the left.
void sortForReading(std::vector<const SkinElement*>& elements) {
    const auto middle = [](const SkinElement* element) { return element->bounds.center().y(); };
    std::sort(elements.begin(), elements.end(),
              [&](const auto* left, const auto* right) { return middle(left) < middle(right); });
    for (auto first = elements.begin(); first != elements.end();) {
        const double rowEnd = (*first)->bounds.bottom();
        const auto end = std::find_if(first, elements.end(), [&](const SkinElement* element) {
            return middle(element) >= rowEnd;
        });
        std::sort(first, end, [](const auto* left, const auto* right) {
            return left->bounds.left() < right->bounds.left();
        });
        first = end;
    }
}

} // namespace

SkinView::SkinView(QWidget* parent) : QWidget(parent), m_drawing(std::make_shared<SkinDrawing>()) {
    // A click beside the elements takes the focus from where it was, such as the list.
    setFocusPolicy(Qt::ClickFocus);
}

bool SkinView::load(const std::string& path) {
    auto drawing = std::make_shared<SkinDrawing>();
    if (!drawing->load(QString::fromStdString(path)))
        return false;
    m_drawing = std::move(drawing);
    m_path = QString::fromStdString(path);
    m_reported.clear();
    setFixedSize(m_drawing->size());
    setAccessibleName(m_drawing->title());
    buildElements();
    for (const std::string& element : m_expected)
        known(element);
    update();
    emit loaded();
    return true;
}

void SkinView::buildElements() {
    for (const auto& [key, widget] : m_widgets) {
        widget->hide();
        // The element may be the one whose click leads here.
        widget->deleteLater();
    }
    m_widgets.clear();
    if (m_digits)
        m_digits->deleteLater();
    m_digits.clear();
    for (const SkinElement& element : m_drawing->elements()) {
        QWidget* widget = buildElement(element);
        widget->setObjectName(element.id);
        m_widgets[element.id.toLower()] = widget;
        nameElement(element, *widget);
        applyState(element);
        widget->show();
        widget->lower();
    }
    orderTabs();
}

QWidget* SkinView::buildElement(const SkinElement& element) {
    const std::string id = stdId(element);
    switch (element.kind) {
    case SkinElementKind::Text:
        return new SkinLabel(element, this);
    case SkinElementKind::Digit:
        return buildDigit(element);
    case SkinElementKind::Slider: {
        auto* slider = new SkinSlider(m_drawing, element, this);
        if (const auto options = m_sliderOptions.find(element.id.toLower());
            options != m_sliderOptions.end())
            slider->setOptions(options->second);
        connect(slider, &SkinSlider::changed, this, [this, id](double value) {
            m_states[keyOf(id)].value = value;
            m_slider(id, value);
        });
        connect(slider, &SkinSlider::previewed, this,
                [this, id](double value) { m_preview.latest(id, value); });
        return slider;
    }
    case SkinElementKind::Button:
        break;
    }
    const SkinOn meaning = m_ready.contains(keyOf(id)) ? SkinOn::Ready : SkinOn::Chosen;
    auto* button = new SkinButton(m_drawing, element, meaning, this);
    connect(button, &SkinButton::clicked, this, [this, id] {
        emit clicked(id);
        m_click(id);
    });
    return button;
}

QWidget* SkinView::buildDigit(const SkinElement& element) {
    if (!m_digits) {
        m_digits = new SkinDigits(*m_drawing, this);
        m_digits->show();
        m_digits->lower();
    }
    return new SkinDigit(m_drawing, element, *m_digits);
}

void SkinView::nameElement(const SkinElement& element, QWidget& widget) const {
    if (element.kind == SkinElementKind::Text || element.kind == SkinElementKind::Digit)
        return;
    const std::string name = m_name ? m_name(stdId(element)) : std::string();
    const std::string toolTip = m_toolTip ? m_toolTip(stdId(element)) : std::string();
    const QString title = name.empty() ? element.title : QString::fromStdString(name);
    widget.setAccessibleName(title.isEmpty() ? element.id : title);
    widget.setToolTip(toolTip.empty() ? shownToolTip(title) : shownToolTip(toolTip));
}

void SkinView::orderTabs() {
    std::vector<const SkinElement*> elements;
    for (const SkinElement& element : m_drawing->elements())
        if (element.kind == SkinElementKind::Button || element.kind == SkinElementKind::Slider)
            elements.push_back(&element);
    sortForReading(elements);
    for (std::size_t i = 1; i < elements.size(); ++i)
        setTabOrder(m_widgets.at(elements[i - 1]->id.toLower()),
                    m_widgets.at(elements[i]->id.toLower()));
}

void SkinView::applyState(const SkinElement& element) {
    const State& state = m_states[element.id.toLower()];
    QWidget* widget = m_widgets.at(element.id.toLower());
    widget->setEnabled(state.enabled);
    switch (element.kind) {
    case SkinElementKind::Button:
        static_cast<SkinButton*>(widget)->setOn(state.on);
        break;
    case SkinElementKind::Slider:
        static_cast<SkinSlider*>(widget)->setOn(state.on);
        static_cast<SkinSlider*>(widget)->setValue(state.value);
        break;
    case SkinElementKind::Digit:
        static_cast<SkinDigit*>(widget)->setDigit(state.digit);
        break;
    case SkinElementKind::Text:
        static_cast<SkinLabel*>(widget)->setText(state.text);
        break;
    }
}

const SkinElement* SkinView::known(const std::string& element) const {
    const QString key = keyOf(element);
    const SkinElement* found = m_drawing->find(key);
    if (!found && !m_path.isEmpty() && !std::exchange(m_reported[key], true))
        std::cerr << m_path.toStdString() << ": the skin has no element \"" << element << "\"\n";
    return found;
}

template <typename Change>
void SkinView::change(const std::string& element, Change change) {
    const SkinElement* found = known(element);
    if (!found)
        return;
    change(m_states[keyOf(element)]);
    applyState(*found);
}

void SkinView::setOn(const std::string& element, bool on) {
    change(element, [on](State& state) { state.on = on; });
}

bool SkinView::isOn(const std::string& element) const {
    const auto state = m_states.find(keyOf(element));
    return state != m_states.end() && state->second.on;
}

void SkinView::setEnabled(const std::string& element, bool enabled) {
    change(element, [enabled](State& state) { state.enabled = enabled; });
}

void SkinView::setValue(const std::string& element, double value) {
    change(element, [value](State& state) { state.value = value; });
}

double SkinView::value(const std::string& element) const {
    const auto state = m_states.find(keyOf(element));
    return state == m_states.end() ? 0.0 : state->second.value;
}

void SkinView::setDigit(const std::string& element, int digit) {
    change(element, [digit](State& state) { state.digit = std::clamp(digit, 0, 9); });
}

void SkinView::refresh(const std::string& element) {
    if (QWidget* widget = elementWidget(element))
        widget->update();
}

void SkinView::setText(const std::string& element, const std::string& text) {
    change(element, [&text](State& state) { state.text = shownText(text); });
}

std::int32_t SkinView::backColour() const {
    for (const char* id : {"place.list", "ground"}) {
        const QPixmap sample = m_drawing->has(id) ? m_drawing->picture(id, {3, 3}, 1.0) : QPixmap();
        const QColor colour =
            sample.isNull() ? QColor(Qt::transparent) : sample.toImage().pixelColor(1, 1);
        if (colour.alpha() == 255)
            return colour.red() + 256 * colour.green() + 65536 * colour.blue();
    }
    return 0;
}

void SkinView::setElementTexts(ElementText name, ElementText toolTip) {
    m_name = std::move(name);
    m_toolTip = std::move(toolTip);
    for (const SkinElement& element : m_drawing->elements())
        nameElement(element, *m_widgets.at(element.id.toLower()));
}

void SkinView::setSliderOptions(const std::string& element, const SliderOptions& options) {
    m_sliderOptions[keyOf(element)] = options;
    if (auto* slider = qobject_cast<SkinSlider*>(elementWidget(element)))
        slider->setOptions(options);
}

void SkinView::setReadyElements(const std::vector<std::string>& elements) {
    for (const std::string& element : elements)
        m_ready.insert(keyOf(element));
}

void SkinView::setExpectedElements(std::vector<std::string> elements) {
    m_expected = std::move(elements);
}

void SkinView::onClick(GatedListener<std::string> listener) {
    m_click = std::move(listener);
}

void SkinView::onSlider(GatedListener<std::string, double> listener) {
    m_slider = std::move(listener);
}

void SkinView::onSliderPreview(GatedListener<std::string, double> listener) {
    m_preview = std::move(listener);
}

QRect SkinView::placeRect(const std::string& id) const {
    return m_drawing->bounds(QString::fromStdString(id)).toAlignedRect();
}

QPixmap SkinView::picture(const std::string& id, const QSize& size) const {
    const QString name = QString::fromStdString(id);
    return m_drawing->has(name) ? m_drawing->picture(name, size, devicePixelRatioF()) : QPixmap();
}

QWidget* SkinView::elementWidget(const std::string& element) const {
    const auto found = m_widgets.find(keyOf(element));
    return found == m_widgets.end() ? nullptr : found->second;
}

void SkinView::paintEvent(QPaintEvent*) {
    if (m_drawing->size().isEmpty())
        return;
    QPainter(this).drawPixmap(0, 0, m_drawing->background(devicePixelRatioF()));
}

} // namespace velmorant
