#pragma once

#include <QList>
#include <QString>

#include <initializer_list>

class QComboBox;
class QGridLayout;
class QLabel;
class QLineEdit;
class QWidget;

namespace qm {

class Stepper;

// Small helpers shared by the editing panels: pop-ups read by tag, number fields read the way
// the program reads typed numbers, and the titles of the codes the project stores.

/// Appends a pop-up item that carries `tag` (the value the settings store).
void addTaggedItem(QComboBox* popup, const QString& title, int tag);
/// The tag of the selected item; -1 when nothing is selected.
int selectedTag(const QComboBox* popup);
/// Selects the item tagged `tag`; false, leaving the selection alone, when there is none.
bool selectTag(QComboBox* popup, int tag);
/// Selects the item tagged `tag`, inserting one titled `title` in ascending tag order when
/// the pop-up has none (a texture size that the automatic sizing chose, a padding set elsewhere).
void selectOrInsertTag(QComboBox* popup, int tag, const QString& title);

/// Titles of the descriptor format codes 0..8.
QString descriptorFormatTitle(int code);
/// Titles of the texture scaling quality codes 0..4.
QString scaleQualityTitle(int code);

/// A typed whole number: leading blanks, a sign and the digits that follow; 0 for no number.
int intFieldValue(const QString& text);
/// A typed decimal number: the longest leading number; 0 for no number.
float floatFieldValue(const QString& text);
/// A decimal number as the fields show it: no trailing zeros, at most three decimals.
QString floatFieldText(double value);

/// A right-aligned number field. `decimals` allows a fraction.
QLineEdit* makeNumberField(QWidget* parent, const QString& name, const QString& toolTip, int minimum,
                           int maximum, bool decimals = false);
/// A stepper beside a number field.
Stepper* makeStepper(QWidget* parent, const QString& name, const QString& toolTip, int minimum, int maximum,
                     int step = 1);
/// A caption for a control; `name` is its objectName.
QLabel* makeCaption(QWidget* parent, const QString& name, const QString& text);
/// A bold section title.
QLabel* makeSectionTitle(QWidget* parent, const QString& text);

/// Enables or disables controls together; disabled captions are drawn greyed.
void setControlsEnabled(std::initializer_list<QWidget*> controls, bool enabled);

} // namespace qm
