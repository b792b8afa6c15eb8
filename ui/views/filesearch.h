#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>

class MainViewController;
class MainUi;
class QAction;
class QLineEdit;
class QToolBar;

/**
 * The search field over the files: searches by Return or when the typing rests, and ends the search when the
 * field is emptied, is out of sight, or gives way to another requirement. Field and controller are borrowed.
 * Owned by the view of the files.
 */
class FileSearch : public QObject
{
    Q_OBJECT

public:
    explicit FileSearch(QObject *parent);

    /** The switch shows and hides the field. */
    void takeField(MainUi &ui, QAction *fieldSwitch);
    /** The field starts empty. */
    void setController(MainViewController *controller);
    bool isSearched() const;
    /** The requirements are others now: unless a search made them so, it is over. */
    void giveWay();
    /** Ends the search with a field that is not shown any more, as it would go on where nobody sees it. */
    void setFieldShown(bool isShown);

public slots:
    void search();
    /** A search may come soon. */
    void prepare();
    /** Shows the field, and what is typed next replaces its text. */
    void find();

signals:
    void searched();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QPointer<QLineEdit> m_field;
    QPointer<MainViewController> m_controller;
    QPointer<QAction> m_fieldSwitch; // shows and hides the field
    QPointer<QToolBar> m_bar;
    QTimer m_rest;
    bool m_isSearching = false;
};
