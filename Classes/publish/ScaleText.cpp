#include "Classes/publish/ScaleText.h"

#include <charconv>
#include <cmath>

namespace qm {

float floatValue(const QString& text)
{
    qsizetype i = 0;
    const qsizetype n = text.size();
    while (i < n && text.at(i).isSpace())
        ++i;
    const auto isDigit = [&](qsizetype k) { return k < n && text.at(k) >= u'0' && text.at(k) <= u'9'; };

    QByteArray number;
    qsizetype k = i;
    if (k < n && (text.at(k) == u'+' || text.at(k) == u'-')) {
        if (text.at(k) == u'-')
            number += '-';
        ++k;
    }
    bool digits = false;
    while (isDigit(k)) {
        number += char(text.at(k++).unicode());
        digits = true;
    }
    if (k < n && text.at(k) == u'.') {
        number += '.';
        ++k;
        while (isDigit(k)) {
            number += char(text.at(k++).unicode());
            digits = true;
        }
    }
    if (!digits)
        return 0.0f;
    // An exponent counts only when digits follow it ("2e" reads as 2).
    if (k < n && (text.at(k) == u'e' || text.at(k) == u'E')) {
        qsizetype e = k + 1;
        QByteArray exponent = "e";
        if (e < n && (text.at(e) == u'+' || text.at(e) == u'-'))
            exponent += char(text.at(e++).unicode());
        if (isDigit(e)) {
            while (isDigit(e))
                exponent += char(text.at(e++).unicode());
            number += exponent;
        }
    }
    float value = 0.0f;
    const auto [end, error] = std::from_chars(number.constData(), number.constData() + number.size(), value);
    (void)end;
    if (error == std::errc::result_out_of_range) {
        // Too large for a float becomes infinite, too small becomes zero, as with strtof.
        double wide = 0.0;
        const auto widened = std::from_chars(number.constData(), number.constData() + number.size(), wide);
        if (widened.ec == std::errc())
            return float(wide);
        const bool tiny = number.contains("e-");
        const bool negative = number.startsWith('-');
        return tiny ? (negative ? -0.0f : 0.0f) : (negative ? -HUGE_VALF : HUGE_VALF);
    }
    return value;
}

} // namespace qm
