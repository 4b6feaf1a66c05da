// The generate command: a project built in memory from options, published through the same
// publish run as any project, one target per scale.

#include "Classes/publish/CommandLine.h"

#include "Classes/fonts/UnicodeRanges.h"
#include "Classes/model/Format.h"
#include "Classes/model/ProjectDocument.h"
#include "Classes/publish/CommandLineController.h"
#include "Platform/text/Font.h"
#include "Platform/text/FontManager.h"

#include <QColor>
#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QImageReader>
#include <QPointF>
#include <QSize>
#include <QTextStream>

#include <functional>
#include <optional>

namespace qm {

namespace {

const char* const kGenerateUsage =
    "usage: quillmark generate --out DIR/NAME [options]\n"
    "\n"
    "Renders the characters of a font into a texture and writes it with its descriptor, without\n"
    "a project file. Every option not given keeps the value of a new project.\n"
    "\n"
    "Font and characters:\n"
    "  --font NAME|FILE         a font family, or a .ttf/.otf/.ttc file (default Arial, or the\n"
    "                           family the system puts in its place)\n"
    "  --face STYLE|INDEX       the member of the family, by style name or position (default: the\n"
    "                           regular face; for a font file, the file's own face)\n"
    "  --size PX                glyph size in pixels (default 50)\n"
    "  --chars TEXT             characters as typed\n"
    "  --range FROM-TO[,...]    hexadecimal code ranges, e.g. 4E00-59B7, 0x41-0x5A or a single 20AC\n"
    "  --block NAME             a Unicode block by name (quillmark blocks lists them)\n"
    "  --set NAME|TAG           a quick set: ascii (1), latin1 (2), greek (3), cyrillic (4),\n"
    "                           math (6), box (7)\n"
    "                           --chars, --range, --block and --set may be repeated and combined;\n"
    "                           without any of them the set is ascii. The space is always included.\n"
    "  --no-antialias           render without anti-aliasing\n"
    "\n"
    "Fill:\n"
    "  --fill MODE              none, color, texture, linear or radial (default linear)\n"
    "  --color COLOR            the plain fill colour (default dark grey); implies --fill color\n"
    "  --gradient COLORS        fill gradient stops, \"c1,c2,...\" evenly spread or \"c1@0,c2@0.7,...\"\n"
    "                           (default orange,yellow)\n"
    "  --angle DEG              angle of the linear gradient (default 30)\n"
    "  --radial-offset X,Y      centre offset of the radial gradient (default 0,0)\n"
    "  --texture IMAGE          picture for the texture fill; implies --fill texture\n"
    "  --gloss                  gloss over the plain colour fill\n"
    "\n"
    "Outline:\n"
    "  --outline WIDTH          outline width in pixels, 0 for none (default 1)\n"
    "  --no-outline             no outline\n"
    "  --outline-color COLOR    plain outline colour (default black)\n"
    "  --outline-gradient COLORS  outline in a gradient instead of the plain colour\n"
    "  --outline-angle DEG      angle of the outline gradient (default 30)\n"
    "  --outline-mode MODE      centre, inside or outside (default centre)\n"
    "  --miter-limit N          miter limit of the outline joins (default 10)\n"
    "\n"
    "Shadow:\n"
    "  --shadow                 a drop shadow\n"
    "  --shadow-offset X,Y      offset in pixels, y up (default 2,-2)\n"
    "  --shadow-blur R          blur radius (default 3)\n"
    "  --shadow-color COLOR     (default black at 90 % opacity)\n"
    "  --shadow-mode MODE       drop or inner (default drop); implies --shadow\n"
    "\n"
    "Metrics:\n"
    "  --glyph-padding PX       extra pixels around every glyph (default 0)\n"
    "  --line-height PX         line height (default: the font's, at the glyph size)\n"
    "  --space-width PX         advance of the space (default: the font's)\n"
    "  --x-advance PX           added to every advance (default 0)\n"
    "  --fixed-advance PX       one advance for every glyph\n"
    "  --post-offset X,Y        added to every glyph's offsets (default 0,0)\n"
    "  --no-kerning             leave the font's kerning pairs out\n"
    "\n"
    "Packing:\n"
    "  --padding PX             pixels between glyphs in the texture (default 2)\n"
    "  --order ORDER            placing order: none, width, height, area, side or char (default area)\n"
    "  --no-reverse             place the smallest first (default: the largest first)\n"
    "  --grid                   a uniform grid instead of the tree packer\n"
    "  --cell WxH               grid cell size (default: from the largest glyph)\n"
    "  --texture-size WxH       a fixed texture size (default: the smallest that holds every glyph)\n"
    "  --power2                 automatic sizes are powers of two\n"
    "\n"
    "Output:\n"
    "  --out DIR/NAME           the directory and base name of the files (required)\n"
    "  --format FORMAT          fnt, txt, xml, hash, hash-bottom, atlas, lua, or a format code 0-8\n"
    "                           (default fnt); xml is written into a .fnt file, atlas writes\n"
    "                           DIR/NAME.atlas/ with one PNG per glyph and an .xml descriptor\n"
    "  --scale LIST             scales in percent, e.g. 100,50 (default 100): one target each,\n"
    "                           rendered anew at its size\n"
    "  --suffix LIST            suffix per scale, e.g. \",-sd\" (default: none for the first scale,\n"
    "                           \"-<scale>\" for the others)\n"
    "  --no-redraw              scale the finished texture instead of rendering at each scale\n"
    "  --quality N              resampling for scaled textures: 0 none, 1 default, 2 low, 3 medium,\n"
    "                           4 high (default 1)\n"
    "  --face-name NAME         face name written into the descriptor (default: the family name)\n"
    "  --save FILE.quillmark    also keep the settings as a project; its targets then name their\n"
    "                           directory relative to the project's folder\n";

/// A colour as "#RGB", "#RRGGBB", "#RRGGBBAA" (the "#" may be left out) or a CSS/SVG colour name.
std::optional<Color> parseColor(const QString& input)
{
    QString text = input.trimmed();
    const bool hashed = text.startsWith(u'#');
    if (hashed)
        text.remove(0, 1);
    bool hex = !text.isEmpty();
    for (QChar c : text)
        hex = hex && QStringLiteral("0123456789abcdefABCDEF").contains(c);
    if (hex && (text.size() == 3 || text.size() == 6 || text.size() == 8) && (hashed || text.size() != 3)) {
        if (text.size() == 3)
            text = QString(text[0]) + text[0] + text[1] + text[1] + text[2] + text[2];
        const auto byte = [&](int i) { return text.mid(2 * i, 2).toInt(nullptr, 16) / 255.0; };
        return Color::calibratedRGB(byte(0), byte(1), byte(2), text.size() == 8 ? byte(3) : 1.0);
    }
    const QColor named = QColor::fromString(input.trimmed());
    if (!named.isValid() || input.trimmed().startsWith(u'#'))
        return std::nullopt;
    return Color::calibratedRGB(named.redF(), named.greenF(), named.blueF(), named.alphaF());
}

/// Gradient stops "c1,c2,..." (evenly spread) or "c1@0,c2@0.5,..." (locations 0..1); at least two.
std::optional<Gradient> parseGradient(const QString& text)
{
    const QStringList parts = text.split(u',');
    if (parts.size() < 2)
        return std::nullopt;
    QList<GradientStop> stops;
    for (int i = 0; i < parts.size(); ++i) {
        const QStringList colorAt = parts[i].split(u'@');
        if (colorAt.size() > 2)
            return std::nullopt;
        const std::optional<Color> color = parseColor(colorAt[0]);
        if (!color)
            return std::nullopt;
        double location = double(i) / double(parts.size() - 1);
        if (colorAt.size() == 2) {
            bool ok = false;
            location = colorAt[1].trimmed().toDouble(&ok);
            if (!ok || location < 0 || location > 1)
                return std::nullopt;
        }
        stops.append({*color, location});
    }
    return Gradient(stops);
}

std::optional<int> parseInt(const QString& text, int min, int max)
{
    bool ok = false;
    const int value = text.trimmed().toInt(&ok);
    if (!ok || value < min || value > max)
        return std::nullopt;
    return value;
}

std::optional<double> parseNumber(const QString& text, double min, double max)
{
    bool ok = false;
    const double value = text.trimmed().toDouble(&ok);
    if (!ok || !(value >= min && value <= max))
        return std::nullopt;
    return value;
}

/// "X,Y" as two numbers.
std::optional<QPointF> parsePair(const QString& text, double limit)
{
    const QStringList parts = text.split(u',');
    if (parts.size() != 2)
        return std::nullopt;
    const auto x = parseNumber(parts[0], -limit, limit);
    const auto y = parseNumber(parts[1], -limit, limit);
    if (!x || !y)
        return std::nullopt;
    return QPointF(*x, *y);
}

/// "WxH" as two whole numbers of pixels.
std::optional<QSize> parseSize(const QString& text, int min, int max)
{
    const QStringList parts = text.toLower().split(u'x');
    if (parts.size() != 2)
        return std::nullopt;
    const auto w = parseInt(parts[0], min, max);
    const auto h = parseInt(parts[1], min, max);
    if (!w || !h)
        return std::nullopt;
    return QSize(*w, *h);
}

/// One UTF-16 code (hexadecimal, optionally with "0x" or "U+").
std::optional<quint32> parseCode(QString text)
{
    text = text.trimmed();
    if (text.startsWith(QLatin1String("0x"), Qt::CaseInsensitive) ||
        text.startsWith(QLatin1String("U+"), Qt::CaseInsensitive))
        text.remove(0, 2);
    bool ok = false;
    const uint code = text.toUInt(&ok, 16);
    if (!ok || text.isEmpty())
        return std::nullopt;
    return code;
}

/// The characters of one range text "FROM-TO[,FROM-TO...]", or an error message.
QString rangeCharacters(const QString& text, QString* error)
{
    QString characters;
    for (const QString& part : text.split(u',')) {
        const QStringList ends = part.split(u'-');
        const auto start = ends.size() <= 2 ? parseCode(ends.first()) : std::nullopt;
        const auto end = ends.size() == 2 ? parseCode(ends[1]) : start;
        if (!start || !end) {
            *error = QStringLiteral("bad range '%1': expected hexadecimal codes FROM-TO, e.g. 4E00-59B7")
                         .arg(part);
            return {};
        }
        if (*end < *start) {
            *error = QStringLiteral("bad range '%1': the end comes before the start").arg(part);
            return {};
        }
        // Glyphs are UTF-16 code units: codes past U+FFFF have no glyph of their own.
        if (*end > 0xFFFF) {
            *error = QStringLiteral("bad range '%1': codes above FFFF cannot be glyphs").arg(part);
            return {};
        }
        characters += UnicodeRanges::codesText(*start, *end);
    }
    return characters;
}

const QHash<QString, int>& formatCodes()
{
    static const QHash<QString, int> codes = {
        {QStringLiteral("fnt"), 1},  {QStringLiteral("txt"), 4},         {QStringLiteral("xml"), 3},
        {QStringLiteral("hash"), 5}, {QStringLiteral("hash-bottom"), 6}, {QStringLiteral("atlas"), 7},
        {QStringLiteral("lua"), 8},
    };
    return codes;
}

/// What generate needs beyond the settings object.
struct Output
{
    QString directory;
    QString file;
    QList<float> scales{100.0f};
    QStringList suffixes;
    int quality = 1;
    bool redraw = true;
    QString faceName;
    QString saveAs;
};

/// The font of a generate run: the family, the font file it came from (if any) and the face.
struct ChosenFont
{
    QString family;
    QString file;
    QList<FontMember> members;
    int face = 0;
};

/// Resolves --font and --face. A file is registered for this process and gives its own face;
/// a name must resolve to an installed family, whose regular face serves unless --face names
/// another (the project default `trait` 1 would be some other member, e.g. a light or italic
/// one). Answers an error message and sets `status`, or an empty text.
QString chooseFont(const QString& fontArgument, const QString& faceArgument, ChosenFont* chosen, int* status)
{
    *status = CommandLine::Failed;
    if (QFileInfo(fontArgument).isFile()) {
        chosen->file = QFileInfo(fontArgument).canonicalFilePath();
        if (!FontManager::registerFontsForFile(chosen->file))
            return QStringLiteral("'%1' is no font file that can be read").arg(fontArgument);
        chosen->family = Font::fromFile(chosen->file, 12).familyName();
    } else {
        chosen->family = FontManager::resolveFamily(fontArgument);
        if (chosen->family.isEmpty())
            return QStringLiteral("unknown font '%1' (quillmark fonts lists the families)").arg(fontArgument);
    }
    chosen->members = FontManager::availableMembersOfFontFamily(chosen->family);
    const QList<FontMember>& members = chosen->members;
    if (members.isEmpty())
        return QStringLiteral("font family '%1' has no usable faces").arg(chosen->family);
    chosen->face = ProjectDocument::regularMember(members);
    for (int i = 0; i < members.size() && !chosen->file.isEmpty(); ++i)
        if (QFileInfo(members[i].filePath).canonicalFilePath() == chosen->file && members[i].faceIndex == 0)
            chosen->face = i;
    if (faceArgument.isEmpty())
        return {};
    const auto index = parseInt(faceArgument, 0, int(members.size()) - 1);
    chosen->face = index.value_or(-1);
    for (int i = 0; i < members.size() && !index; ++i)
        if (members[i].styleName.compare(faceArgument, Qt::CaseInsensitive) == 0)
            chosen->face = i;
    if (chosen->face >= 0)
        return {};
    QStringList styles;
    for (const FontMember& m : members)
        styles.append(m.styleName);
    *status = CommandLine::Usage;
    return QStringLiteral("family '%1' has no face '%2' (faces: %3)")
        .arg(chosen->family, faceArgument, styles.join(QStringLiteral(", ")));
}

/// Builds the project in the document from the wanted settings, as a new window applies its
/// controls. The style is set while the glyph set is still empty, with redrawing suspended;
/// the characters, the face and the glyph size then each measure and pack the set once.
void buildProject(ProjectDocument& document, const sharedAppState& wanted, const ChosenFont& font,
                  const QString& characters)
{
    sharedAppState& s = document.state();
    s.setBlockredrawandpack(true);
    document.chooseFamily(font.family, !font.file.isEmpty());
    if (!font.file.isEmpty())
        s.setLoadedFontPath(font.file);
    s.setGlyphSize(wanted.glyphSize());
    s.setAntiAlias(wanted.antialias());
    s.setGradiant(wanted.gradiantAngle(), wanted.colorGradient());
    s.setRadialX(wanted.gradialX(), wanted.gradialY());
    s.setTextureName(wanted.textureName());
    s.setGlossy(wanted.glossy());
    s.setFillMode(wanted.fillGMode(), wanted.glyphColor(), Gradient());
    s.setStrokeInfo(wanted.stroke(), wanted.strokeSize(), wanted.strokeColor(), wanted.strokehowmode());
    s.setmStrokeMode(wanted.strokeMode());
    s.setStrokeGradiant(wanted.strokegradiantAngle(), wanted.strokeGradient());
    s.updatemiterlimit(wanted.miterlimit());
    s.setShadowInfo(wanted.shadow(), wanted.shadowXOffset(), wanted.shadowYOffset(),
                    wanted.shadowBlurRadius(), wanted.shadowhowmode());
    s.setShadowColor(wanted.shadowColor());
    s.setNewBoundingPadding(wanted.boundingPadding());
    s.setXadvancedOffset(wanted.xadvancedOffset());
    s.updatefixedadvance(wanted.fixedadvance(), wanted.fixedadvancevalue());
    s.postOffsetChanged(wanted.postXOffset(), wanted.postYOffset());
    s.setKernings(wanted.kernings());
    s.setPower2(wanted.power2());
    s.setAutoSize(wanted.autoSize());
    if (!wanted.autoSize())
        s.setTextureSize(wanted.width(), wanted.height());
    s.gridSizeChanged(wanted.gridWidth(), wanted.gridHeight());
    s.gridAutoChanged(wanted.gridAuto());
    s.setPackingOptions(wanted.paddingSize(), wanted.paddingMethod(), wanted.packingReversed(),
                        wanted.grid());
    s.setFontFormat(wanted.fontFormat());
    s.setBlockredrawandpack(false);
    document.applyCharacters(characters);
    // The face goes to the glyphs that exist, so it comes after the characters.
    s.setBlockredrawandpack(true);
    s.setFontweight(font.members[font.face].weight);
    s.setGlyphTrait(font.face);
    s.setBlockredrawandpack(false);
    document.reallyChangeGlyphSize(wanted.glyphSize());
}

/// One target per scale, each writing texture and descriptor.
PublishTargets targetsFor(const Output& output, int formatCode)
{
    PublishTargets targets;
    for (qsizetype i = 0; i < output.scales.size(); ++i) {
        PublishTarget t;
        t.mainname = QString::number(output.scales[i]) + QLatin1Char('%');
        t.path = output.directory;
        t.file = output.file;
        t.suffix = output.suffixes[i];
        t.fontface = output.faceName;
        t.scale = format("%.4f", {double(output.scales[i])});
        t.quality = output.quality;
        t.format = formatCode;
        t.redraw = output.redraw;
        targets.insert(t.mainname, t);
    }
    return targets;
}

} // namespace

int CommandLine::runGenerate(const QStringList& args)
{
    const QString command = QStringLiteral("generate");
    const auto usage = [&](const QString& message) { return fail(command, message, Usage); };

    // Options land in a settings object with the new-project defaults; it is pushed through the
    // project's setters afterwards, as a new window pushes its controls once.
    sharedAppState wanted;
    Output output;
    QString fontArgument = wanted.fontName();
    QString faceArgument;
    QString characters;
    bool charactersGiven = false;
    std::optional<int> fillMode;
    std::optional<int> lineHeight, spaceWidth;
    bool shadowGiven = false;
    QString outArgument, scaleArgument, suffixArgument;

    QString detail; // what a handler found wrong, when it can say more than "bad value"
    using Handler = std::function<bool(const QString&)>; // false: the value is wrong
    const QHash<QString, Handler> valued = {
        {QStringLiteral("font"),
         [&](const QString& v) {
             fontArgument = v;
             return !v.isEmpty();
         }},
        {QStringLiteral("face"),
         [&](const QString& v) {
             faceArgument = v;
             return !v.isEmpty();
         }},
        {QStringLiteral("size"),
         [&](const QString& v) {
             const auto n = parseInt(v, 1, 2048);
             if (n)
                 wanted.setGlyphSize(*n);
             return n.has_value();
         }},
        {QStringLiteral("chars"),
         [&](const QString& v) {
             characters += v;
             charactersGiven = true;
             return true;
         }},
        {QStringLiteral("range"),
         [&](const QString& v) {
             const QString text = rangeCharacters(v, &detail);
             characters += text;
             charactersGiven = true;
             return detail.isEmpty();
         }},
        {QStringLiteral("block"),
         [&](const QString& v) {
             const std::optional<UnicodeBlock> block = UnicodeRanges::blockNamed(v.trimmed());
             if (!block) {
                 detail = QStringLiteral("unknown block '%1' (quillmark blocks lists them)").arg(v);
                 return false;
             }
             const CodeRange range = UnicodeRanges::parseRange(block->range);
             characters += UnicodeRanges::codesText(range.start, range.end);
             charactersGiven = true;
             return true;
         }},
        {QStringLiteral("set"),
         [&](const QString& v) {
             static const QHash<QString, int> tags = {
                 {QStringLiteral("ascii"), 1},    {QStringLiteral("latin1"), 2}, {QStringLiteral("greek"), 3},
                 {QStringLiteral("cyrillic"), 4}, {QStringLiteral("math"), 6},   {QStringLiteral("box"), 7},
             };
             const std::optional<int> number = parseInt(v, 1, 7);
             const int tag = number ? *number : tags.value(v.trimmed().toLower(), 0);
             if (tag == 0) {
                 detail = QStringLiteral(
                              "unknown quick set '%1': ascii, latin1, greek, cyrillic, math, box or 1-7")
                              .arg(v);
                 return false;
             }
             const CodeRange range = UnicodeRanges::quickSet(tag);
             characters += UnicodeRanges::codesText(range.start, range.end);
             charactersGiven = true;
             return true;
         }},
        {QStringLiteral("fill"),
         [&](const QString& v) {
             static const QStringList modes = {QStringLiteral("none"), QStringLiteral("color"),
                                               QStringLiteral("texture"), QStringLiteral("linear"),
                                               QStringLiteral("radial")};
             const qsizetype mode = modes.indexOf(v.toLower());
             if (mode < 0)
                 return false;
             fillMode = int(mode);
             return true;
         }},
        {QStringLiteral("color"),
         [&](const QString& v) {
             const auto c = parseColor(v);
             if (c)
                 wanted.setGlyphColor(*c);
             if (!fillMode)
                 fillMode = 1;
             return c.has_value();
         }},
        {QStringLiteral("gradient"),
         [&](const QString& v) {
             const auto g = parseGradient(v);
             if (g)
                 wanted.setColorGradient(*g);
             return g.has_value();
         }},
        {QStringLiteral("angle"),
         [&](const QString& v) {
             const auto n = parseInt(v, -360, 360);
             if (n)
                 wanted.setGradiantAngle(*n);
             return n.has_value();
         }},
        {QStringLiteral("radial-offset"),
         [&](const QString& v) {
             const auto p = parsePair(v, 4096);
             if (p) {
                 wanted.setGradialX(float(p->x()));
                 wanted.setGradialY(float(p->y()));
             }
             return p.has_value();
         }},
        {QStringLiteral("texture"),
         [&](const QString& v) {
             wanted.setTextureName(QFileInfo(v).absoluteFilePath());
             if (!fillMode)
                 fillMode = 2;
             return !v.isEmpty();
         }},
        {QStringLiteral("outline"),
         [&](const QString& v) {
             const auto n = parseNumber(v, 0, 512);
             if (n) {
                 wanted.setStrokeSize(float(*n));
                 wanted.setStroke(*n > 0);
             }
             return n.has_value();
         }},
        {QStringLiteral("outline-color"),
         [&](const QString& v) {
             const auto c = parseColor(v);
             if (c)
                 wanted.setStrokeColor(*c);
             return c.has_value();
         }},
        {QStringLiteral("outline-gradient"),
         [&](const QString& v) {
             const auto g = parseGradient(v);
             if (g) {
                 wanted.setStrokeGradient(*g);
                 wanted.setStrokeMode(1);
             }
             return g.has_value();
         }},
        {QStringLiteral("outline-angle"),
         [&](const QString& v) {
             const auto n = parseInt(v, -360, 360);
             if (n)
                 wanted.setStrokegradiantAngle(*n);
             return n.has_value();
         }},
        {QStringLiteral("outline-mode"),
         [&](const QString& v) {
             static const QStringList modes = {QStringLiteral("centre"), QStringLiteral("inside"),
                                               QStringLiteral("outside")};
             qsizetype mode = modes.indexOf(v.toLower());
             if (v.toLower() == QLatin1String("center"))
                 mode = 0;
             if (mode >= 0)
                 wanted.setStrokehowmode(int(mode));
             return mode >= 0;
         }},
        {QStringLiteral("miter-limit"),
         [&](const QString& v) {
             const auto n = parseInt(v, 0, 1000);
             if (n)
                 wanted.setMiterlimit(*n);
             return n.has_value();
         }},
        {QStringLiteral("shadow-offset"),
         [&](const QString& v) {
             const auto p = parsePair(v, 512);
             if (p) {
                 wanted.setShadowXOffset(float(p->x()));
                 wanted.setShadowYOffset(float(p->y()));
             }
             return p.has_value();
         }},
        {QStringLiteral("shadow-blur"),
         [&](const QString& v) {
             const auto n = parseNumber(v, 0, 512);
             if (n)
                 wanted.setShadowBlurRadius(float(*n));
             return n.has_value();
         }},
        {QStringLiteral("shadow-color"),
         [&](const QString& v) {
             const auto c = parseColor(v);
             if (c)
                 wanted.setShadowColor(*c);
             return c.has_value();
         }},
        {QStringLiteral("shadow-mode"),
         [&](const QString& v) {
             const qsizetype mode =
                 QStringList{QStringLiteral("drop"), QStringLiteral("inner")}.indexOf(v.toLower());
             if (mode >= 0)
                 wanted.setShadowhowmode(int(mode));
             shadowGiven = true;
             return mode >= 0;
         }},
        {QStringLiteral("glyph-padding"),
         [&](const QString& v) {
             const auto n = parseInt(v, 0, 512);
             if (n)
                 wanted.setBoundingPadding(*n);
             return n.has_value();
         }},
        {QStringLiteral("line-height"),
         [&](const QString& v) {
             lineHeight = parseInt(v, 0, 8192);
             return lineHeight.has_value();
         }},
        {QStringLiteral("space-width"),
         [&](const QString& v) {
             spaceWidth = parseInt(v, 0, 8192);
             return spaceWidth.has_value();
         }},
        {QStringLiteral("x-advance"),
         [&](const QString& v) {
             const auto n = parseInt(v, -4096, 4096);
             if (n)
                 wanted.setXadvancedOffset(*n);
             return n.has_value();
         }},
        {QStringLiteral("fixed-advance"),
         [&](const QString& v) {
             const auto n = parseInt(v, 0, 8192);
             if (n) {
                 wanted.setFixedadvance(true);
                 wanted.setFixedadvancevalue(*n);
             }
             return n.has_value();
         }},
        {QStringLiteral("post-offset"),
         [&](const QString& v) {
             const auto p = parsePair(v, 4096);
             const bool whole = p && p->x() == int(p->x()) && p->y() == int(p->y());
             if (whole) {
                 wanted.setPostXOffset(int(p->x()));
                 wanted.setPostYOffset(int(p->y()));
             }
             return whole;
         }},
        {QStringLiteral("padding"),
         [&](const QString& v) {
             const auto n = parseInt(v, 0, 512);
             if (n)
                 wanted.setPaddingSize(*n);
             return n.has_value();
         }},
        {QStringLiteral("order"),
         [&](const QString& v) {
             static const QStringList orders = {QStringLiteral("none"),   QStringLiteral("width"),
                                                QStringLiteral("height"), QStringLiteral("area"),
                                                QStringLiteral("side"),   QStringLiteral("char")};
             const qsizetype order = orders.indexOf(v.toLower());
             if (order >= 0)
                 wanted.setPaddingMethod(int(order));
             return order >= 0;
         }},
        {QStringLiteral("cell"),
         [&](const QString& v) {
             const auto s = parseSize(v, 1, 4096);
             if (s) {
                 wanted.setGridWidth(s->width());
                 wanted.setGridHeight(s->height());
                 wanted.setGridAuto(false);
             }
             return s.has_value();
         }},
        {QStringLiteral("texture-size"),
         [&](const QString& v) {
             const auto s = parseSize(v, 1, 4096);
             if (s) {
                 wanted.setWidth(s->width());
                 wanted.setHeight(s->height());
                 wanted.setAutoSize(false);
             }
             return s.has_value();
         }},
        {QStringLiteral("out"),
         [&](const QString& v) {
             outArgument = v;
             return !v.isEmpty();
         }},
        {QStringLiteral("format"),
         [&](const QString& v) {
             const auto code = parseInt(v, 0, 8);
             const int named = formatCodes().value(v.toLower(), -1);
             if (!code && named < 0)
                 return false;
             wanted.setFontFormat(code ? *code : named);
             return true;
         }},
        {QStringLiteral("scale"),
         [&](const QString& v) {
             scaleArgument = v;
             return !v.isEmpty();
         }},
        {QStringLiteral("suffix"),
         [&](const QString& v) {
             suffixArgument = v;
             return true;
         }},
        {QStringLiteral("quality"),
         [&](const QString& v) {
             const auto n = parseInt(v, 0, 4);
             if (n)
                 output.quality = *n;
             return n.has_value();
         }},
        {QStringLiteral("face-name"),
         [&](const QString& v) {
             output.faceName = v;
             return true;
         }},
        {QStringLiteral("save"),
         [&](const QString& v) {
             output.saveAs = v;
             return !v.isEmpty();
         }},
    };
    const QHash<QString, std::function<void()>> flags = {
        {QStringLiteral("no-antialias"), [&] { wanted.setAntialias(false); }},
        {QStringLiteral("gloss"), [&] { wanted.setGlossy(true); }},
        {QStringLiteral("no-outline"), [&] { wanted.setStroke(false); }},
        {QStringLiteral("shadow"), [&] { shadowGiven = true; }},
        {QStringLiteral("no-kerning"), [&] { wanted.setKernings(false); }},
        {QStringLiteral("no-reverse"), [&] { wanted.setPackingReversed(false); }},
        {QStringLiteral("grid"), [&] { wanted.setGrid(true); }},
        {QStringLiteral("power2"), [&] { wanted.setPower2(true); }},
        {QStringLiteral("no-redraw"), [&] { output.redraw = false; }},
    };

    for (qsizetype i = 0; i < args.size(); ++i) {
        const QString& arg = args[i];
        if (arg == QLatin1String("--help") || arg == QLatin1String("-h")) {
            m_out << kGenerateUsage;
            return Ok;
        }
        if (!arg.startsWith(QLatin1String("--")))
            return usage(QStringLiteral("unexpected argument '%1' (see quillmark generate --help)").arg(arg));
        QString name = arg.mid(2);
        std::optional<QString> value;
        if (const qsizetype eq = name.indexOf(u'='); eq >= 0) {
            value = name.mid(eq + 1);
            name.truncate(eq);
        }
        if (flags.contains(name) && !value) {
            flags[name]();
            continue;
        }
        if (!valued.contains(name))
            return usage(QStringLiteral("unknown option '--%1' (see quillmark generate --help)").arg(name));
        if (!value) {
            if (i + 1 >= args.size())
                return usage(QStringLiteral("option '--%1' needs a value").arg(name));
            value = args[++i];
        }
        detail.clear();
        if (!valued[name](*value))
            return usage(!detail.isEmpty()
                             ? detail
                             : QStringLiteral("bad value '%1' for --%2 (see quillmark generate --help)")
                                   .arg(*value, name));
    }

    if (outArgument.isEmpty())
        return usage(QStringLiteral("--out DIR/NAME is required (see quillmark generate --help)"));
    const QFileInfo out(outArgument);
    if (outArgument.endsWith(u'/') || out.fileName().isEmpty())
        return usage(QStringLiteral("--out '%1' needs a file name after the directory").arg(outArgument));
    output.directory = out.absolutePath();
    output.file = out.fileName();

    if (!scaleArgument.isEmpty()) {
        output.scales.clear();
        for (const QString& part : scaleArgument.split(u',')) {
            const auto scale = parseNumber(part, 0.01, 1000);
            if (!scale)
                return usage(
                    QStringLiteral("bad scale '%1': expected a percentage, e.g. 100 or 50").arg(part));
            if (output.scales.contains(float(*scale)))
                return usage(QStringLiteral("scale %1 is given twice").arg(part.trimmed()));
            output.scales.append(float(*scale));
        }
    }
    if (!suffixArgument.isNull()) {
        output.suffixes = suffixArgument.split(u',');
        if (output.suffixes.size() != output.scales.size())
            return usage(QStringLiteral("--suffix gives %1 suffixes for %2 scales")
                             .arg(output.suffixes.size())
                             .arg(output.scales.size()));
    } else {
        for (qsizetype i = 0; i < output.scales.size(); ++i)
            output.suffixes.append(i == 0 ? QString() : QLatin1Char('-') + QString::number(output.scales[i]));
    }
    if (QStringList(output.suffixes).removeDuplicates() > 0)
        return usage(QStringLiteral("two scales would write the same files; give each its own suffix"));

    if (!wanted.textureName().isEmpty() && !QImageReader(wanted.textureName()).canRead())
        return fail(command, QStringLiteral("cannot read the texture picture '%1'").arg(wanted.textureName()),
                    Failed);

    ChosenFont font;
    int status = Ok;
    if (const QString error = chooseFont(fontArgument, faceArgument, &font, &status); !error.isEmpty())
        return fail(command, error, status);

    if (!charactersGiven) {
        const CodeRange ascii = UnicodeRanges::quickSet(1);
        characters = UnicodeRanges::codesText(ascii.start, ascii.end);
    }
    if (fillMode)
        wanted.setFillGMode(*fillMode);
    wanted.setShadow(shadowGiven);

    CommandLineController controller(m_out, m_err);
    ProjectDocument document(&controller);
    sharedAppState& s = document.state();
    buildProject(document, wanted, font, characters);
    if (lineHeight)
        s.setLineHeight(*lineHeight);
    if (spaceWidth)
        s.setSpaceWidth(*spaceWidth);
    PublishTargets targets = targetsFor(output, s.fontFormat());
    s.setTargetsPublish(targets);

    status = publish(document, {}, command);
    if (!output.saveAs.isEmpty()) {
        const QString saved = QFileInfo(output.saveAs).absoluteFilePath();
        const QDir projectDir = QFileInfo(saved).absoluteDir();
        QDir().mkpath(projectDir.path()); // as for the targets' folders; a failure shows when saving
        for (PublishTarget& t : targets)
            t.path = projectDir.relativeFilePath(t.path).isEmpty() ? QStringLiteral(".")
                                                                   : projectDir.relativeFilePath(t.path);
        s.setTargetsPublish(targets);
        QString error;
        if (!document.writeProjectFile(saved, &error))
            return fail(command, error, Failed);
    }
    return status;
}

} // namespace qm
