#include "Classes/render/RRCausticColorMatcher.h"

#include <cmath>
#include <numbers>

namespace qm {

Color RRCausticColorMatcher::matchForColor(const Color& color) const
{
    const Color rgb = color.toCalibratedRGB();
    double hsb[3];
    rgb.getHSB(&hsb[0], &hsb[1], &hsb[2]);
    double caustic[3];
    matchForHSB(hsb, caustic);
    return Color::fromHSB(caustic[0], caustic[1], caustic[2], rgb.alphaComponent(),
                          Color::Space::CalibratedRGB);
}

void RRCausticColorMatcher::matchForHSB(const double input[3], double caustic[3]) const
{
    double hue = input[0];
    double saturation = input[1];
    if (saturation < m_graySaturationThreshold) {
        hue = m_causticHue;
        saturation = m_causticSaturationForGrays;
    }
    // Reds sit just below 1.0 on the circle; seen as slightly negative they lean to yellow.
    if (hue >= m_redHueThreshold)
        hue -= 1.0;
    const double target = hue < m_blueHueThreshold ? m_causticHue : m_blueCausticHue;
    const float angle = float((hue - target) * m_causticFractionDomainFactor * std::numbers::pi);
    const double fraction = (double(std::cos(angle)) + 1.0) * 0.5 * m_causticFractionRangeFactor;
    caustic[0] = target * fraction + hue * (1.0 - fraction);
    caustic[1] = saturation;
    caustic[2] = input[2] * (1.0 - fraction) + fraction;
}

} // namespace qm
