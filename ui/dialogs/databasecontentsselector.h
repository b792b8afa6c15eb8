#pragma once

#include "fileops/worker/importoptions.h"

#include <QDialog>

#include <memory>

namespace Ui {
class DatabaseContentsSelector;
}

/**
 * Asks what an import is to take over. The choice is kept for the next import; a shell, which has no
 * contents, offers no files and leaves the choice about them alone.
 */
class DatabaseContentsSelector : public QDialog
{
    Q_OBJECT

public:
    DatabaseContentsSelector(const QString &path, bool isShell, QWidget *parent = nullptr);
    ~DatabaseContentsSelector() override;

    /** What is ticked and can be had: nothing that hangs on tags goes over without them. */
    ImportOptions options() const;

public slots:
    void accept() override;

private:
    void load();
    void updateAvailability();

    std::unique_ptr<Ui::DatabaseContentsSelector> m_ui;
    const bool m_isShell;
};
