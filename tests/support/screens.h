// The screens of the panels.
#pragma once

#include <gtest/gtest.h>

#include <ostream>
#include <string>

namespace panelkit::testing {

struct Screen
{
    int width;
    int height;
};

inline std::ostream &operator<<(std::ostream &out, const Screen &screen)
{
    return out << screen.width << "x" << screen.height;
}

inline std::string screenName(const ::testing::TestParamInfo<Screen> &info)
{
    return std::to_string(info.param.width) + "x" + std::to_string(info.param.height);
}

} // namespace panelkit::testing

// For a suite of TEST_P whose parameter is the screen.
#define INSTANTIATE_ON_EVERY_SCREEN(suite)                                                                   \
    INSTANTIATE_TEST_SUITE_P(Screen, suite,                                                                  \
                             ::testing::Values(panelkit::testing::Screen{480, 272},                          \
                                               panelkit::testing::Screen{272, 480},                          \
                                               panelkit::testing::Screen{800, 480}),                         \
                             panelkit::testing::screenName)
