#pragma once

#include "fileops/worker/presentableduplicates.h"

#include <QAbstractListModel>

#include <functional>

/**
 * The report about files that duplicate management left out because their content is there already, a row a
 * line. A line is made when it is asked for, so that a report about a million files costs four bytes for
 * each.
 */
class ContentMatchModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /** What the database knows of a file; a matched file may be gone by the time of the report. */
    struct KnownFile
    {
        QString tagNames;
        bool isHyperlink = false;
    };
    using Lookup = std::function<KnownFile(const DuplicateFileInfo &)>;

    ContentMatchModel(const PresentableDuplicates &duplicates, const Lookup &lookup,
                      QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    /** Long lines are cut. */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /** Nothing: typed letters look for nothing in a report, which may be long. */
    QModelIndexList match(const QModelIndex &start, int role, const QVariant &value, int hits = 1,
                          Qt::MatchFlags flags = Qt::MatchFlags(Qt::MatchStartsWith |
                                                                Qt::MatchWrap)) const override;

    /** A whole line. */
    QString line(int row) const;
    /** How many of the files are in the database already; the others equal one of their own batch. */
    int matchedCount() const { return m_matchedCount; }

private:
    void append(int lineCount);
    QString matchLine(const DuplicateMatch &match, int number) const;
    QString groupLine(const ExternalDuplicateGroup &group, int number) const;
    QString databaseHeading(const DuplicateMatch &match) const;

    PresentableDuplicates m_duplicates; ///< shared with whoever brought it
    Lookup m_lookup;
    QVector<int> m_firstRows; ///< of the matches and then of the groups, and of what comes behind them
    int m_matchedCount = 0;
    int m_leftOutCount = 0;
};
