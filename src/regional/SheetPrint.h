// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>

class QByteArray;
class QPagedPaintDevice;

namespace clivara {

class SheetData;
struct WorkingState;

// What stands around the values on paper.
struct SheetPaper {
    QStringList heading; // the practice's lines; empty ones are left out
    QStringList patient; // the patient's lines
    qint32 number = 0;
    QDate date; // of the sheet
};

// The heading of the practice (or of the doctor, where it has none) and the current patient.
SheetPaper sheetPaper(const WorkingState &state, qint32 number, QDate date);

// The sheet as rich text. A field without a value has a dash.
QString sheetHtml(const SheetData &data, const SheetPaper &paper);

// Lays the sheet out on the pages of the device.
void printSheet(const SheetData &data, const SheetPaper &paper, QPagedPaintDevice &device);

// The sheet as a PDF file on A4.
QByteArray sheetPdf(const SheetData &data, const SheetPaper &paper);

} // namespace clivara
