// The PNG writer: what a decoder reads back is the image with straight alpha, whatever the
// source format; a device that refuses bytes is a failure.

#include "Platform/graphics/PngWriter.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QRandomGenerator>

#include <gtest/gtest.h>

using namespace qm;

namespace {

QImage readBack(const QByteArray& bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, "png");
    return reader.read();
}

/// A premultiplied picture with every alpha level, hard edges and a gradient.
QImage sample()
{
    QImage image(67, 41, QImage::Format_RGBA8888_Premultiplied);
    QRandomGenerator random(7);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const int a = (x * 4 + y) % 256;
            const QColor c = x < 20 ? QColor(255, 128, 0, a)
                                    : QColor(int(random.bounded(256)), y * 6, 255 - y * 6, y < 20 ? 255 : a);
            image.setPixelColor(x, y, c);
        }
    return image;
}

} // namespace

TEST(PngWriter, DecodesToTheSameStraightAlphaPixels)
{
    const QImage image = sample();
    for (QImage::Format format :
         {QImage::Format_RGBA8888_Premultiplied, QImage::Format_ARGB32, QImage::Format_RGB32}) {
        const QImage source = image.convertToFormat(format);
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        ASSERT_TRUE(writePng(source, buffer));
        const QImage back = readBack(buffer.data()).convertToFormat(QImage::Format_RGBA8888);
        const QImage expected = source.convertToFormat(QImage::Format_RGBA8888);
        ASSERT_EQ(back.size(), expected.size());
        for (int y = 0; y < back.height(); ++y)
            ASSERT_EQ(memcmp(back.constScanLine(y), expected.constScanLine(y), size_t(back.width()) * 4), 0)
                << "format " << int(format) << ", row " << y;
    }
}

TEST(PngWriter, NullImagesAndRefusingDevicesFail)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    EXPECT_FALSE(writePng(QImage(), buffer));
    QBuffer readOnly;
    readOnly.open(QIODevice::ReadOnly);
    EXPECT_FALSE(writePng(sample(), readOnly));
}
