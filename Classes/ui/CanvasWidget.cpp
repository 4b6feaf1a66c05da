#include "Classes/ui/CanvasWidget.h"

#include "Classes/atlas/TextureView.h"
#include "Classes/render/CAGlyphLayer.h"

#include <QApplication>
#include <QDrag>
#include <QDragEnterEvent>
#include <QImageReader>
#include <QMimeData>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace qm {

namespace {

const double kZoomSteps[] = {0.125, 0.25, 0.5, 0.75, 1.0, 1.5, 2.0, 3.0, 4.0, 6.0, 8.0};

/// The ease-in-ease-out curve of layer animations: a cubic Bézier through (0.42, 0) and (0.58, 1).
double easeInOut(double t)
{
    // Solve x(u) = t for the curve parameter by bisection, then return y(u).
    auto bezier = [](double u, double p1, double p2) {
        const double v = 1 - u;
        return 3 * v * v * u * p1 + 3 * v * u * u * p2 + u * u * u;
    };
    double lo = 0, hi = 1, u = t;
    for (int i = 0; i < 30; ++i) {
        u = (lo + hi) / 2;
        if (bezier(u, 0.42, 0.58) < t)
            lo = u;
        else
            hi = u;
    }
    return bezier(u, 0.0, 1.0);
}

QStringList localImageFiles(const QMimeData* mime)
{
    QStringList files;
    for (const QUrl& url : mime->urls())
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    return files;
}

bool carriesImage(const QMimeData* mime)
{
    if (mime->hasImage())
        return true;
    const QStringList files = localImageFiles(mime);
    return !files.isEmpty() && QImageReader(files.first()).canRead();
}

} // namespace

CanvasWidget::CanvasWidget(TextureView* view, QWidget* parent) : QWidget(parent), m_view(view)
{
    setObjectName(QStringLiteral("canvas"));
    setFocusPolicy(Qt::StrongFocus);
    setAcceptDrops(true);
    setAttribute(Qt::WA_OpaquePaintEvent, false);
    m_clock.start();
    connect(&m_timer, &QTimer::timeout, this, &CanvasWidget::poll);
    m_timer.start(16);
    updateSize();
}

void CanvasWidget::setTextureView(TextureView* view)
{
    m_view = view;
    m_moves.clear();
    m_seenSerials.clear();
    m_seenChanges = 0;
    updateSize();
    update();
}

QSize CanvasWidget::sizeHint() const
{
    if (!m_view)
        return QSize(512, 512);
    return (m_view->frameSize() * m_zoom).toSize();
}

void CanvasWidget::setZoom(double zoom)
{
    m_zoom = std::clamp(zoom, kZoomSteps[0], kZoomSteps[std::size(kZoomSteps) - 1]);
    updateSize();
    update();
}

void CanvasWidget::zoomIn()
{
    for (double step : kZoomSteps)
        if (step > m_zoom + 1e-9) {
            setZoom(step);
            return;
        }
}

void CanvasWidget::zoomOut()
{
    for (auto it = std::rbegin(kZoomSteps); it != std::rend(kZoomSteps); ++it)
        if (*it < m_zoom - 1e-9) {
            setZoom(*it);
            return;
        }
}

void CanvasWidget::zoomToFit(const QSize& viewport)
{
    if (!m_view || m_view->frameSize().isEmpty())
        return;
    const QSizeF canvas = m_view->frameSize();
    setZoom(std::min(viewport.width() / canvas.width(), viewport.height() / canvas.height()));
}

QPointF CanvasWidget::canvasPoint(QPointF p) const
{
    const double H = m_view ? m_view->frameSize().height() : 0;
    return QPointF(p.x() / m_zoom, H - p.y() / m_zoom);
}

QPointF CanvasWidget::widgetPoint(QPointF c) const
{
    const double H = m_view ? m_view->frameSize().height() : 0;
    return QPointF(c.x() * m_zoom, (H - c.y()) * m_zoom);
}

void CanvasWidget::updateSize()
{
    const QSize wanted = sizeHint();
    if (size() != wanted) {
        resize(wanted);
        setMinimumSize(wanted);
        emit canvasResized();
    }
}

void CanvasWidget::poll()
{
    if (!m_view)
        return;
    const bool changed = Layer::changeCount() != m_seenChanges;
    if (changed) {
        m_seenChanges = Layer::changeCount();
        trackAnimations(m_view->displayedLayer());
        updateSize();
    }
    const qint64 now = m_clock.elapsed();
    bool ended = false;
    for (auto it = m_moves.begin(); it != m_moves.end();) {
        if (now - it->startMs >= qint64(it->duration * 1000)) {
            it = m_moves.erase(it);
            ended = true;
        } else {
            ++it;
        }
    }
    // A move that just ended still needs its last frame: the layer at its model position.
    if (changed || ended || !m_moves.isEmpty())
        update();
}

void CanvasWidget::trackAnimations(const Layer* layer)
{
    const PositionAnimation& a = layer->positionAnimation();
    auto seen = m_seenSerials.find(layer);
    if (seen == m_seenSerials.end() || *seen != a.serial) {
        const QPointF shownNow = presentationPosition(layer);
        m_seenSerials.insert(layer, a.serial);
        if (a.duration > 0 && seen != m_seenSerials.end()) {
            // Start from where the layer is shown, so a move that interrupts another is smooth.
            m_moves.insert(layer, Move{a.serial, shownNow == a.to ? a.from : shownNow, a.to, a.duration,
                                       a.timing == TimingFunction::EaseInEaseOut, m_clock.elapsed()});
        } else {
            m_moves.remove(layer);
        }
    }
    for (const auto& sub : layer->sublayers())
        trackAnimations(sub.get());
}

QPointF CanvasWidget::presentationPosition(const Layer* layer) const
{
    const auto it = m_moves.constFind(layer);
    if (it == m_moves.constEnd() || it->serial != layer->positionAnimation().serial)
        return layer->position();
    double t = (m_clock.elapsed() - it->startMs) / (it->duration * 1000);
    t = std::clamp(t, 0.0, 1.0);
    const double e = it->easeInOut ? easeInOut(t) : t;
    return it->from + (it->to - it->from) * e;
}

void CanvasWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    if (!m_view)
        return;
    painter.scale(m_zoom, m_zoom);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, m_zoom < 1.0);
    paintLayer(painter, m_view->displayedLayer(), QPointF(0, 0));
    if (m_view->highlight()) {
        // A picture is dragged over the canvas: a red frame around it.
        painter.resetTransform();
        painter.setPen(QPen(Qt::red, 5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(rect()).adjusted(2.5, 2.5, -2.5, -2.5));
    }
}

void CanvasWidget::paintLayer(QPainter& painter, const Layer* layer, QPointF origin)
{
    if (layer->isHidden())
        return;
    const double H = m_view->frameSize().height();
    const QSizeF size = layer->bounds().size();
    const QPointF centre = presentationPosition(layer) + origin;
    const QPointF bottomLeft(centre.x() - size.width() / 2, centre.y() - size.height() / 2);
    const QRectF r(bottomLeft.x(), H - bottomLeft.y() - size.height(), size.width(), size.height());

    if (!layer->backgroundPattern().isNull()) {
        QBrush tiles(layer->backgroundPattern());
        tiles.setTransform(QTransform::fromTranslate(r.x(), r.y()));
        painter.fillRect(r, tiles);
    }
    const Color& bg = layer->backgroundColor();
    if (bg.isValid() && bg.alphaComponent() > 0)
        painter.fillRect(r, bg.toQColor());
    const_cast<Layer*>(layer)->displayIfNeeded();
    if (!layer->contents().isNull())
        painter.drawImage(r, layer->contents());
    if (layer->borderWidth() > 0) {
        const double w = layer->borderWidth();
        painter.setPen(QPen(layer->borderColor().toQColor(), w));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(r.adjusted(w / 2, w / 2, -w / 2, -w / 2));
    }
    for (const auto& sub : layer->sublayers())
        paintLayer(painter, sub.get(), bottomLeft);
}

void CanvasWidget::mousePressEvent(QMouseEvent* event)
{
    if (!m_view)
        return;
    setFocus();
    const QPointF p = canvasPoint(event->position());
    m_pressPoint = event->position();
    m_dragStarted = false;
    m_pressedOnGlyph = false;
    for (CAGlyphLayer* layer : m_view->glyphLayers())
        if (!layer->isHidden() && layer->frame().contains(p))
            m_pressedOnGlyph = true;
    if (event->button() == Qt::LeftButton)
        m_view->mouseDown(p);
    update();
}

void CanvasWidget::mouseMoveEvent(QMouseEvent* event)
{
    if (!m_view || !(event->buttons() & Qt::LeftButton))
        return;
    if (m_view->showsPreview()) {
        m_view->mouseDragged(canvasPoint(event->position()));
        update();
        return;
    }
    // Dragging from empty canvas takes the texture out as a picture.
    if (!m_pressedOnGlyph && !m_dragStarted &&
        (event->position() - m_pressPoint).manhattanLength() >= QApplication::startDragDistance()) {
        m_dragStarted = true;
        auto* mime = new QMimeData;
        mime->setImageData(canvasImage());
        auto* drag = new QDrag(this);
        drag->setMimeData(mime);
        drag->exec(Qt::CopyAction);
    }
}

void CanvasWidget::mouseReleaseEvent(QMouseEvent* event)
{
    if (!m_view)
        return;
    const QPointF p = canvasPoint(event->position());
    if (event->button() == Qt::RightButton)
        m_view->rightMouseUp(p);
    else if (event->button() == Qt::LeftButton)
        m_view->mouseUp(p);
    update();
}

namespace {
QChar keyCharacter(const QKeyEvent* event)
{
    if (event->key() == Qt::Key_Delete || event->key() == Qt::Key_Backspace)
        return QChar(0x7F);
    return event->text().isEmpty() ? QChar() : event->text().front();
}
bool commandOnly(const QKeyEvent* event)
{
    return (event->modifiers() & ~Qt::KeypadModifier) == Qt::ControlModifier;
}
} // namespace

void CanvasWidget::keyPressEvent(QKeyEvent* event)
{
    if (!m_view || event->isAutoRepeat())
        return QWidget::keyPressEvent(event);
    const QChar c = keyCharacter(event);
    if (c.isNull() && !commandOnly(event))
        return QWidget::keyPressEvent(event);
    m_view->keyDown(commandOnly(event), c);
    update();
}

void CanvasWidget::keyReleaseEvent(QKeyEvent* event)
{
    if (!m_view || event->isAutoRepeat())
        return QWidget::keyReleaseEvent(event);
    m_view->keyUp(commandOnly(event), keyCharacter(event));
    update();
}

void CanvasWidget::dragEnterEvent(QDragEnterEvent* event)
{
    if (m_view && m_view->draggingEntered(carriesImage(event->mimeData()))) {
        event->setDropAction(Qt::CopyAction);
        event->accept();
        update();
    }
}

void CanvasWidget::dragMoveEvent(QDragMoveEvent* event)
{
    if (!m_view)
        return;
    m_view->draggingUpdated(canvasPoint(event->position()));
    event->setDropAction(Qt::CopyAction);
    event->accept();
    update();
}

void CanvasWidget::dragLeaveEvent(QDragLeaveEvent*)
{
    if (m_view)
        m_view->draggingExited();
    update();
}

void CanvasWidget::dropEvent(QDropEvent* event)
{
    if (!m_view)
        return;
    const QMimeData* mime = event->mimeData();
    if (m_view->prepareForDragOperation(carriesImage(mime)) && m_view->performDragOperation(localImageFiles(mime)))
        event->acceptProposedAction();
    else
        event->ignore();
    update();
}

QImage CanvasWidget::canvasImage() const
{
    return m_view ? m_view->getTexture(100, 1, 100) : QImage();
}

} // namespace qm
