// Text entities and the boxes they take.
#include "drawing/model/AcDbText.h"

#include <algorithm>
#include <cmath>

namespace {

bool isWide(char16_t ch) {
    return (ch >= 0x1100 && ch <= 0x115F) || (ch >= 0x2E80 && ch <= 0xA4CF) || (ch >= 0xAC00 && ch <= 0xD7A3) ||
           (ch >= 0xF900 && ch <= 0xFAFF) || (ch >= 0xFE30 && ch <= 0xFE4F) || (ch >= 0xFF00 && ch <= 0xFF60) ||
           (ch >= 0xFFE0 && ch <= 0xFFE6);
}

// Width of a line of text, in text heights.
double widthInHeights(std::u16string_view line) {
    double width = 0.0;
    for (const char16_t ch : line) width += isWide(ch) ? 1.0 : 2.0 / 3.0;
    return width;
}

// Adds the box of `width` by `height` whose lower left corner lies `left` and `bottom` away from `base`
// in the frame turned by `rotation`.
void addBox(const AcGeMatrix3d& toWorld, const AcGePoint3d& base, double rotation, double left, double bottom,
            double width, double height, AcDbExtents& extents) {
    extents.addPoint(toWorld.transform(base));
    if (!(width > 0.0 && height > 0.0) || !std::isfinite(width) || !std::isfinite(height) || !std::isfinite(rotation))
        return;
    const AcGeVector3d along{std::cos(rotation), std::sin(rotation), 0.0};
    const AcGeVector3d up{-std::sin(rotation), std::cos(rotation), 0.0};
    for (const double x : {left, left + width})
        for (const double y : {bottom, bottom + height}) extents.addPoint(toWorld.transform(base + x * along + y * up));
}

} // namespace

void AcDbText::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    addBox(toWorld, m_position, m_rotation, 0.0, 0.0, widthInHeights(m_text.view()) * m_height, m_height, extents);
}

void AcDbAttributeDefinition::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    extents.addPoint(toWorld.transform(position()));
}

void AcDbMText::addExtents(const AcGeMatrix3d& toWorld, ExtentsWalk&, AcDbExtents& extents) const {
    const std::u16string_view text = m_contents.view();
    double longest = 0.0;
    int lines = 1;
    for (size_t begin = 0;;) {
        const size_t end = text.find(u"\\P", begin);
        longest = std::max(longest, widthInHeights(text.substr(begin, end == std::u16string_view::npos ? text.npos : end - begin)));
        if (end == std::u16string_view::npos) break;
        ++lines;
        begin = end + 2;
    }
    const double width = m_width > 0.0 ? m_width : longest * m_height;
    const double height = m_height * (1.0 + (lines - 1) * 5.0 / 3.0);
    const int row = (m_attachment - 1) / 3;
    const int column = (m_attachment - 1) % 3;
    addBox(toWorld, m_location, m_rotation, -column * width / 2.0, -height + row * height / 2.0, width, height, extents);
}
