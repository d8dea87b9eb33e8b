#pragma once

#include "host/support/test_registers.h"
#include "host/tag/typed_item.h"
#include "host/value/value_type.h"

#include <QtTest>

namespace cnet {

/** A type that is right. */
inline ValueType testType(const char *text)
{
    QString error;
    const auto type = parseValueType(QString::fromLatin1(text), error);
    if (!type) {
        qFatal("%s", qPrintable(error));
    }
    return *type;
}

/** The tag of an item that is right, "D_W:0*4@i16*0.1". */
inline Tag testTag(const char *text)
{
    QString error;
    const auto tag = parseTypedItem(QString::fromLatin1(text), 1, testCatalog(), error);
    if (!tag) {
        qFatal("%s", qPrintable(error));
    }
    return *tag;
}

/** A row for each type, in every order of its words and characters; the row's name is its text. */
inline void addTypeRows()
{
    QTest::addColumn<int>("unused");
    for (const char *text : {"raw",
                             "bool",
                             "u16",
                             "i16",
                             "u32",
                             "u32 high-first",
                             "i32",
                             "i32 high-first",
                             "u64",
                             "u64 high-first",
                             "i64",
                             "i64 high-first",
                             "f32",
                             "f32 high-first",
                             "f64",
                             "f64 high-first",
                             "bcd4",
                             "bcd8",
                             "bcd8 high-first",
                             "bit0",
                             "bit7",
                             "bit15",
                             "string1",
                             "string7",
                             "string8 swapped",
                             "string5 spaces",
                             "string6 swapped spaces",
                             "enum"}) {
        QTest::newRow(text) << 0;
    }
}

} // namespace cnet
