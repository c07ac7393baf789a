#include "macro/events.h"
#include "tests/widgets/browserfixture.h"
#include "widgets/mymessagebox.h"
#include "widgets/progressbar.h"

#include <QTranslator>

using namespace panelkit::testing;
using namespace panelkit::simulator;

namespace {

class InChinese
{
protected:
    QTranslator translator;
    const bool translated = translator.load(QStringLiteral(PANELKIT_TRANSLATIONS "/panelkit_zh_CN.qm")) &&
                            QCoreApplication::installTranslator(&translator);
};

class ChineseBrowser : protected InChinese, public BrowserOn<EveryScreen>
{
};

class ChineseDialogs : protected InChinese, public EveryScreen
{
};

} // namespace

INSTANTIATE_ON_EVERY_SCREEN(ChineseBrowser);
INSTANTIATE_ON_EVERY_SCREEN(ChineseDialogs);

TEST_P(ChineseBrowser, SpeaksChineseAndFitsTheScreen)
{
    ASSERT_TRUE(translated);
    browser.setTitle(QStringLiteral("选择要导入的配方文件"));
    browser.setFileBrowserInfo({{QStringLiteral("内部存储"), path(QStringLiteral("gone"))}});
    browser.reTranslateUI();
    show(browser);
    EXPECT_EQ(title->text(), QStringLiteral("选择要导入的配方文件"));
    EXPECT_EQ(back->text(), QStringLiteral("返回上级目录"));
    EXPECT_EQ(cancel->text(), QStringLiteral("取消"));
    EXPECT_EQ(ok->text(), QStringLiteral("确定"));
    EXPECT_EQ(listed(), QStringList(QStringLiteral("文件夹不存在")));
    EXPECT_EQ(browser.size(), screenSize());
}

TEST_P(ChineseBrowser, ChangesItsLanguageWhenItIsTranslatedAgain)
{
    ASSERT_TRUE(translated);
    EXPECT_EQ(ok->text(), QStringLiteral("确定"));
    QCoreApplication::removeTranslator(&translator);
    browser.reTranslateUI();
    EXPECT_EQ(ok->text(), QStringLiteral("OK"));
}

TEST_P(ChineseDialogs, SpeakChinese)
{
    ASSERT_TRUE(translated);
    ProgressBar progress;
    EXPECT_EQ(progress.findChild<QLabel *>()->text(), QStringLiteral("数据处理中："));
    EXPECT_EQ(progress.findChild<QPushButton *>()->text(), QStringLiteral("隐藏"));
    progress.UpdateProgress(1, 1, true, QString(), false);
    auto entry = takeEventLibraryEntry();
    ASSERT_TRUE(entry);
    const auto *const message = dynamic_cast<UMessageBoxEvent *>(std::get<PostedEvent>(*entry).event.get());
    ASSERT_NE(message, nullptr);
    EXPECT_EQ(message->text, QStringLiteral("处理成功！"));
    EXPECT_EQ(MyMessagebox(QString()).findChild<QPushButton *>()->text(), QStringLiteral("确定"));
}
