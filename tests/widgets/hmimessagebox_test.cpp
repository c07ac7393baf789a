#include "runtime/systemroot.h"
#include "tests/widgets/widgetfixture.h"
#include "widgets/hmimessagebox.h"

#include <QAbstractButton>
#include <QDir>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

using namespace panelkit::testing;
using namespace panelkit::simulator;

namespace {

class HmiMessageBox : public WidgetFixture
{
protected:
    ~HmiMessageBox() override { tools_setSystemRoot(QString()); }

    void announceClosing() { record.announceMessageBoxClose = 1; }

    // How often the runtime was told, and with what.
    QStringList notices()
    {
        QStringList told;
        while (auto entry = takeEventLibraryEntry()) {
            if (const auto *notice = std::get_if<SystemNotice>(&*entry))
                told << QStringLiteral("%1 %2").arg(notice->code).arg(notice->argument);
        }
        return told;
    }
};

class HmiMessageBoxOnScreen : public EveryScreen
{
};

QString textOf(const HMIMessageBox &box, QMessageBox::StandardButton which)
{
    const QAbstractButton *const button = box.button(which);
    return button == nullptr ? QStringLiteral("no such button") : button->text();
}

} // namespace

TEST_F(HmiMessageBox, IsBareWithEmptyTexts)
{
    const HMIMessageBox box(nullptr, QString(), QString(), QString(), QString());
    EXPECT_TRUE(box.windowTitle().isEmpty());
    EXPECT_TRUE(box.text().isEmpty());
    EXPECT_TRUE(box.buttons().isEmpty());
}

TEST_F(HmiMessageBox, ShowsTheTextsItIsGiven)
{
    const HMIMessageBox box(nullptr, QStringLiteral("Recipes"), QStringLiteral("Delete it?"),
                            QStringLiteral("Yes"), QStringLiteral("No"));
    EXPECT_EQ(box.windowTitle(), QStringLiteral("Recipes"));
    EXPECT_EQ(box.text(), QStringLiteral("Delete it?"));
    EXPECT_EQ(box.buttons().size(), 2);
    EXPECT_EQ(textOf(box, QMessageBox::Ok), QStringLiteral("Yes"));
    EXPECT_EQ(textOf(box, QMessageBox::Cancel), QStringLiteral("No"));
}

TEST_F(HmiMessageBox, HasEachButtonOnce)
{
    HMIMessageBox box(nullptr, QString(), QString(), QString(), QString());
    box.addOKButton(QStringLiteral("Yes"));
    box.addOKButton(QStringLiteral("Sure"));
    EXPECT_EQ(box.buttons().size(), 1);
    EXPECT_EQ(textOf(box, QMessageBox::Ok), QStringLiteral("Sure"));
    box.addCancelButton(QStringLiteral("No"));
    box.addCancelButton(QString());
    EXPECT_EQ(box.buttons().size(), 2);
    EXPECT_EQ(textOf(box, QMessageBox::Cancel), QStringLiteral("No"));
}

TEST_F(HmiMessageBox, KeepsTheToolkitsNamesWithoutTexts)
{
    HMIMessageBox box(nullptr, QString(), QString(), QString(), QString());
    QMessageBox plain(QMessageBox::NoIcon, QString(), QString(), QMessageBox::Ok | QMessageBox::Cancel);
    box.addOKButton(QString());
    box.addCancelButton(QString());
    EXPECT_EQ(textOf(box, QMessageBox::Ok), plain.button(QMessageBox::Ok)->text());
    EXPECT_EQ(textOf(box, QMessageBox::Cancel), plain.button(QMessageBox::Cancel)->text());
}

TEST_F(HmiMessageBox, TakesOverTheFontOfItsParent)
{
    QWidget parent;
    QFont font;
    font.setPixelSize(29);
    parent.setFont(font);
    const HMIMessageBox box(&parent, QString(), QString(), QString(), QString());
    EXPECT_EQ(box.font().pixelSize(), 29);
}

TEST_F(HmiMessageBox, WearsTheProductsIcon)
{
    QTemporaryDir root;
    const QString folder = root.path() + QStringLiteral("/usr/tesk42/APP/restoreSetting/Images");
    ASSERT_TRUE(QDir().mkpath(folder));
    QImage picture(16, 16, QImage::Format_RGB32);
    picture.fill(Qt::red);
    ASSERT_TRUE(picture.save(folder + QStringLiteral("/HMI.png")));
    tools_setSystemRoot(root.path());
    const HMIMessageBox box(nullptr, QString(), QString(), QString(), QString());
    EXPECT_EQ(box.windowIcon().pixmap(16, 16).toImage().pixelColor(8, 8), QColor(Qt::red));
}

TEST_F(HmiMessageBox, TellsTheRuntimeThatItClosesOnlyWhereThatIsAskedFor)
{
    const unsigned char flags[] = {0, 1, 255};
    for (const unsigned char flag : flags) {
        SCOPED_TRACE(static_cast<int>(flag));
        record.announceMessageBoxClose = flag;
        HMIMessageBox box(nullptr, QString(), QStringLiteral("Delete it?"), QStringLiteral("Yes"), QString());
        show(box);
        EXPECT_TRUE(box.close());
        EXPECT_FALSE(box.isVisible());
        EXPECT_EQ(notices(), flag != 0 ? QStringList(QStringLiteral("111 0")) : QStringList());
    }
}

TEST_F(HmiMessageBox, ClosesQuietlyWithoutAnApplicationRecord)
{
    takeRecordAway();
    HMIMessageBox box(nullptr, QString(), QStringLiteral("Delete it?"), QStringLiteral("Yes"), QString());
    show(box);
    EXPECT_TRUE(box.close());
    EXPECT_TRUE(notices().isEmpty());
}

TEST_F(HmiMessageBox, ClosesWithoutAButtonThatCouldMeanEscape)
{
    announceClosing();
    HMIMessageBox box(nullptr, QString(), QStringLiteral("Which one?"), QString(), QString());
    box.addButton(QStringLiteral("This"), QMessageBox::ActionRole);
    box.addButton(QStringLiteral("That"), QMessageBox::ActionRole);
    QSignalSpy finished(&box, &QDialog::finished);
    QSignalSpy rejected(&box, &QDialog::rejected);
    show(box);
    EXPECT_TRUE(box.close());
    EXPECT_FALSE(box.isVisible());
    EXPECT_EQ(box.clickedButton(), nullptr);
    EXPECT_EQ(finished.count(), 0);
    EXPECT_EQ(rejected.count(), 0);
    EXPECT_EQ(notices(), QStringList(QStringLiteral("111 0")));
}

TEST_F(HmiMessageBox, EndsItsOwnLoopWhenItCloses)
{
    HMIMessageBox box(nullptr, QString(), QStringLiteral("Delete it?"), QStringLiteral("Yes"), QString());
    QTimer::singleShot(0, &box, [&] { box.close(); });
    box.exec();
    EXPECT_EQ(box.clickedButton(), nullptr);
}

TEST_F(HmiMessageBox, GivesZeroWhereABoxThatWasAnsweredIsClosedTheNextTime)
{
    HMIMessageBox box(nullptr, QString(), QStringLiteral("Delete it?"), QStringLiteral("Yes"), QString());
    QTimer::singleShot(0, &box, [&] { box.button(QMessageBox::Ok)->click(); });
    EXPECT_EQ(box.exec(), static_cast<int>(QMessageBox::Ok));
    QTimer::singleShot(0, &box, [&] { box.close(); });
    EXPECT_EQ(box.exec(), 0);
}

INSTANTIATE_ON_EVERY_SCREEN(HmiMessageBoxOnScreen);

TEST_P(HmiMessageBoxOnScreen, AnswersATapWithoutANotice)
{
    record.announceMessageBoxClose = 1;
    HMIMessageBox box(nullptr, QStringLiteral("Recipes"), QStringLiteral("Delete it?"), QStringLiteral("Yes"),
                      QStringLiteral("No"));
    show(box);
    for (const auto which : {QMessageBox::Ok, QMessageBox::Cancel})
        EXPECT_GE(box.button(which)->height(), 44);
    tap(box.button(QMessageBox::Cancel));
    EXPECT_FALSE(box.isVisible());
    EXPECT_EQ(box.clickedButton(), box.button(QMessageBox::Cancel));
    EXPECT_EQ(eventLibraryEntryCount(), 0);
}
