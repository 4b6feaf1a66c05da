// The glyph editor panel over a real canvas: a right click loads a glyph, typed offsets reach the
// descriptor, the picture boxes follow their enabling rules, a re-read leaves the panel inactive.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Classes/ui/GlyphEditorPanel.h"
#include "Classes/ui/Stepper.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include <gtest/gtest.h>

using namespace qm;

namespace {

/// The window's part: a right click on the canvas opens the glyph editor.
class Window : public TextureController
{
public:
    GlyphEditorPanel* panel = nullptr;
    void showGlyphDetails(CAGlyphLayer* layer) override { panel->showGlyphDetails(layer); }
};

struct Fixture
{
    sharedAppState state;
    TextureView view;
    Window window;
    GlyphEditorPanel panel;
    QSignalSpy edited{&panel, &GlyphEditorPanel::glyphEdited};

    Fixture()
    {
        state.setTxtView(&view);
        state.setTxtCont(&window);
        view.setSharedState(&state);
        window.panel = &panel;
        panel.setState(&state);
        state.setFontName(QStringLiteral("DejaVu Sans"));
        state.setTextGlyph(QStringLiteral("ABC"));
        panel.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&panel));
    }
    CAGlyphLayer* layer(char16_t c) const { return view.getCAGlyphLayer(c); }
    void rightClick(char16_t c) { view.rightMouseUp(layer(c)->position()); }
    /// The descriptor's xoffset or yoffset of a character, as the BMFont text writer has it.
    int descriptorValue(int code, const char* key) const
    {
        const QString text = view.getFontplist(100, QStringLiteral("t.png"), 1, QStringLiteral("F"), 100);
        const QRegularExpression line(QStringLiteral("^char id=%1 .*\\b%2=(-?\\d+)").arg(code).arg(key),
                                      QRegularExpression::MultilineOption);
        const QRegularExpressionMatch m = line.match(text);
        EXPECT_TRUE(m.hasMatch()) << "no char line for " << code;
        return m.captured(1).toInt();
    }
    static void type(QLineEdit* field, const QString& text)
    {
        field->setFocus();
        field->selectAll();
        QTest::keyClicks(field, text);
    }
};

} // namespace

TEST(GlyphEditorPanel, RightClickLoadsTheGlyphAndTypedOffsetsReachTheDescriptor)
{
    Fixture f;
    EXPECT_EQ(f.panel.geCharInfo()->text(), QStringLiteral("(Right click on a glyph)"));
    EXPECT_FALSE(f.panel.gexOffset()->isEnabled());

    f.rightClick(u'A');
    EXPECT_EQ(f.panel.geCharInfo()->text(), QStringLiteral("A (65 - 0x41)"));
    EXPECT_TRUE(f.panel.geCharInfo()->isEnabled());
    const QSizeF size = f.layer(u'A')->bounds().size();
    EXPECT_EQ(f.panel.geWidth()->text(), QStringLiteral("%1 px").arg(int(size.width())));
    EXPECT_EQ(f.panel.geHeight()->text(), QStringLiteral("%1 px").arg(int(size.height())));
    for (QLineEdit* field : {f.panel.gexOffset(), f.panel.geyOffset(), f.panel.gexAdvance()}) {
        EXPECT_EQ(field->text(), QStringLiteral("0"));
        EXPECT_TRUE(field->isEnabled());
    }
    for (QLabel* caption : f.panel.captions())
        EXPECT_TRUE(caption->isEnabled()) << caption->objectName().toStdString();

    const int before = f.descriptorValue(65, "xoffset");
    const int beforeB = f.descriptorValue(66, "xoffset");
    Fixture::type(f.panel.gexOffset(), QStringLiteral("3"));
    EXPECT_EQ(f.layer(u'A')->glyphBitmap().addXOffset(), 3);
    EXPECT_EQ(f.descriptorValue(65, "xoffset"), before + 3);
    EXPECT_EQ(f.descriptorValue(66, "xoffset"), beforeB);
    EXPECT_EQ(f.panel.gexOffsetStepper()->value(), 3);
    EXPECT_EQ(f.edited.count(), 1);

    // The stepper steps from the typed value and writes the field.
    QTest::mouseClick(f.panel.gexOffsetStepper()->upButton(), Qt::LeftButton);
    EXPECT_EQ(f.panel.gexOffset()->text(), QStringLiteral("4"));
    EXPECT_EQ(f.descriptorValue(65, "xoffset"), before + 4);
    QTest::mouseClick(f.panel.gexAdvanceStepper()->downButton(), Qt::LeftButton);
    EXPECT_EQ(f.layer(u'A')->glyphBitmap().addXAdvance(), -1);
    EXPECT_EQ(f.panel.gexAdvance()->text(), QStringLiteral("-1"));
    EXPECT_EQ(f.edited.count(), 3);
}

TEST(GlyphEditorPanel, TypedTextIsReadAsAnInteger)
{
    Fixture f;
    f.rightClick(u'B');
    QLineEdit* y = f.panel.geyOffset();
    Fixture::type(y, QStringLiteral("ab"));
    EXPECT_EQ(y->text(), QStringLiteral("0"));
    EXPECT_EQ(f.layer(u'B')->glyphBitmap().addYOffset(), 0);
    Fixture::type(y, QStringLiteral("7x"));
    EXPECT_EQ(y->text(), QStringLiteral("7"));
    EXPECT_EQ(f.layer(u'B')->glyphBitmap().addYOffset(), 7);
    // A minus sign may start a number.
    Fixture::type(y, QStringLiteral("-2"));
    EXPECT_EQ(y->text(), QStringLiteral("-2"));
    EXPECT_EQ(f.layer(u'B')->glyphBitmap().addYOffset(), -2);
    Fixture::type(y, QStringLiteral("-"));
    EXPECT_EQ(y->text(), QStringLiteral("-"));
    QTest::keyClick(y, Qt::Key_Return);
    EXPECT_EQ(y->text(), QStringLiteral("0"));
    EXPECT_EQ(f.layer(u'B')->glyphBitmap().addYOffset(), 0);
    EXPECT_EQ(f.layer(u'A')->glyphBitmap().addYOffset(), 0);

    EXPECT_EQ(GlyphEditorPanel::intValue(QStringLiteral("  +12abc")), 12);
    EXPECT_EQ(GlyphEditorPanel::intValue(QStringLiteral("x12")), 0);
    EXPECT_EQ(GlyphEditorPanel::intValue(QStringLiteral("99999999999")), 2147483647);
    EXPECT_EQ(GlyphEditorPanel::intValue(QStringLiteral("-99999999999")), -2147483647 - 1);
}

TEST(GlyphEditorPanel, PictureBoxesFollowTheGlyphsPicture)
{
    Fixture f;
    f.rightClick(u'C'); // no picture: both boxes disabled
    EXPECT_FALSE(f.panel.geCustomImage()->isChecked());
    EXPECT_FALSE(f.panel.geCustomImage()->isEnabled());
    EXPECT_FALSE(f.panel.geFitImage()->isEnabled());

    // Drop a picture on A, as the canvas does.
    QTemporaryDir dir;
    QImage picture(20, 30, QImage::Format_RGBA8888_Premultiplied);
    picture.fill(Qt::magenta);
    const QString path = dir.filePath(QStringLiteral("p.png"));
    ASSERT_TRUE(picture.save(path));
    ASSERT_TRUE(f.view.draggingEntered(true));
    f.view.draggingUpdated(f.layer(u'A')->position());
    ASSERT_TRUE(f.view.performDragOperation({path}));
    ASSERT_TRUE(f.layer(u'A')->glyphBitmap().hasCustomPicture());

    f.rightClick(u'A');
    EXPECT_TRUE(f.panel.geCustomImage()->isChecked());
    EXPECT_TRUE(f.panel.geCustomImage()->isEnabled());
    EXPECT_TRUE(f.panel.geFitImage()->isEnabled());
    EXPECT_EQ(f.panel.geFitImage()->isChecked(), f.layer(u'A')->glyphBitmap().fitImage());

    const bool fit = f.panel.geFitImage()->isChecked();
    QTest::mouseClick(f.panel.geFitImage(), Qt::LeftButton);
    EXPECT_EQ(f.layer(u'A')->glyphBitmap().fitImage(), !fit);
    EXPECT_TRUE(f.layer(u'A')->glyphBitmap().hasCustomPicture());

    // Off greys both boxes, and the glyph drops its picture.
    QTest::mouseClick(f.panel.geCustomImage(), Qt::LeftButton);
    EXPECT_FALSE(f.panel.geCustomImage()->isEnabled());
    EXPECT_FALSE(f.panel.geFitImage()->isEnabled());
    EXPECT_FALSE(f.layer(u'A')->glyphBitmap().hasCustomPicture());
    EXPECT_EQ(f.edited.count(), 2);
}

TEST(GlyphEditorPanel, AReReadLeavesThePanelInactive)
{
    Fixture f;
    f.rightClick(u'A');
    f.panel.updateCurrentGlyphDetails();
    EXPECT_EQ(f.panel.geCharInfo()->text(), QStringLiteral("(Right click on a glyph)"));
    EXPECT_FALSE(f.panel.geCharInfo()->isEnabled());
    EXPECT_TRUE(f.panel.geWidth()->text().isEmpty());
    EXPECT_TRUE(f.panel.geHeight()->text().isEmpty());
    for (QWidget* w : std::initializer_list<QWidget*>{f.panel.gexOffset(), f.panel.geyOffsetStepper(),
                                                      f.panel.geCustomImage(), f.panel.geFitImage()})
        EXPECT_FALSE(w->isEnabled()) << w->objectName().toStdString();
    for (QLabel* caption : f.panel.captions())
        EXPECT_FALSE(caption->isEnabled());
    EXPECT_EQ(f.panel.captions().size(), 9);

    // A right click on empty canvas leaves the panel as it is.
    f.rightClick(u'B');
    f.view.rightMouseUp(QPointF(-100, -100));
    EXPECT_EQ(f.panel.geCharInfo()->text(), QStringLiteral("B (66 - 0x42)"));
    f.panel.showGlyphDetails(nullptr);
    EXPECT_EQ(f.panel.geCharInfo()->text(), QStringLiteral("(Right click on a glyph)"));
}
