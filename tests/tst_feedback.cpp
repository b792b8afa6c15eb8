#include "tests/support/updateserverfixture.h"
#include "tests/support/windowfixture.h"
#include "ui/dialogs/feedbackdialog.h"

#include <QDialogButtonBox>
#include <QLineEdit>
#include <QPushButton>
#include <QTextEdit>

namespace {
const QString failure = QStringLiteral("Network error: An error occurred while sending feedback.");
}

/** Messages to the makers, by the command of the window and a server of the test. */
class TestFeedback : public QObject
{
    Q_OBJECT

private slots:
    void init()
    {
        m_net.reset(); // what it gives back must not be taken from the next one
        m_net = std::make_unique<UpdateServerFixture>();
        m_fixture = std::make_unique<WindowFixture>();
    }

    void cleanup()
    {
        m_fixture.reset();
        QCOMPARE(m_net->plain().connections(), 0);
    }

    void goesToNobodyElse()
    {
        m_net->serve("foreign"_s);
        sendFeedback("secret"_s, QString());
        QTRY_COMPARE(fixture().boxes(), QStringList{failure});
        QVERIFY(m_net->requests().isEmpty());
        UpdateServer::setAddress(QString());
        sendFeedback("lost?"_s, QString());
        QCOMPARE(fixture().boxes().size(), 2);
    }

    void feedbackIsSentAsItIsTyped()
    {
        m_net->answer(m_net->feedbackPath, Answer::of("p!4%hwT"));
        const QString message = "1 + 1 = 2 & 100 %41; #?/\\ \u00fc \u4e2d %2 %1\nsecond line"_s;
        const QPointer<FeedbackDialog> dialog = sendFeedback(message, "a+b@example.org"_s);
        QTRY_COMPARE(fixture().boxes(),
                     QStringList{"Feedback Received: Your message has been recorded. Thank you."_s});
        QTRY_VERIFY(!dialog);
        QCOMPARE(m_net->requests().size(), 1);
        const QList<QByteArray> items =
            m_net->requests().first().query(QUrl::FullyEncoded).toUtf8().split('&');
        QCOMPARE(items.size(), 2);
        // As a web server decodes them: there a plus is a blank.
        const auto value = [&items](int i) {
            return QString::fromUtf8(QByteArray::fromPercentEncoding(
                items.at(i).mid(items.at(i).indexOf('=') + 1).replace('+', ' ')));
        };
        QVERIFY(items.at(0).startsWith("feedback=") && items.at(1).startsWith("email="));
        QCOMPARE(value(0), message + " \nVersion: 4.1.3"_s);
        QCOMPARE(value(1), "a+b@example.org"_s);
    }

    void feedbackThatFailsIsKept_data()
    {
        addColumns<Answer>("answer");
        addRow("refused", Answer::of("no"));
        addRow("a mark before the token", Answer::of("\xef\xbb\xbfp!4%hwT"));
        addRow("more than the token", Answer::of("p!4%hwT "));
        addRow("a failing server", Answer::of("p!4%hwT", "500 Internal Server Error"));
        addRow("cut", Answer{"HTTP/1.1 200 OK\r\nContent-Length: 9\r\n\r\np!4%hwT", Answer::Close});
        addRow("huge", Answer::of(QByteArray(1000000, 'p')));
        addRow("silence", Answer{"", Answer::Stay});
        addRow("elsewhere, in the open", Answer::redirection("http://localhost:PLAIN/moved"));
    }

    void feedbackThatFailsIsKept()
    {
        QFETCH(Answer, answer);
        m_net->answer(m_net->feedbackPath, answer);
        const QPointer<FeedbackDialog> dialog = sendFeedback("kept"_s, "me"_s);
        QVERIFY(!send(*dialog)->isEnabled()); // until it is settled
        QTRY_COMPARE(fixture().boxes(), QStringList{failure});
        QVERIFY(dialog && dialog->isVisible() && send(*dialog)->isEnabled());
        QCOMPARE(dialog->findChild<QTextEdit *>()->toPlainText(), "kept"_s);
        QCOMPARE(dialog->findChild<QLineEdit *>()->text(), "me"_s);
        // Put aside by a key, it comes back as it was.
        QTest::keyClick(dialog, Qt::Key_Escape);
        QTRY_VERIFY(!dialog || !dialog->isVisible());
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        fixture().action("Send feedback"_s)->trigger();
        QVERIFY(dialog && dialog->isVisible());
        QCOMPARE(dialog->findChild<QTextEdit *>()->toPlainText(), "kept"_s);
        m_net->answer(m_net->feedbackPath, Answer::of("p!4%hwT"));
        send(*dialog)->click();
        QTRY_VERIFY(!dialog);
        QCOMPARE(fixture().boxes().size(), 2);
    }

private:
    WindowFixture &fixture() { return *m_fixture; }
    static QAbstractButton *send(const QWidget &dialog)
    {
        return dialog.findChild<QDialogButtonBox *>()->button(QDialogButtonBox::Ok);
    }
    /** Opens the dialog by its command, types and sends. */
    QPointer<FeedbackDialog> sendFeedback(const QString &message, const QString &email)
    {
        fixture().window().show();
        fixture().action("Send feedback"_s)->trigger();
        const QPointer<FeedbackDialog> dialog = fixture().window().findChildren<FeedbackDialog *>().last();
        const bool isEmpty = dialog->findChild<QTextEdit *>()->toPlainText().isEmpty();
        if (dialog->isModal() || (isEmpty && send(*dialog)->isEnabled()))
            qFatal("a dialog with nothing to send lets it be sent");
        dialog->findChild<QTextEdit *>()->setPlainText(message);
        dialog->findChild<QLineEdit *>()->setText(email);
        send(*dialog)->click();
        return dialog;
    }

    std::unique_ptr<UpdateServerFixture> m_net;
    std::unique_ptr<WindowFixture> m_fixture;
};

QTEST_MAIN(TestFeedback)
#include "tst_feedback.moc"
