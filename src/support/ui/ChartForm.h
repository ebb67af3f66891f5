// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDialog>

class QVBoxLayout;

namespace clivara {

struct PatientHeader;
class PatientStrip;

// The frame of every form of the chart: the patient at the top, Esc and the exit button close, one instance that
// is loaded at each showing and unloaded at each closing.
class ChartForm : public QDialog {
    Q_OBJECT

public:
    // `name` is the form's own name ("calcLDL"), used by scenarios, the log and Action 99.
    ChartForm(const QString &name, const PatientHeader &header, QWidget *parent = nullptr);
    ~ChartForm() override;

    // Loads the form and shows it until the doctor closes it. An error in load() passes on to the caller.
    void showModal();
    // Closes without asking and without a window: what the host does with forms it no longer needs.
    void unload();
    bool isLoaded() const { return m_loaded; }

signals:
    void loaded(); // after load(), before the form is visible

protected:
    // Sets the caption's and controls' values from the data; runs at each showing.
    virtual void load() = 0;
    // Asked before closing; false keeps the form open.
    virtual bool queryUnload() { return true; }
    // The form goes away: saves what is saved on closing and writes the host's mailbox.
    virtual void unloading() { }

    // Puts the widget of the form's .ui file below the patient strip.
    QWidget *contents() const { return m_contents; }

    void reject() override;
    void closeEvent(QCloseEvent *event) override;

private:
    void finish();

    PatientStrip *m_strip;
    QWidget *m_contents;
    const PatientHeader &m_header;
    bool m_loaded = false;
};

} // namespace clivara
