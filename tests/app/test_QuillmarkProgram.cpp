// The quillmark program's commands end to end, as a separate process without any display:
// exit statuses, messages, and files that public BMFont parsers read back.

#include "Platform/text/Font.h"
#include "tests/support/TestSupport.h"
#include "tests/support/TinyFont.h"

#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QProcess>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace qm;

namespace {

struct Outcome
{
    int status = -1;
    QString out;
    QString err;
};

/// Runs the program with no display and no Qt platform chosen, as a script on a server would.
Outcome quillmark(const QStringList& args, const QString& workingDirectory = QString())
{
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.remove(QStringLiteral("DISPLAY"));
    environment.remove(QStringLiteral("WAYLAND_DISPLAY"));
    environment.remove(QStringLiteral("QT_QPA_PLATFORM"));
    process.setProcessEnvironment(environment);
    if (!workingDirectory.isEmpty())
        process.setWorkingDirectory(workingDirectory);
    process.start(test::programPath(), args);
    Outcome run;
    if (!process.waitForFinished(120000) || process.exitStatus() != QProcess::NormalExit)
        return run;
    run.status = process.exitCode();
    run.out = QString::fromUtf8(process.readAllStandardOutput());
    run.err = QString::fromUtf8(process.readAllStandardError());
    return run;
}

/// Checks what a BMFont parser reads from a descriptor against its texture: the page names the
/// texture, the texture has the stated size, and every glyph rectangle lies inside it.
void expectConsistent(const QString& descriptor, const QString& texture, int size, int glyphs)
{
    SCOPED_TRACE(descriptor.toStdString());
    QString error;
    const QJsonObject font = test::readWithBMFontParser(descriptor, &error);
    ASSERT_TRUE(error.isEmpty()) << qPrintable(error);
    const QImage image(texture);
    ASSERT_FALSE(image.isNull());
    EXPECT_EQ(font.value(QStringLiteral("pages")).toArray().first().toString(),
              QFileInfo(texture).fileName());
    EXPECT_EQ(font.value(QStringLiteral("info")).toObject().value(QStringLiteral("size")).toInt(), size);
    const QJsonObject common = font.value(QStringLiteral("common")).toObject();
    EXPECT_EQ(common.value(QStringLiteral("scaleW")).toInt(), image.width());
    EXPECT_EQ(common.value(QStringLiteral("scaleH")).toInt(), image.height());
    const QJsonArray chars = font.value(QStringLiteral("chars")).toArray();
    EXPECT_EQ(chars.size(), glyphs);
    int inked = 0;
    for (const QJsonValue& v : chars) {
        const QJsonObject c = v.toObject();
        const QRect r(c.value(QStringLiteral("x")).toInt(), c.value(QStringLiteral("y")).toInt(),
                      c.value(QStringLiteral("width")).toInt(), c.value(QStringLiteral("height")).toInt());
        EXPECT_TRUE(r.isEmpty() || image.rect().contains(r)) << c.value(QStringLiteral("id")).toInt();
        EXPECT_GT(c.value(QStringLiteral("xadvance")).toInt(), 0) << c.value(QStringLiteral("id")).toInt();
        inked += r.isEmpty() ? 0 : 1;
    }
    EXPECT_EQ(inked, glyphs - 1); // every glyph but the space has a rectangle
}

} // namespace

TEST(QuillmarkProgram, GenerateWritesTwoScalesThatParseBack)
{
    QTemporaryDir dir;
    const Outcome run = quillmark({"generate", "--font", "DejaVu Sans", "--size", "32", "--out", "out/demo",
                                   "--scale", "100,50", "--suffix", ",-sd"},
                                  dir.path());
    ASSERT_EQ(run.status, 0) << qPrintable(run.err);
    const QString out = dir.filePath(QStringLiteral("out/"));
    EXPECT_EQ(run.out,
              QStringLiteral("\nProcessing texture: %1demo.png [Ok]\nProcessing coordinates: %1demo.fnt[Ok]"
                             "\nProcessing texture: %1demo-sd.png [Ok]\nProcessing coordinates: "
                             "%1demo-sd.fnt[Ok]\n")
                  .arg(out));
    expectConsistent(out + "demo.fnt", out + "demo.png", 32, 95);
    expectConsistent(out + "demo-sd.fnt", out + "demo-sd.png", 16, 95);
    EXPECT_LT(QImage(out + "demo-sd.png").width(), QImage(out + "demo.png").width());
}

TEST(QuillmarkProgram, GenerateFormatsByFriendlyName)
{
    QTemporaryDir dir;
    const Outcome xml = quillmark({"generate", "--font", "DejaVu Sans", "--size", "20", "--chars", "AB",
                                   "--format", "xml", "--out", dir.filePath("x/font")});
    ASSERT_EQ(xml.status, 0) << qPrintable(xml.err);
    expectConsistent(dir.filePath("x/font.fnt"), dir.filePath("x/font.png"), 20, 3);

    const Outcome lua = quillmark({"generate", "--font", "DejaVu Sans", "--chars", "AB", "--format", "lua",
                                   "--out", dir.filePath("l/font")});
    ASSERT_EQ(lua.status, 0) << qPrintable(lua.err);
    QFile script(dir.filePath("l/font.lua"));
    ASSERT_TRUE(script.open(QIODevice::ReadOnly));
    EXPECT_TRUE(script.readAll().startsWith("local sheetData = {}"));

    const Outcome atlas = quillmark({"generate", "--font", "DejaVu Sans", "--chars", "AB", "--format",
                                     "atlas", "--out", dir.filePath("a/font")});
    ASSERT_EQ(atlas.status, 0) << qPrintable(atlas.err);
    EXPECT_EQ(QDir(dir.filePath("a/font.atlas")).entryList(QDir::Files),
              (QStringList{"32.png", "65.png", "66.png"}));
    EXPECT_TRUE(QFile::exists(dir.filePath("a/font.xml")));
}

TEST(QuillmarkProgram, ExitStatusesNameTheProblemAndTheInput)
{
    QTemporaryDir dir;
    QFile blocker(dir.filePath("file"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();

    const Outcome unwritable = quillmark(
        {"generate", "--font", "DejaVu Sans", "--chars", "A", "--out", dir.filePath("file/sub/font")});
    EXPECT_EQ(unwritable.status, 1);
    EXPECT_TRUE(unwritable.out.contains("font.png [Failed]")) << qPrintable(unwritable.out);
    EXPECT_TRUE(unwritable.err.contains("2 of 2 files could not be written")) << qPrintable(unwritable.err);

    // The unset-suffix marker blocks the run before anything is written.
    const Outcome refused = quillmark({"generate", "--font", "DejaVu Sans", "--chars", "A", "--suffix",
                                       "CHANGE ME", "--out", dir.filePath("refused/font")});
    EXPECT_EQ(refused.status, 3);
    EXPECT_TRUE(refused.err.contains("Publish settings")) << qPrintable(refused.err);
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("refused")));

    const Outcome font = quillmark({"generate", "--font", "No Such Family 12", "--out", dir.filePath("x/f")});
    EXPECT_EQ(font.status, 1);
    EXPECT_TRUE(font.err.contains("unknown font 'No Such Family 12'")) << qPrintable(font.err);

    const Outcome range = quillmark({"generate", "--range", "5A-41", "--out", dir.filePath("x/f")});
    EXPECT_EQ(range.status, 2);
    EXPECT_TRUE(range.err.contains("bad range '5A-41'")) << qPrintable(range.err);

    const Outcome option = quillmark({"generate", "--colour", "red", "--out", dir.filePath("x/f")});
    EXPECT_EQ(option.status, 2);
    EXPECT_TRUE(option.err.contains("--colour")) << qPrintable(option.err);
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("x")));
}

TEST(QuillmarkProgram, VersionAndHelp)
{
    const Outcome version = quillmark({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(version.out.startsWith("quillmark ")) << qPrintable(version.out);
    for (const char* command : {"publish", "generate", "fonts", "blocks", "info"}) {
        const Outcome help = quillmark({command, "--help"});
        EXPECT_EQ(help.status, 0) << command;
        EXPECT_TRUE(help.out.startsWith(QStringLiteral("usage: quillmark ") + command))
            << qPrintable(help.out);
    }
    EXPECT_EQ(quillmark({"frobnicate"}).status, 2);
}

TEST(QuillmarkProgram, SavedProjectPublishesTheSameFilesRelativeToItsFolder)
{
    QTemporaryDir dir;
    const QStringList style = {"generate", "--font",    "DejaVu Sans", "--size",   "24",      "--chars",
                               "AVTo",     "--outline", "1.5",         "--shadow", "--scale", "100,50"};
    const Outcome generated =
        quillmark(style + QStringList{"--out", "first/font", "--save", "p/font.quillmark"}, dir.path());
    ASSERT_EQ(generated.status, 0) << qPrintable(generated.err);

    // The targets say "../first": moved one folder deeper, the project writes to a/first.
    QDir(dir.path()).mkpath("a/b");
    ASSERT_TRUE(QFile::copy(dir.filePath("p/font.quillmark"), dir.filePath("a/b/font.quillmark")));
    const Outcome published = quillmark({"publish", dir.filePath("a/b/font.quillmark")});
    ASSERT_EQ(published.status, 0) << qPrintable(published.err);
    for (const char* name : {"font.png", "font.fnt", "font-50.png", "font-50.fnt"}) {
        QFile generatedFile(dir.filePath(QStringLiteral("first/") + name));
        QFile publishedFile(dir.filePath(QStringLiteral("a/first/") + name));
        ASSERT_TRUE(generatedFile.open(QIODevice::ReadOnly)) << name;
        ASSERT_TRUE(publishedFile.open(QIODevice::ReadOnly)) << name;
        EXPECT_EQ(generatedFile.readAll(), publishedFile.readAll()) << name;
    }

    const Outcome info = quillmark({"info", dir.filePath("a/b/font.quillmark")});
    ASSERT_EQ(info.status, 0) << qPrintable(info.err);
    EXPECT_TRUE(info.out.contains("5 glyphs, 5 placed")) << qPrintable(info.out);
    EXPECT_TRUE(info.out.contains("targets     2")) << qPrintable(info.out);

    const Outcome one = quillmark({"publish", dir.filePath("a/b/font.quillmark"), "--target", "50%"});
    EXPECT_EQ(one.status, 0) << qPrintable(one.err);
    EXPECT_EQ(one.out.count("[Ok]"), 2);
    const Outcome unknown = quillmark({"publish", dir.filePath("a/b/font.quillmark"), "--target", "HD"});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_TRUE(unknown.err.contains("no target 'HD'")) << qPrintable(unknown.err);
}

TEST(QuillmarkProgram, PublishStatusesForRefusedFailedAndUnreadableProjects)
{
    QTemporaryDir dir;
    // A suffix still unset refuses the run; the project is kept all the same.
    const Outcome refused = quillmark({"generate", "--font", "DejaVu Sans", "--chars", "A", "--suffix",
                                       "CHANGE ME", "--out", "out/font", "--save", "p.quillmark"},
                                      dir.path());
    EXPECT_EQ(refused.status, 3);
    const Outcome again = quillmark({"publish", dir.filePath("p.quillmark")});
    EXPECT_EQ(again.status, 3);
    EXPECT_TRUE(again.out.contains("[error] Incomplete targets settings.")) << qPrintable(again.out);
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("out")));

    ASSERT_EQ(quillmark({"generate", "--font", "DejaVu Sans", "--chars", "A", "--out", "out/font", "--save",
                         "q.quillmark"},
                        dir.path())
                  .status,
              0);
    ASSERT_TRUE(QDir(dir.filePath("out")).removeRecursively());
    QFile blocker(dir.filePath("out"));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    blocker.close();
    const Outcome failed = quillmark({"publish", dir.filePath("q.quillmark")});
    EXPECT_EQ(failed.status, 1);
    EXPECT_EQ(failed.out.count("[Failed]"), 2) << qPrintable(failed.out);

    QFile garbage(dir.filePath("garbage.quillmark"));
    ASSERT_TRUE(garbage.open(QIODevice::WriteOnly));
    garbage.write("not a project");
    garbage.close();
    for (const char* command : {"publish", "info"}) {
        const Outcome unreadable = quillmark({command, garbage.fileName()});
        EXPECT_EQ(unreadable.status, 1) << command;
        EXPECT_TRUE(unreadable.err.contains(garbage.fileName())) << qPrintable(unreadable.err);
    }
    EXPECT_EQ(quillmark({"publish", dir.filePath("missing.quillmark")}).status, 1);
    EXPECT_EQ(quillmark({"publish"}).status, 2);
}

TEST(QuillmarkProgram, CharactersFromBlocksAndQuickSetsWithTheFontsKerning)
{
    QTemporaryDir dir;
    const Outcome run = quillmark({"generate", "--font", "DejaVu Sans", "--size", "20", "--block",
                                   "GREEKANDCOPTIC", "--set", "ascii", "--out", dir.filePath("g/font")});
    ASSERT_EQ(run.status, 0) << qPrintable(run.err);
    QString error;
    const QJsonObject font = test::readWithBMFontParser(dir.filePath("g/font.fnt"), &error);
    ASSERT_TRUE(error.isEmpty()) << qPrintable(error);

    // Every code of both sets that the font covers gets a glyph, plus the space; no other.
    const Font dejaVu = Font::fromName(QStringLiteral("DejaVu Sans"), 20);
    QSet<int> expected{0x20};
    for (int c = 0x21; c <= 0x7E; ++c)
        expected.insert(c);
    for (int c = 0x370; c <= 0x3FF; ++c)
        if (dejaVu.coversCharacter(char32_t(c)))
            expected.insert(c);
    QSet<int> written;
    for (const QJsonValue& v : font.value(QStringLiteral("chars")).toArray())
        written.insert(v.toObject().value(QStringLiteral("id")).toInt());
    EXPECT_EQ(written, expected);

    // DejaVu Sans kerns "AV"; every pair written joins two glyphs of the set.
    const QJsonArray kernings = font.value(QStringLiteral("kernings")).toArray();
    ASSERT_FALSE(kernings.isEmpty());
    bool av = false;
    for (const QJsonValue& v : kernings) {
        const QJsonObject k = v.toObject();
        const int first = k.value(QStringLiteral("first")).toInt(),
                  second = k.value(QStringLiteral("second")).toInt();
        EXPECT_TRUE(written.contains(first) && written.contains(second)) << first << " " << second;
        av = av || (first == 'A' && second == 'V' && k.value(QStringLiteral("amount")).toInt() < 0);
    }
    EXPECT_TRUE(av);
}

TEST(QuillmarkProgram, FontsMarkKerningAndBlocksListTheTable)
{
    const Outcome fonts = quillmark({"fonts", "--search", "DEJAVU SANS"});
    ASSERT_EQ(fonts.status, 0) << qPrintable(fonts.err);
    const QStringList lines = fonts.out.split('\n', Qt::SkipEmptyParts);
    EXPECT_TRUE(lines.contains("DejaVu Sans\tkerning")) << qPrintable(fonts.out);
    for (const QString& line : lines)
        EXPECT_TRUE(line.startsWith("DejaVu Sans")) << qPrintable(line);

    const Outcome blocks = quillmark({"blocks"});
    ASSERT_EQ(blocks.status, 0);
    const QStringList rows = blocks.out.split('\n', Qt::SkipEmptyParts);
    ASSERT_EQ(rows.size(), 101);
    EXPECT_EQ(rows.first().simplified(), "basicLatin 0021-007F");
    EXPECT_EQ(rows.last().simplified(), "specials FFF0-FFFF");

    QTemporaryDir dir;
    const Outcome unknown = quillmark({"generate", "--block", "klingon", "--out", dir.filePath("x/f")});
    EXPECT_EQ(unknown.status, 2);
    EXPECT_TRUE(unknown.err.contains("unknown block 'klingon'")) << qPrintable(unknown.err);
}

TEST(QuillmarkProgram, FaceByStyleNameOrByFontFile)
{
    QTemporaryDir dir;
    const auto glyphWidth = [&](const QStringList& fontOptions, const QString& name) {
        const Outcome run = quillmark(QStringList{"generate", "--size", "40", "--chars", "l", "--no-outline",
                                                  "--out", dir.filePath(name + "/f")} +
                                      fontOptions);
        EXPECT_EQ(run.status, 0) << qPrintable(run.err);
        QString error;
        const QJsonObject font = test::readWithBMFontParser(dir.filePath(name + "/f.fnt"), &error);
        for (const QJsonValue& v : font.value(QStringLiteral("chars")).toArray())
            if (v.toObject().value(QStringLiteral("id")).toInt() == 'l')
                return v.toObject().value(QStringLiteral("width")).toInt();
        return -1;
    };
    const int book = glyphWidth({"--font", "DejaVu Sans"}, "book");
    const int bold = glyphWidth({"--font", "DejaVu Sans", "--face", "bold"}, "bold");
    const QString boldFile = Font::fromName(QStringLiteral("DejaVuSans-Bold"), 40).filePath();
    ASSERT_FALSE(boldFile.isEmpty());
    const int fromFile = glyphWidth({"--font", boldFile}, "file");
    EXPECT_GT(book, 0);
    EXPECT_GT(bold, book);
    EXPECT_EQ(fromFile, bold);

    const Outcome noFace =
        quillmark({"generate", "--font", "DejaVu Sans", "--face", "Wide", "--out", dir.filePath("x/f")});
    EXPECT_EQ(noFace.status, 2);
    EXPECT_TRUE(noFace.err.contains("no face 'Wide'") && noFace.err.contains("Book"))
        << qPrintable(noFace.err);
}

TEST(QuillmarkProgram, PublishRefusesAProjectWhoseFontIsGone)
{
    // Made from a font file that is then deleted: the family is not installed anywhere, so the
    // project is not published in a stand-in font.
    QTemporaryDir dir;
    test::TinyFontOptions options;
    options.family = QStringLiteral("Quillmark Vanishing");
    options.postScriptName = QStringLiteral("QuillmarkVanishing-Regular");
    options.glyphs = test::defaultTinyGlyphs();
    const QString fontFile = dir.filePath(QStringLiteral("vanishing.ttf"));
    ASSERT_TRUE(test::writeTinyFont(fontFile, options));
    const Outcome made = quillmark(
        {"generate", "--font", fontFile, "--chars", "AV", "--out", "out/font", "--save", "p.quillmark"},
        dir.path());
    ASSERT_EQ(made.status, 0) << qPrintable(made.err);
    ASSERT_TRUE(QFile::remove(fontFile));
    ASSERT_TRUE(QDir(dir.filePath("out")).removeRecursively());

    const Outcome gone = quillmark({"publish", dir.filePath("p.quillmark")});
    EXPECT_EQ(gone.status, 1);
    EXPECT_TRUE(gone.err.contains("'Quillmark Vanishing', which is not installed")) << qPrintable(gone.err);
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("out")));
}

TEST(QuillmarkProgram, PreviewRendersSampleTextHeadless)
{
    QTemporaryDir dir;
    const Outcome generated = quillmark({"generate", "--font", "DejaVu Sans", "--size", "30", "--chars", "AVTo",
                                         "--out", dir.filePath("out/font"), "--save", dir.filePath("p.quillmark")});
    ASSERT_EQ(generated.status, 0) << qPrintable(generated.err);
    const QString project = dir.filePath("p.quillmark");

    const Outcome one = quillmark({"preview", project, "--text", "AVTo", "--out", dir.filePath("one.png")});
    ASSERT_EQ(one.status, 0) << qPrintable(one.err);
    const QImage line(dir.filePath("one.png"));
    ASSERT_FALSE(line.isNull());
    // A backslash-n breaks the line, as in the preview field; unknown characters are left out.
    const Outcome two = quillmark({"preview", project, "--text=AVTo\\nToZ", "--out=" + dir.filePath("two.png")});
    ASSERT_EQ(two.status, 0) << qPrintable(two.err);
    const QImage lines(dir.filePath("two.png"));
    EXPECT_EQ(lines.width(), line.width());
    EXPECT_GT(lines.height(), line.height() + 20);

    int inked = 0;
    for (int y = 0; y < line.height(); ++y)
        for (int x = 0; x < line.width(); ++x)
            inked += qAlpha(line.pixel(x, y)) > 128 ? 1 : 0;
    EXPECT_GT(inked, 200);
    EXPECT_TRUE(one.out.contains(QStringLiteral("%1x%2").arg(line.width()).arg(line.height()))) << qPrintable(one.out);

    const Outcome nothing = quillmark({"preview", project, "--text", "ZZ", "--out", dir.filePath("z.png")});
    EXPECT_EQ(nothing.status, 1);
    EXPECT_TRUE(nothing.err.contains("nothing to draw")) << qPrintable(nothing.err);
    EXPECT_FALSE(QFileInfo::exists(dir.filePath("z.png")));

    const Outcome noOut = quillmark({"preview", project, "--text", "A"});
    EXPECT_EQ(noOut.status, 2);
    EXPECT_TRUE(noOut.err.contains("--out")) << qPrintable(noOut.err);
    const Outcome unwritable = quillmark({"preview", project, "--text", "A", "--out", dir.filePath("one.png/x.png")});
    EXPECT_EQ(unwritable.status, 1);
    EXPECT_TRUE(unwritable.err.contains("cannot write")) << qPrintable(unwritable.err);
    const Outcome missing = quillmark({"preview", dir.filePath("none.quillmark"), "--out", dir.filePath("n.png")});
    EXPECT_EQ(missing.status, 1);
}
