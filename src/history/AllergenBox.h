// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QCheckBox>

namespace clivara {

// The check box of one allergen: dark red when it is ticked, and told apart when allergens are searched. Neither its
// size nor its foreground colour depends on a search.
class AllergenBox : public QCheckBox {
    Q_OBJECT

public:
    explicit AllergenBox(QWidget *parent = nullptr);

    // The allergen's number and its name in the catalogue; empty when the catalogue does not have it.
    void setAllergen(int allergen, const QString &name);
    // As allergenName() calls it.
    QString allergen() const { return m_name; }

    enum class Search { None, Found, Other };
    void setSearch(Search search);
    Search search() const { return m_search; }

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    void updateColour();

    QString m_name;
    Search m_search = Search::None;
};

} // namespace clivara
