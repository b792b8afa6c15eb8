#include "fileops/adding/firstnames.h"

#include <QStringList>

QString firstNames(const QStringList &names)
{
    constexpr int mostNamed = 10;
    constexpr int mostLetters = 200;
    QStringList lines;
    for (const QString &name : names.mid(0, mostNamed)) {
        QString line = name.size() > mostLetters ? QStringLiteral("...") + name.right(mostLetters) : name;
        // A line break in a name must not pass for the end of it.
        for (QChar &letter : line) {
            if (!letter.isPrint() && !letter.isSurrogate())
                letter = QChar::ReplacementCharacter;
        }
        lines.append(line);
    }
    if (names.size() > mostNamed)
        lines.append(QStringLiteral("..."));
    return lines.join(QLatin1Char('\n'));
}
