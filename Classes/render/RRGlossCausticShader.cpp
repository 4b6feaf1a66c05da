#include "Classes/render/RRGlossCausticShader.h"

#include "Platform/graphics/DrawingContext.h"

#include <algorithm>
#include <cmath>

namespace qm {

/// Everything the shading function reads, in one block.
struct RRGlossCausticShader::ShadingRecord
{
    float coefficient = 0;
    float expNegCoefficient = 0; // exp(-c), cached
    float normaliser = 0;        // 1 / (1 - exp(-c)), cached
    double noncaustic[4] = {};
    double caustic[4] = {};
    double glossReflectionPower = 0;
    double glossStartingWhite = 0;
    double glossEndingWhite = 0;
    double glossStart = 0;
    double glossSpan = 0;

    /// 0 -> 0 and 1 -> 1, rising fast at first.
    float curve(float x) const
    {
        return 1.0f - (std::exp(-x * coefficient) - expNegCoefficient) * normaliser;
    }
};
RRGlossCausticShader::RRGlossCausticShader() : m_record(std::make_unique<ShadingRecord>())
{
    static_assert(sizeof(ShadingRecord) == 120, "three floats, then ten doubles");
    setExponentialCoefficient(1.2f);
    m_record->glossReflectionPower = 0.2;
    m_record->glossStartingWhite = 0.6;
    m_record->glossEndingWhite = 0.2;
    setNoncausticColor(Color::gray());
    update();
}

RRGlossCausticShader::~RRGlossCausticShader() = default;

void RRGlossCausticShader::setExponentialCoefficient(float coefficient)
{
    m_record->coefficient = coefficient;
    m_record->expNegCoefficient = std::exp(-coefficient);
    m_record->normaliser = 1.0f / (1.0f - m_record->expNegCoefficient);
}

float RRGlossCausticShader::exponentialCoefficient() const
{
    return m_record->coefficient;
}

void RRGlossCausticShader::setNoncausticColor(const Color& color)
{
    const Color rgb = color.toDeviceRGB();
    m_record->noncaustic[0] = rgb.redComponent();
    m_record->noncaustic[1] = rgb.greenComponent();
    m_record->noncaustic[2] = rgb.blueComponent();
    m_record->noncaustic[3] = rgb.alphaComponent();
}

Color RRGlossCausticShader::noncausticColor() const
{
    const double* c = m_record->noncaustic;
    return Color::deviceRGB(c[0], c[1], c[2], c[3]);
}

void RRGlossCausticShader::setGlossReflectionPower(double power)
{
    m_record->glossReflectionPower = power;
}

double RRGlossCausticShader::glossReflectionPower() const
{
    return m_record->glossReflectionPower;
}

void RRGlossCausticShader::setGlossStartingWhite(double white)
{
    m_record->glossStartingWhite = white;
}

double RRGlossCausticShader::glossStartingWhite() const
{
    return m_record->glossStartingWhite;
}

void RRGlossCausticShader::setGlossEndingWhite(double white)
{
    m_record->glossEndingWhite = white;
}

double RRGlossCausticShader::glossEndingWhite() const
{
    return m_record->glossEndingWhite;
}

void RRGlossCausticShader::update()
{
    if (m_observer)
        m_observer("color", true);
    ShadingRecord& r = *m_record;
    const Color caustic = m_matcher.matchForColor(noncausticColor()).toDeviceRGB();
    r.caustic[0] = caustic.redComponent();
    r.caustic[1] = caustic.greenComponent();
    r.caustic[2] = caustic.blueComponent();
    r.caustic[3] = caustic.alphaComponent();
    // Perceived luminance with single-precision weights: a dark base reflects less gloss.
    const double luminance =
        0.3086f * r.noncaustic[0] + 0.6094f * r.noncaustic[1] + 0.0820f * r.noncaustic[2];
    const float reflection = std::pow(float(luminance), float(r.glossReflectionPower));
    r.glossStart = r.glossStartingWhite * reflection;
    r.glossSpan = reflection * r.glossEndingWhite - r.glossStart;
    if (m_observer)
        m_observer("color", false);
}

std::array<double, 4> RRGlossCausticShader::shadingValue(double t) const
{
    const ShadingRecord& r = *m_record;
    std::array<double, 4> out{};
    if (t < 0.5) {
        const double white = r.curve(float(2 * t)) * r.glossSpan + r.glossStart;
        for (int i = 0; i < 4; ++i)
            out[i] = r.noncaustic[i] * (1 - white) + white;
    } else {
        const double g = r.curve(float(2 * (t - 0.5)));
        for (int i = 0; i < 4; ++i)
            out[i] = r.caustic[i] * g + r.noncaustic[i] * (1 - g);
    }
    for (double& v : out)
        v = std::clamp(v, 0.0, 1.0);
    return out;
}

void RRGlossCausticShader::drawShadingFromPoint(QPointF start, QPointF end, DrawingContext* context) const
{
    if (!context)
        return;
    context->drawAxialShading(start, end, [this](double t) { return shadingValue(t); });
}

} // namespace qm
