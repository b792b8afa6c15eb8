#pragma once

#include <QString>

/** The schema versions that an upgrade knows, in their order. */
enum DataBaseVersion {
    UnknownVersion = 0,
    Version_0_5_3 = 1,
    Version_2_0_3 = 2,
    Version_2_0_6 = 3,
    Version_2_0_7 = 4,
    Version_2_0_8 = 5,
    Version_3_2_0 = 6,
    Version_4_1_0 = 7
};

namespace DataBaseVersions {
constexpr int current = Version_4_1_0;
constexpr int count = current + 1;

/** "0.0.0" for the unknown version and for every value out of range. */
QString name(int version);

/**
 * The version that the text of vorna_version stands for: an exact name, or else the highest known one that is
 * not above it. The third number of a text is not looked at in that search. Unparsable texts are unknown.
 */
int fromProgramText(const QString &text);

/** The version that the text of scheme_version stands for, 0 when it names none. */
int fromSchemaText(const QString &text);
} // namespace DataBaseVersions
