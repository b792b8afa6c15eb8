#pragma once

#include "fileops/worker/presentableduplicates.h"

#include <QAbstractTableModel>
#include <QBitArray>
#include <QStringList>

/**
 * The files that share a name with others: below each name a row a file of the batch, with a box that says
 * whether it is added all the same, and a row a file of the database. Rows are made when they are asked for:
 * a million names cost eight bytes each.
 */
class NameMatchModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    enum Column : int { FileColumn, SizeColumn, DateColumn, ColumnCount };

    explicit NameMatchModel(const QVector<DuplicateMatch> &matches, QObject *parent = nullptr);

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    int columnCount(const QModelIndex &parent = QModelIndex()) const override;
    /** Long names are cut. */
    QVariant data(const QModelIndex &index, int role = Qt::DisplayRole) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role = Qt::EditRole) override;
    QVariant headerData(int section, Qt::Orientation orientation, int role = Qt::DisplayRole) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    /** Looks for the next name, as typed letters do. */
    QModelIndexList match(const QModelIndex &start, int role, const QVariant &value, int hits = 1,
                          Qt::MatchFlags flags = Qt::MatchFlags(Qt::MatchStartsWith |
                                                                Qt::MatchWrap)) const override;

    /** Whether a row has a name and the files below it, rather than a file. */
    bool isName(int row) const { return placeOf(row).number == 0; }
    /** How many files can be chosen. */
    int choiceCount() const { return m_isChosen.size(); }
    void chooseAll(bool isChosen);
    QStringList chosenPaths() const;

private:
    struct Place
    {
        int match;
        int number; ///< 0 for the name, then the files of the batch, then those of the database
    };
    Place placeOf(int row) const;
    /** Null for a name. */
    const DuplicateFileInfo *fileAt(const Place &place) const;
    /** The number of a file among all that can be chosen, -1 for one of the database. */
    int choiceAt(const Place &place) const;
    QStringRef nameOf(int match) const;
    QString text(const Place &place, int column) const;

    QVector<DuplicateMatch> m_matches; ///< shared with whoever brought them
    QVector<int> m_firstRows;
    QVector<int> m_firstChoices;
    QBitArray m_isChosen;
    int m_rowCount = 0;
};
