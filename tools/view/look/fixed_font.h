#pragma once

#include <QFont>
#include <QFontDatabase>
#include <QFontInfo>

namespace cnet::view {

/** The desktop's font whose letters are equally wide, as large as another. */
inline QFont fixedFont(const QFont &like)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    font.setPointSizeF(QFontInfo(like).pointSizeF());
    return font;
}

} // namespace cnet::view
