// A program of another project: it sees the installed package and nothing else.
#include <panelkit/panelkit.h>
#include <panelkit/register/numformat.h>

#include <cstdio>

int main()
{
    RegisterValueChange reg = {};
    reg.block[0] = 'L';
    reg.block[1] = 'W';
    reg.index = 100;
    QString text;
    if (!conversionAddr2UIText(reg, QString(), nullptr, text) || text != QLatin1String("LW100"))
        return 1;
    // There is no runtime here, hence no communication interface, and the text stays as it is.
    if (getValueToQString(reg, 1, 5, 0, NUM_UINT16, NUM_VIEW_DEC, text) || text != QLatin1String("LW100"))
        return 2;
    unsigned char single[4] = {0, 0, 0x48, 0x41};
    if (!ieee754TofloatStr(single, text) || text != QLatin1String("12.5"))
        return 3;
    std::puts("the installed package answers");
    return 0;
}
