#include "ui/docks/metainfodock.h"

#include "app/settings/showntext.h"
#include "core/controllers/collection.h"
#include "core/controllers/mainviewcontroller.h"
#include "core/controllers/tagscontroller.h"
#include "core/records/file.h"
#include "core/records/filekind.h"
#include "models/contents/contentsmodel.h"
#include "models/tags/tagstablemodel.h"

#include <QCollator>
#include <QGridLayout>
#include <QLabel>
#include <QLocale>
#include <QScrollArea>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int mostSortedTags = 1000;
constexpr int narrowest = 180;
constexpr int longestFact = 5000; // signs
constexpr int titleColumn = 0;
constexpr int factColumn = 1;

// A long word must not widen the dock.
const QSizePolicy narrowable(QSizePolicy::Ignored, QSizePolicy::Preferred);

QString kindText(int kind)
{
    switch (kind) {
    case 0:
        return MetaInfoDock::tr("Link to a file");
    case 1:
        return MetaInfoDock::tr("Inside the database");
    default:
        return MetaInfoDock::tr("Hyperlink");
    }
}

QString sizeText(qint64 size)
{
    const QString bytes =
        size == 1
            ? MetaInfoDock::tr("1 byte")
            : MetaInfoDock::tr("%1 bytes", nullptr, ShownText::forPlural(size)).arg(QLocale().toString(size));
    return size < 1024 ? bytes : MetaInfoDock::tr("%1 (%2)").arg(QLocale().formattedDataSize(size), bytes);
}

QString dateText(const QDateTime &date)
{
    return QLocale().toString(date, QLocale::ShortFormat);
}

} // namespace

MetaInfoDock::MetaInfoDock(QWidget *parent) : AbstractDock(tr("Metadata"), parent)
{
    setObjectName(QStringLiteral("MetaInfoDock"));
    auto *area = new QScrollArea(this);
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setMinimumWidth(narrowest);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setAccessibleName(windowTitle());

    auto *contents = new QWidget(area);
    auto *layout = new QVBoxLayout(contents);
    m_name = new QLabel(contents);
    m_name->setObjectName(QStringLiteral("nameLabel"));
    // Names are anybody's: a marked up one could show what is not there, or load a picture.
    m_name->setTextFormat(Qt::PlainText);
    m_name->setWordWrap(true);
    m_name->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    m_name->setSizePolicy(narrowable);
    layout->addWidget(m_name);

    m_facts = new QWidget(contents);
    // Not a form layout, which cuts the second line off a long text in a scrolled area.
    auto *form = new QGridLayout(m_facts);
    form->setContentsMargins(0, 0, 0, 0);
    form->setVerticalSpacing(3);
    form->setColumnStretch(factColumn, 1);
    m_tags = addFact(form, tr("Tags:"), "tagsLabel");
    m_description = addFact(form, tr("Description:"), "descriptionLabel");
    m_kind = addFact(form, tr("Kept as:"), "kindLabel");
    m_size = addFact(form, tr("Size:"), "sizeLabel");
    m_modified = addFact(form, tr("Modified:"), "modifiedLabel");
    m_added = addFact(form, tr("Added:"), "addedLabel");
    m_idCode = addFact(form, tr("ID code:"), "idCodeLabel");
    layout->addWidget(m_facts);
    layout->addStretch(1);

    area->setWidget(contents);
    setWidget(area);
    clear();
}

QLabel *MetaInfoDock::addFact(QGridLayout *form, const QString &title, const char *objectName)
{
    auto *label = new QLabel(m_facts);
    label->setObjectName(QLatin1String(objectName));
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    label->setAccessibleName(title);
    label->setSizePolicy(narrowable);
    const int row = form->rowCount();
    form->addWidget(new QLabel(title, m_facts), row, titleColumn, Qt::AlignLeft | Qt::AlignTop);
    form->addWidget(label, row, factColumn);
    return label;
}

void MetaInfoDock::setController(MainViewController *controller)
{
    if (m_controller) {
        // By sender, as this dock itself stays while collections come and go.
        m_controller->contentsModel()->disconnect(this);
        m_controller->collection()->tagsController()->tableModel()->disconnect(this);
    }
    m_controller = controller;
    selectFile(0);
    if (!m_controller)
        return;
    connect(m_controller->contentsModel(), &ContentsModel::contentsChanged, this, &MetaInfoDock::refresh);
    // For renamed tags, which change no file.
    connect(m_controller->collection()->tagsController()->tableModel(), &QAbstractItemModel::dataChanged,
            this, &MetaInfoDock::refresh);
}

void MetaInfoDock::selectFile(qlonglong fileId)
{
    m_fileId = fileId;
    refresh();
}

void MetaInfoDock::refresh()
{
    const File *file = nullptr;
    if (m_controller && m_fileId > 0) {
        const ContentsModel *model = m_controller->contentsModel();
        file = model->fileAt(model->rowOf(m_fileId));
    }
    // Asked for only now: what many files have in common takes a look at each of them.
    const SharedFacts shared = file && m_sharedFacts ? m_sharedFacts() : SharedFacts();
    if (shared.count > 1)
        showShared(shared);
    else if (file)
        showFile(*file);
    else
        clear();
}

void MetaInfoDock::showFile(const File &file)
{
    setName(file.name());
    const bool isHyperlink = file.internal() == FileKind::hyperlink;
    const QString names = tagNames(file.tags());
    setFact(m_tags, names.isEmpty() ? tr("none") : names);
    setFact(m_description, file.description());
    setFact(m_kind, kindText(file.internal()));
    setFact(m_size, isHyperlink ? QString() : sizeText(file.size()));
    setFact(m_modified, isHyperlink ? QString() : dateText(file.modificationDate()));
    setFact(m_added, dateText(file.additionDate()));
    setFact(m_idCode, file.idCode());
    m_facts->show();
}

void MetaInfoDock::showShared(const SharedFacts &facts)
{
    setName(tr("%Ln files selected", nullptr, facts.count));
    const QString names = tagNames(facts.tagIds);
    setFact(m_tags, names.isEmpty() ? tr("none in common") : names);
    setFact(m_kind, facts.kind < 0 ? QString() : kindText(facts.kind));
    for (QLabel *label : {m_description, m_size, m_modified, m_added, m_idCode})
        setFact(label, QString());
    m_facts->show();
}

void MetaInfoDock::setName(const QString &name)
{
    QFont bold = font();
    bold.setBold(true);
    m_name->setFont(bold);
    m_name->setForegroundRole(QPalette::WindowText);
    m_name->setText(ShownText::cut(name));
    m_name->setToolTip(ShownText::toolTip(name));
}

QString MetaInfoDock::tagNames(const QVector<qint64> &tagIds) const
{
    // More than anybody reads; sorting them would hold up the selection.
    if (tagIds.size() > mostSortedTags)
        return m_controller->tagNames(tagIds);
    QStringList names;
    for (qint64 tagId : tagIds)
        names.append(m_controller->tagNames({tagId}));
    names.removeAll(QString());
    QCollator order;
    // As the tags table sorts them.
    order.setNumericMode(true);
    order.setCaseSensitivity(Qt::CaseInsensitive);
    std::sort(names.begin(), names.end(), order);
    return names.join(QLatin1String(", "));
}

void MetaInfoDock::clear()
{
    m_name->setFont(font());
    m_name->setForegroundRole(QPalette::PlaceholderText);
    m_name->setText(tr("No file selected"));
    m_name->setToolTip(QString());
    m_facts->hide();
    for (QLabel *label : {m_tags, m_description, m_kind, m_size, m_modified, m_added, m_idCode})
        label->clear();
}

void MetaInfoDock::setFact(QLabel *label, const QString &text)
{
    // To break a text of megabytes into lines would hold up the window at each selection.
    label->setText(text.size() > longestFact ? text.left(longestFact) + QChar(0x2026) : text);
    // A title without anything beside it says nothing.
    label->setHidden(text.isEmpty());
    auto *form = static_cast<QGridLayout *>(m_facts->layout());
    int row, column, rows, columns;
    form->getItemPosition(form->indexOf(label), &row, &column, &rows, &columns);
    form->itemAtPosition(row, titleColumn)->widget()->setHidden(text.isEmpty());
}
