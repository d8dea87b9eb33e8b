#pragma once

#include <initializer_list>

#include <QtCore/QStringList>
#include <QtTest/QtTest>

/// How a row gives the values of a column: texts and lists of them without their types.
template <typename Type>
struct InColumn
{
    typedef Type Value;
};

struct GivenText
{
    GivenText(const char *latin)
        : text(QString::fromLatin1(latin))
    {}
    GivenText(const QString &given)
        : text(given)
    {}
    operator QString() const { return text; }

    QString text;
};

struct GivenTexts
{
    GivenTexts(std::initializer_list<const char *> latin)
    {
        for (const char *text : latin) {
            texts.append(QString::fromLatin1(text));
        }
    }
    GivenTexts(const QStringList &given)
        : texts(given)
    {}
    operator QStringList() const { return texts; }

    QStringList texts;
};

template <>
struct InColumn<QString>
{
    typedef GivenText Value;
};

template <>
struct InColumn<QStringList>
{
    typedef GivenTexts Value;
};

/// The table of a test:
///
///     const Columns<QByteArray, int> row("name", "address");
///     row("the first word", "D_W", 0);
///
/// It serves the tests of whole exchanges, many of whose rows hold lists. The tests of single files
/// have plain values in arrays of structs: see support/rows.h.
template <typename... Types>
class Columns
{
public:
    template <typename... Names>
    explicit Columns(Names... names)
    {
        const int added[] = {(QTest::addColumn<Types>(names), 0)...};
        (void)added;
    }

    void operator()(const char *name, const typename InColumn<Types>::Value &...values) const
    {
        QTestData &row = QTest::newRow(name);
        const int added[] = {(row << static_cast<Types>(values), 0)...};
        (void)added;
    }
};
