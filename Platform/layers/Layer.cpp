#include "Platform/layers/Layer.h"

#include <algorithm>
#include <cmath>

namespace qm {

namespace {
quint64 s_changeCount = 0;
quint64 s_animationSerial = 0;
} // namespace

Layer::~Layer() = default;

quint64 Layer::changeCount()
{
    return s_changeCount;
}

void Layer::noteChange()
{
    ++s_changeCount;
}

void Layer::setPosition(QPointF position)
{
    const bool animate = !Transaction::disableActions() && Transaction::animationDuration() > 0;
    m_animation.from = m_position;
    m_animation.to = position;
    m_animation.duration = animate ? Transaction::animationDuration() : 0.0;
    m_animation.timing = Transaction::animationTimingFunction();
    m_animation.serial = ++s_animationSerial;
    m_position = position;
    noteChange();
}

void Layer::setBounds(const QRectF& bounds)
{
    m_bounds = bounds;
    noteChange();
}

QRectF Layer::frame() const
{
    const QSizeF size = m_bounds.size();
    return QRectF(m_position.x() - size.width() / 2, m_position.y() - size.height() / 2, size.width(),
                  size.height());
}

void Layer::setFrame(const QRectF& frame)
{
    m_bounds.setSize(frame.size());
    setPosition(QPointF(frame.x() + frame.width() / 2, frame.y() + frame.height() / 2));
}

void Layer::setHidden(bool hidden)
{
    m_hidden = hidden;
    noteChange();
}

void Layer::setName(const QString& name)
{
    m_name = name;
}

void Layer::setBorderWidth(double width)
{
    m_borderWidth = width;
    noteChange();
}

void Layer::setBorderColor(const Color& color)
{
    m_borderColor = color;
    noteChange();
}

void Layer::setBackgroundColor(const Color& color)
{
    m_backgroundColor = color;
    noteChange();
}

void Layer::setBackgroundPattern(const QImage& tile)
{
    m_backgroundPattern = tile;
    noteChange();
}

void Layer::setContents(const QImage& image)
{
    m_contents = image;
    noteChange();
}

void Layer::setNeedsDisplay()
{
    m_needsDisplay = true;
    noteChange();
}

void Layer::display()
{
    m_needsDisplay = false;
    const int w = int(std::ceil(m_bounds.width()));
    const int h = int(std::ceil(m_bounds.height()));
    if (w <= 0 || h <= 0) {
        setContents(QImage());
        return;
    }
    QImage bitmap(w, h, QImage::Format_RGBA8888_Premultiplied);
    bitmap.fill(Qt::transparent);
    drawInContext(bitmap);
    setContents(bitmap);
}

void Layer::displayIfNeeded()
{
    if (m_needsDisplay)
        display();
}

void Layer::drawInContext(QImage&) {}

Layer* Layer::addSublayer(std::unique_ptr<Layer> layer)
{
    return insertSublayer(std::move(layer), m_sublayers.size());
}

Layer* Layer::insertSublayer(std::unique_ptr<Layer> layer, size_t index)
{
    if (!layer)
        return nullptr; // a layer handed over by unique_ptr has no superlayer: parents own theirs
    layer->m_superlayer = this;
    Layer* raw = layer.get();
    m_sublayers.insert(m_sublayers.begin() + std::min(index, m_sublayers.size()), std::move(layer));
    noteChange();
    return raw;
}

std::unique_ptr<Layer> Layer::removeFromSuperlayer()
{
    Layer* parent = m_superlayer;
    if (!parent)
        return nullptr;
    auto& siblings = parent->m_sublayers;
    auto it = std::find_if(siblings.begin(), siblings.end(), [this](const auto& p) { return p.get() == this; });
    std::unique_ptr<Layer> self = std::move(*it);
    siblings.erase(it);
    m_superlayer = nullptr;
    noteChange();
    return self;
}

} // namespace qm
