#pragma once

#include "Platform/graphics/Color.h"

namespace qm {

/// Derives the caustic colour of a glossy fill from its base colour: the hue drifts toward yellow
/// (or toward magenta for blues and purples) and the colour brightens, the more the nearer the
/// hue already is to its target. Greys get a faint yellow caustic.
class RRCausticColorMatcher
{
public:
    RRCausticColorMatcher() = default;

    double causticHue() const { return m_causticHue; }
    void setCausticHue(double value) { m_causticHue = value; }
    double graySaturationThreshold() const { return m_graySaturationThreshold; }
    void setGraySaturationThreshold(double value) { m_graySaturationThreshold = value; }
    double causticSaturationForGrays() const { return m_causticSaturationForGrays; }
    void setCausticSaturationForGrays(double value) { m_causticSaturationForGrays = value; }
    double redHueThreshold() const { return m_redHueThreshold; }
    void setRedHueThreshold(double value) { m_redHueThreshold = value; }
    double blueHueThreshold() const { return m_blueHueThreshold; }
    void setBlueHueThreshold(double value) { m_blueHueThreshold = value; }
    double blueCausticHue() const { return m_blueCausticHue; }
    void setBlueCausticHue(double value) { m_blueCausticHue = value; }
    double causticFractionDomainFactor() const { return m_causticFractionDomainFactor; }
    void setCausticFractionDomainFactor(double value) { m_causticFractionDomainFactor = value; }
    double causticFractionRangeFactor() const { return m_causticFractionRangeFactor; }
    void setCausticFractionRangeFactor(double value) { m_causticFractionRangeFactor = value; }

    /// The caustic of a colour, as calibrated RGB with the input's alpha.
    Color matchForColor(const Color& color) const;
    /// Hue, saturation, brightness (0..1) of a base colour -> those of its caustic.
    void matchForHSB(const double input[3], double caustic[3]) const;

private:
    // The defaults were single-precision constants; they keep exactly those values.
    double m_causticHue = double(1.0f / 6.0f);
    double m_graySaturationThreshold = double(0.001f);
    double m_causticSaturationForGrays = double(0.2f);
    double m_redHueThreshold = double(0.95f);
    double m_blueHueThreshold = double(0.7f);
    double m_blueCausticHue = double(5.0f / 6.0f);
    double m_causticFractionDomainFactor = double(1.4f);
    double m_causticFractionRangeFactor = double(0.6f);
};

} // namespace qm
