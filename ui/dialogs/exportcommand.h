#pragma once

#include <QCoreApplication>
#include <QPointer>
#include <QString>
#include <QVector>

class MainViewController;
class QWidget;
struct ExportRequest;
struct ExportSelection;

namespace Database {
/** A path with the ending of the filter, in the folder of databases that is kept; empty for a cancel. */
QString askExportTarget(QWidget *parent, const QString &filter);
} // namespace Database

/** An export gesture: asks what has to be asked and hands the request to the controller. GUI thread. */
class ExportCommand
{
    Q_DECLARE_TR_FUNCTIONS(ExportCommand)

public:
    /** Dialogs stand above the parent. */
    ExportCommand(MainViewController *controller, QWidget *parent);

    void exportSelection(int form, const ExportSelection &selection);
    void exportTags(const QVector<qint64> &tagIds);

private:
    void askTarget(ExportRequest &request);
    /** Whether a path leads to the open database, by whatever name. */
    bool isOpenDatabase(const QString &path) const;

    QPointer<MainViewController> m_controller;
    QPointer<QWidget> m_parent;
};
