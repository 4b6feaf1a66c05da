#include "Classes/ui/ImageWell.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFileInfo>
#include <QImageReader>
#include <QMimeData>
#include <QPainter>
#include <QPainterPath>
#include <QStyleOptionFocusRect>

namespace qm {

ImageWell::ImageWell(QWidget* parent) : QAbstractButton(parent)
{
    setAcceptDrops(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setCursor(Qt::PointingHandCursor);
    connect(this, &QAbstractButton::clicked, this, &ImageWell::choose);
}

const QStringList& ImageWell::extensions()
{
    static const QStringList list{QStringLiteral("png"), QStringLiteral("jpg"), QStringLiteral("jpeg"),
                                  QStringLiteral("gif"), QStringLiteral("bmp"), QStringLiteral("tif"),
                                  QStringLiteral("tiff")};
    return list;
}

void ImageWell::setPath(const QString& path)
{
    m_path = path;
    m_thumbnail = QPixmap();
    if (!path.isEmpty()) {
        QImageReader reader(path);
        const QSize size = reader.size();
        const QSize room = sizeHint() - QSize(8, 8);
        if (size.isValid())
            reader.setScaledSize(size.scaled(room, Qt::KeepAspectRatio));
        const QImage image = reader.read();
        if (!image.isNull())
            m_thumbnail = QPixmap::fromImage(image);
    }
    setToolTip(path.isEmpty() ? tr("Click to choose a picture, or drop one here") : path);
    update();
}

void ImageWell::choose()
{
    if (!m_chooser)
        return;
    const QString path = m_chooser();
    if (!path.isEmpty())
        take(path);
}

void ImageWell::take(const QString& path)
{
    setPath(path);
    emit imageChanged(path);
}

QString ImageWell::droppedPicture(const QMimeData* mime)
{
    if (!mime || !mime->hasUrls() || mime->urls().size() != 1)
        return {};
    const QUrl url = mime->urls().first();
    if (!url.isLocalFile())
        return {};
    const QString path = url.toLocalFile();
    return extensions().contains(QFileInfo(path).suffix().toLower()) ? path : QString();
}

void ImageWell::dragEnterEvent(QDragEnterEvent* event)
{
    if (isEnabled() && !droppedPicture(event->mimeData()).isEmpty())
        event->acceptProposedAction();
}

void ImageWell::dropEvent(QDropEvent* event)
{
    const QString path = droppedPicture(event->mimeData());
    if (path.isEmpty())
        return;
    event->acceptProposedAction();
    take(path);
}

QSize ImageWell::sizeHint() const
{
    return QSize(56, 40);
}

QSize ImageWell::minimumSizeHint() const
{
    return sizeHint();
}

void ImageWell::paintEvent(QPaintEvent*)
{
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QPalette& pal = palette();
    const QRectF outer = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath bezel;
    bezel.addRoundedRect(outer, 4, 4);
    p.fillPath(bezel, isDown() ? pal.color(QPalette::Mid) : pal.color(QPalette::Base));
    p.setPen(QPen(pal.color(QPalette::Shadow).lighter(180), 1.0));
    p.drawPath(bezel);
    if (!isEnabled())
        p.setOpacity(0.4);
    if (!m_thumbnail.isNull()) {
        const QSize size = m_thumbnail.size() / m_thumbnail.devicePixelRatio();
        p.drawPixmap(QPoint((width() - size.width()) / 2, (height() - size.height()) / 2), m_thumbnail);
    } else {
        QFont small = font();
        small.setPointSizeF(small.pointSizeF() * 0.8);
        p.setFont(small);
        p.setPen(pal.color(QPalette::PlaceholderText));
        p.drawText(rect(), Qt::AlignCenter, m_path.isEmpty() ? tr("None") : tr("?"));
    }
    p.setOpacity(1.0);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &p, this);
    }
}

} // namespace qm
