// SPDX-License-Identifier: Apache-2.0
#include "app/scenario/ControlAccess.h"
#include "app/scenario/ControlReading.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDoubleValidator>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QSignalSpy>
#include <QTableWidget>
#include <QTreeWidget>
#include <QVBoxLayout>
#include <gtest/gtest.h>

using namespace orvale;

namespace {

// A dialog with controls of every kind that forms use.
class ControlAccessTest : public ::testing::Test {
protected:
    ControlAccessTest() { m_dialog.setObjectName("Prova"); }

    template <typename Widget, typename... Arguments>
    Widget *add(const char *name, const Arguments &...arguments)
    {
        auto *widget = new Widget(arguments..., &m_dialog);
        widget->setObjectName(name);
        m_layout.addWidget(widget);
        return widget;
    }
    void show()
    {
        m_dialog.resize(400, 500);
        m_dialog.show();
        QCoreApplication::processEvents();
    }
    template <typename Work>
    std::string refusal(Work work)
    {
        try {
            work();
        } catch (const UserError &error) {
            return error.text().toStdString();
        }
        return "done";
    }

    QDialog m_dialog;
    QVBoxLayout &m_layout = *new QVBoxLayout(&m_dialog);
};

} // namespace

TEST_F(ControlAccessTest, FindsControlsByName)
{
    auto *first = add<QPushButton>("Button2_0", "a");
    auto *hidden = add<QPushButton>("Riga", "b");
    auto *visible = add<QPushButton>("riga", "c");
    auto *twin = add<QPushButton>("riga", "d");
    show();
    hidden->hide();
    visible->hide();
    EXPECT_EQ(&findControl(m_dialog, "Button2(0)"), first);
    EXPECT_EQ(&findControl(m_dialog, "button2(0)"), first);
    EXPECT_EQ(&findControl(m_dialog, "Riga"), hidden) << "the exact name wins";
    EXPECT_EQ(&findControl(m_dialog, "riga"), twin) << "then the visible one";
    EXPECT_EQ(refusal([&] { findControl(m_dialog, "Button2(1)"); }),
              "la maschera Prova non ha il controllo Button2(1)");
}

TEST_F(ControlAccessTest, ClicksButtonsAndEntriesOfMenusByName)
{
    QMenu menu(&m_dialog);
    QAction *entry = menu.addAction("Nuovo");
    entry->setObjectName("nuovo0");
    auto *button = add<QPushButton>("Button2_0", "a");
    show();
    const QSignalSpy triggered(entry, &QAction::triggered);
    const QSignalSpy clicked(button, &QPushButton::clicked);
    clickControl(m_dialog, "Nuovo0");
    clickControl(m_dialog, "Button2(0)");
    EXPECT_EQ(triggered.count(), 1);
    EXPECT_EQ(clicked.count(), 1);
    entry->setEnabled(false);
    EXPECT_EQ(refusal([&] { clickControl(m_dialog, "nuovo0"); }), "nuovo0 è disabilitato");
    EXPECT_EQ(refusal([&] { clickControl(m_dialog, "nuovo9"); }),
              "la maschera Prova non ha il controllo nuovo9");
}

TEST_F(ControlAccessTest, TypesAsAPersonDoes)
{
    auto *plain = add<QLineEdit>("plain", "prima");
    auto *number = add<QLineEdit>("number", "9");
    QDoubleValidator decimal;
    decimal.setLocale(QLocale::c());
    number->setValidator(&decimal);
    auto *date = add<QLineEdit>("date", "");
    date->setInputMask("99/99/9999;_");
    auto *memo = add<QPlainTextEdit>("memo", "prima");
    auto *combo = add<QComboBox>("combo");
    combo->setEditable(true);
    auto *composite = add<QWidget>("composite");
    auto *inner = new QLineEdit(composite);
    new QVBoxLayout(composite);
    composite->layout()->addWidget(inner);
    show();

    const struct {
        QWidget *control;
        const char16_t *text;
        const char16_t *shown;
    } cases[] = {
        {plain, u"Nicolò d'Ascoli", u"Nicolò d'Ascoli"},
        {plain, u"", u""},
        {number, u"1a2.5x", u"12.5"}, // what the validator refuses is not there
        {date, u"21/11/2026", u"21/11/2026"},
        {date, u"01022025", u"01/02/2025"},
        {date, u"", u"__/__/____"},
        {memo, u"seconda", u"seconda"},
        {memo, u"a𝄞b", u"a𝄞b"}, // beyond the basic plane
        {plain, u"𝄞🩺", u"𝄞🩺"},
        {combo, u"libero", u"libero"},
        {composite, u"dentro", u"dentro"},
    };
    for (const auto &[control, text, shown] : cases) {
        typeText(*control, QString::fromUtf16(text));
        EXPECT_EQ(shownText(*control), QString::fromUtf16(shown)) << control->objectName().toStdString();
        EXPECT_FALSE(control->hasFocus()) << control->objectName().toStdString();
    }
}

TEST_F(ControlAccessTest, LeavesTheFieldAfterTyping)
{
    auto *field = add<QLineEdit>("field", "prima");
    auto *next = add<QLineEdit>("next", "");
    show();
    const QSignalSpy finished(field, &QLineEdit::editingFinished);
    typeText(*field, "x");
    EXPECT_EQ(finished.count(), 1);
    EXPECT_TRUE(next->hasFocus());
}

TEST_F(ControlAccessTest, PastesWhatNobodyWouldType)
{
    auto *line = add<QLineEdit>("line", "prima");
    line->setMaxLength(100000);
    auto *memo = add<QPlainTextEdit>("memo");
    memo->setPlainText("prima");
    show();
    const QSignalSpy edited(line, &QLineEdit::textEdited);
    const QString text = QStringLiteral("è '100%' ").repeated(7000);
    typeText(*line, text);
    typeText(*memo, text);
    EXPECT_EQ(line->text(), text);
    EXPECT_TRUE(line->isModified());
    EXPECT_GT(edited.count(), 0);
    EXPECT_EQ(memo->toPlainText(), text);
    EXPECT_TRUE(memo->document()->isModified());
}

TEST_F(ControlAccessTest, UsesOnlyWhatAPersonCouldUse)
{
    auto *button = add<QPushButton>("button", "ok");
    auto *field = add<QLineEdit>("field", "prima");
    auto *label = add<QLabel>("label", "testo");
    auto *list = add<QListWidget>("list");
    auto *option = add<QRadioButton>("option", "sì");
    add<QRadioButton>("other", "no");
    list->addItem("uno");
    option->setChecked(true);
    show();
    const QSignalSpy clicked(button, &QPushButton::clicked);

    button->setEnabled(false);
    EXPECT_EQ(refusal([&] { clickButton(*button); }), "button è disabilitato");
    button->setEnabled(true);
    button->hide();
    EXPECT_EQ(refusal([&] { clickButton(*button); }), "button non è visibile");
    EXPECT_EQ(clicked.count(), 0);
    button->show();
    clickButton(*button);
    EXPECT_EQ(clicked.count(), 1);

    field->setReadOnly(true);
    EXPECT_EQ(refusal([&] { typeText(*field, "x"); }), "field è di sola lettura");
    EXPECT_EQ(field->text(), "prima");
    EXPECT_EQ(refusal([&] { typeText(*label, "x"); }), "in label non si può scrivere");
    EXPECT_EQ(refusal([&] { clickButton(*label); }), "label non è un pulsante");
    EXPECT_EQ(refusal([&] { setChecked(*label, true); }), "label non è una casella");
    EXPECT_EQ(refusal([&] { setChecked(*option, false); }), "option non cambia stato");
    EXPECT_EQ(refusal([&] { selectRow(*label, 0); }), "label non è un elenco");
    EXPECT_EQ(refusal([&] { selectRow(*list, 1); }), "list non ha la riga 1: ne ha 1");
    EXPECT_EQ(refusal([&] { chooseEntry(*list, "due"); }), "list non ha la voce due");
    EXPECT_EQ(refusal([&] { shownRows(*label); }), "label non ha righe");
}

TEST_F(ControlAccessTest, ChoosesAndChecks)
{
    auto *combo = add<QComboBox>("combo");
    combo->addItems({"uno", "due"});
    auto *list = add<QListWidget>("list");
    list->addItems({"rosso", "verde"});
    auto *box = add<QCheckBox>("box", "&Razza");
    auto *group = add<QGroupBox>("group", "Gruppo");
    group->setCheckable(true);
    show();
    const QSignalSpy activated(combo, &QComboBox::activated);
    const QSignalSpy toggled(box, &QCheckBox::toggled);

    chooseEntry(*combo, "due");
    chooseEntry(*combo, "due");
    EXPECT_EQ(shownText(*combo), "due");
    EXPECT_EQ(activated.count(), 2);
    chooseEntry(*list, "verde");
    EXPECT_EQ(shownText(*list), "verde");
    EXPECT_EQ(shownRows(*list).selected, 1);
    setChecked(*box, true);
    setChecked(*box, true);
    EXPECT_EQ(toggled.count(), 1);
    EXPECT_EQ(shownChecked(*box), true);
    setChecked(*group, false);
    EXPECT_EQ(shownChecked(*group), false);
    EXPECT_EQ(shownChecked(*combo), std::nullopt);
}

TEST_F(ControlAccessTest, ReadsGridsAsTheyAreShown)
{
    auto *table = add<QTableWidget>("table");
    table->setColumnCount(3);
    table->setHorizontalHeaderLabels({"Data", "Chiave", "Esame"});
    table->setRowCount(3);
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column)
            table->setItem(row, column, new QTableWidgetItem(QStringLiteral("%1%2").arg(row).arg(column)));
    }
    table->setSelectionBehavior(QAbstractItemView::SelectRows);
    table->hideColumn(1);
    table->hideRow(1);
    table->horizontalHeader()->moveSection(2, 0);
    auto *tree = add<QTreeWidget>("tree");
    tree->setHeaderLabels({"Problema"});
    auto *parent = new QTreeWidgetItem(tree, {"Diabete"});
    new QTreeWidgetItem(parent, {"Visita"});
    new QTreeWidgetItem(tree, {"Asma"});
    show();

    ShownRows shown = shownRows(*table);
    EXPECT_EQ(shown.columns, (QStringList{"Esame", "Data"}));
    EXPECT_EQ(shown.rows, (QList<QStringList>{{"02", "00"}, {"22", "20"}}));
    EXPECT_EQ(shown.selected, -1);
    const QSignalSpy doubleClicked(table, &QTableWidget::cellDoubleClicked);
    doubleClickRow(*table, 1);
    EXPECT_EQ(doubleClicked.count(), 1);
    EXPECT_EQ(doubleClicked.value(0).value(0), 2) << "the model's row of the second visible one";
    EXPECT_EQ(shownRows(*table).selected, 1);

    shown = shownRows(*tree);
    EXPECT_EQ(shown.rows, (QList<QStringList>{{"Diabete"}, {"Visita"}, {"Asma"}}));
    selectRow(*tree, 1);
    EXPECT_EQ(shownText(*tree), "Visita");
    EXPECT_EQ(shownRows(*tree).selected, 1);
}

TEST_F(ControlAccessTest, ReadsTextsAndColoursAsTheyAreDrawn)
{
    auto *field = add<QLineEdit>("field", "x");
    auto *label = add<QLabel>("label", "&Peso");
    auto *rich = add<QLabel>("rich", "<b>Attenzione</b> a &amp; b");
    auto *button = add<QPushButton>("button", "&Calcola && esci");
    auto *sheet = add<QLabel>("sheet", "rosso");
    auto *palette = add<QLabel>("palette", "scuro");
    sheet->setStyleSheet("color: #c00000");
    QPalette colours = palette->palette();
    colours.setColor(QPalette::WindowText, QColor(0, 0, 192));
    palette->setPalette(colours);
    show();

    EXPECT_EQ(shownText(*label), "&Peso") << "without a buddy '&' is a letter";
    label->setBuddy(field);
    EXPECT_EQ(shownText(*label), "Peso");
    EXPECT_EQ(shownText(*rich), "Attenzione a & b");
    EXPECT_EQ(shownText(*button), "Calcola & esci");
    EXPECT_EQ(shownColor(*sheet).name(), "#c00000");
    EXPECT_EQ(shownColor(*palette).name(), "#0000c0");
    EXPECT_EQ(shownColor(*field), field->palette().color(QPalette::Active, QPalette::Text));
    field->setEnabled(false);
    EXPECT_EQ(shownColor(*field), field->palette().color(QPalette::Disabled, QPalette::Text));
}

TEST_F(ControlAccessTest, PressesKeysWithShortcutsAndMnemonics)
{
    auto *field = add<QLineEdit>("field", "abc");
    auto *button = add<QPushButton>("button", "&Calcola");
    QShortcut shortcut(QKeySequence("Ctrl+N"), &m_dialog);
    show();
    field->setFocus();
    const QSignalSpy activated(&shortcut, &QShortcut::activated);
    const QSignalSpy clicked(button, &QPushButton::clicked);

    pressKey(m_dialog, "End");
    pressKey(m_dialog, "Backspace");
    EXPECT_EQ(field->text(), "ab");
    pressKey(m_dialog, "Ctrl+N");
    EXPECT_EQ(activated.count(), 1);
    button->setDefault(true);
    pressKey(m_dialog, "Enter");
    EXPECT_EQ(clicked.count(), 1);
    pressKey(m_dialog, "Alt+C");
    EXPECT_EQ(clicked.count(), 2);
    pressKey(m_dialog, "Esc");
    EXPECT_FALSE(m_dialog.isVisible());
}
