// What differs between the toolkit's generations 4.8, 5 and 6, each difference once.
#pragma once

#include <QtGlobal>

#if QT_VERSION >= 0x050300
#include <QPageSize>
#endif

namespace panelkit {

// The page sizes moved from the printer to a class of their own.
template <typename Printer>
void setPageSizeA4(Printer &printer)
{
#if QT_VERSION >= 0x050300
    printer.setPageSize(QPageSize(QPageSize::A4));
#else
    printer.setPageSize(Printer::A4);
#endif
}

} // namespace panelkit
