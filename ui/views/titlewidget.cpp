#include "ui/views/titlewidget.h"

#include "app/settings/constants.h"
#include "app/settings/specialnodes.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/narrowing.h"
#include "core/controllers/tagscontroller.h"
#include "models/base/idlistmime.h"
#include "models/contents/sorter.h"
#include "models/tags/tagstablemodel.h"

#include <QCursor>
#include <QDragEnterEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMimeData>

namespace {

// Of thousands of tags the names would fill the window, and take long to be laid out.
constexpr int mostNames = 100;
constexpr int longestSearch = 100;

const QLatin1String nameLink("tag:");
const QLatin1String crossLink("off:");

// Names and connective of each tag, with the connective after the last one cut off.
QString joined(const QStringList &names, const QString &connective)
{
    QString text;
    for (const QString &name : names)
        text += QStringLiteral(" %1 <i>%2</i> ").arg(name, connective);
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
    setToolTip(tr("Drop tags here to show the files that have them; with Ctrl, those of the present ones"));
    setAccessibleName(tr("Tag requirements"));

    m_heading->setObjectName(QStringLiteral("headingLabel"));
    m_heading->setTextFormat(Qt::PlainText);
    m_text->setObjectName(QStringLiteral("requirementsLabel"));
    m_text->setTextFormat(Qt::RichText);
    m_text->setWordWrap(true);
    // Long names give way to the window, which must not widen for them.
    m_text->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    m_text->setTextInteractionFlags(Qt::LinksAccessibleByMouse | Qt::LinksAccessibleByKeyboard);
    m_text->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(m_text, &QLabel::linkActivated, this, &TitleWidget::followLink);
    connect(m_text, &QLabel::linkHovered, this, [this](const QString &link) { m_hoveredLink = link; });
    connect(m_text, &QWidget::customContextMenuRequested, this, [this] {
        if (!m_hoveredLink.isEmpty())
            execNameMenu(m_hoveredLink.mid(nameLink.size()).toLongLong(), QCursor::pos());
    });

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
    //: between the names of two tags
    const QString andWord = tr("and");
    //: between the names of two tags
    const QString orWord = tr("or");
    QString text;
    if (!m_required.isEmpty())
        text = joined(linkedNames(m_required), andWord);
    if (!m_eitherOr.isEmpty()) {
        if (!text.isEmpty())
            text += QStringLiteral("<i>%1</i> ").arg(andWord);
        const QString anyOf = joined(linkedNames(m_eitherOr), orWord);
        text += m_eitherOr.size() > 1 ? QLatin1Char('(') + anyOf + QLatin1Char(')') : anyOf;
    }
    if (!m_excluded.isEmpty()) {
        if (!text.isEmpty())
            text += QStringLiteral(", ");
        text += tr("<i>without:</i> %1").arg(joined(linkedNames(m_excluded), orWord));
    }
    return text;
}

// A name, which leads to its menu, and its cross.
QStringList TitleWidget::linkedNames(const QVector<qint64> &tagIds) const
{
    const QVector<qint64> shown = tagIds.mid(0, mostNames);
    const QHash<qint64, QString> names = m_controller->collection()->tagsController()->tagsNames(shown);
    const auto linked = [](QLatin1String kind, qint64 tagId, const QColor &color, const QString &text) {
        return QStringLiteral("<a href=\"%1%2\" style=\"color:%3;text-decoration:none\">%4</a>")
            .arg(kind, QString::number(tagId), color.name(), text);
    };
    const QColor nameColor = palette().color(QPalette::WindowText);
    const QColor crossColor = palette().color(QPalette::Disabled, QPalette::WindowText);
    QStringList list;
    for (const qint64 tagId : shown)
        list << linked(nameLink, tagId, nameColor, names.value(tagId).toHtmlEscaped()) +
                    linked(crossLink, tagId, crossColor, QStringLiteral("&nbsp;\u00d7"));
    if (tagIds.size() > mostNames)
        list << QString(QChar(0x2026));
    return list;
}

void TitleWidget::followLink(const QString &link)
{
    const qint64 tagId = link.mid(nameLink.size()).toLongLong();
    if (!m_controller || tagId <= 0)
        return;
    if (link.startsWith(crossLink))
        m_controller->narrowing()->takeOff(tagId);
    else
        // Return on a name has no pointer above it.
        execNameMenu(tagId, m_hoveredLink.isEmpty() ? m_text->mapToGlobal(m_text->rect().bottomLeft())
                                                    : QCursor::pos());
}

void TitleWidget::execNameMenu(qint64 tagId, const QPoint &globalPos)
{
    if (!m_controller || tagId <= 0)
        return;
    QMenu menu;
    QAction *require = menu.addAction(tr("&Require"));
    require->setEnabled(!m_required.contains(tagId));
    QAction *exclude = menu.addAction(tr("&Exclude"));
    exclude->setEnabled(!m_excluded.contains(tagId));
    QAction *alone = menu.addAction(tr("&Open Alone"));
    menu.addSeparator();
    QAction *takeOff = menu.addAction(tr("&Take Off"));
    const QAction *chosen = menu.exec(globalPos);
    // The database may have been closed behind the menu.
    if (!m_controller)
        return;
    if (chosen == require)
        m_controller->narrowing()->require({tagId});
    else if (chosen == exclude)
        m_controller->narrowing()->exclude(tagId);
    else if (chosen == alone)
        m_controller->collection()->tagsController()->showTagsSelected({tagId});
    else if (chosen == takeOff)
        m_controller->narrowing()->takeOff(tagId);
}

void TitleWidget::changeEvent(QEvent *event)
{
    QWidget::changeEvent(event);
    // The colours of the names are those of the palette.
    if (event->type() == QEvent::PaletteChange)
        refreshNames();
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
        if (!tagIds.isEmpty() && event->keyboardModifiers().testFlag(Qt::ControlModifier))
            m_controller->narrowing()->require(tagIds);
        else if (!tagIds.isEmpty())
            m_controller->collection()->tagsController()->showTagsSelected(tagIds); // which marks them
    }
    QWidget::dropEvent(event);
}
