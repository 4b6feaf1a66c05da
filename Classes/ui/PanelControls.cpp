#include "Classes/ui/PanelControls.h"

#include "Classes/publish/ScaleText.h"
#include "Classes/ui/GlyphEditorPanel.h"
#include "Classes/ui/Stepper.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDoubleValidator>
#include <QIntValidator>
#include <QLabel>
#include <QLineEdit>

#include <cmath>

namespace qm {

namespace {
QString tr(const char* text)
{
    return QCoreApplication::translate("PanelControls", text);
}
} // namespace

void addTaggedItem(QComboBox* popup, const QString& title, int tag)
{
    popup->addItem(title, tag);
}

int selectedTag(const QComboBox* popup)
{
    const int index = popup->currentIndex();
    return index < 0 ? -1 : popup->itemData(index).toInt();
}

bool selectTag(QComboBox* popup, int tag)
{
    const int index = popup->findData(tag);
    if (index < 0)
        return false;
    popup->setCurrentIndex(index);
    return true;
}

void selectOrInsertTag(QComboBox* popup, int tag, const QString& title)
{
    if (selectTag(popup, tag))
        return;
    int at = 0;
    while (at < popup->count() && popup->itemData(at).toInt() < tag)
        ++at;
    popup->insertItem(at, title, tag);
    popup->setCurrentIndex(at);
}

QString descriptorFormatTitle(int code)
{
    switch (code) {
    case 0:
        return tr("Text .fnt (code 0)");
    case 1:
        return tr("Text .fnt");
    case 2:
        return tr("Text .fnt (code 2)");
    case 3:
        return tr("XML .fnt");
    case 4:
        return tr("Text .txt");
    case 5:
        return tr("Hash-tag text, v from top");
    case 6:
        return tr("Hash-tag text, v from bottom");
    case 7:
        return tr("XML + one PNG per glyph");
    case 8:
        return tr("Lua table .lua");
    default:
        return tr("Format %1").arg(code);
    }
}

QString scaleQualityTitle(int code)
{
    switch (code) {
    case 0:
        return tr("None");
    case 1:
        return tr("Default");
    case 2:
        return tr("Low");
    case 3:
        return tr("Medium");
    case 4:
        return tr("High");
    default:
        return tr("Quality %1").arg(code);
    }
}

int intFieldValue(const QString& text)
{
    return GlyphEditorPanel::intValue(text);
}

float floatFieldValue(const QString& text)
{
    const float value = floatValue(text);
    return std::isfinite(value) ? value : 0.0f;
}

QString floatFieldText(double value)
{
    QString text = QString::number(value, 'f', 3);
    while (text.contains(u'.') && (text.endsWith(u'0') || text.endsWith(u'.')))
        text.chop(1);
    return text == QStringLiteral("-0") ? QStringLiteral("0") : text;
}

QLineEdit* makeNumberField(QWidget* parent, const QString& name, const QString& toolTip, int minimum,
                           int maximum, bool decimals)
{
    auto* field = new QLineEdit(parent);
    field->setObjectName(name);
    field->setToolTip(toolTip);
    field->setAlignment(Qt::AlignRight);
    if (decimals) {
        auto* validator = new QDoubleValidator(minimum, maximum, 3, field);
        validator->setNotation(QDoubleValidator::StandardNotation);
        validator->setLocale(QLocale::c());
        field->setValidator(validator);
    } else {
        field->setValidator(new QIntValidator(minimum, maximum, field));
    }
    // Room for the widest value of the range and a sign.
    const QString widest = QString(QString::number(std::max(std::abs(minimum), std::abs(maximum))).size() +
                                       (minimum < 0 ? 1 : 0) + (decimals ? 3 : 0),
                                   u'0');
    field->setFixedWidth(std::max(field->fontMetrics().horizontalAdvance(widest), 24) + 16);
    return field;
}

Stepper* makeStepper(QWidget* parent, const QString& name, const QString& toolTip, int minimum, int maximum,
                     int step)
{
    auto* stepper = new Stepper(parent);
    stepper->setObjectName(name);
    stepper->setToolTip(toolTip);
    stepper->setRange(minimum, maximum);
    stepper->setSingleStep(step);
    return stepper;
}

QLabel* makeCaption(QWidget* parent, const QString& name, const QString& text)
{
    auto* label = new QLabel(text, parent);
    label->setObjectName(name);
    return label;
}

QLabel* makeSectionTitle(QWidget* parent, const QString& text)
{
    auto* label = new QLabel(text, parent);
    QFont bold = label->font();
    bold.setBold(true);
    label->setFont(bold);
    return label;
}

void setControlsEnabled(std::initializer_list<QWidget*> controls, bool enabled)
{
    for (QWidget* control : controls)
        control->setEnabled(enabled);
}

} // namespace qm
