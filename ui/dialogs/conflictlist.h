#pragma once

#include "core/controllers/fileconflict.h"

#include <QMap>
#include <QScrollArea>
#include <QVector>

class QButtonGroup;

/**
 * A row for each conflict with its two choices. Rows are made when they come into sight and go when they are
 * a page away, as some thousands of them would take seconds.
 */
class ConflictList : public QScrollArea
{
    Q_OBJECT

public:
    explicit ConflictList(QWidget *parent = nullptr);

    /** Once. */
    void setConflicts(const QVector<FileConflict> &conflicts);
    void chooseForAll(int choice);
    /** Ids and choices in the order of the conflicts; Replace where the user has chosen nothing. */
    FileConflictChoices choices() const;

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    /** One a file; the ids of its buttons are the choices. Null for a row that is not made. */
    QButtonGroup *groupAt(int row) const { return m_groups.value(row); }
    void updateRows();
    void makeRow(int row);
    void linkRows();

    QVector<FileConflict> m_conflicts;
    QVector<int> m_choices;
    QMap<int, QButtonGroup *> m_groups; // children of the widgets of their rows
    int m_rowHeight = 0;
    int m_widest = 0; ///< what a row needs that was made so far
};
