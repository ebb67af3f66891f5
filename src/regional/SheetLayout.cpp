// SPDX-License-Identifier: Apache-2.0
#include "regional/SheetLayout.h"

#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <algorithm>
#include <vector>

// In the global namespace, as Qt's macro wants it: a static library's resources have to be asked for.
static void loadLayoutFiles()
{
    Q_INIT_RESOURCE(layouts);
}

namespace clivara {

namespace {

constexpr int dateWidth = 8;
constexpr int totalWidth = 2;

const QHash<QString, SheetFieldKind> &kinds()
{
    static const QHash<QString, SheetFieldKind> names{
        {QStringLiteral("elenco"), SheetFieldKind::List},   {QStringLiteral("testo"), SheetFieldKind::Text},
        {QStringLiteral("numero"), SheetFieldKind::Number}, {QStringLiteral("data"), SheetFieldKind::Date},
        {QStringLiteral("totale"), SheetFieldKind::Total},  {QStringLiteral("fascia"), SheetFieldKind::Band},
        {QStringLiteral("riserva"), SheetFieldKind::Kept},  {QStringLiteral("copia"), SheetFieldKind::Copy},
        {QStringLiteral("segno"), SheetFieldKind::Mark},
    };
    return names;
}

// "A", or "A" in quotes where blanks at its ends count.
QString unquoted(const QString &text)
{
    const bool isQuoted = text.size() >= 2 && text.startsWith(u'"') && text.endsWith(u'"');
    return isQuoted ? text.mid(1, text.size() - 2) : text;
}

class LayoutParser {
public:
    SheetLayout parse(const QString &text);

private:
    [[noreturn]] void refuse(const QString &reason) const
    {
        throw LayoutError(QStringLiteral("line %1: %2").arg(m_line).arg(reason).toStdString());
    }
    void readLine(const QStringList &cells);
    void readField(const QStringList &cells);
    void readEntries(SheetField &field, const QString &text);
    SheetSource readSource(const QString &text) const;
    int readNumber(const QString &text) const;
    void finish(SheetField &field) const;
    void checkPlaces();

    SheetLayout m_layout;
    int m_line = 0;
    int m_default = 0; // the entry of the current list that is marked
};

int LayoutParser::readNumber(const QString &text) const
{
    bool valid = false;
    const int number = text.toInt(&valid);
    if (!valid || number < 0)
        refuse(QStringLiteral("\"%1\" is no number").arg(text));
    return number;
}

void LayoutParser::readEntries(SheetField &field, const QString &text)
{
    m_default = 0;
    const QStringList entries = text.split(QStringLiteral(" / "));
    for (QString entry : entries) {
        SheetEntry read;
        const qsizetype equals = entry.indexOf(QStringLiteral(" = "));
        if (equals >= 0) {
            read.points = readNumber(entry.mid(equals + 3).trimmed());
            entry.truncate(equals);
        }
        read.text = entry.trimmed();
        if (read.text.startsWith(u'*')) {
            m_default = int(field.entries.size());
            read.text.remove(0, 1);
        }
        if (read.text.isEmpty())
            refuse(QStringLiteral("an entry without text"));
        field.entries.append(read);
    }
    if (field.entries.size() > 10)
        refuse(QStringLiteral("more than ten entries do not fit one digit"));
}

SheetSource LayoutParser::readSource(const QString &text) const
{
    if (text.isEmpty())
        return {};
    static const QRegularExpression call(QStringLiteral("^([a-z0-9]+)\\((.*)\\)$"));
    const auto match = call.match(text);
    if (!match.hasMatch())
        refuse(QStringLiteral("\"%1\" is no source").arg(text));
    SheetSource source{match.captured(1), {}};
    const QString arguments = match.captured(2).trimmed();
    // The name of a group may hold commas: a source of points has one argument.
    if (source.name == QLatin1String("punti") && !arguments.isEmpty()) {
        source.arguments.append(arguments);
    } else {
        for (const QString &argument : arguments.split(u',', Qt::SkipEmptyParts))
            source.arguments.append(argument.trimmed());
    }
    return source;
}

// What an empty field is in the string, and whether its width fits its kind.
void LayoutParser::finish(SheetField &field) const
{
    int width = field.width;
    switch (field.kind) {
    case SheetFieldKind::List:
    case SheetFieldKind::Band:
        width = 1;
        if (field.entries.isEmpty())
            refuse(QStringLiteral("a list without entries"));
        if (field.blank.isEmpty())
            field.blank = QString::number(m_default);
        break;
    case SheetFieldKind::Number:
    case SheetFieldKind::Copy: {
        static const QRegularExpression pattern(QStringLiteral("^0+([.,]0+)?$"));
        if (!pattern.match(field.pattern).hasMatch())
            refuse(QStringLiteral("\"%1\" is no pattern of a number").arg(field.pattern));
        width = int(field.pattern.size());
        if (field.blank.isEmpty())
            field.blank = field.pattern;
        break;
    }
    case SheetFieldKind::Date:
        width = dateWidth;
        break;
    case SheetFieldKind::Total:
        width = totalWidth;
        field.blank = QString(width, u'0');
        break;
    case SheetFieldKind::Mark:
        if (field.blank.isEmpty())
            refuse(QStringLiteral("a mark without characters"));
        break;
    case SheetFieldKind::Text:
    case SheetFieldKind::Kept:
        break;
    }
    if (field.blank.isEmpty())
        field.blank = QString(width, u' ');
    if (field.width != width || field.blank.size() != width || width == 0)
        refuse(QStringLiteral("the field %1 has another width").arg(field.name));
}

void LayoutParser::readField(const QStringList &cells)
{
    if (cells.size() < 5)
        refuse(QStringLiteral("a field has position, width, kind, name and caption"));
    SheetField field;
    field.position = readNumber(cells[0]);
    field.width = readNumber(cells[1]);
    if (!kinds().contains(cells[2]))
        refuse(QStringLiteral("unknown kind \"%1\"").arg(cells[2]));
    field.kind = kinds().value(cells[2]);
    field.name = cells[3];
    field.caption = cells[4];
    if (m_layout.indexOf(field.name) >= 0)
        refuse(QStringLiteral("the name %1 is there twice").arg(field.name));
    if (m_layout.groups.isEmpty())
        refuse(QStringLiteral("a field before the first group"));
    field.group = m_layout.groups.last();
    const QString shape = cells.value(5);
    if (field.kind == SheetFieldKind::Number || field.kind == SheetFieldKind::Copy)
        field.pattern = shape;
    else if (!shape.isEmpty())
        readEntries(field, shape);
    field.source = readSource(cells.value(6));
    field.blank = unquoted(cells.value(7));
    finish(field);
    m_layout.fields.append(field);
}

void LayoutParser::readLine(const QStringList &cells)
{
    if (cells[0] == QLatin1String("scheda") && cells.size() == 5) {
        m_layout.type = readNumber(cells[1]);
        m_layout.form = cells[2];
        m_layout.listText = cells[3];
        m_layout.caption = cells[4];
    } else if (cells[0] == QLatin1String("criteri") && cells.size() == 2) {
        m_layout.criteria = cells[1];
    } else if (cells[0] == QLatin1String("prima") && cells.size() == 2) {
        m_layout.earlierLength = readNumber(cells[1]);
    } else if (cells[0] == QLatin1String("gruppo") && cells.size() == 2) {
        m_layout.groups.append(cells[1]);
    } else {
        readField(cells);
    }
}

void LayoutParser::checkPlaces()
{
    QList<const SheetField *> fields;
    for (const SheetField &field : m_layout.fields)
        fields.append(&field);
    std::sort(fields.begin(), fields.end(),
              [](const SheetField *a, const SheetField *b) { return a->position < b->position; });
    int next = 1;
    for (const SheetField *const field : fields) {
        if (field->position != next)
            refuse(
                QStringLiteral("%1 stands at %2, not at %3").arg(field->name).arg(field->position).arg(next));
        next += field->width;
    }
    m_layout.length = next - 1;
    if (m_layout.earlierLength >= m_layout.length)
        refuse(QStringLiteral("earlier strings were shorter"));
    for (const SheetField &field : m_layout.fields) {
        if (field.kind == SheetFieldKind::Copy && m_layout.indexOf(field.source.arguments.value(0)) < 0)
            refuse(QStringLiteral("%1 is a copy of no field").arg(field.name));
    }
}

SheetLayout LayoutParser::parse(const QString &text)
{
    for (const QString &line : text.split(u'\n')) {
        ++m_line;
        if (line.trimmed().isEmpty() || line.startsWith(u'#'))
            continue;
        QStringList cells = line.split(u'|');
        for (QString &cell : cells)
            cell = cell.trimmed();
        readLine(cells);
    }
    if (m_layout.form.isEmpty() || m_layout.fields.isEmpty())
        refuse(QStringLiteral("a layout has a line \"scheda\" and fields"));
    checkPlaces();
    return m_layout;
}

std::vector<SheetLayout> readLayouts()
{
    loadLayoutFiles();
    std::vector<SheetLayout> layouts;
    const QDir folder(QStringLiteral(":/clivara/layouts"));
    for (const QString &name : folder.entryList()) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            throw LayoutError("a layout file cannot be read");
        layouts.push_back(parseSheetLayout(QString::fromUtf8(file.readAll())));
    }
    std::sort(layouts.begin(), layouts.end(),
              [](const SheetLayout &a, const SheetLayout &b) { return a.type < b.type; });
    return layouts;
}

} // namespace

bool isShown(SheetFieldKind kind)
{
    return kind != SheetFieldKind::Kept && kind != SheetFieldKind::Copy && kind != SheetFieldKind::Mark;
}

int SheetLayout::indexOf(const QString &name) const
{
    const auto found = std::find_if(fields.begin(), fields.end(),
                                    [&](const SheetField &field) { return field.name == name; });
    return found == fields.end() ? -1 : int(found - fields.begin());
}

SheetLayout parseSheetLayout(const QString &text)
{
    return LayoutParser().parse(text);
}

std::span<const SheetLayout> sheetLayouts()
{
    static const std::vector<SheetLayout> layouts = readLayouts();
    return layouts;
}

const SheetLayout *sheetLayout(int type)
{
    const auto layouts = sheetLayouts();
    const auto found = std::find_if(layouts.begin(), layouts.end(),
                                    [type](const SheetLayout &layout) { return layout.type == type; });
    return found == layouts.end() ? nullptr : &*found;
}

QString sheetTypeText(int type)
{
    const SheetLayout *const layout = sheetLayout(type);
    return layout ? layout->listText : QString();
}

} // namespace clivara
