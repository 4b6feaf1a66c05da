// The project settings: defaults of a new and of a decoded project, and what each informing
// setter stores, whether it marks the project changed and what it forwards.

#include "Classes/atlas/TextureView.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"

#include <QStringList>

#include <functional>

#include <gtest/gtest.h>

using namespace qm;

namespace {

/// Records every forwarded canvas call as text.
class RecordingView : public TextureView
{
public:
    QStringList calls;

    void setAntiAlias(bool on) override { log("setAntiAlias", on); }
    void setMiterLimit(int v) override { log("setMiterLimit", v); }
    void setGlyphTrait(int v) override { log("setGlyphTrait", v); }
    void glyphShadow(bool on, float x, float y, float r, int how) override { log("glyphShadow", on, x, y, r, how); }
    void shadowColorChanged(const Color& c) override { log("shadowColorChanged", c.alphaComponent()); }
    void setBoundingPadding(int v) override { log("setBoundingPadding", v); }
    void glyphStroke(bool on, float size, const Color& c, int how) override
    {
        log("glyphStroke", on, size, c.redComponent(), how);
    }
    void updateStrokeMode(int v) override { log("updateStrokeMode", v); }
    void glyphGlossy(bool on) override { log("glyphGlossy", on); }
    void setRadialX(float x, float y) override { log("setRadialX", x, y); }
    void setGradiant(int a, const Gradient& g) override { log("setGradiant", a, g.numberOfColorStops()); }
    void setStrokeGradiant(int a, const Gradient& g) override { log("setStrokeGradiant", a, g.numberOfColorStops()); }
    void setGlyphTexture() override { log("setGlyphTexture"); }
    void updateFillGlyph(int mode, const Color& c, const Gradient& g) override
    {
        log("updateFillGlyph", mode, c.redComponent(), g.isValid());
    }
    void setGlyphFont(const QString& name) override { log("setGlyphFont", name); }
    void refreshGlyphLetters(const QString& text) override { log("refreshGlyphLetters", text); }
    void changeAllGlyphsSize(int v) override { log("changeAllGlyphsSize", v); }
    void setGlyphGrid(bool on) override { log("setGlyphGrid", on); }
    void setGlyphGridSize(int w, int h, bool a) override { log("setGlyphGridSize", w, h, a); }
    void changeLineHeight(int v) override { log("changeLineHeight", v); }
    void scaleCustomImage(float s) override { log("scaleCustomImage", s); }
    void restoreOriScaleImage() override { log("restoreOriScaleImage"); }
    bool Packing(int p, int m, bool r, bool g) override
    {
        log("Packing", p, m, r, g);
        return true;
    }
    void setFrameSize(const QSizeF& s) override { log("setFrameSize", s.width(), s.height()); }
    void updateCheckerboardAndColor(bool on, const Color& c) override
    {
        log("updateCheckerboardAndColor", on, c.redComponent());
    }
    void updatePreviewPos() override { log("updatePreviewPos"); }
    void updateGlyph(char16_t c, int x, int y, int a) override { log("updateGlyph", int(c), x, y, a); }
    void updateGlyphImage(char16_t c, bool custom, bool fit) override { log("updateGlyphImage", int(c), custom, fit); }
    CAGlyphLayer* getCAGlyphLayer(char16_t c) const override
    {
        lookups.append(int(c));
        return nullptr;
    }
    mutable QList<int> lookups;

private:
    template <typename... Args> void log(const char* name, Args... args)
    {
        QStringList parts{QString::fromLatin1(name)};
        (parts.append(toText(args)), ...);
        calls.append(parts.join(QLatin1Char(' ')));
    }
    static QString toText(const QString& s) { return s; }
    static QString toText(bool b) { return b ? QStringLiteral("yes") : QStringLiteral("no"); }
    static QString toText(int i) { return QString::number(i); }
    static QString toText(float f) { return QString::number(f); }
    static QString toText(double d) { return QString::number(d); }
};

class RecordingController : public TextureController
{
public:
    QStringList calls;
    void updateWarningMessage(const QString& m) override { calls.append(QStringLiteral("warning:") + m); }
    void updateClickedGlyph(const QString& t) override { calls.append(QStringLiteral("clicked:") + t); }
    void showGlyphDetails(CAGlyphLayer* l) override { calls.append(l ? QStringLiteral("details") : QStringLiteral("no details")); }
};

struct Wired
{
    sharedAppState state;
    RecordingView view;
    RecordingController controller;
    Wired()
    {
        state.setTxtView(&view);
        state.setTxtCont(&controller);
    }
};

} // namespace

TEST(SettingsDefaults, NewProjectHasTheDocumentedDefaults)
{
    const sharedAppState s;
    EXPECT_EQ(s.version(), 200);
    EXPECT_EQ(s.width(), 512);
    EXPECT_EQ(s.fontName(), QStringLiteral("Arial"));
    EXPECT_EQ(s.trait(), 1);
    EXPECT_EQ(s.glyphSize(), 50);
    EXPECT_EQ(s.fillGMode(), 3);
    EXPECT_EQ(s.paddingMethod(), 3);
    EXPECT_TRUE(s.packingReversed());
    EXPECT_TRUE(s.stroke());
    EXPECT_FLOAT_EQ(s.strokeSize(), 1.0f);
    EXPECT_FLOAT_EQ(s.shadowBlurRadius(), 3.0f);
    EXPECT_EQ(s.shadowColor(), Color::calibratedWhite(0.0, 0.9));
    EXPECT_EQ(s.glyphColor(), Color::calibratedRGB(1.0 / 3, 1.0 / 3, 1.0 / 3));
    EXPECT_EQ(s.bgColor(), Color::calibratedRGB(1, 1, 1));
    EXPECT_EQ(s.autoSDLevel(), 1);
    EXPECT_TRUE(s.autoSD());
    EXPECT_FALSE(s.configchanged());
    EXPECT_TRUE(s.forcefontface().isNull());
    EXPECT_FALSE(s.projectName().isValid());

    // The outline gradient runs orange to yellow although the legacy outline colours are
    // yellow and red.
    EXPECT_EQ(s.strokeGradient(), Gradient::twoColor(Color::orange(), Color::yellow()));
    EXPECT_EQ(s.startStrokeGradiantColor(), Color::yellow());
    EXPECT_EQ(s.endStrokeGradiantColor(), Color::red());
}

TEST(SettingsDefaults, DecodedProjectStartsEmpty)
{
    const sharedAppState s(InitialValues::Empty);
    EXPECT_EQ(s.version(), 0);
    EXPECT_EQ(s.width(), 0);
    EXPECT_FALSE(s.checkerBoard());
    EXPECT_TRUE(s.fontName().isNull());
    EXPECT_TRUE(s.previewTextString().isNull()); // distinguishes "absent" from an empty text
    EXPECT_FALSE(s.glyphColor().isValid());
    EXPECT_FALSE(s.colorGradient().isValid());
    EXPECT_FALSE(s.sameSettings(sharedAppState()));
    EXPECT_TRUE(s.sameSettings(sharedAppState(InitialValues::Empty)));
}

TEST(SettingsForwarding, InformingSettersMarkChangedAndForward)
{
    struct Row
    {
        const char* name;
        std::function<void(sharedAppState&)> call;
        bool marksChanged;
        QStringList forwarded;
    };
    const Gradient threeStops({{Color::red(), 0}, {Color::white(), 0.5}, {Color::black(), 1}});
    const QList<Row> rows = {
        {"setAntiAlias", [](auto& s) { s.setAntiAlias(false); }, true, {"setAntiAlias no"}},
        {"setCheckerBoard", [](auto& s) { s.setCheckerBoard(false); }, true, {"updateCheckerboardAndColor no 1"}},
        {"setBackgroundColor", [](auto& s) { s.setBackgroundColor(Color::deviceRGB(0.5, 0, 0)); }, true,
         {"updateCheckerboardAndColor yes 0.5"}},
        {"setPackingOptions", [](auto& s) { s.setPackingOptions(4, 5, false, true); }, true,
         {"Packing 4 5 no yes"}},
        {"gridChanged", [](auto& s) { s.gridChanged(true); }, false, {"setGlyphGrid yes"}},
        {"gridSizeChanged", [](auto& s) { s.gridSizeChanged(40, 30); }, false, {"setGlyphGridSize 40 30 yes"}},
        {"gridAutoChanged", [](auto& s) { s.gridAutoChanged(false); }, false, {"setGlyphGridSize 0 0 no"}},
        {"postOffsetChanged", [](auto& s) { s.postOffsetChanged(3, 4); }, false, {"updatePreviewPos"}},
        {"setGlyphSize", [](auto& s) { s.setGlyphSize(64); }, true, {"changeAllGlyphsSize 64"}},
        {"setGlyphTrait", [](auto& s) { s.setGlyphTrait(2); }, true, {"setGlyphTrait 2"}},
        {"setShadowInfo", [](auto& s) { s.setShadowInfo(true, 3, -4, 5, 1); }, true, {"glyphShadow yes 3 -4 5 1"}},
        {"setStrokeInfo", [](auto& s) { s.setStrokeInfo(true, 2.5f, Color::red(), 2); }, true,
         {"glyphStroke yes 2.5 1 2"}},
        {"setRadialX", [](auto& s) { s.setRadialX(0.5f, -0.5f); }, true, {"setRadialX 0.5 -0.5"}},
        {"setShadowColor", [](auto& s) { s.setShadowColor(Color::red()); }, false, {"shadowColorChanged 1"}},
        {"setGlossy", [](auto& s) { s.setGlossy(true); }, true, {"glyphGlossy yes"}},
        {"setGradiant", [&](auto& s) { s.setGradiant(45, threeStops); }, true, {"setGradiant 45 3"}},
        {"setStrokeGradiant", [&](auto& s) { s.setStrokeGradiant(90, threeStops); }, true, {"setStrokeGradiant 90 3"}},
        {"forcefontface", [](auto& s) { s.forcefontface(QStringLiteral("Face")); }, true, {}},
        {"setTextGlyph", [](auto& s) { s.setTextGlyph(QStringLiteral("ab")); }, true, {"refreshGlyphLetters ab"}},
        {"setFillMode", [&](auto& s) { s.setFillMode(1, Color::red(), threeStops); }, true,
         {"updateFillGlyph 1 1 no"}}, // the gradient argument is never passed on
        {"setmStrokeMode", [](auto& s) { s.setmStrokeMode(1); }, true, {"updateStrokeMode 1"}},
        {"setFontName", [](auto& s) { s.setFontName(QStringLiteral("DejaVu Sans")); }, true,
         {"setGlyphFont DejaVu Sans"}},
        {"LoadFontName", [](auto& s) { s.LoadFontName(QStringLiteral("Mine")); }, true, {"setGlyphFont Mine"}},
        {"setTextureName", [](auto& s) { s.setTextureName(QStringLiteral("t.png")); }, true, {"setGlyphTexture"}},
        {"setNewBoundingPadding", [](auto& s) { s.setNewBoundingPadding(3); }, true, {"setBoundingPadding 3"}},
        {"updatemiterlimit", [](auto& s) { s.updatemiterlimit(4); }, true, {"setMiterLimit 4"}},
        {"updatefixedadvance", [](auto& s) { s.updatefixedadvance(true, 30); }, true, {}},
        {"updateGlyph", [](auto& s) { s.updateGlyph(u'A', 1, 2, 3); }, true, {"updateGlyph 65 1 2 3"}},
        {"updateGlyphImage", [](auto& s) { s.updateGlyphImage(u'B', true, false); }, true,
         {"updateGlyphImage 66 yes no"}},
        {"setLineHeight outside preview", [](auto& s) { s.setLineHeight(70); }, true, {}},
        {"scaleCustomImage", [](auto& s) { s.scaleCustomImage(0.5f); }, false, {"scaleCustomImage 0.5"}},
        {"restoreOriScaleImage", [](auto& s) { s.restoreOriScaleImage(); }, false, {"restoreOriScaleImage"}},
    };
    for (const Row& row : rows) {
        Wired w;
        row.call(w.state);
        EXPECT_EQ(w.state.configchanged(), row.marksChanged) << row.name;
        EXPECT_EQ(w.view.calls, row.forwarded) << row.name;

        // Without back references the same call stores and marks, and forwards nothing.
        sharedAppState alone;
        row.call(alone);
        EXPECT_EQ(alone.configchanged(), row.marksChanged) << row.name;
    }
}

TEST(SettingsForwarding, StoredValuesAndConversions)
{
    Wired w;
    w.state.setTextureSize(300.9, 200.2);
    EXPECT_EQ(w.state.width(), 300);
    EXPECT_EQ(w.state.height(), 200);
    EXPECT_EQ(w.view.calls, (QStringList{"setFrameSize 300 200", "updateCheckerboardAndColor yes 1", "Packing 2 3 yes no"}));

    w.state.setFillMode(1, Color::calibratedRGB(0.2, 0.4, 0.6), Gradient());
    EXPECT_EQ(w.state.glyphColor().space(), Color::Space::DeviceRGB);
    EXPECT_EQ(w.state.fillGMode(), 1);
    EXPECT_EQ(w.state.colorGradient(), sharedAppState().colorGradient()); // untouched

    w.state.setStrokeInfo(true, 3, Color::deviceWhite(0.25), 1);
    EXPECT_EQ(w.state.strokeColor(), Color::calibratedRGB(0.25, 0.25, 0.25));
    w.state.setShadowColor(Color::deviceWhite(0.5, 0.3));
    EXPECT_EQ(w.state.shadowColor().space(), Color::Space::CalibratedRGB);
    EXPECT_DOUBLE_EQ(w.state.shadowColor().alphaComponent(), 0.3);

    w.state.LoadFontName(QStringLiteral("Loaded"));
    EXPECT_TRUE(w.state.loadedFontName());
    w.state.gridSizeChanged(40, 30);
    EXPECT_EQ(w.state.gridWidth(), 40);
}

TEST(SettingsForwarding, PreviewModeRedirectsSizeAndLineHeight)
{
    Wired w;
    w.state.setIsinpreviewmode(true);
    w.state.setTextureSize(1024, 256);
    EXPECT_EQ(w.state.width(), 1024); // stored, but the canvas shows the preview
    EXPECT_TRUE(w.view.calls.isEmpty());
    w.state.setLineHeight(70);
    EXPECT_EQ(w.view.calls, QStringList{"changeLineHeight 70"});
}

TEST(SettingsRelays, ControllerTexts)
{
    Wired w;
    w.state.canfitall(false);
    w.state.canfitall(true);
    w.state.updatelastclickedglyph(u'\u00E9', QStringLiteral("(WxH: 20x30)"));
    w.state.showGlyphDetails(nullptr);
    EXPECT_EQ(w.controller.calls,
              (QStringList{"warning:Warning! Can't fit all letters, please reduce the 'glyph size' or the letters count.",
                           "warning:", QString::fromUtf8("clicked:Last clicked: \u00E9 - 233 (0xE9) (WxH: 20x30)"),
                           "no details"}));
    EXPECT_EQ(w.state.getCAGlyphLayer(u'Z'), nullptr);
    EXPECT_EQ(w.view.lookups, QList<int>{90});
    EXPECT_FALSE(w.state.configchanged());
    EXPECT_TRUE(w.view.calls.isEmpty());
}
