// The font panel over the real font service: the search filters the families, the rows are
// drawn in their own faces with kerning families in green, a click chooses the family and the
// face pop-up follows, a loaded font file becomes the project's font, a missing family alerts.

#include "Classes/fonts/FontList.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Classes/ui/FontPanel.h"
#include "Classes/ui/StyledNameDelegate.h"
#include "Platform/text/FontManager.h"
#include "tests/support/TinyFont.h"
#include "tests/ui/PanelTestSupport.h"

#include <QFontDatabase>
#include <QListView>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>

using namespace qm;
using namespace qm::test;

namespace {

struct Fixture
{
    Project p;
    FontList fonts{p.state, p.view, p.controller};
    FontPanel panel{fonts, p.state};
    QSignalSpy fontChanged{&panel, &FontPanel::fontChanged};

    Fixture()
    {
        panel.resize(280, 420);
        present(panel);
    }
    QAbstractItemModel* model() const { return panel.fontTableView()->model(); }
    QStringList listed() const
    {
        QStringList names;
        for (int row = 0; row < model()->rowCount(); ++row)
            names.append(model()->index(row, 0).data().toString());
        return names;
    }
    QModelIndex rowOf(const QString& family) const
    {
        const int row = int(listed().indexOf(family));
        return row < 0 ? QModelIndex() : model()->index(row, 0);
    }
    /// Clicks a family's row as the user does.
    void clickFamily(const QString& family)
    {
        const QModelIndex index = rowOf(family);
        ASSERT_TRUE(index.isValid()) << family.toStdString();
        panel.fontTableView()->scrollTo(index);
        QTest::mouseClick(panel.fontTableView()->viewport(), Qt::LeftButton, {},
                          panel.fontTableView()->visualRect(index).center());
    }
    /// The row as drawn on screen.
    QImage rowImage(const QString& family)
    {
        const QModelIndex index = rowOf(family);
        panel.fontTableView()->scrollTo(index);
        QCoreApplication::processEvents();
        return panel.fontTableView()->viewport()->grab(panel.fontTableView()->visualRect(index)).toImage();
    }
};

/// Pixels of a clearly green ink, as the kerning tint blends into the background.
int greenPixels(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            if (c.green() - c.red() > 25 && c.green() - c.blue() > 25)
                ++count;
        }
    return count;
}

int darkPixels(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (image.pixelColor(x, y).lightness() < 100)
                ++count;
    return count;
}

} // namespace

TEST(FontPanel, SearchKeepsTheMatchingFamiliesAndClearingListsAllAgain)
{
    Fixture f;
    const QStringList all = f.listed();
    EXPECT_EQ(all, FontManager::availableFontFamilies());

    type(f.panel.searchField(), QStringLiteral("sans"));
    const QStringList found = f.listed();
    EXPECT_TRUE(found.contains(QStringLiteral("DejaVu Sans")));
    EXPECT_TRUE(found.contains(QStringLiteral("Liberation Sans")));
    EXPECT_FALSE(found.contains(QStringLiteral("DejaVu Serif")));
    for (const QString& family : found)
        EXPECT_TRUE(family.contains(QStringLiteral("sans"), Qt::CaseInsensitive)) << family.toStdString();
    EXPECT_LT(found.size(), all.size());
    // The project's family stays highlighted without being chosen again.
    EXPECT_EQ(f.panel.fontTableView()->currentIndex().data().toString(), QStringLiteral("DejaVu Sans"));
    EXPECT_EQ(f.fontChanged.count(), 0);

    type(f.panel.searchField(), QString());
    EXPECT_EQ(f.listed(), all);
}

TEST(FontPanel, FamiliesWithKerningAreDrawnGreen)
{
    Fixture f;
    const QModelIndex sans = f.rowOf(QStringLiteral("DejaVu Sans"));
    const QModelIndex mono = f.rowOf(QStringLiteral("DejaVu Sans Mono"));
    ASSERT_TRUE(sans.isValid() && mono.isValid());
    EXPECT_EQ(sans.data(StyledNameDelegate::ColorRole).value<QColor>(), QColor::fromRgbF(0.1f, 0.3f, 0.1f));
    EXPECT_EQ(mono.data(StyledNameDelegate::ColorRole).value<QColor>(), QColor(Qt::black));
    EXPECT_EQ(f.panel.fontTableView()->visualRect(sans).height(), 30);

    f.panel.fontTableView()->clearSelection();
    const QImage kerned = f.rowImage(QStringLiteral("DejaVu Sans"));
    const QImage plain = f.rowImage(QStringLiteral("DejaVu Sans Mono"));
    EXPECT_GT(greenPixels(kerned), 20);
    EXPECT_EQ(greenPixels(plain), 0);
    EXPECT_GT(darkPixels(plain), 20) << "the name is drawn";
}

TEST(FontPanel, ClickingAFamilyMakesItTheProjectsFontAndListsItsFaces)
{
    Fixture f;
    f.clickFamily(QStringLiteral("DejaVu Serif"));
    EXPECT_EQ(f.p.state.fontName(), QStringLiteral("DejaVu Serif"));
    EXPECT_EQ(f.fontChanged.count(), 1);
    EXPECT_EQ(f.p.view.sizeChanges, 1) << "the glyph size is applied again";

    // The glyphs take the face the project's trait names (the second member by default).
    const QList<FontMember> members =
        FontManager::availableMembersOfFontFamily(QStringLiteral("DejaVu Serif"));
    ASSERT_GE(members.size(), 2);
    ASSERT_EQ(f.p.state.trait(), 1);
    EXPECT_EQ(f.panel.glyphTrait()->currentData().toInt(), 1);
    EXPECT_EQ(f.p.view.getCAGlyphLayer(u'A')->glyphBitmap().fntName(), members[1].postScriptName);
    ASSERT_EQ(f.panel.glyphTrait()->count(), members.size());
    for (int i = 0; i < members.size(); ++i) {
        EXPECT_EQ(f.panel.glyphTrait()->itemText(i), members[i].styleName);
        EXPECT_EQ(f.panel.glyphTrait()->itemData(i).toInt(), i);
    }
    choose(f.panel.glyphTrait(), 0);
    EXPECT_EQ(f.p.state.trait(), 0);
    EXPECT_EQ(f.p.view.getCAGlyphLayer(u'B')->glyphBitmap().fntName(), members[0].postScriptName);
    EXPECT_EQ(f.fontChanged.count(), 2);
}

TEST(FontPanel, MissingFamilyAlertsAndFallsBack)
{
    Fixture f;
    f.p.state.setFontName(QStringLiteral("No Such Family Quillmark"));
    f.p.controller.alerts.clear();
    f.panel.reloadFromSettings();
    ASSERT_EQ(f.p.controller.alerts.size(), 1);
    EXPECT_EQ(f.p.controller.alerts[0].message, QStringLiteral("Font"));
    EXPECT_EQ(f.p.controller.alerts[0].informativeText,
              QStringLiteral("The Font 'No Such Family Quillmark' has not been found on your system, please "
                             "install it and re-open your project"));
    EXPECT_EQ(f.p.state.fontName(), QStringLiteral("Arial"));
    EXPECT_GT(f.panel.glyphTrait()->count(), 0) << "the faces of the fallback";
}

TEST(FontPanel, LoadedFontFileIsAppendedChosenAndDrawnInItsFace)
{
    QTemporaryDir dir;
    ASSERT_TRUE(dir.isValid());
    TinyFontOptions options;
    options.family = QStringLiteral("Aaa Quillmark FontPanel");
    options.postScriptName = QStringLiteral("AaaQuillmarkFontPanel-Regular");
    options.glyphs = defaultTinyGlyphs();
    const QString path = dir.filePath(QStringLiteral("panel.ttf"));
    ASSERT_TRUE(writeTinyFont(path, options));

    Fixture f;
    const int before = f.model()->rowCount();
    f.p.controller.files.append(path);
    click(f.panel.loadFontButton());
    ASSERT_EQ(f.model()->rowCount(), before + 1);
    EXPECT_EQ(f.listed().last(), options.family);
    EXPECT_EQ(f.panel.fontTableView()->currentIndex().row(), before);
    EXPECT_EQ(f.p.state.fontName(), options.family);
    EXPECT_EQ(f.p.state.loadedFontPath(), path);
    EXPECT_TRUE(QFontDatabase::families().contains(options.family));
    EXPECT_EQ(f.fontChanged.count(), 1);

    // A cancelled chooser changes nothing.
    click(f.panel.loadFontButton());
    EXPECT_EQ(f.model()->rowCount(), before + 1);
    EXPECT_EQ(f.fontChanged.count(), 1);
}
