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

SkinView::SkinView(QWidget* parent) : QWidget(parent), drawing_(std::make_shared<SkinDrawing>()) {
    // A click beside the elements takes the focus from where it was, such as the list.
    setFocusPolicy(Qt::ClickFocus);
}

bool SkinView::load(const std::string& path) {
    auto drawing = std::make_shared<SkinDrawing>();
    if (!drawing->load(QString::fromStdString(path)))
        return false;
    drawing_ = std::move(drawing);
    path_ = QString::fromStdString(path);
    reported_.clear();
    setFixedSize(drawing_->size());
    setAccessibleName(drawing_->title());
    buildElements();
    for (const std::string& element : expected_)
        known(element);
    update();
    emit loaded();
    return true;
}

void SkinView::buildElements() {
    for (const auto& [key, widget] : widgets_) {
        widget->hide();
        // The element may be the one whose click leads here.
        widget->deleteLater();
    }
    widgets_.clear();
    if (digits_)
        digits_->deleteLater();
    digits_.clear();
    for (const SkinElement& element : drawing_->elements()) {
        QWidget* widget = buildElement(element);
        widget->setObjectName(element.id);
        widgets_[element.id.toLower()] = widget;
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
        auto* slider = new SkinSlider(drawing_, element, this);
        if (const auto options = sliderOptions_.find(element.id.toLower());
            options != sliderOptions_.end())
            slider->setOptions(options->second);
        connect(slider, &SkinSlider::changed, this, [this, id](double value) {
            states_[keyOf(id)].value = value;
            slider_(id, value);
        });
        connect(slider, &SkinSlider::previewed, this,
                [this, id](double value) { preview_.latest(id, value); });
        return slider;
    }
    case SkinElementKind::Button:
        break;
    }
    const SkinOn meaning = ready_.contains(keyOf(id)) ? SkinOn::Ready : SkinOn::Chosen;
    auto* button = new SkinButton(drawing_, element, meaning, this);
    connect(button, &SkinButton::clicked, this, [this, id] {
        emit clicked(id);
        click_(id);
    });
    return button;
}

QWidget* SkinView::buildDigit(const SkinElement& element) {
    if (!digits_) {
        digits_ = new SkinDigits(*drawing_, this);
        digits_->show();
        digits_->lower();
    }
    return new SkinDigit(drawing_, element, *digits_);
}

void SkinView::nameElement(const SkinElement& element, QWidget& widget) const {
    if (element.kind == SkinElementKind::Text || element.kind == SkinElementKind::Digit)
        return;
    const std::string name = name_ ? name_(stdId(element)) : std::string();
    const std::string toolTip = toolTip_ ? toolTip_(stdId(element)) : std::string();
    const QString title = name.empty() ? element.title : QString::fromStdString(name);
    widget.setAccessibleName(title.isEmpty() ? element.id : title);
    widget.setToolTip(toolTip.empty() ? shownToolTip(title) : shownToolTip(toolTip));
}

void SkinView::orderTabs() {
    std::vector<const SkinElement*> elements;
    for (const SkinElement& element : drawing_->elements())
        if (element.kind == SkinElementKind::Button || element.kind == SkinElementKind::Slider)
            elements.push_back(&element);
    sortForReading(elements);
    for (std::size_t i = 1; i < elements.size(); ++i)
        setTabOrder(widgets_.at(elements[i - 1]->id.toLower()),
                    widgets_.at(elements[i]->id.toLower()));
}

void SkinView::applyState(const SkinElement& element) {
    const State& state = states_[element.id.toLower()];
    QWidget* widget = widgets_.at(element.id.toLower());
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
    const SkinElement* found = drawing_->find(key);
    if (!found && !path_.isEmpty() && !std::exchange(reported_[key], true))
        std::cerr << path_.toStdString() << ": the skin has no element \"" << element << "\"\n";
    return found;
}

template <typename Change>
void SkinView::change(const std::string& element, Change change) {
    const SkinElement* found = known(element);
    if (!found)
        return;
    change(states_[keyOf(element)]);
    applyState(*found);
}

void SkinView::setOn(const std::string& element, bool on) {
    change(element, [on](State& state) { state.on = on; });
}

bool SkinView::isOn(const std::string& element) const {
    const auto state = states_.find(keyOf(element));
    return state != states_.end() && state->second.on;
}

void SkinView::setEnabled(const std::string& element, bool enabled) {
    change(element, [enabled](State& state) { state.enabled = enabled; });
}

void SkinView::setValue(const std::string& element, double value) {
    change(element, [value](State& state) { state.value = value; });
}

double SkinView::value(const std::string& element) const {
    const auto state = states_.find(keyOf(element));
    return state == states_.end() ? 0.0 : state->second.value;
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
        const QPixmap sample = drawing_->has(id) ? drawing_->picture(id, {3, 3}, 1.0) : QPixmap();
        const QColor colour =
            sample.isNull() ? QColor(Qt::transparent) : sample.toImage().pixelColor(1, 1);
        if (colour.alpha() == 255)
            return colour.red() + 256 * colour.green() + 65536 * colour.blue();
    }
    return 0;
}

void SkinView::setElementTexts(ElementText name, ElementText toolTip) {
    name_ = std::move(name);
    toolTip_ = std::move(toolTip);
    for (const SkinElement& element : drawing_->elements())
        nameElement(element, *widgets_.at(element.id.toLower()));
}

void SkinView::setSliderOptions(const std::string& element, const SliderOptions& options) {
    sliderOptions_[keyOf(element)] = options;
    if (auto* slider = qobject_cast<SkinSlider*>(elementWidget(element)))
        slider->setOptions(options);
}

void SkinView::setReadyElements(const std::vector<std::string>& elements) {
    for (const std::string& element : elements)
        ready_.insert(keyOf(element));
}

void SkinView::setExpectedElements(std::vector<std::string> elements) {
    expected_ = std::move(elements);
}

void SkinView::onClick(GatedListener<std::string> listener) {
    click_ = std::move(listener);
}

void SkinView::onSlider(GatedListener<std::string, double> listener) {
    slider_ = std::move(listener);
}

void SkinView::onSliderPreview(GatedListener<std::string, double> listener) {
    preview_ = std::move(listener);
}

QRect SkinView::placeRect(const std::string& id) const {
    return drawing_->bounds(QString::fromStdString(id)).toAlignedRect();
}

QPixmap SkinView::picture(const std::string& id, const QSize& size) const {
    const QString name = QString::fromStdString(id);
    return drawing_->has(name) ? drawing_->picture(name, size, devicePixelRatioF()) : QPixmap();
}

QWidget* SkinView::elementWidget(const std::string& element) const {
    const auto found = widgets_.find(keyOf(element));
    return found == widgets_.end() ? nullptr : found->second;
}

void SkinView::paintEvent(QPaintEvent*) {
    if (drawing_->size().isEmpty())
        return;
    QPainter(this).drawPixmap(0, 0, drawing_->background(devicePixelRatioF()));
}

} // namespace velmorant
