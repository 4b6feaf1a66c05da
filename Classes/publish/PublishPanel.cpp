#include "Classes/publish/PublishPanel.h"

#include "Classes/model/Format.h"
#include "Classes/model/TextureController.h"
#include "Classes/model/sharedAppState.h"
#include "Classes/publish/ScaleText.h"

namespace qm {

namespace {

/// The last path component without its last extension; a leading dot does not start one.
QString baseNameOf(const QUrl& url)
{
    QString name = url.fileName();
    const qsizetype dot = name.lastIndexOf(u'.');
    if (dot > 0)
        name.truncate(dot);
    return name;
}

} // namespace

PublishPanel::PublishPanel(sharedAppState& state, TextureController* controller)
    : m_state(state), m_controller(controller)
{
}

int PublishPanel::selectedRow() const
{
    return m_selectedRow >= 0 && m_selectedRow < m_targetArray.size() ? m_selectedRow : noSelection;
}

int PublishPanel::rowOrFirst() const
{
    if (m_targetArray.isEmpty())
        return -1;
    const int row = selectedRow();
    return row == noSelection ? 0 : row;
}

void PublishPanel::selectRow(int row)
{
    setSelectedRow(row);
    targetselectionchanged();
}

void PublishPanel::reloadData()
{
    if (m_reload)
        m_reload();
}

PublishTarget PublishPanel::defaultRecord(const QString& name) const
{
    PublishTarget record;
    record.mainname = name;
    record.file = m_state.projectName().isEmpty() ? QString() : baseNameOf(m_state.projectName());
    return record;
}

void PublishPanel::createDetailsAtIndex(int row)
{
    if (row < 0 || row >= m_targetArray.size())
        return;
    setTargetDetails(defaultRecord(m_targetArray.at(row)), m_targetArray.at(row));
}

PublishTarget PublishPanel::recordAt(int row)
{
    const QString& name = m_targetArray.at(row);
    if (!m_state.targetsPublish().contains(name))
        createDetailsAtIndex(row);
    return m_state.targetsPublish().value(name);
}

bool PublishPanel::hasRecordNamed(const QString& mainname) const
{
    for (const PublishTarget& record : m_state.targetsPublish())
        if (record.mainname == mainname)
            return true;
    return false;
}

void PublishPanel::targetselectionchanged()
{
    const int row = rowOrFirst();
    if (row < 0)
        return;
    displayTargetDetails(recordAt(row));
}

void PublishPanel::displayTargetDetails(const PublishTarget& record)
{
    m_fields.targetPath = record.path;
    m_fields.targetFile = record.file;
    m_fields.targetExtension = record.suffix;
    m_fields.targetFontFace = record.fontface;
    m_fields.targetScale = record.scale;
    m_fields.targetScaleQuality = record.quality;
    m_fields.targetFormat = record.format;
    m_fields.targetCheckTexture = record.texture;
    m_fields.targetCheckCoords = record.coords;
    m_fields.targetRedraw = record.redraw;
    if (m_display)
        m_display();
}

void PublishPanel::updateTargetVisibleDetails()
{
    const int row = rowOrFirst();
    if (row < 0)
        return;
    PublishTarget record;
    record.mainname = m_targetArray.at(row);
    record.path = m_fields.targetPath;
    record.file = m_fields.targetFile;
    record.suffix = m_fields.targetExtension;
    record.fontface = m_fields.targetFontFace;
    record.scale = m_fields.targetScale;
    record.quality = m_fields.targetScaleQuality;
    record.format = m_fields.targetFormat;
    record.texture = m_fields.targetCheckTexture;
    record.coords = m_fields.targetCheckCoords;
    record.redraw = m_fields.targetRedraw;
    setTargetDetails(record, record.mainname);
    m_state.setConfigchanged(true);
}

void PublishPanel::setTargetDetails(const PublishTarget& record, const QString& name)
{
    PublishTargets targets = m_state.targetsPublish();
    targets.insert(name, record);
    m_state.setTargetsPublish(targets);
}

void PublishPanel::targetPlus()
{
    const QString name = QStringLiteral("New");
    if (checkDuplicate(name))
        return;
    m_targetArray.append(name);
    reloadData();
}

void PublishPanel::targetMinus()
{
    // The first target stays: a project always keeps one to publish to.
    const int row = selectedRow();
    if (row > 0) {
        PublishTargets targets = m_state.targetsPublish();
        targets.remove(m_targetArray.at(row));
        m_state.setTargetsPublish(targets);
        m_targetArray.removeAt(row);
        reloadData();
    }
    targetselectionchanged();
}

void PublishPanel::targetDuplicate()
{
    const int row = selectedRow();
    if (row == noSelection)
        return;
    const QString copyName = format("%@ copy", {m_targetArray.at(row)});
    // Looks at the stored records, not at the list: a name without a record yet is no obstacle.
    if (hasRecordNamed(copyName)) {
        targetAlreadyExists(copyName);
        return;
    }
    PublishTarget copy = recordAt(row);
    m_targetArray.append(copyName);
    copy.mainname = copyName;
    copy.suffix = PublishTarget::unsetSuffix;
    setTargetDetails(copy, copyName);
    reloadData();
}

void PublishPanel::setObjectValue(const QString& newName, int row)
{
    if (row < 0 || row >= m_targetArray.size())
        return;
    if (hasRecordNamed(newName)) {
        targetAlreadyExists(newName);
        reloadData();
        return;
    }
    PublishTarget record = recordAt(row);
    PublishTargets targets = m_state.targetsPublish();
    targets.remove(m_targetArray.at(row));
    m_targetArray[row] = newName;
    record.mainname = newName;
    targets.insert(newName, record);
    m_state.setTargetsPublish(targets);
    reloadData();
}

void PublishPanel::addScaledCopy(const QString& name, double factor)
{
    const int source = selectedRow();
    if (source == noSelection)
        return;
    if (checkDuplicate(name))
        return;
    m_targetArray.append(name);
    reloadData();
    createDetailsAtIndex(int(m_targetArray.size()) - 1);
    UpdateDetailsScale(source, factor);
}

void PublishPanel::target50()
{
    addScaledCopy(QStringLiteral("50%"), 50.0);
}

void PublishPanel::target25()
{
    addScaledCopy(QStringLiteral("25%"), 25.0);
}

// 46.875 is 15/32 of 100: the names are rounded, the factors must not be.
void PublishPanel::target46()
{
    addScaledCopy(QStringLiteral("46.8%"), 46.875);
}

void PublishPanel::target23()
{
    addScaledCopy(QStringLiteral("23.4%"), 23.4375);
}

void PublishPanel::UpdateDetailsScale(int sourceRow, double factor)
{
    if (m_targetArray.isEmpty() || sourceRow < 0 || sourceRow >= m_targetArray.size())
        return;
    const PublishTarget source = recordAt(sourceRow);
    const int last = int(m_targetArray.size()) - 1;
    PublishTarget record = recordAt(last);
    record.scale = format("%.4f", {factor / 100.0 * double(floatValue(source.scale))});
    record.suffix = PublishTarget::unsetSuffix;
    record.path = source.path;
    record.file = source.file;
    record.fontface = source.fontface;
    record.quality = source.quality;
    record.format = source.format;
    record.texture = source.texture;
    record.coords = source.coords;
    record.redraw = source.redraw;
    setTargetDetails(record, m_targetArray.at(last));
}

void PublishPanel::updateDetailsAtIndex(int row, const QString& directory, const QString& file,
                                        const QString& suffix, const QString& scale, const QString& name,
                                        int format)
{
    (void)row;
    PublishTarget record;
    record.mainname = name;
    record.path = directory;
    record.file = file;
    record.suffix = suffix;
    record.fontface = QString();
    record.scale = scale;
    record.quality = 1;
    record.format = format;
    record.texture = true;
    record.coords = true;
    record.redraw = true;
    setTargetDetails(record, name);
}

bool PublishPanel::checkDuplicate(const QString& name)
{
    if (!m_targetArray.contains(name))
        return false;
    targetAlreadyExists(name);
    return true;
}

void PublishPanel::targetAlreadyExists(const QString& name)
{
    if (m_controller)
        m_controller->appendPublishLog(format("\n[error] Target '%@' already exists.", {name}));
}

void PublishPanel::loadPublishSettings()
{
    m_selectedRow = noSelection;
    m_targetArray.clear();
    for (const PublishTarget& record : m_state.targetsPublish())
        m_targetArray.append(record.mainname);

    if (m_state.targetsPublish().isEmpty()) {
        if (m_state.publishDirectory().isEmpty() || m_state.publishName().isEmpty()) {
            m_targetArray.append(QStringLiteral("Default"));
        } else {
            // The single output of older projects becomes the first target; its reduced-size
            // levels become scaled copies of it. The fields start from the new-target
            // defaults so that what an earlier project left in them does not leak in.
            const bool autoClose = m_fields.targetAutoClose;
            displayTargetDetails(defaultRecord(QString()));
            m_fields.targetAutoClose = autoClose;
            m_fields.targetCheckCoords = true;
            m_fields.targetCheckTexture = true;
            m_fields.targetFile = m_state.publishName();
            m_fields.targetPath = m_state.publishDirectory();
            m_fields.targetRedraw = m_state.downscalerecalc();

            const auto addCreated = [this](const QString& name) {
                m_targetArray.append(name);
                createDetailsAtIndex(int(m_targetArray.size()) - 1);
            };
            switch (m_state.autoSDLevel()) {
            case 1:
                m_targetArray.append(QStringLiteral("HD"));
                updateTargetVisibleDetails();
                addCreated(QStringLiteral("SD"));
                UpdateDetailsScale(0, 50.0);
                break;
            case 2:
                m_targetArray.append(QStringLiteral("iPadHD"));
                updateTargetVisibleDetails();
                addCreated(QStringLiteral("HD"));
                UpdateDetailsScale(0, 50.0);
                addCreated(QStringLiteral("SD"));
                UpdateDetailsScale(0, 25.0);
                break;
            default:
                m_targetArray.append(QStringLiteral("Default"));
                m_targetArray.append(QStringLiteral("HD"));
                updateTargetVisibleDetails();
                break;
            }
        }
    }
    reloadData();
}

void PublishPanel::publishAutoClose()
{
    m_state.setPublishautoclose(m_fields.targetAutoClose);
}

void PublishPanel::removeAllTargets()
{
    m_targetArray.clear();
    m_state.setTargetsPublish(PublishTargets());
}

void PublishPanel::appendTarget(const QString& name)
{
    m_targetArray.append(name);
}

} // namespace qm
