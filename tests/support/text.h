#pragma once

#include <QtTest>

/** Makes a literal a QString: tests are full of texts, and what they do is read easier without more words. */
inline QString operator""_s(const char *literal, std::size_t size)
{
    return QString::fromUtf8(literal, int(size));
}

/** The columns of a test's table: addColumns<QString, int>("text", "count"). */
template <class... Types, class... Names>
void addColumns(Names... names)
{
    (QTest::addColumn<Types>(names), ...);
}

/** A row of a test's table. */
template <class... Values>
void addRow(const char *name, const Values &...values)
{
    (QTest::newRow(name) << ... << values);
}
