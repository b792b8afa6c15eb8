#pragma once

#include <QCoreApplication>
#include <QMap>
#include <QString>
#include <QStringList>

/** What an export came to. */
struct ExportSummary
{
    Q_DECLARE_TR_FUNCTIONS(ExportSummary)

public:
    qint64 files = 0;
    qint64 tags = 0;
    qint64 nodes = 0;
    qint64 filesGone = 0;               ///< asked for, but not in the database any more
    QMap<QString, QStringList> skipped; ///< why files and other rows were left out, and which
    qint64 pathsLeftOut = 0;            ///< relationships that are deeper than any that somebody made
    qint64 fieldsWithQuotes = 0;        ///< of a CSV file, which has no sign for a quote within a field

    /** For the user: how much went over, and then what did not. */
    QString text(const QString &path, int form) const;
};
