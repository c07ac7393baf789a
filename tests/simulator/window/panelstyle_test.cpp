#include "simulator/window/panelstyle.h"
#include "tests/support/screens.h"

#include <QImage>
#include <QMap>
#include <QProgressBar>

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

using namespace panelkit::simulator;
using panelkit::testing::Screen;

namespace {

// Of a colour as an eye sees it, from 0 to 1.
double luminance(const QColor &colour)
{
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

// From 1 (none) to 21 (black on white).
double contrast(const QColor &left, const QColor &right)
{
    const auto [dark, light] = std::minmax({luminance(left), luminance(right)});
    return (light + 0.05) / (dark + 0.05);
}

// Of what is drawn there with the colour on which it is drawn.
double contrastIn(const QImage &picture, const QRect &place)
{
    QMap<QRgb, int> pixels;
    for (int y = place.top(); y <= place.bottom(); ++y)
        for (int x = place.left(); x <= place.right(); ++x)
            ++pixels[picture.pixel(x, y)];
    const QList<QRgb> colours = pixels.keys();
    const QColor ground(*std::max_element(colours.begin(), colours.end(), [&pixels](QRgb left, QRgb right) {
        return pixels.value(left) < pixels.value(right);
    }));
    double most = 1;
    for (const QRgb colour : colours)
        most = std::max(most, contrast(ground, QColor(colour)));
    return most;
}

class PanelStyleScreen : public ::testing::TestWithParam<Screen>
{
};

} // namespace

TEST_P(PanelStyleScreen, LetsTheTextOfAProgressBarBeReadOnBothItsParts)
{
    QWidget window;
    window.setStyleSheet(panelStyleSheet(QSize(GetParam().width, GetParam().height)));
    QProgressBar bar(&window);
    bar.resize(200, 30);
    bar.setFormat(QStringLiteral("WWWWWWWW"));
    bar.setRange(0, 100);
    bar.setValue(50);
    window.resize(220, 40);
    window.show();
    const QImage picture = bar.grab().toImage();
    const QRect text(60, 6, 80, 18);
    EXPECT_NE(picture.pixel(30, 15), picture.pixel(170, 15)); // without text: the bar's two parts
    EXPECT_GE(contrastIn(picture, text.adjusted(0, 0, -45, 0)), 4.5);
    EXPECT_GE(contrastIn(picture, text.adjusted(45, 0, 0, 0)), 4.5);
}

INSTANTIATE_ON_EVERY_SCREEN(PanelStyleScreen);
