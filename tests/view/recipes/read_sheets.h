#pragma once

#include "view/connect/line.h"
#include "view/recipes/sheet/recipe_sheet.h"

#include <QtTest>

namespace cnet::view {

constexpr char kTwo[] = "register,address,count,value\n"
                        "# speed, pressure\n"
                        "D_W,200,2,300,0x00B4\n"
                        "D_W,210,2,,\n"
                        "D_W,220,1,-5\n";

/** Sheets with the registers and the limits of the driver. */
class ReadSheets
{
protected:
    void prepare()
    {
        const QString error = m_line.prepare();
        QVERIFY2(error.isEmpty(), qPrintable(error));
    }
    RecipeReading reading(int station = 1)
    {
        return {station, m_line.registers(), [this](const Item &item, QString &why) {
                    return m_line.driver().check(item, Access::Read, why);
                }};
    }
    RecipeSheet sheetOf(const QByteArray &content)
    {
        QVector<Finding> mistakes;
        auto sheet = RecipeSheet::read(content, reading(), mistakes);
        if (!sheet) {
            qFatal("%s", qPrintable(mistakes.first().placed()));
        }
        return *sheet;
    }

private:
    Line m_line;
};

} // namespace cnet::view
