#pragma once

#include "fileops/presentableduplicates.h"

#include <QCoreApplication>
#include <QString>

#include <functional>

/** The words about files that duplicate management left out because their content is there already. */
class ContentMatchReport
{
    Q_DECLARE_TR_FUNCTIONS(ContentMatchReport)

public:
    /** What the database knows of a file; a matched file may be gone by the time of the report. */
    struct KnownFile
    {
        QString tagNames;
        bool isHyperlink = false;
    };
    using Lookup = std::function<KnownFile(const DuplicateFileInfo &)>;

    explicit ContentMatchReport(const Lookup &lookup) : m_lookup(lookup) {}

    QString text(const PresentableDuplicates &duplicates) const;

private:
    QString matchText(const DuplicateMatch &match) const;
    QString groupText(const ExternalDuplicateGroup &group) const;
    static QString addedFileText(const DuplicateFileInfo &file);
    QString databaseFileText(const DuplicateFileInfo &file, const KnownFile &known) const;

    Lookup m_lookup;
};
