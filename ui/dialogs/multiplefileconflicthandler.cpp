#include "ui/dialogs/multiplefileconflicthandler.h"

#include "core/controllers/miscoperationthread.h"
#include "ui/widgets/firstsize.h"
#include "ui_multiplefileconflicthandler.h"

#include <QDir>

MultipleFileConflictHandler::MultipleFileConflictHandler(const QString &folder,
                                                         const QVector<FileConflict> &conflicts,
                                                         QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::MultipleFileConflictHandler>())
{
    m_ui->setupUi(this);
    FirstSize::byFont(this, size());
    m_ui->textLabel->setText(tr("There are already different files in folder '%1' with the same names as the "
                                "following database files.\nPlease choose how these files should be "
                                "extracted.")
                                 .arg(QDir::toNativeSeparators(folder)));
    m_ui->conflicts->setConflicts(conflicts);
    connect(m_ui->replaceAllButton, &QPushButton::clicked, this, &MultipleFileConflictHandler::setReplaceAll);
    connect(m_ui->newNamesButton, &QPushButton::clicked, this, &MultipleFileConflictHandler::setUseNewNames);
    connect(m_ui->buttonBox, &QDialogButtonBox::accepted, this, &MultipleFileConflictHandler::accept);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &MultipleFileConflictHandler::reject);
}

MultipleFileConflictHandler::~MultipleFileConflictHandler() = default;

FileConflictChoices MultipleFileConflictHandler::choices() const
{
    return m_ui->conflicts->choices();
}

void MultipleFileConflictHandler::setReplaceAll()
{
    m_ui->conflicts->chooseForAll(MiscOperationThread::ReplaceChoice);
}

void MultipleFileConflictHandler::setUseNewNames()
{
    m_ui->conflicts->chooseForAll(MiscOperationThread::UseNewNameChoice);
}
