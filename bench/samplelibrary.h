#pragma once

#include <QString>

/**
 * The database that the large benchmarks open: files with names of many words, 4.5 tags a file in the middle,
 * frequent and rare ones, 5,000 tags, as many browsing nodes three levels deep, groups and relationships.
 * Always the same for the same number of files. Errors end the benchmark.
 */
namespace SampleLibrary {
constexpr int tagCount = 5000;
constexpr int nodeCount = 5000;
constexpr int groupCount = 20;

/** The path of the database in a folder; made there by plain sqlite3 when it is missing. */
QString preparedIn(const QString &folder, int files);
} // namespace SampleLibrary
