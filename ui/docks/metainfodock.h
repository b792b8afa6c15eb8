#pragma once

#include "ui/docks/abstractdock.h"
#include "ui/views/selectedfiles.h"

#include <QPointer>

#include <functional>

class File;
class MainViewController;
class QGridLayout;
class QLabel;

/**
 * Tells name, tags and a few facts of the file that is selected in the main view, or what several ones have
 * in common. GUI thread.
 */
class MetaInfoDock : public AbstractDock
{
    Q_OBJECT

public:
    explicit MetaInfoDock(QWidget *parent = nullptr);

    /** Borrowed; null empties the dock. */
    void setController(MainViewController *controller);
    /** Asked when a file is selected, whether there are more. */
    void setSharedFacts(const std::function<SharedFacts()> &facts) { m_sharedFacts = facts; }

public slots:
    /** Zero, a negative id or that of a file that is gone empties the dock. */
    void selectFile(qlonglong fileId);

private:
    QLabel *addFact(QGridLayout *form, const QString &title, const char *objectName);
    void setFact(QLabel *label, const QString &text);
    void showFile(const File &file);
    void showShared(const SharedFacts &facts);
    void setName(const QString &name);
    QString tagNames(const QVector<qint64> &tagIds) const;
    void clear();
    void refresh();

    QPointer<MainViewController> m_controller;
    std::function<SharedFacts()> m_sharedFacts;
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
