#pragma once

#include <QString>

namespace qm {

/// A number typed as text (a target's "scale") read the way the program reads it: leading
/// blanks skipped, the longest leading decimal number (sign, digits, point, exponent) taken,
/// anything after it ignored, 0 when the text does not start with a number. Single precision,
/// because scaled copies multiply this value and "%.4f" shows the difference (33.3333 halved
/// gives 16.6667 from a float but 16.6666 from a double).
float floatValue(const QString& text);

} // namespace qm
