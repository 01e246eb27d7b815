#include "desktop/windows/QtBandContainer.h"

#include "common/StepError.h"
#include "common/textRules.h"

namespace velmorant {

QtBandContainer::QtBandContainer(QWidget& container, const Screen& screen)
    : container_(container), screen_(screen) {}

void QtBandContainer::setArea(const std::string& name, const QRect& area, Edge edge) {
    Band& place = bands_[lowerCase(name)];
    place.area = area;
    place.edge = edge;
}

void QtBandContainer::addWindow(const std::string& name, QWidget& widget) {
    windows_[lowerCase(name)] = &widget;
}

QtBandContainer::Band& QtBandContainer::band(const std::string& name) {
    const auto found = bands_.find(lowerCase(name));
    if (found == bands_.end())
        throw StepError("There is no band \"" + name + "\"");
    return found->second;
}

void QtBandContainer::setHeight(const std::string& name, int twips) {
    band(name).height = twips / screen_.twipsPerPixelY();
}

void QtBandContainer::setChild(const std::string& name, const std::string& window) {
    Band& place = band(name);
    const auto found = windows_.find(lowerCase(window));
    if (found == windows_.end() || !found->second)
        throw StepError("There is no window \"" + window + "\" for the band \"" + name + "\"");
    place.child = found->second;
    if (place.child->parentWidget() != &container_)
        place.child->setParent(&container_);
    layOut(place); // a container that is never told to lay itself out shows its band all the same
    place.child->show();
}

void QtBandContainer::recalculateLayout() {
    for (auto& [name, band] : bands_)
        layOut(band);
}

void QtBandContainer::layOut(Band& band) {
    if (!band.child)
        return;
    QRect place = band.area;
    const int height = band.height > 0 ? band.height : place.height();
    if (band.edge == Edge::Top)
        place.setHeight(height);
    else
        place.setTop(place.bottom() - height + 1);
    band.child->setGeometry(place);
    band.child->raise();
}

} // namespace velmorant
