// The child widgets of the progress overlay.
#pragma once

class QGridLayout;
class QLabel;
class QProgressBar;
class QSpacerItem;
class QWidget;

namespace panelkit {

// The widgets are children of the form they are set up on and live as long as that does.
class Ui_TipsProgressBar
{
public:
    void setupUi(QWidget *form);

    QGridLayout *gridLayout_3;
    QSpacerItem *verticalSpacer;
    QSpacerItem *horizontalSpacer;
    QSpacerItem *horizontalSpacer_2;
    QSpacerItem *verticalSpacer_2;
    QWidget *widget;
    QGridLayout *gridLayout;
    QProgressBar *pb_1;
    QProgressBar *pb_2;
    QLabel *title;

private:
    void setupBox();
};

} // namespace panelkit
