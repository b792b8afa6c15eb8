#pragma once

#include "tools/makedemo/democontents.h"

#include <QHash>
#include <QObject>
#include <QTemporaryDir>

#include <memory>

class Collection;

/**
 * Makes the demo database through the program's own layers: a collection is opened and its controllers do
 * what a person would do by hand. GUI thread; needs an application object.
 */
class DemoMaker : public QObject
{
    Q_OBJECT

public:
    /** Files that the database only links to go into a folder beside it. */
    DemoMaker(const QString &databasePath, const QString &externalFolder);
    ~DemoMaker() override;

    /** False, with a line on the error stream, when a step failed. */
    bool make();

private:
    bool openNew();
    bool addTags();
    bool addNodes();
    void addRelationships();
    bool addTexts(const QVector<DemoContents::TextFile> &texts, const QString &folder);
    bool addPictures();
    bool addHyperlinks();
    /** The linked files are found by their place beside the database alone. */
    bool forgetPlace();
    /** Adds one file or address and waits for the worker. */
    bool add(const QUrl &url, const QStringList &tags, const QString &description);
    QVector<qint64> ids(const QStringList &tags) const;

    QString m_databasePath;
    QString m_externalFolder;
    QTemporaryDir m_folder;
    std::unique_ptr<Collection> m_collection;
    QHash<QString, qint64> m_tagIds;
};
