// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/import/Import.h"

#include <QDialog>
#include <memory>

namespace Ui {
class ImportSummary;
}

namespace orvale {

// What came out of an import: whether everything arrived, in words and with an icon; what did not, set apart;
// the report as text that can be copied. Accepted when the doctor wants to open the imported practice.
class ImportSummary final : public QDialog {
    Q_OBJECT

public:
    explicit ImportSummary(const ImportReport &report, QWidget *parent = nullptr);
    ~ImportSummary() override;

private:
    std::unique_ptr<Ui::ImportSummary> m_ui;
};

// What has to be looked at, one line each: why rows of a table were refused, how a table differs from its
// source, where the practice is kept that should have given way. Empty when the report agrees.
QStringList attentionLines(const ImportReport &report);

} // namespace orvale
