// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "evaluations/EvaluationForm.h"
#include "evaluations/MetabolicRecords.h"

#include <array>

namespace Ui {
class SindrMetabolicaInputs;
}

namespace clivara {

// Decides whether a patient has the metabolic syndrome. Hands back {"valutazione", verdict}, 0 when nothing was
// computed since the form was opened.
class SindrMetabolica final : public EvaluationForm {
    Q_OBJECT

public:
    explicit SindrMetabolica(WorkingState &state);
    ~SindrMetabolica() override;

protected:
    void propose() override;
    void compute() override;
    QString withoutSex() const override;
    QString withoutBirth() const override;
    QString ageBand(int age) const override;
    QString inputRemark(const NumericEdit *edit) const override;
    QList<HistoryRow> history() override;
    bool showSaved(const QDateTime &when) override;
    const StoredEvaluation &storedAs() const override { return storedMetabolic(); }
    WriteResult save(const QDateTime &when, bool isNew, EvaluationVersions &versions) override;
    void inputsChanged() override;
    void load() override;
    void unloading() override;

private:
    // The fields of one measurement.
    struct Field {
        MetabolicItem item;
        NumericEdit *edit;
        QLabel *unit;
        PlausibleRange plausible;
        QLabel *threshold;
        QLabel *source;
        QString missing; // the warning when it has no value
        QString name; // in a sentence
    };

    void readThresholds();
    // Which of the shown values lie beyond the region's thresholds, and how many.
    void showThresholds();
    QString criteriaLine(const MetabolicMeasurements &measurements) const;
    const Field &field(MetabolicItem item) const { return m_fields.at(std::size_t(item)); }

    std::unique_ptr<Ui::SindrMetabolicaInputs> m_inputs;
    std::array<Field, metabolicItemCount> m_fields;
    std::optional<MetabolicThresholds> m_thresholds;
    MetabolicEvaluation m_computed;
    int m_verdict = 0; // last computed, for the host
};

} // namespace clivara
