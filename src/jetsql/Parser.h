// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "jetsql/Ast.h"
#include "jetsql/Tokenizer.h"

namespace dao::sql {

// Recursive descent over the tokens of one statement. Statements are in Parser.cpp, expressions in
// ParserExpressions.cpp, definitions (CREATE, ALTER, DROP) in ParserDefinitions.cpp. Throws Error
// (SyntaxError) that quotes the SQL from the place on where it cannot be understood.
class Parser {
public:
    explicit Parser(QStringView sql);

    Statement parse();

private:
    // Tokens
    const Token &current() const { return m_tokens[m_at]; }
    const Token &ahead() const { return m_tokens[std::min(m_at + 1, m_tokens.size() - 1)]; }
    bool accept(Word word);
    bool accept(char16_t symbol);
    bool acceptName(QStringView word); // a word that is no keyword, without regard to case
    void expect(Word word);
    void expect(char16_t symbol);
    [[noreturn]] void fail() const;
    QStringView name(); // a name is required here
    QStringView optionalAlias(); // "AS name" or "name"
    bool nameHere() const;
    QStringView placeFrom(const Token &first) const; // up to the token before the current one

    // Statements
    std::unique_ptr<Select> select();
    std::unique_ptr<Select> selectBlock();
    std::unique_ptr<Select> parenthesisedSelect();
    SelectItem selectItem();
    std::vector<FromPtr> fromList();
    FromPtr joined();
    FromPtr joinOperand();
    std::vector<OrderItem> orderList();
    Statement insert();
    Statement update();
    Statement remove();

    // Definitions
    Statement create();
    Statement alter();
    Statement drop();
    void createTable(Definition &definition);
    ColumnInfo columnDefinition(Definition &definition);
    bool constraint(Definition &definition, const QString &column);
    QStringList fieldList();

    // Expressions, from the weakest operator to the strongest
    ExpressionPtr expression();
    ExpressionPtr disjunction();
    ExpressionPtr conjunction();
    ExpressionPtr negation();
    ExpressionPtr comparison();
    ExpressionPtr concatenation();
    ExpressionPtr sum();
    ExpressionPtr modulo();
    ExpressionPtr integerQuotient();
    ExpressionPtr product();
    ExpressionPtr signedPower();
    ExpressionPtr power();
    ExpressionPtr primary();
    ExpressionPtr fieldOrCall();
    ExpressionPtr literal();
    ExpressionPtr predicate(ExpressionPtr left, const Token &first);
    void adopt(Expression &parent, ExpressionPtr child);
    ExpressionPtr binary(Operator op, ExpressionPtr left, ExpressionPtr right, const Token &first);

    QStringView m_sql;
    std::vector<Token> m_tokens;
    size_t m_at = 0;
    int m_depth = 0;
};

} // namespace dao::sql
