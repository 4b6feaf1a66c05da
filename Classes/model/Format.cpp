#include "Classes/model/Format.h"

#include <cstring>

namespace qm {

namespace {

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
        return QString::asprintf((spec + conversion).constData(), d);
    }
    long long n = 0;
    if (const auto* i = std::get_if<long long>(&v))
        n = *i;
    else if (const auto* x = std::get_if<double>(&v))
        n = static_cast<long long>(*x);
    else
        return std::get<QString>(v); // a string handed to an integer conversion
    if (conversion == 'x' || conversion == 'X' || conversion == 'o' || conversion == 'u')
        return QString::asprintf((spec + "ll" + conversion).constData(), static_cast<unsigned long long>(n));
    return QString::asprintf((spec + "ll" + conversion).constData(), n);
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
