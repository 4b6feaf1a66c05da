#pragma once

#include <QColor>

namespace qm {

/// An RGBA colour with components in 0..1 that remembers the colour space it was made in.
/// Calibrated and device spaces hold the same numbers here; the tag is kept because project
/// files and the settings distinguish them. A default-constructed colour is "none".
class Color
{
public:
    enum class Space { None, CalibratedRGB, DeviceRGB, CalibratedWhite, DeviceWhite };

    Color() = default;
    static Color calibratedRGB(double r, double g, double b, double a = 1.0);
    static Color deviceRGB(double r, double g, double b, double a = 1.0);
    static Color calibratedWhite(double white, double a = 1.0);
    static Color deviceWhite(double white, double a = 1.0);
    /// From hue, saturation, brightness (all 0..1), as calibrated or device RGB.
    static Color fromHSB(double h, double s, double b, double a, Space space = Space::CalibratedRGB);

    // The classic named colours.
    static Color black() { return calibratedWhite(0.0); }
    static Color white() { return calibratedWhite(1.0); }
    static Color darkGray() { return calibratedWhite(1.0 / 3.0); }
    static Color gray() { return calibratedWhite(0.5); }
    static Color red() { return calibratedRGB(1, 0, 0); }
    static Color orange() { return calibratedRGB(1, 0.5, 0); }
    static Color yellow() { return calibratedRGB(1, 1, 0); }

    bool isValid() const { return m_space != Space::None; }
    Space space() const { return m_space; }
    bool isWhiteSpace() const { return m_space == Space::CalibratedWhite || m_space == Space::DeviceWhite; }

    double redComponent() const { return m_r; }
    double greenComponent() const { return m_g; }
    double blueComponent() const { return m_b; }
    double whiteComponent() const { return m_r; }
    double alphaComponent() const { return m_a; }

    Color toCalibratedRGB() const { return converted(Space::CalibratedRGB); }
    Color toDeviceRGB() const { return converted(Space::DeviceRGB); }
    Color withAlpha(double alpha) const;

    /// Hue, saturation and brightness of the RGB components; greys have hue 0.
    void getHSB(double* hue, double* saturation, double* brightness) const;

    QColor toQColor() const;
    bool operator==(const Color& other) const = default;

private:
    Color(Space space, double r, double g, double b, double a)
        : m_space(space), m_r(r), m_g(g), m_b(b), m_a(a)
    {
    }
    Color converted(Space space) const;

    Space m_space = Space::None;
    double m_r = 0, m_g = 0, m_b = 0, m_a = 0;
};

} // namespace qm
