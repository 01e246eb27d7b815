#include "tools/check_skin/SkinCheck.h"

#include <QFont>
#include <QGlyphRun>
#include <QRawFont>
#include <QTextLayout>

#include <algorithm>
#include <array>
#include <cmath>

namespace velmorant {
namespace {

constexpr int contrastScale = 4; // large enough that strokes have pixels of their full colour
constexpr double edge = 1.0;     // antialiased pixels at a border

QRect inkOf(const QImage& image) {
    QRect ink;
    for (int y = 0; y < image.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        int left = -1;
        int right = -1;
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(line[x]) <= 40)
                continue;
            left = left < 0 ? x : left;
            right = x;
        }
        if (left >= 0)
            ink |= QRect(QPoint(left, y), QPoint(right, y));
    }
    return ink;
}

QString named(const QString& id) {
    return id.isEmpty() ? QStringLiteral("the ground") : QStringLiteral("\"%1\"").arg(id);
}

QString describe(const SkinLabel& label) {
    return label.type == SkinLabel::Type::Text
               ? QStringLiteral("text \"%1\" of %2").arg(label.text, named(label.owner))
               : QStringLiteral("the sign of %1").arg(named(label.owner));
}

class Check {
  public:
    Check(const DissectedSkin& drawing, const SkinRules& rules)
        : m_drawing(drawing), m_rules(rules) {}

    QStringList run() {
        checkFile();
        for (const ElementRule& rule : m_rules.elements)
            checkElement(rule);
        for (const SkinLabel& label : m_drawing.labels()) {
            if (label.type == SkinLabel::Type::Text)
                checkText(label);
            checkContrast(label);
        }
        return m_findings;
    }

  private:
    void report(const QString& finding) { m_findings << finding; }

    void checkFile() {
        m_findings << m_drawing.faults();
        const QSize size(m_rules.width, m_rules.height);
        if (m_drawing.size() != size)
            report(QStringLiteral("is %1 x %2; the window is %3 x %4")
                       .arg(m_drawing.size().width())
                       .arg(m_drawing.size().height())
                       .arg(size.width())
                       .arg(size.height()));
        QStringList ids = m_drawing.ids();
        ids.sort();
        for (qsizetype i = 1; i < ids.size(); ++i)
            if (ids[i] == ids[i - 1])
                report(QStringLiteral("the id \"%1\" stands twice").arg(ids[i]));
    }

    void checkElement(const ElementRule& rule) {
        const bool slider = rule.type == ElementType::Slider;
        const QString first = slider ? rule.name + ".track" : rule.name;
        if (!m_drawing.has(first)) {
            if (rule.need == Need::Required)
                report(QStringLiteral("element \"%1\" is missing").arg(first));
            return;
        }
        checkBox(rule.name);
        if (rule.type == ElementType::Place)
            return;
        checkPaints(first);
        if (rule.type == ElementType::Picture)
            return;
        if (!m_drawing.titled(rule.name))
            report(
                QStringLiteral("element \"%1\" has no <title>: a screen reader has no name for it")
                    .arg(rule.name));
        if (slider)
            for (const QString& part : {rule.name + ".fill", rule.name + ".thumb"})
                checkPart(part);
        const QString stateful = slider ? rule.name + ".thumb" : rule.name;
        for (const QString& state : statesOf(rule.type))
            checkState(stateful, stateful + "." + state);
        if (m_drawing.has(stateful + ".on.focus")) // may be left out
            checkState(stateful, stateful + ".on.focus");
    }

    void checkBox(const QString& id) {
        const QRectF window({0, 0}, QSizeF(m_drawing.size()));
        const QRectF box = m_drawing.faceBounds(id);
        if (m_drawing.has(id) &&
            (box.isEmpty() || !window.adjusted(-edge, -edge, edge, edge).contains(box)))
            report(QStringLiteral("\"%1\" has no area inside the window").arg(id));
    }

    void checkPart(const QString& id) {
        if (!m_drawing.has(id))
            report(QStringLiteral("element \"%1\" is missing").arg(id));
        else
            checkPaints(id);
    }

    void checkState(const QString& element, const QString& state) {
        if (!m_drawing.has(state)) {
            report(QStringLiteral("state \"%1\" is missing").arg(state));
            return;
        }
        checkPaints(state);
        const QRectF box = m_drawing.faceBounds(element);
        const QRectF own = m_drawing.faceBounds(state);
        const double off =
            std::max({std::abs(box.left() - own.left()), std::abs(box.top() - own.top()),
                      std::abs(box.right() - own.right()), std::abs(box.bottom() - own.bottom())});
        if (off > edge)
            report(
                QStringLiteral("\"%1\" has another place or size than \"%2\"").arg(state, element));
    }

    void checkPaints(const QString& id) {
        if (inkOf(m_drawing.alone(id, m_drawing.bounds(id), 1)).isEmpty())
            report(QStringLiteral("\"%1\" paints nothing").arg(id));
    }

    // Where the text's strokes really are, in window pixels.
    QRectF strokesOf(const SkinLabel& label) const {
        const QRectF area = reachOf();
        const QRectF ink = inkOf(m_drawing.alone(label.id, area, 1));
        return ink.translated(area.topLeft());
    }

    // Texts may leave the window on any side: look a good way around it.
    QRectF reachOf() const {
        return QRectF({0, 0}, QSizeF(m_drawing.size())).adjusted(-300, -50, 300, 50);
    }

    void checkText(const SkinLabel& label) {
        checkGlyphs(label);
        const QRectF strokes = strokesOf(label);
        if (strokes.isEmpty()) {
            report(QStringLiteral("%1 is not drawn").arg(describe(label)));
            return;
        }
        if (const QString element = elementAround(label.owner); !element.isEmpty()) {
            const QRectF box = m_drawing.faceBounds(element).adjusted(-edge, -edge, edge, edge);
            if (!box.contains(strokes))
                report(QStringLiteral("%1 is cut off: it needs %2 pixels, its box has %3")
                           .arg(describe(label))
                           .arg(strokes.width())
                           .arg(box.width() - 2 * edge));
            return;
        }
        if (!QRectF({0, 0}, QSizeF(m_drawing.size())).contains(strokes))
            report(QStringLiteral("%1 is cut off by the window").arg(describe(label)));
        for (const ElementRule& rule : m_rules.elements)
            checkApart(label, strokes, rule);
    }

    // Widgets and buttons paint over the ground: a text that runs under one is cut off there.
    void checkApart(const SkinLabel& label, const QRectF& strokes, const ElementRule& rule) {
        if (!m_drawing.has(rule.name) || rule.type == ElementType::Picture)
            return;
        const QRectF box = m_drawing.faceBounds(rule.name);
        if (box.intersects(strokes.adjusted(edge, edge, -edge, -edge)) && !box.contains(strokes))
            report(QStringLiteral("%1 is cut off: it runs under \"%2\"")
                       .arg(describe(label), rule.name));
    }

    void checkGlyphs(const SkinLabel& label) {
        QTextLayout layout(label.text.simplified(), QFont(label.family));
        layout.beginLayout();
        layout.createLine();
        layout.endLayout();
        for (const QGlyphRun& run : layout.glyphRuns())
            if (run.glyphIndexes().contains(0)) {
                report(QStringLiteral("%1 has a character that no font here can show")
                           .arg(describe(label)));
                return;
            }
    }

    // The rule's element that an id such as "open.hover" is a state of; empty for the ground.
    QString elementAround(const QString& id) const {
        for (const ElementRule& rule : m_rules.elements)
            if (!statesOf(rule.type).isEmpty() &&
                (id == rule.name || id.startsWith(rule.name + ".")))
                return id;
        return {};
    }

    // The colour of each fully covered pixel against what lies under it. The lowest tenth decides
    // for a text, the middle for a sign, whose thin parts may lie on another colour.
    void checkContrast(const SkinLabel& label) {
        const QString owner = elementAround(label.owner);
        const bool text = label.type == SkinLabel::Type::Text;
        if (!text && owner.isEmpty())
            return;
        const QRectF area = owner.isEmpty() ? strokesOf(label) : m_drawing.faceBounds(owner);
        if (area.isEmpty())
            return;
        std::vector<double> ratios = ratiosOf(m_drawing.alone(label.id, area, contrastScale),
                                              m_drawing.ground(area, owner, contrastScale));
        if (ratios.empty())
            return;
        std::sort(ratios.begin(), ratios.end());
        const double ratio = ratios[text ? ratios.size() / 10 : ratios.size() / 2];
        const double least = text ? leastTextContrast : leastSignContrast;
        if (ratio < least)
            report(QStringLiteral("%1 has a contrast of %2:1, less than %3:1")
                       .arg(describe(label))
                       .arg(ratio, 0, 'f', 2)
                       .arg(least));
    }

    static std::vector<double> ratiosOf(const QImage& ink, const QImage& ground) {
        int most = 0;
        for (int y = 0; y < ink.height(); ++y)
            for (int x = 0; x < ink.width(); ++x)
                most = std::max(most, qAlpha(ink.pixel(x, y)));
        std::vector<double> ratios;
        for (int y = 0; y < ink.height() && most > 0; ++y)
            for (int x = 0; x < ink.width(); ++x) {
                const QColor over = ink.pixelColor(x, y);
                if (over.alpha() < most - most / 20)
                    continue;
                const QRgb under = ground.pixel(x, y);
                ratios.push_back(contrastOf(mixed(over, under), under));
            }
        return ratios;
    }

    static QRgb mixed(const QColor& over, QRgb under) {
        const double share = over.alphaF();
        const auto channel = [share](int top, int bottom) {
            return static_cast<int>(std::lround(top * share + bottom * (1 - share)));
        };
        return qRgb(channel(over.red(), qRed(under)), channel(over.green(), qGreen(under)),
                    channel(over.blue(), qBlue(under)));
    }

    const DissectedSkin& m_drawing;
    const SkinRules& m_rules;
    QStringList m_findings;
};

double luminanceOf(QRgb colour) {
    const auto linear = [](int value) {
        const double share = value / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(colour)) + 0.7152 * linear(qGreen(colour)) +
           0.0722 * linear(qBlue(colour));
}

} // namespace

double contrastOf(QRgb one, QRgb other) {
    const double a = luminanceOf(one) + 0.05;
    const double b = luminanceOf(other) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

QStringList checkSkin(const DissectedSkin& drawing, SkinKind kind) {
    return Check(drawing, rulesOf(kind)).run();
}

} // namespace velmorant
