#pragma once

#include <QTimer>
#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QSlider;

namespace qm {

class Stepper;
class TextureView;
class sharedAppState;

/// The glyph metrics of a document window: glyph size, line height, space width, bounding
/// padding, the advance added to every glyph, offsets added after packing, a fixed advance, a
/// face name forced into the descriptors, kerning and automatic x/y offsets.
///
/// The glyph-size slider rebuilds the glyph set only once a drag pauses: each slider event
/// restarts a zero-delay timer, and the rebuild (reallyChangeGlyphSize) runs when it fires.
class FontMetricsPanel : public QWidget
{
    Q_OBJECT
public:
    FontMetricsPanel(sharedAppState& state, TextureView& view, QWidget* parent = nullptr);

    /// Shows the settings again (after a project was opened into the window).
    void reloadFromSettings();
    /// Shows the project's line height and space width (a font choice resets both).
    void showLineMetrics();

    /// While the window opens a project: the next glyph-size rebuild belongs to the opening,
    /// not to the user, so it leaves the project unchanged and clears this flag.
    bool justLoading() const { return m_justLoading; }
    void setJustLoading(bool loading) { m_justLoading = loading; }

    // Handlers, one per control.
    /// Shows the slider's value and schedules one rebuild, replacing one still pending.
    void glyphSizeChanged();
    /// Applies the glyph size: every glyph re-measured, rendered and packed, the line height and
    /// space width set to the new defaults.
    void reallyChangeGlyphSize();
    void lineHeightChanged();
    void spaceWidthChanged();
    void boundingPaddingChanged();
    void xadvancedSliderChanged();
    void postXOffsetChanged();
    void postYOffsetChanged();
    void postXOffsetStepper();
    void postYOffsetStepper();
    void fixedadvancecheckboxclicked();
    void fixedadvancestepperclicked();
    void fixedadvancetextchanged();
    void forcefontfaceChanged();
    void kerningsClicked();
    void autoxyChanged();

    /// Whether a rebuild is scheduled and not yet done.
    bool glyphSizeChangePending() const { return m_glyphSizeTimer.isActive(); }

    QSlider* glyphSize() const { return m_glyphSize; }
    QLabel* glyphSizeText() const { return m_glyphSizeText; }
    QLineEdit* lineHeight() const { return m_lineHeight; }
    QLineEdit* spaceWidth() const { return m_spaceWidth; }
    QLineEdit* boundingPadding() const { return m_boundingPadding; }
    QSlider* xadvancedSlider() const { return m_xadvancedSlider; }
    QLabel* xadvancedLabel() const { return m_xadvancedLabel; }
    QLineEdit* postXOffset() const { return m_postXOffset; }
    QLineEdit* postYOffset() const { return m_postYOffset; }
    Stepper* postXOffsetStepperControl() const { return m_postXOffsetStepper; }
    Stepper* postYOffsetStepperControl() const { return m_postYOffsetStepper; }
    QCheckBox* fixedadvancecheckbox() const { return m_fixedadvancecheckbox; }
    QLineEdit* fixedxadvance() const { return m_fixedxadvance; }
    Stepper* fixedxadvancestepper() const { return m_fixedxadvancestepper; }
    QLineEdit* forcefontface() const { return m_forcefontface; }
    QCheckBox* kernings() const { return m_kernings; }
    QCheckBox* autoxy() const { return m_autoxy; }

signals:
    /// The text preview has to be laid out again.
    void previewNeedsUpdate();
    /// The glyph set was rebuilt at a new glyph size.
    void glyphSizeApplied(int size);

private:
    /// The fixed advance value only while the fixed advance is on.
    void updateEnabling();
    void postOffsetChanged();

    sharedAppState& m_state;
    TextureView& m_view;
    QTimer m_glyphSizeTimer;
    bool m_justLoading = false;
    QSlider* m_glyphSize;
    QLabel* m_glyphSizeText;
    QLineEdit* m_lineHeight;
    QLineEdit* m_spaceWidth;
    QLineEdit* m_boundingPadding;
    QSlider* m_xadvancedSlider;
    QLabel* m_xadvancedLabel;
    QLineEdit* m_postXOffset;
    QLineEdit* m_postYOffset;
    Stepper* m_postXOffsetStepper;
    Stepper* m_postYOffsetStepper;
    QCheckBox* m_fixedadvancecheckbox;
    QLineEdit* m_fixedxadvance;
    Stepper* m_fixedxadvancestepper;
    QLabel* m_fixedadvanceUnit;
    QLineEdit* m_forcefontface;
    QCheckBox* m_kernings;
    QCheckBox* m_autoxy;
};

} // namespace qm
