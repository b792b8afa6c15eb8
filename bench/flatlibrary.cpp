#include "bench/flatlibrary.h"

#include "core/records/file.h"
#include "models/contents/contentsmodel.h"

#include <QCollator>

#include <algorithm>
#include <cstdlib>
#include <cstring>

namespace {

// The first four characters, which order as the text does.
quint64 headOf(const QString &text)
{
    quint64 head = 0;
    for (int i = 0; i < 4; ++i)
        head = head << 16 | (i < text.size() ? text.at(i).unicode() : 0);
    return head;
}

} // namespace

FlatLibrary::FlatLibrary(const ContentsModel &contents, const QStringList &tagNames) : m_tagNames(tagNames)
{
    const int count = contents.rowCount();
    m_tags.reserve(static_cast<size_t>(count));
    for (int row = 0; row < count; ++row) {
        const QVector<qint64> tags = contents.fileAt(row)->tags();
        m_tags.emplace_back(tags.begin(), tags.end());
    }
    for (int row = 0; row < count; ++row) {
        const File &file = *contents.fileAt(row);
        m_texts.append(file.name());
        const QString line =
            file.name() + QLatin1Char('\t') + file.description() + QLatin1Char('\t') + file.idCode();
        m_folded += line.toCaseFolded().toStdString() + '\n';
        m_dates.push_back({file.modificationSeconds(), file.id()});
    }
    for (const QString &name : qAsConst(m_texts))
        m_names.push_back({headOf(name), &name});
}

qint64 FlatLibrary::tagOnFiles(int files) const
{
    std::vector<int> counts;
    for (const std::vector<qint64> &tags : m_tags) {
        for (const qint64 tag : tags) {
            counts.resize(std::max(counts.size(), static_cast<size_t>(tag) + 1));
            ++counts[static_cast<size_t>(tag)];
        }
    }
    const auto isNearer = [files](int left, int right) {
        return std::abs(left - files) < std::abs(right - files);
    };
    return std::min_element(counts.begin(), counts.end(), isNearer) - counts.begin();
}

qint64 FlatLibrary::countTags() const
{
    std::vector<quint32> counts(static_cast<size_t>(m_tagNames.size()) + 1);
    for (const std::vector<qint64> &tags : m_tags) {
        for (const qint64 tag : tags)
            ++counts[static_cast<size_t>(tag)];
    }
    return counts[1];
}

qint64 FlatLibrary::sortByNames() const
{
    std::vector<NameKey> order = m_names;
    std::sort(order.begin(), order.end(), [](const NameKey &left, const NameKey &right) {
        if (left.head != right.head)
            return left.head < right.head;
        const int result = left.name->compare(*right.name);
        return result != 0 ? result < 0 : left.name < right.name;
    });
    return order.front().name->size();
}

qint64 FlatLibrary::sortByNumbers() const
{
    std::vector<Key> order = m_dates;
    std::sort(order.begin(), order.end(), [](const Key &left, const Key &right) {
        return left.number != right.number ? left.number < right.number : left.id < right.id;
    });
    return order.front().id;
}

qint64 FlatLibrary::search(const QString &text) const
{
    qint64 hits = 0;
    const std::string wanted = text.toCaseFolded().toStdString();
    const char *place = m_folded.data();
    const char *const end = place + m_folded.size();
    while (const void *found =
               memmem(place, static_cast<size_t>(end - place), wanted.data(), wanted.size())) {
        ++hits;
        place = static_cast<const char *>(found);
        place = static_cast<const char *>(std::memchr(place, '\n', static_cast<size_t>(end - place))) + 1;
    }
    return hits;
}

qint64 FlatLibrary::visitAll() const
{
    qint64 sum = 0;
    for (const Key &key : m_dates)
        sum += key.id;
    return sum;
}

qint64 FlatLibrary::filterTagNames(const QString &text) const
{
    return std::count_if(m_tagNames.begin(), m_tagNames.end(),
                         [&text](const QString &name) { return name.contains(text, Qt::CaseInsensitive); });
}

qint64 FlatLibrary::sortTagNames() const
{
    const QCollator collator;
    std::vector<QCollatorSortKey> keys;
    for (const QString &name : m_tagNames)
        keys.push_back(collator.sortKey(name));
    std::vector<int> order(keys.size());
    for (size_t i = 0; i < order.size(); ++i)
        order[i] = static_cast<int>(i);
    std::sort(order.begin(), order.end(), [&keys](int left, int right) {
        return keys[static_cast<size_t>(left)] < keys[static_cast<size_t>(right)];
    });
    return order.front();
}
