// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "regional/SheetLayout.h"

namespace clivara {

// The values of one sheet, as texts: of a list or band the index of its entry, of a number what people read
// ("7.2"), of a date "dd/mm/yyyy", of a total its number; empty for a number or date that is not there, and
// for copies and marks, which follow from the layout. The layout must outlive the object.
class SheetData {
public:
    // A sheet in which every field is empty.
    explicit SheetData(const SheetLayout &layout);

    const SheetLayout &layout() const { return *m_layout; }
    const QString &value(int field) const { return m_values[field]; }
    void setValue(int field, const QString &value) { m_values[field] = value; }
    // By the field's name; an unknown field is empty.
    QString value(const QString &name) const;
    int entry(const QString &name) const; // of a list; 0 for an unknown field
    double number(const QString &name) const; // 0 when empty

    bool operator==(const SheetData &other) const
    {
        return m_layout == other.m_layout && m_values == other.m_values;
    }

private:
    const SheetLayout *m_layout;
    QStringList m_values;
};

// What a typed value is in its field's piece of the string. Empty for a number or date that does not fit the field.
std::optional<QString> packedField(const SheetField &field, const QString &value);
// A typed value as the field will have it: "7,25" is "7.3" in a field with one decimal. Empty when it does not fit.
std::optional<QString> fittedValue(const SheetField &field, const QString &value);
// The data string. A value that does not fit its field leaves the field empty: ask packedField() first.
QString CreaStringaDati(const SheetData &data);

struct ReadSheet {
    std::optional<SheetData> data;
    QString fault; // why the string does not fit the layout, for the doctor; empty when it does
    // It would fit but for the mark: an earlier version of this program wrote it, or another program with
    // other meanings.
    bool isUnmarked = false;
};
// Takes a stored string apart. One without the mark is taken for this program's only when somebody vouches
// for it.
enum class SheetAuthor { Marked, Vouched };
ReadSheet readSheetString(const SheetLayout &layout, const QString &stored,
                          SheetAuthor author = SheetAuthor::Marked);

// Totals and bands from the points of the chosen entries.
void AggiornaTotali(SheetData &data);
// How many lists with points are not assessed yet.
int unassessedItems(const SheetData &data);

// A value as people read it: of a list the text of its entry.
QString shownValue(const SheetData &data, int field);

} // namespace clivara
