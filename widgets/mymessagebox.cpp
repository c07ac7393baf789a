#include "widgets/mymessagebox.h"

#include "platform/qtcompat.h"
#include "widgets/noticefont.h"
#include "widgets/touch.h"

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <limits>

using namespace panelkit;

namespace {

const int widestLine = 300; // pixels

// `text`, which is more than the widest line wide, in as many parts as bring its `width` in pixels down to
// that. All parts but the first hold one character less, since the positions of the breaks count the breaks
// before them.
QString brokenIntoLines(const QString &text, int width)
{
    int lines = 2;
    while (width / lines > widestLine)
        ++lines;
    const int step = static_cast<int>(text.size()) / lines;
    QString broken = text;
    for (int line = 1; line < lines; ++line)
        broken.insert(step * line, QLatin1Char('\n'));
    return broken;
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
MyMessagebox::MyMessagebox(QString text) : m_label(new QLabel(text, this))
{
    useNoticeFont(this);
    setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::CustomizeWindowHint);
    m_label->setAlignment(Qt::AlignLeft);

    QPushButton *const button = new QPushButton(tr("ok"), this);
    button->setFont(noticeFont());
    button->setMinimumHeight(fingerHeight);
    connect(button, SIGNAL(clicked()), this, SLOT(OnCancel()));
    QHBoxLayout *const buttonRow = new QHBoxLayout;
    buttonRow->addWidget(button);
    buttonRow->setAlignment(Qt::AlignCenter);

    QVBoxLayout *const layout = new QVBoxLayout;
    layout->addStretch(1);
    layout->addWidget(m_label);
    layout->addSpacing(QFontMetrics(noticeFont()).boundingRect(text).height());
    layout->addLayout(buttonRow);
    layout->addStretch(1);
    m_label->setFont(noticeFont());
    setLayout(layout);
    adjustSize();
    m_label->adjustSize();

    setPrecise(m_timer);
    connect(&m_timer, SIGNAL(timeout()), this, SLOT(OnCancel()));
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the signature is fixed
void MyMessagebox::setText(QString text, int seconds)
{
    m_label->setText(text);
    m_label->adjustSize();
    if (m_label->width() > widestLine)
        m_label->setText(brokenIntoLines(text, m_label->width()));
    adjustSize();
    m_label->adjustSize(); // the layout of a box that is not shown leaves it as wide as it was
    const qint64 longest = std::numeric_limits<int>::max();
    const qint64 milliseconds = static_cast<qint64>(seconds) * 1000;
    m_timer.setInterval(static_cast<int>(qBound<qint64>(0, milliseconds, longest)));
}

void MyMessagebox::OnCancel()
{
    hide();
    m_timer.stop();
}

void MyMessagebox::showEvent(QShowEvent *event)
{
    m_timer.start(); // from the beginning, if it runs already
    QDialog::showEvent(event);
}
