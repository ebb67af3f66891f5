// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/SectionForm.h"
#include "problems/ProblemRecords.h"

#include <memory>

class QStandardItemModel;

namespace Ui {
class SelezProblema;
}

namespace clivara {

struct WorkingState;

// Has the doctor choose one of the patient's problems. The answer is the selected problem of the working state and
// the settings "DIAGNOSI" and "CODICE DIAGNOSI"; without a choice they are no problem, "*ABORT*" and empty.
class SelezProblema : public SectionForm {
    Q_OBJECT

public:
    explicit SelezProblema(WorkingState &state);
    ~SelezProblema() override;

protected:
    void load() override;
    void unloading() override;

private:
    struct Entry {
        qint32 id;
        QString code;
        QString text;
    };

    void fill(qint32 selected);
    void addRow(const ProblemRow &problem, const Entry &entry);
    void choose();
    void createProblem();
    int currentRow() const;

    std::unique_ptr<Ui::SelezProblema> m_ui;
    QStandardItemModel *m_model;
    QList<Entry> m_entries; // by row
    int m_chosen = -1; // row
};

} // namespace clivara
