#include "Platform/text/FontCatalog.h"

#include <fontconfig/fontconfig.h>

#include <QSet>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace qm::fontcatalog {

namespace {

struct PatternDeleter {
    void operator()(FcPattern* p) const { FcPatternDestroy(p); }
};
struct FontSetDeleter {
    void operator()(FcFontSet* s) const { FcFontSetDestroy(s); }
};
struct ObjectSetDeleter {
    void operator()(FcObjectSet* s) const { FcObjectSetDestroy(s); }
};
using PatternPtr = std::unique_ptr<FcPattern, PatternDeleter>;

FcConfig* config()
{
    static const bool initialised = FcInit();
    (void)initialised;
    return FcConfigGetCurrent();
}

QString stringOf(FcPattern* p, const char* object, int id = 0)
{
    FcChar8* s = nullptr;
    if (FcPatternGetString(p, object, id, &s) != FcResultMatch || !s)
        return {};
    return QString::fromUtf8(reinterpret_cast<const char*>(s));
}

int intOf(FcPattern* p, const char* object, int fallback)
{
    int v = 0;
    if (FcPatternGetInteger(p, object, 0, &v) == FcResultMatch)
        return v;
    double d = 0;
    if (FcPatternGetDouble(p, object, 0, &d) == FcResultMatch)
        return int(d);
    return fallback;
}

QList<Entry> run(FcPattern* pattern)
{
    std::unique_ptr<FcObjectSet, ObjectSetDeleter> objects(
        FcObjectSetBuild(FC_FILE, FC_INDEX, FC_FAMILY, FC_STYLE, FC_POSTSCRIPT_NAME, FC_WEIGHT, FC_SLANT,
                         FC_WIDTH, FC_SPACING, FC_OUTLINE, nullptr));
    std::unique_ptr<FcFontSet, FontSetDeleter> set(FcFontList(config(), pattern, objects.get()));
    QList<Entry> out;
    if (!set)
        return out;
    QSet<QString> seen;
    for (int i = 0; i < set->nfont; ++i) {
        FcPattern* f = set->fonts[i];
        FcBool outline = FcTrue;
        if (FcPatternGetBool(f, FC_OUTLINE, 0, &outline) == FcResultMatch && !outline)
            continue; // bitmap-only strikes have no outlines to draw
        Entry e;
        e.filePath = stringOf(f, FC_FILE);
        e.faceIndex = intOf(f, FC_INDEX, 0);
        const QString key = e.filePath + QLatin1Char('#') + QString::number(e.faceIndex);
        if (e.filePath.isEmpty() || seen.contains(key))
            continue;
        seen.insert(key);
        e.family = stringOf(f, FC_FAMILY);
        e.style = stringOf(f, FC_STYLE);
        e.postScriptName = stringOf(f, FC_POSTSCRIPT_NAME);
        e.fcWeight = intOf(f, FC_WEIGHT, FC_WEIGHT_REGULAR);
        e.fcSlant = intOf(f, FC_SLANT, FC_SLANT_ROMAN);
        e.fcWidth = intOf(f, FC_WIDTH, FC_WIDTH_NORMAL);
        e.monospace = intOf(f, FC_SPACING, FC_PROPORTIONAL) >= FC_MONO;
        out.append(e);
    }
    return out;
}

const char* objectFor(Key key)
{
    switch (key) {
    case Key::Family: return FC_FAMILY;
    case Key::FullName: return FC_FULLNAME;
    case Key::PostScriptName: return FC_POSTSCRIPT_NAME;
    }
    return FC_FAMILY;
}

} // namespace

QList<Entry> list(Key key, const QString& value)
{
    if (value.isEmpty())
        return {};
    PatternPtr pattern(FcPatternCreate());
    const QByteArray utf8 = value.toUtf8();
    FcPatternAddString(pattern.get(), objectFor(key), reinterpret_cast<const FcChar8*>(utf8.constData()));
    return run(pattern.get());
}

QList<Entry> all()
{
    PatternPtr pattern(FcPatternCreate());
    return run(pattern.get());
}

QStringList aliases(const QString& family)
{
    if (family.isEmpty())
        return {};
    PatternPtr pattern(FcPatternCreate());
    const QByteArray utf8 = family.toUtf8();
    FcPatternAddString(pattern.get(), FC_FAMILY, reinterpret_cast<const FcChar8*>(utf8.constData()));
    FcConfigSubstitute(config(), pattern.get(), FcMatchPattern);
    // Generic fallbacks ("sans-serif" and what it expands to) are appended with weak binding;
    // metric-compatible replacements are bound "same" or "strong". Only the latter count.
    QStringList out;
    for (int id = 1;; ++id) {
        FcValue value;
        FcValueBinding binding = FcValueBindingWeak;
        if (FcPatternGetWithBinding(pattern.get(), FC_FAMILY, id, &value, &binding) != FcResultMatch)
            break;
        if (value.type != FcTypeString || binding == FcValueBindingWeak)
            continue;
        const QString name = QString::fromUtf8(reinterpret_cast<const char*>(value.u.s));
        if (name.compare(family, Qt::CaseInsensitive) != 0 && !out.contains(name, Qt::CaseInsensitive))
            out.append(name);
    }
    return out;
}

bool addApplicationFont(const QString& path)
{
    const QByteArray local = path.toLocal8Bit();
    return FcConfigAppFontAddFile(config(), reinterpret_cast<const FcChar8*>(local.constData())) == FcTrue;
}

void sortMembers(QList<Entry>& entries)
{
    // The regular face leads: code that takes "the family's first member" (its kerning and
    // character map, for one) then reads the face that is drawn, not an extra-light cousin that
    // happens to sort first by weight.
    const Entry* regular = mostRegular(entries);
    const QString regularFile = regular ? regular->filePath : QString();
    const int regularIndex = regular ? regular->faceIndex : 0;
    std::stable_sort(entries.begin(), entries.end(), [&](const Entry& a, const Entry& b) {
        const bool aRegular = a.filePath == regularFile && a.faceIndex == regularIndex;
        const bool bRegular = b.filePath == regularFile && b.faceIndex == regularIndex;
        if (aRegular != bRegular)
            return aRegular;
        if (a.fcWeight != b.fcWeight)
            return a.fcWeight < b.fcWeight;
        if (a.fcSlant != b.fcSlant)
            return a.fcSlant < b.fcSlant;
        if (a.fcWidth != b.fcWidth)
            return std::abs(a.fcWidth - FC_WIDTH_NORMAL) < std::abs(b.fcWidth - FC_WIDTH_NORMAL);
        if (a.style != b.style)
            return a.style < b.style;
        return a.postScriptName < b.postScriptName;
    });
}

const Entry* mostRegular(const QList<Entry>& entries)
{
    const Entry* best = nullptr;
    auto cost = [](const Entry& e) {
        return std::abs(e.fcWidth - FC_WIDTH_NORMAL) * 1000 + (e.fcSlant != FC_SLANT_ROMAN ? 500 : 0) +
               std::abs(e.fcWeight - FC_WEIGHT_REGULAR);
    };
    for (const Entry& e : entries)
        if (!best || cost(e) < cost(*best))
            best = &e;
    return best;
}

} // namespace qm::fontcatalog
