// An argument object whose fields have the values that a macro's starts with.
#pragma once

#include "macro/interfaceall.h"

#include <gtest/gtest.h>

namespace panelkit::testing {

// Looks at all fields but `args`.
inline void expectFresh(const InterfaceAll &argument)
{
    EXPECT_EQ(argument.reserved0, 0);
    EXPECT_EQ(argument.idText, QStringLiteral("65535"));
    EXPECT_EQ(argument.valueText, QStringLiteral("0"));
    EXPECT_FALSE(argument.flagA);
    EXPECT_FALSE(argument.flagB);
    EXPECT_EQ(argument.intA, 0);
    EXPECT_EQ(argument.intB, 0);
    EXPECT_TRUE(argument.note.isEmpty());
    EXPECT_FALSE(argument.flagC);
    EXPECT_EQ(argument.intC, 0);
    EXPECT_EQ(argument.intD, 0);
    EXPECT_EQ(argument.optLogType, 0);
}

} // namespace panelkit::testing
