#pragma once

#include <QString>

#include <initializer_list>
#include <variant>

namespace qm {

/// One argument of format(): a string, an integer or a floating-point number.
class FormatArg
{
public:
    FormatArg(const QString& s) : m_value(s) {}
    FormatArg(const char* s) : m_value(QString::fromUtf8(s)) {}
    FormatArg(char16_t c) : m_value(QString(QChar(c))) {}
    template <typename T, std::enable_if_t<std::is_integral_v<T> && !std::is_same_v<T, char16_t>, int> = 0>
    FormatArg(T v) : m_value(static_cast<long long>(v))
    {
    }
    FormatArg(double v) : m_value(v) {}
    FormatArg(float v) : m_value(double(v)) {}

    const std::variant<QString, long long, double>& value() const { return m_value; }

private:
    std::variant<QString, long long, double> m_value;
};

/// printf-style formatting that also understands %@ (a string, or an integer as decimal), so
/// the program's message and file-name formats can be used exactly as written, e.g.
/// format("%@/%i%@.png", dir, 65, "@2x"). Supports flags, width, precision and the length
/// modifiers h, l, ll (ignored: every integer is formatted as long long). A missing argument
/// formats as nothing.
QString format(const char* pattern, std::initializer_list<FormatArg> args = {});

} // namespace qm
