#include "desktop/windows/QtBandContainer.h"

#include "common/StepError.h"
#include "common/textRules.h"

namespace velmorant {

QtBandContainer::QtBandContainer(QWidget& container, const Screen& screen)
    : m_container(container), m_screen(screen) {}

void QtBandContainer::setArea(const std::string& name, const QRect& area, Edge edge) {
    Band& place = m_bands[lowerCase(name)];
    place.area = area;
    place.edge = edge;
}

void QtBandContainer::addWindow(const std::string& name, QWidget& widget) {
    m_windows[lowerCase(name)] = &widget;
}

QtBandContainer::Band& QtBandContainer::band(const std::string& name) {
    const auto found = m_bands.find(lowerCase(name));
    if (found == m_bands.end())
        throw StepError("There is no band \"" + name + "\"");
    return found->second;
}

void QtBandContainer::setHeight(const std::string& name, int twips) {
    band(name).height = twips / m_screen.twipsPerPixelY();
}

void QtBandContainer::setChild(const std::string& name, const std::string& window) {
    Band& place = band(name);
    const auto found = m_windows.find(lowerCase(window));
    if (found == m_windows.end() || !found->second)
        throw StepError("There is no window \"" + window + "\" for the band \"" + name + "\"");
    place.child = found->second;
    if (place.child->parentWidget() != &m_container)
        place.child->setParent(&m_container);
    layOut(place); // a container that is never told to lay itself out shows its band all the same
    place.child->show();
}

void QtBandContainer::recalculateLayout() {
    for (auto& [name, band] : m_bands)
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
