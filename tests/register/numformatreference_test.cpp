// The library's texts against those of the plain way, for many arguments picked at random; the seed is fixed.

#include "register/addresstext.h"
#include "register/registervaluechange.h"
#include "tests/register/plainnumformat.h"
#include "tests/support/panelfixture.h"

#include <climits>
#include <random>

using namespace panelkit::testing;

class RandomArguments : public PanelFixture
{
protected:
    quint32 bits() { return static_cast<quint32>(m_engine()); }
    int below(int limit) { return static_cast<int>(bits() % static_cast<quint32>(limit)); }

    template <typename Value>
    Value oneOf(std::initializer_list<Value> values)
    {
        return values.begin()[below(static_cast<int>(values.size()))];
    }

    // Values of all lengths and shapes: random bits, small numbers of both signs, BCD digits, singles with
    // few binary digits (which end in ties) and of everyday size.
    quint32 registerBits()
    {
        switch (below(6)) {
        case 0:
            return bits();
        case 1:
            return bits() >> below(32);
        case 2:
            return 0 - (bits() >> below(32));
        case 3:
            return QString::number(bits() % 100000000 / oneOf({1U, 100U, 10000U})).toUInt(nullptr, 16);
        case 4:
            return bitsOf(std::ldexp(static_cast<float>(below(4096) - 2048), -below(14)));
        default:
            return bitsOf((static_cast<float>(below(2000001)) - 1000000.0F) / oneOf({1.0F, 10.0F, 1000.0F}));
        }
    }

    static quint32 bitsOf(float value)
    {
        quint32 bits;
        std::memcpy(&bits, &value, sizeof(bits));
        return bits;
    }

    int digits()
    {
        if (below(50) != 0)
            return below(14);
        return oneOf({INT_MIN, INT_MIN + 1, -1025, -100, -46, -45, -5, -1, 20, 38, 39, 45, 100, 1023, 1024,
                      1025, INT_MAX - 1, INT_MAX});
    }

private:
    std::mt19937 m_engine{20240229};
};

TEST_F(RandomArguments, GiveTheValueTextsOfThePlainWay)
{
    comm.recordReads = false;
    QString ours;
    QString plain;
    for (int i = 0; i < 300000; ++i) {
        const quint32 value = registerBits();
        comm.words = {static_cast<quint16>(value), static_cast<quint16>(value >> 16)};
        const int wordCount = below(20) == 0 ? oneOf({INT_MIN, -1, 0, 1, 3, 64, 65, INT_MAX}) : 2;
        const int totalDigits = digits();
        const int decimals = below(3) == 0 ? 0 : digits();
        const auto type =
            static_cast<NUM_DATA_TYPE>(below(40) == 0 ? oneOf({-2, 8, INT_MIN, INT_MAX}) : below(9) - 1);
        const auto view =
            static_cast<NUM_DATA_VIEW_TYPE>(below(40) == 0 ? oneOf({-1, 4, 9, INT_MIN, INT_MAX}) : below(4));
        ASSERT_TRUE(getValueToQString({}, wordCount, totalDigits, decimals, type, view, ours));
        ASSERT_TRUE(plainValueToQString({}, wordCount, totalDigits, decimals, type, view, plain));
        ASSERT_EQ(ours, plain) << std::hex << value << std::dec << ' ' << wordCount << " words "
                               << totalDigits << " digits " << decimals << " decimals type " << type
                               << " view " << view;
    }
}

TEST_F(RandomArguments, GiveTheSingleTextsOfThePlainWay)
{
    QString ours;
    QString plain;
    for (int i = 0; i < 200000; ++i) {
        quint32 value = registerBits();
        if (i % 4 == 0) // near the lengths at which the rule changes
            value = bitsOf(oneOf({-1.0F, 1.0F}) * (oneOf({1.0F, 10.0F, 1e5F, 1e6F, 8388600.0F}) +
                                                   static_cast<float>(below(4096)) / 256.0F));
        auto *bytes = reinterpret_cast<unsigned char *>(&value);
        ASSERT_TRUE(ieee754TofloatStr(bytes, ours));
        ASSERT_TRUE(plainIeee754TofloatStr(bytes, plain));
        ASSERT_EQ(ours, plain) << std::hex << value;
    }
}

TEST_F(RandomArguments, GiveTheDoubleTextsOfThePlainWay)
{
    for (int i = 0; i < 100000; ++i) {
        double value = 0;
        if (i % 4 == 0) {
            const quint64 wide = static_cast<quint64>(bits()) << 32 | bits();
            std::memcpy(&value, &wide, sizeof(value));
        } else {
            value = (below(2000001) - 1000000) / oneOf({1.0, 10.0, 1000.0, 1e6, 1e9});
        }
        const int decimals = below(2) == 0 ? below(12) : digits();
        ASSERT_EQ(doubleToQString(value, decimals), plainDoubleToQString(value, decimals))
            << std::hexfloat << value << ' ' << decimals;
    }
}

TEST_F(RandomArguments, GiveTheAddressTextsOfThePlainWay)
{
    QString ours;
    QString plain;
    for (int i = 0; i < 100000; ++i) {
        RegisterValueChange reg = {};
        reg.linkId = oneOf({0, 1, 2, 3, -1, 65535, 65536, 65538, INT_MIN, INT_MAX});
        reg.station = oneOf({-1, 0, 1, 255, INT_MIN, INT_MAX});
        reg.index = oneOf({-1, 0, 1, 65535, INT_MIN, INT_MAX});
        const int length = below(33);
        for (int at = 0; at < length; ++at)
            reg.block[at] = oneOf({'L', 'B', 'W', 'R', 'I', 'D', '%', '1', '\xFC', '\0'});
        LinkValue link;
        link.id = oneOf({-1, 0, 1});
        link.addmore = oneOf({-1, 0, 1, 2});
        comm.links.insert(static_cast<quint16>(reg.linkId), link);
        comm.calls.clear();
        const QString indexText = oneOf({QString(), QStringLiteral("7"), QStringLiteral("17.3")});
        InterfaceComm *interface = below(10) == 0 ? nullptr : &comm;
        ASSERT_EQ(conversionAddr2UIText(reg, indexText, interface, ours),
                  plainAddr2UIText(reg, indexText, interface, plain));
        ASSERT_EQ(ours, plain);
    }
}
