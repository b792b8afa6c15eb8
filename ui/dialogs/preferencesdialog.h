#pragma once

#include <QDialog>
#include <QVariant>
#include <QVector>

#include <memory>

class QButtonGroup;
class UpdateHandler;

namespace Ui {
class PreferencesDialog;
}

/**
 * Where the user sets what the settings of all topics read. It writes all of it at once when it is accepted,
 * and nothing otherwise; what follows from it is the business of the window that runs it.
 */
class PreferencesDialog : public QDialog
{
    Q_OBJECT

public:
    /** The handler is borrowed for trying whether the update server can be reached. */
    explicit PreferencesDialog(UpdateHandler *updates, QWidget *parent = nullptr);
    ~PreferencesDialog() override;

public slots:
    /** Stays open when the values could not be stored: none of them is, then. */
    void accept() override;

private:
    /** One control, what it stands for in the store, and what it shows while nothing is stored. */
    struct Preference
    {
        QString key;
        QObject *control; // a check box, a spin box, or a group of radio buttons by their ids
        QVariant fallback;
    };
    QVector<Preference> preferences() const;
    static void load(const Preference &preference);
    static QVariant chosen(const Preference &preference);

    void tieControls();
    void updateDependences();
    bool store() const;
    void testConnection();
    void showTestResult(bool succeeded);

    std::unique_ptr<Ui::PreferencesDialog> m_ui;
    QButtonGroup *m_sorting = nullptr;
    UpdateHandler *m_updates;
};
