#pragma once

#include <QList>
#include <QMetaType>
#include <QPair>
#include <QString>

/** File name and full path of each file that left the database for being a duplicate; the rows are gone. */
class DeletedFileRepresentations : public QList<QPair<QString, QString>>
{
public:
    using QList::QList;
};
Q_DECLARE_METATYPE(DeletedFileRepresentations)
