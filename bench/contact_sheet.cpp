// Renders a few glyphs with each effect combination into one PNG, one labelled row per
// combination, each bitmap framed by a hairline just outside its bounds so that ink touching an
// edge is easy to see.
//
//   contact_sheet [output.png] [zoom] [first row] [row count] [glyphs]

#include "Classes/render/CGGlyphBitmap.h"

#include <QDir>
#include <QGuiApplication>
#include <QPainter>

#include <functional>
#include <vector>

using namespace qm;

namespace {

struct Row
{
    QString label;
    std::function<void(CGGlyphBitmap&)> style;
};

QString makeTexture()
{
    QImage texture(64, 64, QImage::Format_RGBA8888);
    for (int y = 0; y < 64; ++y)
        for (int x = 0; x < 64; ++x)
            texture.setPixelColor(x, y, QColor::fromHsvF(float(x) / 64, 0.8f, (y / 8) % 2 ? 1.0f : 0.6f));
    const QString path = QDir::temp().filePath(QStringLiteral("contact_sheet_texture.png"));
    texture.save(path);
    return path;
}

} // namespace

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    const QString output = argc > 1 ? QString::fromLocal8Bit(argv[1]) : QStringLiteral("contact_sheet.png");
    const int zoom = argc > 2 ? std::max(1, atoi(argv[2])) : 1;
    const int firstRow = argc > 3 ? std::max(0, atoi(argv[3])) : 0;
    const int rowCount = argc > 4 ? std::max(1, atoi(argv[4])) : 1000;
    const QString texture = makeTexture();

    const Color blue = Color::calibratedRGB(0.15, 0.35, 0.85);
    const Color red = Color::calibratedRGB(0.85, 0.1, 0.1);
    const Color black = Color::black();
    const Gradient fire = Gradient::twoColor(Color::orange(), Color::yellow());
    const Gradient rainbow({{Color::red(), 0}, {Color::yellow(), 0.5}, {Color::calibratedRGB(0, 0.6, 1), 1}});
    auto fill = [](CGGlyphBitmap& g, int mode, Color c) {
        g.setFillGMode(mode);
        g.setGlyphColor(c);
    };
    auto outline = [](CGGlyphBitmap& g, int how, float size, Color c) {
        g.setStroke(true);
        g.setStrokehowmode(how);
        g.setStrokesize(size);
        g.setStrokeColor(c);
    };
    auto shadow = [](CGGlyphBitmap& g, int how, float x, float y, float blur) {
        g.setShadow(true);
        g.setShadowhowmode(how);
        g.setShadowxoffset(x);
        g.setShadowyoffset(y);
        g.setShadowblurradius(blur);
        g.setShadowColor(Color::black());
    };

    std::vector<Row> rows = {
        {"colour fill", [&](CGGlyphBitmap& g) { fill(g, 1, blue); }},
        {"colour fill, no AA", [&](CGGlyphBitmap& g) { fill(g, 1, blue), g.setAntialias(false); }},
        {"gloss blue", [&](CGGlyphBitmap& g) { fill(g, 1, blue), g.setGlossy(true); }},
        {"gloss red", [&](CGGlyphBitmap& g) { fill(g, 1, red), g.setGlossy(true); }},
        {"gloss grey", [&](CGGlyphBitmap& g) { fill(g, 1, Color::gray()), g.setGlossy(true); }},
        {"texture", [&](CGGlyphBitmap& g) { fill(g, 2, blue), g.setTxtName(texture); }},
        {"linear 0",
         [&](CGGlyphBitmap& g) { fill(g, 3, blue), g.setColorGradient(rainbow), g.setGradiantAngle(0); }},
        {"linear 90",
         [&](CGGlyphBitmap& g) { fill(g, 3, blue), g.setColorGradient(rainbow), g.setGradiantAngle(90); }},
        {"linear 30",
         [&](CGGlyphBitmap& g) { fill(g, 3, blue), g.setColorGradient(rainbow), g.setGradiantAngle(30); }},
        {"radial centre", [&](CGGlyphBitmap& g) { fill(g, 4, blue), g.setColorGradient(rainbow); }},
        {"radial (0.7,0.7)",
         [&](CGGlyphBitmap& g) {
             fill(g, 4, blue), g.setColorGradient(rainbow), g.setGradialX(0.7f), g.setGradialY(0.7f);
         }},
        {"outline centred 3",
         [&](CGGlyphBitmap& g) { fill(g, 1, Color::yellow()), outline(g, 0, 3, black); }},
        {"outline inside 3", [&](CGGlyphBitmap& g) { fill(g, 1, Color::yellow()), outline(g, 1, 3, black); }},
        {"outline outside 3",
         [&](CGGlyphBitmap& g) { fill(g, 1, Color::yellow()), outline(g, 2, 3, black); }},
        {"outline only centred", [&](CGGlyphBitmap& g) { fill(g, 0, blue), outline(g, 0, 2, red); }},
        {"outline only outside", [&](CGGlyphBitmap& g) { fill(g, 0, blue), outline(g, 2, 3, red); }},
        {"grad outline centred 4",
         [&](CGGlyphBitmap& g) {
             fill(g, 1, black), outline(g, 0, 4, red), g.setStrokeMode(1), g.setStrokeGradient(rainbow);
         }},
        {"grad outline inside 4",
         [&](CGGlyphBitmap& g) {
             fill(g, 1, black), outline(g, 1, 4, red), g.setStrokeMode(1), g.setStrokeGradient(rainbow);
         }},
        {"grad outline outside 4",
         [&](CGGlyphBitmap& g) {
             fill(g, 1, black), outline(g, 2, 4, red), g.setStrokeMode(1), g.setStrokeGradient(rainbow),
                 g.setStrokegradiantAngle(90);
         }},
        {"drop shadow (2,-2) b2",
         [&](CGGlyphBitmap& g) { fill(g, 1, blue), g.setStroke(false), shadow(g, 0, 2, -2, 2); }},
        {"drop shadow (-5,5) b6",
         [&](CGGlyphBitmap& g) { fill(g, 1, blue), g.setStroke(false), shadow(g, 0, -5, 5, 6); }},
        {"drop shadow (6,6) b0",
         [&](CGGlyphBitmap& g) { fill(g, 1, blue), g.setStroke(false), shadow(g, 0, 6, 6, 0); }},
        {"shadow + outline only",
         [&](CGGlyphBitmap& g) { fill(g, 0, blue), outline(g, 0, 2, red), shadow(g, 0, 3, -3, 2); }},
        {"inner shadow (2,-2) b2",
         [&](CGGlyphBitmap& g) { fill(g, 1, Color::yellow()), g.setStroke(false), shadow(g, 1, 2, -2, 2); }},
        {"bench b: lin+2c+drop b3",
         [&](CGGlyphBitmap& g) {
             fill(g, 3, blue), g.setColorGradient(fire), outline(g, 0, 2, black), shadow(g, 0, 2, -2, 3);
         }},
        {"bench c: gloss+3o grad+inner",
         [&](CGGlyphBitmap& g) {
             fill(g, 1, blue), g.setGlossy(true), outline(g, 2, 3, red), g.setStrokeMode(1),
                 g.setStrokeGradient(fire);
             shadow(g, 1, 2, -2, 2);
         }},
        {"big: out 8 + shadow (-8,-8) b8",
         [&](CGGlyphBitmap& g) {
             fill(g, 1, Color::yellow()), outline(g, 2, 8, red), shadow(g, 0, -8, -8, 8);
         }},
        {"big: centred 9 + shadow (7,7) b5",
         [&](CGGlyphBitmap& g) {
             fill(g, 3, blue), g.setColorGradient(rainbow), outline(g, 0, 9, black), shadow(g, 0, 7, 7, 5);
         }},
        {"grid cell, padding 3",
         [&](CGGlyphBitmap& g) {
             fill(g, 1, blue), outline(g, 0, 2, black), g.setOngrid(true), g.setBoundingPadding(3);
         }},
    };
    rows.erase(rows.begin(), rows.begin() + std::min<size_t>(firstRow, rows.size()));
    if (rows.size() > size_t(rowCount))
        rows.resize(rowCount);
    const QString glyphs = argc > 5 ? QString::fromUtf8(argv[5]) : QStringLiteral("AgQ&j@");

    // Render everything first to size the sheet.
    std::vector<std::vector<QImage>> images;
    int cellW = 0, rowH = 0;
    for (const Row& row : rows) {
        std::vector<QImage> line;
        for (QChar c : glyphs) {
            CGGlyphBitmap g(c.unicode());
            g.setFntName(QStringLiteral("DejaVu Sans"));
            g.setGlyphsize(50);
            g.setStroke(false);
            row.style(g);
            if (!g.setNewSize())
                continue;
            g.getImage();
            line.push_back(g.glyphImage());
            cellW = std::max(cellW, g.glyphImage().width());
            rowH = std::max(rowH, g.glyphImage().height());
        }
        images.push_back(line);
    }
    const int labelW = 230, gap = 10;
    cellW += gap;
    rowH += gap;
    QImage sheet(labelW + cellW * int(glyphs.size()), rowH * int(rows.size()),
                 QImage::Format_ARGB32_Premultiplied);
    sheet.fill(QColor(236, 236, 236));
    QPainter p(&sheet);
    p.setFont(QFont(QStringLiteral("DejaVu Sans"), 9));
    for (size_t r = 0; r < rows.size(); ++r) {
        const int top = int(r) * rowH;
        p.setPen(Qt::black);
        p.drawText(QRect(6, top, labelW - 12, rowH), Qt::AlignVCenter | Qt::AlignLeft, rows[r].label);
        for (size_t i = 0; i < images[r].size(); ++i) {
            const QImage& img = images[r][i];
            const QPoint at(labelW + int(i) * cellW, top + gap / 2);
            p.fillRect(QRect(at, img.size()), Qt::white);
            p.setPen(QColor(0, 160, 255));
            p.drawRect(QRect(at - QPoint(1, 1), img.size() + QSize(1, 1)));
            p.drawImage(at, img);
        }
    }
    p.end();
    if (zoom > 1)
        sheet = sheet.scaled(sheet.size() * zoom, Qt::IgnoreAspectRatio, Qt::FastTransformation);
    if (!sheet.save(output)) {
        fprintf(stderr, "cannot write %s\n", qPrintable(output));
        return 1;
    }
    printf("%s: %d rows\n", qPrintable(output), int(rows.size()));
    return 0;
}
