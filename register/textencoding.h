// Text between the bytes of the outside world, GB2312 or GBK, and the runtime's UTF-8; and the encoding of a
// file.
//
// All conversions are the toolkit's codecs "GB2312", "GBK" and "UTF-8". Bytes that do not decode become the
// codec's replacement character, and what GBK lacks becomes what the codec writes for it, mostly "?". Where a
// panel's toolkit lacks the codec the result is empty.
#pragma once

#include "platform/export.h"

#include <QByteArray>
#include <QString>

// `len` bytes at `data`, NULs included, converted; empty for a null pointer or a length below 1.
PANELKIT_EXPORT QByteArray tools_gb2312ToUtf8(char *data, int len);
PANELKIT_EXPORT QByteArray tools_utf8ToGb2312(char *data, int len);

// Fills `out` with `text`, up to its first NUL, in GBK and one NUL byte, which `out`'s size counts: an empty
// text is one byte.
PANELKIT_EXPORT void QStringToGB2312Chars(QString text, QByteArray &out);

// Fills `out` with the text of `len` bytes of GB2312 up to the first NUL, so that a padded buffer gives the
// text alone; empty for a null pointer or a length below 1.
PANELKIT_EXPORT void GB2312ToQString(QString &out, char *data, int len);

// The encoding of the text file `path`, by its byte-order mark or, without one, by all of its bytes:
//   0  none of the following, so to be taken as the local encoding, GBK on a panel; also a file of fewer than
//      4 bytes, and one that cannot be opened
//   1  UTF-16, little-endian mark (a UTF-32 little-endian mark counts as this)
//   2  UTF-16, big-endian mark
//   3  UTF-8 without a mark; plain ASCII is this, and so is a file that ends within a character
//   4  UTF-8 with a mark
// Reads in blocks, stops at the first block that is no UTF-8, and needs less than 128 KB whatever the file's
// size.
PANELKIT_EXPORT int FileCharacterEncoding(const QString &path);
