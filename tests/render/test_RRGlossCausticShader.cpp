// The gloss shader and its caustic matcher against values worked out by hand from the colour
// model (HSB of the standard hexcone) and the exponential curve.

#include "Classes/render/RRGlossCausticShader.h"
#include "Platform/graphics/DrawingContext.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

using namespace qm;

namespace {

constexpr double kTol = 1e-5;

void expectRGB(const Color& c, double r, double g, double b)
{
    EXPECT_NEAR(c.redComponent(), r, kTol);
    EXPECT_NEAR(c.greenComponent(), g, kTol);
    EXPECT_NEAR(c.blueComponent(), b, kTol);
}

std::array<double, 3> caustic(double h, double s, double b)
{
    const double in[3] = {h, s, b};
    double out[3];
    RRCausticColorMatcher().matchForHSB(in, out);
    return {out[0], out[1], out[2]};
}

} // namespace

TEST(RRCausticColorMatcher, DefaultsAreSinglePrecisionValues)
{
    const RRCausticColorMatcher m;
    EXPECT_EQ(m.causticHue(), double(1.0f / 6.0f));
    EXPECT_NE(m.causticHue(), 1.0 / 6.0);
    EXPECT_EQ(m.graySaturationThreshold(), double(0.001f));
    EXPECT_EQ(m.causticSaturationForGrays(), double(0.2f));
    EXPECT_EQ(m.redHueThreshold(), double(0.95f));
    EXPECT_EQ(m.blueHueThreshold(), double(0.7f));
    EXPECT_EQ(m.blueCausticHue(), double(5.0f / 6.0f));
    EXPECT_EQ(m.causticFractionDomainFactor(), double(1.4f));
    EXPECT_EQ(m.causticFractionRangeFactor(), double(0.6f));
}

TEST(RRCausticColorMatcher, HueTargets)
{
    // Grey: hue 1/6 at full share (cos 0), saturation 0.2, brightness 0.5 * 0.4 + 0.6.
    const auto grey = caustic(0, 0, 0.5);
    EXPECT_NEAR(grey[0], 1.0 / 6, 1e-7);
    EXPECT_NEAR(grey[1], 0.2, 1e-7);
    EXPECT_NEAR(grey[2], 0.8, 1e-7);
    // Red at 0.98 counts as -0.02 and drifts toward yellow, to an orange.
    const auto red = caustic(0.98, 1, 1);
    EXPECT_NEAR(red[0], 0.0741633, kTol);
    EXPECT_EQ(red[2], 1.0);
    // Blue (0.66) is far from yellow: a small share moves it a little.
    EXPECT_NEAR(caustic(0.66, 1, 0.5)[0], 0.5954445, kTol);
    EXPECT_NEAR(caustic(0.66, 1, 0.5)[2], 0.5 * (1 - 0.1306) + 0.1306, 1e-3);
    // Purple (0.75) tends to magenta, 5/6.
    EXPECT_NEAR(caustic(0.75, 1, 1)[0], 0.7983395, kTol);
    EXPECT_EQ(caustic(0.75, 0.4, 1)[1], 0.4);
}

TEST(RRCausticColorMatcher, ColourRoundTripKeepsAlpha)
{
    const Color c = RRCausticColorMatcher().matchForColor(Color::deviceWhite(0.5, 0.25));
    EXPECT_EQ(c.space(), Color::Space::CalibratedRGB);
    expectRGB(c, 0.8, 0.8, 0.64);
    EXPECT_EQ(c.alphaComponent(), 0.25);
    const Color red = RRCausticColorMatcher().matchForColor(Color::fromHSB(0.98, 1, 1, 1));
    expectRGB(red, 1.0, 0.4449798, 0.0);
}

TEST(RRGlossCausticShader, Defaults)
{
    RRGlossCausticShader shader;
    EXPECT_EQ(shader.exponentialCoefficient(), 1.2f);
    EXPECT_EQ(shader.glossReflectionPower(), 0.2);
    EXPECT_EQ(shader.glossStartingWhite(), 0.6);
    EXPECT_EQ(shader.glossEndingWhite(), 0.2);
    EXPECT_EQ(shader.noncausticColor(), Color::deviceRGB(0.5, 0.5, 0.5));
    // init ends with update: the grey's caustic is already in place.
    const auto end = shader.shadingValue(1.0);
    EXPECT_NEAR(end[0], 0.8, kTol);
    EXPECT_NEAR(end[2], 0.64, kTol);
}

TEST(RRGlossCausticShader, GreyBaseValuesAndTheStepAtTheMiddle)
{
    RRGlossCausticShader shader;
    shader.setNoncausticColor(Color::calibratedWhite(0.5));
    shader.update();
    // L = 0.5, P = 0.5^0.2; top edge washed by 0.6 P, just above the middle by 0.2 P.
    const struct
    {
        double t, r, b;
    } expected[] = {{0.0, 0.7611652, 0.7611652},       {0.25, 0.6487499, 0.6487499},
                    {0.4999999, 0.5870551, 0.5870551}, {0.5, 0.5, 0.5},
                    {0.75, 0.6936969, 0.5903919},      {1.0, 0.8, 0.64}};
    for (const auto& e : expected) {
        const auto v = shader.shadingValue(e.t);
        EXPECT_NEAR(v[0], e.r, kTol) << e.t;
        EXPECT_NEAR(v[1], e.r, kTol) << e.t;
        EXPECT_NEAR(v[2], e.b, kTol) << e.t;
        EXPECT_EQ(v[3], 1.0);
    }
}

TEST(RRGlossCausticShader, BlackHasNoGloss)
{
    RRGlossCausticShader shader;
    shader.setNoncausticColor(Color::deviceRGB(0, 0, 0));
    shader.update();
    for (double t : {0.0, 0.2, 0.49}) {
        const auto v = shader.shadingValue(t);
        EXPECT_EQ(v[0], 0.0);
        EXPECT_EQ(v[2], 0.0);
        EXPECT_EQ(v[3], 1.0);
    }
}

TEST(RRGlossCausticShader, UpdateAnnouncesColourChange)
{
    RRGlossCausticShader shader;
    std::vector<std::pair<std::string, bool>> notes;
    shader.setObserver([&](const char* key, bool prior) { notes.emplace_back(key, prior); });
    shader.setNoncausticColor(Color::red());
    EXPECT_TRUE(notes.empty()); // plain stores stay silent
    shader.update();
    ASSERT_EQ(notes.size(), 2u);
    EXPECT_EQ(notes[0], std::make_pair(std::string("color"), true));
    EXPECT_EQ(notes[1], std::make_pair(std::string("color"), false));
}

TEST(RRGlossCausticShader, DrawsFromStartToEnd)
{
    RRGlossCausticShader shader;
    shader.setNoncausticColor(Color::deviceRGB(0.2, 0.4, 0.8));
    shader.update();
    QImage image(4, 20, QImage::Format_RGBA8888_Premultiplied);
    image.fill(0);
    DrawingContext ctx(image);
    shader.drawShadingFromPoint(QPointF(0, 20), QPointF(0, 0), &ctx);
    // Image row 0 is the top edge of the y-up bitmap: t at its centre is 0.025.
    for (int row : {0, 9, 10, 19}) {
        const auto v = shader.shadingValue((row + 0.5) / 20);
        const uchar* p = image.constScanLine(row) + 4;
        EXPECT_NEAR(p[0], 255 * v[0], 1) << row;
        EXPECT_NEAR(p[1], 255 * v[1], 1) << row;
        EXPECT_NEAR(p[2], 255 * v[2], 1) << row;
    }
    shader.drawShadingFromPoint(QPointF(0, 20), QPointF(0, 0), nullptr); // harmless
}
