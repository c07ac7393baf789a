// Bytes of an unknown encoding: recognised in two blocks that meet where the first byte says, and converted.

#include "fuzz/support/demand.h"
#include "register/textencoding.h"
#include "register/utf8recogniser.h"

#include <QTextCodec>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace {

bool codecFindsValid(const std::vector<char> &bytes)
{
    QTextCodec::ConverterState state;
    QTextCodec::codecForName("utf-8")->toUnicode(bytes.data(), static_cast<int>(bytes.size()), &state);
    return state.invalidChars == 0;
}

bool recognised(const std::vector<char> &bytes, std::size_t border)
{
    panelkit::Utf8Recogniser recogniser;
    const std::vector<char> first(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(border));
    const std::size_t kept = recogniser.look(first.data(), first.size());
    demand(kept < 4 && kept <= first.size(), "fewer than four bytes are left over");
    const std::vector<char> second(bytes.begin() + static_cast<std::ptrdiff_t>(border - kept), bytes.end());
    const std::size_t left = recogniser.look(second.data(), second.size());
    recogniser.finish(second.data() + second.size() - left, left);
    return recogniser.isValid();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size == 0)
        return 0;
    std::vector<char> bytes(data + 1, data + size);
    const std::size_t border = std::min<std::size_t>(data[0], bytes.size());
    demand(recognised(bytes, border) == codecFindsValid(bytes), "the verdict is the codec's");

    const int length = static_cast<int>(bytes.size());
    tools_gb2312ToUtf8(bytes.data(), length);
    tools_utf8ToGb2312(bytes.data(), length);
    QString text;
    GB2312ToQString(text, bytes.data(), length);
    QByteArray gbk;
    QStringToGB2312Chars(text, gbk);
    demand(gbk.endsWith('\0') && gbk.count('\0') == 1, "GBK for a C string has one NUL, at its end");
    return 0;
}
