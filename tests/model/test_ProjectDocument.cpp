// Opening a project into a document: what is restored, upgraded, derived and refused.

#include "Classes/model/ProjectArchive.h"
#include "Classes/model/ProjectDocument.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/archive/KeyedArchiver.h"
#include "Platform/text/FontManager.h"
#include "tests/model/ScriptedController.h"

#include <QFile>
#include <QImage>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace qm;
using qm::test::ScriptedController;

namespace {

const QString kMissingFamily = QStringLiteral("Quillmark Missing Family");

/// A small project in DejaVu Sans: the characters "AB" (and the space) at 30 pixels.
void shapeProject(ProjectDocument& d, const QString& characters = QStringLiteral("AB"))
{
    d.chooseFamily(QStringLiteral("DejaVu Sans"), false);
    d.applyCharacters(characters);
    d.reallyChangeGlyphSize(30);
}

QByteArray readBytes(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool writeBytes(const QString& path, const QByteArray& bytes)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

/// A project file made by hand: the settings record holds only what `settings` encodes, and
/// each glyph record only what its function encodes.
QByteArray handBuiltProject(const std::function<void(KeyedArchiver&)>& settings,
                            const QList<std::function<void(KeyedArchiver&)>>& glyphs = {})
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

/// The settings keys a legacy project of this program always had, in DejaVu Sans.
void legacyBasics(KeyedArchiver& a)
{
    a.encodeObject(QStringLiteral("DejaVu Sans"), QStringLiteral("fontName"));
    a.encodeObject(QStringLiteral(" AB"), QStringLiteral("textGlyph"));
    a.encodeInt(30, QStringLiteral("glyphSize"));
    a.encodeBool(true, QStringLiteral("autoSize"));
    a.encodeInt(2, QStringLiteral("paddingSize"));
}

class ProjectDocumentOpen : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    ScriptedController ui;

    QString save(ProjectDocument& d, const QString& name)
    {
        const QString path = dir.filePath(name);
        QString error;
        EXPECT_TRUE(d.writeProjectFile(path, &error)) << qPrintable(error);
        return path;
    }
    QString write(const QString& name, const QByteArray& bytes)
    {
        const QString path = dir.filePath(name);
        EXPECT_TRUE(writeBytes(path, bytes));
        return path;
    }
};

TEST_F(ProjectDocumentOpen, ANewWindowShowsTheDefaultsAndCountsAsUnchanged)
{
    ProjectDocument d(&ui);
    d.setUpWindow();
    EXPECT_FALSE(d.state().configchanged());
    EXPECT_FALSE(d.justLoading());
    EXPECT_EQ(d.previewText(), QStringLiteral("Preview\\nText"));
    EXPECT_EQ(d.state().previewTextString(), d.previewText());
    EXPECT_EQ(d.glyphCount(), 1); // the space is always part of the set
    EXPECT_GT(d.state().spaceWidth(), 0);
    EXPECT_EQ(d.publishPanel().targetArray(), QStringList{QStringLiteral("Default")});
    EXPECT_FALSE(d.fontList().fontArray().isEmpty());
    EXPECT_FALSE(d.fontList().glyphTraitItems().isEmpty()); // "Arial" resolves to an installed family
    EXPECT_TRUE(ui.alerts.isEmpty());
    EXPECT_EQ(ui.titles, QStringList{QStringLiteral("Quillmark")});
    EXPECT_EQ(ui.panelReloads, 1);
}

TEST_F(ProjectDocumentOpen, RoundTripRestoresSettingsGlyphsAndCorrections)
{
    ProjectDocument made(&ui);
    made.setUpWindow();
    shapeProject(made, QStringLiteral("ABCxyz"));
    sharedAppState& s = made.state();
    s.setShadowInfo(true, 3, -4, 2, 0);
    s.setStrokeInfo(true, 2.5f, Color::calibratedRGB(0.25, 0.5, 1), 2);
    s.setGradiant(45, Gradient({{Color::red(), 0.0}, {Color::yellow(), 0.5}, {Color::orange(), 1.0}}));
    s.setPackingOptions(3, 1, false, false);
    s.updatefixedadvance(true, 17);
    s.setXadvancedOffset(2);
    s.setKernings(false);
    s.updatemiterlimit(4);
    made.previewTextChanged(QStringLiteral("AB\\nCx"));
    // Per-glyph corrections and a custom picture: opaque and clear pixels survive the TIFF.
    made.view().getCAGlyphLayer(u'A')->glyphBitmap().setAddXAdvance(7);
    made.view().getCAGlyphLayer(u'x')->glyphBitmap().setAddYOffset(-3);
    QImage picture(6, 4, QImage::Format_RGBA8888_Premultiplied);
    picture.fill(Qt::transparent);
    picture.setPixelColor(1, 1, QColor(200, 40, 10));
    CGGlyphBitmap& z = made.view().getCAGlyphLayer(u'z')->glyphBitmap();
    z.setGlyphImage(picture);
    z.setFrameImage(QRectF(0, 0, 6, 4));
    made.view().updateGlyphImage(u'z', true, false);
    s.setLineHeight(44);
    s.setSpaceWidth(13);
    ui.filesToSave = {dir.filePath(QStringLiteral("round.quillmark"))};
    ASSERT_TRUE(made.buttonSave());

    ScriptedController otherUi;
    ProjectDocument opened(&otherUi);
    opened.setUpWindow();
    ASSERT_TRUE(opened.openfileproject(dir.filePath(QStringLiteral("round.quillmark"))));
    sharedAppState expected = made.state();
    expected.setConfigchanged(true); // re-applying the stored line height marks the project changed
    EXPECT_TRUE(opened.state().sameSettings(expected));
    EXPECT_EQ(opened.state().lineHeight(), 44);
    EXPECT_EQ(opened.state().spaceWidth(), 13);
    EXPECT_EQ(opened.previewText(), QStringLiteral("AB\\nCx"));
    ASSERT_EQ(opened.glyphCount(), made.glyphCount());
    const QList<CAGlyphLayer*> before = made.view().glyphLayers();
    const QList<CAGlyphLayer*> after = opened.view().glyphLayers();
    for (qsizetype i = 0; i < before.size(); ++i) {
        SCOPED_TRACE(QString(QChar(before[i]->glyphBitmap().charname())).toStdString());
        EXPECT_TRUE(after[i]->glyphBitmap() == before[i]->glyphBitmap());
        EXPECT_EQ(after[i]->position(), before[i]->position());
        EXPECT_EQ(after[i]->canfit(), before[i]->canfit());
    }
    EXPECT_EQ(opened.view().getCAGlyphLayer(u'A')->glyphBitmap().addXAdvance(), 7);
    EXPECT_EQ(opened.view().getCAGlyphLayer(u'z')->glyphBitmap().glyphImage(), picture);
    EXPECT_EQ(otherUi.titles.last(), QStringLiteral("Quillmark - round.quillmark"));
    EXPECT_EQ(otherUi.panelReloads, 2); // the window's set-up, then the opened project
    EXPECT_TRUE(otherUi.alerts.isEmpty());
}

TEST_F(ProjectDocumentOpen, OpeningKeepsThePreviewShown)
{
    ProjectDocument made;
    shapeProject(made);
    made.previewTextChanged(QStringLiteral("AB\\nBA"));
    const QString path = save(made, QStringLiteral("p.quillmark"));

    ProjectDocument d(&ui);
    d.setUpWindow();
    d.previewOrTextureChanged(true);
    ASSERT_TRUE(d.openfileproject(path));
    EXPECT_TRUE(d.state().isinpreviewmode());
    EXPECT_TRUE(d.view().showsPreview());
    EXPECT_EQ(d.view().frameSize(), QSizeF(4096, 4096));
    // Laid out from the project's preview text, on two lines, with the project's glyphs.
    EXPECT_EQ(d.state().previewText(), QStringLiteral("AB\nBA"));
    const auto& preview = d.view().previewLayer()->sublayers();
    ASSERT_FALSE(preview.empty());
    const auto* firstA = static_cast<const CAGlyphLayer*>(preview[preview.size() - 4].get());
    EXPECT_EQ(firstA->glyphBitmap().charname(), u'A');
    EXPECT_FALSE(firstA->isHidden());

    d.previewOrTextureChanged(false);
    EXPECT_FALSE(d.view().showsPreview());
    EXPECT_EQ(d.view().frameSize(), QSizeF(d.state().width(), d.state().height()));
}

TEST_F(ProjectDocumentOpen, OpeningWithoutAWindowRestoresCorrectionsAndTheHandSetLineHeight)
{
    ProjectDocument made;
    shapeProject(made);
    made.view().getCAGlyphLayer(u'A')->glyphBitmap().setAddXAdvance(7);
    made.state().setLineHeight(44);
    made.state().setSpaceWidth(0); // not set by hand: takes the font's
    const QString path = save(made, QStringLiteral("p.quillmark"));

    ProjectDocument opened(&ui);
    QString error;
    ASSERT_TRUE(opened.openfileproject(path, &error)) << qPrintable(error);
    EXPECT_EQ(opened.glyphCount(), 3);
    EXPECT_EQ(opened.placedGlyphCount(), 3);
    EXPECT_EQ(opened.view().getCAGlyphLayer(u'A')->glyphBitmap().addXAdvance(), 7);
    EXPECT_EQ(opened.state().lineHeight(), 44);
    EXPECT_TRUE(opened.state().configchanged());
    EXPECT_EQ(opened.state().spaceWidth(), opened.view().getSpaceWidth());
    EXPECT_GT(opened.state().spaceWidth(), 0);
    EXPECT_EQ(opened.state().projectName(), QUrl::fromLocalFile(path));
    EXPECT_FALSE(opened.state().kerningTable().isEmpty()); // DejaVu Sans has kerning pairs
    EXPECT_EQ(ui.recentDocuments, QStringList{path});

    // A stored line height of 0 means automatic: the opened project is unchanged.
    made.state().setLineHeight(0);
    ProjectDocument automatic;
    ASSERT_TRUE(automatic.openfileproject(save(made, QStringLiteral("auto.quillmark"))));
    EXPECT_GT(automatic.state().lineHeight(), 0);
    EXPECT_FALSE(automatic.state().configchanged());
}

TEST_F(ProjectDocumentOpen, ProjectsWithoutTargetsGetThemFromTheOlderOutputSettings)
{
    ProjectDocument made;
    shapeProject(made);
    made.state().setPublishDirectory(dir.path());
    made.state().setPublishName(QStringLiteral("title"));
    made.state().setAutoSDLevel(1);
    ProjectDocument opened;
    ASSERT_TRUE(opened.openfileproject(save(made, QStringLiteral("legacy.quillmark"))));
    const PublishTargets& targets = opened.state().targetsPublish();
    ASSERT_EQ(targets.keys(), (QStringList{QStringLiteral("HD"), QStringLiteral("SD")}));
    EXPECT_EQ(targets[QStringLiteral("SD")].scale, QStringLiteral("50.0000"));
    EXPECT_EQ(targets[QStringLiteral("HD")].path, dir.path());
    EXPECT_EQ(opened.publishPanel().targetArray(), (QStringList{QStringLiteral("HD"), QStringLiteral("SD")}));
}

TEST_F(ProjectDocumentOpen, LegacyFilesAreUpgraded)
{
    // No "version" (so version 0), the old SD switch, no preview text, only the two legacy
    // gradient colours.
    const QString old = write(QStringLiteral("old.quillmark"), handBuiltProject([](KeyedArchiver& a) {
                                  legacyBasics(a);
                                  a.encodeBool(true, QStringLiteral("autoSD"));
                                  a.encodeInt(0, QStringLiteral("autoSDLevel"));
                                  a.encodeObject(Color::red(), QStringLiteral("startGradiantColor"));
                                  a.encodeObject(Color::yellow(), QStringLiteral("endGradiantColor"));
                              }));
    ProjectDocument d(&ui);
    d.setUpWindow();
    ASSERT_TRUE(d.openfileproject(old));
    EXPECT_TRUE(d.state().autoxy());
    EXPECT_EQ(d.state().version(), 200);
    EXPECT_EQ(d.state().autoSDLevel(), 1);
    EXPECT_EQ(d.previewText(), QStringLiteral("Preview\\nText"));
    EXPECT_EQ(d.state().previewText(), QStringLiteral("Preview\nText")); // two lines
    EXPECT_EQ(d.colorGradientEditor(), Gradient::twoColor(Color::red(), Color::yellow()));
    // The stroke colours fall back to yellow and red when the file has none.
    EXPECT_EQ(d.strokeGradientEditor(), Gradient::twoColor(Color::yellow(), Color::red()));
    EXPECT_EQ(d.state().colorGradient(), d.colorGradientEditor());
    for (const CAGlyphLayer* layer : d.view().glyphLayers())
        EXPECT_TRUE(layer->glyphBitmap().autoxy());
    EXPECT_EQ(d.placedGlyphCount(), 3);
    EXPECT_TRUE(ui.alerts.isEmpty());

    // Saving writes version 200 and no "autoSD": reopened, the SD level stays as the user set it.
    d.state().setAutoSDLevel(2);
    ASSERT_TRUE(d.writeProjectFile(old, nullptr));
    ProjectDocument again;
    ASSERT_TRUE(again.openfileproject(old));
    EXPECT_EQ(again.state().version(), 200);
    EXPECT_EQ(again.state().autoSDLevel(), 2);

    // A newer project keeps its own auto x/y; "colorGradient" alone is shown from the colours.
    const QString newer = write(QStringLiteral("newer.quillmark"), handBuiltProject([](KeyedArchiver& a) {
                                    legacyBasics(a);
                                    a.encodeInt(193, QStringLiteral("version"));
                                    a.encodeObject(QStringLiteral(""), QStringLiteral("previewTextString"));
                                    a.encodeObject(Gradient::twoColor(Color::black(), Color::white()),
                                                   QStringLiteral("colorGradient"));
                                }));
    ProjectDocument d2;
    ASSERT_TRUE(d2.openfileproject(newer));
    EXPECT_FALSE(d2.state().autoxy());
    EXPECT_EQ(d2.state().version(), 193);
    EXPECT_EQ(d2.previewText(), QString()); // stored empty: shown empty
    EXPECT_EQ(d2.colorGradientEditor(), Gradient::twoColor(Color(), Color()));
    EXPECT_EQ(d2.state().colorGradient(), Gradient::twoColor(Color::black(), Color::white()));
}

TEST_F(ProjectDocumentOpen, AMissingFamilyIsReportedOnceAndFallsBackToArial)
{
    const QString path = write(QStringLiteral("missing.quillmark"), handBuiltProject([](KeyedArchiver& a) {
                                   legacyBasics(a);
                                   a.encodeObject(kMissingFamily, QStringLiteral("fontName"));
                               }));
    for (bool window : {true, false}) {
        SCOPED_TRACE(window ? "in a window" : "without a window");
        ScriptedController script;
        ProjectDocument d(&script);
        if (window)
            d.setUpWindow();
        ASSERT_TRUE(d.openfileproject(path));
        ASSERT_EQ(script.alerts.size(), 1);
        EXPECT_EQ(script.alerts[0].message, QStringLiteral("Font"));
        EXPECT_EQ(
            script.alerts[0].informativeText,
            QStringLiteral("The Font 'Quillmark Missing Family' has not been found on your system, please "
                           "install it and re-open your project"));
        EXPECT_EQ(script.alerts[0].buttons, QStringList{QStringLiteral("Ok")});
        EXPECT_EQ(d.state().fontName(), QStringLiteral("Arial"));
        EXPECT_EQ(d.placedGlyphCount(), 3);
    }
}

TEST_F(ProjectDocumentOpen, TheCommandLineRefusesAMissingFamilyAndUnreadableFiles)
{
    ProjectDocument made;
    shapeProject(made);
    made.state().setFontName(kMissingFamily);
    const QString path = save(made, QStringLiteral("missing.quillmark"));

    ProjectDocument d(&ui);
    d.setRefusesMissingFonts(true);
    QString error;
    EXPECT_FALSE(d.openfileproject(path, &error));
    EXPECT_TRUE(error.contains(QLatin1String("'Quillmark Missing Family'"))) << qPrintable(error);
    EXPECT_TRUE(error.contains(path)) << qPrintable(error);
    EXPECT_TRUE(ui.alerts.isEmpty());
    EXPECT_TRUE(d.state().sameSettings(sharedAppState()));

    EXPECT_FALSE(d.openfileproject(dir.filePath(QStringLiteral("none.quillmark")), &error));
    EXPECT_TRUE(error.contains(QLatin1String("none.quillmark"))) << qPrintable(error);
}

TEST_F(ProjectDocumentOpen, BadInputAnswersFalseAndChangesNothing)
{
    ProjectDocument d(&ui);
    d.setUpWindow();
    shapeProject(d);
    d.view().getCAGlyphLayer(u'A')->glyphBitmap().setAddXOffset(5);
    const QString good = save(d, QStringLiteral("good.quillmark"));
    const QByteArray goodBytes = readBytes(good);

    KeyedArchiver stringRoot;
    KeyedArchiver interfaceString;
    QList<std::pair<const char*, QByteArray>> inputs = {
        {"empty", QByteArray()},
        {"not an archive", "Quillmark project, honestly"},
        {"truncated", goodBytes.left(goodBytes.size() / 2)},
        {"bytes cut at the end", goodBytes.chopped(9)},
        {"root a string", stringRoot.finish(stringRoot.string(QStringLiteral("hello")))},
        {"interface a string", interfaceString.finish(interfaceString.dictionary(
                                   {interfaceString.string(QStringLiteral("interface"))},
                                   {interfaceString.string(QStringLiteral("x"))}))},
    };
    // Corrupted copies: runs of bytes overwritten at places spread over the file.
    QRandomGenerator random(7);
    for (int i = 0; i < 40; ++i) {
        QByteArray bytes = goodBytes;
        const int at = int(random.bounded(bytes.size()));
        for (int k = at; k < std::min<int>(at + 4, int(bytes.size())); ++k)
            bytes[k] = char(random.bounded(256));
        inputs.append({"corrupted", bytes});
    }
    int refused = 0;
    for (const auto& [name, bytes] : inputs) {
        SCOPED_TRACE(name);
        const QString path = write(QStringLiteral("bad.quillmark"), bytes);
        const sharedAppState before = d.state();
        const int glyphs = d.glyphCount();
        const qsizetype titles = ui.titles.size();
        const qsizetype recent = ui.recentDocuments.size();
        QString error;
        const bool opened = d.openfileproject(path, &error);
        EXPECT_EQ(ui.recentDocuments.size(), recent + 1); // noted before reading
        if (opened) {
            // Some corruptions only change a value: the file is then a project, opened as one.
            EXPECT_STREQ(name, "corrupted");
            ASSERT_TRUE(d.openfileproject(good));
            continue;
        }
        ++refused;
        EXPECT_FALSE(error.isEmpty());
        EXPECT_TRUE(d.state().sameSettings(before)) << "after " << qPrintable(error);
        EXPECT_EQ(d.glyphCount(), glyphs);
        EXPECT_EQ(d.view().getCAGlyphLayer(u'A')->glyphBitmap().addXOffset(), 5);
        EXPECT_EQ(ui.titles.size(), titles);
    }
    EXPECT_GE(refused, 6);
    const sharedAppState before = d.state();
    EXPECT_FALSE(d.openfileproject(dir.path())); // a folder
    EXPECT_TRUE(d.state().sameSettings(before));
}

TEST_F(ProjectDocumentOpen, ASettingsRecordWithoutAnyKeyStillOpens)
{
    // Every key missing (or unreadable, which reads the same): zero sizes, no font, no
    // characters. It opens on "Arial" after the alert without crashing or hanging.
    const QString path = write(QStringLiteral("empty.quillmark"), handBuiltProject([](KeyedArchiver&) {}));
    ProjectDocument d(&ui);
    d.setUpWindow();
    ASSERT_TRUE(d.openfileproject(path));
    EXPECT_EQ(d.state().fontName(), QStringLiteral("Arial"));
    EXPECT_EQ(d.glyphCount(), 1);
    EXPECT_EQ(ui.alerts.size(), 1);
}

TEST(ProjectDocumentFaces, RegularMemberIsUprightNormalWidthNearestToRegularWeight)
{
    const auto member = [](const char* style, int weight, int traits) {
        FontMember m;
        m.styleName = QString::fromLatin1(style);
        m.weight = weight;
        m.traits = traits;
        return m;
    };
    const QList<FontMember> family = {member("ExtraLight", 3, 0), member("Condensed", 5, CondensedTrait),
                                      member("Oblique", 5, ItalicTrait), member("Book", 4, 0),
                                      member("Bold", 9, BoldTrait)};
    EXPECT_EQ(ProjectDocument::regularMember(family), 3);
    EXPECT_EQ(ProjectDocument::regularMember({}), 0);

    // DejaVu Sans has lighter, condensed and slanted members; its regular face is "Book".
    const QList<FontMember> dejaVu = FontManager::availableMembersOfFontFamily(QStringLiteral("DejaVu Sans"));
    ASSERT_FALSE(dejaVu.isEmpty());
    EXPECT_EQ(dejaVu[ProjectDocument::regularMember(dejaVu)].styleName, QStringLiteral("Book"));
}

} // namespace
