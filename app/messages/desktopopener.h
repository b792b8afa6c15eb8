#pragma once

#include <QObject>
#include <QString>
#include <QUrl>

class QWidget;

/**
 * Opens files and links for QDesktopServices by the desktop's own "xdg-open" and says when that finds no
 * program. The toolkit starts the same one and never learns how it ended, so that nothing at all would
 * happen. Where there is no such program the toolkit is left to itself. GUI thread, one a run of the program.
 */
class DesktopOpener : public QObject
{
    Q_OBJECT

public:
    explicit DesktopOpener(const QString &program = QStringLiteral("xdg-open"), QObject *parent = nullptr);
    ~DesktopOpener() override;

    /** Says that no program shows this folder. */
    static void tellOfFolder(QWidget *parent, const QString &folder);

public slots:
    /** Returns at once; a box tells later what could not be opened. */
    void open(const QUrl &url);

private:
    void handleEnd(const QUrl &url, int exitCode);

    const QString m_program;
};
