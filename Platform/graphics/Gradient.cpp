#include "Platform/graphics/Gradient.h"

#include <algorithm>

namespace qm {

namespace {
Color inSpace(const Color& c, Color::Space space)
{
    if (!c.isValid())
        return Color::calibratedRGB(0, 0, 0, 0);
    return space == Color::Space::DeviceRGB ? c.toDeviceRGB() : c.toCalibratedRGB();
}
} // namespace

Gradient::Gradient(QList<GradientStop> stops, Color::Space space) : m_stops(std::move(stops)), m_space(space)
{
    if (m_space != Color::Space::DeviceRGB)
        m_space = Color::Space::CalibratedRGB;
    for (GradientStop& s : m_stops)
        s.color = inSpace(s.color, m_space);
    std::stable_sort(m_stops.begin(), m_stops.end(),
                     [](const GradientStop& a, const GradientStop& b) { return a.location < b.location; });
}

Gradient Gradient::twoColor(const Color& start, const Color& end, Color::Space space)
{
    return Gradient({{start, 0.0}, {end, 1.0}}, space);
}

Color Gradient::interpolatedColorAtLocation(double location) const
{
    if (m_stops.isEmpty())
        return {};
    if (location <= m_stops.first().location)
        return m_stops.first().color;
    if (location >= m_stops.last().location)
        return m_stops.last().color;
    for (qsizetype i = 1; i < m_stops.size(); ++i) {
        const GradientStop& b = m_stops[i];
        if (location > b.location)
            continue;
        const GradientStop& a = m_stops[i - 1];
        const double span = b.location - a.location;
        const double t = span > 0 ? (location - a.location) / span : 1.0;
        auto mix = [t](double x, double y) { return x + (y - x) * t; };
        const Color& ca = a.color;
        const Color& cb = b.color;
        const Color mixed = Color::calibratedRGB(
            mix(ca.redComponent(), cb.redComponent()), mix(ca.greenComponent(), cb.greenComponent()),
            mix(ca.blueComponent(), cb.blueComponent()), mix(ca.alphaComponent(), cb.alphaComponent()));
        return m_space == Color::Space::DeviceRGB ? mixed.toDeviceRGB() : mixed;
    }
    return m_stops.last().color;
}

} // namespace qm
