// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "history/QuestionnaireForm.h"

#include <memory>

namespace Ui {
class Allergie;
}

namespace clivara {

// The patient's allergies: the allergens of the catalogue, and others as free text. Closing asks when something has
// changed, which a patient without a stored code always has.
class Allergie final : public QuestionnaireForm {
    Q_OBJECT

public:
    Allergie(WorkingState &state, std::shared_ptr<QString> loadedCode);
    ~Allergie() override;

protected:
    void load() override;
    bool queryUnload() override;
    void unloading() override;
    WriteResult write() override;
    RecordConflict conflict() const override;
    void keepMine() override;

private:
    void loadFreeText();
    void noteUnreadText();
    bool askAndSave();
    bool saveAll();
    bool isTextReplaced(const std::optional<QString> &stored) const;
    QString freeTextToWrite() const;
    void showSelection();
    void showSearch();

    std::unique_ptr<Ui::Allergie> m_ui;
    bool m_textChanged = false;
    bool m_textRefused = false; // by the last save: the patient has no general information
    std::optional<QString> m_readText, m_textElsewhere; // as it was read, and as a save found it stored
    QString m_shownCode; // what the boxes say as long as none is touched
    QString m_unreadText; // stored, but not shown: see load()
};

} // namespace clivara
