#include "Classes/ui/StyledNameDelegate.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QImage>
#include <QPainter>

#include <algorithm>

namespace qm {

namespace {

constexpr int kShadowMargin = 4;     ///< room around the text for the blurred shadow
constexpr int kShadowBlurPasses = 3; ///< three box blurs of radius 1 approximate a blur of radius 3
const QPoint kShadowOffset(1, 1);    ///< one pixel right and one down

/// One horizontal and one vertical box blur of radius 1 on the alpha of a shadow mask.
void boxBlurAlpha(QImage& image)
{
    const int w = image.width();
    const int h = image.height();
    QImage copy = image;
    for (int y = 0; y < h; ++y) {
        const QRgb* src = reinterpret_cast<const QRgb*>(copy.constScanLine(y));
        QRgb* dst = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < w; ++x) {
            int sum = 0;
            for (int dx = -1; dx <= 1; ++dx)
                sum += qAlpha(src[std::clamp(x + dx, 0, w - 1)]);
            dst[x] = qRgba(0, 0, 0, sum / 3);
        }
    }
    copy = image;
    for (int y = 0; y < h; ++y) {
        QRgb* dst = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < w; ++x) {
            int sum = 0;
            for (int dy = -1; dy <= 1; ++dy)
                sum += qAlpha(
                    reinterpret_cast<const QRgb*>(copy.constScanLine(std::clamp(y + dy, 0, h - 1)))[x]);
            dst[x] = qRgba(0, 0, 0, sum / 3);
        }
    }
}

} // namespace

StyledNameDelegate::StyledNameDelegate(const Style& style, QObject* parent)
    : QStyledItemDelegate(parent), m_style(style)
{
}

int StyledNameDelegate::fittingSize(const QString& family, const QString& text, int width) const
{
    const QString key = family + u'\n' + text + u'\n' + QString::number(width);
    if (auto it = m_sizes.constFind(key); it != m_sizes.constEnd())
        return *it;
    int chosen = m_style.smallestSize;
    for (int size = m_style.largestSize; size > m_style.smallestSize; --size) {
        QFont font(family);
        font.setPixelSize(size);
        const QFontMetrics fm(font);
        if (fm.height() <= m_style.maxTextHeight &&
            fm.horizontalAdvance(text) <= width - m_style.widthMargin) {
            chosen = size;
            break;
        }
    }
    m_sizes.insert(key, chosen);
    return chosen;
}

QPixmap StyledNameDelegate::renderedText(const QString& text, const QFont& font, const QColor& color,
                                         int width, qreal dpr) const
{
    const QFontMetrics fm(font);
    const int textWidth = std::max(1, width - m_style.widthMargin);
    const QString shown = fm.elidedText(text, Qt::ElideRight, textWidth);
    const QString key = QStringLiteral("%1\n%2\n%3\n%4\n%5\n%6")
                            .arg(shown, font.key(), color.name(QColor::HexArgb))
                            .arg(width)
                            .arg(dpr)
                            .arg(int(m_style.alignment));
    if (const QPixmap* cached = m_pixmaps.object(key))
        return *cached;

    const QSize size(textWidth + 2 * kShadowMargin, fm.height() + 2 * kShadowMargin);
    const QRect textRect(kShadowMargin, kShadowMargin, textWidth, fm.height());
    const int flags = int(m_style.alignment | Qt::AlignVCenter) | Qt::TextSingleLine;

    QImage shadow(size * dpr, QImage::Format_ARGB32);
    shadow.setDevicePixelRatio(dpr);
    shadow.fill(Qt::transparent);
    {
        QPainter p(&shadow);
        p.setFont(font);
        p.setPen(Qt::black);
        p.drawText(textRect.translated(kShadowOffset), flags, shown);
    }
    for (int i = 0; i < kShadowBlurPasses; ++i)
        boxBlurAlpha(shadow);

    QImage image(size * dpr, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(dpr);
    image.fill(Qt::transparent);
    {
        QPainter p(&image);
        p.setOpacity(0.4);
        p.drawImage(0, 0, shadow);
        p.setOpacity(1.0);
        p.setFont(font);
        p.setPen(color);
        p.drawText(textRect, flags, shown);
    }
    auto* pixmap = new QPixmap(QPixmap::fromImage(image));
    const QPixmap result = *pixmap;
    m_pixmaps.insert(key, pixmap, 1);
    return result;
}

void StyledNameDelegate::useLightSelection(QAbstractItemView* view)
{
    QPalette light = view->palette();
    for (QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive}) {
        const QColor highlight = light.color(QPalette::Active, QPalette::Highlight);
        const QColor base = light.color(group, QPalette::Base);
        const float a = group == QPalette::Active ? 0.38f : 0.28f;
        const auto mix = [a](float from, float to) { return from + (to - from) * a; };
        light.setColor(group, QPalette::Highlight,
                       QColor::fromRgbF(mix(base.redF(), highlight.redF()),
                                        mix(base.greenF(), highlight.greenF()),
                                        mix(base.blueF(), highlight.blueF())));
        light.setColor(group, QPalette::HighlightedText, light.color(group, QPalette::Text));
    }
    view->setPalette(light);
}

void StyledNameDelegate::paint(QPainter* painter, const QStyleOptionViewItem& option,
                               const QModelIndex& index) const
{
    QStyleOptionViewItem opt = option;
    initStyleOption(&opt, index);
    if (opt.state & QStyle::State_Selected) {
        const QPalette::ColorGroup group =
            opt.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
        painter->fillRect(opt.rect, opt.palette.color(group, QPalette::Highlight));
    } else {
        opt.text.clear();
        const QWidget* widget = opt.widget;
        QStyle* style = widget ? widget->style() : QApplication::style();
        style->drawPrimitive(QStyle::PE_PanelItemViewItem, &opt, painter, widget);
    }

    const QString text = index.data(Qt::DisplayRole).toString();
    QString family = index.data(FamilyRole).toString();
    if (family.isEmpty())
        family = m_style.defaultFamily;
    const QVariant colorData = index.data(ColorRole);
    const QColor color = colorData.isValid() ? colorData.value<QColor>() : QColor(Qt::black);
    QFont font(family);
    font.setPixelSize(fittingSize(family, text, opt.rect.width()));

    const qreal dpr = painter->device() ? painter->device()->devicePixelRatioF() : 1.0;
    const QPixmap pixmap = renderedText(text, font, color, opt.rect.width(), dpr);
    const QSize logical = pixmap.size() / pixmap.devicePixelRatio();
    const int x = opt.rect.left() + m_style.widthMargin / 2 - kShadowMargin;
    const int y = opt.rect.top() + (opt.rect.height() - logical.height()) / 2;
    painter->drawPixmap(x, y, pixmap);
}

QSize StyledNameDelegate::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const
{
    QSize size = QStyledItemDelegate::sizeHint(option, index);
    size.setHeight(m_style.rowHeight);
    return size;
}

} // namespace qm
