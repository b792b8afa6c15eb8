#pragma once

#include "models/counts/filecount.h"

#include <QObject>
#include <QPointer>

class FileFilterModel;

/**
 * How many files each tag has, and how many of the shown ones: what a selection asks of the tags counts, and
 * not what is searched for in names. Both numbers fall out of what the index and the filter of the files
 * know, so that they cost nothing at a click. GUI thread.
 */
class TagCounts : public QObject
{
    Q_OBJECT

public:
    using QObject::QObject;

    /** The filter is borrowed. */
    void setFiles(const FileFilterModel *files);
    /** Off, there are none. */
    void setOn(bool on);
    /** While all is read anew nothing is known. */
    void setReading(bool isReading);
    /** Unknown, too, while changes are still on their way to the files that are shown. */
    FileCount of(qint64 tagId) const;

signals:
    /** Any of them may be another one. */
    void changed();

private:
    QPointer<const FileFilterModel> m_files;
    bool m_isOn = true;
    bool m_isReading = false;
};
