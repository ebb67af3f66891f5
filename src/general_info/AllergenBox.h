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

    // The catalogue's name; empty for an item that the catalogue does not have, which is then told by its
    // number in its group.
    void setAllergen(const QString &name, const QString &group, int number);
    // The name; "Alimenti n. 12" without one.
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
