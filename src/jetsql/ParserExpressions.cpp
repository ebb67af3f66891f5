// SPDX-License-Identifier: Apache-2.0
#include "jetsql/Parser.h"

#include "jetsql/SqlErrors.h"
#include "values/JetValues.h"

#include <QUuid>
#include <limits>

namespace dao::sql {
namespace {

// Deeper than any expression is written: a limit of our own, so that none runs into the stack's.
constexpr int mostDepth = 500;

ExpressionPtr make(Expression::Kind kind)
{
    auto expression = std::make_unique<Expression>();
    expression->kind = kind;
    return expression;
}

ExpressionPtr makeConstant(FieldType type, const QVariant &value)
{
    ExpressionPtr expression = make(Expression::Kind::Constant);
    expression->constant = {type, value};
    return expression;
}

std::optional<Operator> comparisonOperator(const Token &token)
{
    if (token.is(Word::Like))
        return Operator::Like;
    if (token.kind != TokenKind::Symbol)
        return std::nullopt;
    switch (token.symbol) {
    case u'=':
        return Operator::Equal;
    case notEqual:
        return Operator::NotEqual;
    case u'<':
        return Operator::Less;
    case lessOrEqual:
        return Operator::LessOrEqual;
    case u'>':
        return Operator::Greater;
    case greaterOrEqual:
        return Operator::GreaterOrEqual;
    default:
        return std::nullopt;
    }
}

} // namespace

void Parser::adopt(Expression &parent, ExpressionPtr child)
{
    parent.depth = std::max(parent.depth, child->depth + 1);
    if (parent.depth > mostDepth)
        fail();
    parent.arguments.push_back(std::move(child));
}

ExpressionPtr Parser::binary(Operator op, ExpressionPtr left, ExpressionPtr right, const Token &first)
{
    ExpressionPtr node = make(Expression::Kind::Binary);
    node->op = op;
    adopt(*node, std::move(left));
    adopt(*node, std::move(right));
    node->place = placeFrom(first);
    return node;
}

ExpressionPtr Parser::expression()
{
    // Nested deeper than any query is written; a limit of our own, not of the stack.
    if (++m_depth > 100)
        fail();
    const Token &first = current();
    ExpressionPtr left = disjunction();
    while (accept(Word::Xor))
        left = binary(Operator::Xor, std::move(left), disjunction(), first);
    --m_depth;
    return left;
}

ExpressionPtr Parser::disjunction()
{
    const Token &first = current();
    ExpressionPtr left = conjunction();
    if (!current().is(Word::Or))
        return left;
    ExpressionPtr node = make(Expression::Kind::Binary);
    node->op = Operator::Or;
    adopt(*node, std::move(left));
    while (accept(Word::Or))
        adopt(*node, conjunction());
    node->place = placeFrom(first);
    return node;
}

ExpressionPtr Parser::conjunction()
{
    const Token &first = current();
    ExpressionPtr left = negation();
    if (!current().is(Word::And))
        return left;
    ExpressionPtr node = make(Expression::Kind::Binary);
    node->op = Operator::And;
    adopt(*node, std::move(left));
    while (accept(Word::And))
        adopt(*node, negation());
    node->place = placeFrom(first);
    return node;
}

ExpressionPtr Parser::negation()
{
    const Token &first = current();
    bool negated = false;
    bool any = false;
    while (accept(Word::Not)) {
        negated = !negated;
        any = true;
    }
    ExpressionPtr operand = comparison();
    // NOT NOT x is x as a condition.
    for (int i = any ? (negated ? 1 : 2) : 0; i > 0; --i) {
        ExpressionPtr node = make(Expression::Kind::Not);
        adopt(*node, std::move(operand));
        node->place = placeFrom(first);
        operand = std::move(node);
    }
    return operand;
}

ExpressionPtr Parser::comparison()
{
    const Token &first = current();
    ExpressionPtr left = concatenation();
    while (true) {
        if (const auto op = comparisonOperator(current())) {
            ++m_at;
            left = binary(*op, std::move(left), concatenation(), first);
        } else if (current().is(Word::Is) || current().is(Word::In) || current().is(Word::Between)
                   || (current().is(Word::Not)
                       && (ahead().is(Word::Like) || ahead().is(Word::In) || ahead().is(Word::Between)))) {
            left = predicate(std::move(left), first);
        } else {
            return left;
        }
    }
}

ExpressionPtr Parser::predicate(ExpressionPtr left, const Token &first)
{
    if (accept(Word::Is)) {
        ExpressionPtr node = make(Expression::Kind::IsNull);
        node->negated = accept(Word::Not);
        expect(Word::Null);
        adopt(*node, std::move(left));
        node->place = placeFrom(first);
        return node;
    }
    const bool negated = accept(Word::Not);
    ExpressionPtr node;
    if (accept(Word::Like)) {
        node = binary(Operator::Like, std::move(left), concatenation(), first);
    } else if (accept(Word::Between)) {
        node = make(Expression::Kind::Between);
        adopt(*node, std::move(left));
        adopt(*node, concatenation());
        expect(Word::And);
        adopt(*node, concatenation());
    } else {
        expect(Word::In);
        if (current().is(u'(') && ahead().is(Word::Select)) {
            node = make(Expression::Kind::InSelect);
            adopt(*node, std::move(left));
            node->select = parenthesisedSelect();
        } else {
            expect(u'(');
            node = make(Expression::Kind::In);
            adopt(*node, std::move(left));
            do {
                adopt(*node, expression());
            } while (accept(u','));
            expect(u')');
        }
    }
    node->negated = negated;
    node->place = placeFrom(first);
    return node;
}

ExpressionPtr Parser::concatenation()
{
    const Token &first = current();
    ExpressionPtr left = sum();
    while (accept(u'&'))
        left = binary(Operator::Concatenate, std::move(left), sum(), first);
    return left;
}

ExpressionPtr Parser::sum()
{
    const Token &first = current();
    ExpressionPtr left = modulo();
    while (true) {
        if (accept(u'+'))
            left = binary(Operator::Add, std::move(left), modulo(), first);
        else if (accept(u'-'))
            left = binary(Operator::Subtract, std::move(left), modulo(), first);
        else
            return left;
    }
}

ExpressionPtr Parser::modulo()
{
    const Token &first = current();
    ExpressionPtr left = integerQuotient();
    while (accept(Word::Mod))
        left = binary(Operator::Modulo, std::move(left), integerQuotient(), first);
    return left;
}

ExpressionPtr Parser::integerQuotient()
{
    const Token &first = current();
    ExpressionPtr left = product();
    while (accept(u'\\'))
        left = binary(Operator::IntegerDivide, std::move(left), product(), first);
    return left;
}

ExpressionPtr Parser::product()
{
    const Token &first = current();
    ExpressionPtr left = signedPower();
    while (true) {
        if (accept(u'*'))
            left = binary(Operator::Multiply, std::move(left), signedPower(), first);
        else if (accept(u'/'))
            left = binary(Operator::Divide, std::move(left), signedPower(), first);
        else
            return left;
    }
}

ExpressionPtr Parser::signedPower()
{
    const Token &first = current();
    bool negative = false;
    bool any = false;
    while (current().is(u'-') || current().is(u'+')) {
        negative ^= current().is(u'-');
        any = any || current().is(u'-');
        ++m_at;
    }
    ExpressionPtr operand = power();
    for (int i = any ? (negative ? 1 : 2) : 0; i > 0; --i) {
        ExpressionPtr node = make(Expression::Kind::Negate);
        adopt(*node, std::move(operand));
        node->place = placeFrom(first);
        operand = std::move(node);
    }
    return operand;
}

ExpressionPtr Parser::power()
{
    const Token &first = current();
    ExpressionPtr left = primary();
    while (accept(u'^')) {
        // The exponent may carry a sign, which binds tighter than the next power: 2^-1^2 is (2^-1)^2.
        bool negative = false;
        const Token &sign = current();
        while (current().is(u'-') || current().is(u'+')) {
            negative ^= current().is(u'-');
            ++m_at;
        }
        ExpressionPtr right = primary();
        if (negative) {
            ExpressionPtr node = make(Expression::Kind::Negate);
            adopt(*node, std::move(right));
            node->place = placeFrom(sign);
            right = std::move(node);
        }
        left = binary(Operator::Power, std::move(left), std::move(right), first);
    }
    return left;
}

ExpressionPtr Parser::primary()
{
    const Token &first = current();
    if (first.is(u'(')) {
        if (ahead().is(Word::Select)) {
            ExpressionPtr node = make(Expression::Kind::Scalar);
            node->select = parenthesisedSelect();
            node->place = placeFrom(first);
            return node;
        }
        ++m_at;
        ExpressionPtr inner = expression();
        expect(u')');
        return inner;
    }
    if (first.is(Word::Exists) && ahead().is(u'(')) {
        ++m_at;
        ExpressionPtr node = make(Expression::Kind::Exists);
        node->select = parenthesisedSelect();
        node->place = placeFrom(first);
        return node;
    }
    if (ExpressionPtr constant = literal()) {
        constant->place = placeFrom(first);
        return constant;
    }
    return fieldOrCall();
}

ExpressionPtr Parser::literal()
{
    const Token &token = current();
    ExpressionPtr node;
    switch (token.kind) {
    case TokenKind::Number: {
        bool whole = false;
        const qlonglong integer = token.text.toLongLong(&whole);
        if (whole && integer <= std::numeric_limits<qint32>::max()) {
            node = makeConstant(FieldType::Long, integer);
        } else if (const auto value = clivara::jet::numberFromText(token.text)) {
            node = makeConstant(FieldType::Double, *value);
        } else {
            throwError(Overflow, QStringLiteral("Overflow"), token.source);
        }
        break;
    }
    case TokenKind::Text:
        node = makeConstant(FieldType::Text, token.textValue());
        break;
    case TokenKind::Date: {
        const auto date = clivara::jet::dateFromText(token.text, clivara::jet::DateOrder::MonthFirst);
        if (!date)
            throwSyntaxError(token.source);
        node = makeConstant(FieldType::Date, *date);
        break;
    }
    case TokenKind::Guid: {
        const QUuid uid = QUuid::fromString(token.text);
        if (uid.isNull() && token.text.trimmed() != u"00000000-0000-0000-0000-000000000000")
            throwSyntaxError(token.source);
        node = makeConstant(FieldType::Guid, uid.toString().toUpper());
        break;
    }
    case TokenKind::Name:
        if (ahead().is(u'.') || ahead().is(u'!'))
            return nullptr;
        if (token.word == Word::Null)
            node = makeConstant(FieldType::Null, {});
        else if (token.word == Word::True || token.word == Word::On)
            node = makeConstant(FieldType::Boolean, true);
        else if (token.word == Word::False)
            node = makeConstant(FieldType::Boolean, false);
        else
            return nullptr;
        break;
    default:
        return nullptr;
    }
    ++m_at;
    return node;
}

ExpressionPtr Parser::fieldOrCall()
{
    const Token &first = current();
    const bool called = first.kind == TokenKind::Name && ahead().is(u'(');
    if (!called) {
        ExpressionPtr node = make(Expression::Kind::Field);
        node->name = name();
        if (accept(u'.') || accept(u'!')) {
            node->qualifier = node->name;
            // After the point every word is a name.
            if (current().kind != TokenKind::Name && current().kind != TokenKind::BracketedName)
                fail();
            node->name = m_tokens[m_at++].text;
        }
        node->place = placeFrom(first);
        return node;
    }
    // left(...), right(...) and asc(...) are functions here; the other words of the grammar are not.
    if (!nameHere() && !first.is(Word::Left) && !first.is(Word::Right) && !first.is(Word::Asc))
        fail();
    ExpressionPtr node = make(Expression::Kind::Call);
    node->name = first.text;
    m_at += 2;
    if (accept(u'*')) {
        node->star = true;
    } else if (!current().is(u')')) {
        do {
            adopt(*node, expression());
        } while (accept(u','));
    }
    expect(u')');
    node->place = placeFrom(first);
    return node;
}

} // namespace dao::sql
