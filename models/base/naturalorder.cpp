#include "models/base/naturalorder.h"

#include <QByteArray>

namespace {

bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

char upper(char c)
{
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

/** A run of digits without its leading zeros, so that a number of any length compares by length and digits.
 */
QByteArray takeNumber(const QByteArray &text, int &at)
{
    while (at < text.size() && text.at(at) == '0')
        ++at;
    const int start = at;
    while (at < text.size() && isDigit(text.at(at)))
        ++at;
    return text.mid(start, at - start);
}

int compareNumbers(const QByteArray &left, const QByteArray &right)
{
    return left.size() != right.size() ? left.size() - right.size() : qstrcmp(left, right);
}

} // namespace

bool naturalLessThan(const QString &left, const QString &right)
{
    const QByteArray a = left.toUtf8();
    const QByteArray b = right.toUtf8();
    int i = 0;
    int j = 0;
    while (i < a.size() && j < b.size()) {
        const bool leftDigit = isDigit(a.at(i));
        const bool rightDigit = isDigit(b.at(j));
        // Numbers stand before everything else.
        if (leftDigit != rightDigit)
            return leftDigit;
        if (leftDigit) {
            const int order = compareNumbers(takeNumber(a, i), takeNumber(b, j));
            if (order != 0)
                return order < 0;
            continue;
        }
        const auto leftChar = static_cast<uchar>(upper(a.at(i++)));
        const auto rightChar = static_cast<uchar>(upper(b.at(j++)));
        if (leftChar != rightChar)
            return leftChar < rightChar;
    }
    return i >= a.size() && j < b.size();
}
