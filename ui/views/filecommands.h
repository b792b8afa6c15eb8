#pragma once

#include "fileops/worker/deletedfilerepresentations.h"
#include "ui/views/selectedfiles.h"

#include <QObject>
#include <QPointer>

#include <functional>

class File;
class MainViewController;
class ModificationNotice;
class Previews;
class QUrl;
class QWidget;

/**
 * What the commands on files do with the selected ones: asks what has to be asked and calls the controller,
 * which is borrowed. Each does nothing without a database, and says so where it may not be edited. Owned by
 * the view of the files. GUI thread.
 */
class FileCommands : public QObject
{
    Q_OBJECT

public:
    /** The selection is asked for anew by each command; boxes stand above the view. */
    FileCommands(std::function<SelectedFiles()> selection, Previews *previews, QWidget *view);

    void setController(MainViewController *controller);
    /** The node that "Remove from node" is about, 0 for none. */
    qint64 nodeToRemoveFrom() const;

    /** Null opens nothing; the flag bypasses the program's own viewer. */
    void open(const File *file, bool forceExternal);
    void showInFileManager();
    void showProperties();
    void showRelated();

    void editTags();
    void editTagsByTree();
    void linkTags(const QVector<qint64> &tagIds);
    void removeFromNode();
    void deleteFiles();

    /** Of those that are shown. */
    void locateMissingFiles();
    /** Tells of records that followed their files, or went as these are copies now. */
    void notifyOfUpdatedFiles(const QVector<qint64> &ids, const DeletedFileRepresentations &deleted);

    void addFiles();
    void addHyperlinks();
    /** To the current node, if there is one. */
    void addUrls(const QList<QUrl> &urls);
    /** Asks for the folder. */
    void extract();
    void extractTo(const QString &folder, const QVector<qint64> &fileIds);
    void transferToInternal();
    void remakeThumbnails();

signals:
    void statusTextChanged(QString text);

private:
    static QString deletionQuestion(const SelectedFilesFacts &facts);
    void checkPresence(const File &file);
    void openPreview(const File &file);
    /** False while the database does not take it. */
    bool addHyperlink(const QString &text, const QString &description);

    const std::function<SelectedFiles()> m_selection;
    Previews *m_previews;
    QWidget *m_view;
    ModificationNotice *m_modificationNotice;
    QPointer<MainViewController> m_controller;
};
