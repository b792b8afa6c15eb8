#pragma once

#include <QDataStream>

/**
 * Reads a list as the toolkit wrote it, but makes no room ahead for the count that stands in the stream. The
 * toolkit's own operator does, so that one damaged byte in the settings would end the program at each start.
 */
template <class List>
QDataStream &readList(QDataStream &stream, List &list)
{
    list.clear();
    quint32 count = 0;
    stream >> count;
    for (quint32 i = 0; i < count && stream.status() == QDataStream::Ok; ++i) {
        typename List::value_type entry{};
        stream >> entry;
        list.append(entry);
    }
    if (stream.status() != QDataStream::Ok)
        list.clear();
    return stream;
}
