// SPDX-License-Identifier: Apache-2.0
#include "app/commands/CommandLine.h"
#include "app/commands/Program.h"

#include <QRegularExpression>
#include <algorithm>
#include <cstdio>

namespace orvale {

namespace {

// Why the parser has refused the arguments; its own text is English. Only the last argument can lack its
// value.
QString parserError(const QCommandLineParser &parser, const QList<QCommandLineOption> &options,
                    const QStringList &arguments)
{
    if (const QStringList unknown = parser.unknownOptionNames(); !unknown.isEmpty()) {
        const QString dashes = unknown.first().size() == 1 ? QStringLiteral("-") : QStringLiteral("--");
        return QStringLiteral("Opzione sconosciuta: %1. Vedere --help.").arg(dashes + unknown.first());
    }
    for (const QCommandLineOption &option : options) {
        const QString name = QStringLiteral("--") + option.names().first();
        if (option.valueName().isEmpty() && !arguments.filter(name + u'=').isEmpty())
            return QStringLiteral("L'opzione %1 non vuole un valore.").arg(name);
        if (!option.valueName().isEmpty() && arguments.last() == name)
            return QStringLiteral("All'opzione %1 manca il valore (%2).").arg(name, option.valueName());
    }
    return parser.errorText();
}

} // namespace

CommandLine::CommandLine(const QString &synopsis, const QString &description)
    : m_synopsis(synopsis)
    , m_description(description)
{
}

void CommandLine::addOption(const QString &name, const QString &valueName, const QString &text)
{
    m_options.append(QCommandLineOption(name, text, valueName));
    m_parser->addOption(m_options.last());
}

void CommandLine::addArgument(const QString &name, const QString &text)
{
    m_parameters.append({name, text});
}

bool CommandLine::parse(const QStringList &arguments)
{
    if (asksForHelp(arguments)) {
        printLine(help());
        return false;
    }
    if (!m_parser->parse(QStringList{QStringLiteral("orvale")} + arguments))
        throw UsageError(parserError(*m_parser, m_options, arguments));
    const QStringList given = m_parser->positionalArguments();
    if (given.size() < m_parameters.size())
        throw UsageError(QStringLiteral("Manca l'argomento %1. Uso: orvale %2")
                             .arg(m_parameters.at(given.size()).name, m_synopsis));
    if (given.size() > m_parameters.size())
        throw UsageError(QStringLiteral("Argomento di troppo: %1. Uso: orvale %2")
                             .arg(given.at(m_parameters.size()), m_synopsis));
    return true;
}

int CommandLine::number(const QString &option, int missing, int least, int most) const
{
    if (!isSet(option))
        return missing;
    bool valid = false;
    const int number = value(option).toInt(&valid);
    if (!valid || number < least || number > most)
        throw UsageError(QStringLiteral("--%1 vuole un numero intero da %2 a %3, non \"%4\".")
                             .arg(option)
                             .arg(least)
                             .arg(most)
                             .arg(value(option)));
    return number;
}

QDate CommandLine::date(const QString &option, QDate missing) const
{
    if (!isSet(option))
        return missing;
    const QDate date = QDate::fromString(value(option), QStringLiteral("yyyy-MM-dd"));
    if (!date.isValid())
        throw UsageError(
            QStringLiteral("--%1 vuole una data AAAA-MM-GG, non \"%2\".").arg(option, value(option)));
    return date;
}

QString CommandLine::help() const
{
    QList<Row> rows = m_parameters;
    for (const QCommandLineOption &option : m_options)
        rows.append({QStringLiteral("--%1 %2").arg(option.names().first(), option.valueName()).trimmed(),
                     option.description()});
    rows.append({QStringLiteral("--help"), QStringLiteral("mostra questo aiuto")});
    qsizetype width = 0;
    for (const Row &row : rows)
        width = std::max(width, row.name.size());
    QString text = QStringLiteral("Uso: orvale %1\n\n%2\n\n").arg(m_synopsis, m_description);
    for (const Row &row : rows)
        text += QStringLiteral("  %1  %2\n").arg(row.name.leftJustified(width), row.text);
    text.chop(1);
    return text;
}

void printError(const QString &line)
{
    // An address that was mistaken for something else may hold a password.
    static const QRegularExpression password(QStringLiteral("(postgresql://[^/@\\s:]*):[^/@\\s]*@"),
                                             QRegularExpression::CaseInsensitiveOption);
    const QString shown = QString(line).replace(password, QStringLiteral("\\1@"));
    std::fprintf(stderr, "%s\n", shown.toUtf8().constData());
}

void printLine(const QString &line)
{
    std::fprintf(stdout, "%s\n", line.toUtf8().constData());
    std::fflush(stdout);
}

} // namespace orvale
