#pragma once

#include <QPersistentModelIndex>
#include <QPointer>
#include <QTreeView>

class ExternalFileModel;
class QTimer;

/**
 * The tree of the computer's files, from which files and folders are dragged into the program. It changes
 * nothing on disk. Folders are read once it has been painted for the first time. GUI thread.
 */
class ExternalFileView : public QTreeView
{
    Q_OBJECT

public:
    explicit ExternalFileView(QWidget *parent = nullptr);

protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void load();
    /** Makes the home folder current and opens it. */
    void openHome();
    /** The user goes where he likes from now on. */
    void leaveHome();

    ExternalFileModel *m_model = nullptr;
    QPersistentModelIndex m_home;
    // Keeps the home folder at the top while the folders above it fill with rows; gone once the user acts.
    QPointer<QTimer> m_settling;
};
