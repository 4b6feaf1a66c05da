// A project opened without a window: what opening restores, derives and refuses.

#include "Classes/model/ProjectArchive.h"
#include "Classes/publish/ProjectSession.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/text/FontManager.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace qm;

namespace {

class ProjectSessionTest : public ::testing::Test
{
protected:
    QTemporaryDir dir;
    ProjectSession made;

    void SetUp() override
    {
        sharedAppState& s = made.state();
        s.setBlockredrawandpack(true);
        made.chooseFamily(QStringLiteral("DejaVu Sans"), false);
        s.setTextGlyph(QStringLiteral("AB"));
        s.setBlockredrawandpack(false);
        made.reallyChangeGlyphSize(30);
    }

    QString save(const QString& name)
    {
        const QString path = dir.filePath(name);
        QString error;
        EXPECT_TRUE(made.save(path, &error)) << qPrintable(error);
        return path;
    }
};

TEST_F(ProjectSessionTest, OpeningRestoresGlyphCorrectionsAndKeepsAHandSetLineHeight)
{
    made.view().getCAGlyphLayer(u'A')->glyphBitmap().setAddXAdvance(7);
    made.state().setLineHeight(44);
    made.state().setSpaceWidth(0); // not set by hand: takes the font's
    const QString path = save(QStringLiteral("p.quillmark"));

    ProjectSession opened;
    QString error;
    ASSERT_TRUE(opened.open(path, &error)) << qPrintable(error);
    EXPECT_EQ(opened.glyphCount(), 3); // the space is always part of the set
    EXPECT_EQ(opened.placedGlyphCount(), 3);
    EXPECT_EQ(opened.view().getCAGlyphLayer(u'A')->glyphBitmap().addXAdvance(), 7);
    EXPECT_EQ(opened.state().lineHeight(), 44);
    EXPECT_EQ(opened.state().spaceWidth(), opened.view().getSpaceWidth());
    EXPECT_GT(opened.state().spaceWidth(), 0);
    EXPECT_EQ(opened.state().projectName(), QUrl::fromLocalFile(path));
    EXPECT_FALSE(opened.state().configchanged());
}

TEST_F(ProjectSessionTest, ProjectsWithoutTargetsGetThemFromTheOlderOutputSettings)
{
    made.state().setPublishDirectory(dir.path());
    made.state().setPublishName(QStringLiteral("title"));
    made.state().setAutoSDLevel(1);
    ProjectSession opened;
    QString error;
    ASSERT_TRUE(opened.open(save(QStringLiteral("legacy.quillmark")), &error)) << qPrintable(error);
    const PublishTargets& targets = opened.state().targetsPublish();
    ASSERT_EQ(targets.keys(), (QStringList{QStringLiteral("HD"), QStringLiteral("SD")}));
    EXPECT_EQ(targets[QStringLiteral("SD")].scale, QStringLiteral("50.0000"));
    EXPECT_EQ(targets[QStringLiteral("HD")].path, dir.path());
}

TEST_F(ProjectSessionTest, AMissingFontOrFileIsAnErrorNamingIt)
{
    made.state().setFontName(QStringLiteral("Quillmark Missing Family"));
    const QString path = save(QStringLiteral("missing.quillmark"));
    ProjectSession opened;
    QString error;
    EXPECT_FALSE(opened.open(path, &error));
    EXPECT_TRUE(error.contains(QLatin1String("'Quillmark Missing Family'"))) << qPrintable(error);
    EXPECT_TRUE(error.contains(path)) << qPrintable(error);

    EXPECT_FALSE(opened.open(dir.filePath(QStringLiteral("none.quillmark")), &error));
    EXPECT_TRUE(error.contains(QLatin1String("none.quillmark"))) << qPrintable(error);
}

TEST(ProjectSessionFaces, RegularMemberIsUprightNormalWidthNearestToRegularWeight)
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
    EXPECT_EQ(ProjectSession::regularMember(family), 3);
    EXPECT_EQ(ProjectSession::regularMember({}), 0);

    // DejaVu Sans has lighter, condensed and slanted members; its regular face is "Book".
    const QList<FontMember> dejaVu = FontManager::availableMembersOfFontFamily(QStringLiteral("DejaVu Sans"));
    ASSERT_FALSE(dejaVu.isEmpty());
    EXPECT_EQ(dejaVu[ProjectSession::regularMember(dejaVu)].styleName, QStringLiteral("Book"));
}

} // namespace
