#include "ui/dialogs/fileoperationprogress.h"

#include "app/settings/showntext.h"
#include "ui_fileoperationprogress.h"

#include <QCloseEvent>
#include <QFontMetrics>

namespace {
constexpr int maximumPercent = 100;
}

FileOperationProgress::FileOperationProgress(QWidget *parent)
    : QDialog(parent), m_ui(std::make_unique<Ui::FileOperationProgress>())
{
    m_ui->setupUi(this);
    // Steps come with one line or with two: the window keeps its size.
    m_ui->detailLabel->setMinimumHeight(2 * QFontMetrics(m_ui->detailLabel->font()).lineSpacing());
    // While the worker holds its transaction, an edit in the window could only fail.
    setWindowModality(Qt::ApplicationModal);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    connect(m_ui->buttonBox, &QDialogButtonBox::rejected, this, &FileOperationProgress::reject);
}

FileOperationProgress::~FileOperationProgress() = default;

void FileOperationProgress::startProgress(const QString &text)
{
    m_ui->operationLabel->setText(text);
    m_ui->detailLabel->clear();
    m_ui->progressBar->setValue(0);
    show();
}

void FileOperationProgress::doingSomething(const QString &text)
{
    if (text.isEmpty())
        return;
    // A name must not stretch the window, neither one that is long nor one that holds line ends.
    const QFontMetrics metrics(m_ui->detailLabel->font());
    QStringList lines{text.section(QLatin1Char('\n'), 0, 0), text.section(QLatin1Char('\n'), 1).simplified()};
    for (QString &line : lines)
        line = metrics.elidedText(ShownText::cut(line), Qt::ElideMiddle, m_ui->progressBar->width());
    m_ui->detailLabel->setText(lines.join(QLatin1Char('\n')).trimmed());
}

void FileOperationProgress::setProgress(float percent)
{
    if (m_ui->progressBar->maximum() == 0)
        setMaximumToPercent();
    m_ui->progressBar->setValue(qRound(percent));
}

void FileOperationProgress::setMaximumToPercent()
{
    m_ui->progressBar->setRange(0, maximumPercent);
}

void FileOperationProgress::setProgressUnknown()
{
    m_ui->progressBar->setRange(0, 0);
}

void FileOperationProgress::reject()
{
    // It stays until the worker has ended, which may take back what it has begun.
    emit canceled();
}

void FileOperationProgress::closeEvent(QCloseEvent *event)
{
    event->ignore();
    emit canceled();
}
