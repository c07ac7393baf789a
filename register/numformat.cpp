#include "register/numformat.h"

#include "register/communication.h"
#include "register/interfacecomm.h"
#include "register/numbertext.h"
#include "register/textassign.h"

#include <QString>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr int maximumWords = 64;
constexpr double tolerance = 1e-8;

// A new buffer is reserved at once for whatever the register may hold later, so that it is never too small.
void assignNumber(QString &out, std::string_view text, int decimals)
{
    panelkit::assignText(out, text, panelkit::longestNumberText(decimals));
}

// ASCII is the same in every local encoding; only other text is worth a decoder and its allocation.
void assignLocal8Bit(QString &out, const char *bytes, int room)
{
    const std::string_view text(bytes);
    if (std::all_of(text.begin(), text.end(),
                    [](char byte) { return static_cast<unsigned char>(byte) < 0x80; })) {
        panelkit::assignText(out, text, room);
        return;
    }
    const QString decoded = QString::fromLocal8Bit(text.data(), static_cast<panelkit::TextSize>(text.size()));
    if (out != decoded)
        out = decoded;
}

} // namespace

bool getValueToQString(const RegisterValueChange &reg, int wordCount, int totalDigits, int decimals,
                       NUM_DATA_TYPE type, NUM_DATA_VIEW_TYPE view, QString &out)
{
    if (totalDigits == 0 || totalDigits < decimals) {
        assignNumber(out, "0", decimals);
        return true;
    }
    InterfaceComm *comm = panelkit::communication();
    if (comm == nullptr)
        return false;
    alignas(quint32) char words[maximumWords * sizeof(quint16) + 2] = {}; // always ends in NUL
    wordCount = std::clamp(wordCount, 0, maximumWords);
    if (wordCount > 0)
        comm->readAddressWords(&reg, wordCount, words);
    if (type == NUM_STRING) {
        assignLocal8Bit(out, words, wordCount * 2);
        return true;
    }
    panelkit::NumberBuffer buffer;
    assignNumber(out, panelkit::registerText(words, totalDigits, decimals, type, view, buffer), decimals);
    return true;
}

QString doubleToQString(double value, int decimals)
{
    if (decimals == 0)
        return QString::number(value, 'g', 6);
    panelkit::NumberBuffer buffer;
    const std::string_view text = panelkit::truncatedText(value, decimals, buffer);
    return QString::fromLatin1(text.data(), static_cast<panelkit::TextSize>(text.size()));
}

bool ieee754TofloatStr(unsigned char *bytes, QString &out)
{
    quint32 bits = 0;
    if (bytes != nullptr)
        std::memcpy(&bits, bytes, sizeof(bits));
    panelkit::NumberBuffer buffer;
    assignNumber(out, panelkit::shortSingleText(bits, buffer), 0);
    return true;
}

bool doubleCmp_More(double a, double b)
{
    return a - b > tolerance;
}

bool doubleCmp_Less(double a, double b)
{
    return a - b < -tolerance;
}

bool doubleCmp_MoreEqu(double a, double b)
{
    return a - b > -tolerance;
}

bool doubleCmp_LessEqu(double a, double b)
{
    return a - b < tolerance;
}

bool doubleCmp_Equ(double a, double b)
{
    return std::fabs(a - b) <= tolerance;
}
