#include "Classes/atlas/TreeNode.h"

#include <algorithm>

namespace qm {

void TreeNode::initRect(const QRectF& rect)
{
    x = static_cast<int>(rect.x());
    y = static_cast<int>(rect.y());
    w = rect.width();
    h = rect.height();
    leftL.reset();
    rightL.reset();
    usedWidth = usedHeight = 0;
    used = false;
    maxFreeW = w;
    maxFreeH = h;
}

namespace {

void updateFree(TreeNode* node)
{
    if (node->leftL) {
        node->maxFreeW = std::max(node->leftL->maxFreeW, node->rightL->maxFreeW);
        node->maxFreeH = std::max(node->leftL->maxFreeH, node->rightL->maxFreeH);
    } else if (node->used) {
        node->maxFreeW = node->maxFreeH = -1;
    } else {
        node->maxFreeW = node->w;
        node->maxFreeH = node->h;
    }
}

const QPointF kNoPlace(-1, -1);

} // namespace

QPointF recursiveFindCoords(TreeNode* node, double w, double h)
{
    if (w > node->maxFreeW || h > node->maxFreeH)
        return kNoPlace;
    if (node->leftL) {
        const QPointF first = recursiveFindCoords(node->leftL.get(), w, h);
        if (first.x() >= 0 && first.y() >= 0) {
            node->usedWidth = std::max(node->usedWidth, static_cast<int>(w + first.x()));
            node->usedHeight = std::max(node->usedHeight, static_cast<int>(h + first.y()));
            updateFree(node);
            return first;
        }
        const QPointF second = recursiveFindCoords(node->rightL.get(), w, h);
        updateFree(node);
        return second;
    }
    if (node->used || w > node->w || h > node->h)
        return kNoPlace;
    if (node->w == w && node->h == h) {
        node->used = true;
        updateFree(node);
        return QPointF(node->x, node->y);
    }
    node->leftL = std::make_unique<TreeNode>(QRectF(node->x, node->y, node->w, node->h));
    node->rightL = std::make_unique<TreeNode>(QRectF(node->x, node->y, node->w, node->h));
    const double dw = node->w - w;
    const double dh = node->h - h;
    if (dw > dh) {
        node->leftL->w = w;
        node->rightL->x = static_cast<int>(node->x + w);
        node->rightL->w = node->w - w;
    } else {
        node->leftL->h = h;
        node->rightL->y = static_cast<int>(node->y + h);
        node->rightL->h = node->h - h;
    }
    updateFree(node->leftL.get());
    updateFree(node->rightL.get());
    const QPointF place = recursiveFindCoords(node->leftL.get(), w, h);
    updateFree(node);
    return place;
}

} // namespace qm
