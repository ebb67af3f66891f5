// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <optional>
#include <span>
#include <stdexcept>

namespace clivara {

// What one field of a sheet is in its data string.
enum class SheetFieldKind {
    List, // one digit: the index of the chosen entry
    Text, // free text, filled with blanks
    Number, // digits by a pattern ("00.0", "00,0", "000")
    Date, // eight digits ddmmyyyy; blanks or zeros without a date
    Total, // two digits: the sum of the points of lists
    Band, // one digit: the entry that a total falls into
    Kept, // not shown: written back as it was read
    Copy, // not shown: a number field once more in a narrower place, empty when it does not fit there
    Mark, // not shown: always the same characters
};
// False for what only the data string has.
bool isShown(SheetFieldKind kind);

struct SheetEntry {
    QString text;
    std::optional<int> points; // of a list's entry; of a band's its lowest total. None: not assessed
};

// Where a new sheet's value comes from: "farmaci(C10AA*, 12)" is the name and its arguments.
struct SheetSource {
    QString name; // empty: the doctor fills it in
    QStringList arguments;
};

struct SheetField {
    int position = 0; // of the first character, from 1
    int width = 0;
    SheetFieldKind kind = SheetFieldKind::Text;
    QString name;
    QString caption;
    QString group; // the heading that it stands under
    QList<SheetEntry> entries; // of a list or band
    QString pattern; // of a number
    SheetSource source;
    QString blank; // the piece of an empty field, as wide as the field
};

// One type of sheet as its layout file describes it. The fields are in the order in which the doctor sees them; their
// places tile the data string without a gap.
struct SheetLayout {
    int type = 0; // idTipo
    QString form; // name of its form
    QString listText; // how the list of sheets calls it
    QString caption; // of its window
    QString criteria; // which therapy criteria it has; empty for none
    QStringList groups;
    QList<SheetField> fields;
    int length = 0; // of the data string
    // The length of the data strings of this program's earlier versions, and of other programs: without the
    // mark, which comes after them. 0 for a type without marks.
    int earlierLength = 0;

    // -1 when there is no such field.
    int indexOf(const QString &name) const;
};

class LayoutError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// Reads a layout file; docs/schede.md describes the format. Throws LayoutError with the line for a field that it
// does not understand, and for places that overlap or leave a gap.
SheetLayout parseSheetLayout(const QString &text);

// The layouts of all types, in the order of their types; read once.
std::span<const SheetLayout> sheetLayouts();
// The layout of a type; null for a type that there is none of.
const SheetLayout *sheetLayout(int type);
// How the list of sheets calls a type; empty for an unknown one.
QString sheetTypeText(int type);

} // namespace clivara
