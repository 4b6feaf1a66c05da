#include "Classes/model/SettingsExtensions.h"

#include "Platform/archive/KeyedArchiver.h"
#include "Platform/archive/KeyedUnarchiver.h"

#include <array>
#include <utility>

namespace qm {

namespace {

// Each enumeration's names in the order of its values; the first is the default.
constexpr std::array kMetricsNames{"classic", "exact"};
constexpr std::array kKerningNames{"kern", "layout"};
constexpr std::array kUnicodeNames{"utf16", "full"};
constexpr std::array kFillSpanNames{"glyph", "line"};
constexpr std::array kHintingNames{"none", "light"};

template <typename Enum, std::size_t N>
QString nameOf(const std::array<const char*, N>& names, Enum value)
{
    const auto index = std::size_t(value);
    return index < N ? QString::fromLatin1(names[index]) : QString();
}

template <typename Enum, std::size_t N>
std::optional<Enum> named(const std::array<const char*, N>& names, const QString& name)
{
    for (std::size_t i = 0; i < N; ++i)
        if (name.compare(QLatin1String(names[i]), Qt::CaseInsensitive) == 0)
            return Enum(i);
    return std::nullopt;
}

// Project-file keys.
const QString kMetricsKey = QStringLiteral("metricsMode");
const QString kKerningKey = QStringLiteral("kerningSource");
const QString kUnicodeKey = QStringLiteral("unicodeMode");
const QString kFallbackKey = QStringLiteral("fallbackFamilies");
const QString kFillSpanKey = QStringLiteral("fillSpan");
const QString kHintingKey = QStringLiteral("hinting");
const QString kPagesKey = QStringLiteral("pages");
const QString kDistanceFieldKey = QStringLiteral("distanceFieldSpread");

/// Most fallback families a project file may list.
constexpr qsizetype kMaxFallbacks = 64;

template <typename Enum, std::size_t N>
void decodeName(const KeyedUnarchiver& coder, const QString& key, const std::array<const char*, N>& names,
                Enum* value, QStringList* problems)
{
    if (!coder.containsValue(key))
        return;
    const QString text = coder.decodeString(key);
    if (const std::optional<Enum> found = named<Enum>(names, text)) {
        *value = *found;
        return;
    }
    if (problems)
        problems->append(QStringLiteral("'%1' is '%2', which is not one of %3; using '%4'")
                             .arg(key, text, QStringList(names.begin(), names.end()).join(QStringLiteral(", ")),
                                  QString::fromLatin1(names[0])));
}

void decodeInt(const KeyedUnarchiver& coder, const QString& key, int min, int max, int* value,
               QStringList* problems)
{
    if (!coder.containsValue(key))
        return;
    const int n = coder.decodeInt(key);
    if (n >= min && n <= max) {
        *value = n;
        return;
    }
    if (problems)
        problems->append(QStringLiteral("'%1' is %2, outside %3 to %4; using %5")
                             .arg(key)
                             .arg(n)
                             .arg(min)
                             .arg(max)
                             .arg(*value));
}

} // namespace

QString metricsModeName(MetricsMode mode) { return nameOf(kMetricsNames, mode); }
std::optional<MetricsMode> metricsModeNamed(const QString& name) { return named<MetricsMode>(kMetricsNames, name); }
QString kerningSourceName(KerningSource source) { return nameOf(kKerningNames, source); }
std::optional<KerningSource> kerningSourceNamed(const QString& name)
{
    return named<KerningSource>(kKerningNames, name);
}
QString unicodeModeName(UnicodeMode mode) { return nameOf(kUnicodeNames, mode); }
std::optional<UnicodeMode> unicodeModeNamed(const QString& name) { return named<UnicodeMode>(kUnicodeNames, name); }
QString fillSpanName(FillSpan span) { return nameOf(kFillSpanNames, span); }
std::optional<FillSpan> fillSpanNamed(const QString& name) { return named<FillSpan>(kFillSpanNames, name); }
QString hintingName(Hinting hinting) { return nameOf(kHintingNames, hinting); }
std::optional<Hinting> hintingNamed(const QString& name) { return named<Hinting>(kHintingNames, name); }

void SettingsExtensions::encodeWithCoder(KeyedArchiver& coder) const
{
    const SettingsExtensions defaults;
    if (metrics != defaults.metrics)
        coder.encodeObject(metricsModeName(metrics), kMetricsKey);
    if (kerning != defaults.kerning)
        coder.encodeObject(kerningSourceName(kerning), kKerningKey);
    if (unicode != defaults.unicode)
        coder.encodeObject(unicodeModeName(unicode), kUnicodeKey);
    if (!fallbackFamilies.isEmpty()) {
        QList<ArchiveRef> names;
        for (const QString& family : fallbackFamilies)
            names.append(coder.string(family));
        coder.encodeObject(coder.array(names), kFallbackKey);
    }
    if (fillSpan != defaults.fillSpan)
        coder.encodeObject(fillSpanName(fillSpan), kFillSpanKey);
    if (hinting != defaults.hinting)
        coder.encodeObject(hintingName(hinting), kHintingKey);
    if (pages != defaults.pages)
        coder.encodeInt(pages, kPagesKey);
    if (distanceField != defaults.distanceField)
        coder.encodeInt(distanceField, kDistanceFieldKey);
}

void SettingsExtensions::initWithCoder(const KeyedUnarchiver& coder, QStringList* problems)
{
    decodeName(coder, kMetricsKey, kMetricsNames, &metrics, problems);
    decodeName(coder, kKerningKey, kKerningNames, &kerning, problems);
    decodeName(coder, kUnicodeKey, kUnicodeNames, &unicode, problems);
    if (coder.containsValue(kFallbackKey)) {
        const QList<ArchiveRef> names = coder.arrayElements(coder.decodeObject(kFallbackKey), kMaxFallbacks);
        for (ArchiveRef name : names)
            if (const QString family = coder.stringValue(name); !family.isEmpty())
                fallbackFamilies.append(family);
    }
    decodeName(coder, kFillSpanKey, kFillSpanNames, &fillSpan, problems);
    decodeName(coder, kHintingKey, kHintingNames, &hinting, problems);
    decodeInt(coder, kPagesKey, 1, kMaxPages, &pages, problems);
    decodeInt(coder, kDistanceFieldKey, 0, kMaxDistanceField, &distanceField, problems);
}

} // namespace qm
