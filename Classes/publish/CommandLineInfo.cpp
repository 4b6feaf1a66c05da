// The info command's report of an open project.

#include "Classes/publish/CommandLine.h"

#include "Classes/model/ProjectDocument.h"
#include "Classes/publish/PublishRun.h"
#include "Platform/text/FontManager.h"

#include <QTextStream>

namespace qm {

namespace {

QString hex(const Color& color)
{
    const Color c = color.toCalibratedRGB();
    const auto byte = [](double v) {
        return QStringLiteral("%1").arg(qRound(v * 255), 2, 16, QLatin1Char('0'));
    };
    QString text =
        QLatin1Char('#') + byte(c.redComponent()) + byte(c.greenComponent()) + byte(c.blueComponent());
    if (c.alphaComponent() < 1.0)
        text += byte(c.alphaComponent());
    return text.toUpper();
}

QString stops(const Gradient& gradient)
{
    QStringList parts;
    for (const GradientStop& stop : gradient.stops())
        parts.append(hex(stop.color) + QLatin1Char('@') + QString::number(stop.location));
    return parts.join(QLatin1Char(','));
}

QString fillText(const sharedAppState& s)
{
    switch (s.fillGMode()) {
    case 0:
        return QStringLiteral("none");
    case 1:
        return QStringLiteral("colour %1%2")
            .arg(hex(s.glyphColor()), s.glossy() ? QStringLiteral(", gloss") : QString());
    case 2:
        return QStringLiteral("texture %1").arg(s.textureName());
    case 3:
        return QStringLiteral("linear gradient at %1 degrees, %2")
            .arg(s.gradiantAngle())
            .arg(stops(s.colorGradient()));
    case 4:
        return QStringLiteral("radial gradient, centre offset %1,%2, %3")
            .arg(s.gradialX())
            .arg(s.gradialY())
            .arg(stops(s.colorGradient()));
    default:
        return QStringLiteral("mode %1").arg(s.fillGMode());
    }
}

QString outlineText(const sharedAppState& s)
{
    if (!s.stroke())
        return QStringLiteral("none");
    static const char* const modes[] = {"centred", "inside", "outside"};
    const QString mode = s.strokehowmode() >= 0 && s.strokehowmode() < 3
                             ? QString::fromLatin1(modes[s.strokehowmode()])
                             : QString::number(s.strokehowmode());
    const QString paint = s.strokeMode() == 0 ? hex(s.strokeColor())
                                              : QStringLiteral("gradient at %1 degrees, %2")
                                                    .arg(s.strokegradiantAngle())
                                                    .arg(stops(s.strokeGradient()));
    return QStringLiteral("%1 px %2, %3, miter limit %4")
        .arg(s.strokeSize())
        .arg(paint, mode)
        .arg(s.miterlimit());
}

QString shadowText(const sharedAppState& s)
{
    if (!s.shadow())
        return QStringLiteral("none");
    return QStringLiteral("%1 shadow, offset %2,%3, blur %4, %5")
        .arg(s.shadowhowmode() == 1 ? QStringLiteral("inner") : QStringLiteral("drop"))
        .arg(s.shadowXOffset())
        .arg(s.shadowYOffset())
        .arg(s.shadowBlurRadius())
        .arg(hex(s.shadowColor()));
}

} // namespace

void CommandLine::printInfo(ProjectDocument& document)
{
    const sharedAppState& s = document.state();
    const QList<FontMember> members = FontManager::availableMembersOfFontFamily(s.fontName());
    const QString face = s.trait() >= 0 && s.trait() < members.size()
                             ? members[s.trait()].styleName
                             : QStringLiteral("face %1").arg(s.trait());
    static const char* const orders[] = {"none", "width", "height", "area", "side", "char"};
    const QString order = s.paddingMethod() >= 0 && s.paddingMethod() < 6
                              ? QString::fromLatin1(orders[s.paddingMethod()])
                              : QString::number(s.paddingMethod());
    QTextStream& o = m_out;
    o << "project     " << s.projectName().toLocalFile() << '\n';
    o << "font        " << s.fontName() << ", " << face << ", " << s.glyphSize() << " px"
      << (s.loadedFontName() ? QStringLiteral(" (from %1)").arg(s.loadedFontPath()) : QString())
      << (s.antialias() ? "" : ", no anti-aliasing") << '\n';
    o << "characters  " << document.glyphCount() << " glyphs, " << document.placedGlyphCount()
      << " placed on a " << s.width() << " x " << s.height() << " texture"
      << (s.autoSize() ? " (automatic size)" : "") << '\n';
    o << "fill        " << fillText(s) << '\n';
    o << "outline     " << outlineText(s) << '\n';
    o << "shadow      " << shadowText(s) << '\n';
    o << "metrics     line height " << s.lineHeight() << ", space width " << s.spaceWidth()
      << ", glyph padding " << s.boundingPadding() << ", x advance " << s.xadvancedOffset()
      << ", post offset " << s.postXOffset() << ',' << s.postYOffset();
    if (s.fixedadvance())
        o << ", fixed advance " << s.fixedadvancevalue();
    o << ", kerning " << (s.kernings() ? QStringLiteral("on (%1 pairs)").arg(s.kerningTable().size()) : "off")
      << '\n';
    o << "packing     " << (s.grid() ? "grid" : "tree") << ", padding " << s.paddingSize() << ", order "
      << order << (s.packingReversed() ? ", largest first" : ", smallest first")
      << (s.power2() ? ", powers of two" : "") << '\n';
    const SettingsExtensions& e = s.extensions();
    o << "modes       metrics " << metricsModeName(e.metrics) << ", kerning from " << kerningSourceName(e.kerning)
      << ", unicode " << unicodeModeName(e.unicode) << ", fill span " << fillSpanName(e.fillSpan)
      << ", hinting " << hintingName(e.hinting) << ", pages " << e.pages << ", distance field "
      << (e.distanceField > 0 ? QStringLiteral("spread %1").arg(e.distanceField) : QStringLiteral("off"))
      << ", fallback "
      << (e.fallbackFamilies.isEmpty() ? QStringLiteral("none") : e.fallbackFamilies.join(QStringLiteral(", ")))
      << '\n';
    const PublishTargets& targets = s.targetsPublish();
    o << "targets     " << targets.size() << '\n';
    PublishRun run(document.state(), document.view(), nullptr);
    for (const PublishTarget& t : targets) {
        const PublishFiles files = run.filesOf(t);
        QStringList writes;
        if (t.texture)
            writes.append(files.texture);
        if (t.coords)
            writes.append(files.descriptor);
        o << "  " << t.mainname << ": scale " << t.scale << (t.redraw ? " redrawn" : "") << ", format "
          << t.format << ", suffix \"" << t.suffix << "\" -> "
          << (writes.isEmpty() ? QStringLiteral("nothing") : writes.join(QStringLiteral(", "))) << '\n';
    }
}

} // namespace qm
