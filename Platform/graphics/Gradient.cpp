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
    // The first stop after `location`: where stops share a location, the later one holds from
    // there on, so a gradient can change colour abruptly.
    qsizetype next = 0;
    while (next < m_stops.size() && m_stops[next].location <= location)
        ++next;
    if (next == 0)
        return m_stops.isEmpty() ? Color() : m_stops.first().color;
    if (next == m_stops.size())
        return m_stops.last().color;
    const GradientStop& a = m_stops[next - 1];
    const GradientStop& b = m_stops[next];
    const double t = (location - a.location) / (b.location - a.location); // a < location < b
    auto mix = [t](double x, double y) { return x + (y - x) * t; };
    const Color mixed = Color::calibratedRGB(
        mix(a.color.redComponent(), b.color.redComponent()), mix(a.color.greenComponent(), b.color.greenComponent()),
        mix(a.color.blueComponent(), b.color.blueComponent()), mix(a.color.alphaComponent(), b.color.alphaComponent()));
    return m_space == Color::Space::DeviceRGB ? mixed.toDeviceRGB() : mixed;
}

} // namespace qm
