#pragma once

#include <QString>

/**
 * Texts of a database may be as long as a file may be. What is kept of one in memory has a bound, and what is
 * painted of it a much smaller one. A text that was cut is never written back.
 */
namespace LongText {
constexpr int mostCharacters = 1 << 20;
constexpr int mostShown = 2000;

/** The text, or its beginning with a mark that it goes on. */
inline QString cut(const QString &text, int length)
{
    return text.size() <= length ? text : text.left(length) + QStringLiteral("…");
}
/** What is kept of a text that was read. */
inline QString kept(const QString &text)
{
    return cut(text, mostCharacters);
}
/** What is painted of it. */
inline QString shown(const QString &text)
{
    return cut(text, mostShown);
}
/** True for a text that kept() has cut, and for one that would be. */
inline bool isTooLong(const QString &text)
{
    return text.size() > mostCharacters;
}
} // namespace LongText
