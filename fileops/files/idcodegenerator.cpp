#include "fileops/files/idcodegenerator.h"

#include <QRandomGenerator>

QString IdCodeGenerator::generate() const
{
    static const QLatin1String letters("BCDFGHJKLMNPRSTVWXYZ");
    QRandomGenerator &random = *QRandomGenerator::global();
    QString code;
    code.reserve(7);
    for (int i = 0; i < 4; ++i)
        code.append(letters.at(static_cast<int>(random.bounded(letters.size()))));
    for (int i = 0; i < 3; ++i)
        code.append(QLatin1Char(static_cast<char>('2' + random.bounded(8))));
    return code;
}
