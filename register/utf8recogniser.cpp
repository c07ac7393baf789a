#include "register/utf8recogniser.h"

#include <QString>

#include <algorithm>
#include <cstdint>

namespace panelkit {

namespace {

// The next four bytes, the first of them lowest.
std::uint32_t fourBytes(const unsigned char *at)
{
    return at[0] | static_cast<std::uint32_t>(at[1]) << 8 | static_cast<std::uint32_t>(at[2]) << 16 |
           static_cast<std::uint32_t>(at[3]) << 24;
}

bool isContinuation(unsigned char byte)
{
    return (byte & 0xC0) == 0x80;
}

bool isCertainTriple(const unsigned char *at)
{
    if (!isContinuation(at[1]) || !isContinuation(at[2]))
        return false;
    if (at[0] == 0xE0)
        return at[1] >= 0xA0; // else a longer form than needed
    if (at[0] == 0xED)
        return at[1] < 0xA0; // else a surrogate
    const bool maybeNoncharacter = at[0] == 0xEF && (at[1] == 0xB7 || (at[1] == 0xBF && at[2] >= 0xBE));
    return !maybeNoncharacter;
}

bool isCertainQuadruple(const unsigned char *at)
{
    if (!isContinuation(at[1]) || !isContinuation(at[2]) || !isContinuation(at[3]))
        return false;
    if (at[0] == 0xF0 && at[1] < 0x90)
        return false; // a longer form than needed
    if (at[0] == 0xF4 && at[1] >= 0x90)
        return false; // beyond the last code point
    const bool maybeNoncharacter = at[2] == 0xBF && at[3] >= 0xBE;
    return !maybeNoncharacter;
}

// Whether a lead byte of three and the next byte cannot begin any of the triples that are not certain. First
// the range of nearly all of Chinese.
bool isOrdinaryTriple(const unsigned char *at)
{
    if (at[0] >= 0xE1 && at[0] <= 0xEC)
        return true;
    return at[0] == 0xEE || (at[0] == 0xEF && at[1] != 0xB7 && at[1] != 0xBF);
}

// The length of the character at `at`, of which `left` bytes are there; 0 if it is not certain.
std::size_t certainLength(const unsigned char *at, std::size_t left)
{
    const unsigned char lead = at[0];
    if (lead < 0x80)
        return 1;
    if (lead >= 0xC2 && lead <= 0xDF)
        return left >= 2 && isContinuation(at[1]) ? 2 : 0;
    if (lead >= 0xE0 && lead <= 0xEF)
        return left >= 3 && isCertainTriple(at) ? 3 : 0;
    if (lead >= 0xF0 && lead <= 0xF4)
        return left >= 4 && isCertainQuadruple(at) ? 4 : 0;
    return 0;
}

// How many of the bytes, from the first on, are whole characters of UTF-8 beyond all doubt. In doubt are an
// unfinished character at the end, what is no UTF-8, and the code points reserved as noncharacters, about
// which the codecs of the toolkit's generations differ.
std::size_t certainPrefix(const char *bytes, std::size_t length)
{
    const auto *at = reinterpret_cast<const unsigned char *>(bytes);
    const unsigned char *const end = at + length;
    const auto left = [&] {
        return static_cast<std::size_t>(end - at);
    };
    while (at != end) {
        while (left() >= 4 && (fourBytes(at) & 0x00C0C0F0) == 0x008080E0 && isOrdinaryTriple(at))
            at += 3;
        while (left() >= 4 && (fourBytes(at) & 0x80808080) == 0) // ASCII
            at += 4;
        const std::size_t character = left() > 0 ? certainLength(at, left()) : 0;
        if (character == 0)
            break;
        at += character;
    }
    return length - left();
}

} // namespace

std::size_t Utf8Recogniser::look(const char *bytes, std::size_t length)
{
    const std::size_t certain = m_inDoubt ? 0 : certainPrefix(bytes, length);
    const std::size_t rest = length - certain;
    if (!m_inDoubt && rest < 4)
        return rest;
    m_inDoubt = true;
    decode(bytes + certain, rest);
    return 0;
}

void Utf8Recogniser::finish(const char *bytes, std::size_t length)
{
    decode(bytes, length);
}

bool Utf8Recogniser::isValid() const
{
    return m_codec != nullptr && m_state.invalidChars == 0;
}

void Utf8Recogniser::decode(const char *bytes, std::size_t length)
{
    const std::size_t atOnce =
        16UL * 1024; // the decoded text is thrown away, and takes twice as much or more
    for (std::size_t done = 0; done < length && isValid(); done += atOnce)
        m_codec->toUnicode(bytes + done, static_cast<int>(std::min(length - done, atOnce)), &m_state);
}

} // namespace panelkit
