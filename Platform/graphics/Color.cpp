#include "Platform/graphics/Color.h"

#include <algorithm>
#include <cmath>

namespace qm {

Color Color::calibratedRGB(double r, double g, double b, double a)
{
    return Color(Space::CalibratedRGB, r, g, b, a);
}

Color Color::deviceRGB(double r, double g, double b, double a)
{
    return Color(Space::DeviceRGB, r, g, b, a);
}

Color Color::calibratedWhite(double white, double a)
{
    return Color(Space::CalibratedWhite, white, white, white, a);
}

Color Color::deviceWhite(double white, double a)
{
    return Color(Space::DeviceWhite, white, white, white, a);
}

Color Color::fromHSB(double h, double s, double v, double a, Space space)
{
    h = h - std::floor(h); // hue wraps around the circle
    const double sector = h * 6.0;
    const int i = static_cast<int>(sector) % 6;
    const double f = sector - std::floor(sector);
    const double p = v * (1 - s), q = v * (1 - s * f), t = v * (1 - s * (1 - f));
    double r = v, g = t, b = p;
    switch (i) {
    case 0:
        r = v, g = t, b = p;
        break;
    case 1:
        r = q, g = v, b = p;
        break;
    case 2:
        r = p, g = v, b = t;
        break;
    case 3:
        r = p, g = q, b = v;
        break;
    case 4:
        r = t, g = p, b = v;
        break;
    default:
        r = v, g = p, b = q;
        break;
    }
    return Color(space == Space::DeviceRGB ? Space::DeviceRGB : Space::CalibratedRGB, r, g, b, a);
}

Color Color::withAlpha(double alpha) const
{
    Color c = *this;
    c.m_a = alpha;
    return c;
}

Color Color::converted(Space space) const
{
    if (!isValid())
        return {};
    return Color(space, m_r, m_g, m_b, m_a);
}

void Color::getHSB(double* hue, double* saturation, double* brightness) const
{
    const double mx = std::max({m_r, m_g, m_b});
    const double mn = std::min({m_r, m_g, m_b});
    const double delta = mx - mn;
    double h = 0;
    if (delta > 0) {
        if (mx == m_r)
            h = (m_g - m_b) / delta;
        else if (mx == m_g)
            h = 2 + (m_b - m_r) / delta;
        else
            h = 4 + (m_r - m_g) / delta;
        h /= 6;
        if (h < 0)
            h += 1;
    }
    *hue = h;
    *saturation = mx > 0 ? delta / mx : 0;
    *brightness = mx;
}

QColor Color::toQColor() const
{
    if (!isValid())
        return QColor(Qt::transparent);
    auto clamp = [](double v) { return std::clamp(v, 0.0, 1.0); };
    return QColor::fromRgbF(float(clamp(m_r)), float(clamp(m_g)), float(clamp(m_b)), float(clamp(m_a)));
}

} // namespace qm
