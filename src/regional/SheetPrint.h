// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QDate>
#include <QString>

class QByteArray;
class QPagedPaintDevice;
class QWidget;

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

// Asks for a printer and prints; nothing when the doctor cancels.
void printOnPaper(const SheetData &data, const SheetPaper &paper, QWidget *window);
// Writes the PDF into the folder of the setting "CARTELLA_PDF", without one where the doctor says. The result is the
// file; empty when the doctor cancels, and when it cannot be written, of which the doctor is told.
QString savePdf(const WorkingState &state, const SheetData &data, const SheetPaper &paper, QWidget *window);

} // namespace clivara
