#pragma once

#include "fileops/worker/importoptions.h"

#include <QCoreApplication>
#include <QStringList>

class ImportRun;

/** Brings tags and descriptions of the source to the files that it shares with the open database. */
class MetadataMerger
{
    Q_DECLARE_TR_FUNCTIONS(MetadataMerger)

public:
    explicit MetadataMerger(ImportRun &run) : m_run(run) {}

    /** Links the mapped tags to the added files, and to all files here that are in a group with the tags'. */
    void linkTags();
    void mergeDescriptions(ExchangeSettings::DescriptionMerge how);

private:
    void merge(qint64 group, const QStringList &descriptions, ExchangeSettings::DescriptionMerge how);
    static QString merged(const QString &description, const QStringList &others,
                          ExchangeSettings::DescriptionMerge how);

    ImportRun &m_run;
};
