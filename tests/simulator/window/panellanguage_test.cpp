#include "simulator/comm/transfer.h"
#include "simulator/window/panellanguage.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cerrno>

using namespace panelkit::simulator;

namespace {

class ChineseTransferText : public ::testing::Test
{
protected:
    void SetUp() override
    {
        QString error;
        ASSERT_TRUE(language.change(QStringLiteral("zh_CN"), error)) << error.toStdString();
    }

    static QString textOf(const TransferResult &result)
    {
        QString text = QString::fromStdString(describe(result));
        return text.remove(QStringLiteral("PLC"));
    }

    static void expectChinese(const QString &text)
    {
        EXPECT_FALSE(text.contains(QRegularExpression(QStringLiteral("[A-Za-z]")))) << text.toStdString();
    }

    PanelLanguage language;
};

} // namespace

TEST_F(ChineseTransferText, HoldsNoEnglishReasonForAConnectionThatIsNotMade)
{
    for (const int reason :
         {ECONNREFUSED, ETIMEDOUT,     ECONNRESET,   ECONNABORTED, EPIPE,  ENOTCONN, EHOSTUNREACH,
          EHOSTDOWN,    ENETUNREACH,   ENETDOWN,     EDESTADDRREQ, EINVAL, EACCES,   EPERM,
          EMFILE,       EADDRNOTAVAIL, EAFNOSUPPORT, ENFILE,       ENOMEM, ENOBUFS}) {
        const QString text = textOf({TransferStatus::NotConnected, reason});
        expectChinese(text);
        EXPECT_FALSE(text.contains(QString::number(reason))) << text.toStdString();
    }
    expectChinese(textOf({TransferStatus::NotConnected, EXDEV}));
    EXPECT_EQ(describe({TransferStatus::NotConnected, ECONNREFUSED}), "无法连接PLC：连接被拒绝");
}

TEST_F(ChineseTransferText, HoldsNoEnglishReasonForARefusal)
{
    for (int exception = 1; exception <= 11; ++exception) {
        const QString text = textOf({TransferStatus::Refused, exception});
        expectChinese(text);
        EXPECT_EQ(text.contains(QStringLiteral("：")), exception != 9) << text.toStdString();
    }
    EXPECT_EQ(describe({TransferStatus::Refused, 2}), "PLC拒绝（异常2：非法数据地址）");
}
