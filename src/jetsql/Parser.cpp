// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Parser.h"

#include "jetsql/SqlErrors.h"

namespace dao::sql {
namespace {

// Parts of a UNION or of a join: more than any query has and any native engine takes.
constexpr int mostParts = 200;

// Words that end what stands before them, and so are never an alias or a name without brackets.
bool isReserved(Word word)
{
    switch (word) {
    case Word::And:
    case Word::As:
    case Word::Asc:
    case Word::Between:
    case Word::By:
    case Word::Desc:
    case Word::From:
    case Word::Group:
    case Word::Having:
    case Word::In:
    case Word::Inner:
    case Word::Into:
    case Word::Is:
    case Word::Join:
    case Word::Left:
    case Word::Like:
    case Word::Mod:
    case Word::Not:
    case Word::Null:
    case Word::On:
    case Word::Or:
    case Word::Order:
    case Word::Right:
    case Word::Select:
    case Word::Set:
    case Word::Union:
    case Word::Values:
    case Word::Where:
    case Word::Xor:
        return true;
    default:
        return false;
    }
}

} // namespace

Parser::Parser(QStringView sql)
    : m_sql(sql)
    , m_tokens(tokenize(sql))
{
}

bool Parser::accept(Word word)
{
    if (!current().is(word))
        return false;
    ++m_at;
    return true;
}

bool Parser::accept(char16_t symbol)
{
    if (!current().is(symbol))
        return false;
    ++m_at;
    return true;
}

bool Parser::acceptName(QStringView word)
{
    if (current().kind != TokenKind::Name || current().text.compare(word, Qt::CaseInsensitive) != 0)
        return false;
    ++m_at;
    return true;
}

void Parser::expect(Word word)
{
    if (!accept(word))
        fail();
}

void Parser::expect(char16_t symbol)
{
    if (!accept(symbol))
        fail();
}

void Parser::fail() const
{
    const QStringView source = current().source;
    throwSyntaxError(source.isEmpty() ? QStringView() : QStringView(source.begin(), m_sql.end()));
}

bool Parser::nameHere() const
{
    const Token &token = current();
    return token.kind == TokenKind::BracketedName
           || (token.kind == TokenKind::Name && !isReserved(token.word));
}

QStringView Parser::name()
{
    if (!nameHere())
        fail();
    return m_tokens[m_at++].text;
}

QStringView Parser::optionalAlias()
{
    if (accept(Word::As))
        return name();
    return nameHere() ? name() : QStringView();
}

QStringView Parser::placeFrom(const Token &first) const
{
    const Token &last = m_tokens[m_at > 0 ? m_at - 1 : 0];
    return QStringView(first.source.begin(), last.source.end());
}

Statement Parser::parse()
{
    Statement statement;
    if (current().is(Word::Select) || current().is(u'('))
        statement.select = select();
    else if (accept(Word::Insert))
        statement = insert();
    else if (accept(Word::Update))
        statement = update();
    else if (accept(Word::Delete))
        statement = remove();
    else if (accept(Word::Create))
        statement = create();
    else if (accept(Word::Alter))
        statement = alter();
    else if (accept(Word::Drop))
        statement = drop();
    else
        fail();
    accept(u';');
    if (current().kind != TokenKind::End)
        fail();
    return statement;
}

std::unique_ptr<Select> Parser::select()
{
    std::unique_ptr<Select> first = selectBlock();
    Select *last = first.get();
    int blocks = 1;
    while (accept(Word::Union)) {
        if (++blocks > mostParts)
            fail();
        if (!last->orderBy.empty())
            throwUnsupported(last->place);
        const bool all = accept(Word::All);
        last->next = selectBlock();
        last->next->unionAll = all;
        last = last->next.get();
        // A parenthesised block may be a UNION itself.
        while (last->next)
            last = last->next.get();
    }
    if (first != nullptr && first.get() != last && accept(Word::Order))
        last->orderBy = orderList();
    return first;
}

std::unique_ptr<Select> Parser::parenthesisedSelect()
{
    expect(u'(');
    std::unique_ptr<Select> inner = select();
    expect(u')');
    return inner;
}

std::unique_ptr<Select> Parser::selectBlock()
{
    if (++m_depth > 100)
        fail();
    if (current().is(u'(')) {
        std::unique_ptr<Select> inner = parenthesisedSelect();
        --m_depth;
        return inner;
    }
    const Token &first = current();
    expect(Word::Select);
    auto block = std::make_unique<Select>();
    if (accept(Word::Distinct))
        block->distinct = true;
    else if (!accept(Word::Distinctrow))
        accept(Word::All);
    if (current().is(Word::Top) && ahead().kind == TokenKind::Number) {
        ++m_at;
        bool whole = false;
        block->top = current().text.toInt(&whole);
        if (!whole || block->top < 1)
            fail();
        ++m_at;
        if (current().is(Word::Percent) && !ahead().is(u','))
            throwUnsupported(current().source);
    }
    do {
        block->items.push_back(selectItem());
    } while (accept(u','));
    if (current().is(Word::Into))
        throwUnsupported(QStringView(current().source.begin(), m_sql.end()));
    if (accept(Word::From))
        block->from = fromList();
    if (accept(Word::Where))
        block->where = expression();
    if (accept(Word::Group)) {
        expect(Word::By);
        do {
            block->groupBy.push_back(expression());
        } while (accept(u','));
    }
    if (accept(Word::Having))
        block->having = expression();
    if (accept(Word::Order))
        block->orderBy = orderList();
    if (current().is(Word::With))
        throwUnsupported(QStringView(current().source.begin(), m_sql.end()));
    block->place = placeFrom(first);
    --m_depth;
    return block;
}

std::vector<OrderItem> Parser::orderList()
{
    std::vector<OrderItem> items;
    expect(Word::By);
    do {
        OrderItem item;
        item.expression = expression();
        if (accept(Word::Desc))
            item.descending = true;
        else
            accept(Word::Asc);
        items.push_back(std::move(item));
    } while (accept(u','));
    return items;
}

SelectItem Parser::selectItem()
{
    SelectItem item;
    if (accept(u'*')) {
        item.star = true;
        return item;
    }
    if (nameHere() && (ahead().is(u'.') || ahead().is(u'!')) && m_at + 2 < m_tokens.size()
        && m_tokens[m_at + 2].is(u'*')) {
        item.star = true;
        item.starTable = name();
        m_at += 2;
        return item;
    }
    item.expression = expression();
    item.alias = optionalAlias();
    return item;
}

std::vector<FromPtr> Parser::fromList()
{
    std::vector<FromPtr> list;
    do {
        list.push_back(joined());
    } while (accept(u','));
    if (current().is(Word::In))
        throwUnsupported(QStringView(current().source.begin(), m_sql.end()));
    return list;
}

FromPtr Parser::joined()
{
    FromPtr left = joinOperand();
    for (int tables = 1;; ++tables) {
        if (tables > mostParts)
            fail();
        JoinKind kind;
        if (accept(Word::Inner)) {
            kind = JoinKind::Inner;
        } else if (accept(Word::Left)) {
            accept(Word::Outer);
            kind = JoinKind::Left;
        } else if (accept(Word::Right)) {
            accept(Word::Outer);
            kind = JoinKind::Right;
        } else {
            return left;
        }
        expect(Word::Join);
        auto join = std::make_unique<From>();
        join->join = kind;
        join->left = std::move(left);
        join->right = joinOperand();
        expect(Word::On);
        join->on = expression();
        left = std::move(join);
    }
}

FromPtr Parser::joinOperand()
{
    if (++m_depth > 100)
        fail();
    FromPtr operand;
    if (current().is(u'(') && !ahead().is(Word::Select)) {
        ++m_at;
        operand = joined();
        expect(u')');
    } else {
        operand = std::make_unique<From>();
        if (current().is(u'('))
            operand->derived = parenthesisedSelect();
        else
            operand->table = name();
        operand->alias = optionalAlias();
    }
    --m_depth;
    return operand;
}

Statement Parser::insert()
{
    Statement statement;
    statement.kind = StatementKind::Insert;
    expect(Word::Into);
    statement.table = name();
    if (accept(u'(')) {
        do {
            QStringView field = name();
            if (accept(u'.')) // table.field
                field = name();
            statement.fields.push_back(field);
        } while (accept(u','));
        expect(u')');
    }
    if (accept(Word::Values)) {
        expect(u'(');
        do {
            statement.values.push_back(expression());
        } while (accept(u','));
        expect(u')');
    } else {
        statement.select = select();
    }
    return statement;
}

Statement Parser::update()
{
    Statement statement;
    statement.kind = StatementKind::Update;
    statement.from = fromList();
    expect(Word::Set);
    do {
        Assignment assignment;
        assignment.field = name();
        if (accept(u'.') || accept(u'!')) {
            assignment.qualifier = assignment.field;
            assignment.field = name();
        }
        expect(u'=');
        assignment.value = expression();
        statement.assignments.push_back(std::move(assignment));
    } while (accept(u','));
    if (accept(Word::Where))
        statement.where = expression();
    return statement;
}

Statement Parser::remove()
{
    Statement statement;
    statement.kind = StatementKind::Delete;
    accept(Word::Distinctrow);
    if (!accept(u'*') && !current().is(Word::From)) {
        statement.table = name();
        expect(u'.');
        expect(u'*');
    }
    expect(Word::From);
    statement.from = fromList();
    if (accept(Word::Where))
        statement.where = expression();
    return statement;
}

} // namespace dao::sql
