// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Tokenizer.h"

#include "jetsql/SqlErrors.h"

#include <array>

namespace dao::sql {
namespace {

struct Keyword {
    QStringView text;
    Word word;
};

// In alphabetical order, for the binary search.
constexpr std::array keywords = {
    Keyword{u"add", Word::Add},
    Keyword{u"all", Word::All},
    Keyword{u"alter", Word::Alter},
    Keyword{u"and", Word::And},
    Keyword{u"as", Word::As},
    Keyword{u"asc", Word::Asc},
    Keyword{u"between", Word::Between},
    Keyword{u"by", Word::By},
    Keyword{u"column", Word::Column},
    Keyword{u"constraint", Word::Constraint},
    Keyword{u"create", Word::Create},
    Keyword{u"delete", Word::Delete},
    Keyword{u"desc", Word::Desc},
    Keyword{u"disallow", Word::Disallow},
    Keyword{u"distinct", Word::Distinct},
    Keyword{u"distinctrow", Word::Distinctrow},
    Keyword{u"drop", Word::Drop},
    Keyword{u"exists", Word::Exists},
    Keyword{u"false", Word::False},
    Keyword{u"from", Word::From},
    Keyword{u"group", Word::Group},
    Keyword{u"having", Word::Having},
    Keyword{u"ignore", Word::Ignore},
    Keyword{u"in", Word::In},
    Keyword{u"index", Word::Index},
    Keyword{u"inner", Word::Inner},
    Keyword{u"insert", Word::Insert},
    Keyword{u"into", Word::Into},
    Keyword{u"is", Word::Is},
    Keyword{u"join", Word::Join},
    Keyword{u"key", Word::Key},
    Keyword{u"left", Word::Left},
    Keyword{u"like", Word::Like},
    Keyword{u"mod", Word::Mod},
    Keyword{u"no", Word::No},
    Keyword{u"not", Word::Not},
    Keyword{u"null", Word::Null},
    Keyword{u"off", Word::Off},
    Keyword{u"on", Word::On},
    Keyword{u"or", Word::Or},
    Keyword{u"order", Word::Order},
    Keyword{u"outer", Word::Outer},
    Keyword{u"percent", Word::Percent},
    Keyword{u"primary", Word::Primary},
    Keyword{u"right", Word::Right},
    Keyword{u"select", Word::Select},
    Keyword{u"set", Word::Set},
    Keyword{u"table", Word::Table},
    Keyword{u"top", Word::Top},
    Keyword{u"true", Word::True},
    Keyword{u"union", Word::Union},
    Keyword{u"unique", Word::Unique},
    Keyword{u"update", Word::Update},
    Keyword{u"values", Word::Values},
    Keyword{u"where", Word::Where},
    Keyword{u"with", Word::With},
    Keyword{u"xor", Word::Xor},
    Keyword{u"yes", Word::Yes},
};

bool isDigit(QChar c)
{
    return c >= u'0' && c <= u'9';
}

bool isBlank(QChar c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n' || c == QChar::Nbsp;
}

bool startsName(QChar c)
{
    return c == u'_' || c.isLetter();
}

Word keyword(QStringView name)
{
    char16_t lower[12];
    if (name.size() > qsizetype(std::size(lower)))
        return Word::None;
    for (qsizetype i = 0; i < name.size(); ++i) {
        const char16_t c = name[i].unicode();
        lower[i] = c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c;
    }
    const QStringView wanted(lower, name.size());
    const auto found = std::lower_bound(keywords.begin(), keywords.end(), wanted,
                                        [](const Keyword &k, QStringView text) { return k.text < text; });
    return found != keywords.end() && found->text == wanted ? found->word : Word::None;
}

class Cutter {
public:
    explicit Cutter(QStringView sql)
        : m_sql(sql)
    {
    }

    std::vector<Token> cut()
    {
        m_tokens.reserve(size_t(m_sql.size() / 4 + 8));
        while (true) {
            while (m_at < m_sql.size() && isBlank(m_sql[m_at]))
                ++m_at;
            m_from = m_at;
            if (m_at == m_sql.size())
                break;
            next();
        }
        Token end;
        end.source = m_sql.mid(m_sql.size());
        m_tokens.push_back(end);
        return std::move(m_tokens);
    }

private:
    QChar peek(qsizetype ahead = 0) const
    {
        return m_at + ahead < m_sql.size() ? m_sql[m_at + ahead] : QChar();
    }

    Token &add(TokenKind kind, QStringView text)
    {
        Token token;
        token.kind = kind;
        token.text = text;
        token.source = m_sql.mid(m_from, m_at - m_from);
        m_tokens.push_back(token);
        return m_tokens.back();
    }

    void next()
    {
        const QChar c = peek();
        if (startsName(c))
            name();
        else if (isDigit(c) || (c == u'.' && isDigit(peek(1)) && !afterName()))
            number();
        else if (c == u'\'' || c == u'"')
            text(c);
        else if (c == u'[')
            enclosed(TokenKind::BracketedName, u']');
        else if (c == u'`')
            enclosed(TokenKind::BracketedName, u'`');
        else if (c == u'#')
            enclosed(TokenKind::Date, u'#');
        else if (c == u'{')
            guid();
        else
            symbol(c);
    }

    bool afterName() const
    {
        if (m_tokens.empty())
            return false;
        const Token &last = m_tokens.back();
        return last.kind == TokenKind::BracketedName || last.kind == TokenKind::Name;
    }

    void name()
    {
        while (m_at < m_sql.size() && (startsName(m_sql[m_at]) || m_sql[m_at].isDigit()))
            ++m_at;
        const QStringView word = m_sql.mid(m_from, m_at - m_from);
        if (peek() == u'$') // mid$(...) is mid(...)
            ++m_at;
        add(TokenKind::Name, word).word = keyword(word);
    }

    void number()
    {
        const auto digits = [this] {
            while (isDigit(peek()))
                ++m_at;
        };
        digits();
        if (peek() == u'.') {
            ++m_at;
            digits();
        }
        if (peek().toLower() == u'e') {
            const qsizetype sign = peek(1) == u'+' || peek(1) == u'-' ? 2 : 1;
            if (isDigit(peek(sign))) {
                m_at += sign;
                digits();
            }
        }
        add(TokenKind::Number, m_sql.mid(m_from, m_at - m_from));
    }

    void text(QChar quote)
    {
        bool doubled = false;
        ++m_at;
        while (true) {
            if (m_at >= m_sql.size())
                throwSyntaxError(m_sql.mid(m_from));
            if (m_sql[m_at] == quote) {
                if (peek(1) != quote)
                    break;
                doubled = true;
                ++m_at;
            }
            ++m_at;
        }
        ++m_at;
        add(TokenKind::Text, m_sql.mid(m_from + 1, m_at - m_from - 2)).doubledQuotes = doubled;
    }

    void enclosed(TokenKind kind, QChar end)
    {
        const qsizetype close = m_sql.indexOf(end, m_at + 1);
        if (close < 0 || close == m_at + 1)
            throwSyntaxError(m_sql.mid(m_from));
        m_at = close + 1;
        add(kind, m_sql.mid(m_from + 1, close - m_from - 1));
    }

    // {guid {XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}}
    void guid()
    {
        const QStringView rest = m_sql.mid(m_at);
        const qsizetype open = rest.indexOf(u'{', 1);
        const qsizetype close = rest.indexOf(u'}');
        if (open < 0 || close < open
            || rest.mid(1, open - 1).trimmed().compare(u"guid", Qt::CaseInsensitive) != 0)
            throwSyntaxError(rest);
        qsizetype end = close + 1;
        while (end < rest.size() && isBlank(rest[end]))
            ++end;
        if (end >= rest.size() || rest[end] != u'}')
            throwSyntaxError(rest);
        m_at += end + 1;
        add(TokenKind::Guid, rest.mid(open + 1, close - open - 1));
    }

    void symbol(QChar c)
    {
        char16_t sign = c.unicode();
        const QChar following = peek(1);
        if (c == u'<' && following == u'=')
            sign = lessOrEqual;
        else if (c == u'<' && following == u'>')
            sign = notEqual;
        else if (c == u'>' && following == u'=')
            sign = greaterOrEqual;
        else if (!QStringView(u"+-*/\\^&=<>(),.!;").contains(c))
            throwSyntaxError(m_sql.mid(m_from));
        m_at += sign == c.unicode() ? 1 : 2;
        add(TokenKind::Symbol, {}).symbol = sign;
    }

    QStringView m_sql;
    std::vector<Token> m_tokens;
    qsizetype m_at = 0;
    qsizetype m_from = 0;
};

} // namespace

QString Token::textValue() const
{
    QString value = text.toString();
    if (doubledQuotes) {
        const QChar quote = source.front();
        value.replace(QString(2, quote), QString(1, quote));
    }
    return value;
}

std::vector<Token> tokenize(QStringView sql)
{
    return Cutter(sql).cut();
}

} // namespace dao::sql
