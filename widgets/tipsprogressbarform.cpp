#include "widgets/tipsprogressbarform.h"

#include "widgets/wrappinglabel.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QProgressBar>
#include <QSpacerItem>

namespace panelkit {

void Ui_TipsProgressBar::setupUi(QWidget *form)
{
    if (form->objectName().isEmpty())
        form->setObjectName(QLatin1String("TipsProgressBar"));
    form->resize(480, 272);

    gridLayout_3 = new QGridLayout(form);
    gridLayout_3->setObjectName(QLatin1String("gridLayout_3"));
    verticalSpacer = new QSpacerItem(20, 73, QSizePolicy::Minimum, QSizePolicy::Expanding);
    gridLayout_3->addItem(verticalSpacer, 0, 1, 1, 1);
    horizontalSpacer = new QSpacerItem(60, 20, QSizePolicy::Expanding, QSizePolicy::Minimum);
    gridLayout_3->addItem(horizontalSpacer, 1, 0, 1, 1);
    widget = new QWidget(form);
    setupBox();
    gridLayout_3->addWidget(widget, 1, 1, 1, 2);
    horizontalSpacer_2 = new QSpacerItem(60, 20, QSizePolicy::Expanding, QSizePolicy::Minimum);
    gridLayout_3->addItem(horizontalSpacer_2, 1, 3, 1, 1);
    verticalSpacer_2 = new QSpacerItem(20, 72, QSizePolicy::Minimum, QSizePolicy::Expanding);
    gridLayout_3->addItem(verticalSpacer_2, 2, 2, 1, 1);

    gridLayout_3->setRowStretch(0, 4);
    gridLayout_3->setRowStretch(1, 3);
    gridLayout_3->setRowStretch(2, 4);
    gridLayout_3->setColumnStretch(0, 1);
    gridLayout_3->setColumnStretch(1, 4);
    gridLayout_3->setColumnStretch(2, 1);
    gridLayout_3->setColumnStretch(3, 1);

    form->setWindowTitle(QCoreApplication::translate("TipsProgressBar", "Form"));
}

void Ui_TipsProgressBar::setupBox()
{
    const QString noBorder = QLatin1String("border:0px;");

    widget->setObjectName(QLatin1String("widget"));
    widget->setStyleSheet(QLatin1String(
        "QWidget{background-color: rgb(240, 240, 240);border:3px solid rgba(64, 64, 64, 160);}"));
    gridLayout = new QGridLayout(widget);
    gridLayout->setObjectName(QLatin1String("gridLayout"));

    title = new WrappingLabel(widget);
    title->setObjectName(QLatin1String("title"));
    title->setStyleSheet(noBorder);
    gridLayout->addWidget(title, 0, 0, 1, 1);

    pb_1 = new QProgressBar(widget);
    pb_1->setObjectName(QLatin1String("pb_1"));
    pb_1->setAccessibleName(QCoreApplication::translate("TipsProgressBar", "First progress"));
    pb_2 = new QProgressBar(widget);
    pb_2->setObjectName(QLatin1String("pb_2"));
    pb_2->setAccessibleName(QCoreApplication::translate("TipsProgressBar", "Second progress"));
    QProgressBar *const bars[] = {pb_1, pb_2};
    for (int i = 0; i < 2; ++i) {
        bars[i]->setStyleSheet(noBorder);
        bars[i]->setAlignment(Qt::AlignCenter);
        bars[i]->setValue(0);
        gridLayout->addWidget(bars[i], 1 + i, 0, 1, 1);
    }
}

} // namespace panelkit
