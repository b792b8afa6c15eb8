#pragma once

#include <QDialog>
#include <QHash>
#include <QString>
#include <QVector>

class MainViewController;
class QListWidget;
class QListWidgetItem;
class QVBoxLayout;

/**
 * What the two dialogs that link tags to files have in common: a list of boxes, a tag each, of which only
 * those that the user has changed have an effect. The controller is borrowed; modal use.
 */
class FileTagsDialog : public QDialog
{
    Q_OBJECT

public slots:
    void accept() override;

protected:
    /** How a tag that only some of the files have is shown. */
    enum PartialState { PartialIsUnticked, PartialIsTristate };

    FileTagsDialog(MainViewController *controller, const QVector<qint64> &fileIds, PartialState partial,
                   QWidget *parent);

    /** Makes the contents, with a box for each of the tags and a title above the list, if any. Once. */
    void build(const QVector<qint64> &tagIds, const QString &listTitle = QString());
    /** How many of the files have each tag. */
    const QHash<qint64, int> &counts() const { return m_counts; }
    MainViewController *controller() const { return m_controller; }

private:
    void countTags();
    QString headingText(int tagCount) const;
    void addHeading(QVBoxLayout &layout, int tagCount);
    void fillList(const QVector<qint64> &tagIds);
    Qt::CheckState stateOf(int count) const;
    QVector<qint64> tagsChangedTo(Qt::CheckState state) const;

    MainViewController *m_controller;
    QVector<qint64> m_fileIds;
    PartialState m_partial;
    QHash<qint64, int> m_counts;
    QListWidget *m_list;
};
