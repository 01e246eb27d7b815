#pragma once

#include <QString>
#include <QStringList>

namespace velmorant::test {

/// Writes a small skin of the kind "bar" (338 x 32, one toggle "mylist"): whole and good unless a
/// test spoils a part of it.
struct SkinBuilder {
    QStringList states{"normal", "hover", "pressed", "focus", "on", "disabled"};
    QString spoiltState = "hover"; ///< where `label` and the colours below apply
    QString label = "List";
    QString labelColour = "#EAF0F6";
    QString labelAttributes;
    QString face = "#1C2530";
    QString signColour;           ///< of a sign in the spoilt state; empty: no sign
    QString box = "width=\"80\""; ///< of the spoilt state's face
    QString title = "<title>List</title>";
    QString rootAttributes = "width=\"338\" height=\"32\" viewBox=\"0 0 338 32\"";
    QString extra; ///< more of the ground
    bool paintSpoiltState = true;

    QString state(const QString& name) const {
        const bool spoilt = name == spoiltState;
        if (spoilt && !paintSpoiltState)
            return QString("<g id=\"mylist.%1\"><rect x=\"250\" width=\"80\" height=\"32\" "
                           "fill=\"none\"/></g>")
                .arg(name);
        const QString sign = spoilt && !signColour.isEmpty()
                                 ? QString("<use xlink:href=\"#i-dot\" x=\"256\" y=\"8\" "
                                           "fill=\"%1\"/>")
                                       .arg(signColour)
                                 : QString();
        return QString("<g id=\"mylist.%1\"><rect x=\"250\" %2 height=\"32\" fill=\"%3\"/>%4"
                       "<text x=\"290\" y=\"21\" font-size=\"13\" text-anchor=\"middle\" "
                       "fill=\"%5\" %6>%7</text></g>")
            .arg(name, spoilt ? box : "width=\"80\"", spoilt ? face : "#1C2530", sign,
                 spoilt ? labelColour : "#EAF0F6", spoilt ? labelAttributes : "",
                 spoilt ? label : "List");
    }

    QString text() const {
        QString body;
        for (const QString& name : states)
            body += state(name);
        return QString("<svg xmlns=\"http://www.w3.org/2000/svg\" "
                       "xmlns:xlink=\"http://www.w3.org/1999/xlink\" %1 font-family=\"sans-serif\">"
                       "<defs><g id=\"i-dot\"><rect width=\"16\" height=\"16\"/></g>"
                       "<g id=\"states\">%2</g></defs>"
                       "<rect id=\"ground\" width=\"338\" height=\"32\" fill=\"#121821\"/>%3"
                       "<g id=\"mylist\">%4<use xlink:href=\"#mylist.normal\"/></g></svg>")
            .arg(rootAttributes, body, extra, title);
    }
};

} // namespace velmorant::test
