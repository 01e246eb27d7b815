#pragma once

#include <QByteArray>
#include <QDomDocument>
#include <QHash>
#include <QImage>
#include <QRectF>
#include <QString>
#include <QStringList>
#include <QSvgRenderer>

#include <memory>
#include <vector>

namespace velmorant {

/// A text or a sign (a part of the skin whose id begins with "i-" or "lit-") of a drawing.
struct SkinLabel {
    enum class Type { Text, Sign };
    Type type;
    QString id;     ///< an id of its own in the drawing as taken apart
    QString owner;  ///< the innermost element or state around it; empty: it belongs to the ground
    QString text;   ///< of a text
    QString family; ///< of a text
};

/// One skin, read and taken apart: every reference replaced by what it refers to, so that each text
/// can be drawn alone, and a second drawing without texts and signs, so that faces can be seen
/// without what stands on them.
class DissectedSkin {
  public:
    /// Reads the file. Check problem() before anything else.
    explicit DissectedSkin(const QString& path);

    /// Why the file cannot be used; empty when it can.
    const QString& problem() const { return m_problem; }
    /// References out of the file or in a circle, scripts and the like, one sentence each.
    const QStringList& faults() const { return m_faults; }
    /// The ids of the file, in lower case, as often as they stand there.
    const QStringList& ids() const { return m_ids; }
    const std::vector<SkinLabel>& labels() const { return m_labels; }

    QSize size() const { return m_whole->defaultSize(); }
    bool has(const QString& id) const { return m_exact.contains(id); }
    bool titled(const QString& id) const { return m_titled.contains(id); }
    /// Where the element stands in the window; its texts count, or do not.
    QRectF bounds(const QString& id) const;
    QRectF faceBounds(const QString& id) const;

    /// The window, `scale` times its size.
    QImage window(int scale) const;
    /// The part `area` of the window without texts and signs; over it the face of `id` unless
    /// empty.
    QImage ground(const QRectF& area, const QString& id, int scale) const;
    /// One element or label alone, on nothing.
    QImage alone(const QString& id, const QRectF& area, int scale) const;

  private:
    void takeApart(QDomDocument document);
    /// Replaces references; `around` holds the ids that the element stands in.
    void expand(QDomElement element, const QStringList& around);
    void collect(const QDomElement& element, const QString& owner, const QString& family,
                 bool hidden);
    void inspect(const QDomElement& element);

    QString m_problem;
    QStringList m_faults;
    int m_copied = 0;
    QStringList m_ids;
    QHash<QString, QString> m_exact; ///< lower-case id -> id as written
    QStringList m_titled;
    QHash<QString, QDomElement> m_byId;
    std::vector<SkinLabel> m_labels;
    // Drawing is no const call of the renderer, though it changes nothing that is seen here.
    std::unique_ptr<QSvgRenderer> m_whole; ///< as the program sees it
    std::unique_ptr<QSvgRenderer> m_parts; ///< taken apart
    std::unique_ptr<QSvgRenderer> m_faces; ///< taken apart, without texts and signs
};

} // namespace velmorant
