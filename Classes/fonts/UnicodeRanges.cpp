#include "Classes/fonts/UnicodeRanges.h"

#include "Classes/model/Format.h"

#include <algorithm>

namespace qm {

namespace {

int hexDigit(char16_t c)
{
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    if (c >= u'a' && c <= u'f')
        return c - u'a' + 10;
    if (c >= u'A' && c <= u'F')
        return c - u'A' + 10;
    return -1;
}

/// Scans a hexadecimal number the way the range fields always have: leading white space, an
/// optional "0x" or "0X", then hexadecimal digits of either case up to the first other
/// character. No digit reads 0; a value past 32 bits reads 0xFFFFFFFF.
quint32 scanHex(QStringView text)
{
    qsizetype i = 0;
    while (i < text.size() && text[i].isSpace())
        ++i;
    if (i + 1 < text.size() && text[i] == u'0' && (text[i + 1] == u'x' || text[i + 1] == u'X'))
        i += 2;
    quint64 value = 0;
    for (int digit; i < text.size() && (digit = hexDigit(text[i].unicode())) >= 0; ++i)
        value = std::min<quint64>(value * 16 + digit, 0x1'0000'0000ull);
    return value > 0xFFFFFFFFull ? 0xFFFFFFFFu : quint32(value);
}

} // namespace

const QList<UnicodeBlock>& UnicodeRanges::blocks()
{
    // The range texts are kept as they were first written, digits in mixed case.
    static const QList<UnicodeBlock> table = {
        {QStringLiteral("basicLatin"), QStringLiteral("0x0021-0x007f")},
        {QStringLiteral("latin1Supplement"), QStringLiteral("0x0080-0x00ff")},
        {QStringLiteral("latinExtendedA"), QStringLiteral("0x0100-0x017F")},
        {QStringLiteral("latinExtendedB"), QStringLiteral("0x0180-0x024F")},
        {QStringLiteral("ipaExtensions"), QStringLiteral("0x0250-0x02AF")},
        {QStringLiteral("spacingModifierLetters"), QStringLiteral("0x02B0-0x02FF")},
        {QStringLiteral("combiningDiacriticalMarks"), QStringLiteral("0x0300-0x036F")},
        {QStringLiteral("greekAndCoptic"), QStringLiteral("0x0370-0x03FF")},
        {QStringLiteral("cyrillic"), QStringLiteral("0x0400-0x04FF")},
        {QStringLiteral("cyrillicSupplementary"), QStringLiteral("0x0500-0x052F")},
        {QStringLiteral("armenian"), QStringLiteral("0x0530-0x058F")},
        {QStringLiteral("hebrew"), QStringLiteral("0x0590-0x05FF")},
        {QStringLiteral("arabic"), QStringLiteral("0x0600-0x06FF")},
        {QStringLiteral("syriac"), QStringLiteral("0x0700-0x074F")},
        {QStringLiteral("thaana"), QStringLiteral("0x0780-0x07BF")},
        {QStringLiteral("devanagari"), QStringLiteral("0x0900-0x097F")},
        {QStringLiteral("bengali"), QStringLiteral("0x0980-0x09FF")},
        {QStringLiteral("gurmukhi"), QStringLiteral("0x0A00-0x0A7F")},
        {QStringLiteral("gujarati"), QStringLiteral("0x0A80-0x0AFF")},
        {QStringLiteral("oriya"), QStringLiteral("0x0B00-0x0B7F")},
        {QStringLiteral("tamil"), QStringLiteral("0x0B80-0x0BFF")},
        {QStringLiteral("telugu"), QStringLiteral("0x0C00-0x0C7F")},
        {QStringLiteral("kannada"), QStringLiteral("0x0C80-0x0CFF")},
        {QStringLiteral("malayalam"), QStringLiteral("0x0D00-0x0D7F")},
        {QStringLiteral("sinhala"), QStringLiteral("0x0D80-0x0DFF")},
        {QStringLiteral("thai"), QStringLiteral("0x0E00-0x0E7F")},
        {QStringLiteral("lao"), QStringLiteral("0x0E80-0x0EFF")},
        {QStringLiteral("tibetan"), QStringLiteral("0x0F00-0x0FFF")},
        {QStringLiteral("myanmar"), QStringLiteral("0x1000-0x109F")},
        {QStringLiteral("georgian"), QStringLiteral("0x10A0-0x10FF")},
        {QStringLiteral("hangulJamo"), QStringLiteral("0x1100-0x11FF")},
        {QStringLiteral("ethiopic"), QStringLiteral("0x1200-0x137F")},
        {QStringLiteral("cherokee"), QStringLiteral("0x13A0-0x13FF")},
        {QStringLiteral("unifiedCanadianAboriginalSyllabics"), QStringLiteral("0x1400-0x167F")},
        {QStringLiteral("ogham"), QStringLiteral("0x1680-0x169F")},
        {QStringLiteral("runic"), QStringLiteral("0x16A0-0x16FF")},
        {QStringLiteral("tagalog"), QStringLiteral("0x1700-0x171F")},
        {QStringLiteral("hanunoo"), QStringLiteral("0x1720-0x173F")},
        {QStringLiteral("buhid"), QStringLiteral("0x1740-0x175F")},
        {QStringLiteral("tagbanwa"), QStringLiteral("0x1760-0x177F")},
        {QStringLiteral("khmer"), QStringLiteral("0x1780-0x17FF")},
        {QStringLiteral("mongolian"), QStringLiteral("0x1800-0x18AF")},
        {QStringLiteral("limbu"), QStringLiteral("0x1900-0x194F")},
        {QStringLiteral("taiLe"), QStringLiteral("0x1950-0x197F")},
        {QStringLiteral("khmerSymbols"), QStringLiteral("0x19E0-0x19FF")},
        {QStringLiteral("phoneticExtensions"), QStringLiteral("0x1D00-0x1D7F")},
        {QStringLiteral("latinExtendedAdditional"), QStringLiteral("0x1E00-0x1EFF")},
        {QStringLiteral("greekExtended"), QStringLiteral("0x1F00-0x1FFF")},
        {QStringLiteral("generalPunctuation"), QStringLiteral("0x2000-0x206F")},
        {QStringLiteral("superscriptsAndSubscripts"), QStringLiteral("0x2070-0x209F")},
        {QStringLiteral("currencySymbols"), QStringLiteral("0x20A0-0x20CF")},
        {QStringLiteral("combiningDiacriticalMarksForSymbols"), QStringLiteral("0x20D0-0x20FF")},
        {QStringLiteral("letterlikeSymbols"), QStringLiteral("0x2100-0x214F")},
        {QStringLiteral("numberForms"), QStringLiteral("0x2150-0x218F")},
        {QStringLiteral("arrows"), QStringLiteral("0x2190-0x21FF")},
        {QStringLiteral("mathematicalOperators"), QStringLiteral("0x2200-0x22FF")},
        {QStringLiteral("miscellaneousTechnical"), QStringLiteral("0x2300-0x23FF")},
        {QStringLiteral("controlPictures"), QStringLiteral("0x2400-0x243F")},
        {QStringLiteral("opticalCharacterRecognition"), QStringLiteral("0x2440-0x245F")},
        {QStringLiteral("enclosedAlphanumerics"), QStringLiteral("0x2460-0x24FF")},
        {QStringLiteral("boxDrawing"), QStringLiteral("0x2500-0x257F")},
        {QStringLiteral("blockElements"), QStringLiteral("0x2580-0x259F")},
        {QStringLiteral("geometricShapes"), QStringLiteral("0x25A0-0x25FF")},
        {QStringLiteral("miscellaneousSymbols"), QStringLiteral("0x2600-0x26FF")},
        {QStringLiteral("dingbats"), QStringLiteral("0x2700-0x27BF")},
        {QStringLiteral("miscellaneousMathematicalSymbolsA"), QStringLiteral("0x27C0-0x27EF")},
        {QStringLiteral("supplementalArrowsA"), QStringLiteral("0x27F0-0x27FF")},
        {QStringLiteral("braillePatterns"), QStringLiteral("0x2800-0x28FF")},
        {QStringLiteral("supplementalArrowsB"), QStringLiteral("0x2900-0x297F")},
        {QStringLiteral("miscellaneousMathematicalSymbolsB"), QStringLiteral("0x2980-0x29FF")},
        {QStringLiteral("supplementalMathematicalOperators"), QStringLiteral("0x2A00-0x2AFF")},
        {QStringLiteral("miscellaneousSymbolsAndArrows"), QStringLiteral("0x2B00-0x2BFF")},
        {QStringLiteral("cjkRadicalsSupplement"), QStringLiteral("0x2E80-0x2EFF")},
        {QStringLiteral("kangxiRadicals"), QStringLiteral("0x2F00-0x2FDF")},
        {QStringLiteral("ideographicDescriptionCharacters"), QStringLiteral("0x2FF0-0x2FFF")},
        {QStringLiteral("cjkSymbolsAndPunctuation"), QStringLiteral("0x3000-0x303F")},
        {QStringLiteral("hiragana"), QStringLiteral("0x3040-0x309F")},
        {QStringLiteral("katakana"), QStringLiteral("0x30A0-0x30FF")},
        {QStringLiteral("bopomofo"), QStringLiteral("0x3100-0x312F")},
        {QStringLiteral("hangulCompatibilityJamo"), QStringLiteral("0x3130-0x318F")},
        {QStringLiteral("kanbun"), QStringLiteral("0x3190-0x319F")},
        {QStringLiteral("bopomofoExtended"), QStringLiteral("0x31A0-0x31BF")},
        {QStringLiteral("katakanaPhoneticExtensions"), QStringLiteral("0x31F0-0x31FF")},
        {QStringLiteral("enclosedCjkLettersAndMonths"), QStringLiteral("0x3200-0x32FF")},
        {QStringLiteral("cjkCompatibility"), QStringLiteral("0x3300-0x33FF")},
        {QStringLiteral("cjkUnifiedIdeographsExtensionA"), QStringLiteral("0x3400-0x4DBF")},
        {QStringLiteral("yijingHexagramSymbols"), QStringLiteral("0x4DC0-0x4DFF")},
        {QStringLiteral("yiRadicals"), QStringLiteral("0xA490-0xA4CF")},
        {QStringLiteral("highSurrogates"), QStringLiteral("0xD800-0xDB7F")},
        {QStringLiteral("highPrivateUseSurrogates"), QStringLiteral("0xDB80-0xDBFF")},
        {QStringLiteral("lowSurrogates"), QStringLiteral("0xDC00-0xDFFF")},
        {QStringLiteral("privateUseArea"), QStringLiteral("0xE000-0xF8FF")},
        {QStringLiteral("cjkCompatibilityIdeographs"), QStringLiteral("0xF900-0xFAFF")},
        {QStringLiteral("alphabeticPresentationForms"), QStringLiteral("0xFB00-0xFB4F")},
        {QStringLiteral("arabicPresentationFormsA"), QStringLiteral("0xFB50-0xFDFF")},
        {QStringLiteral("combiningHalfMarks"), QStringLiteral("0xFE20-0xFE2F")},
        {QStringLiteral("cjkCompatibilityForms"), QStringLiteral("0xFE30-0xFE4F")},
        {QStringLiteral("smallFormVariants"), QStringLiteral("0xFE50-0xFE6F")},
        {QStringLiteral("arabicPresentationFormsB"), QStringLiteral("0xFE70-0xFEFF")},
        {QStringLiteral("halfwidthAndFullwidthForms"), QStringLiteral("0xFF00-0xFFEF")},
        {QStringLiteral("specials"), QStringLiteral("0xFFF0-0xFFFF")},
    };
    return table;
}

QStringList UnicodeRanges::allrangesArray()
{
    QStringList names;
    names.reserve(blocks().size());
    for (const UnicodeBlock& b : blocks())
        names.append(b.name);
    return names;
}

const QMap<QString, QString>& UnicodeRanges::allrangeskeys()
{
    static const QMap<QString, QString> keys = [] {
        QMap<QString, QString> map;
        for (const UnicodeBlock& b : blocks())
            map.insert(b.name, b.range);
        return map;
    }();
    return keys;
}

std::optional<UnicodeBlock> UnicodeRanges::blockNamed(const QString& name)
{
    for (const UnicodeBlock& b : blocks())
        if (b.name.compare(name, Qt::CaseInsensitive) == 0)
            return b;
    return std::nullopt;
}

CodeRange UnicodeRanges::parseRange(const QString& rangeText)
{
    const qsizetype dash = rangeText.indexOf(u'-');
    if (dash < 0)
        return {scanHex(rangeText), 0};
    return {scanHex(QStringView(rangeText).left(dash)), scanHex(QStringView(rangeText).mid(dash + 1))};
}

CodeRange UnicodeRanges::quickSet(int tag)
{
    switch (tag) {
    case 1:
        return {0x21, 0x7E};
    case 2:
        return {0xA1, 0xFF};
    case 3:
        return {0x370, 0x3CF};
    case 4:
        return {0x400, 0x4FF};
    case 6:
        return {0x2200, 0x22FF};
    case 7:
        return {0x2500, 0x257F};
    default: // tag 5 and every unknown tag: U+0000 alone
        return {0x0, 0x0};
    }
}

quint32 UnicodeRanges::readHexField(const QString& text)
{
    return scanHex(format("0x%@", {text}));
}

QString UnicodeRanges::hexFieldText(quint32 value)
{
    return format("%lX", {value});
}

QString UnicodeRanges::codesText(quint32 start, quint32 end)
{
    QString text;
    if (end < start)
        return text;
    text.reserve(qsizetype(end - start) + 1);
    for (quint64 c = start; c <= end; ++c)
        text.append(QChar(char16_t(c & 0xFFFF)));
    return text;
}

} // namespace qm
