#include "ui/dialogs/preferencesdialog.h"

#include "app/messages/messages.h"
#include "app/settings/preferencekeys.h"
#include "app/settings/settingvalues.h"
#include "app/settings/viewsettings.h"
#include "app/settings/windowsettings.h"
#include "net/updatehandler.h"
#include "ui/widgets/firstsize.h"
#include "ui_preferencesdialog.h"

#include <QApplication>
#include <QButtonGroup>
#include <QSettings>

#include <algorithm>

namespace {
const QString geometryKey = QStringLiteral("PreferencesDialog/geometry");

bool isWindowOnTop()
{
    const QWidgetList windows = QApplication::topLevelWidgets();
    return std::any_of(windows.cbegin(), windows.cend(), [](const QWidget *window) {
        return window->isVisible() && window->windowFlags().testFlag(Qt::WindowStaysOnTopHint);
    });
}
} // namespace

PreferencesDialog::PreferencesDialog(UpdateHandler *updates, QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::PreferencesDialog>()), m_updates(updates)
{
    m_ui->setupUi(this);
    // Previewers that keep in front would hide the place where that is switched off.
    setWindowFlag(Qt::WindowStaysOnTopHint, isWindowOnTop());
    m_sorting = new QButtonGroup(this);
    m_sorting->addButton(m_ui->alphabeticalRadio, ViewSettings::AlphabeticalSorting);
    m_sorting->addButton(m_ui->manualRadio, ViewSettings::ManualSorting);
    m_ui->slideshowSpin->setAccessibleDescription(m_ui->slideshowUnit->text());
    m_ui->newFilesSpin->setAccessibleDescription(m_ui->newFilesUnit->text());
    m_ui->recursionLimitSpin->setAccessibleName(m_ui->recursionLimitCheck->text());
    for (const Preference &preference : preferences())
        load(preference);
    tieControls();
    // The pages scroll where a small screen or large letters leave no room for them.
    if (!restoreGeometry(WindowSettings::layout(geometryKey)))
        FirstSize::byContents(this);
}

PreferencesDialog::~PreferencesDialog()
{
    WindowSettings::setLayout(geometryKey, saveGeometry());
}

// In the order in which they are stored.
QVector<PreferencesDialog::Preference> PreferencesDialog::preferences() const
{
    using namespace PreferenceKeys;
    return {{duplicateManagementEnabled, m_ui->duplicateManagementCheck, true},
            {listDuplicates, m_ui->listDuplicatesCheck, true},
            {checkForNameDuplicates, m_ui->nameDuplicatesCheck, false},
            {adviseOfModifiedFiles, m_ui->adviseCheck, true},
            {newFilesTimeout, m_ui->newFilesSpin, 5},
            {thumbnailCacheSize, m_ui->cacheSizeSpin, 400},
            {autoTagging, m_ui->autoTaggingCheck, true},
            {createNodes, m_ui->createNodesCheck, true},
            {nodeCreationOptions, m_ui->nodePlaceCheck, false},
            // Until they are stored, an adding goes 10000 levels deep: the dialog has defaults of its own.
            {autoTagRecursionLimit, m_ui->recursionLimitSpin, 4},
            {autoTagRecursionLimitSet, m_ui->recursionLimitCheck, false},
            {checkForUpdates, m_ui->checkForUpdatesCheck, true},
            {autoUpdate, m_ui->autoUpdateCheck, false},
            {autoSaveRotated, m_ui->autoSaveRotatedCheck, false},
            {keepPreviewOnTop, m_ui->keepOnTopCheck, true},
            {slideshowIncrementTime, m_ui->slideshowSpin, 7},
            {autoLinkContinuously, m_ui->linkContinuouslyCheck, true},
            {autoLinkWhenSelected, m_ui->linkWhenSelectedCheck, false},
            {checkAutoLinkWhenLaunched, m_ui->linkWhenLaunchedCheck, true},
            {autoLinkInBackGround, m_ui->linkInBackgroundCheck, false},
            {nodeSortingType, m_sorting, ViewSettings::ManualSorting}};
}

void PreferencesDialog::load(const Preference &preference)
{
    if (auto *check = qobject_cast<QCheckBox *>(preference.control)) {
        check->setChecked(SettingValues::flag(preference.key, preference.fallback.toBool()));
        return;
    }
    const int fallback = preference.fallback.toInt();
    if (auto *spin = qobject_cast<QSpinBox *>(preference.control)) {
        spin->setValue(SettingValues::bounded(preference.key, fallback, spin->minimum(), spin->maximum()));
    } else if (auto *group = qobject_cast<QButtonGroup *>(preference.control)) {
        QAbstractButton *button = group->button(SettingValues::number(preference.key, fallback));
        (button ? button : group->button(fallback))->setChecked(true);
    }
}

QVariant PreferencesDialog::chosen(const Preference &preference)
{
    if (const auto *check = qobject_cast<QCheckBox *>(preference.control))
        return check->isChecked();
    if (const auto *spin = qobject_cast<QSpinBox *>(preference.control))
        return spin->value();
    return qobject_cast<QButtonGroup *>(preference.control)->checkedId();
}

void PreferencesDialog::tieControls()
{
    for (const QCheckBox *check :
         {m_ui->duplicateManagementCheck, m_ui->autoTaggingCheck, m_ui->recursionLimitCheck})
        connect(check, &QCheckBox::toggled, this, &PreferencesDialog::updateDependences);
    updateDependences();
    connect(m_ui->testButton, &QPushButton::clicked, this, &PreferencesDialog::testConnection);
    connect(m_updates, &UpdateHandler::connectionChecked, this, &PreferencesDialog::showTestResult);
}

void PreferencesDialog::updateDependences()
{
    const bool isManaged = m_ui->duplicateManagementCheck->isChecked();
    m_ui->listDuplicatesCheck->setEnabled(isManaged);
    m_ui->nameDuplicatesCheck->setEnabled(isManaged);
    const bool isTagging = m_ui->autoTaggingCheck->isChecked();
    m_ui->createNodesCheck->setEnabled(isTagging);
    m_ui->recursionLimitCheck->setEnabled(isTagging);
    m_ui->recursionLimitSpin->setEnabled(isTagging && m_ui->recursionLimitCheck->isChecked());
}

void PreferencesDialog::accept()
{
    if (store()) {
        QDialog::accept();
        return;
    }
    Messages::warning(this, windowTitle(), tr("The preferences could not be stored."));
}

bool PreferencesDialog::store() const
{
    QSettings settings;
    QVector<QVariant> before;
    for (const Preference &preference : preferences()) {
        before.append(settings.contains(preference.key) ? SettingValues::any(preference.key) : QVariant());
        settings.setValue(preference.key, chosen(preference));
    }
    settings.sync();
    if (settings.status() == QSettings::NoError)
        return true;
    // What could not be written stays in memory and would hold until the program ends.
    int place = 0;
    for (const Preference &preference : preferences()) {
        const QVariant &value = before.at(place++);
        value.isValid() ? settings.setValue(preference.key, value) : settings.remove(preference.key);
    }
    return false;
}

void PreferencesDialog::testConnection()
{
    m_ui->testButton->setEnabled(false);
    m_ui->testLabel->setText(tr("The update server is being asked."));
    m_updates->checkConnection();
}

void PreferencesDialog::showTestResult(bool succeeded)
{
    // That of an earlier dialog, which was closed meanwhile.
    if (m_ui->testButton->isEnabled())
        return;
    m_ui->testLabel->clear();
    const QString title = tr("Checked Connection");
    if (succeeded)
        Messages::information(this, title, tr("Update check succeeded."));
    else
        Messages::warning(this, title, tr("The update server could not be reached."));
    m_ui->testButton->setEnabled(true);
    m_ui->testButton->setFocus();
}
