// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QKeySequence>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace clivara {

class ChartForm;
struct WorkingState;

using FormFactory = std::function<std::unique_ptr<ChartForm>(WorkingState &)>;

template <typename Form>
std::unique_ptr<ChartForm> createForm(WorkingState &state)
{
    return std::make_unique<Form>(state);
}

// An action code of the host that opens a form.
struct FormAction {
    qint16 code = 0;
    // The parameter for which the code opens this form; without it, whatever no other form takes.
    std::optional<double> onlyFor = {};
    // What is set before the form is shown; may throw dao::Error.
    void (*prepare)(WorkingState &state, const QVariant &param) = nullptr;
};

// Where a doctor looks for a section; in the order of the host's menus.
enum class SectionKind { Record, History, Risk, Calculators, Stays, Sheets };

// All that is known of a form outside its own files. The dispatch, the launcher of the general information, the host's
// menus and the picture tour read it here.
struct FormRow {
    QString name = {}; // the form's own ("calcLDL")
    FormFactory create = {}; // empty: a form that this build does not have
    std::vector<FormAction> actions = {};
    int unloadOrder = 0; // its place among the forms that the host's code 99 unloads, from 1; 0: it stays
    // Of a section; without a kind only other forms open it.
    std::optional<SectionKind> kind = {};
    QString title = {}; // with its mnemonic, of which the launcher has each letter once
    // Of a section that the host offers itself; its action is the last one.
    QString icon = {}; // the resource's name without folder and ".svg"
    QKeySequence key = {};
};

// The forms of the chart, each once.
class FormRegistry {
public:
    FormRegistry() = default;
    explicit FormRegistry(std::vector<FormRow> rows)
        : m_rows(std::move(rows))
    {
    }

    std::span<const FormRow> rows() const { return m_rows; }
    const FormRow *find(const QString &name) const; // null when there is none
    bool isBuilt(const QString &name) const;

    struct Opened {
        const FormRow *form = nullptr; // null: the code opens nothing
        const FormAction *action = nullptr;
    };
    // What a code opens with its parameter (an invalid variant when none was given).
    Opened opened(qint16 code, const QVariant &param) const;
    // True when the code opens a form of this build, whatever its parameter.
    bool opens(qint16 code) const;
    // The names of the forms that the host's code 99 unloads, in that order.
    QStringList unloadOrder() const;

private:
    std::vector<FormRow> m_rows;
};

// An action's parameter as a number: a text is read up to its first character that is no number, nothing is 0.
double parameterNumber(const QVariant &param);
// The same rounded; dao::Error (Overflow) when it is out of range.
qint16 shortParameter(const QVariant &param);
qint32 longParameter(const QVariant &param);

} // namespace clivara
