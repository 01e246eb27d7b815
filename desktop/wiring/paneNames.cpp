#include "desktop/wiring/paneNames.h"

#include "common/textRules.h"

#include <string>

namespace velmorant {

namespace {

QString nameOf(const Texts& texts, const std::string& what) {
    return QString::fromStdString(texts.addition("name." + what));
}

/// The elements of a skin that is the same in both languages.
void nameElements(SkinView& skin, const Texts& texts, const std::string& elements) {
    const auto name = [&texts, elements](const std::string& element) {
        const std::string known = lowerCase(element);
        return (" " + elements + " ").find(" " + known + " ") == std::string::npos
                   ? std::string()
                   : texts.addition("name." + known);
    };
    skin.setElementTexts(name, name);
}

/// A pane takes the title of its skin when that is loaded.
void nameAfterLoading(SkinView& skin, const Texts& texts, const std::string& name) {
    QObject::connect(&skin, &SkinView::loaded, &skin,
                     [&skin, &texts, name] { skin.setAccessibleName(nameOf(texts, name)); });
}

} // namespace

void namePanes(Panes& panes, const Texts& texts) {
    panes.picture.widget->setAccessibleName(nameOf(texts, "picture"));
    panes.control.chart.widget().setAccessibleName(nameOf(texts, "chart"));
    panes.list.view->setAccessibleName(nameOf(texts, "list"));
    panes.list.bar->setAccessibleName(nameOf(texts, "adding"));
    nameAfterLoading(*panes.map.skin, texts, "map");
    nameAfterLoading(*panes.map.bar, texts, "mapBar");
    // One skin serves both languages.
    QObject::connect(&panes.about.skin(), &SkinView::loaded, &panes.about,
                     [&panes, &texts] { panes.about.setWindowTitle(nameOf(texts, "about")); });
    nameElements(*panes.map.bar, texts, "mylist");
    nameElements(panes.about.skin(), texts, "close webstation");
}

void nameKeys(SkinView& controlBar) {
    for (const PlayerKeys::ElementKeys& keyed : PlayerKeys::elementKeys())
        if (QWidget* widget = controlBar.elementWidget(keyed.element))
            widget->setToolTip(widget->accessibleName() + " (" +
                               QString::fromStdString(keyed.keys) + ")");
}

} // namespace velmorant
