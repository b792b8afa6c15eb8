#pragma once

#include <QDialog>
#include <QPointer>
#include <QVector>

class QLabel;
class QListWidget;
class TagsController;

/**
 * Asks which of several tags is to stay when they become one, tells what that comes to, and does it. Stays
 * open when it was refused. The controller is borrowed.
 */
class MergeTagsDialog : public QDialog
{
    Q_OBJECT

public:
    MergeTagsDialog(TagsController *controller, const QVector<qint64> &tagIds, QWidget *parent = nullptr);

    void accept() override;

private:
    void fillTags();
    void buildLayout();
    void tell();
    qint64 target() const;
    QVector<qint64> others() const;

    QPointer<TagsController> m_controller;
    QVector<qint64> m_tagIds;
    QListWidget *m_tags;
    QLabel *m_outcome;
};
