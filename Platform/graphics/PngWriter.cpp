#include "Platform/graphics/PngWriter.h"

#include <QIODevice>
#include <QImage>

#include <png.h>

namespace qm {

namespace {

[[noreturn]] void failed(png_structp png, png_const_charp)
{
    png_longjmp(png, 1);
}

void ignoreWarning(png_structp, png_const_charp) {}

void writeBytes(png_structp png, png_bytep data, size_t length)
{
    auto* device = static_cast<QIODevice*>(png_get_io_ptr(png));
    if (device->write(reinterpret_cast<const char*>(data), qint64(length)) != qint64(length))
        png_error(png, "write failed");
}

void flushBytes(png_structp) {}

/// The libpng part, apart so that no object with a destructor lives in the frame that an error
/// jumps back to.
bool encode(const QImage& rgba, QIODevice* device)
{
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, failed, ignoreWarning);
    if (!png)
        return false;
    png_infop info = png_create_info_struct(png);
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, info ? &info : nullptr);
        return false;
    }
    png_set_write_fn(png, device, writeBytes, flushBytes);
    png_set_IHDR(png, info, png_uint_32(rgba.width()), png_uint_32(rgba.height()), 8,
                 PNG_COLOR_TYPE_RGB_ALPHA, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT,
                 PNG_FILTER_TYPE_DEFAULT);
    png_set_filter(png, PNG_FILTER_TYPE_BASE, PNG_FILTER_NONE);
    png_set_compression_level(png, 4);
    png_write_info(png, info);
    for (int y = 0; y < rgba.height(); ++y)
        png_write_row(png, rgba.constScanLine(y));
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return true;
}

} // namespace

bool writePng(const QImage& image, QIODevice& device)
{
    if (image.isNull())
        return false;
    // Bytes R, G, B, A per pixel with straight alpha: the PNG layout.
    const QImage rgba = image.convertToFormat(QImage::Format_RGBA8888);
    return encode(rgba, &device);
}

} // namespace qm
