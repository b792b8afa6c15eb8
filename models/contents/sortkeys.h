#pragma once

#include <vector>

class ContentsModel;

/** Sorting rows of the ContentsModel by the values of a column, equal ones by the id of the file. */
namespace SortKeys {
bool isLess(const ContentsModel &contents, int column, int leftRow, int rightRow);
void sort(const ContentsModel &contents, int column, std::vector<int> &rows);
/** Puts rows in any order among sorted ones. */
void merge(const ContentsModel &contents, int column, std::vector<int> &order, std::vector<int> fresh);
} // namespace SortKeys
