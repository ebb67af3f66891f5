// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDialog>
#include <exception>

namespace clivara {

class Clock;
class PatientStrip;
struct PatientHeader;

// The frame of every form of the chart: the patient at the top, Esc, the exit button and the window's close
// button all close in the same way, one instance that is loaded at each showing and unloaded at each closing.
class ChartForm : public QDialog {
    Q_OBJECT

public:
    // `name` is the form's own name ("calcLDL"), used by scenarios, the log and Action 99. Header and clock
    // must outlive the form: the strip is filled from them at each showing.
    ChartForm(const QString &name, const PatientHeader &header, const Clock &clock,
              QWidget *parent = nullptr);
    ~ChartForm() override;

    // Loads the form and shows it until the doctor closes it. An error of load(), queryUnload() or
    // unloading() passes on to the caller and leaves the form unloaded. Nothing happens while the form is
    // already open.
    void showModal();
    // Closes without asking, also when there is no window: what the host does with forms it no longer needs.
    // A form that is not loaded has nothing to unload.
    void unload();
    // Closes without saving and without telling the host, as if the form had never been opened.
    void abandon();
    bool isLoaded() const { return m_loaded; }

    // The usual size, where the form has one of its own.
    QSize sizeHint() const override;

signals:
    void loaded(); // after load(), before the form is visible

protected:
    // Sets the caption's and controls' values from the data; runs at each showing.
    virtual void load() = 0;
    // Asked before closing; false keeps the form open.
    virtual bool queryUnload() { return true; }
    // The form goes away: saves what is saved on closing and writes the host's mailbox.
    virtual void unloading() { }

    // The form's size, where the screen has room for it beside the window's frame; else as much of it as
    // there is room for. A doctor who drags the window to another size finds it so again.
    void setUsualSize(QSize size);

    // Shows in the strip what the header says now: it is filled at each showing, and by whom the header has
    // changed.
    void showPatient();

    // Holds the widget of the form's .ui file, below the patient strip.
    QWidget *contents() const { return m_contents; }

    // Esc, the exit button and the window's close button end here.
    void reject() override;

private:
    void finish();
    void fitOnScreen(const QWidget *host);

    const PatientHeader &m_header;
    const Clock &m_clock;
    PatientStrip *m_strip;
    QWidget *m_contents;
    QSize m_usualSize;
    bool m_loaded = false;
    std::exception_ptr m_failure; // of the closing, carried past the event loop
};

} // namespace clivara
