// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/FormCall.h"
#include "chart/RecordSaving.h"
#include "chart/SectionForm.h"
#include "regional/SheetData.h"
#include "regional/SheetRecords.h"
#include "regional/SheetSources.h"

#include <memory>

namespace Ui {
class SheetForm;
}

namespace clivara {

class SheetFields;
struct WorkingState;

// Of the forms of the sheets.
struct SheetCall : FormCall {
    qint32 sheet = 0; // its number; 0 for a new one
    qint32 saved = 0; // the answer: the number that it was saved under last; 0 when it was not
};

// Opens a sheet of a type, a new one for 0; the result is the number that it was saved under, 0 when it was not.
// Raises nothing.
qint32 openSheet(WorkingState &state, const SheetLayout &layout, qint32 sheet);

// One regional sheet, of whatever type. Saving leaves it open; whoever closes it with changes is
// asked. A stored sheet whose data do not fit the type's layout is shown as it is and never written; one that
// only lacks this program's mark can be read by the layout when the doctor says that this program wrote it.
class SheetForm final : public SectionForm, public CalledBy<SheetCall>, private WrittenRecord {
    Q_OBJECT

public:
    SheetForm(WorkingState &state, const SheetLayout &layout);
    ~SheetForm() override;

protected:
    void load() override;
    bool queryUnload() override;
    void keyPressEvent(QKeyEvent *event) override;

private:
    void InitDati(qint32 number);
    void initNew();
    void initStored(qint32 number);
    void PopolaDati(const SheetData &values);
    void showHeading();
    void showStored();
    void showReadable(bool isUnmarked);
    void showUnreadable(const ReadSheet &read);
    void readByLayout();
    bool isSavedForPaper();
    void noteMessage(const QString &text);
    void noteCriteria();
    bool isChanged() const;
    bool mayWrite() override;
    WriteResult write() override;
    void becomeNew() override;
    QString vanishedQuestion() const override;
    RecordConflict conflict() const override;
    void keepMine() override;
    StoredSheet entered() const;
    void showTheirs();
    QDate enteredDate() const; // null when the field holds none
    bool save();
    void print();
    void savePdf();
    int age() const;

    const SheetLayout &m_layout;
    std::unique_ptr<Ui::SheetForm> m_ui;
    SheetFields *m_fields;
    StoredSheet m_sheet; // as it was read or saved last; of a new one the number that it will have
    StoredSheet m_elsewhere; // as another workstation has stored it, when a save found that
    bool m_isStored = false;
    bool m_isReadable = true;
    SheetAuthor m_author = SheetAuthor::Marked; // of the sheet that is open
    QStringList m_shown; // the fields' texts and the date when they were shown or saved
    bool m_saving = false;
};

} // namespace clivara
