#include "Classes/model/Format.h"

#include <cstdio>
#include <cstring>

namespace qm {

namespace {

/// C's printf: Qt's own formatter rounds exact halves up, printf to even ("%.4f" of 0.53125 is
/// 0.5312), and the files must read as printf writes them.
template <typename T> QString cFormat(const QByteArray& spec, T value)
{
    char buffer[128];
    const int n = std::snprintf(buffer, sizeof buffer, spec.constData(), value);
    if (n < 0)
        return {};
    if (size_t(n) < sizeof buffer)
        return QString::fromLatin1(buffer, n);
    QByteArray big(n + 1, '\0');
    std::snprintf(big.data(), size_t(big.size()), spec.constData(), value);
    return QString::fromLatin1(big.constData(), n);
}

QString formatOne(const QByteArray& spec, char conversion, const FormatArg& arg)
{
    const auto& v = arg.value();
    if (conversion == '@') {
        if (const auto* s = std::get_if<QString>(&v))
            return *s;
        if (const auto* i = std::get_if<long long>(&v))
            return QString::number(*i);
        return QString::number(std::get<double>(v));
    }
    if (conversion == 'c') {
        if (const auto* s = std::get_if<QString>(&v))
            return s->left(1);
        if (const auto* i = std::get_if<long long>(&v))
            return QString(QChar(char16_t(*i)));
        return {};
    }
    const bool floating = std::strchr("fFeEgGaA", conversion) != nullptr;
    if (floating) {
        double d = 0;
        if (const auto* x = std::get_if<double>(&v))
            d = *x;
        else if (const auto* i = std::get_if<long long>(&v))
            d = double(*i);
        return cFormat(spec + conversion, d);
    }
    long long n = 0;
    if (const auto* i = std::get_if<long long>(&v))
        n = *i;
    else if (const auto* x = std::get_if<double>(&v))
        n = static_cast<long long>(*x);
    else
        return std::get<QString>(v); // a string handed to an integer conversion
    if (conversion == 'x' || conversion == 'X' || conversion == 'o' || conversion == 'u')
        return cFormat(spec + "ll" + conversion, static_cast<unsigned long long>(n));
    return cFormat(spec + "ll" + conversion, n);
}

} // namespace

QString format(const char* pattern, std::initializer_list<FormatArg> args)
{
    QString out;
    const FormatArg* next = args.begin();
    const char* p = pattern;
    const char* literal = p;
    while (*p) {
        if (*p != '%') {
            ++p;
            continue;
        }
        out += QString::fromUtf8(literal, p - literal);
        if (p[1] == '%') {
            out += QLatin1Char('%');
            p += 2;
            literal = p;
            continue;
        }
        // %[flags][width][.precision][length]conversion
        QByteArray spec("%");
        ++p;
        while (*p && std::strchr("-+ #0", *p))
            spec += *p++;
        while (*p >= '0' && *p <= '9')
            spec += *p++;
        if (*p == '.') {
            spec += *p++;
            while (*p >= '0' && *p <= '9')
                spec += *p++;
        }
        while (*p == 'h' || *p == 'l' || *p == 'q' || *p == 'z')
            ++p;
        const char conversion = *p ? *p++ : '\0';
        if (conversion && next != args.end())
            out += formatOne(spec, conversion, *next++);
        literal = p;
    }
    out += QString::fromUtf8(literal, p - literal);
    return out;
}

} // namespace qm
