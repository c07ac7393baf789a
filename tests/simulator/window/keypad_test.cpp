#include "simulator/window/keypad.h"
#include "simulator/window/panellanguage.h"
#include "simulator/window/panelstyle.h"
#include "tests/simulator/window/panelwindowfixture.h"

#include <QDragLeaveEvent>
#include <QLabel>
#include <QPushButton>
#include <QRegularExpression>
#include <QRegularExpressionValidator>

using namespace panelkit::simulator;
using panelkit::testing::Screen;
using panelkit::testing::WindowFixture;

namespace {

// A screen with nothing but fields, one below the other.
class KeypadScreen : public WindowFixture, public ::testing::WithParamInterface<Screen>
{
protected:
    static constexpr int fieldHeight = 44;

    KeypadScreen() : WindowFixture(GetParam()), content(&window), keypad(&window, &content)
    {
        window.setFixedSize(GetParam().width, GetParam().height);
        window.setStyleSheet(panelStyleSheet(window.size()));
        content.resize(window.size());
        content.setFocusPolicy(Qt::ClickFocus);
        for (int y = 0; y + fieldHeight <= window.height(); y += fieldHeight + 3) {
            fields.push_back(new MyLineEdit(&content));
            fields.back()->setGeometry(10, y, window.width() - 20, fieldHeight);
        }
        keypad.serveAllIn(&content);
    }

    void SetUp() override
    {
        WindowFixture::SetUp();
        show(window);
        content.setFocus();
    }

    void type(const QString &text)
    {
        for (const QChar character : text) {
            QPushButton *key = keypad.keyFor(QString(character));
            ASSERT_NE(key, nullptr) << QString(character).toStdString();
            tap(key);
        }
    }

    // Also between two of them, where the field is neither all above nor all below the keys.
    void expectEveryFieldInView()
    {
        for (MyLineEdit *field : fields) {
            tap(field);
            ASSERT_EQ(keypad.field(), field);
            ASSERT_TRUE(keypad.isVisible());
            const QRect place(field->mapTo(&window, QPoint(0, 0)), field->size());
            EXPECT_TRUE(window.rect().contains(place)) << place.y();
            EXPECT_FALSE(keypad.geometry().intersects(place)) << place.y();
            tap(keypad.keyFor(Key::Action::Enter));
            EXPECT_FALSE(keypad.isVisible());
            EXPECT_EQ(content.pos(), QPoint(0, 0));
        }
    }

    QWidget window;
    QWidget content;
    Keypad keypad;
    std::vector<MyLineEdit *> fields;
};

} // namespace

TEST_P(KeypadScreen, NeverCoversTheFieldThatItFills)
{
    expectEveryFieldInView();
    for (MyLineEdit *field : fields)
        field->setInputMethodHints(Qt::ImhDigitsOnly);
    expectEveryFieldInView();
}

TEST_P(KeypadScreen, NeverCoversTheFieldInChinese)
{
    PanelLanguage language;
    ASSERT_TRUE(language.change(QStringLiteral("zh_CN"), error)) << error.toStdString();
    tap(fields.back());
    EXPECT_EQ(keypad.keyFor(Key::Action::Clear)->text(), QStringLiteral("清空"));
    tap(keypad.keyFor(Key::Action::Enter));
    expectEveryFieldInView();
}

TEST_P(KeypadScreen, HasKeysForAFinger)
{
    fields.front()->setProperty(Keypad::noteProperty, QStringLiteral("Type a number."));
    for (const Qt::InputMethodHint hint : {Qt::ImhNone, Qt::ImhDigitsOnly}) {
        fields.front()->setInputMethodHints(hint);
        tap(fields.front());
        for (const QPushButton *key : keypad.findChildren<QPushButton *>()) {
            if (!key->isVisible())
                continue;
            EXPECT_GE(key->height(), 44) << key->text().toStdString();
            EXPECT_GE(key->width(), 32) << key->text().toStdString();
            EXPECT_LE(key->fontMetrics().horizontalAdvance(key->text()), key->width() - 2)
                << key->text().toStdString();
        }
        tap(keypad.keyFor(Key::Action::Enter));
    }
}

TEST_P(KeypadScreen, TypesLettersInBothCases)
{
    tap(fields.front());
    type(QStringLiteral("2/3#4x_bit"));
    tap(keypad.keyFor(Key::Action::Shift));
    type(QStringLiteral("mw"));
    EXPECT_EQ(fields.front()->text(), QStringLiteral("2/3#4x_bitMW"));
    tap(keypad.keyFor(Key::Action::Delete));
    EXPECT_EQ(fields.front()->text(), QStringLiteral("2/3#4x_bitM"));
    tap(keypad.keyFor(Key::Action::Clear));
    EXPECT_EQ(fields.front()->text(), QString());
}

TEST_P(KeypadScreen, TypesOnlyWhatTheFieldAllows)
{
    fields.front()->setInputMethodHints(Qt::ImhDigitsOnly);
    fields.front()->setMaxLength(4);
    fields.front()->setValidator(
        new QRegularExpressionValidator(QRegularExpression(QStringLiteral("[0-9]*")), fields.front()));
    tap(fields.front());
    EXPECT_EQ(keypad.keyFor(QStringLiteral("a")), nullptr);
    type(QStringLiteral("1-2.34567"));
    EXPECT_EQ(fields.front()->text(), QStringLiteral("1234"));
}

TEST_P(KeypadScreen, GoesWhenTheFieldLosesTheFocus)
{
    tap(fields.back());
    ASSERT_TRUE(keypad.isVisible());
    content.setFocus();
    EXPECT_FALSE(keypad.isVisible());
    EXPECT_EQ(keypad.field(), nullptr);
}

TEST_P(KeypadScreen, ServesTheNextFieldAtOnce)
{
    ASSERT_GE(fields.size(), 2u);
    fields[1]->setInputMethodHints(Qt::ImhDigitsOnly);
    tap(fields[0]);
    type(QStringLiteral("a"));
    fields[1]->setFocus();
    ASSERT_EQ(keypad.field(), fields[1]);
    type(QStringLiteral("7"));
    EXPECT_EQ(fields[0]->text(), QStringLiteral("a"));
    EXPECT_EQ(fields[1]->text(), QStringLiteral("7"));
}

TEST_P(KeypadScreen, SurvivesAFieldThatGoes)
{
    MyLineEdit *gone = fields.back();
    tap(gone);
    ASSERT_EQ(keypad.field(), gone);
    delete gone; // the focus may go to another one
    EXPECT_NE(keypad.field(), gone);
    EXPECT_EQ(keypad.isVisible(), keypad.field() != nullptr);
    content.setFocus();
    EXPECT_FALSE(keypad.isVisible());
}

TEST_P(KeypadScreen, ShowsTheCaretOfTheFieldThatItServesOnly)
{
    const auto isShown = [](MyLineEdit *field) {
        const QImage before = field->grab().toImage();
        QDragLeaveEvent left;
        field->event(&left);
        return field->grab().toImage() != before;
    };
    ASSERT_GE(fields.size(), 2u);
    for (const char *text : {"", "12.5"}) {
        for (MyLineEdit *field : fields)
            field->setText(QLatin1String(text));
        tap(fields[0]);
        EXPECT_TRUE(isShown(fields[0])) << text;
        tap(keypad.keyFor(Key::Action::Enter));
        tap(fields[0]);
        EXPECT_FALSE(isShown(fields[1])) << text;
        tap(keypad.keyFor(Key::Action::Clear));
        type(QStringLiteral("7"));
        tap(keypad.keyFor(Key::Action::Enter));
        EXPECT_FALSE(isShown(fields[0])) << "the field was left";
    }
}

TEST_P(KeypadScreen, LeavesTheCaretWhereItIsTapped)
{
    fields[0]->setText(QStringLiteral("192.168.1.20"));
    fields[0]->setCursorPosition(3);
    fields[0]->setFocus();
    ASSERT_EQ(keypad.field(), fields[0]);
    EXPECT_EQ(fields[0]->cursorPosition(), 3);
    EXPECT_EQ(fields[0]->text(), QStringLiteral("192.168.1.20"));
}

TEST_P(KeypadScreen, FollowsAFieldThatMoves)
{
    tap(fields.front());
    ASSERT_EQ(keypad.field(), fields.front());
    const auto isInView = [this] {
        const QRect place(fields.front()->mapTo(&window, QPoint(0, 0)), fields.front()->size());
        return window.rect().contains(place) && !keypad.geometry().intersects(place);
    };
    for (const int y : {window.height() - fieldHeight, 0, window.height() / 2}) {
        fields.front()->move(10, y);
        EXPECT_TRUE(isInView()) << y;
    }
    fields.front()->resize(100, 50);
    EXPECT_TRUE(isInView());
}

TEST_P(KeypadScreen, ShowsTheNoteOfAFieldWhereTheScreenIsSmall)
{
    const auto *note = keypad.findChild<QLabel *>(QStringLiteral("note"));
    tap(fields[1]);
    EXPECT_EQ(note->height(), 0) << "the field has none";
    tap(keypad.keyFor(Key::Action::Enter));
    fields.front()->setProperty(Keypad::noteProperty, QStringLiteral("Type a number."));
    tap(fields.front());
    EXPECT_EQ(note->text(), QStringLiteral("Type a number."));
    EXPECT_EQ(note->height() > 0, GetParam().width < 800);
    fields.front()->setProperty(Keypad::noteProperty, QStringLiteral("Refused. ").repeated(40));
    EXPECT_TRUE(note->text().startsWith(QStringLiteral("Refused. Refused. ")));
    if (note->height() > 0) {
        EXPECT_LE(note->heightForWidth(note->width()), note->height());
    }
    expectEveryFieldInView();
}

INSTANTIATE_ON_EVERY_SCREEN(KeypadScreen);
