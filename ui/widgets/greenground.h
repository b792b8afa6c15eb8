#pragma once

#include <QString>

/**
 * The pale green of what stands for tags by rule: of the relationships and of the D-Tags. On a dark palette
 * it would glare: there the base is tinted with it. GUI thread.
 */
namespace GreenGround {
/** Whether the palette of the program is a dark one. */
bool isDark();
/** A rule of a style sheet that gives views of this selector the green as it fits the palette. */
QString styleSheet(const QString &selector);
} // namespace GreenGround
