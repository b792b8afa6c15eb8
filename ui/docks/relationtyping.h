#pragma once

#include <QObject>
#include <QPointer>

class NamesLine;
class QAction;
class QMenu;
class RelationsController;
class TRview;
struct ChosenTags;

/**
 * Tag relationships by the keyboard: tags are named in a line over their trees. Makes the commands; the dock
 * of the trees owns it and gives the line its place. GUI thread.
 */
class RelationTyping : public QObject
{
    Q_OBJECT

public:
    RelationTyping(TRview *view, QObject *parent);

    /** Borrowed; null, before it goes, closes the line. */
    void setController(RelationsController *controller);
    NamesLine *line() const { return m_line; }
    void addTo(QMenu &menu) const;

signals:
    /** The line is about to open: its tree has to be seen. */
    void opening();

private:
    QAction *addAction(const QString &text, const char *objectName, const QString &key);
    void openFor(bool isBelow);
    bool take(const ChosenTags &tags);
    void updateAvailability();

    TRview *m_view;
    NamesLine *m_line;
    QAction *m_add;
    QAction *m_addBelow;
    QPointer<RelationsController> m_controller;
    QString m_parentPath;
};
