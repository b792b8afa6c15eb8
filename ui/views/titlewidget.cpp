#include "ui/views/titlewidget.h"

#include "app/settings/constants.h"
#include "app/settings/specialnodes.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "models/base/idlistmime.h"
#include "models/contents/sorter.h"
#include "models/tags/tagstablemodel.h"

#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMimeData>

namespace {

// Of thousands of tags the names would fill the window, and take long to be laid out.
constexpr int mostNames = 100;
constexpr int longestSearch = 100;

// Names and connective of each tag, with the connective after the last one cut off.
QString joined(const QStringList &names, const QString &connective)
{
    QString text;
    for (const QString &name : names.mid(0, mostNames))
        text += QStringLiteral(" %1 <i>%2</i> ").arg(name.toHtmlEscaped(), connective);
    if (names.size() > mostNames)
        text += QStringLiteral(" %1 <i>%2</i> ").arg(QChar(0x2026), connective);
    // The blank in front of it stays.
    text.chop(connective.size() + static_cast<int>(qstrlen("<i></i> ")));
    return text;
}

} // namespace

TitleWidget::TitleWidget(QWidget *parent)
    : QWidget(parent), m_heading(new QLabel(this)), m_text(new QLabel(this))
{
    setObjectName(QStringLiteral("TitleWidget"));
    setAcceptDrops(true);
    setToolTip(tr("Drop tags here to show the files that have them"));
    setAccessibleName(tr("Tag requirements"));

    m_heading->setObjectName(QStringLiteral("headingLabel"));
    m_heading->setTextFormat(Qt::PlainText);
    m_text->setObjectName(QStringLiteral("requirementsLabel"));
    m_text->setTextFormat(Qt::RichText);
    m_text->setWordWrap(true);
    // Long names give way to the window, which must not widen for them.
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(8, 6, 8, 6);
    layout->setSpacing(8);
    layout->addWidget(m_heading);
    layout->addWidget(m_text, 1);
    clear();
}

void TitleWidget::setController(MainViewController *controller)
{
    if (m_controller) {
        m_controller->disconnect(this);
        m_controller->collection()->tagsController()->tableModel()->disconnect(this);
    }
    m_controller = controller;
    clear();
    if (!m_controller)
        return;
    connect(m_controller, &MainViewController::tagRequirementsChanged, this, &TitleWidget::setRequirements,
            Qt::UniqueConnection);
    connect(m_controller->collection()->tagsController()->tableModel(), &QAbstractItemModel::dataChanged,
            this, &TitleWidget::refreshNames, Qt::UniqueConnection);
}

void TitleWidget::clear()
{
    m_type = NodeType(0);
    showTexts(QString(), tr("No tag or browsing node open"));
}

void TitleWidget::setRequirements(NodeType type, QVector<qint64> required, QVector<qint64> eitherOr,
                                  QVector<qint64> excluded)
{
    m_type = type;
    m_required = std::move(required);
    m_eitherOr = std::move(eitherOr);
    m_excluded = std::move(excluded);
    // The tags that were asked for may all have been removed.
    if (type == TagNode && m_required.isEmpty() && m_eitherOr.isEmpty() && m_excluded.isEmpty())
        clear();
    else if (type == TagNode)
        showTexts(tr("Tag Requirements:"), requirementText());
    else if (type == AllFiles)
        showTexts(QString(), SpecialNodes::allFiles());
    else
        showTexts(QString(), SpecialNodes::shortTexts().value(type).toHtmlEscaped());
}

void TitleWidget::refreshNames()
{
    if (m_type == TagNode)
        m_text->setText(requirementText() + searchText());
}

void TitleWidget::showTexts(const QString &heading, const QString &text)
{
    m_heading->setText(heading);
    m_heading->setVisible(!heading.isEmpty());
    m_text->setText(text + searchText());
}

QString TitleWidget::searchText() const
{
    const QString searched = m_controller ? m_controller->sorter()->filterText() : QString();
    if (searched.isEmpty())
        return {};
    const QString shown =
        searched.size() > longestSearch ? searched.left(longestSearch) + QChar(0x2026) : searched;
    return tr(", <i>search:</i> \"%1\"").arg(shown.toHtmlEscaped());
}

QString TitleWidget::requirementText() const
{
    if (!m_controller)
        return {};
    const QHash<qint64, QString> names =
        m_controller->collection()->tagsController()->tagsNames(m_required + m_eitherOr + m_excluded);
    const auto namesOf = [&names](const QVector<qint64> &ids) {
        QStringList list;
        for (qint64 id : ids)
            list << names.value(id);
        return list;
    };

    //: between the names of two tags
    const QString andWord = tr("and");
    //: between the names of two tags
    const QString orWord = tr("or");
    QString text;
    if (!m_required.isEmpty())
        text = joined(namesOf(m_required), andWord);
    if (!m_eitherOr.isEmpty()) {
        if (!text.isEmpty())
            text += QStringLiteral("<i>%1</i> ").arg(andWord);
        const QString anyOf = joined(namesOf(m_eitherOr), orWord);
        text += m_eitherOr.size() > 1 ? QLatin1Char('(') + anyOf + QLatin1Char(')') : anyOf;
    }
    if (!m_excluded.isEmpty()) {
        if (!text.isEmpty())
            text += QStringLiteral(", ");
        text += tr("<i>without:</i> %1").arg(joined(namesOf(m_excluded), orWord));
    }
    return text;
}

void TitleWidget::dragEnterEvent(QDragEnterEvent *event)
{
    if (m_controller && event->mimeData()->hasFormat(Constants::tagMimeType))
        event->acceptProposedAction();
    else
        QWidget::dragEnterEvent(event);
}

void TitleWidget::dropEvent(QDropEvent *event)
{
    if (m_controller && event->mimeData()->hasFormat(Constants::tagMimeType)) {
        const QVector<qint64> tagIds = IdListMime::unpack(event->mimeData(), Constants::tagMimeType);
        event->acceptProposedAction();
        if (!tagIds.isEmpty())
            m_controller->collection()->tagsController()->showTagsSelected(tagIds); // which marks them
    }
    QWidget::dropEvent(event);
}
