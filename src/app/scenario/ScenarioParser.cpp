// SPDX-License-Identifier: Apache-2.0
#include "app/scenario/ScenarioParser.h"

#include "app/practice/UserError.h"

#include <QKeySequence>
#include <algorithm>
#include <limits>
#include <optional>

namespace orvale {

namespace {

// What stands behind a command's name.
enum class Shape {
    Nothing,
    Control,
    ControlText,
    ControlRow,
    Date,
    Patient,
    Action,
    Key,
    Answer,
    Picture,
    Setting,
    Assignment,
    Query,
    Routine,
};

struct Grammar {
    const char16_t *name;
    ScenarioCommand command;
    Shape shape;
};

constexpr Grammar grammar[] = {
    {u"today", ScenarioCommand::Today, Shape::Date},
    {u"setting", ScenarioCommand::Setting, Shape::Assignment},
    {u"get", ScenarioCommand::Get, Shape::Setting},
    {u"patient", ScenarioCommand::Patient, Shape::Patient},
    {u"action", ScenarioCommand::Action, Shape::Action},
    {u"type", ScenarioCommand::Type, Shape::ControlText},
    {u"choose", ScenarioCommand::Choose, Shape::ControlText},
    {u"check", ScenarioCommand::Check, Shape::Control},
    {u"uncheck", ScenarioCommand::Uncheck, Shape::Control},
    {u"click", ScenarioCommand::Click, Shape::Control},
    {u"select", ScenarioCommand::Select, Shape::ControlRow},
    {u"dblclick", ScenarioCommand::DoubleClick, Shape::ControlRow},
    {u"key", ScenarioCommand::Key, Shape::Key},
    {u"answer", ScenarioCommand::Answer, Shape::Answer},
    {u"close", ScenarioCommand::Close, Shape::Nothing},
    {u"form", ScenarioCommand::Form, Shape::Nothing},
    {u"show", ScenarioCommand::Show, Shape::Control},
    {u"rows", ScenarioCommand::Rows, Shape::Control},
    {u"boxes", ScenarioCommand::Boxes, Shape::Nothing},
    {u"header", ScenarioCommand::Header, Shape::Nothing},
    {u"extract", ScenarioCommand::Extract, Shape::Routine},
    {u"sql", ScenarioCommand::Sql, Shape::Query},
    {u"exec", ScenarioCommand::Exec, Shape::Query},
    {u"shot", ScenarioCommand::Shot, Shape::Picture},
    {u"expect", ScenarioCommand::Expect, Shape::ControlText},
};

// In free text '#' is an ordinary character: colours and the dates of a query are written with it.
bool hasFreeText(Shape shape)
{
    switch (shape) {
    case Shape::ControlText:
    case Shape::Assignment:
    case Shape::Query:
    case Shape::Routine:
        return true;
    default:
        return false;
    }
}

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t';
}

bool isQuoted(const QString &text)
{
    return text.size() >= 2 && text.startsWith(u'"') && text.endsWith(u'"');
}

QString unquoted(const QString &text)
{
    return isQuoted(text) ? text.mid(1, text.size() - 2) : text;
}

class LineParser {
public:
    LineParser(int number, const QString &line)
        : m_rest(line)
    {
        m_line.number = number;
    }

    ScenarioLine parse();

private:
    [[noreturn]] void refuse(const QString &reason) const
    {
        throw UserError(QStringLiteral("riga %1: %2").arg(m_line.number).arg(reason));
    }
    // The next word; empty at the end of the line. The rest stands without the blanks before it.
    QString word();
    QString neededWord(const QString &what);
    QString neededRest(const QString &what) const;
    int number(const QString &text, int least, int most, const QString &what) const;
    void noMore() const;
    void readArguments(Shape shape);
    void readAction();
    void readAssignment();
    void readQuery();

    ScenarioLine m_line;
    QString m_rest;
};

QString LineParser::word()
{
    const auto end = std::find_if(m_rest.cbegin(), m_rest.cend(), isBlank);
    const auto next = std::find_if_not(end, m_rest.cend(), isBlank);
    const QString found = m_rest.left(end - m_rest.cbegin());
    m_rest = m_rest.mid(next - m_rest.cbegin());
    return found;
}

QString LineParser::neededWord(const QString &what)
{
    const QString found = word();
    if (found.isEmpty())
        refuse(QStringLiteral("manca %1").arg(what));
    return found;
}

QString LineParser::neededRest(const QString &what) const
{
    if (m_rest.isEmpty())
        refuse(QStringLiteral("manca %1").arg(what));
    return m_rest;
}

int LineParser::number(const QString &text, int least, int most, const QString &what) const
{
    bool valid = false;
    const int value = text.toInt(&valid);
    if (!valid || value < least || value > most)
        refuse(QStringLiteral("%1 non valido: %2").arg(what, text));
    return value;
}

void LineParser::noMore() const
{
    if (!m_rest.isEmpty())
        refuse(QStringLiteral("testo di troppo: %1").arg(m_rest));
}

void LineParser::readAction()
{
    m_line.count =
        number(neededWord(QStringLiteral("il codice dell'azione")), std::numeric_limits<qint16>::min(),
               std::numeric_limits<qint16>::max(), QStringLiteral("codice dell'azione"));
    if (m_rest.isEmpty())
        return;
    bool isNumber = false;
    const int value = m_rest.toInt(&isNumber);
    m_line.parameter = isNumber ? QVariant(value) : QVariant(unquoted(m_rest));
}

void LineParser::readAssignment()
{
    const qsizetype equals = m_rest.indexOf(u'=');
    if (equals < 0)
        refuse(QStringLiteral("manca il segno = dopo il nome dell'impostazione"));
    m_line.name = unquoted(m_rest.left(equals).trimmed());
    if (m_line.name.isEmpty())
        refuse(QStringLiteral("manca il nome dell'impostazione"));
    // Nothing after the sign empties the setting.
    m_line.text = unquoted(m_rest.mid(equals + 1).trimmed());
}

void LineParser::readQuery()
{
    m_line.name = neededWord(QStringLiteral("il nome dell'archivio"));
    if (!scenarioDatabases().contains(m_line.name))
        refuse(QStringLiteral("archivio sconosciuto: %1 (ci sono %2)")
                   .arg(m_line.name, scenarioDatabases().join(QStringLiteral(", "))));
    m_line.text = neededRest(QStringLiteral("il testo SQL"));
}

void LineParser::readArguments(Shape shape)
{
    const auto control = [this] { return neededWord(QStringLiteral("il nome del controllo")); };
    switch (shape) {
    case Shape::Nothing:
        noMore();
        return;
    case Shape::Control:
        m_line.name = control();
        noMore();
        return;
    case Shape::ControlText:
        m_line.name = control();
        m_line.text = unquoted(neededRest(QStringLiteral("il testo (\"\" per il testo vuoto)")));
        return;
    case Shape::ControlRow:
        m_line.name = control();
        m_line.count = number(neededWord(QStringLiteral("il numero della riga")), 0,
                              std::numeric_limits<int>::max(), QStringLiteral("numero di riga"));
        noMore();
        return;
    case Shape::Date: {
        const QString date = neededWord(QStringLiteral("la data"));
        m_line.date = QDate::fromString(date, QStringLiteral("yyyy-MM-dd"));
        if (!m_line.date.isValid())
            refuse(QStringLiteral("la data si scrive AAAA-MM-GG, non %1").arg(date));
        noMore();
        return;
    }
    case Shape::Patient:
        m_line.count = number(neededWord(QStringLiteral("il codice del paziente")), -1,
                              std::numeric_limits<int>::max(), QStringLiteral("codice del paziente"));
        noMore();
        return;
    case Shape::Action:
        readAction();
        return;
    case Shape::Key:
        m_line.name = neededWord(QStringLiteral("il tasto"));
        noMore();
        if (const QKeySequence keys(m_line.name, QKeySequence::PortableText);
            keys.count() != 1 || keys[0].key() == Qt::Key_unknown)
            refuse(QStringLiteral("tasto sconosciuto: %1").arg(m_line.name));
        return;
    case Shape::Answer:
        m_line.name = neededWord(QStringLiteral("la risposta"));
        noMore();
        if (!QStringList{QStringLiteral("Yes"), QStringLiteral("No"), QStringLiteral("Ok"),
                         QStringLiteral("Cancel")}
                 .contains(m_line.name))
            refuse(QStringLiteral("risposta sconosciuta: %1 (ci sono Yes, No, Ok, Cancel)").arg(m_line.name));
        return;
    case Shape::Picture:
        m_line.name = neededWord(QStringLiteral("il nome dell'immagine"));
        noMore();
        if (m_line.name.contains(u'/') || m_line.name.contains(u'\\'))
            refuse(
                QStringLiteral("il nome di un'immagine non può contenere una cartella: %1").arg(m_line.name));
        return;
    case Shape::Setting:
        m_line.name = unquoted(neededRest(QStringLiteral("il nome dell'impostazione")));
        return;
    case Shape::Assignment:
        readAssignment();
        return;
    case Shape::Query:
        readQuery();
        return;
    case Shape::Routine:
        m_line.name = neededWord(QStringLiteral("il nome della routine"));
        m_line.text = m_rest;
        return;
    }
}

ScenarioLine LineParser::parse()
{
    const QString command = word();
    const auto known = std::find_if(std::begin(grammar), std::end(grammar),
                                    [&](const Grammar &entry) { return command == QStringView(entry.name); });
    if (known == std::end(grammar))
        refuse(QStringLiteral("comando sconosciuto: %1").arg(command));
    if (!hasFreeText(known->shape)) {
        for (qsizetype mark = m_rest.indexOf(u'#'); mark >= 0; mark = m_rest.indexOf(u'#', mark + 1)) {
            if (mark > 0 && !isBlank(m_rest.at(mark - 1)))
                continue;
            m_rest = m_rest.left(mark).trimmed();
            break;
        }
    }
    m_line.command = known->command;
    readArguments(known->shape);
    return m_line;
}

} // namespace

QStringList scenarioDatabases()
{
    return {QStringLiteral("clinical"), QStringLiteral("codes"), QStringLiteral("third"),
            QStringLiteral("doctors"),  QStringLiteral("local"), QStringLiteral("events")};
}

QList<ScenarioLine> parseScenario(const QString &text)
{
    QList<ScenarioLine> commands;
    int number = 0;
    const auto lines = QStringView(text).split(u'\n');
    for (const QStringView line : lines) {
        ++number;
        const QString trimmed = line.trimmed().toString();
        if (!trimmed.isEmpty() && !trimmed.startsWith(u'#'))
            commands.append(LineParser(number, trimmed).parse());
    }
    return commands;
}

} // namespace orvale
