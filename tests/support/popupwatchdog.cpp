#include <QApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QTest>
#include <QTimer>
#include <QWidget>

namespace {

constexpr int secondsToStand = 20;

/**
 * Closes menus and dialogs that nobody answers, and fails the test that they stand in: their loops would go
 * on until the time of the whole program is over.
 */
class PopupWatchdog : public QObject
{
public:
    explicit PopupWatchdog(QObject *parent) : QObject(parent)
    {
        connect(&m_timer, &QTimer::timeout, this, &PopupWatchdog::look);
        m_timer.start(500);
    }

private:
    void look()
    {
        QWidget *standing = QApplication::activePopupWidget();
        if (!standing)
            standing = QApplication::activeModalWidget();
        if (!standing || standing != m_standing)
            m_since.start();
        m_standing = standing;
        if (!standing || !m_since.hasExpired(secondsToStand * 1000))
            return;
        qWarning("%s stood for %d s in %s(%s)", standing->metaObject()->className(), secondsToStand,
                 QTest::currentTestFunction(), QTest::currentDataTag());
        QTest::qFail("a menu or a dialog was not answered", __FILE__, __LINE__);
        standing->close();
    }

    QTimer m_timer;
    QPointer<QWidget> m_standing;
    QElapsedTimer m_since;
};

void startWatchdog()
{
    if (qobject_cast<QApplication *>(QCoreApplication::instance()))
        new PopupWatchdog(QCoreApplication::instance());
}

} // namespace

Q_COREAPP_STARTUP_FUNCTION(startWatchdog)
