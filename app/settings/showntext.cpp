#include "app/settings/showntext.h"

#include <QStringList>

namespace {

// Longer words than this get places to break at; longer tool tips get lines.
constexpr int longestWord = 60;
constexpr int longestLine = 400;
constexpr int mostLines = 100;
const QChar ellipsis(0x2026);
const QChar breakHere(0x200b); // a blank of no width

} // namespace

namespace ShownText {

QString cut(const QString &text, int longest)
{
    if (text.size() <= longest)
        return text;
    int head = longest / 2;
    int tail = text.size() - (longest - head - 1);
    // Half a pair of surrogates would be shown as a box.
    if (text.at(head - 1).isHighSurrogate())
        --head;
    if (tail < text.size() && text.at(tail).isLowSurrogate())
        ++tail;
    return text.left(head) + ellipsis + text.mid(tail);
}

QString cutLines(const QString &text, int longest)
{
    if (text.size() <= longest)
        return text;
    // Lines are cut one by one, as a short one between long ones is to be seen whole.
    QStringList lines;
    int from = 0;
    while (from <= text.size() && lines.size() < mostLines) {
        int to = text.indexOf(QLatin1Char('\n'), from);
        if (to < 0)
            to = text.size();
        lines.append(cut(text.mid(from, to - from), longest));
        from = to + 1;
    }
    if (from <= text.size())
        lines.append(QString(ellipsis));
    return lines.join(QLatin1Char('\n'));
}

QString breakable(const QString &text)
{
    QString result;
    int wordLength = 0;
    for (const QChar sign : text) {
        // Never between the halves of a sign, nor between a letter and its accents.
        wordLength = sign.isSpace() ? 0 : wordLength + 1;
        if (wordLength > longestWord && !sign.isLowSurrogate() && !sign.isMark()) {
            result.append(breakHere);
            wordLength = 1;
        }
        result.append(sign);
    }
    return result;
}

int forPlural(qint64 count)
{
    // Languages go by the last digits.
    constexpr qint64 round = 1000000;
    return int(count < round ? count : round + count % round);
}

QString toolTip(const QString &text)
{
    QString shown = cut(text);
    // Only a marked up text gets several lines.
    if (shown.size() <= longestLine && !shown.contains(QLatin1Char('<')))
        return shown;
    return QLatin1String("<qt>") + breakable(shown).toHtmlEscaped() + QLatin1String("</qt>");
}

} // namespace ShownText
