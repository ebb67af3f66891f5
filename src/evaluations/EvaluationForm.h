// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "chart/RecordSaving.h"
#include "evaluations/EvaluationRecords.h"
#include "evaluations/HistoryPlot.h"
#include "inputs/PatientInputForm.h"

namespace Ui {
class EvaluationForm;
}

namespace clivara {

class HistoryModel;

// The frame of the evaluations that are kept: inputs with their proposals, the result, the patient's saved evaluations
// as a list and as a course over time, and the buttons for a new evaluation, for deleting, computing and saving.
class EvaluationForm : public PatientInputForm, private WrittenRecord {
    Q_OBJECT

public:
    ~EvaluationForm() override;

protected:
    struct Words {
        QString caption;
        QString valueHeading; // of the history's second column
        QString course; // label of the plot, with its mnemonic
    };
    EvaluationForm(const QString &name, const Words &words, HistoryPlot::Scale scale, WorkingState &state);

    // The form's own part. What reads or writes may throw dao::Error; it ends up in the log.

    // Puts the proposed values into the empty inputs of a new evaluation.
    virtual void propose() = 0;
    virtual QList<HistoryRow> history() = 0;
    // Fills inputs and result from a saved evaluation; false when it is gone.
    virtual bool showSaved(const QDateTime &when) = 0;
    // Saves what was computed. `isNew`: the doctor has not chosen the evaluation of that date from the history.
    // `versions` says what may be replaced and gets what is in the way.
    virtual WriteResult save(const QDateTime &when, bool isNew, EvaluationVersions &versions) = 0;
    virtual const StoredEvaluation &storedAs() const = 0;
    // After a save, the history being up to date.
    virtual void afterSave() { }

    // Where the form puts its inputs.
    QWidget *inputArea() const;
    // Takes the inputs into the form's tab order; after they are all there.
    void inputsComplete();
    // The small print under the inputs; an empty text takes no room.
    void showHint(const QString &text);
    // Shows the result line. It can be saved when the form says so, until an input changes.
    void showResult(const QString &text, const QString &second = {});
    void setSavable(bool savable);
    // One line that tells what has happened or is worth knowing. A warning has a sign before it.
    void showStatus(const QString &text, bool warning = false);
    void newEvaluation();
    // An input that keeps what it held when an evaluation is chosen: the doctor should not take it for that one's.
    static void showNotReloaded(const NumericEdit *edit, QLabel *source);

    // The age for the validity of the evaluation: the one on the region's reference day, else today's; 0 when unknown.
    int referenceAge() const { return m_referenceAge; }
    QString regionCode() const;

    void inputsChanged() override;
    void dateLeft() override;
    void load() override;

private:
    void connectHistory();
    void showReferenceAge();
    void refreshHistory();
    void choose(const QModelIndex &row);
    void showChosen(const QDateTime &when);
    void trySave();
    void saveOn(QDate day);
    bool mayWrite() override;
    WriteResult write() override;
    void becomeNew() override;
    QString vanishedQuestion() const override;
    RecordConflict conflict() const override;
    void keepMine() override;
    void showTheirs(const QDateTime &when);
    void deleteChosen();
    // What the date field holds is no date, and the doctor has been told.
    void markDateRefused();
    void leadToDate();

    std::unique_ptr<Ui::EvaluationForm> m_ui;
    HistoryModel *m_history;
    QLabel *m_referenceLabel; // Label2(1)
    QHash<QDateTime, EvaluationValues> m_read; // what the history was read with
    struct Saving {
        QDateTime when;
        bool isNew = true; // the doctor has not chosen the evaluation of that date from the history
        EvaluationVersions versions;
    };
    Saving m_saving; // what is being saved
    QList<int> m_plotted; // the history's row of each point
    QDateTime m_chosen; // the evaluation that the inputs were filled from; invalid for a new one
    int m_referenceAge = 0;
    std::optional<QString> m_refusedDate; // what the date field held when the doctor was told
    bool m_filling = false; // the form itself moves the selection
};

} // namespace clivara
