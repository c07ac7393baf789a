#include "widgets/progressbar.h"

#include "macro/events.h"
#include "platform/hmi_event.h"
#include "widgets/noticefont.h"
#include "widgets/panelscreen.h"
#include "widgets/touch.h"
#include "widgets/wrappinglabel.h"

#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>

using namespace panelkit;

ProgressBar::ProgressBar(QWidget *parent)
    : QDialog(parent),
      m_label(new WrappingLabel(this)),
      m_progressBar(new QProgressBar(this)),
      m_maximum(0),
      m_value(0),
      m_active(false)
{
    const QSize landscape(420, 250);
    const QSize portrait(260, 250);

    useNoticeFont(this);
    setWindowFlags(Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
    const QSize screen = panelScreenSize(landscape);
    setFixedSize(screen == QSize(272, 480) ? portrait : landscape);
    move(centredPosition(size(), screen));
    setObjectName(QLatin1String("ProgressBar"));
    setStyleSheet(
        QLatin1String("ProgressBar{border-style: ridge; border-width: 4px; border-color: rgb(64, 64, 64);}"));
    buildLayout();
}

void ProgressBar::buildLayout()
{
    m_label->setText(tr("Data processing:"));
    m_label->setFont(noticeFont());
    m_label->setAlignment(Qt::AlignLeft);

    m_progressBar->setFont(noticeFont());
    m_progressBar->setAlignment(Qt::AlignCenter);
    m_progressBar->setTextVisible(false);
    m_progressBar->setAccessibleName(tr("Progress"));

    QPushButton *const button = new QPushButton(tr("hide"), this);
    button->setFont(noticeFont());
    button->setMaximumWidth(120);
    button->setMinimumHeight(fingerHeight);
    connect(button, SIGNAL(clicked()), this, SLOT(OnCancel()));

    QHBoxLayout *const buttonRow = new QHBoxLayout;
    buttonRow->addWidget(button);
    buttonRow->setAlignment(Qt::AlignCenter);

    QVBoxLayout *const layout = new QVBoxLayout(this);
    layout->addStretch(1);
    layout->addWidget(m_label);
    layout->addSpacing(15);
    layout->addWidget(m_progressBar);
    layout->addSpacing(15);
    layout->addLayout(buttonRow);
    layout->addStretch(1);
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
void ProgressBar::UpdateProgress(int value, int maximum, bool activate, QString text, bool close)
{
    if (close) {
        hide();
        return;
    }
    if (activate)
        m_active = true;
    m_value = value;
    m_maximum = maximum;
    m_progressBar->setMaximum(maximum);
    m_progressBar->setValue(value);
    m_progressBar->setTextVisible(true);
    if (!m_active)
        return;
    if (m_value >= m_maximum) {
        m_label->setText(tr("Data processing:"));
        hide();
        UHmiEvent::hmiEventPost(new UMessageBoxEvent(tr("processing success!"), 2, 0), nullptr);
        return;
    }
    if (!text.isEmpty())
        m_label->setText(tr("Data processing:") + text);
    show();
}

void ProgressBar::OnCancel()
{
    m_active = false;
    m_label->setText(tr("Data processing:"));
    hide();
}
