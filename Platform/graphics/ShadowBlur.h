#pragma once

#include <QPointF>
#include <QRect>

namespace qm {

/// An 8-bit coverage plane read in place: `data` points at the value of the top-left pixel of
/// `rect` (positions in image rows and columns), `step` bytes between neighbours, `stride` bytes
/// between rows.
struct AlphaView
{
    const unsigned char* data = nullptr;
    qsizetype stride = 0;
    int step = 1;
    QRect rect;
};

/// Shifts the plane by `shift` pixels and blurs it with a Gaussian of standard deviation `sigma`,
/// writing the result over `outRect` into `out` (one byte per pixel, `outStride` bytes per row).
/// Each source pixel is treated as a unit square, so a blurred edge follows the continuous
/// Gaussian's integral exactly; with sigma 0 a fractional shift interpolates linearly. Separable,
/// with costs proportional to sigma per output pixel.
void blurShifted(const AlphaView& source, double sigma, QPointF shift, const QRect& outRect,
                 unsigned char* out, qsizetype outStride);

/// The pixels that blurShifted can make non-zero from `source`.
QRect blurReach(const QRect& source, double sigma, QPointF shift);
/// The source pixels that can contribute to `target`.
QRect blurSources(const QRect& target, double sigma, QPointF shift);

} // namespace qm
