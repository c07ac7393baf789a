#include "register/interfacecomm.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <type_traits>

namespace {

// The place of a virtual operation in its class's table, as the C++ ABI writes it into a member pointer: the
// offset in bytes, and a mark in the lowest bit that some processors keep elsewhere.
template <typename Operation>
std::size_t tablePlace(Operation operation)
{
    std::ptrdiff_t parts[2];
    static_assert(sizeof(operation) == sizeof(parts), "a member pointer of the C++ ABI");
    std::memcpy(parts, &operation, sizeof(parts));
    return (static_cast<std::size_t>(parts[0]) & ~std::size_t(1)) / sizeof(void *);
}

} // namespace

TEST(InterfaceComm, KeepsTheOrderOfTheRuntimesTable)
{
    EXPECT_EQ(tablePlace(&InterfaceComm::reservedOperation), 0U);
    EXPECT_EQ(tablePlace(&InterfaceComm::getLinkValue), 1U) << "the second operation of the table";
    EXPECT_EQ(tablePlace(&InterfaceComm::getLinkValueByName), 2U) << "the third operation of the table";
    EXPECT_LT(tablePlace(&InterfaceComm::getLinkValueByName),
              tablePlace(&InterfaceComm::resolveAddressIndex));
    EXPECT_LT(tablePlace(&InterfaceComm::resolveAddressIndex), tablePlace(&InterfaceComm::readAddressWords));
    EXPECT_LT(tablePlace(&InterfaceComm::readAddressWords), tablePlace(&InterfaceComm::writeRegisters));
    EXPECT_EQ(tablePlace(&InterfaceComm::writeRegisters) + 1, tablePlace(&InterfaceComm::readRegisters));
}

TEST(InterfaceComm, HasNoVirtualDestructorThatWouldTakePlacesOfTheTable)
{
    EXPECT_TRUE(std::is_polymorphic<InterfaceComm>::value);
    EXPECT_FALSE(std::has_virtual_destructor<InterfaceComm>::value);
}

TEST(LinkValue, StartsWithZerosAndEmptyTexts)
{
    // On memory that is not zero, so that nothing is zero by luck.
    alignas(LinkValue) unsigned char memory[sizeof(LinkValue)];
    std::memset(memory, 0x5A, sizeof(memory));
    auto *link = new (memory) LinkValue;
    for (const qint32 value :
         {link->id,       link->reservedInt1, link->ip1,          link->ip2,          link->ip3,
          link->ip4,      link->port,         link->baud,         link->dataBits,     link->check,
          link->stopBits, link->reservedInt2, link->reservedInt3, link->station,      link->interval,
          link->timeout,  link->retry,        link->addmore,      link->addrInterval, link->reservedInt4})
        EXPECT_EQ(value, 0);
    for (const QString *text :
         {&link->reservedText1, &link->portName, &link->reservedText3, &link->reservedText4, &link->driverLib,
          &link->reservedText5, &link->reservedText6})
        EXPECT_TRUE(text->isEmpty());
    link->~LinkValue();
}

TEST(LinkValue, HasItsFieldsInTheRuntimesOrder)
{
    const LinkValue link;
    const void *fields[] = {&link.id,
                            &link.reservedText1,
                            &link.portName,
                            &link.reservedText3,
                            &link.reservedText4,
                            &link.driverLib,
                            &link.reservedInt1,
                            &link.ip1,
                            &link.ip2,
                            &link.ip3,
                            &link.ip4,
                            &link.port,
                            &link.baud,
                            &link.dataBits,
                            &link.check,
                            &link.stopBits,
                            &link.reservedInt2,
                            &link.reservedInt3,
                            &link.station,
                            &link.interval,
                            &link.timeout,
                            &link.retry,
                            &link.addmore,
                            &link.addrInterval,
                            &link.reservedInt4,
                            &link.reservedText5,
                            &link.reservedText6};
    EXPECT_EQ(fields[0], &link);
    for (std::size_t i = 1; i < sizeof(fields) / sizeof(fields[0]); ++i)
        EXPECT_LT(reinterpret_cast<std::size_t>(fields[i - 1]), reinterpret_cast<std::size_t>(fields[i]))
            << i;
    EXPECT_EQ(reinterpret_cast<std::size_t>(fields[26]) + sizeof(QString),
              reinterpret_cast<std::size_t>(&link) + sizeof(LinkValue));
}
