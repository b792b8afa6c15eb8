#pragma once

#include <QObject>
#include <QPointer>

class MainViewController;
class MainUi;
class QLineEdit;

/**
 * The search field over the files: searches by Return, and ends the search when the field is emptied, is out
 * of sight, or gives way to another requirement. Field and controller are borrowed. Owned by the view of the
 * files.
 */
class FileSearch : public QObject
{
    Q_OBJECT

public:
    explicit FileSearch(QObject *parent) : QObject(parent) {}

    void takeField(MainUi &ui);
    /** The field starts empty. */
    void setController(MainViewController *controller);
    bool isSearched() const;
    /** The requirements are others now: unless a search made them so, it is over. */
    void giveWay();
    /** Ends the search with a field that is not shown any more, as it would go on where nobody sees it. */
    void setFieldShown(bool isShown);

public slots:
    void search();

signals:
    void searched();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QLineEdit> m_field;
    QPointer<MainViewController> m_controller;
    bool m_isSearching = false;
};
