#pragma once

#include "Classes/model/PublishTarget.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <functional>
#include <optional>

class QImage;

namespace qm {

class TextureController;
class TextureView;
class sharedAppState;

/// What one publish run did.
struct PublishResult
{
    bool validated = false; ///< false: the target check refused the run and nothing was written
    int filesOk = 0;
    int filesFailed = 0;
    bool autoClose = false; ///< the project asks for the publish sheet to close by itself
    bool succeeded() const { return validated && filesFailed == 0; }
};

/// The files one target writes.
struct PublishFiles
{
    QString directory;   ///< the target's "path", relative paths resolved (see directoryOf)
    QString texture;     ///< "%@/%@%@.png", or the "%@/%@.atlas" directory for format 7
    QString textureName; ///< "%@%@.png": the texture as the descriptor names it
    QString descriptor;  ///< "%@/%@%@" + ".txt", ".xml", ".lua" or ".fnt" by format
};

/// The publish run: checks every target, then writes each target's texture and descriptor,
/// re-rendering the glyph set at the target's scale where the target asks for it and restoring
/// the project afterwards. The desktop sheet's publish button and the command line both run
/// publishing through this class. Messages go to the controller (alerts, the publish log);
/// progress goes to an optional callback.
class PublishRun
{
public:
    /// Which check failed; the paths check wins over the suffix check.
    enum class Check { Passed, Paths, Suffix };

    PublishRun(sharedAppState& state, TextureView& view, TextureController* controller);

    /// Called with (targets done, targets in the run) before the first target and after each.
    void setProgressHandler(std::function<void(int done, int total)> handler)
    {
        m_progress = std::move(handler);
    }
    /// The values shown by the line-height and space-width fields, which the run writes back
    /// after each target. Without this call the project's values at the start of the run serve.
    void setControlValues(float lineHeight, float spaceWidth);
    /// Publishes only the stored targets of these names (all stored targets when empty).
    void setTargetNames(const QStringList& names) { m_names = names; }

    /// Checks the targets and, when they pass, runs them all; the publish button's action.
    PublishResult buttonPublish();

    /// The target check alone, without telling anybody.
    static Check validate(const QList<PublishTarget>& targets);
    /// The records the run works on, in the order of the stored map.
    QList<PublishTarget> targets() const;

    /// The target's directory: a relative "path" is taken relative to the folder of the project
    /// file, so a project and its output can move together; without a project file, relative to
    /// the working directory. An empty path stays empty.
    QString directoryOf(const PublishTarget& target) const;
    /// The file names of a target, by the formats the descriptors and sheets have always used.
    PublishFiles filesOf(const PublishTarget& target) const;


private:
    /// The redraw-affected settings of the project, as they were before a target scaled them.
    struct Remembered
    {
        int glyphSize, paddingSize, xadvancedOffset, fixedadvancevalue, boundingPadding;
        float strokeSize, shadowXOffset, shadowYOffset, shadowBlurRadius;
        int postXOffset, postYOffset;
    };

    bool checkTargets(const QList<PublishTarget>& targets);
    void publishTarget(const PublishTarget& target, PublishResult& result);
    void scaleSettings(const Remembered& from, double r);
    void restoreSettings(const Remembered& from);
    /// Pushes stroke and shadow to every glyph, then redraws, packs and refreshes the preview.
    void rebuildGlyphs();
    Remembered remember() const;
    void log(const QString& text);
    void logResult(bool ok, PublishResult& result);

    sharedAppState& m_state;
    TextureView& m_view;
    TextureController* m_controller;
    std::function<void(int, int)> m_progress;
    QStringList m_names;
    std::optional<std::pair<float, float>> m_controls;
    float m_lineHeightControl = 0;
    float m_spaceWidthControl = 0;
};

} // namespace qm
