#include "Classes/publish/PublishRun.h"

#include "Classes/atlas/TextureView.h"
#include "Classes/model/Format.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/publish/ScaleText.h"
#include "Platform/files/SaveFile.h"
#include "Platform/layers/Transaction.h"

#include <QDir>
#include <QFileInfo>
#include <QImage>

#include <cmath>

namespace qm {

namespace {

const char* descriptorPattern(int format)
{
    switch (format) {
    case 4:
        return "%@/%@%@.txt";
    case 7:
        return "%@/%@%@.xml";
    case 8:
        return "%@/%@%@.lua";
    default:
        return "%@/%@%@.fnt";
    }
}

} // namespace

PublishRun::PublishRun(sharedAppState& state, TextureView& view, TextureController* controller)
    : m_state(state), m_view(view), m_controller(controller)
{
}

void PublishRun::setControlValues(float lineHeight, float spaceWidth)
{
    m_controls = std::make_pair(lineHeight, spaceWidth);
}

QList<PublishTarget> PublishRun::targets() const
{
    QList<PublishTarget> list;
    const PublishTargets& stored = m_state.targetsPublish();
    for (auto it = stored.cbegin(); it != stored.cend(); ++it)
        if (m_names.isEmpty() || m_names.contains(it.key()))
            list.append(it.value());
    return list;
}

PublishRun::Check PublishRun::validate(const QList<PublishTarget>& targets)
{
    bool pathsFailed = false;
    bool suffixFailed = false;
    for (const PublishTarget& t : targets) {
        // A texture needs a directory, a descriptor a file name; neither needs the other.
        if (t.texture && t.path.isEmpty())
            pathsFailed = true;
        if (t.coords && t.file.isEmpty())
            pathsFailed = true;
        if (!t.texture && !t.coords)
            continue; // writes nothing, so its suffix does not matter
        if (t.suffix == PublishTarget::unsetSuffix)
            suffixFailed = true;
    }
    return pathsFailed ? Check::Paths : suffixFailed ? Check::Suffix : Check::Passed;
}

bool PublishRun::checkTargets(const QList<PublishTarget>& targets)
{
    const Check check = validate(targets);
    if (check == Check::Passed)
        return true;
    const QString informative =
        check == Check::Paths
            ? QStringLiteral("Please check all the targets and fill the Directory Path & File Name")
            : QStringLiteral(
                  "Please check all the targets and set the suffixes (ex: 'empty', -ipad, -ipadhd, -hd, "
                  "@4x, @2x ...)");
    if (m_controller)
        m_controller->runAlert(QStringLiteral("Publish settings"), informative, {QStringLiteral("Ok")});
    log(QStringLiteral("\n[error] Incomplete targets settings."));
    return false;
}

QString PublishRun::directoryOf(const PublishTarget& target) const
{
    if (target.path.isEmpty() || !QDir::isRelativePath(target.path))
        return target.path;
    const QUrl project = m_state.projectName();
    const QDir base =
        project.isLocalFile() ? QFileInfo(project.toLocalFile()).absoluteDir() : QDir::current();
    return QDir::cleanPath(base.absoluteFilePath(target.path));
}

PublishFiles PublishRun::filesOf(const PublishTarget& t) const
{
    PublishFiles files;
    files.directory = directoryOf(t);
    files.texture = t.format == 7 ? format("%@/%@.atlas", {files.directory, t.file})
                                  : format("%@/%@%@.png", {files.directory, t.file, t.suffix});
    files.textureName = format("%@%@.png", {t.file, t.suffix});
    files.descriptor = format(descriptorPattern(t.format), {files.directory, t.file, t.suffix});
    return files;
}

void PublishRun::log(const QString& text)
{
    if (m_controller)
        m_controller->appendPublishLog(text);
}

void PublishRun::logResult(bool ok, PublishResult& result)
{
    log(ok ? QStringLiteral("[Ok]") : QStringLiteral("[Failed]"));
    ++(ok ? result.filesOk : result.filesFailed);
}

PublishResult PublishRun::buttonPublish()
{
    PublishResult result;
    const QList<PublishTarget> list = targets();
    if (!checkTargets(list))
        return result;
    result.validated = true;

    const auto [lineHeight, spaceWidth] =
        m_controls.value_or(std::make_pair(float(m_state.lineHeight()), float(m_state.spaceWidth())));
    m_lineHeightControl = lineHeight;
    m_spaceWidthControl = spaceWidth;
    // Publishing writes files, it does not edit the project: whatever the setters used on the
    // way mark, the project is as changed afterwards as it was before.
    const bool wasChanged = m_state.configchanged();

    {
        // Glyphs jump to their places while a target re-renders and repacks; nothing animates.
        TransactionScope transaction;
        Transaction::setDisableActions(true);
        const int total = int(list.size());
        if (m_progress)
            m_progress(0, total);
        for (int i = 0; i < total; ++i) {
            publishTarget(list.at(i), result);
            if (m_progress)
                m_progress(i + 1, total);
        }
        log(QStringLiteral("\n"));
    }

    m_state.setConfigchanged(wasChanged);
    result.autoClose = m_state.publishautoclose();
    return result;
}

PublishRun::Remembered PublishRun::remember() const
{
    const sharedAppState& s = m_state;
    return {s.glyphSize(),        s.paddingSize(), s.xadvancedOffset(), s.fixedadvancevalue(),
            s.boundingPadding(),  s.strokeSize(),  s.shadowXOffset(),   s.shadowYOffset(),
            s.shadowBlurRadius(), s.postXOffset(), s.postYOffset()};
}

void PublishRun::scaleSettings(const Remembered& from, double r)
{
    // Sizes are floored; the post offsets are truncated toward zero instead, so a negative
    // offset shrinks toward 0 (-3 at half size is -1) just as a positive one does.
    const auto floored = [r](int value) { return int(std::floor(value * r)); };
    m_state.setBlockredrawandpack(true);
    m_state.setGlyphSize(floored(from.glyphSize));
    m_state.setPaddingSize(floored(from.paddingSize));
    m_state.setXadvancedOffset(floored(from.xadvancedOffset));
    m_state.setFixedadvancevalue(floored(from.fixedadvancevalue));
    m_state.setNewBoundingPadding(floored(from.boundingPadding));
    m_state.setStrokeSize(float(from.strokeSize * r));
    m_state.setShadowXOffset(float(from.shadowXOffset * r));
    m_state.setShadowYOffset(float(from.shadowYOffset * r));
    m_state.setShadowBlurRadius(float(from.shadowBlurRadius * r));
    m_state.setPostXOffset(int(from.postXOffset * r));
    m_state.setPostYOffset(int(from.postYOffset * r));
    m_state.scaleCustomImage(float(r));
    rebuildGlyphs();
}

void PublishRun::restoreSettings(const Remembered& from)
{
    m_state.setBlockredrawandpack(true);
    m_state.setGlyphSize(from.glyphSize);
    m_state.setPaddingSize(from.paddingSize);
    m_state.setXadvancedOffset(from.xadvancedOffset);
    m_state.setFixedadvancevalue(from.fixedadvancevalue);
    m_state.setNewBoundingPadding(from.boundingPadding);
    m_state.setStrokeSize(from.strokeSize);
    m_state.setShadowXOffset(from.shadowXOffset);
    m_state.setShadowYOffset(from.shadowYOffset);
    m_state.setShadowBlurRadius(from.shadowBlurRadius);
    m_state.setPostXOffset(from.postXOffset);
    m_state.setPostYOffset(from.postYOffset);
    m_state.restoreOriScaleImage();
    rebuildGlyphs();
}

void PublishRun::rebuildGlyphs()
{
    const sharedAppState& s = m_state;
    m_view.glyphStroke(s.stroke(), s.strokeSize(), s.strokeColor(), s.strokehowmode());
    m_view.glyphShadow(s.shadow(), s.shadowXOffset(), s.shadowYOffset(), s.shadowBlurRadius(),
                       s.shadowhowmode());
    m_state.setBlockredrawandpack(false);
    m_view.redrawAllGlyphs();
    m_view.Packing(s.paddingSize(), s.paddingMethod(), s.packingReversed(), s.grid());
    m_view.updatePreview(s.previewTextString());
}

void PublishRun::publishTarget(const PublishTarget& t, PublishResult& result)
{
    const PublishFiles files = filesOf(t);
    const Remembered saved = remember();
    const float scale = floatValue(t.scale);
    // A scale that is no number counts as different from 100 (NaN compares unequal).
    const bool scaling = t.redraw && (t.texture || t.coords) && !(scale == 100.0f);
    if (scaling)
        scaleSettings(saved, double(scale) / 100.0);

    // A redrawn target's glyphs already have its size: the canvas then works at 100 %.
    const float outputScale = t.redraw ? 100.0f : scale;

    if (t.texture) {
        QDir().mkpath(files.directory);
        log(format("\nProcessing texture: %@ ", {files.texture}));
        bool ok = false;
        if (t.format == 7) {
            ok = m_view.getMultipleTexture(outputScale, t.quality, files.texture, t.suffix, outputScale);
        } else {
            ok = savePngFile(m_view.getTexture(outputScale, t.quality, outputScale), files.texture);
        }
        logResult(ok, result);
    }

    float lineHeight = m_lineHeightControl;
    if (lineHeight < 0) {
        // The line-height field's handler applies what the field shows; read it again after.
        m_state.setLineHeight(int(lineHeight));
        lineHeight = m_lineHeightControl;
    }
    const float spaceWidth = m_spaceWidthControl;

    if (t.coords) {
        QDir().mkpath(files.directory);
        log(format("\nProcessing coordinates: %@", {files.descriptor}));
        const QString face = t.fontface.isEmpty() ? m_state.fontName() : t.fontface;
        if (t.redraw) {
            m_state.setLineHeight(int(scale / 100.0f * lineHeight));
            m_state.setSpaceWidth(int(scale / 100.0f * spaceWidth));
        }
        const QString text = m_view.getFontplist(outputScale, files.textureName, t.format, face, outputScale);
        logResult(saveFile(files.descriptor, text.toUtf8(), InPlace::WhenNoTemporaryFile), result);
    }

    m_state.setLineHeight(int(lineHeight));
    m_state.setSpaceWidth(int(spaceWidth));

    if (scaling)
        restoreSettings(saved);
}

} // namespace qm
