#pragma once

#include <QtTest/QtTest>

#include "support/text.h"

/// Tables of cases: an array of structs, each of which begins with the name of its row, `what`. A
/// test `t` has them as its rows with
///     void t_data() { addRows(kTable); }
/// and reads the one it runs for with
///     const auto &row = currentRow(kTable);

template <typename Row, int rowCount>
void addRows(const Row (&rows)[rowCount])
{
    QTest::addColumn<int>("row");
    for (int i = 0; i < rowCount; ++i) {
        QTest::newRow(rows[i].what) << i;
    }
}

template <typename Row, int rowCount>
const Row &currentRow(const Row (&rows)[rowCount])
{
    QFETCH(int, row);
    return rows[row];
}

/// A row of a table that has one column.
template <typename Type>
struct Given
{
    const char *what;
    Type given;
};

/// A row of a table that says what comes of something.
template <typename Type, typename Result>
struct Case
{
    const char *what;
    Type given;
    Result expected;
};
