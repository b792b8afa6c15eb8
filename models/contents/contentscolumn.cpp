#include "models/contents/contentscolumn.h"

#include "app/settings/showntext.h"
#include "core/records/file.h"
#include "models/contents/contentsmodel.h"

#include <QFontMetrics>
#include <QGuiApplication>

#include <iterator>

namespace {
template <DataType type>
QVariant value(const ContentsModel & /*contents*/, const File &file)
{
    return file.data(type);
}

QVariant nameBelowPicture(const ContentsModel & /*contents*/, const File &file)
{
    const QFontMetrics metrics(QGuiApplication::font());
    return QString(QLatin1Char('\n') + metrics.elidedText(ShownText::cut(file.name()), Qt::ElideRight,
                                                          ContentsModel::elidedWidth));
}

QString tagNames(const ContentsModel &contents, const File &file)
{
    return contents.tagNames(file.tags());
}

QVariant shownTagNames(const ContentsModel &contents, const File &file)
{
    return tagNames(contents, file);
}

QString name(const ContentsModel & /*contents*/, const File &file)
{
    return file.name();
}

QString type(const ContentsModel & /*contents*/, const File &file)
{
    return file.type();
}

QString description(const ContentsModel & /*contents*/, const File &file)
{
    return file.description();
}

QString idCode(const ContentsModel & /*contents*/, const File &file)
{
    return file.idCode();
}

qint64 modified(const File &file)
{
    return file.modificationSeconds();
}

qint64 added(const File &file)
{
    return file.additionSeconds();
}

qint64 size(const File &file)
{
    return file.size();
}

qint64 loadId(const File &file)
{
    return file.loadId();
}

using Column = ContentsColumn;
using Model = ContentsModel;

constexpr Column columns[] = {
    {Model::ThumbnailColumn, Thumbnail, QT_TRANSLATE_NOOP("ContentsModel", "Thumbnail"), Column::FileName,
     nameBelowPicture, nullptr, name},
    {Model::NameColumn, Name, QT_TRANSLATE_NOOP("ContentsModel", "Name"), Column::FileName, value<Name>,
     nullptr, name},
    {Model::ModificationDateColumn, ModificationDate, QT_TRANSLATE_NOOP("ContentsModel", "Modification Date"),
     Column::Nothing, value<ModificationDate>, modified, nullptr},
    {Model::SizeColumn, Size, QT_TRANSLATE_NOOP("ContentsModel", "Size"), Column::Nothing, value<Size>, size,
     nullptr},
    {Model::AdditionDateColumn, AdditionDate, QT_TRANSLATE_NOOP("ContentsModel", "Addition Date"),
     Column::Nothing, value<AdditionDate>, added, nullptr},
    {Model::TypeColumn, Type, QT_TRANSLATE_NOOP("ContentsModel", "Type"), Column::Nothing, value<Type>,
     nullptr, type},
    {Model::TagsColumn, Tags, QT_TRANSLATE_NOOP("ContentsModel", "Tags"), Column::Nothing, shownTagNames,
     nullptr, tagNames},
    {Model::DescriptionColumn, Description, QT_TRANSLATE_NOOP("ContentsModel", "Description"),
     Column::FileDescription, value<Description>, nullptr, description},
    {Model::IdCodeColumn, IdCode, QT_TRANSLATE_NOOP("ContentsModel", "ID Code"), Column::Nothing,
     value<IdCode>, nullptr, idCode},
    {Model::LoadIdColumn, LoadId, QT_TRANSLATE_NOOP("ContentsModel", "LoadID"), Column::Nothing,
     value<LoadId>, loadId, nullptr},
};

// Under a sanitizer no address of a function is known while compiling.
#ifndef __SANITIZE_ADDRESS__
constexpr bool areWhole()
{
    for (int i = 0; i < Model::columnTotal; ++i) {
        const Column &column = columns[i];
        if (column.column != i || !column.shown || (!column.sortNumber) == (!column.sortText))
            return false;
    }
    return true;
}
static_assert(std::size(columns) == Model::columnTotal && areWhole(),
              "each column of the model has its row, in their order, with a text and one sort key");
#endif
} // namespace

const ContentsColumn &ContentsColumn::of(int column)
{
    Q_ASSERT(column >= 0 && column < Model::columnTotal);
    return columns[column];
}
