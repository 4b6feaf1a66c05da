#pragma once

#include "Classes/render/RRCausticColorMatcher.h"

#include <QPointF>

#include <array>
#include <functional>
#include <memory>

namespace qm {

class DrawingContext;

/// The glossy fill: a vertical shading whose upper half washes the base colour toward white by a
/// decaying amount and whose lower half slides from the base colour to its caustic. Configure,
/// call update(), then draw.
class RRGlossCausticShader
{
public:
    RRGlossCausticShader();
    ~RRGlossCausticShader();
    RRGlossCausticShader(const RRGlossCausticShader&) = delete;
    RRGlossCausticShader& operator=(const RRGlossCausticShader&) = delete;

    RRCausticColorMatcher& matcher() { return m_matcher; }
    const RRCausticColorMatcher& matcher() const { return m_matcher; }

    /// Steepness of the curve both halves follow; stored in single precision.
    void setExponentialCoefficient(float coefficient);
    float exponentialCoefficient() const;
    /// The base colour, kept as device RGB with alpha.
    void setNoncausticColor(const Color& color);
    Color noncausticColor() const;
    void setGlossReflectionPower(double power);
    double glossReflectionPower() const;
    void setGlossStartingWhite(double white);
    double glossStartingWhite() const;
    void setGlossEndingWhite(double white);
    double glossEndingWhite() const;

    /// Recomputes the caustic colour and the gloss from the base colour and gloss values. Tells
    /// the observer about key "color" before and after.
    void update();
    /// Called with (key, true) before and (key, false) after an observable change.
    void setObserver(std::function<void(const char* key, bool prior)> observer)
    {
        m_observer = std::move(observer);
    }

    /// Premultiplication-free RGBA at t (0 = start of the axis, 1 = end), each clamped to 0..1.
    std::array<double, 4> shadingValue(double t) const;
    /// Paints the shading along the line from start to end, nothing beyond either end. The caller
    /// sets the clip.
    void drawShadingFromPoint(QPointF start, QPointF end, DrawingContext* context) const;

private:
    struct ShadingRecord;

    RRCausticColorMatcher m_matcher;
    std::unique_ptr<ShadingRecord> m_record;
    std::function<void(const char*, bool)> m_observer;
};

} // namespace qm
