#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace qm {

class KeyedArchiver;
class KeyedUnarchiver;

/// How glyph metrics are computed: by the classic rules, or so that ink, advances, kerning and
/// line metrics land where an engine that lays the font out with FreeType draws them.
enum class MetricsMode { Classic, Exact };
/// Where kerning pairs come from when kerning is on: the `kern` table, or the pair adjustments
/// that text shaping applies (the layout tables).
enum class KerningSource { Kern, Layout };
/// What one glyph stands for: a UTF-16 code unit (classic) or a whole code point.
enum class UnicodeMode { Utf16, Full };
/// The box that gradients and the gloss span: each glyph's own, or the font's line box.
enum class FillSpan { Glyph, Line };
/// Outline hinting when measuring and rendering.
enum class Hinting { None, Light };

/// Project settings beyond the classic behaviour. Every default reproduces the classic output
/// byte for byte. A project file carries a value only when it differs from its default, so
/// classic projects save exactly as before and older readers, which ignore unknown keys, open
/// them all.
struct SettingsExtensions
{
    MetricsMode metrics = MetricsMode::Classic;
    KerningSource kerning = KerningSource::Kern;
    UnicodeMode unicode = UnicodeMode::Utf16;
    /// Families asked, in order, for characters the main font lacks.
    QStringList fallbackFamilies;
    FillSpan fillSpan = FillSpan::Glyph;
    Hinting hinting = Hinting::None;
    /// The most texture pages a target may fill (1 .. kMaxPages).
    int pages = 1;
    /// Spread in pixels of a distance-field font (1 .. kMaxDistanceField); 0 = a plain bitmap font.
    int distanceField = 0;

    static constexpr int kMaxPages = 16;
    static constexpr int kMaxDistanceField = 32;

    bool operator==(const SettingsExtensions&) const = default;
    bool isClassic() const { return *this == SettingsExtensions(); }

    /// Writes the values that differ from their defaults into the record being encoded.
    void encodeWithCoder(KeyedArchiver& coder) const;
    /// Reads the keys present in the record being decoded; a key that is absent keeps its
    /// default. A value that is not one the program writes keeps the default too, and a message
    /// naming the key is appended to `problems`.
    void initWithCoder(const KeyedUnarchiver& coder, QStringList* problems = nullptr);
};

// The names used by the command line, `info` and the project file.
QString metricsModeName(MetricsMode mode);
std::optional<MetricsMode> metricsModeNamed(const QString& name);
QString kerningSourceName(KerningSource source);
std::optional<KerningSource> kerningSourceNamed(const QString& name);
QString unicodeModeName(UnicodeMode mode);
std::optional<UnicodeMode> unicodeModeNamed(const QString& name);
QString fillSpanName(FillSpan span);
std::optional<FillSpan> fillSpanNamed(const QString& name);
QString hintingName(Hinting hinting);
std::optional<Hinting> hintingNamed(const QString& name);

} // namespace qm
