#pragma once

#include "ports/BandContainer.h"
#include "ports/Screen.h"
#include <QPointer>
#include <QRect>
#include <QWidget>
#include <map>

namespace velmorant {

/// The bands of one window: strips of it, each with the widget of another window in it.
class QtBandContainer : public BandContainer {
  public:
    /// The edge of the strip's area that the band keeps to when its height changes.
    enum class Edge { Top, Bottom };

    /// Container and screen must outlive this; `container` gets the bands' widgets as children.
    QtBandContainer(QWidget& container, const Screen& screen);
    /// Makes the band, or moves it. The strip's area is in pixels of the container: the band is as
    /// wide as it, and as high until setHeight() says otherwise.
    void setArea(const std::string& band, const QRect& area, Edge edge);
    /// Makes a widget known by the name that setChild() uses. Not owned until it is put in.
    void addWindow(const std::string& name, QWidget& widget);

    // Throw StepError for a band or a window that is missing.
    void setHeight(const std::string& band, int twips) override;
    void setChild(const std::string& band, const std::string& window) override;
    void recalculateLayout() override;

  private:
    struct Band {
        QRect area;
        Edge edge = Edge::Top;
        int height = 0; ///< pixels; 0: that of the area
        QPointer<QWidget> child;
    };

    Band& band(const std::string& name);
    static void layOut(Band& band);

    QWidget& m_container;
    const Screen& m_screen;
    std::map<std::string, Band> m_bands;                ///< by lower-case name
    std::map<std::string, QPointer<QWidget>> m_windows; ///< by lower-case name
};

} // namespace velmorant
