#include "Classes/model/ProjectArchive.h"
#include "Platform/archive/KeyedArchiver.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

#include <unistd.h>

using namespace qm;

namespace {

/// Settings with a value different from both the defaults and the empty state in every archived
/// field. Colour components are chosen to survive the ten-digit text form exactly.
sharedAppState nonDefaultSettings()
{
    sharedAppState s(InitialValues::Empty);
    s.setVersion(201);
    s.setCropAlpha(2);
    s.setWidth(1024);
    s.setHeight(256);
    s.setCheckerBoard(true);
    s.setFixedadvancevalue(33);
    s.setMiterlimit(7);
    s.setFixedadvance(true);
    s.setPublishautoclose(true);
    s.setBgColor(Color::deviceRGB(0.25, 0.5, 0.75, 0.5));
    s.setPaddingSize(5);
    s.setPaddingMethod(2);
    s.setPackingReversed(true);
    s.setGrid(true);
    s.setGridAuto(true);
    s.setGridWidth(40);
    s.setGridHeight(48);
    s.setPostXOffset(-3);
    s.setPostYOffset(4);
    s.setForcefontface(QStringLiteral("Bold Italic"));
    s.setPreviewTextString(QStringLiteral("Hello\\nWorld"));
    s.setBoundingPadding(3);
    s.setGlyphSize(72);
    s.setLineHeight(90);
    s.setSpaceWidth(17);
    s.setTrait(3);
    s.setFontweight(9);
    s.setGlossy(true);
    s.setStroke(true);
    s.setStrokeColor(Color::calibratedRGB(0.125, 0.25, 0.375));
    s.setShadowColor(Color::calibratedWhite(0.0625, 0.75));
    s.setShadow(true);
    s.setStrokeSize(2.5f);
    s.setGradialX(0.25f);
    s.setGradialY(-0.75f);
    s.setShadowXOffset(3.5f);
    s.setShadowYOffset(-4.25f);
    s.setShadowBlurRadius(6.0f);
    s.setFillGMode(4);
    s.setGlyphColor(Color::deviceRGB(0.5, 0.125, 1));
    s.setTextGlyph(QStringLiteral("ABCabc123 éñ"));
    s.setFontName(QStringLiteral("DejaVu Sans"));
    s.setLoadedFontPath(QStringLiteral("/home/me/fonts/Some Font.ttf"));
    s.setLoadedFontName(true);
    s.setTextureName(QStringLiteral("/home/me/pictures/wood.png"));
    s.setProjectName(QUrl::fromLocalFile(QStringLiteral("/home/me/projects/game font.quillmark")));
    s.setAutoSize(true);
    s.setPower2(true);
    s.setAutoxy(true);
    s.setAutoSDLevel(3);
    s.setKernings(true);
    s.setStartGradiantColor(Color::calibratedRGB(0.5, 0, 0));
    s.setEndGradiantColor(Color::calibratedRGB(0, 0.5, 0));
    s.setGradiantAngle(135);
    s.setWorkOnSelectionOnly(true);
    s.setAntialias(true);
    s.setPublishName(QStringLiteral("gamefont"));
    s.setPublishDirectory(QStringLiteral("/home/me/out"));
    s.setXadvancedOffset(-2);
    s.setFontFormat(4);
    s.setSDQuality(2);
    s.setStartStrokeGradiantColor(Color::calibratedRGB(0, 0, 0.5));
    s.setEndStrokeGradiantColor(Color::calibratedRGB(0.5, 0.5, 0));
    s.setStrokegradiantAngle(-45);
    s.setStrokeMode(1);
    s.setStrokehowmode(2);
    s.setShadowhowmode(1);
    s.setStrokeGradient(
        Gradient({{Color::red(), 0.0}, {Color::calibratedRGB(0, 0, 1, 0.5), 0.375}, {Color::yellow(), 1.0}}));
    s.setColorGradient(
        Gradient::twoColor(Color::calibratedRGB(0.25, 0.25, 0.25), Color::orange(), Color::Space::DeviceRGB));
    s.setDownscalerecalc(true);
    PublishTarget hd{QStringLiteral("hd"),
                     QStringLiteral("/out/hd"),
                     QStringLiteral("font"),
                     QStringLiteral("-hd"),
                     QStringLiteral("Bold"),
                     QStringLiteral("200.0000"),
                     2,
                     7,
                     false,
                     true,
                     true};
    PublishTarget sd{QStringLiteral("sd"),
                     QStringLiteral("/out/sd"),
                     QStringLiteral("font"),
                     QStringLiteral(""),
                     QStringLiteral(""),
                     QStringLiteral("50.0000"),
                     0,
                     0,
                     true,
                     false,
                     false};
    s.setTargetsPublish({{QStringLiteral("hd"), hd}, {QStringLiteral("sd"), sd}});
    s.setConfigchanged(false); // the informing setters above marked it
    return s;
}

CGGlyphBitmap glyphFor(char16_t character, int variant)
{
    CGGlyphBitmap g(InitialValues::Empty);
    g.setCharname(character);
    g.setGlyphsize(40 + variant);
    g.setTrait(2);
    g.setFontweight(7);
    g.setForceWidth(30 + variant);
    g.setForceHeight(36);
    g.setOngrid(variant % 2 == 1);
    g.setOngridAuto(true);
    g.setAddXOffset(-1 - variant);
    g.setAddYOffset(2 + variant);
    g.setAddXAdvance(3 * variant - 4);
    g.setFitImage(true);
    g.setGlossy(true);
    g.setStroke(true);
    g.setStrokeColor(Color::calibratedRGB(0.25, 0.5, 1));
    g.setShadowColor(Color::calibratedWhite(0, 0.5));
    g.setShadow(true);
    g.setStrokesize(1.5f);
    g.setShadowxoffset(1.25f);
    g.setShadowyoffset(-3.0f);
    g.setShadowblurradius(4.5f);
    g.setFillGMode(3);
    g.setGlyphColor(Color::deviceRGB(1, 0.5, 0.25));
    g.setGradialX(0.5f);
    g.setGradialY(0.125f);
    g.setFntName(QStringLiteral("DejaVu Sans"));
    g.setLoadedFontName(true);
    g.setTxtName(QStringLiteral("/textures/stone.png"));
    g.setGradiantAngle(60 + variant);
    g.setAntialias(true);
    g.setStrokegradiantAngle(15);
    g.setStrokeMode(2);
    g.setStrokehowmode(1);
    g.setShadowhowmode(1);
    g.setBoundingPadding(2);
    g.setColorGradient(Gradient({{Color::red(), 0.0}, {Color::yellow(), 0.5}, {Color::orange(), 1.0}}));
    g.setStrokeGradient(
        Gradient::twoColor(Color::black().toCalibratedRGB(), Color::calibratedRGB(0.5, 0.5, 0.5)));
    return g;
}

/// Fully opaque and fully transparent pixels only: they survive premultiplication unchanged.
QImage customPicture()
{
    QImage picture(6, 4, QImage::Format_RGBA8888_Premultiplied);
    for (int y = 0; y < picture.height(); ++y)
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixelColor(x, y, (x + y) % 3 == 0 ? QColor(0, 0, 0, 0) : QColor(40 * x, 60 * y, 200));
    return picture;
}

QList<const CGGlyphBitmap*> pointers(const QList<CGGlyphBitmap>& glyphs)
{
    QList<const CGGlyphBitmap*> out;
    for (const CGGlyphBitmap& g : glyphs)
        out.append(&g);
    return out;
}

/// The fields a project file keeps: the rest reads back empty.
sharedAppState archivedPart(const sharedAppState& s)
{
    sharedAppState expected = s;
    expected.setPrevBgColor(Color());
    expected.setPreviewText(QString());
    expected.setKerningTable({});
    expected.setCmapTable({});
    expected.setIsinpreviewmode(false);
    expected.setConfigchanged(false);
    expected.setBlockredrawandpack(false);
    expected.setAutoSD(false);
    return expected;
}

ProjectData decodeOrFail(const QByteArray& bytes)
{
    ProjectData project;
    QString error;
    EXPECT_TRUE(ProjectArchive::decode(bytes, &project, &error)) << error.toStdString();
    return project;
}

/// A project file made by hand: the settings record holds only what `settings` encodes, and
/// each glyph record only what its function encodes.
QByteArray handBuiltProject(const std::function<void(KeyedArchiver&)>& settings,
                            const QList<std::function<void(KeyedArchiver&)>>& glyphs)
{
    KeyedArchiver a;
    const ArchiveRef interface = a.record({QStringLiteral("sharedAppState"), {}}, settings);
    QList<ArchiveRef> records;
    for (const auto& glyph : glyphs)
        records.append(a.record({QStringLiteral("CGGlyphBitmap"), {}}, glyph));
    const ArchiveRef root =
        a.dictionary({a.string(QStringLiteral("interface")), a.string(QStringLiteral("allglyphs"))},
                     {interface, a.array(records)});
    return a.finish(root);
}

} // namespace

TEST(ProjectArchive, RoundTripKeepsEveryArchivedField)
{
    sharedAppState settings = nonDefaultSettings();
    // Transient fields that must not travel.
    settings.setPrevBgColor(Color::red());
    settings.setPreviewText(QStringLiteral("shown"));
    settings.setKerningTable({{{u'A', u'V'}, -120}});
    settings.setIsinpreviewmode(true);
    settings.setConfigchanged(true);
    settings.setAutoSD(true);

    QList<CGGlyphBitmap> glyphs = {glyphFor(u'A', 0), glyphFor(u'g', 1), glyphFor(u'é', 2),
                                   glyphFor(0xD83D, 3)};
    glyphs[2].setHasCustomPicture(true);
    glyphs[2].setGlyphImage(customPicture());
    glyphs[2].setFrameImage(QRectF(0, 0, 6, 4));
    // Measured and rendered state is not stored: it is recomputed after loading.
    glyphs[0].setGlyphRect(QRectF(0, 0, 30, 40));
    glyphs[0].setXoffset(5);
    glyphs[0].setGlyphImage(customPicture());

    const QByteArray bytes = ProjectArchive::encode(settings, pointers(glyphs));
    ASSERT_FALSE(bytes.isEmpty());
    const ProjectData project = decodeOrFail(bytes);

    EXPECT_TRUE(project.settings.sameSettings(archivedPart(settings)));
    EXPECT_EQ(project.settings.targetsPublish(), settings.targetsPublish());
    EXPECT_EQ(project.settings.bgColor(), settings.bgColor());
    EXPECT_EQ(project.settings.strokeGradient(), settings.strokeGradient());
    EXPECT_FALSE(project.settings.prevBgColor().isValid());
    EXPECT_FALSE(project.settings.autoSD()); // never written

    ASSERT_EQ(project.glyphs.size(), glyphs.size());
    CGGlyphBitmap firstExpected = glyphs[0];
    firstExpected.setGlyphRect(QRectF());
    firstExpected.setXoffset(0);
    firstExpected.setGlyphImage(QImage());
    EXPECT_TRUE(project.glyphs[0] == firstExpected);
    EXPECT_TRUE(project.glyphs[1] == glyphs[1]);
    EXPECT_TRUE(project.glyphs[2] == glyphs[2]);
    EXPECT_EQ(project.glyphs[2].glyphImage(), customPicture());
    EXPECT_TRUE(project.glyphs[3] == glyphs[3]);
    EXPECT_EQ(project.glyphs[3].charname(), char16_t(0xD83D)); // one lone UTF-16 code unit

    // Saving what was read gives the same file.
    const QByteArray again = ProjectArchive::encode(project.settings, pointers(project.glyphs));
    EXPECT_EQ(again, ProjectArchive::encode(archivedPart(settings),
                                            pointers({firstExpected, glyphs[1], glyphs[2], glyphs[3]})));
}

TEST(ProjectArchive, FloatsAreFourByteReals)
{
    sharedAppState settings(InitialValues::Empty);
    settings.setStrokeSize(2.5f); // 0x40200000
    const QByteArray bytes = ProjectArchive::encode(settings, {});
    EXPECT_TRUE(bytes.contains(QByteArray("\x22\x40\x20\x00\x00", 5)));
    EXPECT_FALSE(bytes.contains(QByteArray("\x23\x40\x04\x00\x00\x00\x00\x00\x00", 9)));
}

TEST(ProjectArchive, IndependentReaderSeesTheKeyedArchiveStructure)
{
    const QString python = QStandardPaths::findExecutable(QStringLiteral("python3"));
    if (python.isEmpty())
        GTEST_SKIP() << "python3 is not installed: the independent reader cannot run";
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("font.quillmark"));
    QList<CGGlyphBitmap> glyphs = {glyphFor(u'A', 0), glyphFor(u'B', 1)};
    glyphs[1].setHasCustomPicture(true);
    glyphs[1].setGlyphImage(customPicture());
    glyphs[1].setFrameImage(QRectF(0, 0, 12, 8));
    QString error;
    ASSERT_TRUE(ProjectArchive::writeFile(path, nonDefaultSettings(), pointers(glyphs), &error))
        << error.toStdString();

    // Python's plistlib reads binary property lists with UIDs; the script resolves the graph
    // and prints a summary as JSON.
    const char* script = R"PY(
import json, plistlib, sys
with open(sys.argv[1], 'rb') as f:
    p = plistlib.load(f)
objs = p['$objects']
def obj(u): return objs[u.data]
def classes(o): return obj(o['$class'])['$classes']
root = obj(p['$top']['root'])
rootd = {obj(k): obj(v) for k, v in zip(root['NS.keys'], root['NS.objects'])}
s = rootd['interface']
g = rootd['allglyphs']
glyphs = [obj(u) for u in g['NS.objects']]
bg = obj(s['bgColor'])
targets = obj(s['targetsPublish'])
hd = None
for k, v in zip(targets['NS.keys'], targets['NS.objects']):
    if obj(k) == 'hd':
        t = obj(v)
        hd = {obj(a): obj(b) for a, b in zip(t['NS.keys'], t['NS.objects'])}
grad = obj(s['strokeGradient'])
image = obj(glyphs[1]['image'])
rep = obj(obj(obj(image['NSReps'])['NS.objects'][0])['NS.objects'][1])
tiff = obj(rep['NSTIFFRepresentation'])
print(json.dumps({
    'archiver': p['$archiver'], 'version': p['$version'], 'null': objs[0],
    'rootClasses': classes(root), 'settingsClasses': classes(s), 'glyphsClasses': classes(g),
    'glyphClasses': classes(glyphs[0]), 'targetsClasses': classes(targets),
    'settingsKeys': [k for k in s.keys() if k != '$class'],
    'glyphKeys': [k for k in glyphs[1].keys() if k != '$class'],
    'glyphSize': s['glyphSize'], 'strokeSize': s['strokeSize'], 'shadow': s['shadow'],
    'fontName': obj(s['fontName']), 'forcefontface': obj(s['forcefontface']),
    'projectName': obj(obj(s['projectName'])['NS.relative']),
    'bgSpace': bg['NSColorSpace'], 'bgRGB': bg['NSRGB'].decode('latin-1'), 'bgClasses': classes(bg),
    'charname': obj(glyphs[0]['charname']), 'addXAdvance': glyphs[1]['addXAdvance'],
    'hd': hd, 'gradientClasses': classes(grad),
    'gradientLocations': [obj(u) for u in obj(grad['NSLocations'])['NS.objects']],
    'imageClasses': classes(image), 'imageSize': image['NSSize'], 'repClasses': classes(rep),
    'tiffMagic': tiff[:4].hex(),
}))
)PY";
    QProcess process;
    process.start(python, {QStringLiteral("-c"), QString::fromUtf8(script), path});
    ASSERT_TRUE(process.waitForFinished(60000));
    ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    const QJsonObject r = QJsonDocument::fromJson(process.readAllStandardOutput()).object();
    ASSERT_FALSE(r.isEmpty());

    auto list = [](const QJsonValue& v) {
        QStringList out;
        for (const QJsonValue& e : v.toArray())
            out.append(e.toString());
        return out;
    };
    EXPECT_EQ(r[QStringLiteral("archiver")].toString(), QStringLiteral("NSKeyedArchiver"));
    EXPECT_EQ(r[QStringLiteral("version")].toInt(), 100000);
    EXPECT_EQ(r[QStringLiteral("null")].toString(), QStringLiteral("$null"));
    EXPECT_EQ(list(r[QStringLiteral("rootClasses")]), (QStringList{"NSDictionary", "NSObject"}));
    EXPECT_EQ(list(r[QStringLiteral("settingsClasses")]), (QStringList{"sharedAppState", "NSObject"}));
    EXPECT_EQ(list(r[QStringLiteral("glyphsClasses")]),
              (QStringList{"NSMutableArray", "NSArray", "NSObject"}));
    EXPECT_EQ(list(r[QStringLiteral("glyphClasses")]), (QStringList{"CGGlyphBitmap", "NSObject"}));
    EXPECT_EQ(list(r[QStringLiteral("targetsClasses")]),
              (QStringList{"NSMutableDictionary", "NSDictionary", "NSObject"}));
    EXPECT_EQ(list(r[QStringLiteral("bgClasses")]), (QStringList{"NSColor", "NSObject"}));
    EXPECT_EQ(list(r[QStringLiteral("gradientClasses")]), (QStringList{"NSGradient", "NSObject"}));
    EXPECT_EQ(list(r[QStringLiteral("imageClasses")]), (QStringList{"NSImage", "NSObject"}));
    EXPECT_EQ(list(r[QStringLiteral("repClasses")]),
              (QStringList{"NSBitmapImageRep", "NSImageRep", "NSObject"}));

    const QStringList settingsKeys = list(r[QStringLiteral("settingsKeys")]);
    ASSERT_EQ(settingsKeys.size(), 71);
    EXPECT_EQ(settingsKeys.mid(0, 5),
              (QStringList{"version", "cropAlpha", "width", "height", "checkerBoard"}));
    EXPECT_EQ(settingsKeys[32], QStringLiteral("strokeSize"));
    EXPECT_EQ(settingsKeys.last(), QStringLiteral("targetsPublish"));
    EXPECT_FALSE(settingsKeys.contains(QStringLiteral("autoSD")));
    const QStringList glyphKeys = list(r[QStringLiteral("glyphKeys")]);
    ASSERT_EQ(glyphKeys.size(), 39);
    EXPECT_EQ(glyphKeys.mid(11, 4), (QStringList{"hasCustomPicture", "fitImage", "image", "glossy"}));
    EXPECT_EQ(glyphKeys.mid(19, 4),
              (QStringList{"strokesize", "shadowxoffset", "shadowyoffset", "shadowblurradius"}));
    EXPECT_EQ(glyphKeys.last(), QStringLiteral("strokeGradient"));

    EXPECT_EQ(r[QStringLiteral("glyphSize")].toInt(), 72);
    EXPECT_EQ(r[QStringLiteral("strokeSize")].toDouble(), 2.5);
    EXPECT_TRUE(r[QStringLiteral("shadow")].toBool());
    EXPECT_EQ(r[QStringLiteral("fontName")].toString(), QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(r[QStringLiteral("forcefontface")].toString(), QStringLiteral("Bold Italic"));
    EXPECT_EQ(r[QStringLiteral("projectName")].toString(),
              QStringLiteral("file:///home/me/projects/game%20font.quillmark"));
    EXPECT_EQ(r[QStringLiteral("bgSpace")].toInt(), 2);
    EXPECT_EQ(r[QStringLiteral("bgRGB")].toString(), QString::fromLatin1("0.25 0.5 0.75 0.5\0", 18));
    EXPECT_EQ(r[QStringLiteral("charname")].toString(), QStringLiteral("A"));
    EXPECT_EQ(r[QStringLiteral("addXAdvance")].toInt(), -1);
    const QJsonObject hd = r[QStringLiteral("hd")].toObject();
    EXPECT_EQ(hd.keys().size(), 11);
    EXPECT_EQ(hd[QStringLiteral("scale")].toString(), QStringLiteral("200.0000"));
    EXPECT_EQ(hd[QStringLiteral("format")].toInt(), 7);
    EXPECT_EQ(hd[QStringLiteral("texture")].toBool(true), false);
    EXPECT_TRUE(hd[QStringLiteral("redraw")].toBool());
    const QJsonArray locations = r[QStringLiteral("gradientLocations")].toArray();
    ASSERT_EQ(locations.size(), 3);
    EXPECT_EQ(locations[1].toDouble(), 0.375);
    EXPECT_EQ(r[QStringLiteral("imageSize")].toString(), QStringLiteral("{12, 8}"));
    const QString magic = r[QStringLiteral("tiffMagic")].toString();
    EXPECT_TRUE(magic == QStringLiteral("49492a00") || magic == QStringLiteral("4d4d002a"))
        << magic.toStdString();
}

TEST(ProjectArchive, LegacyFilesLoadWithTheirFallbacks)
{
    // Settings of an old release: no "version", "autoSD" on, no stroke gradient colours.
    // Glyphs: one with only the two-colour gradient fields, one with a fill gradient only.
    const QByteArray bytes = handBuiltProject(
        [](KeyedArchiver& a) {
            a.encodeBool(true, QStringLiteral("autoSD"));
            a.encodeInt(3, QStringLiteral("autoSDLevel"));
            a.encodeObject(QStringLiteral("Missing Family"), QStringLiteral("fontName"));
        },
        {[](KeyedArchiver& a) {
             a.encodeObject(QStringLiteral("x"), QStringLiteral("charname"));
             a.encodeObject(Color::red(), QStringLiteral("startGradiantColor"));
             a.encodeObject(Color::yellow(), QStringLiteral("endGradiantColor"));
             a.encodeObject(Color::calibratedWhite(0.5), QStringLiteral("strokestartGradiantColor"));
             a.encodeObject(Color::calibratedRGB(0, 0, 1), QStringLiteral("strokeendGradiantColor"));
         },
         [](KeyedArchiver& a) {
             a.encodeObject(QStringLiteral("yz"), QStringLiteral("charname"));
             a.encodeObject(Color::red(), QStringLiteral("startGradiantColor"));
             a.encodeObject(Color::yellow(), QStringLiteral("endGradiantColor"));
             a.encodeObject(Gradient::twoColor(Color::black(), Color::white()),
                            QStringLiteral("colorGradient"));
         }});
    ProjectData project = decodeOrFail(bytes);
    const sharedAppState& s = project.settings;
    EXPECT_EQ(s.version(), 0);
    EXPECT_TRUE(s.autoSD());
    EXPECT_EQ(s.fontName(), QStringLiteral("Missing Family"));
    // Everything else starts empty, not at the defaults of a new project.
    EXPECT_EQ(s.width(), 0);
    EXPECT_EQ(s.glyphSize(), 0);
    EXPECT_FALSE(s.antialias());
    EXPECT_FALSE(s.bgColor().isValid());
    EXPECT_FALSE(s.colorGradient().isValid());
    EXPECT_TRUE(s.previewTextString().isNull());
    EXPECT_TRUE(s.targetsPublish().isEmpty());
    EXPECT_EQ(s.startStrokeGradiantColor(), Color::calibratedRGB(1, 1, 0));
    EXPECT_EQ(s.endStrokeGradiantColor(), Color::calibratedRGB(1, 0, 0));

    ProjectArchive::upgradeLoadedSettings(project.settings);
    EXPECT_TRUE(project.settings.autoxy());
    EXPECT_EQ(project.settings.version(), 200);
    EXPECT_EQ(project.settings.autoSDLevel(), 1);

    ASSERT_EQ(project.glyphs.size(), 2);
    const CGGlyphBitmap& old = project.glyphs[0];
    EXPECT_EQ(old.charname(), u'x');
    EXPECT_EQ(old.colorGradient(), Gradient::twoColor(Color::red(), Color::yellow()));
    EXPECT_EQ(old.strokeGradient(),
              Gradient::twoColor(Color::calibratedWhite(0.5), Color::calibratedRGB(0, 0, 1)));
    EXPECT_EQ(old.glyphsize(), 0);
    EXPECT_FALSE(old.ongridAuto());
    const CGGlyphBitmap& fillOnly = project.glyphs[1];
    EXPECT_EQ(fillOnly.charname(), u'y'); // the first UTF-16 code unit
    EXPECT_EQ(fillOnly.colorGradient(), Gradient::twoColor(Color::black(), Color::white()));
    EXPECT_FALSE(fillOnly.strokeGradient().isValid());

    // A saved and reopened project no longer carries "autoSD".
    const ProjectData reopened =
        decodeOrFail(ProjectArchive::encode(project.settings, pointers(project.glyphs)));
    EXPECT_FALSE(reopened.settings.autoSD());
    EXPECT_EQ(reopened.settings.version(), 200);

    // Version 193 keeps its stored autoxy.
    ProjectData newer = decodeOrFail(
        handBuiltProject([](KeyedArchiver& a) { a.encodeInt(193, QStringLiteral("version")); }, {}));
    ProjectArchive::upgradeLoadedSettings(newer.settings);
    EXPECT_FALSE(newer.settings.autoxy());
    EXPECT_EQ(newer.settings.version(), 193);
}

TEST(ProjectArchive, BadInputFailsWithAMessageAndChangesNothing)
{
    ProjectData untouched;
    untouched.settings.setGlyphSize(99);
    auto failure = [&untouched](const QByteArray& bytes) {
        ProjectData project = untouched;
        QString error;
        EXPECT_FALSE(ProjectArchive::decode(bytes, &project, &error));
        EXPECT_EQ(project.settings.glyphSize(), 99);
        return error.toStdString();
    };
    EXPECT_NE(failure("not a project").find("not a binary property list"), std::string::npos);
    const QByteArray good = ProjectArchive::encode(nonDefaultSettings(), {});
    EXPECT_FALSE(failure(good.left(good.size() / 2)).empty());

    { // a keyed archive whose root is a plain string
        KeyedArchiver a;
        EXPECT_NE(failure(a.finish(a.string(QStringLiteral("hello")))).find("no project settings"),
                  std::string::npos);
    }
    { // "interface" holds a string instead of a record
        KeyedArchiver a;
        const ArchiveRef root =
            a.dictionary({a.string(QStringLiteral("interface"))}, {a.string(QStringLiteral("x"))});
        EXPECT_NE(failure(a.finish(root)).find("no project settings"), std::string::npos);
    }
    { // more glyph records than there are UTF-16 code units
        KeyedArchiver a;
        const ArchiveRef interface = a.record({QStringLiteral("sharedAppState"), {}}, [](KeyedArchiver&) {});
        const ArchiveRef glyph = a.record({QStringLiteral("CGGlyphBitmap"), {}}, [](KeyedArchiver&) {});
        const ArchiveRef root =
            a.dictionary({a.string(QStringLiteral("interface")), a.string(QStringLiteral("allglyphs"))},
                         {interface, a.array(QList<ArchiveRef>(ProjectArchive::maxGlyphs + 1, glyph))});
        EXPECT_NE(failure(a.finish(root)).find("more than 65536 glyph records"), std::string::npos);
    }
}

TEST(ProjectArchive, UnreadableGlyphsAndWrongTypesFallBackPerRecordAndKey)
{
    KeyedArchiver a;
    const ArchiveRef interface = a.record({QStringLiteral("sharedAppState"), {}}, [](KeyedArchiver& s) {
        s.encodeObject(QStringLiteral("wide"), QStringLiteral("width")); // a string for an int
        s.encodeInt(12, QStringLiteral("bgColor"));                      // an int for a colour
        s.encodeObject(ArchiveRef{9999}, QStringLiteral("fontName"));    // a UID out of range
        s.encodeObject(s.string(QStringLiteral("x")),
                       QStringLiteral("colorGradient")); // a string for a gradient
        s.encodeInt(64, QStringLiteral("glyphSize"));
    });
    const ArchiveRef glyph = a.record({QStringLiteral("CGGlyphBitmap"), {}}, [](KeyedArchiver& g) {
        g.encodeObject(QStringLiteral("Q"), QStringLiteral("charname"));
        g.encodeObject(g.record({QStringLiteral("NSGradient"), {}}, [](KeyedArchiver&) {}),
                       QStringLiteral("colorGradient"));
        g.encodeObject(Color::red(), QStringLiteral("startGradiantColor"));
        g.encodeObject(Color::yellow(), QStringLiteral("endGradiantColor"));
    });
    const ArchiveRef list = a.array({a.string(QStringLiteral("not a record")), glyph, glyph, ArchiveRef{}});
    const ArchiveRef root = a.dictionary(
        {a.string(QStringLiteral("interface")), a.string(QStringLiteral("allglyphs"))}, {interface, list});
    const ProjectData project = decodeOrFail(a.finish(root));
    EXPECT_EQ(project.settings.width(), 0);
    EXPECT_FALSE(project.settings.bgColor().isValid());
    EXPECT_TRUE(project.settings.fontName().isNull());
    EXPECT_FALSE(project.settings.colorGradient().isValid());
    EXPECT_EQ(project.settings.glyphSize(), 64);
    // The string and nil are skipped, the repeated record is read once; its unreadable gradient
    // falls back to the two legacy colours.
    ASSERT_EQ(project.glyphs.size(), 1);
    EXPECT_EQ(project.glyphs[0].charname(), u'Q');
    EXPECT_EQ(project.glyphs[0].colorGradient(), Gradient::twoColor(Color::red(), Color::yellow()));
}

TEST(ProjectArchive, FailedSaveLeavesThePreviousFile)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString path = dir.filePath(QStringLiteral("p.quillmark"));
    sharedAppState first(InitialValues::Empty);
    first.setGlyphSize(11);
    ASSERT_TRUE(ProjectArchive::writeFile(path, first, {}));

    // A failed encoding (an image that cannot become TIFF is hard to make; a missing folder is
    // not) and an unwritable folder must both leave the file as it was.
    sharedAppState second(InitialValues::Empty);
    second.setGlyphSize(22);
    QString error;
    EXPECT_FALSE(
        ProjectArchive::writeFile(dir.filePath(QStringLiteral("missing/p.quillmark")), second, {}, &error));
    EXPECT_NE(error.toStdString().find("missing/p.quillmark"), std::string::npos);
    if (geteuid() != 0) {
        ASSERT_TRUE(QFile::setPermissions(dir.path(), QFileDevice::ReadOwner | QFileDevice::ExeOwner));
        EXPECT_FALSE(ProjectArchive::writeFile(path, second, {}, &error));
        QFile::setPermissions(dir.path(),
                              QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
    }
    ProjectData project;
    ASSERT_TRUE(ProjectArchive::readFile(path, &project, &error)) << error.toStdString();
    EXPECT_EQ(project.settings.glyphSize(), 11);
    EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("p.quillmark")});
}

TEST(ProjectArchive, SettingsBeyondClassicTravelOnlyWhenSet)
{
    // A classic project names none of the newer keys, so older readers see the file they know.
    const QByteArray classic = ProjectArchive::encode(nonDefaultSettings(), {});
    for (const char* key : {"metricsMode", "kerningSource", "unicodeMode", "fallbackFamilies", "fillSpan",
                            "hinting", "pages", "distanceFieldSpread"})
        EXPECT_FALSE(classic.contains(key)) << key;

    sharedAppState settings = nonDefaultSettings();
    SettingsExtensions e;
    e.metrics = MetricsMode::Exact;
    e.kerning = KerningSource::Layout;
    e.unicode = UnicodeMode::Full;
    e.fallbackFamilies = {QStringLiteral("WenQuanYi Micro Hei"), QStringLiteral("DejaVu Sans")};
    e.fillSpan = FillSpan::Line;
    e.hinting = Hinting::Light;
    e.pages = 8;
    e.distanceField = 6;
    settings.setExtensions(e);
    const ProjectData project = decodeOrFail(ProjectArchive::encode(settings, {}));
    EXPECT_TRUE(project.settings.extensions() == e);

    // Values no version writes fall back to the classic default, one message per key.
    const QByteArray odd = handBuiltProject(
        [](KeyedArchiver& a) {
            a.encodeObject(QStringLiteral("precise"), QStringLiteral("metricsMode"));
            a.encodeInt(99, QStringLiteral("pages"));
            a.encodeObject(QStringLiteral("line"), QStringLiteral("fillSpan"));
        },
        {});
    const ProjectData read = decodeOrFail(odd);
    EXPECT_EQ(read.settings.extensions().metrics, MetricsMode::Classic);
    EXPECT_EQ(read.settings.extensions().pages, 1);
    EXPECT_EQ(read.settings.extensions().fillSpan, FillSpan::Line);
}
