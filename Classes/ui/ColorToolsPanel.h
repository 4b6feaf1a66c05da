#pragma once

#include "Platform/graphics/Color.h"

#include <QWidget>

class QButtonGroup;
class QGridLayout;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace qm {

class AngleDial;
class ColorWell;
class ColorWellGroup;
class ImageWell;
class Stepper;
class TextureController;
class gradientEditor;
class sharedAppState;

/// The style of the glyphs: the fill (none, plain colour with gloss, picture texture, linear
/// gradient at an angle, radial gradient around a centre), the outline (size, position, plain
/// colour or gradient, miter limit), the shadow (offset, blur, drop or inner, colour) and the
/// preview's background colour. Effects apply to every glyph, or to the selected ones only.
///
/// The outline switch enables its controls and the shadow switch its own; a disabled control's
/// caption is greyed with it. The colour wells and the two gradient editors share the colour
/// dialog through the window's ColorWellGroup.
class ColorToolsPanel : public QWidget
{
    Q_OBJECT
public:
    /// `controller` answers the texture picture chooser; it may be null.
    ColorToolsPanel(sharedAppState& state, ColorWellGroup& wells, TextureController* controller,
                    QWidget* parent = nullptr);

    /// Shows the settings again (after a project was opened into the window).
    void reloadFromSettings();

    // Handlers, one per control.
    void workonselChanged();
    /// The fill matrix: row 1 to 4 is that fill mode, anything else (row 0) no fill.
    void colorOrGradientChanged();
    void checkGlossyChanged();
    void textureChanged();
    /// The fill angle control or the fill gradient editor.
    void startendangleGradiantChanged();
    /// The fill angle field: a value outside 0..360 becomes 0.
    void labelGradientChanged();
    void radialSettingsChanged();
    void radialStepper();
    void radialYStepper();
    void shadowSettingsChanged();
    void shadowXStepper();
    void shadowYStepper();
    void shadowRadiusStepper();
    void shadowColorChanged();
    void strokeSettingsChanged();
    void strokerStepper();
    void strokePlainOrGradientChanged();
    /// The outline angle control or the outline gradient editor.
    void strokeGradientColorChanged();
    void labelStrokeGradientAngleChanged();
    void miterlimitchanged();
    void miterlimitestepperclicked();
    void prevBgColorChanged();

    QCheckBox* workonselButton() const { return m_workonselButton; }
    QButtonGroup* colorOrGradient() const { return m_colorOrGradient; }
    QRadioButton* colorOrGradientRow(int row) const;
    ColorWell* fillGColor() const { return m_fillGColor; }
    QCheckBox* checkGlossy() const { return m_checkGlossy; }
    ImageWell* imageTexture() const { return m_imageTexture; }
    gradientEditor* colorGradientEditor() const { return m_colorGradientEditor; }
    AngleDial* grandiantAngle() const { return m_grandiantAngle; }
    QLineEdit* labelGradiantAngle() const { return m_labelGradiantAngle; }
    QLineEdit* gradialX() const { return m_gradialX; }
    QLineEdit* gradialY() const { return m_gradialY; }
    Stepper* radialStepperControl() const { return m_radialStepper; }
    Stepper* radialYStepperControl() const { return m_radialYStepper; }

    QCheckBox* checkStroke() const { return m_checkStroke; }
    QLineEdit* strokeSize() const { return m_strokeSize; }
    Stepper* strokeSizeStepper() const { return m_strokeSizeStepper; }
    QComboBox* strokehowmode() const { return m_strokehowmode; }
    ColorWell* strokeColor() const { return m_strokeColor; }
    QButtonGroup* strokePlainOrGradient() const { return m_strokePlainOrGradient; }
    gradientEditor* strokeGradientEditor() const { return m_strokeGradientEditor; }
    AngleDial* strokeGradientAngle() const { return m_strokeGradientAngle; }
    QLineEdit* labelStrokeGradientAngle() const { return m_labelStrokeGradientAngle; }
    QLineEdit* miterlimit() const { return m_miterlimit; }
    Stepper* miterlimitstepper() const { return m_miterlimitstepper; }
    QLabel* strokesizeText() const { return m_strokesizeText; }
    QLabel* strokemodeText() const { return m_strokemodeText; }
    QLabel* strokemiterText() const { return m_strokemiterText; }
    QLabel* strokedegreeText() const { return m_strokedegreeText; }

    QCheckBox* checkShadow() const { return m_checkShadow; }
    QLineEdit* shadowX() const { return m_shadowX; }
    QLineEdit* shadowY() const { return m_shadowY; }
    QLineEdit* shadowRadius() const { return m_shadowRadius; }
    Stepper* shadowXStepperControl() const { return m_shadowXStepper; }
    Stepper* shadowYStepperControl() const { return m_shadowYStepper; }
    Stepper* shadowRadiusStepperControl() const { return m_shadowRadiusStepper; }
    QComboBox* shadowhowmode() const { return m_shadowhowmode; }
    ColorWell* shadowColor() const { return m_shadowColor; }
    QLabel* shadowXText() const { return m_shadowXText; }
    QLabel* shadowYText() const { return m_shadowYText; }
    QLabel* shadowRadiusText() const { return m_shadowRadiusText; }
    QLabel* shadowModeText() const { return m_shadowModeText; }
    QLabel* shadowColorText() const { return m_shadowColorText; }

    ColorWell* previewBgColor() const { return m_previewBgColor; }

signals:
    /// The text preview has to be laid out again.
    void previewNeedsUpdate();
    /// The preview's background colour changed (the window repaints the preview background).
    void previewBackgroundColorChanged(const qm::Color& color);

private:
    void buildFill(QGridLayout* grid, int& row);
    void buildStroke(QGridLayout* grid, int& row);
    void buildShadow(QGridLayout* grid, int& row);
    /// The fill settings call without releasing the colour dialog (the fill well's own edits).
    void applyFillMode();
    /// The outline settings call without releasing the colour dialog (the outline well's edits).
    void applyStrokeSettings();
    void updateStrokeEnabling();
    void updateShadowEnabling();

    sharedAppState& m_state;
    ColorWellGroup& m_wells;
    TextureController* m_controller;

    QCheckBox* m_workonselButton = nullptr;
    QButtonGroup* m_colorOrGradient = nullptr;
    ColorWell* m_fillGColor = nullptr;
    QCheckBox* m_checkGlossy = nullptr;
    ImageWell* m_imageTexture = nullptr;
    gradientEditor* m_colorGradientEditor = nullptr;
    AngleDial* m_grandiantAngle = nullptr;
    QLineEdit* m_labelGradiantAngle = nullptr;
    QLineEdit* m_gradialX = nullptr;
    QLineEdit* m_gradialY = nullptr;
    Stepper* m_radialStepper = nullptr;
    Stepper* m_radialYStepper = nullptr;

    QCheckBox* m_checkStroke = nullptr;
    QLineEdit* m_strokeSize = nullptr;
    Stepper* m_strokeSizeStepper = nullptr;
    QComboBox* m_strokehowmode = nullptr;
    ColorWell* m_strokeColor = nullptr;
    QButtonGroup* m_strokePlainOrGradient = nullptr;
    gradientEditor* m_strokeGradientEditor = nullptr;
    AngleDial* m_strokeGradientAngle = nullptr;
    QLineEdit* m_labelStrokeGradientAngle = nullptr;
    QLineEdit* m_miterlimit = nullptr;
    Stepper* m_miterlimitstepper = nullptr;
    QLabel* m_strokesizeText = nullptr;
    QLabel* m_strokeUnitText = nullptr;
    QLabel* m_strokemodeText = nullptr;
    QLabel* m_strokemiterText = nullptr;
    QLabel* m_strokedegreeText = nullptr;
    QLabel* m_strokeColorText = nullptr;
    QLabel* m_strokeGradientText = nullptr;
    QLabel* m_strokeDegreeUnit = nullptr;

    QCheckBox* m_checkShadow = nullptr;
    QLineEdit* m_shadowX = nullptr;
    QLineEdit* m_shadowY = nullptr;
    QLineEdit* m_shadowRadius = nullptr;
    Stepper* m_shadowXStepper = nullptr;
    Stepper* m_shadowYStepper = nullptr;
    Stepper* m_shadowRadiusStepper = nullptr;
    QComboBox* m_shadowhowmode = nullptr;
    ColorWell* m_shadowColor = nullptr;
    QLabel* m_shadowXText = nullptr;
    QLabel* m_shadowYText = nullptr;
    QLabel* m_shadowRadiusText = nullptr;
    QLabel* m_shadowModeText = nullptr;
    QLabel* m_shadowColorText = nullptr;

    ColorWell* m_previewBgColor = nullptr;
};

} // namespace qm
