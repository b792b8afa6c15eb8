#pragma once

#include "core/records/nodetype.h"

#include <QPointer>
#include <QVector>
#include <QWidget>

class MainViewController;
class QLabel;

/**
 * The bar above the main view: says in words which requirement gave the files below, and takes tags dropped
 * on it as a new requirement, or, with Ctrl held, beside the present one. The name of each tag opens a menu
 * on what else may be asked of it, and the cross behind it takes it off; both by keyboard, too. GUI thread.
 */
class TitleWidget : public QWidget
{
    Q_OBJECT

public:
    explicit TitleWidget(QWidget *parent = nullptr);

    /** Borrowed; null clears the bar. */
    void setController(MainViewController *controller);

public slots:
    void clear();
    void setRequirements(NodeType type, QVector<qint64> required, QVector<qint64> eitherOr,
                         QVector<qint64> excluded);

protected:
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void followLink(const QString &link);
    void execNameMenu(qint64 tagId, const QPoint &globalPos);
    QStringList linkedNames(const QVector<qint64> &tagIds) const;
    void showTexts(const QString &heading, const QString &text);
    QString requirementText() const;
    /** What of the files is looked for; empty without a search. */
    QString searchText() const;
    void refreshNames();

    QPointer<MainViewController> m_controller;
    QLabel *m_heading;
    QLabel *m_text;
    QString m_hoveredLink;
    // What the bar says, so that it can be said anew when a tag gets another name.
    NodeType m_type = NodeType(0);
    QVector<qint64> m_required;
    QVector<qint64> m_eitherOr;
    QVector<qint64> m_excluded;
};
