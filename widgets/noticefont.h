// The look of the panel's small dialogs.
#pragma once

#include <QFont>
#include <QWidget>

namespace panelkit {

inline QFont noticeFont()
{
    QFont font;
    font.setFamily(QLatin1String("SimSun"));
    font.setPixelSize(16);
    return font;
}

// Gives `dialog` the notice font, as its font and, for what it will hold, as its style sheet.
inline void useNoticeFont(QWidget *dialog)
{
    dialog->setFont(noticeFont());
    dialog->setStyleSheet(QLatin1String("font-size:16px;font-family: 'SimSun';"));
}

} // namespace panelkit
