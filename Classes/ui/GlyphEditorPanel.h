#pragma once

#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace qm {

class CAGlyphLayer;
class Stepper;
class sharedAppState;

/// Edits one glyph at a time: its extra x offset, y offset and x advance (whole pixels added
/// when the descriptor is written) and whether its custom picture is used and fitted. A right
/// click on a glyph opens it (the window forwards TextureController::showGlyphDetails).
///
/// The edited glyph is known only by the first character of the geCharInfo text; every edit
/// goes through the settings' updateGlyph / updateGlyphImage, then glyphEdited() asks the window
/// to refresh its text preview.
class GlyphEditorPanel : public QWidget
{
    Q_OBJECT
public:
    explicit GlyphEditorPanel(QWidget* parent = nullptr);
    ~GlyphEditorPanel() override;

    /// The project settings the edits go through (not owned); may be null.
    sharedAppState* state() const { return m_state; }
    void setState(sharedAppState* state) { m_state = state; }

    /// Loads a glyph into the panel and activates it; null deactivates the panel.
    void showGlyphDetails(CAGlyphLayer* layer);
    /// Enables the fields, steppers and boxes and shows the captions in the normal colour.
    void activateGlyphEditor();
    /// "(Right click on a glyph)", sizes cleared, every control disabled and greyed.
    void deactivateGlyphEditor();

    /// A field was edited: reads the three fields as integers (text that is not a number reads
    /// 0), writes them back normalised, sets the steppers and updates the glyph.
    void geOffsetChanged();
    /// A stepper was clicked: the fields take the steppers' values; the glyph is updated.
    void geOffsetStepperClicked();
    /// Off also disables the custom-picture box itself: it comes back only when a picture is
    /// dropped on the glyph and the glyph is loaded again.
    void geCustomImageClicked();
    void geFitImageClicked();

    /// Sends the three fields for the edited glyph; nothing when geCharInfo is empty.
    void updateGlyph();
    /// Sends the two box states for the edited glyph; nothing when geCharInfo is empty.
    void updateGlyphImage();
    /// Re-reads the panel after the glyph set changed. It looks the glyph up by the second
    /// character of geCharInfo and then always deactivates: the panel ends inactive.
    void updateCurrentGlyphDetails();

    /// A field's text as an integer: leading white space, an optional sign and the digits that
    /// follow ("  12abc" is 12); text that does not start so reads 0. Saturates at the int range.
    static int intValue(const QString& text);

    // The controls, for the window's layout code and for tests.
    QLabel* geCharInfo() const { return m_geCharInfo; }
    QLabel* geWidth() const { return m_geWidth; }
    QLabel* geHeight() const { return m_geHeight; }
    QLineEdit* gexOffset() const { return m_gexOffset; }
    QLineEdit* geyOffset() const { return m_geyOffset; }
    QLineEdit* gexAdvance() const { return m_gexAdvance; }
    Stepper* gexOffsetStepper() const { return m_gexOffsetStepper; }
    Stepper* geyOffsetStepper() const { return m_geyOffsetStepper; }
    Stepper* gexAdvanceStepper() const { return m_gexAdvanceStepper; }
    QCheckBox* geCustomImage() const { return m_geCustomImage; }
    QCheckBox* geFitImage() const { return m_geFitImage; }
    /// The nine captions geA to geI.
    const QList<QLabel*>& captions() const { return m_captions; }

signals:
    /// A glyph was changed through the panel; the window refreshes its text preview.
    void glyphEdited();

private:
    QLineEdit* makeField(const QString& name, const QString& toolTip);
    Stepper* makeStepper(const QString& name, const QString& toolTip);
    /// Writes the fields back as "%i"; while `editing` is being typed in, a lone sign or an
    /// empty text is left alone so a number can be started.
    void normaliseFields(QLineEdit* editing);
    /// The glyph the panel edits: the first character of geCharInfo; false when it is empty.
    bool editedCharacter(char16_t* character) const;

    sharedAppState* m_state = nullptr;
    QLabel* m_geCharInfo;
    QLabel* m_geWidth;
    QLabel* m_geHeight;
    QLineEdit* m_gexOffset;
    QLineEdit* m_geyOffset;
    QLineEdit* m_gexAdvance;
    Stepper* m_gexOffsetStepper;
    Stepper* m_geyOffsetStepper;
    Stepper* m_gexAdvanceStepper;
    QCheckBox* m_geCustomImage;
    QCheckBox* m_geFitImage;
    QList<QLabel*> m_captions;
};

} // namespace qm
