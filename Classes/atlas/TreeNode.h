#pragma once

#include <QPointF>
#include <QRectF>

#include <memory>

namespace qm {

/// One node of the packing tree: a free rectangle (x, y from the top left of the texture) that
/// is either a leaf, used or free, or split into two children.
struct TreeNode
{
    int x = 0;
    int y = 0;
    double w = 0;
    double h = 0;
    std::unique_ptr<TreeNode> leftL;
    std::unique_ptr<TreeNode> rightL;
    int usedWidth = 0;  ///< furthest right edge placed through the first child
    int usedHeight = 0; ///< furthest bottom edge placed through the first child
    bool used = false;

    /// Largest free width and height of any leaf below, an upper bound that lets a search skip
    /// subtrees that cannot hold the box. A failing search changes nothing in the tree, so
    /// skipping such a subtree finds exactly the place a full walk would find.
    double maxFreeW = 0;
    double maxFreeH = 0;

    TreeNode() = default;
    explicit TreeNode(const QRectF& rect) { initRect(rect); }
    /// Width and height as given, the origin truncated toward zero; no children, nothing used.
    void initRect(const QRectF& rect);
};

/// The tree step: finds, and takes, a place for a box of w x h below `node`, splitting free
/// leaves as needed (the first child keeps the box's width when the leftover width is larger,
/// else its height). Answers (-1, -1) when there is none.
QPointF recursiveFindCoords(TreeNode* node, double w, double h);

} // namespace qm
