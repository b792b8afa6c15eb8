#include "core/records/filerecord.h"

#include "core/records/filekind.h"
#include "core/records/textpool.h"

#include <QLatin1String>

#include <algorithm>
#include <cstring>

namespace {

// Kept as small numbers in each record; the models turn them into pictures, drawn once for all files.
constexpr qint8 plainIcon = 0;
constexpr qint8 pdfIcon = 1;
constexpr qint8 documentIcon = 2;
constexpr qint8 sheetIcon = 3;
constexpr qint8 soundIcon = 4;
constexpr qint8 videoIcon = 5;
constexpr qint8 thumbnailIcon = 6;
constexpr qint8 hyperlinkIcon = 7;

constexpr int idCodeCapacity = 8;

struct KnownExtension
{
    QLatin1String text;
    qint8 iconKind;
};

// Searched in turn: a look through eleven short texts is quicker than the hash of one.
const KnownExtension knownExtensions[] = {
    {QLatin1String("doc"), documentIcon}, {QLatin1String("docx"), documentIcon},
    {QLatin1String("xls"), sheetIcon},    {QLatin1String("pdf"), pdfIcon},
    {QLatin1String("mp4"), soundIcon},    {QLatin1String("mp3"), soundIcon},
    {QLatin1String("wav"), soundIcon},    {QLatin1String("m4a"), soundIcon},
    {QLatin1String("avi"), videoIcon},    {QLatin1String("wmv"), videoIcon},
    {QLatin1String("mov"), videoIcon},
};

// Each thread that makes records has its own, so that none of them needs a lock.
TextPool &folders()
{
    static thread_local TextPool pool;
    return pool;
}

TextPool &types()
{
    static thread_local TextPool pool;
    return pool;
}

// The kind of icon of an extension without its dot, or the fallback when it is none of ours.
qint8 iconKindOf(QStringView extension, qint8 fallback)
{
    for (const KnownExtension &known : knownExtensions) {
        if (extension.size() == known.text.size() && extension.compare(known.text, Qt::CaseInsensitive) == 0)
            return known.iconKind;
    }
    return fallback;
}

bool isSeparator(QChar character)
{
    return character == QLatin1Char('/') || character == QLatin1Char('\\');
}

// True when the last component of the path is the name, so that the folder is all that need be kept.
bool endsInName(QStringView path, QStringView name)
{
    const qsizetype folderSize = path.size() - name.size();
    return !name.isEmpty() && folderSize > 0 && isSeparator(path.at(folderSize - 1)) && path.endsWith(name);
}

QString packedPath(QStringView path, QStringView name, bool isFolderAlone)
{
    // Folders are shared: a million files lie in some thousands of them.
    return isFolderAlone ? folders().share(path.left(path.size() - name.size())) : path.toString();
}

bool fitsIntoRecord(QStringView idCode)
{
    return idCode.size() <= idCodeCapacity && std::all_of(idCode.begin(), idCode.end(), [](QChar character) {
               return character.unicode() > 0 && character.unicode() < 0x80;
           });
}

} // namespace

FileRecord::FileRecord(FileRecord &&other) noexcept
    : id(other.id),
      size(other.size),
      loadId(other.loadId),
      storageId(other.storageId),
      thumbnailId(other.thumbnailId),
      checksum(other.checksum),
      additionSeconds(other.additionSeconds),
      modificationSeconds(other.modificationSeconds),
      name(std::move(other.name)),
      description(std::move(other.description)),
      tags(std::move(other.tags)),
      type(std::move(other.type)),
      internal(other.internal),
      iconKind(other.iconKind),
      m_path(std::move(other.m_path)),
      m_relPath(std::move(other.m_relPath)),
      // The other one must not free the code that has moved.
      m_hasForeignIdCode(std::exchange(other.m_hasForeignIdCode, false)),
      m_pathEndsInName(other.m_pathEndsInName),
      m_relPathEndsInName(other.m_relPathEndsInName)
{
    std::memcpy(m_idCode, other.m_idCode, sizeof m_idCode);
}

void FileRecord::setPath(QStringView path, QStringView nameText)
{
    m_pathEndsInName = endsInName(path, nameText);
    m_path = packedPath(path, nameText, m_pathEndsInName);
}

void FileRecord::setRelPath(QStringView relPath, QStringView nameText)
{
    m_relPathEndsInName = endsInName(relPath, nameText);
    m_relPath = packedPath(relPath, nameText, m_relPathEndsInName);
}

QString FileRecord::idCode() const
{
    if (m_hasForeignIdCode)
        return *m_foreignIdCode;
    return QString::fromLatin1(m_idCode, static_cast<int>(qstrnlen(m_idCode, idCodeCapacity)));
}

void FileRecord::setIdCode(QStringView idCode)
{
    dropForeignIdCode();
    if (fitsIntoRecord(idCode)) {
        std::transform(idCode.begin(), idCode.end(), m_idCode,
                       [](QChar character) { return character.toLatin1(); });
    } else {
        m_foreignIdCode = new QString(idCode.toString());
        m_hasForeignIdCode = true;
    }
}

void FileRecord::dropForeignIdCode()
{
    if (m_hasForeignIdCode)
        delete m_foreignIdCode;
    m_hasForeignIdCode = false;
    std::memset(m_idCode, 0, sizeof m_idCode);
}

void FileRecord::deriveType(QStringView nameText)
{
    iconKind = plainIcon;
    type = QString();
    if (internal == FileKind::hyperlink) {
        type = QStringLiteral("Hyperlink");
        iconKind = hyperlinkIcon;
        return;
    }
    // What is behind the last dot, also in a name that begins with its only one.
    const auto dot = std::find(nameText.rbegin(), nameText.rend(), QLatin1Char('.'));
    if (dot == nameText.rend())
        return;
    const QStringView dottedExtension = nameText.mid(nameText.size() - 1 - (dot - nameText.rbegin()));
    iconKind = iconKindOf(dottedExtension.mid(1), thumbnailId > 0 ? thumbnailIcon : plainIcon);
    // With its dot, and as it is written: the column shows the letter case of the name.
    type = types().share(dottedExtension);
}

void FileRecord::setType(QStringView text)
{
    type = types().share(text);
}
