#pragma once

#include <QFont>

namespace quarry::viewer {

// A font for printed Chinese whose text a PDF gives back as it was written.
// The PDF's text layer is made from each glyph's character, found through
// the font's own character map and taken as the first character that maps
// to the glyph; a font that draws 日 (U+65E5) and the Kangxi radical ⽇
// (U+2F47) with one glyph, as Noto Sans CJK does, makes every 日 read back
// as ⽇, and a search for "日期" finds nothing. This is the first Chinese
// font of the system that gives no radical a glyph of an ideograph (the
// desktop's own when it is such a font); the desktop's when there is none.
QFont searchableFont(int pointSize);

} // namespace quarry::viewer
