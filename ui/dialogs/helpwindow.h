#pragma once

#include <QMainWindow>

class QTextBrowser;

/** A window of its own with one help text. Deletes itself on closing and never keeps the program alive. */
class HelpWindow : public QMainWindow
{
    Q_OBJECT

public:
    enum Mode { Manual = 0, QuickStartGuide = 2 };

    explicit HelpWindow(int mode, QWidget *parent = nullptr);
    ~HelpWindow() override;

private:
    void showDocument(const QString &resource);

    QString m_geometryKey;
    QTextBrowser *m_browser;
};
