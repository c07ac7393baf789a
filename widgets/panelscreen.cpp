#include "widgets/panelscreen.h"

#include "platform/sys_base.h"

namespace panelkit {

namespace {

int halfRoundedDown(int value)
{
    return value >= 0 ? value / 2 : -((1 - value) / 2);
}

} // namespace

QSize panelScreenSize(const QSize &fallback)
{
    const sys_base_app_pro *application = sys_base_get_app_pro();
    return application == nullptr ? fallback : QSize(application->screenWidth, application->screenHeight);
}

QPoint centredPosition(const QSize &size, const QSize &screen)
{
    return QPoint(halfRoundedDown(screen.width() - size.width()),
                  halfRoundedDown(screen.height() - size.height()));
}

} // namespace panelkit
