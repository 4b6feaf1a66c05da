// The editor widgets laid out as a user sees them: no control is squeezed below the size it
// needs or pushed outside its parent. With QUILLMARK_SCREENSHOT_DIR set, each is also saved as a
// PNG there for a look by eye.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Classes/ui/GlyphEditorPanel.h"
#include "Classes/ui/SFBInspectorView.h"
#include "Classes/ui/SFBViewSelectorBar.h"
#include "Classes/ui/SFBViewSelectorBarItem.h"
#include "Classes/ui/gradientEditor.h"

#include <QAbstractButton>
#include <QDir>
#include <QLabel>
#include <QLineEdit>
#include <QStyle>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

using namespace qm;

namespace {

void save(QWidget& w, const char* name)
{
    const QString dir = qEnvironmentVariable("QUILLMARK_SCREENSHOT_DIR");
    if (dir.isEmpty())
        return;
    QDir().mkpath(dir);
    EXPECT_TRUE(w.grab().save(QDir(dir).filePath(QString::fromLatin1(name) + QStringLiteral(".png"))));
}

/// Shows a top-level widget at its preferred size and lets the layouts settle.
void present(QWidget& w, QSize size = QSize())
{
    w.resize(size.isValid() ? size : w.sizeHint());
    w.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&w));
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
}

/// Every visible control gets at least its minimum size and lies inside its parent.
void expectNothingClipped(const QWidget& top)
{
    for (const QWidget* w : top.findChildren<QWidget*>()) {
        if (!w->isVisibleTo(&top) || w->isWindow())
            continue;
        // Controls that show text; arrow-only buttons are drawn to the size they are given.
        const auto* button = qobject_cast<const QAbstractButton*>(w);
        const bool control = qobject_cast<const QLabel*>(w) || (button && !button->text().isEmpty()) ||
                             qobject_cast<const QLineEdit*>(w);
        const QString name =
            w->objectName().isEmpty() ? QString::fromLatin1(w->metaObject()->className()) : w->objectName();
        if (control) {
            const QSize need = w->minimumSizeHint();
            EXPECT_GE(w->width(), need.width()) << name.toStdString();
            EXPECT_GE(w->height(), need.height()) << name.toStdString();
        }
        if (const auto* label = qobject_cast<const QLabel*>(w); label && !label->wordWrap()) {
            EXPECT_GE(w->width(), label->sizeHint().width()) << "text cut: " << name.toStdString();
        }
        EXPECT_TRUE(w->parentWidget()->rect().contains(w->geometry()))
            << "outside its parent: " << name.toStdString();
    }
}

struct Canvas
{
    sharedAppState state;
    TextureView view;
    Canvas()
    {
        state.setTxtView(&view);
        view.setSharedState(&state);
        state.setFontName(QStringLiteral("DejaVu Sans"));
        state.setTextGlyph(QStringLiteral("ABC"));
    }
};

} // namespace

TEST(WidgetScreenshots, GradientEditorWithThreeStops)
{
    QWidget box;
    auto* column = new QVBoxLayout(&box);
    auto* editor = new gradientEditor;
    editor->setGradient(Gradient({{Color::orange(), 0.0},
                                  {Color::calibratedRGB(0.8, 0.1, 0.6, 0.5), 0.45},
                                  {Color::calibratedRGB(0.1, 0.3, 0.9), 1.0}}));
    auto* disabled = new gradientEditor;
    disabled->setEnabled(false);
    column->addWidget(editor);
    column->addWidget(disabled);
    present(box, QSize(280, 90));
    // Edit the middle stop, then start dragging the last one: every kind of knob at once.
    const QPoint middle = editor->_viewPointFromGradientLocation(0.45).toPoint();
    QTest::mouseClick(editor, Qt::LeftButton, {}, middle);
    QTest::mouseDClick(editor, Qt::LeftButton, {}, middle);
    QTest::mouseRelease(editor, Qt::LeftButton, {}, middle);
    ASSERT_EQ(editor->_editingKnobAtIndex(), 1);
    QTest::mousePress(editor, Qt::LeftButton, {}, editor->_viewPointFromGradientLocation(1.0).toPoint());
    expectNothingClipped(box);
    EXPECT_GE(editor->height(), 25);
    save(box, "gradientEditor");
    QTest::mouseRelease(editor, Qt::LeftButton, {}, editor->_viewPointFromGradientLocation(1.0).toPoint());
}

TEST(WidgetScreenshots, GlyphEditorWithAGlyphLoaded)
{
    Canvas c;
    GlyphEditorPanel panel;
    panel.setState(&c.state);
    panel.showGlyphDetails(c.view.getCAGlyphLayer(u'A'));
    present(panel);
    expectNothingClipped(panel);
    save(panel, "glyphEditor");

    GlyphEditorPanel inactive;
    present(inactive);
    expectNothingClipped(inactive);
    save(inactive, "glyphEditorInactive");
}

TEST(WidgetScreenshots, InspectorWithTwoPanes)
{
    Canvas c;
    SFBInspectorView inspector;
    auto* glyph = new GlyphEditorPanel;
    glyph->setState(&c.state);
    glyph->showGlyphDetails(c.view.getCAGlyphLayer(u'B'));
    auto* colours = new QWidget;
    auto* column = new QVBoxLayout(colours);
    column->addWidget(new QLabel(QStringLiteral("Fill gradient")));
    column->addWidget(new gradientEditor);
    inspector.addPane(QStringLiteral("glyphEditor"), QStringLiteral("Glyph Editor"), glyph);
    inspector.addPane(QStringLiteral("colours"), QStringLiteral("Colour Tools"), colours);
    inspector.addPane(QStringLiteral("packing"), QStringLiteral("Packing"),
                      new QLabel(QStringLiteral("hidden")));
    inspector.setPaneExpanded(QStringLiteral("packing"), false);
    present(inspector, QSize(300, inspector.sizeHint().height() + 20));
    expectNothingClipped(inspector);
    save(inspector, "inspector");
}

TEST(WidgetScreenshots, SelectorBar)
{
    SFBViewSelectorBar bar;
    const QStyle* style = bar.style();
    bar.addItem(QStringLiteral("texture"), QStringLiteral("Texture"),
                style->standardIcon(QStyle::SP_FileIcon));
    bar.addItem(QStringLiteral("font"), QStringLiteral("Font"), style->standardIcon(QStyle::SP_DirIcon));
    bar.addItem(QStringLiteral("colour"), QStringLiteral("Colour"),
                style->standardIcon(QStyle::SP_DesktopIcon));
    bar.addItem(QStringLiteral("output"), QStringLiteral("Output"),
                style->standardIcon(QStyle::SP_DriveHDIcon));
    bar.setSelectedIndex(2);
    present(bar, QSize(320, bar.sizeHint().height()));
    expectNothingClipped(bar);
    save(bar, "selectorBar");

    SFBViewSelectorBar plain;
    plain.addItem(QStringLiteral("a"), QStringLiteral("Texture"));
    plain.addItem(QStringLiteral("b"), QStringLiteral("Packing"));
    present(plain, QSize(260, plain.sizeHint().height()));
    expectNothingClipped(plain);
    save(plain, "selectorBarText");
}
