#include "Platform/graphics/ShadowBlur.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace qm {

namespace {

/// One axis of the blur: out(x) = sum over k of weights[k] * in(x - offset - k).
struct Kernel
{
    int offset = 0;
    std::vector<float> weights;
};

Kernel computeKernel(double sigma, double whole, double fraction)
{
    Kernel k;
    if (sigma < 1e-3) {
        k.offset = int(whole);
        k.weights = {float(1 - fraction)};
        if (fraction > 0)
            k.weights.push_back(float(fraction));
        return k;
    }
    // Weight of a source pixel = the Gaussian's mass over that pixel's unit square, seen from the
    // output pixel; three sigmas on either side hold all but 0.3 % of it.
    const int reach = int(std::ceil(3 * sigma));
    const int first = -reach;
    const int last = fraction > 0 ? reach + 1 : reach;
    const double scale = 1.0 / (sigma * std::sqrt(2.0));
    auto cdf = [scale](double x) { return 0.5 * std::erf(x * scale); };
    double sum = 0;
    std::vector<double> w;
    for (int j = first; j <= last; ++j) {
        const double c = j - fraction;
        w.push_back(cdf(c + 0.5) - cdf(c - 0.5));
        sum += w.back();
    }
    k.offset = int(whole) + first;
    for (double v : w)
        k.weights.push_back(float(v / sum));
    return k;
}

/// Kernels repeat from glyph to glyph: the last few are kept.
const Kernel& makeKernel(double sigma, double shift)
{
    struct Entry
    {
        double sigma, shift;
        Kernel kernel;
    };
    thread_local std::vector<Entry> cache;
    for (const Entry& e : cache)
        if (e.sigma == sigma && e.shift == shift)
            return e.kernel;
    if (cache.size() >= 8)
        cache.erase(cache.begin());
    const double whole = std::floor(shift);
    cache.push_back({sigma, shift, computeKernel(sigma, whole, shift - whole)});
    return cache.back().kernel;
}

} // namespace

QRect blurReach(const QRect& source, double sigma, QPointF shift)
{
    if (source.isEmpty())
        return {};
    const Kernel kx = makeKernel(sigma, shift.x());
    const Kernel ky = makeKernel(sigma, shift.y());
    return QRect(QPoint(source.left() + kx.offset, source.top() + ky.offset),
                 QPoint(source.right() + kx.offset + int(kx.weights.size()) - 1,
                        source.bottom() + ky.offset + int(ky.weights.size()) - 1));
}

QRect blurSources(const QRect& target, double sigma, QPointF shift)
{
    if (target.isEmpty())
        return {};
    const Kernel kx = makeKernel(sigma, shift.x());
    const Kernel ky = makeKernel(sigma, shift.y());
    return QRect(QPoint(target.left() - kx.offset - int(kx.weights.size()) + 1,
                        target.top() - ky.offset - int(ky.weights.size()) + 1),
                 QPoint(target.right() - kx.offset, target.bottom() - ky.offset));
}

void blurShifted(const AlphaView& source, double sigma, QPointF shift, const QRect& outRect,
                 unsigned char* out, qsizetype outStride)
{
    if (outRect.isEmpty())
        return;
    for (int y = 0; y < outRect.height(); ++y)
        std::fill_n(out + y * outStride, outRect.width(), 0);
    const QRect& src = source.rect;
    if (src.isEmpty())
        return;
    const Kernel kx = makeKernel(sigma, shift.x());
    const Kernel ky = makeKernel(sigma, shift.y());
    const int kxn = int(kx.weights.size());
    const int kyn = int(ky.weights.size());

    // Only the source rows that reach an output row take part in the horizontal pass.
    const int rowFirst = std::max(src.top(), outRect.top() - ky.offset - kyn + 1);
    const int rowLast = std::min(src.bottom(), outRect.bottom() - ky.offset);
    if (rowFirst > rowLast)
        return;
    const int width = outRect.width();
    const int rows = rowLast - rowFirst + 1;
    std::vector<float> horizontal(size_t(width) * rows, 0.0f);
    std::vector<float> line(src.width());

    for (int r = 0; r < rows; ++r) {
        const unsigned char* in = source.data + (rowFirst + r - src.top()) * source.stride;
        int nonZero = 0;
        if (source.step == 1) {
            for (int s = 0; s < src.width(); ++s) {
                line[s] = in[s];
                nonZero |= in[s];
            }
        } else {
            for (int s = 0; s < src.width(); ++s) {
                line[s] = in[s * source.step];
                nonZero |= in[s * source.step];
            }
        }
        if (!nonZero)
            continue;
        float* h = horizontal.data() + size_t(r) * width;
        for (int k = 0; k < kxn; ++k) {
            const float w = kx.weights[k];
            // Output column x reads source column x - offset - k.
            const int shiftBy = kx.offset + k;
            const int xFirst = std::max(outRect.left(), src.left() + shiftBy);
            const int xLast = std::min(outRect.right(), src.right() + shiftBy);
            const float* from = line.data() + (xFirst - shiftBy - src.left());
            float* to = h + (xFirst - outRect.left());
            for (int i = 0, n = xLast - xFirst + 1; i < n; ++i)
                to[i] += w * from[i];
        }
    }

    std::vector<float> acc(width);
    for (int y = outRect.top(); y <= outRect.bottom(); ++y) {
        std::fill(acc.begin(), acc.end(), 0.0f);
        bool any = false;
        for (int k = 0; k < kyn; ++k) {
            const int row = y - ky.offset - k;
            if (row < rowFirst || row > rowLast)
                continue;
            any = true;
            const float w = ky.weights[k];
            const float* from = horizontal.data() + size_t(row - rowFirst) * width;
            for (int i = 0; i < width; ++i)
                acc[i] += w * from[i];
        }
        if (!any)
            continue;
        unsigned char* to = out + (y - outRect.top()) * outStride;
        for (int i = 0; i < width; ++i)
            to[i] = static_cast<unsigned char>(std::clamp(acc[i] + 0.5f, 0.0f, 255.0f));
    }
}

} // namespace qm
