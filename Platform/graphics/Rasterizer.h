#pragma once

#include <QPainterPath>
#include <QRect>
#include <QTransform>

#include <vector>

namespace qm {

/// 8-bit coverage over a rectangle of image pixels (rows counted downward); zero outside it.
struct CoverageMask
{
    QRect rect;
    std::vector<unsigned char> values; ///< rect.width() bytes per row

    bool isEmpty() const { return rect.isEmpty(); }
    /// The row of image row y, which must lie within rect.
    const unsigned char* row(int y) const { return values.data() + size_t(y - rect.top()) * rect.width(); }
    unsigned char* row(int y) { return values.data() + size_t(y - rect.top()) * rect.width(); }
    /// Full coverage over the whole rectangle.
    static CoverageMask filled(const QRect& rect);
};

/// Coverage of the path's interior (its own fill rule) after `transform` maps it to image pixels,
/// computed within `limit` only. Anti-aliased coverage is the area of each pixel inside the path,
/// exact for polygons (curves are flattened to within 1/10 pixel); where contours overlap, the
/// accumulated winding is clamped, which is exact except in pixels where edges of opposite
/// windings meet. Aliased coverage is full wherever the pixel's centre is inside.
CoverageMask rasterizePath(const QPainterPath& path, const QTransform& transform, const QRect& limit,
                           bool antialias);

/// Coverage of a stroke of the path `width` wide (in the path's units) after `transform`, within
/// `limit`: butt caps, mitred joins that become bevels where miter length / width would exceed
/// `miterLimit`. The transform should keep lengths (as the y flip of a drawing context does).
CoverageMask rasterizeStroke(const QPainterPath& path, double width, double miterLimit,
                             const QTransform& transform, const QRect& limit, bool antialias);

} // namespace qm
