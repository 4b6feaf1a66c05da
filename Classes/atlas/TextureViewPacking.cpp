// Packing: placing the glyph layers on the texture with the tree packer or on a grid, and
// choosing the texture size when it is automatic.

#include "Classes/atlas/TextureView.h"

#include "Classes/model/sharedAppState.h"
#include "Classes/render/CAGlyphLayer.h"

#include <algorithm>
#include <cmath>

namespace qm {

namespace {

constexpr int kMaxSide = 4096;

/// Sorts by the packing method's key, smallest first, keeping the set order of equal keys.
void sortByMethod(QList<CAGlyphLayer*>& list, int method)
{
    auto by = [&list](auto key) {
        std::stable_sort(list.begin(), list.end(), [&key](CAGlyphLayer* a, CAGlyphLayer* b) { return key(a) < key(b); });
    };
    switch (method) {
    case 1: by([](CAGlyphLayer* l) { return l->bounds().width(); }); break;
    case 2: by([](CAGlyphLayer* l) { return l->bounds().height(); }); break;
    // Areas and longer sides compare as truncated integers: sizes that differ only in the
    // fraction count as equal.
    case 3: by([](CAGlyphLayer* l) { return static_cast<long long>(l->bounds().width() * l->bounds().height()); }); break;
    case 4: by([](CAGlyphLayer* l) { return static_cast<long long>(std::max(l->bounds().width(), l->bounds().height())); }); break;
    case 5: by([](CAGlyphLayer* l) { return int(l->glyphBitmap().charname()); }); break;
    default: break;
    }
}

/// Tries to place every box in a fresh tree for a W x H texture.
bool allFit(const QList<QSizeF>& boxes, int p, double W, double H)
{
    TreeNode root(QRectF(p, p, W - 2 * p, H - 2 * p));
    for (const QSizeF& box : boxes)
        if (recursiveFindCoords(&root, box.width(), box.height()).x() < 0)
            return false;
    return true;
}

} // namespace

QPointF TextureView::FindCoords(const QRectF& rect)
{
    if (!m_Nodes)
        return QPointF(-1, -1);
    return recursiveFindCoords(m_Nodes.get(), rect.width(), rect.height());
}

QSizeF TextureView::searchTextureSize(const QList<QSizeF>& boxes, int p) const
{
    const bool power2 = m_sharedState->power2();
    // What any candidate must offer: room for the widest and the tallest box and for their
    // total area. A candidate short of it cannot hold the boxes, so it is skipped without
    // packing; the first candidate that really packs is the same as in a plain sequential
    // search.
    double area = 0, widest = 0, tallest = 0;
    for (const QSizeF& box : boxes) {
        area += box.width() * box.height();
        widest = std::max(widest, box.width());
        tallest = std::max(tallest, box.height());
    }
    double W = power2 ? 32 : 128;
    double H = W;
    int e = 5;
    for (;;) {
        const double innerW = W - 2 * p, innerH = H - 2 * p;
        const bool possible = widest <= innerW && tallest <= innerH && area <= innerW * innerH;
        if (possible && allFit(boxes, p, W, H))
            return QSizeF(W, H);
        if (W == kMaxSide)
            return QSizeF(W, H);
        if (power2) {
            ++e;
            W = H = std::pow(2.0, e);
        } else if (W == H) {
            W += 64;
        } else {
            H += 64;
        }
    }
}

bool TextureView::Packing(int padding, int method, bool reversed, bool)
{
    if (!m_sharedState || m_sharedState->blockredrawandpack())
        return true;
    sharedAppState& s = *m_sharedState;
    const int p = padding;

    // Glyphs the font lacks have an empty frame: they take no place and count as neither fitted
    // nor failed.
    QList<CAGlyphLayer*> list;
    for (CAGlyphLayer* layer : glyphLayers()) {
        if (layer->bounds().isEmpty()) {
            layer->setCanfit(false);
            layer->setHidden(true);
        } else {
            list.append(layer);
        }
    }
    sortByMethod(list, method);
    if (reversed)
        std::reverse(list.begin(), list.end());

    double W = s.width();
    double H = s.height();
    const bool gridMode = s.grid();
    auto applySize = [&](double w, double h) {
        W = w;
        H = h;
        s.setWidth(int(W));
        s.setHeight(int(H));
        if (!s.isinpreviewmode())
            setFrameSize(QSizeF(W, H));
    };

    if (!s.autoSize()) {
        m_Nodes = std::make_unique<TreeNode>(QRectF(p, p, W - 2 * p, H - 2 * p));
    } else if (!gridMode) {
        QList<QSizeF> boxes;
        boxes.reserve(list.size());
        for (CAGlyphLayer* layer : list)
            boxes.append(layer->bounds().size() + QSizeF(p, p));
        const QSizeF size = searchTextureSize(boxes, p);
        applySize(size.width(), size.height());
        m_Nodes = std::make_unique<TreeNode>(QRectF(p, p, W - 2 * p, H - 2 * p));
        updateCheckerboardAndColor(s.checkerBoard(), s.bgColor());
    }

    int cellW = 0, cellH = 0;
    if (gridMode) {
        for (CAGlyphLayer* layer : list) {
            cellW = std::max(cellW, static_cast<int>(layer->bounds().width() + p));
            cellH = std::max(cellH, static_cast<int>(layer->bounds().height() + p));
        }
        if (s.autoSize()) {
            const int k = static_cast<int>(std::ceil(std::sqrt(double(list.size()))));
            double gw, gh;
            if (!s.power2()) {
                // Each side by itself, in 64-pixel steps from 128 up to 4096.
                auto side = [k](int cell) {
                    int v = 64;
                    do {
                        v += 64;
                        if (k * cell <= v)
                            break;
                    } while (v < kMaxSide);
                    return v;
                };
                gw = side(cellW);
                gh = side(cellH);
            } else if (k * cellW <= 32) {
                gw = gh = 32;
            } else {
                // Square, and sized by the cell width alone.
                int S = 64;
                while (k * cellW > S && S < kMaxSide)
                    S *= 2;
                gw = gh = S;
            }
            applySize(gw, gh);
            updateCheckerboardAndColor(s.checkerBoard(), s.bgColor());
        }
    }

    if (list.isEmpty()) {
        s.canfitall(true);
        return true;
    }

    bool everyGlyphFits = true;
    int gx = 0, gy = 0;
    TransactionScope transaction;
    Transaction::setAnimationDuration(0.5);
    Transaction::setAnimationTimingFunction(TimingFunction::EaseInEaseOut);
    for (CAGlyphLayer* layer : list) {
        const double w = layer->bounds().width();
        const double h = layer->bounds().height();
        QPointF slot;
        bool fits;
        if (!gridMode) {
            slot = FindCoords(QRectF(0, 0, w + p, h + p));
            fits = slot.x() >= 0;
        } else {
            slot = QPointF(gx, gy);
            gx += cellW;
            if (gx + cellW > W) {
                gx = 0;
                gy += cellH;
            }
            fits = W >= cellW + slot.x() && H >= cellH + slot.y();
        }
        layer->setCanfit(fits);
        if (!fits) {
            everyGlyphFits = false;
            layer->setHidden(true);
            continue;
        }
        layer->setHidden(false);
        // Slots are measured from the top left, layer positions from the bottom left.
        layer->setPosition(QPointF(slot.x() + w * 0.5, H - slot.y() - h * 0.5));
    }
    s.canfitall(everyGlyphFits);
    return everyGlyphFits;
}

} // namespace qm
