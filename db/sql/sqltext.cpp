#include "db/sql/sqltext.h"

namespace SqlText {
QString escaped(const QString &value)
{
    QString result = value;
    result.replace(QLatin1Char('\''), QLatin1String("''"));
    return result;
}

QString quoted(const QString &value)
{
    return QLatin1Char('\'') + escaped(value) + QLatin1Char('\'');
}

QString fill(const QString &templateText, const QStringList &values)
{
    // In one pass: arg() would fill places that stand in the values, too.
    const auto digitAt = [&templateText](int index) {
        const int digit = index < templateText.size() ? templateText.at(index).unicode() - '0' : -1;
        return digit >= 0 && digit <= 9 ? digit : -1;
    };
    QString result;
    result.reserve(templateText.size() + 32 * values.size());
    for (int i = 0; i < templateText.size(); ++i) {
        const int first = templateText.at(i) == QLatin1Char('%') ? digitAt(i + 1) : -1;
        const int second = first > 0 ? digitAt(i + 2) : -1;
        const int place = second >= 0 ? first * 10 + second : first;
        if (place > 0 && place <= values.size()) {
            result += values.at(place - 1);
            i += second >= 0 ? 2 : 1;
        } else {
            result += templateText.at(i);
        }
    }
    return result;
}

QString idList(const QVector<qint64> &ids)
{
    QString result;
    result.reserve(8 * ids.size());
    for (const qint64 id : ids) {
        if (!result.isEmpty())
            result += QLatin1Char(',');
        result += QString::number(id);
    }
    return result;
}

QStringList idTexts(const QVector<qint64> &ids)
{
    QStringList result;
    result.reserve(ids.size());
    for (const qint64 id : ids)
        result.append(QString::number(id));
    return result;
}
} // namespace SqlText
