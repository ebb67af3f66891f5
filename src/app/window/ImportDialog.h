// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/import/Import.h"

#include <QDialog>
#include <memory>

namespace clivara {
class Prompts;
}
namespace Ui {
class ImportDialog;
}

namespace orvale {

// Asks what an import needs to know, runs it with a bar and shows what came out. When something is wrong, the
// doctor is told and finds what was typed as it was.
class ImportDialog final : public QDialog {
    Q_OBJECT

public:
    // importPractice, unless a test puts another in its place. Runs in another thread.
    using Importer = std::function<ImportReport(const ImportOptions &,
                                                const std::function<void(const ImportProgress &)> &)>;

    // `openPractice`: the folder or the address of the practice that the window has open; never imported
    // over. The prompts must outlive the dialog.
    ImportDialog(const QString &openPractice, clivara::Prompts &prompts, Importer importer,
                 QWidget *parent = nullptr);
    ~ImportDialog() override;

    // After an accepted dialog: the imported practice, which the doctor wants to open.
    QString practiceToOpen() const { return m_practiceToOpen; }
    QString region() const; // the two digits that were chosen; empty for none

    // A folder beside `openPractice`, or at home when that is on a server, that does not exist yet.
    static QString proposedTarget(const QString &openPractice);
    // Where an import goes when the doctor picks `folder`: into it when it is empty or holds a practice,
    // else into a new folder inside it.
    static QString targetWithin(const QString &folder);

private:
    void browseSource();
    void browseTarget();
    void explainReplace();
    void import();
    // False when something is missing or must not be; the doctor knows and the field has the focus.
    bool acceptsFields(const ImportOptions &options);
    ImportOptions options() const;

    QString m_openPractice;
    clivara::Prompts &m_prompts;
    Importer m_importer;
    std::unique_ptr<Ui::ImportDialog> m_ui;
    QString m_practiceToOpen;
};

} // namespace orvale
