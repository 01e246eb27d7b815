#include "tools/check_skin/SkinKind.h"

#include "common/Language.h"
#include "common/SpeedUnit.h"

#include <array>

namespace velmorant {
namespace {

using Rules = std::vector<ElementRule>;

Rules all(ElementType type, const QString& names) {
    Rules rules;
    for (QString name : names.split(' ')) {
        const bool optional = name.endsWith('?');
        name.remove('?');
        rules.push_back({name, type, optional ? Need::Optional : Need::Required});
    }
    return rules;
}

Rules joined(std::initializer_list<Rules> parts) {
    Rules rules;
    for (const Rules& part : parts)
        rules.insert(rules.end(), part.begin(), part.end());
    return rules;
}

/// The buttons of the settings dialog: one per language and per speed unit.
Rules choices() {
    Rules rules;
    for (const Language& language : languages)
        rules.push_back(
            {"lang" + QString::number(language.code()), ElementType::Toggle, Need::Required});
    for (const SpeedUnit& unit : speedUnits)
        rules.push_back({"unit" + QString::number(unit.code), ElementType::Toggle, Need::Required});
    return rules;
}

// A name that ends in "?" is optional. The order is that of SkinKind.
std::vector<SkinRules> makeRules() {
    return {
        {"main", 1024, 708,
         joined({all(ElementType::Button, "open delete setup info minimise close"),
                 all(ElementType::Place, "place.picture place.band place.map place.list place.drag "
                                         "place.recording? place.moment? place.utc? "
                                         "place.longitude? place.latitude? place.notice?"),
                 all(ElementType::Picture, "ground")})},
        {"control", 656, 209,
         joined({all(ElementType::Button, "stop head end saveframe?"),
                 all(ElementType::Toggle, "speaker cmdplay pause back fast speed gs photo"),
                 all(ElementType::Slider, "playprogress playspeed volume"),
                 all(ElementType::Place, "a1 a2 a3 place.chart place.unit place.digits? "
                                         "place.elapsed? place.duration?"),
                 all(ElementType::Picture, "ground datum")})},
        {"list", 338, 320,
         joined({all(ElementType::Button, "all normal lock none"),
                 all(ElementType::Place, "place.list place.count? place.status? place.progress?"),
                 all(ElementType::Picture, "ground mark1 mark2 playing?")})},
        {"pane", 338, 248,
         joined({all(ElementType::Place, "place.map place.bar"),
                 all(ElementType::Picture, "ground")})},
        {"bar", 338, 32,
         joined({all(ElementType::Toggle, "mylist"), all(ElementType::Place, "place.status?"),
                 all(ElementType::Picture, "ground")})},
        {"setup", 800, 480,
         joined({choices(), all(ElementType::Button, "cmdclose cancel?"),
                 all(ElementType::Place, "place.drag?"), all(ElementType::Picture, "ground")})},
        {"playback", 656, 369, all(ElementType::Picture, "ground")},
        {"splash", 1024, 708, all(ElementType::Picture, "ground")},
        {"about", 600, 400,
         joined(
             {all(ElementType::Button, "close webstation"),
              all(ElementType::Place, "place.version place.licence place.components place.drag?"),
              all(ElementType::Picture, "ground")})},
    };
}

const std::vector<SkinRules>& allRules() {
    static const std::vector<SkinRules> rules = makeRules();
    return rules;
}

} // namespace

std::optional<SkinKind> skinKindOf(const QString& word) {
    for (std::size_t i = 0; i < allRules().size(); ++i)
        if (allRules()[i].kind == word)
            return static_cast<SkinKind>(i);
    return std::nullopt;
}

QStringList skinKindWords() {
    QStringList words;
    for (const SkinRules& rules : allRules())
        words << rules.kind;
    return words;
}

const SkinRules& rulesOf(SkinKind kind) {
    return allRules()[static_cast<std::size_t>(kind)];
}

QStringList statesOf(ElementType type) {
    switch (type) {
    case ElementType::Button:
        return {"normal", "hover", "pressed", "focus", "disabled"};
    case ElementType::Toggle:
    case ElementType::Slider:
        return {"normal", "hover", "pressed", "focus", "on", "disabled"};
    case ElementType::Place:
    case ElementType::Picture:
        break;
    }
    return {};
}

} // namespace velmorant
