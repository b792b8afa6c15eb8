#pragma once

#include <QMap>
#include <QString>

/**
 * The texts of the fixed nodes of the browsing tree. The keys of both maps are the values 2 to 7 of NodeType;
 * the node that shows everything (value 1) has its name in allFiles. In the language of the first call.
 */
namespace SpecialNodes {
QString allFiles();

/** The wording of a description or tool tip. */
const QMap<int, QString> &longTexts();

/** The wording of the tree itself and of the requirements bar. */
const QMap<int, QString> &shortTexts();
} // namespace SpecialNodes
