#include "Platform/text/Font.h"

#include "Platform/text/FontCatalog.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H
#include FT_BBOX_H
#include FT_TRUETYPE_TABLES_H

#include <QFileInfo>
#include <QHash>
#include <QLoggingCategory>

#include <list>
#include <unordered_map>

Q_LOGGING_CATEGORY(lcFont, "quillmark.font")

namespace qm {

namespace {

FT_Library library()
{
    // One FreeType instance for the process; everything runs on the main thread.
    static FT_Library lib = [] {
        FT_Library l = nullptr;
        if (FT_Init_FreeType(&l) != 0)
            qCCritical(lcFont) << "FreeType could not be initialised";
        return l;
    }();
    return lib;
}

struct GlyphMetrics
{
    FT_BBox box{};     // font units
    FT_Pos advance = 0; // font units
    bool valid = false;
};

} // namespace

/// One opened FreeType face. Everything is read unscaled (font units) and scaled by Font, so
/// one face serves every size.
class FontFace
{
public:
    FontFace(FT_Face face, QString path) : m_face(face), m_path(std::move(path)) {}
    ~FontFace() { FT_Done_Face(m_face); }
    FontFace(const FontFace&) = delete;
    FontFace& operator=(const FontFace&) = delete;

    FT_Face face() const { return m_face; }
    const QString& path() const { return m_path; }

    const GlyphMetrics& metrics(quint32 glyph)
    {
        auto it = m_metrics.find(glyph);
        if (it != m_metrics.end())
            return it->second;
        GlyphMetrics m;
        if (FT_Load_Glyph(m_face, glyph, FT_LOAD_NO_SCALE) == 0) {
            m.advance = m_face->glyph->metrics.horiAdvance;
            if (m_face->glyph->format == FT_GLYPH_FORMAT_OUTLINE && m_face->glyph->outline.n_points > 0)
                FT_Outline_Get_BBox(&m_face->glyph->outline, &m.box);
            m.valid = true;
        }
        return m_metrics.emplace(glyph, m).first->second;
    }

private:
    FT_Face m_face;
    QString m_path;
    std::unordered_map<quint32, GlyphMetrics> m_metrics;
};

namespace {

/// Opened faces by "path#index", most recently used first. Faces still held by a Font survive
/// eviction through their shared pointer.
class FaceCache
{
public:
    std::shared_ptr<FontFace> open(const QString& path, int index)
    {
        const QString key = path + QLatin1Char('#') + QString::number(index);
        for (auto it = m_faces.begin(); it != m_faces.end(); ++it) {
            if (it->first == key) {
                m_faces.splice(m_faces.begin(), m_faces, it);
                return it->second;
            }
        }
        FT_Library lib = library();
        if (!lib)
            return {};
        FT_Face face = nullptr;
        const QByteArray local = path.toLocal8Bit();
        const FT_Error error = FT_New_Face(lib, local.constData(), index, &face);
        if (error != 0) {
            if (!QFileInfo::exists(path))
                qCWarning(lcFont).noquote() << "font file" << path << "does not exist";
            else
                qCWarning(lcFont).noquote() << "font file" << path << "is not a usable font (FreeType error"
                                            << error << ")";
            return {};
        }
        if (!FT_IS_SCALABLE(face)) {
            qCWarning(lcFont).noquote() << "font file" << path << "has no outlines";
            FT_Done_Face(face);
            return {};
        }
        FT_Select_Charmap(face, FT_ENCODING_UNICODE);
        auto shared = std::make_shared<FontFace>(face, path);
        m_faces.emplace_front(key, shared);
        if (m_faces.size() > kCapacity)
            m_faces.pop_back();
        return shared;
    }

    void clear() { m_faces.clear(); }

private:
    static constexpr size_t kCapacity = 64;
    std::list<std::pair<QString, std::shared_ptr<FontFace>>> m_faces;
};

FaceCache& faceCache()
{
    static FaceCache cache;
    return cache;
}

struct Location
{
    QString path;
    int index = 0;
};

/// Name look-ups, including failed ones, so a missing font is not searched for again.
QHash<QString, Location>& nameCache()
{
    static QHash<QString, Location> cache;
    return cache;
}

Location locate(const QString& name)
{
    using namespace fontcatalog;
    for (Key key : {Key::PostScriptName, Key::FullName}) {
        const QList<Entry> found = list(key, name);
        if (!found.isEmpty())
            return {found.first().filePath, found.first().faceIndex};
    }
    QStringList families{name};
    families += aliases(name);
    for (const QString& family : families) {
        const QList<Entry> members = list(Key::Family, family);
        if (const Entry* e = mostRegular(members))
            return {e->filePath, e->faceIndex};
    }
    return {};
}

double toPixels(FT_Pos units, double scale)
{
    return double(units) * scale;
}

} // namespace

Font Font::fromName(const QString& name, double size)
{
    auto& cache = nameCache();
    auto it = cache.find(name);
    if (it == cache.end())
        it = cache.insert(name, locate(name));
    if (it->path.isEmpty()) {
        qCWarning(lcFont).noquote() << "no font named" << (QLatin1Char('"') + name + QLatin1Char('"'))
                                    << "and no compatible replacement is installed";
        return {};
    }
    return fromFile(it->path, size, it->index);
}

Font Font::fromFile(const QString& path, double size, int faceIndex)
{
    auto face = faceCache().open(path, faceIndex);
    if (!face)
        return {};
    return Font(std::move(face), size);
}

void Font::clearCache()
{
    faceCache().clear();
    nameCache().clear();
}

double Font::scale() const
{
    const int upem = unitsPerEm();
    return upem > 0 ? m_size / upem : 0.0;
}

QString Font::familyName() const
{
    return m_face && m_face->face()->family_name ? QString::fromUtf8(m_face->face()->family_name) : QString();
}

QString Font::styleName() const
{
    return m_face && m_face->face()->style_name ? QString::fromUtf8(m_face->face()->style_name) : QString();
}

QString Font::postScriptName() const
{
    const char* name = m_face ? FT_Get_Postscript_Name(m_face->face()) : nullptr;
    return name ? QString::fromLatin1(name) : QString();
}

QString Font::filePath() const
{
    return m_face ? m_face->path() : QString();
}

int Font::unitsPerEm() const
{
    return m_face ? m_face->face()->units_per_EM : 0;
}

bool Font::coversCharacter(char32_t character) const
{
    if (!m_face || (character >= 0xD800 && character <= 0xDFFF))
        return false;
    return FT_Get_Char_Index(m_face->face(), character) != 0;
}

quint32 Font::glyphForCharacter(char16_t codeUnit) const
{
    if (!m_face || (codeUnit >= 0xD800 && codeUnit <= 0xDFFF))
        return 0;
    return FT_Get_Char_Index(m_face->face(), codeUnit);
}

QRectF Font::glyphBoundingBox(quint32 glyph) const
{
    if (!m_face)
        return {};
    const GlyphMetrics& m = m_face->metrics(glyph);
    if (!m.valid)
        return {};
    const double s = scale();
    return QRectF(QPointF(toPixels(m.box.xMin, s), toPixels(m.box.yMin, s)),
                  QPointF(toPixels(m.box.xMax, s), toPixels(m.box.yMax, s)));
}

double Font::advance(quint32 glyph) const
{
    return m_face ? toPixels(m_face->metrics(glyph).advance, scale()) : 0.0;
}

QRectF Font::fontBoundingBox() const
{
    if (!m_face)
        return {};
    const FT_BBox& b = m_face->face()->bbox;
    const double s = scale();
    return QRectF(QPointF(toPixels(b.xMin, s), toPixels(b.yMin, s)), QPointF(toPixels(b.xMax, s), toPixels(b.yMax, s)));
}

double Font::maxAdvance() const
{
    return m_face ? toPixels(m_face->face()->max_advance_width, scale()) : 0.0;
}

double Font::ascender() const
{
    return m_face ? toPixels(m_face->face()->ascender, scale()) : 0.0;
}

double Font::descender() const
{
    return m_face ? toPixels(m_face->face()->descender, scale()) : 0.0;
}

bool Font::isFixedPitch() const
{
    return m_face && FT_IS_FIXED_WIDTH(m_face->face());
}

namespace {
struct PathSink
{
    QPainterPath* path;
    QPointF origin;
    double scale;
    QPointF map(const FT_Vector* v) const { return {origin.x() + v->x * scale, origin.y() + v->y * scale}; }
};

int moveTo(const FT_Vector* to, void* user)
{
    auto* s = static_cast<PathSink*>(user);
    s->path->closeSubpath();
    s->path->moveTo(s->map(to));
    return 0;
}
int lineTo(const FT_Vector* to, void* user)
{
    auto* s = static_cast<PathSink*>(user);
    s->path->lineTo(s->map(to));
    return 0;
}
int conicTo(const FT_Vector* control, const FT_Vector* to, void* user)
{
    auto* s = static_cast<PathSink*>(user);
    s->path->quadTo(s->map(control), s->map(to));
    return 0;
}
int cubicTo(const FT_Vector* c1, const FT_Vector* c2, const FT_Vector* to, void* user)
{
    auto* s = static_cast<PathSink*>(user);
    s->path->cubicTo(s->map(c1), s->map(c2), s->map(to));
    return 0;
}
} // namespace

QPainterPath Font::glyphPath(quint32 glyph, QPointF origin) const
{
    QPainterPath path;
    if (!m_face)
        return path;
    FT_Face face = m_face->face();
    if (FT_Load_Glyph(face, glyph, FT_LOAD_NO_SCALE) != 0 || face->glyph->format != FT_GLYPH_FORMAT_OUTLINE)
        return path;
    FT_Outline& outline = face->glyph->outline;
    path.setFillRule((outline.flags & FT_OUTLINE_EVEN_ODD_FILL) ? Qt::OddEvenFill : Qt::WindingFill);
    PathSink sink{&path, origin, scale()};
    FT_Outline_Funcs funcs{};
    funcs.move_to = moveTo;
    funcs.line_to = lineTo;
    funcs.conic_to = conicTo;
    funcs.cubic_to = cubicTo;
    FT_Outline_Decompose(&outline, &funcs, &sink);
    path.closeSubpath();
    return path;
}

QByteArray Font::tableData(const char tag[4]) const
{
    if (!m_face)
        return {};
    const FT_ULong ftTag = FT_MAKE_TAG(tag[0], tag[1], tag[2], tag[3]);
    FT_ULong length = 0;
    if (FT_Load_Sfnt_Table(m_face->face(), ftTag, 0, nullptr, &length) != 0 || length == 0)
        return {};
    QByteArray bytes(qsizetype(length), Qt::Uninitialized);
    if (FT_Load_Sfnt_Table(m_face->face(), ftTag, 0, reinterpret_cast<FT_Byte*>(bytes.data()), &length) != 0)
        return {};
    return bytes;
}

/// Called by FontManager when fonts are registered: names may now resolve differently.
void forgetFontNames()
{
    nameCache().clear();
}

} // namespace qm
