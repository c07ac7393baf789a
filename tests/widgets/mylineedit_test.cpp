#include "tests/widgets/widgetfixture.h"
#include "widgets/mylineedit.h"

#include <QMetaMethod>
#include <QSignalSpy>
#include <QVBoxLayout>

using namespace panelkit::testing;

namespace {

class MyLineEditOnScreen : public EveryScreen
{
protected:
    MyLineEditOnScreen()
    {
        form.resize(screenSize());
        auto *const layout = new QVBoxLayout(&form);
        layout->addWidget(&first);
        layout->addWidget(&second);
        first.setText(QStringLiteral("recipe 1"));
        second.setText(QStringLiteral("recipe 2"));
    }

    // The toolkit gives the focus of a new window to its first field: the spies start behind that.
    void showWithFocusInFirst()
    {
        show(form);
        form.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&form));
        first.setFocus();
        ASSERT_TRUE(first.hasFocus());
    }

    QWidget form;
    MyLineEdit first;
    MyLineEdit second;
};

} // namespace

TEST(MyLineEdit, HasTwoSignalsAndNothingElse)
{
    const QMetaObject &type = MyLineEdit::staticMetaObject;
    ASSERT_EQ(type.methodCount(), type.methodOffset() + 2);
    EXPECT_EQ(type.method(type.methodOffset()).methodSignature(), "focusIn()");
    EXPECT_EQ(type.method(type.methodOffset() + 1).methodSignature(), "focusOut()");
    EXPECT_EQ(type.method(type.methodOffset()).methodType(), QMetaMethod::Signal);
    EXPECT_EQ(type.method(type.methodOffset() + 1).methodType(), QMetaMethod::Signal);
}

TEST(MyLineEdit, KeepsAHeightThatItsOwnerGivesIt)
{
    MyLineEdit edit;
    edit.setGeometry(0, 0, 100, 20);
    EXPECT_EQ(edit.size(), QSize(100, 20));
}

INSTANTIATE_ON_EVERY_SCREEN(MyLineEditOnScreen);

TEST_P(MyLineEditOnScreen, AnnouncesWhatATapDoesToTheFocus)
{
    showWithFocusInFirst();
    QSignalSpy left(&first, &MyLineEdit::focusOut);
    QSignalSpy entered(&second, &MyLineEdit::focusIn);
    tap(&second);
    EXPECT_EQ(left.count(), 1);
    EXPECT_EQ(entered.count(), 1);
    tap(&second);
    EXPECT_EQ(entered.count(), 1) << "it has the focus already";
    EXPECT_GE(second.height(), 44);
}

TEST_P(MyLineEditOnScreen, LeavesTheSelectionAloneWhenTheKeysMoveTheFocus)
{
    showWithFocusInFirst();
    QSignalSpy entered(&second, &MyLineEdit::focusIn);
    QTest::keyClick(&first, Qt::Key_Tab);
    EXPECT_EQ(entered.count(), 1);
    EXPECT_TRUE(second.hasFocus());
    EXPECT_FALSE(second.hasSelectedText()) << "the toolkit's own line edit selects all of it";
    second.selectAll();
    QTest::keyClick(&second, Qt::Key_Backtab);
    EXPECT_TRUE(second.hasSelectedText()) << "the toolkit's own line edit drops the selection";
}

TEST_P(MyLineEditOnScreen, TakesKeys)
{
    showWithFocusInFirst();
    first.clear();
    QTest::keyClicks(&first, QStringLiteral("42"));
    EXPECT_EQ(first.text(), QStringLiteral("42"));
}
