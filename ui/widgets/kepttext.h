#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <QVariant>

class QAbstractItemView;
class QLineEdit;
class QModelIndex;
class QWidget;

/**
 * A text that was typed in a cell and refused. The editor of that cell opens with it again, by itself as soon
 * as its view has the focus back from the box that says why. Belongs to a delegate, on the GUI thread.
 */
class KeptText : public QObject
{
    Q_OBJECT

public:
    explicit KeptText(QObject *parent);

    /** The role that tells the rows of a model apart, also after it was filled anew. */
    void setIdRole(int role) { m_idRole = role; }
    /** After a commit: the text is kept when the cell has still the value of before. */
    void note(const QLineEdit &editor, const QModelIndex &index, const QVariant &before);
    void forget();
    /** Whether this text was typed in this cell, which nobody has changed since. */
    bool isOf(const QModelIndex &index) const;
    const QString &text() const { return m_text; }

private:
    void followFocus(const QWidget *now);
    void reopen();

    int m_idRole = Qt::UserRole + 1;
    QVariant m_id;
    int m_column = -1;
    QVariant m_before;
    QString m_text;
    QPointer<QAbstractItemView> m_view; ///< as long as the editor is to open by itself
};
