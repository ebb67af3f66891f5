// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/EditedRecord.h"
#include "chart/RecordDialog.h"
#include "stays/StayRecords.h"

#include <memory>

namespace Ui {
class Ricoveri_Inserimento;
}

namespace clivara {

// Of the form "Ricoveri_Inserimento".
struct StayCall : FormCall {
    std::optional<qint32> stay; // to be edited; none: a new one
    std::optional<qint32> saved; // the answer: another one when it was deleted meanwhile and saved anew
};

// Opens the dialog of a hospital stay, of a new one without `stay`; the result is the stay that was saved, none when
// none was. Raises nothing.
std::optional<qint32> openStay(WorkingState &state, std::optional<qint32> stay);

// Writes one hospital stay.
class Ricoveri_Inserimento final : public RecordDialog,
                                   public CalledBy<StayCall>,
                                   private EditedRecord<Stay> {
    Q_OBJECT

public:
    explicit Ricoveri_Inserimento(WorkingState &state);
    ~Ricoveri_Inserimento() override;

protected:
    void load() override;
    void written() override;

private:
    bool mayWrite() override;
    void becomeNew() override;
    void fillLists();
    void showWard(const QString &stored);
    void noteLength();
    void noteHospital();
    // What is typed; a hospital of the list as the list spells it.
    Stay entered() const override;
    // The rules of mayWrite: a text that is missing or wrong, and dates that contradict each other.
    bool isComplete();
    bool isConsistent();
    void show(const Stay &stay) override;
    SaveResult<Stay> save(Stay &mine, const Stay &read) override;
    void askAboutList();
    bool refuse(const QString &text, QWidget *field);

    std::unique_ptr<Ui::Ricoveri_Inserimento> m_ui;
    QStringList m_hospitals; // the list as it was when it was last read
    QList<Stay> m_stays; // of the patient, as they were when the dialog opened
    // The hospital that the doctor was last asked about, and whether the list is to have it; not asked twice.
    struct ListAnswer {
        QString hospital;
        bool extendList = false;
    };
    ListAnswer m_answer;
};

} // namespace clivara
