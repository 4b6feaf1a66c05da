// The font list, the family choice, the face pop-up and font loading, on the real font service,
// canvas and settings, with fonts built in the test for loading.

#include "Classes/atlas/TextureView.h"
#include "Classes/fonts/FontList.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/text/FontManager.h"
#include "tests/support/TinyFont.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace qm;
using namespace qm::test;

namespace {

class PreviewCountingView : public TextureView
{
public:
    QStringList previews;
    void updatePreview(const QString& text) override { previews.append(text); }
};

/// Records alerts and file choosers, and answers the file chooser with `fileToOpen`.
class RecordingController : public TextureController
{
public:
    struct Alert
    {
        QString message, informativeText;
        QStringList buttons;
    };
    QList<Alert> alerts;
    QList<QStringList> chooserExtensions;
    QString fileToOpen;

    int runAlert(const QString& message, const QString& informativeText, const QStringList& buttons) override
    {
        alerts.append({message, informativeText, buttons});
        return 0;
    }
    QString chooseFileToOpen(const QString&, const QStringList& extensions) override
    {
        chooserExtensions.append(extensions);
        return fileToOpen;
    }
};

struct Window
{
    sharedAppState state;
    PreviewCountingView view;
    RecordingController controller;
    FontList fonts{state, view, controller};
    explicit Window(const QString& fontName = QStringLiteral("DejaVu Sans"))
    {
        state.setFontName(fontName);
        state.setTxtView(&view);
        state.setTxtCont(&controller);
        view.setSharedState(&state);
    }
    QStringList listed() const
    {
        QStringList names;
        for (const FontRow& row : fonts.fontArray())
            names.append(row.familyName);
        return names;
    }
    bool kerningOf(const QString& family) const
    {
        for (const FontRow& row : fonts.fontArray())
            if (row.familyName == family)
                return row.hasKerning;
        ADD_FAILURE() << "not listed: " << family.toStdString();
        return false;
    }
};

/// A family name no other test of this process uses; it sorts before every installed family,
/// so that appending at the end differs from the font manager's order.
QString freshFamily()
{
    static int counter = 0;
    return QStringLiteral("Aaa Quillmark FontList %1").arg(++counter);
}

TinyFontOptions tinyFont(const QString& family, const QString& style = QStringLiteral("Regular"))
{
    TinyFontOptions o;
    o.family = family;
    o.style = style;
    o.postScriptName = QString(family).remove(QLatin1Char(' ')) + QLatin1Char('-') + style;
    o.glyphs = defaultTinyGlyphs(); // A V T o space = glyphs 1..5
    return o;
}

} // namespace

TEST(FontList, ListsEveryFamilyOnceInManagerOrderWithKerningFlags)
{
    Window w;
    w.fonts.setUp();
    const QStringList families = FontManager::availableFontFamilies();
    EXPECT_EQ(w.fonts.systemFonts(), families);
    EXPECT_EQ(w.listed(), families);
    w.fonts.reloadFontTableView();
    EXPECT_EQ(w.listed(), families); // never twice

    // DejaVu Sans carries a format 0 kern table, its monospaced sibling none.
    EXPECT_TRUE(w.kerningOf(QStringLiteral("DejaVu Sans")));
    EXPECT_FALSE(w.kerningOf(QStringLiteral("DejaVu Sans Mono")));
}

TEST(FontList, SearchFiltersIgnoringCaseAndClearingRestoresAll)
{
    Window w;
    w.fonts.setUp();
    const QStringList families = FontManager::availableFontFamilies();
    QStringList withSans;
    for (const QString& f : families)
        if (f.contains(QStringLiteral("sans"), Qt::CaseInsensitive))
            withSans.append(f);
    ASSERT_FALSE(withSans.isEmpty());
    ASSERT_LT(withSans.size(), families.size());

    w.state.setConfigchanged(false);
    w.fonts.searchFieldChanged(QStringLiteral("sans"));
    EXPECT_EQ(w.listed(), withSans);
    EXPECT_FALSE(w.state.configchanged()); // searching edits nothing
    EXPECT_TRUE(w.listed().contains(QStringLiteral("DejaVu Sans")));
    w.fonts.searchFieldChanged(QStringLiteral("SaNs"));
    EXPECT_EQ(w.listed(), withSans);
    // Filtering only rebuilds the list: the project's family stays highlighted, not re-chosen.
    EXPECT_EQ(w.fonts.selectedRow(), int(withSans.indexOf(QStringLiteral("DejaVu Sans"))));
    EXPECT_TRUE(w.controller.alerts.isEmpty());

    w.fonts.searchFieldChanged(QString());
    EXPECT_EQ(w.listed(), families);
}

TEST(FontList, ChoosingAFamilyReadsItsTablesOrEmptiesThem)
{
    Window w;
    w.state.setTextGlyph(QStringLiteral(" AV"));
    w.state.setLineHeight(999);
    w.state.setSpaceWidth(777);
    w.state.setPreviewTextString(QStringLiteral("AVA"));
    w.fonts.setUp();

    const int sans = int(w.listed().indexOf(QStringLiteral("DejaVu Sans")));
    const int mono = int(w.listed().indexOf(QStringLiteral("DejaVu Sans Mono")));
    w.fonts.selectRow(sans);
    EXPECT_EQ(w.state.fontName(), QStringLiteral("DejaVu Sans"));
    EXPECT_FALSE(w.state.loadedFontName());
    EXPECT_FALSE(w.state.kerningTable().isEmpty());
    EXPECT_FALSE(w.state.cmapTable().isEmpty());
    // The glyph size was applied again: hand-set line height and space width give way.
    EXPECT_EQ(w.state.lineHeight(), w.view.getDefaultLineHeight());
    EXPECT_NE(w.state.lineHeight(), 999);
    EXPECT_EQ(w.state.spaceWidth(), w.view.getSpaceWidth());
    EXPECT_EQ(w.view.previews.last(), QStringLiteral("AVA"));

    w.fonts.selectRow(mono);
    EXPECT_EQ(w.state.fontName(), QStringLiteral("DejaVu Sans Mono"));
    EXPECT_TRUE(w.state.kerningTable().isEmpty());
    EXPECT_TRUE(w.state.cmapTable().isEmpty()); // the character map is only read with kerning
    // The glyphs now use the project's face of the new family.
    const QList<FontMember> members =
        FontManager::availableMembersOfFontFamily(QStringLiteral("DejaVu Sans Mono"));
    ASSERT_GT(members.size(), w.state.trait());
    EXPECT_EQ(w.fonts.glyphTraitItems().size(), members.size());
    for (CAGlyphLayer* layer : w.view.glyphLayers())
        EXPECT_EQ(layer->glyphBitmap().fntName(), members[w.state.trait()].postScriptName);
}

TEST(FontList, FaceItemsAreTheMembersAndTheTraitIsSelected)
{
    Window w;
    w.state.setTrait(2);
    w.fonts.setUp();
    const QList<FontMember> members =
        FontManager::availableMembersOfFontFamily(QStringLiteral("DejaVu Sans"));
    ASSERT_GE(members.size(), 3);
    ASSERT_EQ(w.fonts.glyphTraitItems().size(), members.size());
    for (int i = 0; i < members.size(); ++i)
        EXPECT_EQ(w.fonts.glyphTraitItems()[i], (FaceItem{members[i].styleName, i}));
    EXPECT_EQ(w.fonts.selectedTraitTag(), 2);
    EXPECT_EQ(w.state.trait(), 2);

    // A trait the family does not have falls to the first face.
    w.state.setTrait(99);
    w.fonts.updateFamilyNames();
    EXPECT_EQ(w.fonts.selectedTraitTag(), 0);
    EXPECT_EQ(w.state.trait(), 0);
}

TEST(FontList, MissingFamilyAlertsOncePerRefreshAndFallsBackToArial)
{
    Window w(QStringLiteral("Quillmark No Such Family"));
    w.fonts.setUp();
    ASSERT_EQ(w.controller.alerts.size(), 1);
    EXPECT_EQ(w.controller.alerts[0].message, QStringLiteral("Font"));
    EXPECT_EQ(w.controller.alerts[0].informativeText,
              QStringLiteral("The Font 'Quillmark No Such Family' has not been found on your system, please "
                             "install it and re-open your project"));
    EXPECT_EQ(w.controller.alerts[0].buttons, QStringList({QStringLiteral("Ok")}));
    EXPECT_EQ(w.state.fontName(), QStringLiteral("Arial"));
    const QList<FontMember> arial = FontManager::availableMembersOfFontFamily(QStringLiteral("Arial"));
    ASSERT_FALSE(arial.isEmpty()); // resolved through the system's metric aliases
    EXPECT_EQ(w.fonts.glyphTraitItems().size(), arial.size());

    // "Arial" itself is found: no further alert; a missing family again: exactly one more.
    w.fonts.updateFamilyNames();
    EXPECT_EQ(w.controller.alerts.size(), 1);
    w.state.setFontName(QStringLiteral("Quillmark Still Missing"));
    w.fonts.updateFamilyNames();
    EXPECT_EQ(w.controller.alerts.size(), 2);
    EXPECT_EQ(w.state.fontName(), QStringLiteral("Arial"));
}

TEST(FontList, LoadedFontIsAppendedAndChosen)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    const QString family = freshFamily();
    TinyFontOptions options = tinyFont(family);
    // Glyphs 1 and 2 are A and V: one pair, plus a zero pair that is never stored.
    options.rawTables.insert("kern", kernTable({kernFormat0({{1, 2, -80}, {3, 4, 0}})}));
    const QString path = dir.filePath(QStringLiteral("tiny.ttf"));
    ASSERT_TRUE(writeTinyFont(path, options));

    Window w;
    w.fonts.setUp();
    const qsizetype before = w.fonts.fontArray().size();
    w.state.setConfigchanged(false);
    w.controller.fileToOpen = path;
    w.fonts.loadFontClicked();

    EXPECT_EQ(w.controller.chooserExtensions,
              QList<QStringList>({{QStringLiteral("ttf"), QStringLiteral("otf")}}));
    ASSERT_EQ(w.fonts.fontArray().size(), before + 1);
    EXPECT_EQ(w.fonts.fontArray().last(), (FontRow{family, true}));
    EXPECT_EQ(FontManager::availableFontFamilies().first(), family); // the list appends instead
    EXPECT_EQ(w.fonts.selectedRow(), int(before));
    EXPECT_EQ(w.state.fontName(), family);
    EXPECT_TRUE(w.state.loadedFontName());
    EXPECT_EQ(w.state.loadedFontPath(), path);
    EXPECT_TRUE(w.state.configchanged());
    EXPECT_EQ(w.state.kerningTable(), (KerningTable{{{u'A', u'V'}, -80}}));
    EXPECT_EQ(w.state.cmapTable().value(1), u'A');
    EXPECT_EQ(w.fonts.glyphTraitItems(), QList<FaceItem>({{QStringLiteral("Regular"), 0}}));

    // A second face of a family already listed adds no row; the last row is chosen anyway.
    const QString boldPath = dir.filePath(QStringLiteral("tiny-bold.ttf"));
    ASSERT_TRUE(writeTinyFont(boldPath, tinyFont(family, QStringLiteral("Bold"))));
    w.controller.fileToOpen = boldPath;
    w.fonts.loadFontClicked();
    EXPECT_EQ(w.fonts.fontArray().size(), before + 1);
    EXPECT_EQ(w.fonts.selectedRow(), int(before));
    EXPECT_EQ(w.fonts.glyphTraitItems().size(), 2);
}

TEST(FontList, CancelledOrUnusableFontFiles)
{
    Window w;
    w.fonts.setUp();
    const QStringList listed = w.listed();
    w.state.setConfigchanged(false);

    w.fonts.loadFontClicked(); // the chooser is cancelled
    EXPECT_FALSE(w.state.configchanged());
    EXPECT_FALSE(w.state.loadedFontName());

    // A file that is no font still marks the project, and adds nothing.
    QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("broken.ttf"));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("not a font");
    file.close();
    w.controller.fileToOpen = path;
    w.fonts.loadFontClicked();
    EXPECT_TRUE(w.state.configchanged());
    EXPECT_TRUE(w.state.loadedFontName());
    EXPECT_EQ(w.state.loadedFontPath(), path);
    EXPECT_EQ(w.listed(), listed);
}

TEST(FontList, AnotherWindowsFontIsListedHereButNotChosenAndLeavingStopsListening)
{
    QTemporaryDir dir;
    const QString family = freshFamily();
    const QString path = dir.filePath(QStringLiteral("other.ttf"));
    ASSERT_TRUE(writeTinyFont(path, tinyFont(family)));

    Window here;
    here.fonts.setUp();
    int changes = 0;
    here.fonts.setChangedCallback([&] { ++changes; });
    {
        Window there;
        there.fonts.setUp();
        there.controller.fileToOpen = path;
        there.fonts.loadFontClicked();
        EXPECT_EQ(there.state.fontName(), family);
    }
    // The fonts-changed notice reaches every window and each lists the new family, but only the
    // window that loaded it makes it its font: this project keeps its own.
    EXPECT_EQ(here.listed().last(), family);
    EXPECT_NE(here.state.fontName(), family);
    EXPECT_FALSE(here.state.loadedFontName());
    EXPECT_GT(changes, 0);

    // The closed window no longer listens: registering one more font reaches only this one.
    const QString later = freshFamily();
    const QString laterPath = dir.filePath(QStringLiteral("later.ttf"));
    ASSERT_TRUE(writeTinyFont(laterPath, tinyFont(later)));
    ASSERT_TRUE(FontManager::registerFontsForFile(laterPath));
    EXPECT_EQ(here.listed().last(), later);
    EXPECT_EQ(here.listed().count(family), 1);
}
