#pragma once

#include "core/records/datatype.h"

#include <QString>
#include <QVariant>

class ContentsModel;
class File;

/** All that the columns of ContentsModel differ in: one row of a table in their order. */
struct ContentsColumn
{
    /** What an editor in the column changes. */
    enum Edited { Nothing, FileName, FileDescription };

    int column; ///< of ContentsModel::Column
    DataType type;
    const char *header; ///< to be translated
    Edited edited;
    /** What is shown, uncut; dates and numbers as such. */
    QVariant (*shown)(const ContentsModel &contents, const File &file);
    /** What rows are sorted by: one of the two, the other is null. */
    qint64 (*sortNumber)(const File &file);
    QString (*sortText)(const ContentsModel &contents, const File &file);

    /** Of a column that the model has. */
    static const ContentsColumn &of(int column);
};
