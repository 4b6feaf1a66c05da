#pragma once

#include <QCache>
#include <QHash>
#include <QPixmap>
#include <QStyledItemDelegate>

class QAbstractItemView;

namespace qm {

/// Draws a row's text in a typeface of its own, at the largest of a range of sizes that fits the
/// row, tail-truncated, with a soft shadow below right: the font list (each family in its own
/// face) and the Unicode block table use it. Sizes are in pixels, the units the row heights use.
class StyledNameDelegate : public QStyledItemDelegate
{
    Q_OBJECT
public:
    /// The typeface family of a row (QString); empty or missing: the style's default family.
    static constexpr int FamilyRole = Qt::UserRole + 40;
    /// The text colour of a row (QColor); missing: black.
    static constexpr int ColorRole = Qt::UserRole + 41;

    struct Style
    {
        QString defaultFamily;
        int largestSize = 18;
        int smallestSize = 9;
        /// A size is kept when its line is at most this high...
        int maxTextHeight = 26;
        /// ...and the text at most the column width minus this wide; the smallest is kept anyway.
        int widthMargin = 20;
        int rowHeight = 30;
        Qt::Alignment alignment = Qt::AlignHCenter;
    };

    explicit StyledNameDelegate(const Style& style, QObject* parent = nullptr);

    /// Gives a view a light selection colour with the normal text colour on it, so that black
    /// and green names stay readable on selected rows; the delegate draws the selection in it.
    static void useLightSelection(QAbstractItemView* view);

    /// The pixel size chosen for a text in a family for a column width.
    int fittingSize(const QString& family, const QString& text, int width) const;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    /// The text with its shadow, drawn once per text, face, size, colour and width.
    QPixmap renderedText(const QString& text, const QFont& font, const QColor& color, int width,
                         qreal devicePixelRatio) const;

    Style m_style;
    mutable QHash<QString, int> m_sizes;
    mutable QCache<QString, QPixmap> m_pixmaps{4000};
};

} // namespace qm
