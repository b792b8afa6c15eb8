#pragma once

#include "models/counts/filecount.h"
#include "ui/widgets/delegate.h"

/** Paints the names of a table with numbers of files at their right end. GUI thread. */
class CountDelegate : public Delegate
{
    Q_OBJECT

public:
    /** The column of the names, and the role of the model that has the FileCount. */
    CountDelegate(int nameColumn, int countRole, QObject *parent = nullptr);

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;

protected:
    /** Cuts the name where the number begins. */
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override;

private:
    FileCount countOf(const QModelIndex &index) const;

    int m_nameColumn;
    int m_countRole;
};
