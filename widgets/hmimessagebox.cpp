#include "widgets/hmimessagebox.h"

#include "platform/hmi_event.h"
#include "platform/sys_base.h"
#include "runtime/systempath.h"
#include "widgets/touch.h"

#include <QIcon>
#include <QPushButton>

namespace {

const unsigned short messageBoxClosed = 111;

void addNamedButton(QMessageBox *box, QMessageBox::StandardButton which, const QString &text)
{
    QAbstractButton *named = box->button(which);
    if (named == nullptr)
        named = box->addButton(which);
    named->setMinimumHeight(panelkit::fingerHeight);
    if (!text.isEmpty())
        named->setText(text);
}

} // namespace

HMIMessageBox::HMIMessageBox(QWidget *parent, const QString &title, const QString &text,
                             const QString &okText, const QString &cancelText)
    : QMessageBox(parent)
{
    if (parent != nullptr)
        setFont(parent->font());
    setWindowIcon(QIcon(panelkit::systemPath("/usr/tesk42/APP/restoreSetting/Images/HMI.png")));
    if (!title.isEmpty())
        setWindowTitle(title);
    if (!text.isEmpty())
        setText(text);
    if (!okText.isEmpty())
        addOKButton(okText);
    if (!cancelText.isEmpty())
        addCancelButton(cancelText);
}

void HMIMessageBox::addOKButton(const QString &text)
{
    addNamedButton(this, QMessageBox::Ok, text);
}

void HMIMessageBox::addCancelButton(const QString &text)
{
    addNamedButton(this, QMessageBox::Cancel, text);
}

void HMIMessageBox::closeEvent(QCloseEvent *)
{
    const sys_base_app_pro *application = sys_base_get_app_pro();
    if (application != nullptr && application->announceMessageBoxClose != 0)
        hmiEVent_SystemOperate_Msg(messageBoxClosed, 0);
}
