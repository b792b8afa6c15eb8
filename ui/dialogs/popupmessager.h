#pragma once

#include <QObject>
#include <QPointer>

class QMessageBox;
class QTimer;
class QWidget;

/** Shows short messages of the open database. Owned by the main window, on the GUI thread. */
class PopupMessager : public QObject
{
    Q_OBJECT

public:
    /** The parent is also the window over which the boxes stand. */
    explicit PopupMessager(QWidget *parent);

    /** Has the temporary box, while it shows, stand over a window that has come to the front. */
    void moveTempWarning(QWidget *window);

public slots:
    /** A box that goes away by itself after two seconds; one that comes while it still shows is dropped. */
    void showTempWarning(const QString &title, const QString &text);
    void showWarning(const QString &title, const QString &text);
    void showInformation(const QString &title, const QString &text);
    void showBrowsingTreeDuplicated();

private:
    QWidget *topWindow() const;

    QWidget *m_window;
    QPointer<QMessageBox> m_temporaryBox; // belongs to the window that it stands over
    QTimer *m_hideTimer;
};
