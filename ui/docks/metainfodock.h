#pragma once

#include "ui/docks/abstractdock.h"

#include <QPointer>

class File;
class MainViewController;
class QGridLayout;
class QLabel;

/** Tells name, tags and a few facts of the file that is selected in the main view. GUI thread. */
class MetaInfoDock : public AbstractDock
{
    Q_OBJECT

public:
    explicit MetaInfoDock(QWidget *parent = nullptr);

    /** Borrowed; null empties the dock. */
    void setController(MainViewController *controller);

public slots:
    /** Zero, a negative id or that of a file that is gone empties the dock. */
    void selectFile(qlonglong fileId);

private:
    QLabel *addFact(QGridLayout *form, const QString &title, const char *objectName);
    void setFact(QLabel *label, const QString &text);
    void showFile(const File &file);
    QString tagNames(const QVector<qint64> &tagIds) const;
    void clear();
    void refresh();

    QPointer<MainViewController> m_controller;
    qint64 m_fileId = 0;
    QLabel *m_name;
    QWidget *m_facts;
    QLabel *m_tags;
    QLabel *m_description;
    QLabel *m_kind;
    QLabel *m_size;
    QLabel *m_modified;
    QLabel *m_added;
    QLabel *m_idCode;
};
