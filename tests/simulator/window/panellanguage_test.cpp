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

    static void expectChinese(const TransferResult &result)
    {
        const QString text =
            QString::fromStdString(describe(result)).remove(QStringLiteral("PLC"), Qt::CaseSensitive);
        EXPECT_FALSE(text.contains(QRegularExpression(QStringLiteral("[A-Za-z]"))))
            << text.toStdString() << " (" << result.detail << ")";
    }

    PanelLanguage language;
};

} // namespace

TEST_F(ChineseTransferText, HoldsNoEnglishReasonForAConnectionThatIsNotMade)
{
    for (const int reason :
         {ECONNREFUSED, ETIMEDOUT,     ECONNRESET,   ECONNABORTED, EPIPE,  ENOTCONN, EHOSTUNREACH,
          EHOSTDOWN,    ENETUNREACH,   ENETDOWN,     EDESTADDRREQ, EINVAL, EACCES,   EPERM,
          EMFILE,       EADDRNOTAVAIL, EAFNOSUPPORT, ENFILE,       ENOMEM, ENOBUFS,  EXDEV})
        expectChinese({TransferStatus::NotConnected, reason});
    EXPECT_EQ(describe({TransferStatus::NotConnected, ECONNREFUSED}), "无法连接PLC：连接被拒绝");
}

TEST_F(ChineseTransferText, HoldsNoEnglishReasonForARefusal)
{
    for (int exception = 1; exception <= 11; ++exception)
        expectChinese({TransferStatus::Refused, exception});
    EXPECT_EQ(describe({TransferStatus::Refused, 2}), "PLC拒绝（异常2：非法数据地址）");
}
