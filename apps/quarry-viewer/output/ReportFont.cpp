#include "ReportFont.h"

#include <QFontDatabase>
#include <QGuiApplication>
#include <QRawFont>
#include <QSet>

namespace quarry::viewer {

namespace {

// The code points of a block, as text.
QString block(char32_t first, char32_t last)
{
    QString text;
    for (char32_t c = first; c <= last; ++c)
        text.append(QChar::fromUcs4(c));
    return text;
}

QSet<quint32> glyphs(const QRawFont &font, const QString &text)
{
    const QList<quint32> indexes = font.glyphIndexesForString(text);
    QSet<quint32> found(indexes.cbegin(), indexes.cend());
    found.remove(0); // no glyph
    return found;
}

// Whether the radicals (CJK Radicals Supplement, Kangxi Radicals), which
// come before the ideographs in the character map, share no glyph with an
// ideograph.
bool mapsBack(const QString &family)
{
    const QRawFont font = QRawFont::fromFont(QFont(family));
    if (!font.isValid())
        return false;
    static const QString radicals = block(0x2E80, 0x2FDF);
    static const QString ideographs = block(0x4E00, 0x9FFF);
    return !glyphs(font, radicals).intersects(glyphs(font, ideographs));
}

QString searchableFamily()
{
    QStringList families = QFontDatabase::families(QFontDatabase::SimplifiedChinese);
    families.prepend(QGuiApplication::font().family());
    for (const QString &family : std::as_const(families)) {
        if (QFontDatabase::writingSystems(family).contains(QFontDatabase::SimplifiedChinese)
            && mapsBack(family))
            return family;
    }
    return QGuiApplication::font().family();
}

} // namespace

QFont searchableFont(int pointSize)
{
    static const QString family = searchableFamily();
    QFont font(family);
    font.setPointSize(pointSize);
    return font;
}

} // namespace quarry::viewer
