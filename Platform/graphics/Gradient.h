#pragma once

#include "Platform/graphics/Color.h"

#include <QList>

namespace qm {

struct GradientStop
{
    Color color;
    double location = 0; ///< 0..1 along the ramp
    bool operator==(const GradientStop&) const = default;
};

/// A colour ramp of any number of stops, kept in location order (stops of equal location keep
/// the order they were given in). A default-constructed gradient is "none".
class Gradient
{
public:
    Gradient() = default;
    /// Stops are sorted by location; the colours are taken into the gradient's colour space.
    explicit Gradient(QList<GradientStop> stops, Color::Space space = Color::Space::CalibratedRGB);
    static Gradient twoColor(const Color& start, const Color& end,
                             Color::Space space = Color::Space::CalibratedRGB);

    bool isValid() const { return !m_stops.isEmpty(); }
    int numberOfColorStops() const { return int(m_stops.size()); }
    const QList<GradientStop>& stops() const { return m_stops; }
    const GradientStop& stop(int index) const { return m_stops.at(index); }
    Color::Space colorSpace() const { return m_space; }

    /// The colour at a location, linearly interpolated between the neighbouring stops and held
    /// constant beyond the first and last stop.
    Color interpolatedColorAtLocation(double location) const;

    bool operator==(const Gradient&) const = default;

private:
    QList<GradientStop> m_stops;
    Color::Space m_space = Color::Space::CalibratedRGB;
};

} // namespace qm
