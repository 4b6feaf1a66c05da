#include "Classes/publish/BuildWizard.h"

#include "Classes/model/Format.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/publish/PublishPanel.h"

#include <QUrl>

#include <array>
#include <span>

namespace qm {

namespace {

struct PresetTarget
{
    const char* name;
    const char* suffix;
    const char* scale;
    const char* resources; ///< only presets 4 and 5 write below the directory
};

// The scales are text on purpose: preset 0 keeps 46.8 and 23.4 where the hand-made scaled
// copies use 46.875 and 23.4375.
constexpr std::array preset0{
    PresetTarget{"ipadhd", "-ipadhd", "100.0000", nullptr},
    PresetTarget{"ipad", "-ipad", "50.0000", nullptr},
    PresetTarget{"hd", "-hd", "46.8000", nullptr},
    PresetTarget{"sd", "", "23.4000", nullptr},
};
constexpr std::array preset1{
    PresetTarget{"@4x", "@4x", "100.0000", nullptr},
    PresetTarget{"@2x", "@2x", "50.0000", nullptr},
    PresetTarget{"sd", "", "25.0000", nullptr},
};
constexpr std::array preset2{
    PresetTarget{"hd", "-hd", "100.0000", nullptr},
    PresetTarget{"sd", "", "50.0000", nullptr},
};
constexpr std::array preset3{
    PresetTarget{"@2x", "@2x", "100.0000", nullptr},
    PresetTarget{"sd", "", "50.0000", nullptr},
};
constexpr std::array preset4{
    PresetTarget{"tabletHD", "", "100.0000", "resources-tablethd"},
    PresetTarget{"tablet", "", "50.0000", "resources-tablet"},
    PresetTarget{"phoneHD", "", "50.0000", "resources-phonehd"},
    PresetTarget{"phone", "", "25.0000", "resources-phone"},
};
// "tabletHD" and "tablet" share a directory and a file name, so publishing writes the second
// over the first; kept as the preset has always been.
constexpr std::array preset5{
    PresetTarget{"tabletHD", "", "100.0000", "resources-tablet"},
    PresetTarget{"tablet", "", "50.0000", "resources-tablet"},
    PresetTarget{"phoneHD", "", "100.0000", "resources-phonehd"},
    PresetTarget{"phone", "", "50.0000", "resources-phone"},
};
constexpr std::array preset6{
    PresetTarget{"@3x", "@3x", "100.0000", nullptr},
    PresetTarget{"@2x", "@2x", "66.6667", nullptr},
    PresetTarget{"sd", "", "33.3333", nullptr},
};
constexpr std::array preset7{
    PresetTarget{"@3x", "@3x", "100.0000", nullptr},
    PresetTarget{"@2x", "@2x", "66.6667", nullptr},
};

std::span<const PresetTarget> presetTargets(int tag)
{
    switch (tag) {
    case 0:
        return preset0;
    case 1:
        return preset1;
    case 2:
        return preset2;
    case 3:
        return preset3;
    case 4:
        return preset4;
    case 5:
        return preset5;
    case 6:
        return preset6;
    case 7:
        return preset7;
    default:
        return {};
    }
}

/// The pop-up's items whose visibility a preset change decides.
constexpr int adaptedFormatItems = 7;

} // namespace

BuildWizard::BuildWizard(sharedAppState& state, PublishPanel& panel, TextureController* controller)
    : m_state(state), m_panel(panel), m_controller(controller),
      m_formatItemVisible(wizFormatItems().size(), true)
{
}

const QList<int>& BuildWizard::wizFormatItems()
{
    static const QList<int> items{1, 0, 2, 3, 4, 5, 6, 7, 8};
    return items;
}

bool BuildWizard::wizFormatItemVisible(int index) const
{
    return index >= 0 && index < m_formatItemVisible.size() && m_formatItemVisible.at(index);
}

void BuildWizard::wizOption(int tag)
{
    m_fields.wizOption = tag;
    const bool resourcesPreset = tag == 4 || tag == 5;
    if (resourcesPreset)
        m_fields.wizFormat = 1;
    for (int i = 0; i < adaptedFormatItems && i < m_formatItemVisible.size(); ++i)
        m_formatItemVisible[i] = !resourcesPreset || i == 0;
}

void BuildWizard::wizDirectoryButton()
{
    const QString chosen = m_controller ? m_controller->chooseDirectory(QStringLiteral("Set")) : QString();
    if (!chosen.isEmpty())
        m_fields.wizDirectory = chosen;
}

QString BuildWizard::resourcesDirectory(const QString& resources) const
{
    const QUrl url(m_fields.wizDirectory);
    QString base = url.isLocalFile() ? url.toLocalFile() : m_fields.wizDirectory;
    while (base.size() > 1 && base.endsWith(u'/'))
        base.chop(1);
    const QString component = format("%@.bmfont/%@", {m_fields.wizFontName, resources});
    return base == QStringLiteral("/") ? base + component : base + u'/' + component;
}

bool BuildWizard::wizBuild()
{
    // A text field always yields text, so only the directory can be missing: an empty font
    // name passes.
    if (m_fields.wizDirectory.isEmpty()) {
        alertWizIncomplete();
        return false;
    }
    if (!wizCanBuild())
        return false;

    m_panel.removeAllTargets();
    for (const PresetTarget& target : presetTargets(m_fields.wizOption)) {
        const QString name = QString::fromUtf8(target.name);
        const QString directory = target.resources ? resourcesDirectory(QString::fromUtf8(target.resources))
                                                   : m_fields.wizDirectory;
        m_panel.appendTarget(name);
        m_panel.updateDetailsAtIndex(int(m_panel.targetArray().size()) - 1, directory, m_fields.wizFontName,
                                     QString::fromUtf8(target.suffix), QString::fromUtf8(target.scale), name,
                                     m_fields.wizFormat);
    }
    wizClose();
    return true;
}

void BuildWizard::wizClose()
{
    m_panel.targetselectionchanged();
    m_panel.reloadData();
    m_state.setConfigchanged(true);
}

bool BuildWizard::wizCanBuild()
{
    if (!m_controller)
        return true;
    return m_controller->runAlert(
               QStringLiteral("Build Settings ?"),
               QStringLiteral("Warning! Your existing publish configuration will be replaced "
                              "by a new one. Are you sure ?"),
               {QStringLiteral("yes"), QStringLiteral("no")}) == 0;
}

void BuildWizard::alertWizIncomplete()
{
    if (m_controller)
        m_controller->runAlert(QStringLiteral("Incomplete settings"),
                               QStringLiteral("Please enter a Directory AND a Font Name."),
                               {QStringLiteral("Ok")});
}

} // namespace qm
