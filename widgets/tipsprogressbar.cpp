#include "widgets/tipsprogressbar.h"

#include "widgets/panelscreen.h"
#include "widgets/tipsprogressbarform.h"

#include <QLabel>
#include <QProgressBar>

using namespace panelkit;

TipsProgressBar::TipsProgressBar(QWidget *parent) : QGraphicsView(parent), m_form(new Ui_TipsProgressBar)
{
    m_form->setupUi(this);
    setGeometry(QRect(QPoint(0, 0), panelScreenSize(size())));
    setStyleSheet(QLatin1String("background: transparent; border:0px"));
    setWindowFlags(Qt::FramelessWindowHint);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

TipsProgressBar::~TipsProgressBar()
{
    delete m_form;
}

void TipsProgressBar::UpdateProgress(int value1, int value2, bool hide, const QString &text)
{
    setVisible(!hide);
    if (!text.isEmpty())
        m_form->title->setText(text);
    m_form->title->setVisible(!text.isEmpty());
    if (value1 >= 0)
        m_form->pb_1->setValue(value1);
    m_form->pb_1->setVisible(value1 >= 0);
    if (value2 >= 0)
        m_form->pb_2->setValue(value2);
    m_form->pb_2->setVisible(value2 >= 0);
}
