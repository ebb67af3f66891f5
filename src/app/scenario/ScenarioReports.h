// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "app/scenario/JsonLine.h"
#include "app/scenario/ScenarioPrompts.h"

#include <QVariant>

class QWidget;

namespace clivara {
class ChartForm;
struct PatientHeader;
} // namespace clivara
namespace dao {
class Database;
}

// The lines that a scenario prints.
namespace orvale {

// `form` may be null: nothing is open.
JsonLine formReport(const clivara::ChartForm *form);
// `name` is the control's name as the scenario writes it.
JsonLine controlReport(const QString &name, const QWidget &control);
JsonLine rowsReport(const QString &name, const QWidget &control);
JsonLine boxesReport(const QList<ScenarioPrompts::Box> &boxes);
// The values as they stand in the header, filled with blanks to their width.
JsonLine headerReport(const clivara::PatientHeader &header);
// A setting that is not there is null.
JsonLine settingReport(const QString &name, const QVariant &value);
// The rows of a SELECT. Null is null, Yes/No true or false, a number a number, a date
// "YYYY-MM-DD HH:MM:SS"; bytes are written in hexadecimal. Throws dao::Error.
JsonLine queryReport(dao::Database &database, const QString &sql);

} // namespace orvale
