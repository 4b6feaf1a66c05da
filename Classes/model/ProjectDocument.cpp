#include "Classes/model/ProjectDocument.h"

#include "Classes/fonts/FontTablesReader.h"
#include "Classes/render/CAGlyphLayer.h"
#include "Platform/layers/Transaction.h"
#include "Platform/text/FontManager.h"

#include <QImageReader>

#include <tuple>

namespace qm {

const QString ProjectDocument::defaultPreviewText = QStringLiteral("Preview\\nText");

ProjectDocument::ProjectDocument(TextureController* controller)
    : m_controller(controller ? controller : &m_silentController), m_fontList(m_state, m_view, *m_controller),
      m_characterSet(m_state, m_view), m_publishPanel(m_state, m_controller),
      m_buildWizard(m_state, m_publishPanel, m_controller), m_colorGradientEditor(m_state.colorGradient()),
      m_strokeGradientEditor(m_state.strokeGradient())
{
    m_state.setTxtView(&m_view);
    m_state.setTxtCont(m_controller);
    m_view.setSharedState(&m_state);
}

ProjectDocument::~ProjectDocument() = default;

void ProjectDocument::setUpWindow()
{
    if (m_windowSetUp)
        return;
    m_windowSetUp = true;
    m_justLoading = true;
    m_fontList.setUp();
    // Every control shows its setting and runs its handler once; the glyph-size handler comes
    // last and renders and packs the set for all of them.
    m_state.setBlockredrawandpack(true);
    m_state.setTextureSize(m_state.width(), m_state.height());
    m_state.setCheckerBoard(m_state.checkerBoard());
    m_previewText = defaultPreviewText;
    m_state.setPreviewTextString(m_previewText);
    showPreviewGradientsAndTexture();
    showCharacterSet();
    selectProjectFamily();
    m_state.setBlockredrawandpack(false);
    m_publishPanel.loadPublishSettings();
    reallyChangeGlyphSize(m_state.glyphSize());
    m_controller->setDocumentTitle(windowTitle());
    m_controller->reloadInterfaceParamters();
}

void ProjectDocument::previewTextChanged(const QString& text)
{
    m_previewText = text;
    m_state.setPreviewTextString(text);
    m_view.updatePreview(text);
}

void ProjectDocument::previewOrTextureChanged(bool preview)
{
    TransactionScope transaction;
    Transaction::setDisableActions(true);
    if (preview) {
        m_view.switchToPreview();
        m_view.updatePreview(m_previewText);
        m_state.setIsinpreviewmode(true);
        return;
    }
    m_view.switchToTexture();
    m_view.updatePreview(m_previewText);
    m_state.setIsinpreviewmode(false);
    m_view.updateCheckerboardAndColor(m_state.checkerBoard(), m_state.bgColor());
    m_view.Packing(m_state.paddingSize(), m_state.paddingMethod(), m_state.packingReversed(), m_state.grid());
}

void ProjectDocument::autoxyChanged(bool on)
{
    m_state.setAutoxy(on);
    m_view.setAutoxy(on);
    m_view.updatePreview(m_previewText);
}

void ProjectDocument::showPreviewGradientsAndTexture()
{
    // Projects from before the preview field kept its text have none: the field's own default.
    if (m_state.previewTextString().isNull())
        m_state.setPreviewTextString(defaultPreviewText);
    m_previewText = m_state.previewTextString();

    // Projects from before the gradient editors have only the two-colour gradients; a project
    // with just one of the two gradients shows both editors from its colours too.
    if (m_state.colorGradient().isValid() && m_state.strokeGradient().isValid()) {
        m_colorGradientEditor = m_state.colorGradient();
        m_strokeGradientEditor = m_state.strokeGradient();
    } else {
        m_colorGradientEditor = Gradient::twoColor(m_state.startGradiantColor(), m_state.endGradiantColor());
        m_strokeGradientEditor =
            Gradient::twoColor(m_state.startStrokeGradiantColor(), m_state.endStrokeGradiantColor());
    }
    // The editors are where the settings' gradients come from: a missing one takes what its
    // editor shows, so glyphs added later are drawn as the editor promises.
    if (!m_state.colorGradient().isValid())
        m_state.setColorGradient(m_colorGradientEditor);
    if (!m_state.strokeGradient().isValid())
        m_state.setStrokeGradient(m_strokeGradientEditor);

    m_imageTexture = m_state.textureName().isEmpty() ? QImage() : QImageReader(m_state.textureName()).read();
}

void ProjectDocument::showCharacterSet()
{
    m_characterSet.setAllLetters(m_state.textGlyph());
    m_characterSet.allLettersChanged();
}

void ProjectDocument::selectProjectFamily()
{
    const auto listedRow = [this] {
        const QList<FontRow>& rows = m_fontList.fontArray();
        for (int row = 0; row < rows.size(); ++row)
            if (rows[row].familyName == m_state.fontName())
                return row;
        return -1;
    };
    if (m_windowSetUp) {
        int row = listedRow();
        if (row < 0) {
            // The face pop-up is rebuilt first: a family the system does not know raises the
            // missing-font alert and becomes "Arial", whose row is then chosen.
            m_fontList.updateFamilyNames();
            row = listedRow();
        }
        if (row >= 0) {
            // Chosen even when its row is already selected: the settings may have just arrived.
            if (row == m_fontList.selectedRow())
                m_fontList.fontTableSelectionChanged();
            else
                m_fontList.selectRow(row);
            return;
        }
    } else {
        m_fontList.updateFamilyNames();
    }
    // No row to choose: no list without a window, or a name the font service resolves by
    // substitution ("Arial"). The family is applied as choosing its row would.
    loadFontTables();
    qm::reallyChangeGlyphSize(m_state, m_view, m_state.glyphSize());
}

void ProjectDocument::chooseFamily(const QString& family, bool loadedFromFile)
{
    if (loadedFromFile)
        m_state.LoadFontName(family);
    else
        m_state.setFontName(family);
    m_state.setLoadedFontName(loadedFromFile);
    loadFontTables();
}

void ProjectDocument::loadFontTables()
{
    FontTablesReader reader(m_state);
    const bool hasKernings = reader.hasKernings(m_state.fontName());
    m_state.setKerningTable({});
    m_state.setCmapTable({});
    // Without a format 0 kerning subtable both tables stay empty, the character map too.
    if (hasKernings)
        reader.fillKerningTable(m_state.fontName());
}

GlyphSizeDefaults ProjectDocument::reallyChangeGlyphSize(int size)
{
    const GlyphSizeDefaults defaults = qm::reallyChangeGlyphSize(m_state, m_view, size);
    if (m_justLoading) {
        m_justLoading = false;
        m_state.setConfigchanged(false);
    }
    return defaults;
}

void ProjectDocument::takeAutomaticMetrics()
{
    m_state.setLineHeight(m_view.getDefaultLineHeight());
    m_state.setSpaceWidth(m_view.getSpaceWidth());
    m_view.updatePreview(m_previewText);
    if (m_justLoading) {
        m_justLoading = false;
        m_state.setConfigchanged(false);
    }
}

void ProjectDocument::applyCharacters(const QString& text)
{
    m_characterSet.setAllLetters(text);
    m_characterSet.allLettersChanged();
}

int ProjectDocument::regularMember(const QList<FontMember>& members)
{
    // Upright first, then normal width, then the weight nearest to regular (5).
    const auto key = [](const FontMember& m) {
        const int widthTraits = NarrowTrait | ExpandedTrait | CondensedTrait;
        return std::make_tuple((m.traits & ItalicTrait) != 0, (m.traits & widthTraits) != 0,
                               std::abs(m.weight - 5));
    };
    int best = 0;
    for (int i = 1; i < members.size(); ++i)
        if (key(members.at(i)) < key(members.at(best)))
            best = i;
    return best;
}

int ProjectDocument::glyphCount() const
{
    return int(m_view.glyphLayers().size());
}

int ProjectDocument::placedGlyphCount() const
{
    int placed = 0;
    for (const CAGlyphLayer* layer : m_view.glyphLayers())
        placed += layer->canfit() ? 1 : 0;
    return placed;
}

int ProjectDocument::alert(const QString& message, const QString& informative, const QStringList& buttons)
{
    return m_controller->runAlert(message, informative, buttons);
}

} // namespace qm
