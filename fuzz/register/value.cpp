// A value's text beside that of the plain way. The input: the type and the view (a byte each, from -2 and -1
// on), the digits, the decimals and the number of words (two bytes each), then the words themselves.

#include "fuzz/support/bytes.h"
#include "fuzz/support/demand.h"
#include "simulator/platform/systembase.h"
#include "tests/register/plainnumformat.h"
#include "tests/support/memorycomm.h"

#include <cmath>

namespace {

class Panel
{
public:
    Panel()
    {
        m_record.comm = &comm;
        panelkit::simulator::setApplicationRecord(&m_record);
    }

    ~Panel() { panelkit::simulator::setApplicationRecord(nullptr); }

    panelkit::testing::MemoryComm comm;

private:
    sys_base_app_pro m_record = {};
};

void compareFree(const quint16 *words, int decimals)
{
    using namespace panelkit::testing;
    unsigned char bytes[8];
    std::memcpy(bytes, words, sizeof(bytes));
    QString ours = QStringLiteral("before");
    QString plain;
    demand(ieee754TofloatStr(bytes, ours) == plainIeee754TofloatStr(bytes, plain) && ours == plain,
           "the single's text is the plain one");
    double value;
    std::memcpy(&value, bytes, sizeof(value));
    // The rest of a number beyond 64 bits is left to the sanitizers.
    const bool isPlain = std::isfinite(value) && std::fabs(value) < 1e15 && decimals >= 0 && decimals < 8;
    const QString text = doubleToQString(value, decimals);
    demand(!isPlain || text == plainDoubleToQString(value, decimals), "the double's text is the plain one");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static Panel panel;
    Bytes input(data, size);
    const auto type = static_cast<NUM_DATA_TYPE>(input.number<quint8>() % 12 - 2);
    const auto view = static_cast<NUM_DATA_VIEW_TYPE>(input.number<quint8>() % 7 - 1);
    const int totalDigits = input.number<qint16>();
    const int decimals = input.number<qint16>();
    const int wordCount = input.number<qint16>();
    panel.comm.words.assign(70, 0);
    input.fill(reinterpret_cast<char *>(panel.comm.words.data()), panel.comm.words.size() * sizeof(quint16));

    QString ours = QStringLiteral("before");
    QString plain;
    const bool isOurs = getValueToQString({}, wordCount, totalDigits, decimals, type, view, ours);
    const bool isPlain =
        panelkit::testing::plainValueToQString({}, wordCount, totalDigits, decimals, type, view, plain);
    demand(isOurs == isPlain && ours == plain, "the value's text is the plain one");
    demand(getValueToQString({}, wordCount, totalDigits, decimals, type, view, ours) && ours == plain,
           "asked again it is the same");
    compareFree(panel.comm.words.data(), decimals);
    return 0;
}
