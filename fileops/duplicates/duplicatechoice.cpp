#include "fileops/duplicates/duplicatechoice.h"

#include <QRegularExpression>

namespace {

// Points against keeping a file of its group; the fewest win.
constexpr int copyPenalty = 10;
constexpr int numberedPenalty = 8;
constexpr int digitsPenalty = 5;
constexpr int fewestLettersPenalty = 1;

QString nameOf(const QString &path)
{
    return path.mid(path.lastIndexOf(QLatin1Char('/')) + 1);
}

bool isAsciiDigit(QChar character)
{
    return character >= QLatin1Char('0') && character <= QLatin1Char('9');
}

int letterCount(const QString &name)
{
    int count = 0;
    for (const QChar character : name) {
        const QChar lower = character.toLower();
        count += lower >= QLatin1Char('a') && lower <= QLatin1Char('z') ? 1 : 0;
    }
    return count;
}

int digitCount(const QString &name)
{
    int count = 0;
    for (const QChar character : name)
        count += isAsciiDigit(character) ? 1 : 0;
    return count;
}

/** The names that file managers give to copies: "report - 2.doc". */
bool isNumbered(const QString &name)
{
    static const QRegularExpression pattern(QStringLiteral("\\- \\d"));
    return pattern.match(name).hasMatch();
}

int fewestLettersIndex(const QStringList &group)
{
    int best = 0;
    int fewest = letterCount(nameOf(group.first()));
    for (int i = 1; i < group.size() && fewest > 0; ++i) {
        const int count = letterCount(nameOf(group.at(i)));
        if (count < fewest) {
            fewest = count;
            best = i;
        }
    }
    return best;
}

int penalty(const QString &name, bool hasFewestLetters)
{
    int score = hasFewestLetters ? fewestLettersPenalty : 0;
    if (name.contains(QLatin1String("copy"), Qt::CaseInsensitive))
        score += copyPenalty;
    if (isNumbered(name))
        score += numberedPenalty;
    if (digitCount(name) > name.size() / 2)
        score += digitsPenalty;
    return score;
}

} // namespace

QString chooseFileToKeep(const QStringList &group)
{
    if (group.isEmpty())
        return {};
    const int fewestLetters = fewestLettersIndex(group);
    int best = 0;
    int lowest = 0;
    for (int i = 0; i < group.size(); ++i) {
        const int score = penalty(nameOf(group.at(i)), i == fewestLetters);
        if (i == 0 || score < lowest) {
            lowest = score;
            best = i;
        }
    }
    return group.at(best);
}
