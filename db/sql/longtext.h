#pragma once

#include <QString>

/**
 * Texts of a database may be as long as a file may be. What is kept of one in memory has a bound. A text that
 * was cut is never written back.
 */
namespace LongText {
constexpr int mostCharacters = 1 << 20;

/** What is kept of a text that was read: all of it, or its beginning with a mark that it goes on. */
inline QString kept(const QString &text)
{
    return text.size() <= mostCharacters ? text : text.left(mostCharacters) + QStringLiteral("…");
}
/** True for a text that kept() has cut, and for one that would be. */
inline bool isTooLong(const QString &text)
{
    return text.size() > mostCharacters;
}
} // namespace LongText
