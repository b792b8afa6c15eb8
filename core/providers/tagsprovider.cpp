#include "core/providers/tagsprovider.h"

#include "core/providers/chunks.h"
#include "core/providers/singlevalue.h"
#include "db/sql/abstractqueryconstructor.h"
#include "db/sql/transaction.h"

#include <QDateTime>

TagsProvider::TagsProvider(const AbstractQueryConstructor *constructor, QObject *parent)
    : BaseDBProvider(constructor, parent)
{
}

qint64 TagsProvider::addTag(const QString &name)
{
    if (!runEdit(insertText(name) + constructor()->statementEnd()))
        return 0;
    const qint64 id =
        SingleValue::read(*this, constructor()->lastIdQuery(QStringLiteral("tag_id"))).toLongLong();
    if (id > 0)
        announce([this, id] { loadTags({id}); });
    return id;
}

void TagsProvider::loadAllTags()
{
    request(selectText() + constructor()->statementEnd(), &TagsProvider::gotAllTagInfo);
}

void TagsProvider::loadTags(const QVector<qint64> &ids)
{
    Chunks::forEach(ids, Chunks::idsPerStatement, [this](const QVector<qint64> &part) {
        request(selectText() + conditionText(part) + constructor()->statementEnd(),
                &TagsProvider::tagsUpdated);
        return true;
    });
}

bool TagsProvider::readTags(const QVector<qint64> &ids, TableData &rows)
{
    return Chunks::forEach(ids, Chunks::idsPerStatement, [&](const QVector<qint64> &part) {
        TableData read;
        const bool isRead = runSync(selectText() + conditionText(part) + constructor()->statementEnd(), read);
        rows += read;
        return isRead;
    });
}

bool TagsProvider::readUseOnNodes(const QVector<qint64> &ids, bool &isUsed)
{
    isUsed = false;
    return Chunks::forEach(ids, Chunks::idsPerStatement, [&](const QVector<qint64> &part) {
        const QString condition = constructor()->inClause(QStringLiteral("tag_id"), SqlText::idTexts(part));
        const QVariant count = SingleValue::read(
            *this, constructor()->selectQuery({QStringLiteral("count(*)")}, QStringLiteral("tb_nodes")) +
                       constructor()->whereClause(condition) + constructor()->statementEnd());
        isUsed = isUsed || count.toLongLong() > 0;
        return count.isValid();
    });
}

bool TagsProvider::updateTag(qint64 id, const QString &column, const QString &value)
{
    const QString condition = SqlText::fill(QStringLiteral("tag_id=%1"), {QString::number(id)});
    const QString statement = constructor()->updateQuery({column}, QStringLiteral("tags"), {value}) +
                              constructor()->whereClause(condition) + constructor()->statementEnd();
    if (!runEdit(statement))
        return false;
    expectTags({id});
    announce([this, id] { loadTags({id}); });
    return true;
}

bool TagsProvider::removeTags(const QVector<qint64> &ids)
{
    if (ids.isEmpty())
        return true;
    Transaction transaction(*this);
    const auto remove = [this](const QVector<qint64> &part) {
        return runSync(constructor()->deleteQuery(QStringLiteral("tags")) + conditionText(part) +
                       constructor()->statementEnd());
    };
    const bool ok = transaction.isActive() && Chunks::forEach(ids, Chunks::idsPerStatement, remove) &&
                    transaction.commit();
    // whoever listens may run statements of its own, which must not be part of a failed removal
    transaction.rollBack();
    announce([this, ok, ids] { emit tagsRemoved(ok, ids); });
    return ok;
}

void TagsProvider::expectTags(const QVector<qint64> &ids)
{
    expect(selectText() + conditionText(ids) + constructor()->statementEnd());
}

QString TagsProvider::selectText() const
{
    return constructor()->selectQuery({QStringLiteral("*")}, QStringLiteral("tags"));
}

QString TagsProvider::insertText(const QString &name) const
{
    return constructor()->insertQuery(
        {QStringLiteral("tag_name"), QStringLiteral("tag_description"), QStringLiteral("creation_date")},
        QStringLiteral("tags"), {{name, QString(), QString::number(QDateTime::currentSecsSinceEpoch())}});
}

QString TagsProvider::conditionText(const QVector<qint64> &ids) const
{
    return constructor()->whereClause(
        constructor()->inClause(QStringLiteral("tag_id"), SqlText::idTexts(ids)));
}
